#include <QMainWindow>
#include <QtTest>

#include "resources/resources.h"
#include "support/test_program.h"
#include "window/window_ground.h"

using namespace kivo;

namespace {

constexpr QSize kWindow(960, 588);
const QString kPicture = QStringLiteral(":/skins/background_01.png");

struct Window : QWidget {
    Window() { resize(kWindow); }
};

QImage Shown(QWidget& window) {
    return window.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

}  // namespace

// The picture under everything that stands in the window.
class TestWindowGround : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void LooksAsTheStyleSheetHasIt();
    void LooksTheSameFetchedOrNot();
    void PartsArePaintedInTheirPlace();
    void FollowsTheSize();
    void LetGoItHoldsNothingAndComesBack();
    void EndsWhileItIsDecoded();
};

void TestWindowGround::initTestCase() {
    InitResources();
}

void TestWindowGround::LooksAsTheStyleSheetHasIt() {
    QMainWindow styled;
    styled.resize(kWindow);
    styled.setObjectName(QStringLiteral("MainWindow"));
    styled.setStyleSheet(QStringLiteral("#MainWindow{border-image:url(:/skins/background_01.png)}"));
    Window window;
    const WindowGround ground(window, kPicture);
    QCOMPARE(Shown(window), Shown(styled));
}

void TestWindowGround::LooksTheSameFetchedOrNot() {
    Window one;
    const WindowGround unasked(one, kPicture);
    Window other;
    WindowGround fetched(other, kPicture);
    fetched.Fetch();
    QCOMPARE(Shown(other), Shown(one));
    const qint64 held = fetched.HeldBytes();
    QVERIFY(held > 0);
    fetched.Fetch();
    QCOMPARE(fetched.HeldBytes(), held);
}

void TestWindowGround::PartsArePaintedInTheirPlace() {
    Window window;
    const WindowGround ground(window, kPicture);
    const QImage whole = Shown(window);
    const QRect part(500, 90, 60, 40);
    QImage drawn(kWindow, QImage::Format_RGB32);
    drawn.fill(Qt::red);
    window.render(&drawn, part.topLeft(), part);
    QCOMPARE(drawn.copy(part), whole.copy(part));
    QCOMPARE(drawn.pixelColor(part.left() - 1, part.top()), QColor(Qt::red));
}

// As on a screen of another scale: what was fetched is of no use.
void TestWindowGround::FollowsTheSize() {
    Window window;
    WindowGround ground(window, kPicture);
    ground.Fetch();
    window.resize(480, 294);
    const QImage small = Shown(window);
    const QSize pixels = (QSizeF(480, 294) * window.devicePixelRatioF()).toSize();
    QCOMPARE(ground.HeldBytes(), qint64(pixels.width()) * pixels.height() * 4);
    Window other;
    other.resize(480, 294);
    const WindowGround straight(other, kPicture);
    QCOMPARE(small, Shown(other));
}

void TestWindowGround::LetGoItHoldsNothingAndComesBack() {
    Window window;
    WindowGround ground(window, kPicture);
    const QImage before = Shown(window);
    ground.LetGo();
    QCOMPARE(ground.HeldBytes(), 0);
    ground.Fetch();
    ground.LetGo();
    QCOMPARE(ground.HeldBytes(), 0);
    QCOMPARE(Shown(window), before);
}

void TestWindowGround::EndsWhileItIsDecoded() {
    Window window;
    WindowGround(window, kPicture).Fetch();
    QVERIFY(!Shown(window).isNull());
}

KIVO_TEST(TestWindowGround)
#include "tst_window_ground.moc"
