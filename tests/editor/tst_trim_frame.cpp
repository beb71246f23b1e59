#include <QTest>

#include "compose/background_picture.h"
#include "editor/trim_frame.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;
constexpr QSize kPanelShaped(1280, 680);
constexpr QSize kTall(1280,
                      2560);  // in landscape 320 x 640 panel pixels, 235 of them above the untrimmed view

TrimView Untrimmed(QSize picture, Orientation orientation = kLying) {
    return MakeTrimView(picture, orientation, LayoutRecord());
}

bool IsClose(const QRectF& a, const QRectF& b, double tolerance = 1e-6) {
    return qAbs(a.left() - b.left()) <= tolerance && qAbs(a.top() - b.top()) <= tolerance &&
           qAbs(a.width() - b.width()) <= tolerance && qAbs(a.height() - b.height()) <= tolerance;
}

QString Describe(const QRectF& r) {
    return QStringLiteral("%1,%2 %3 x %4").arg(r.left()).arg(r.top()).arg(r.width()).arg(r.height());
}

void Compare(const QRectF& actual, const QRectF& expected, double tolerance = 1e-6) {
    QVERIFY2(IsClose(actual, expected, tolerance),
             qPrintable(Describe(actual) + QStringLiteral(", expected ") + Describe(expected)));
}

}  // namespace

Q_DECLARE_METATYPE(kivo::Orientation)
Q_DECLARE_METATYPE(kivo::TrimZone)

class TestTrimFrame : public QObject {
    Q_OBJECT

private slots:
    void WithoutATrimTheFrameIsThePanel() {
        Compare(Untrimmed(kPanelShaped).frame, QRectF(0, 0, 320, 170));
        Compare(Untrimmed(kPanelShaped).picture, QRectF(0, 0, 320, 170));
        Compare(Untrimmed(kTall).frame, QRectF(0, 0, 320, 170));
        Compare(Untrimmed(kTall).picture, QRectF(0, -235, 320, 640));
        Compare(Untrimmed(QSize()).frame, QRectF(0, 0, 320, 170));
        Compare(Untrimmed(kPanelShaped, kStanding).frame, QRectF(0, 0, 170, 320));
    }

