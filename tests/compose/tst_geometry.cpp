#include <QTest>

#include "compose/geometry.h"
#include "support/test_program.h"

Q_DECLARE_METATYPE(kivo::Orientation)

using namespace kivo;

class TestGeometry : public QObject {
    Q_OBJECT

private slots:
    void CanvasIsThePanelLyingOrStanding() {
        QCOMPARE(CanvasSize(Orientation::Landscape), QSize(320, 170));
        QCOMPARE(CanvasSize(Orientation::Portrait), QSize(170, 320));
        QCOMPARE(kFrameBytes, 108800);
    }

    void CornersAreInclusive() {
        const QRect rect = Corners(10, 16, 91, 45);
        QCOMPARE(rect.size(), QSize(82, 30));
        QCOMPARE(rect.right(), 91);
        QCOMPARE(rect.bottom(), 45);
    }

    void HalvesHaveEqualWidth_data() {
        QTest::addColumn<QRect>("rect");
        QTest::addColumn<QRect>("left");
        QTest::addColumn<QRect>("right");
        QTest::addColumn<QRect>("both");

        QTest::newRow("even width") << Corners(10, 16, 91, 45) << Corners(10, 16, 50, 45)
                                    << Corners(51, 16, 91, 45) << Corners(10, 16, 91, 45);
        QTest::newRow("odd width loses its last column") << Corners(1, 18, 67, 41) << Corners(1, 18, 33, 41)
                                                         << Corners(34, 18, 66, 41) << Corners(1, 18, 66, 41);
        QTest::newRow("two columns") << Corners(0, 0, 1, 0) << Corners(0, 0, 0, 0) << Corners(1, 0, 1, 0)
                                     << Corners(0, 0, 1, 0);
    }
    void HalvesHaveEqualWidth() {
        QFETCH(QRect, rect);
        QFETCH(QRect, left);
        QFETCH(QRect, right);
        QFETCH(QRect, both);
        QCOMPARE(Halves(rect), (QVector<QRect>{left, right}));
        QCOMPARE(EvenPart(rect), both);
        QCOMPARE(Halves(rect).first() | Halves(rect).last(), EvenPart(rect));
    }

    void HalvesOfOneColumnAreEmpty() {
        for (const QRect& half : Halves(Corners(5, 5, 5, 20))) {
            QVERIFY(half.isEmpty());
        }
        QVERIFY(EvenPart(Corners(5, 5, 5, 20)).isEmpty());
    }

    void WhatFitsOneReport_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("bytes");
        QTest::addColumn<bool>("fits");

