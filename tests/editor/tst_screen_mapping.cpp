#include <QTest>

#include "compose/custom_layout.h"
#include "editor/screen_mapping.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;
// The sizes that the window gives the editor.
constexpr QSize kLyingSize(435, 312);
constexpr QSize kStandingSize(425, 322);

}  // namespace

Q_DECLARE_METATYPE(kivo::Orientation)

class TestScreenMapping : public QObject {
    Q_OBJECT

private slots:
    void TheScreenStandsInTheMiddle() {
        const ScreenMapping lying = MappingFor(kLying, kLyingSize);
        QCOMPARE(lying.scale, 1.35);
        QCOMPARE(lying.left, 1);
        QCOMPARE(lying.top, 41);
        const ScreenMapping standing = MappingFor(kStanding, kStandingSize);
        QCOMPARE(standing.scale, 1.0);
        QCOMPARE(standing.left, 127);
        QCOMPARE(standing.top, 1);
    }

    void SlotZones_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("slot");
        QTest::addColumn<QRect>("press");
        QTest::addColumn<QRect>("drop");
        QTest::newRow("landscape, top left") << kLying << 0 << QRect(2, 62, 135, 81) << QRect(1, 62, 137, 81);
        QTest::newRow("landscape, centre")
            << kLying << 2 << QRect(150, 122, 135, 81) << QRect(149, 122, 137, 81);
        QTest::newRow("landscape, bottom right")
            << kLying << 3 << QRect(295, 197, 135, 81) << QRect(293, 197, 137, 81);
        QTest::newRow("portrait, top left")
            << kStanding << 0 << QRect(119, 19, 85, 54) << QRect(118, 19, 87, 54);
        QTest::newRow("portrait, centre")
            << kStanding << 2 << QRect(147, 146, 130, 60) << QRect(146, 146, 132, 60);
    }
    void SlotZones() {
        QFETCH(Orientation, orientation);
        QFETCH(int, slot);
        const QSize size = orientation == kLying ? kLyingSize : kStandingSize;
        QTEST(SlotPressRect(slot, orientation, size), "press");
        QTEST(SlotDropRect(slot, orientation, size), "drop");
    }

    void TextZones_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("row");
        QTest::addColumn<QRect>("press");
        QTest::addColumn<QRect>("drop");
        QTest::addColumn<QRect>("doubleClick");
        QTest::addColumn<QRect>("box");
        QTest::newRow("landscape, first row")
            << kLying << 0 << QRect(14, 47, 405, 51) << QRect(14, 54, 405, 54) << QRect(13, 13, 405, 59)
            << QRect(14, 54, 405, 59);
        QTest::newRow("landscape, last row")
            << kLying << 2 << QRect(14, 189, 405, 51) << QRect(14, 196, 405, 54) << QRect(13, 155, 405, 59)
            << QRect(14, 196, 405, 59);
        QTest::newRow("portrait, first row")
            << kStanding << 0 << QRect(137, 37, 150, 60) << QRect(137, 37, 150, 38) << QRect(10, 36, 150, 42)
            << QRect(137, 37, 150, 42);
        QTest::newRow("portrait, middle row")
            << kStanding << 1 << QRect(137, 132, 150, 60) << QRect(137, 132, 150, 38)
            << QRect(10, 131, 150, 42) << QRect(137, 132, 150, 42);
    }
    void TextZones() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        const QSize size = orientation == kLying ? kLyingSize : kStandingSize;
        QTEST(TextPressRect(row, orientation, size), "press");
        QTEST(TextDropRect(row, orientation, size), "drop");
        QTEST(TextDoubleClickRect(row, orientation), "doubleClick");
        QTEST(TextBoxRect(row, orientation, size), "box");
    }

    void TextBoxSizes() {
        const std::array<int, kTextSizeCount> lying{22, 20, 16};
        const std::array<int, kTextSizeCount> standing{17, 15, 12};
        for (int step = 0; step < kTextSizeCount; ++step) {
            QCOMPARE(TextBoxPixelSize(step, kLying), lying[size_t(step)]);
            QCOMPARE(TextBoxPixelSize(step, kStanding), standing[size_t(step)]);
        }
    }

    void MousePositionsAreRoundedHalfAwayFromZero() {
        QCOMPARE(WholePosition(QPointF(0.5, 1.5)), QPoint(1, 2));
        QCOMPARE(WholePosition(QPointF(-0.5, -1.5)), QPoint(-1, -2));
        QCOMPARE(WholePosition(QPointF(7.4, -7.4)), QPoint(7, -7));
    }

    void APictureOfThePanelsShapeStandsAsTheScreenDoes() {
        const TrimMapping map = TrimMappingFor(kLying, kLyingSize, QRectF(0, 0, 320, 170));
        QCOMPARE(map.scale, 1.35);
        QCOMPARE(map.origin, QPointF(1, 41));
    }

    // All of the picture can be reached, however long it is.
    void EveryPictureFitsIntoTheEditor_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QRectF>("picture");
        QTest::newRow("tall, landscape") << kLying << QRectF(0, -100, 320, 370);
        QTest::newRow("very tall, landscape") << kLying << QRectF(0, -1000, 320, 2170);
        QTest::newRow("wide, landscape") << kLying << QRectF(-90, 0, 500, 170);
        QTest::newRow("wide, portrait") << kStanding << QRectF(-216, 0, 602, 320);
        QTest::newRow("tall, portrait") << kStanding << QRectF(0, -40, 170, 400);
    }
    void EveryPictureFitsIntoTheEditor() {
        QFETCH(Orientation, orientation);
        QFETCH(QRectF, picture);
        const QSize size = orientation == kLying ? kLyingSize : kStandingSize;
        const QRectF shown = TrimMappingFor(orientation, size, picture).Mapped(picture);
        // The screen's own middle is half a pixel off the editor's.
        QVERIFY2(QRectF(QPointF(-1, -1), QSizeF(size) + QSizeF(2, 2)).contains(shown),
                 qPrintable(QStringLiteral("%1 %2 %3 %4")
                                .arg(shown.left())
                                .arg(shown.top())
                                .arg(shown.right())
                                .arg(shown.bottom())));
        QVERIFY(qAbs(shown.width() / shown.height() - picture.width() / picture.height()) < 1e-9);
    }
};

KIVO_APPLESS_TEST(TestScreenMapping)
#include "tst_screen_mapping.moc"