    void WhatIsStoredIsWhatIsFramed_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QSize>("picture");
        for (const QSize picture : {kPanelShaped, kTall, QSize(3000, 1000), QSize(37, 41)}) {
            const QByteArray name =
                QByteArray::number(picture.width()) + " x " + QByteArray::number(picture.height());
            QTest::newRow(("landscape, " + name).constData()) << kLying << picture;
            QTest::newRow(("portrait, " + name).constData()) << kStanding << picture;
        }
    }
    void WhatIsStoredIsWhatIsFramed() {
        QFETCH(Orientation, orientation);
        QFETCH(QSize, picture);
        TrimView view = Untrimmed(picture, orientation);
        for (const double inset : {40.0, 90.0, 200.0}) {
            for (const QPointF by :
                 {QPointF(0, 0), QPointF(-900, -900), QPointF(900, 900), QPointF(11, -7)}) {
                TrimView moved = view;
                moved.frame = ZoomedFrame(view, inset, orientation);
                const QRectF frame = MovedFrame(moved, by);
                LayoutRecord layout;
                StoreTrim(frame, orientation, layout);
                // Whole panel pixels are kept: half a pixel of the corner, the same of the size.
                Compare(MakeTrimView(picture, orientation, layout).frame, frame, 0.51);
                QVERIFY(layout.xZoom >= 0 && layout.yZoom >= 0);
                QCOMPARE(qMax(layout.xZoom, layout.yZoom), int(inset));
            }
        }
    }

    // What is composed is what is framed.
    void TheFramedPartIsTheOneThatIsPlaced() {
        QImage picture(kPanelShaped, QImage::Format_RGB32);
        picture.fill(Qt::black);
        // A white block just as large as the frame will be.
        const QRectF frame(80, 40, 160, 85);
        for (int y = 160; y < 500; ++y) {
            for (int x = 320; x < 960; ++x) {
                picture.setPixel(x, y, qRgb(255, 255, 255));
            }
        }
        LayoutRecord layout;
        StoreTrim(frame, kLying, layout);
        const QImage placed = PlacedPicture(picture, QSize(320, 170), kLying, layout);
        for (const QPoint corner : {QPoint(1, 1), QPoint(318, 1), QPoint(1, 168), QPoint(318, 168)}) {
            QCOMPARE(qGray(placed.pixel(corner)), 255);
        }
        LayoutRecord wider = layout;
        StoreTrim(frame.adjusted(-32, -17, 32, 17), kLying, wider);
        const QImage more = PlacedPicture(picture, QSize(320, 170), kLying, wider);
        QCOMPARE(qGray(more.pixel(1, 1)), 0);
        QCOMPARE(qGray(more.pixel(160, 85)), 255);
    }

    void ZonesAreNumberedAsTheyAre() {
        const QRectF frame(100, 50, 160, 85);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(100, 50))), 0);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(260, 50))), 1);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(100, 135))), 2);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(260, 135))), 3);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(180, 90))), 4);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(100, 90))), 5);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(260, 90))), 6);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(180, 50))), 7);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(180, 135))), 8);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(60, 90))), -1);
        QCOMPARE(int(TrimZoneAt(frame, QPointF(180, 160))), -1);
    }

    void CornersComeBeforeEdges() {
        const QRectF frame(100, 50, 160, 85);
        QCOMPARE(TrimZoneAt(frame, QPointF(106, 50)), TrimZone::TopLeft);
        QCOMPARE(TrimZoneAt(frame, QPointF(100, 57)), TrimZone::TopLeft);
        QCOMPARE(TrimZoneAt(frame, QPointF(112, 50)), TrimZone::Top);
    }

    void ASmallFrameHasAMiddleToMoveItBy() {
        for (const QSizeF size : {QSizeF(80, 42.5), QSizeF(20, 10.6), QSizeF(10.6, 20), QSizeF(6, 3.2)}) {
            const QRectF frame(QPointF(100, 50), size);
            for (const double x : {0.34, 0.5, 0.66}) {
                for (const double y : {0.34, 0.5, 0.66}) {
                    const QPointF at(frame.left() + x * frame.width(), frame.top() + y * frame.height());
                    QCOMPARE(TrimZoneAt(frame, at), TrimZone::Inside);
                }
            }
            QCOMPARE(TrimZoneAt(frame, frame.topLeft()), TrimZone::TopLeft);
            QCOMPARE(TrimZoneAt(frame, frame.bottomRight()), TrimZone::BottomRight);
            QCOMPARE(TrimZoneAt(frame, QPointF(frame.left(), frame.center().y())), TrimZone::Left);
            QCOMPARE(TrimZoneAt(frame, QPointF(frame.center().x(), frame.bottom())), TrimZone::Bottom);
        }
    }

    void Cursors() {
        QCOMPARE(TrimCursor(TrimZone::TopLeft), Qt::SizeFDiagCursor);
        QCOMPARE(TrimCursor(TrimZone::BottomRight), Qt::SizeFDiagCursor);
        QCOMPARE(TrimCursor(TrimZone::TopRight), Qt::SizeBDiagCursor);
        QCOMPARE(TrimCursor(TrimZone::BottomLeft), Qt::SizeBDiagCursor);
        QCOMPARE(TrimCursor(TrimZone::Left), Qt::SizeHorCursor);
        QCOMPARE(TrimCursor(TrimZone::Right), Qt::SizeHorCursor);
        QCOMPARE(TrimCursor(TrimZone::Top), Qt::SizeVerCursor);
        QCOMPARE(TrimCursor(TrimZone::Bottom), Qt::SizeVerCursor);
        QCOMPARE(TrimCursor(TrimZone::Inside), Qt::SizeAllCursor);
        QCOMPARE(TrimCursor(TrimZone::None), Qt::ArrowCursor);
    }

    void MovingStaysOnThePicture() {
        TrimView view = Untrimmed(kTall);
        Compare(MovedFrame(view, QPointF(50, 30)), QRectF(0, 30, 320, 170));
        Compare(MovedFrame(view, QPointF(0, -999)), QRectF(0, -235, 320, 170));
        Compare(MovedFrame(view, QPointF(0, 999)), QRectF(0, 235, 320, 170));
    }

    void ResizingKeepsTheOppositeSide_data() {
        QTest::addColumn<TrimZone>("zone");
        QTest::addColumn<QPointF>("by");
        QTest::addColumn<QRectF>("frame");
        // From 80,40 160 x 85. 17 panel pixels of height are 32 of width.
        QTest::newRow("top left") << TrimZone::TopLeft << QPointF(5, 17) << QRectF(112, 57, 128, 68);
        QTest::newRow("top right") << TrimZone::TopRight << QPointF(5, 17) << QRectF(80, 57, 128, 68);
        QTest::newRow("top") << TrimZone::Top << QPointF(5, 17) << QRectF(96, 57, 128, 68);
        QTest::newRow("bottom left") << TrimZone::BottomLeft << QPointF(5, 17) << QRectF(48, 40, 192, 102);
        QTest::newRow("bottom right") << TrimZone::BottomRight << QPointF(5, 17) << QRectF(80, 40, 192, 102);
        QTest::newRow("bottom") << TrimZone::Bottom << QPointF(5, 17) << QRectF(64, 40, 192, 102);
        QTest::newRow("left") << TrimZone::Left << QPointF(32, 5) << QRectF(112, 48.5, 128, 68);
        QTest::newRow("right") << TrimZone::Right << QPointF(32, 5) << QRectF(80, 31.5, 192, 102);
    }
    void ResizingKeepsTheOppositeSide() {
        QFETCH(TrimZone, zone);
        QFETCH(QPointF, by);
        QFETCH(QRectF, frame);
        TrimView view = Untrimmed(kPanelShaped);
        view.frame = QRectF(80, 40, 160, 85);
        Compare(ResizedFrame(view, zone, by, kLying), frame);
    }

    void TheFrameIsNeverLargerThanUntrimmedNorSmallerThanAQuarter() {
        for (const Orientation orientation : {kLying, kStanding}) {
            const TrimView view = Untrimmed(kPanelShaped, orientation);
            const QSizeF panel = CanvasSize(orientation);
            Compare(ResizedFrame(view, TrimZone::BottomRight, QPointF(500, 500), orientation), view.frame);
            Compare(ZoomedFrame(view, -50, orientation), view.frame);
            QCOMPARE(ResizedFrame(view, TrimZone::BottomRight, QPointF(-900, -900), orientation).size(),
                     panel / 4);
            QCOMPARE(ZoomedFrame(view, 5000, orientation).size(), panel / 4);
        }
    }

    void AFrameThatGrowsAtThePicturesEdgeMovesInstead() {
        TrimView view = Untrimmed(kPanelShaped);
        view.frame = QRectF(160, 85, 160, 85);
        Compare(ResizedFrame(view, TrimZone::BottomRight, QPointF(0, 17), kLying), QRectF(128, 68, 192, 102));
    }

    void ZoomingKeepsTheMiddle() {
        TrimView view = Untrimmed(kPanelShaped);
        const QRectF frame = ZoomedFrame(view, 32, kLying);
        Compare(frame, QRectF(16, 8.5, 288, 153));
    }

    void AClearedTrimIsNone() {
        LayoutRecord layout;
        StoreTrim(QRectF(10, 10, 160, 85), kLying, layout);
        QVERIFY(layout != LayoutRecord());
        ClearTrim(layout);
        QCOMPARE(layout, LayoutRecord());
    }
};

KIVO_APPLESS_TEST(TestTrimFrame)
#include "tst_trim_frame.moc"