        QTest::newRow("40 x 51, 7 bytes to spare") << QSize(40, 51) << 4080 << true;
        QTest::newRow("half a slot") << QSize(41, 30) << 2460 << true;
        QTest::newRow("a whole slot") << QSize(82, 30) << 4920 << false;
        QTest::newRow("4086 bytes") << QSize(227, 9) << 4086 << true;
        QTest::newRow("4088 bytes, one more than the report carries") << QSize(73, 28) << 4088 << false;
        QTest::newRow("one pixel") << QSize(1, 1) << 2 << true;
    }
    void WhatFitsOneReport() {
        QFETCH(QSize, size);
        QFETCH(int, bytes);
        QFETCH(bool, fits);
        const QRect rect(QPoint(3, 4), size);
        QCOMPARE(CutBytes(rect), bytes);
        QCOMPARE(FitsOneReport(rect), fits);
    }

    void ColumnsAreAsFewAsFit_data() {
        QTest::addColumn<QRect>("rect");
        QTest::addColumn<int>("count");

        QTest::newRow("fits whole") << QRect(7, 9, 40, 51) << 1;
        QTest::newRow("slot in two") << QRect(10, 16, 82, 30) << 2;
        QTest::newRow("odd width in two") << QRect(0, 0, 81, 30) << 2;
        QTest::newRow("in three") << QRect(2, 3, 145, 40) << 3;
        QTest::newRow("half of the large date in two") << QRect(69, 138, 93, 32) << 2;
        QTest::newRow("hours of the large time by digit") << QRect(100, 84, 44, 52) << 2;
        QTest::newRow("in four") << QRect(1, 1, 199, 40) << 4;
        QTest::newRow("one pixel") << QRect(0, 0, 1, 1) << 1;
    }
    void ColumnsAreAsFewAsFit() {
        QFETCH(QRect, rect);
        QFETCH(int, count);
        const QVector<QRect> columns = ColumnsThatFit(rect);
        QCOMPARE(columns.size(), count);
        int next = rect.left();
        for (const QRect& column : columns) {
            QVERIFY(FitsOneReport(column));
            QCOMPARE(column.left(), next);
            QCOMPARE(column.top(), rect.top());
            QCOMPARE(column.height(), rect.height());
            QVERIFY(qAbs(column.width() - columns.first().width()) <= 1);
            next = column.right() + 1;
        }
        QCOMPARE(next, rect.right() + 1);
    }

    void WhatDoesNotFitInFourStaysInFour() {
        const QVector<QRect> columns = ColumnsThatFit(QRect(0, 0, 320, 170));
        QCOMPARE(columns.size(), 4);
        for (const QRect& column : columns) {
            QCOMPARE(column.size(), QSize(80, 170));
            QVERIFY(!FitsOneReport(column));
        }
    }

    void NothingHasNoColumnWithPixels() {
        for (const QRect& column : ColumnsThatFit(QRect())) {
            QVERIFY(column.isEmpty());
        }
    }

    void WireIsAlwaysLandscape_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QRect>("canvas");
        QTest::addColumn<QRect>("wire");

        QTest::newRow("landscape as it is")
            << Orientation::Landscape << Corners(10, 16, 91, 45) << QRect(10, 16, 82, 30);
        QTest::newRow("portrait slot 0")
            << Orientation::Portrait << Corners(1, 18, 67, 41) << QRect(18, 102, 24, 67);
        QTest::newRow("portrait upper left corner")
            << Orientation::Portrait << QRect(0, 0, 1, 1) << QRect(0, 169, 1, 1);
        QTest::newRow("portrait lower right corner")
            << Orientation::Portrait << QRect(169, 319, 1, 1) << QRect(319, 0, 1, 1);
        QTest::newRow("whole portrait canvas")
            << Orientation::Portrait << QRect(0, 0, 170, 320) << QRect(0, 0, 320, 170);
    }
    void WireIsAlwaysLandscape() {
        QFETCH(Orientation, orientation);
        QFETCH(QRect, canvas);
        QFETCH(QRect, wire);
        QCOMPARE(WireRect(canvas, orientation), wire);
    }

    void WhatIsKeptInIsMovedNotCut_data() {
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<QRectF>("kept");
        QTest::newRow("inside") << QRectF(20, 10, 4, 6) << QRectF(20, 10, 4, 6);
        QTest::newRow("left and top") << QRectF(-3, 1, 4, 6) << QRectF(10, 5, 4, 6);
        QTest::newRow("right and bottom") << QRectF(48, 90, 4, 6) << QRectF(46, 39, 4, 6);
        QTest::newRow("no room") << QRectF(12, 7, 41, 50) << QRectF(10, 5, 41, 50);
    }
    void WhatIsKeptInIsMovedNotCut() {
        QFETCH(QRectF, rect);
        QTEST(KeptIn(rect, QRectF(10, 5, 40, 40)), "kept");
    }

    void FrameInTheAreaHasThePanelsScale() {
        QCOMPARE(AreaFrameSize(Orientation::Landscape), QSize(433, 230));
        QCOMPARE(AreaScale(Orientation::Landscape), 1.35);
        QCOMPARE(AreaFrameSize(Orientation::Portrait), QSize(170, 320));
        QCOMPARE(AreaScale(Orientation::Portrait), 1.0);
    }
};

KIVO_APPLESS_TEST(TestGeometry)
#include "tst_geometry.moc"
