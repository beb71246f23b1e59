#include <QTemporaryDir>

#include "compose/background_picture.h"
#include "editor_test_support.h"
#include "pictures/picture_reader.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;

// The built-in pictures have the panel's shape, so in landscape the untrimmed view is all of them and stands
// at 1,41 432 x 229.5.
constexpr QPoint kTopLeft(1, 41);
constexpr QPoint kBottomRight(433, 270);
constexpr QPoint kMiddle(217, 155);
constexpr QPoint kTop(217, 41);
constexpr QPoint kRight(433, 155);

struct Trimmer : Editor {
    explicit Trimmer(const ThemeState& themes = CustomThemes()) : Editor(themes) { SetTrimMode(1); }
    // The frame in widget pixels.
    QRectF Frame() {
        const TrimView view =
            MakeTrimView(LoadPicture(PicturePath(Shown())).size(), Shown().orientation, Layout());
        return TrimMappingFor(Shown().orientation, size(), view.picture).Mapped(view.frame);
    }
};

}  // namespace

class TestZoomWidgetTrim : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    void TrimModeTracksTheMouse() {
        Editor editor;
        QVERIFY(!editor.hasMouseTracking());
        editor.SetTrimMode(1);
        QVERIFY(editor.hasMouseTracking());
        editor.SetTrimMode(0);
        QVERIFY(!editor.hasMouseTracking());
    }

    void TheCursorTellsWhatThePressWouldDo_data() {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<int>("cursor");
        QTest::newRow("top left") << kTopLeft + QPoint(3, 3) << int(Qt::SizeFDiagCursor);
        QTest::newRow("top right") << QPoint(430, 43) << int(Qt::SizeBDiagCursor);
        QTest::newRow("bottom left") << QPoint(4, 268) << int(Qt::SizeBDiagCursor);
        QTest::newRow("bottom right") << kBottomRight << int(Qt::SizeFDiagCursor);
        QTest::newRow("top") << kTop << int(Qt::SizeVerCursor);
        QTest::newRow("right") << kRight << int(Qt::SizeHorCursor);
        QTest::newRow("inside") << kMiddle << int(Qt::SizeAllCursor);
        QTest::newRow("outside") << QPoint(217, 20) << int(Qt::ArrowCursor);
    }
    void TheCursorTellsWhatThePressWouldDo() {
        QFETCH(QPoint, at);
        QFETCH(int, cursor);
        Trimmer editor;
        editor.MoveTo(at, Qt::NoButton);
        QCOMPARE(int(editor.cursor().shape()), cursor);
        editor.SetTrimMode(0);
        QCOMPARE(editor.cursor().shape(), Qt::ArrowCursor);
    }

    void EscapeGivesADragUp() {
        Trimmer editor;
        editor.Press(kTopLeft);
        editor.MoveTo(kTopLeft + QPoint(0, 60));
        QTest::keyClick(&editor, Qt::Key_Escape);
        editor.Release(kTopLeft + QPoint(0, 60));
        QVERIFY(!IsTrimmed(editor.Layout()));
    }

    void AMoveThatIsInterruptedBringsThePanelBack_data() {
        QTest::addColumn<int>("how");
        QTest::newRow("Escape") << 0;
        QTest::newRow("trim mode ends") << 1;
        QTest::newRow("hidden") << 2;
    }
    void AMoveThatIsInterruptedBringsThePanelBack() {
        QFETCH(int, how);
        Trimmer editor;
        QSignalSpy remote(&editor, &ZoomWidget::HideRemote);
        editor.Press(kMiddle);
        editor.MoveTo(kMiddle + QPoint(5, 5));
        if (how == 0) {
            QTest::keyClick(&editor, Qt::Key_Escape);
        } else if (how == 1) {
            editor.SetTrimMode(0);
        } else {
            editor.hide();
        }
        QCOMPARE(remote.size(), 2);
        QCOMPARE(remote[1][0].toInt(), 0);
    }

    void EscapeLeavesTrimMode() {
        Trimmer editor;
        editor.Wheel(240, kMiddle);
        const LayoutRecord trimmed = editor.Layout();
        QTest::keyClick(&editor, Qt::Key_Escape);
        QVERIFY(!editor.IsTrimMode());
        QVERIFY(editor.IsEditing());
        QCOMPARE(editor.Layout(), trimmed);
    }

    void TheWheelActsInTrimModeOnly() {
        Editor editor;
        editor.Wheel(120, kMiddle);
        QVERIFY(!IsTrimmed(editor.Layout()));
        editor.SetTrimMode(1);
        editor.Wheel(120, kMiddle);
        QCOMPARE(editor.Layout().xZoom, 8);
        editor.Wheel(-120, kMiddle);
        QVERIFY(!IsTrimmed(editor.Layout()));
        editor.Wheel(-120, kMiddle);
        QVERIFY(!IsTrimmed(editor.Layout()));
    }

    void WithoutEditingTrimModeDoesNothing() {
        Editor editor;
        editor.SetEditing(false);
        editor.SetTrimMode(1);
        editor.Drag(kTopLeft, kTopLeft + QPoint(0, 60));
        editor.Wheel(120, kMiddle);
        QVERIFY(!IsTrimmed(editor.Layout()));
    }

    void ClosingEditingEndsTrimMode() {
        Trimmer editor;
        editor.SetEditing(false);
        QVERIFY(!editor.IsTrimMode());
        QVERIFY(!editor.hasMouseTracking());
    }

    // What the frame shows in trim mode is what the preview shows after it, and the panel.
    void WhatIsFramedIsWhatIsComposed_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QSize>("picture");
        for (const QSize picture : {QSize(1280, 680), QSize(900, 1600), QSize(1600, 500)}) {
            for (const Orientation orientation : kOrientations) {
                QTest::newRow(NameOf(orientation) + ", " + QByteArray::number(picture.width()) + " x " +
                              QByteArray::number(picture.height()))
                    << orientation << picture;
            }
        }
    }
    void WhatIsFramedIsWhatIsComposed() {
        QFETCH(Orientation, orientation);
        QFETCH(QSize, picture);
        // A slow slope both ways: a colour tells the place it comes from.
        QImage slope(picture, QImage::Format_RGB32);
        for (int y = 0; y < slope.height(); ++y) {
            for (int x = 0; x < slope.width(); ++x) {
                slope.setPixel(x, y, qRgb(x * 255 / slope.width(), y * 255 / slope.height(), 0));
            }
        }
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("slope.png"));
        QVERIFY(slope.save(path));

        Trimmer editor(CustomThemes(orientation));
        QVERIFY(editor.SetBackground(path));
        QRectF frame = editor.Frame();
        editor.Drag(frame.topLeft().toPoint(),
                    frame.topLeft().toPoint() + QPoint(0, int(frame.height() / 3)));
        frame = editor.Frame();
        editor.Drag(frame.center().toPoint(), frame.center().toPoint() - QPoint(7, 11));
        frame = editor.Frame();
        QVERIFY(IsTrimmed(editor.Layout()));

        const QImage trimming = editor.grab().toImage();
        const QImage placed = PlacedPicture(slope, CanvasSize(orientation), orientation, editor.Layout());
        for (const QPointF share :
             {QPointF(0.2, 0.2), QPointF(0.8, 0.25), QPointF(0.25, 0.8), QPointF(0.7, 0.7)}) {
            const QPointF inWidget =
                frame.topLeft() + QPointF(frame.width() * share.x(), frame.height() * share.y());
            const QRgb framed = trimming.pixel(inWidget.toPoint());
            const QRgb composed =
                placed.pixel(int(placed.width() * share.x()), int(placed.height() * share.y()));
            QVERIFY2(qAbs(qRed(framed) - qRed(composed)) <= 4 && qAbs(qGreen(framed) - qGreen(composed)) <= 4,
                     qPrintable(QStringLiteral("%1 and %2").arg(framed, 0, 16).arg(composed, 0, 16)));
        }
    }

    void TrimmingDoesNotComposeAgain() {
        Trimmer editor;
        editor.grab();
        const int composed = editor.Background().CompositionCount();
        const int read = editor.Pictures().ReadCount();
        editor.Press(kTopLeft);
        for (int y = 1; y < 20; ++y) {
            editor.MoveTo(kTopLeft + QPoint(0, y));
            editor.grab();
        }
        editor.Release(kTopLeft + QPoint(0, 20));
        editor.grab();
        QCOMPARE(editor.Background().CompositionCount(), composed);
        QCOMPARE(editor.Pictures().ReadCount(), read);
    }

    void APictureThatCannotBeReadIsTrimmedWithoutHarm() {
        const LogLines quiet;
        ThemeState themes = CustomThemes();
        themes.layouts[size_t(CustomLayoutIndex(0))].picture = QStringLiteral("/no such picture.png");
        Trimmer editor(themes);
        editor.grab();
        editor.Drag(kTopLeft, kTopLeft + QPoint(0, 60));
        editor.grab();
        QVERIFY(editor.Layout().xZoom > 0);
    }
};

KIVO_TEST(TestZoomWidgetTrim)
#include "tst_zoom_widget_trim.moc"
