#include "compose/item_drawing.h"
#include "support/custom_page_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// What the editor shows is what the panel shows: the same ink in the same places.
class TestWindowLikeness : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void TextsStandWhereThePanelHasThem_data();
    void TextsStandWhereThePanelHasThem();
    void BackgroundIsThePanels_data();
    void BackgroundIsThePanels();
};

namespace {

// A canvas that is black but for its texts, so that ink is what is bright.
QString BlackPicture(const QTemporaryDir& folder) {
    const QString path = folder.filePath(QStringLiteral("black.png"));
    QImage black(640, 640, QImage::Format_RGB32);
    black.fill(Qt::black);
    black.save(path);
    return path;
}

// The ink inside a part of a picture; empty where there is none.
QRect Ink(const QImage& picture, const QRect& part) {
    constexpr int kBright = 110;
    QRect ink;
    const QRect inside = part & picture.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (qGray(picture.pixel(x, y)) > kBright) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    return ink;
}

// The editor's picture of the screen, at the editor's magnification.
QImage Preview(const CustomDesk& desk) {
    return desk.Editor()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// Shows the editor the texts that the panel has.
void ShowTheSameTexts(const CustomDesk& desk) {
    desk.Editor()->SetLiveTexts(desk.Session().ShownTexts());
}

}  // namespace

void TestWindowLikeness::initTestCase() {
    PrepareApplication();
}

void TestWindowLikeness::TextsStandWhereThePanelHasThem_data() {
    QTest::addColumn<QString>("locale");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("variant");
    for (const char* locale : {"zh_CN", "en_US", "ru_RU"}) {
        for (int orientation : {0, 1}) {
            for (int variant : {0, 1}) {
                QTest::addRow("%s, %s, %s", locale, orientation == 0 ? "lying" : "standing",
                              variant == 0 ? "five items" : "one item")
                    << QString::fromLatin1(locale) << orientation << variant;
            }
        }
    }
}

void TestWindowLikeness::TextsStandWhereThePanelHasThem() {
    QFETCH(QString, locale);
    QFETCH(int, orientation);
    QFETCH(int, variant);
    SetUpFactoryLayouts(orientation, variant, LanguageForLocale(QLocale(locale)));
    const QTemporaryDir folder;
    CustomDesk desk{QLocale(locale)};
    desk.pictureToChoose = BlackPicture(folder);
    desk.ClickRow("pictureList", 0);
    desk.Tick(variant == 0 ? 6 : 3);  // date and time in one slot; the memory alone
    desk.WriteText(QStringLiteral("Kivo 文字"));
    desk.Drag(desk.RowPlace(2), desk.RowPlace(0));
    QCOMPARE(desk.Editor()->Edited().textRow, 0);
    desk.ApplyAndCompare();

    const ScreenState state = desk.Session().Applied();
    ItemTexts texts;
    QImage panel;
    // Of one moment: a value may be sent between the two.
    const auto takeBoth = [&] {
        texts = desk.Session().ShownTexts();
        panel = desk.panel.State().UprightImage();
        return desk.PanelShows(state) && texts == desk.Session().ShownTexts() &&
               panel == desk.panel.State().UprightImage();
    };
    QTRY_VERIFY_WITH_TIMEOUT(takeBoth(), 20000);
    desk.Editor()->SetLiveTexts(texts);
    const QImage preview = Preview(desk);

    const ScreenMapping map = MappingFor(state.orientation, desk.Editor()->size());
    const PanelTexts laidOut = LayOutPanelTexts(state, texts);
    QVector<QRect> places;
    for (const TextRun& run : laidOut.runs) {
        places.append(run.rect);
    }
    QVERIFY(!laidOut.freeText.lines.isEmpty());
    places.append(laidOut.freeText.bounds);
    QVERIFY(places.size() >= 3);
    for (const QRect& place : qAsConst(places)) {
        const QRect onPanel = Ink(panel, place);
        QVERIFY(!onPanel.isEmpty());
        const QPointF corner = map.Mapped(QPointF(place.topLeft()));
        const QRectF magnified(corner, QSizeF(place.size()) * map.scale);
        const QRect inEditor = Ink(preview, magnified.toAlignedRect());
        QVERIFY(!inEditor.isEmpty());
        // A pixel of the panel, and what antialiasing takes.
        const double tolerance = 1.5 * map.scale + 1;
        const QRectF expected(map.Mapped(QPointF(onPanel.topLeft())), QSizeF(onPanel.size()) * map.scale);
        const QByteArray told = QStringLiteral("place %1,%2: expected %3,%4 to %5,%6, shown %7,%8 to %9,%10")
                                    .arg(place.x())
                                    .arg(place.y())
                                    .arg(expected.left())
                                    .arg(expected.top())
                                    .arg(expected.right())
                                    .arg(expected.bottom())
                                    .arg(inEditor.left())
                                    .arg(inEditor.top())
                                    .arg(inEditor.right() + 1)
                                    .arg(inEditor.bottom() + 1)
                                    .toUtf8();
        QVERIFY2(qAbs(expected.left() - inEditor.left()) <= tolerance, told.constData());
        QVERIFY2(qAbs(expected.top() - inEditor.top()) <= tolerance, told.constData());
        QVERIFY2(qAbs(expected.right() - (inEditor.right() + 1)) <= tolerance, told.constData());
        QVERIFY2(qAbs(expected.bottom() - (inEditor.bottom() + 1)) <= tolerance, told.constData());
    }
}

void TestWindowLikeness::BackgroundIsThePanels_data() {
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("trimmed");
    QTest::newRow("lying") << 0 << false;
    QTest::newRow("lying, trimmed") << 0 << true;
    QTest::newRow("standing") << 1 << false;
    QTest::newRow("standing, trimmed") << 1 << true;
}

void TestWindowLikeness::BackgroundIsThePanels() {
    QFETCH(int, orientation);
    QFETCH(bool, trimmed);
    SetUpFactoryLayouts(orientation);
    CustomDesk desk;
    desk.ClickRow("pictureList", 5);
    if (trimmed) {
        desk.Tap("btnEdit");
        desk.Tap("trimButton");
        desk.Wheel(desk.Editor()->rect().center(), 9);
        desk.Key(Qt::Key_Left, Qt::ShiftModifier);
        desk.Key(Qt::Key_Down, Qt::ShiftModifier);
        QVERIFY(IsTrimmed(desk.Layout()));
    }
    desk.ApplyAndCompare();
    ShowTheSameTexts(desk);
    const ScreenState state = desk.Session().Applied();
    const ScreenMapping map = MappingFor(state.orientation, desk.Editor()->size());
    const QSize canvas = CanvasSize(state.orientation);
    const QImage preview = Preview(desk);
    // In pixels four times as large: two ways of scaling a picture differ in its finest detail.
    const QSize coarse = canvas / 4;
    const QImage shrunk =
        preview.copy(map.left, map.top, int(canvas.width() * map.scale), int(canvas.height() * map.scale))
            .scaled(coarse, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage panel = desk.panel.State()
                             .UprightImage()
                             .convertToFormat(QImage::Format_RGB32)
                             .scaled(coarse, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    // The corners are round in the editor; text edges differ with the magnification.
    double difference = 0;
    int count = 0;
    for (int y = 2; y < coarse.height() - 2; ++y) {
        for (int x = 2; x < coarse.width() - 2; ++x, ++count) {
            difference += qAbs(qGray(panel.pixel(x, y)) - qGray(shrunk.pixel(x, y)));
        }
    }
    QVERIFY2(difference / count < 4.5, qPrintable(QString::number(difference / count)));
}

KIVO_TEST(TestWindowLikeness)
#include "tst_window_likeness.moc"
