#include <QBackingStore>
#include <QPainter>

#include "panel/frame_store.h"
#include "support/test_program.h"
#include "support/window_test_support.h"
#include "window/state_line.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// A window that comes to rest at once.
struct RestingDesk : Desk {
    RestingDesk() {
        restsAfter = std::chrono::milliseconds(1);
        Restart();
    }
};

// The window without what changes by itself: live values, read-outs, the state of the screen.
QImage StillParts(const Desk& desk) {
    QImage image = desk.window->grab().toImage();
    QPainter painter(&image);
    const QWidget* const stateLine = desk.window->findChild<StateLine*>();
    for (const QWidget* part :
         std::initializer_list<const QWidget*>{desk.Find("zoomwidget"), desk.Find("pushButton"), stateLine}) {
        painter.fillRect(QRect(part->mapTo(desk.window.get(), QPoint(0, 0)), part->size()), Qt::black);
    }
    return image;
}

// Of a window's device pixels, 4 bytes each.
qint64 BytesOf(const QWidget& window) {
    const QSize pixels = (QSizeF(window.size()) * window.devicePixelRatioF()).toSize();
    return qint64(pixels.width()) * pixels.height() * 4;
}

}  // namespace

// What a window holds that nobody looks at.
class TestWindowRest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void WindowThatWasNeverShownHasNoGround();
    void WindowInSightKeepsItsPictures();
    void WindowOutOfSightHoldsNoPictures();
    void MinimisedWindowRestsToo();
    void WindowThatComesBackLooksAsBefore();
    void FrameThatIsComposedInTheTrayLeavesNothing();
    void TrayStartComesToRest();
};

void TestWindowRest::initTestCase() {
    PrepareApplication();
}

void TestWindowRest::init() {
    SetUpProfile();
}

void TestWindowRest::WindowThatWasNeverShownHasNoGround() {
    Desk desk;
    QCoreApplication::processEvents();
    QCOMPARE(desk.window->Ground().HeldBytes(), 0);
    desk.Show();
    // Its own pixels, not those of the picture.
    QTRY_COMPARE(desk.window->Ground().HeldBytes(), BytesOf(*desk.window));
}

void TestWindowRest::WindowInSightKeepsItsPictures() {
    RestingDesk desk;
    desk.Show();
    desk.WaitForPictures();
    QVERIFY(!desk.window->IsResting());
    QVERIFY(desk.window->Pictures().KeptBytes() > 0);
    QVERIFY(desk.Editor()->Background().HeldBytes() > 0);
    QCOMPARE(desk.window->backingStore()->size(), desk.window->size());
}

void TestWindowRest::WindowOutOfSightHoldsNoPictures() {
    RestingDesk desk;
    desk.Show();
    desk.WaitForPictures();
    desk.window->PutAway();
    QTRY_VERIFY(desk.window->IsResting());
    QTRY_COMPARE(desk.window->Pictures().KeptBytes(), 0);
    QCOMPARE(desk.Editor()->Background().HeldBytes(), 0);
    QVERIFY(desk.window->backingStore()->size().width() <= 1);
    QCOMPARE(desk.window->Ground().HeldBytes(), 0);
}

// As it is put away where there is no tray.
void TestWindowRest::MinimisedWindowRestsToo() {
    RestingDesk desk;
    desk.Show();
    desk.WaitForPictures();
    desk.window->showMinimized();
    QTRY_VERIFY(desk.window->IsResting());
    QTRY_COMPARE(desk.window->Pictures().KeptBytes(), 0);
    QCOMPARE(desk.Editor()->Background().HeldBytes(), 0);
    QCOMPARE(desk.window->Ground().HeldBytes(), 0);
    desk.window->BringToFront();
    QVERIFY(!desk.window->IsResting());
    QTRY_COMPARE(desk.window->Ground().HeldBytes(), BytesOf(*desk.window));
    desk.WaitForPictures();
    QVERIFY(desk.window->Pictures().KeptBytes() > 0);
}

void TestWindowRest::WindowThatComesBackLooksAsBefore() {
    RestingDesk desk;
    desk.Show();
    desk.WaitForPictures();
    const auto* list = desk.Find<QListWidget>("pictureList");
    for (int row = 0; row < list->count(); ++row) {
        QTRY_VERIFY(!list->item(row)->icon().isNull());
    }
    const QImage before = StillParts(desk);
    desk.window->PutAway();
    QTRY_VERIFY(desk.window->IsResting());
    desk.window->BringToFront();
    // In its first picture already, before anything was read again.
    QCOMPARE(PixelsThatDiffer(StillParts(desk), before), 0);
    QVERIFY(!desk.window->IsResting());
    QVERIFY(QTest::qWaitForWindowExposed(desk.window.get()));
    desk.WaitForPictures();
    QVERIFY(desk.window->Pictures().KeptBytes() > 0);
    QTRY_COMPARE(desk.window->backingStore()->size(), desk.window->size());
    QCOMPARE(PixelsThatDiffer(StillParts(desk), before), 0);
}

void TestWindowRest::FrameThatIsComposedInTheTrayLeavesNothing() {
    QVERIFY(QFile::remove(FrameStore::DefaultPath()));
    RestingDesk desk;
    QTRY_VERIFY_WITH_TIMEOUT(desk.window->Pictures().ReadCount() > 0, 20000);
    QTRY_COMPARE(desk.window->Pictures().KeptBytes(), 0);
    QVERIFY(!desk.window->isVisible());
}

void TestWindowRest::TrayStartComesToRest() {
    RestingDesk desk;
    QTRY_VERIFY(desk.window->IsResting());
    QCOMPARE(desk.window->Pictures().ReadCount(), 0);
    desk.Show();
    desk.WaitForPictures();
    QVERIFY(desk.window->Pictures().KeptBytes() > 0);
}

KIVO_TEST(TestWindowRest)
#include "tst_window_rest.moc"
