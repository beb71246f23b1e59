#include "editor/trim_tool.h"
#include "layout_editor_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// Of the panel's shape, so in landscape the untrimmed view is all of it and stands at 1,41 432 x 229.5.
constexpr QSize kPicture(1280, 680);
constexpr QPoint kTopLeft(1, 41);
constexpr QPoint kMiddle(217, 155);
constexpr QPoint kRight(433, 155);

struct Trimmer : Hands {
    explicit Trimmer(const ThemeState& themes = CustomThemes(), QSize picture = kPicture) : Hands(themes) {
        trim.SetPlace(picture, EditorSize(themes.orientation));
    }
    // The frame in widget pixels.
    QRectF Frame() const { return trim.Mapping().Mapped(trim.View().frame); }
    void Pull(QPoint from, QPoint to) {
        trim.Press(from);
        trim.Move((from + to) / 2);
        trim.Move(to);
        trim.Release(to);
    }

    TrimTool trim{editor};
};

}  // namespace

class TestTrimTool : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    // The grabbed corner follows the mouse: 27 widget pixels are 20 panel pixels.
    void ACornerIsPulledVertically() {
        Trimmer hand;
        hand.Pull(kTopLeft, kTopLeft + QPoint(200, 27));
        QCOMPARE(hand.Layout().yZoom, 20);
        QCOMPARE(hand.Layout().xZoom, 38);  // the panel's shape
        QCOMPARE(hand.Layout().xPt, 38);
        QCOMPARE(hand.Layout().yPt, 20);
        const QPoint corner = hand.Frame().topLeft().toPoint();
        hand.Pull(corner, corner - QPoint(0, 27));
        QVERIFY(hand.Layout().xZoom <= 1);
    }

    void ASideIsPulledHorizontally() {
        Trimmer hand;
        hand.Pull(kRight, kRight - QPoint(54, 90));
        QCOMPARE(hand.Layout().xZoom, 40);
        QCOMPARE(hand.Layout().xPt, 0);
        QVERIFY(qAbs(hand.Frame().right() - (kRight.x() - 54)) < 1.5);
    }

    void TheInsideMovesTheFrame() {
        Trimmer hand;
        hand.Pull(kTopLeft, kTopLeft + QPoint(0, 115));
        const QRectF before = hand.Frame();
        const QPoint middle = before.center().toPoint();
        hand.trim.Press(middle);
        QVERIFY(hand.trim.IsMoving());
        hand.trim.Move(middle - QPoint(27, 54));
        QVERIFY(hand.trim.Release(middle - QPoint(27, 54)));
        QVERIFY(!hand.trim.IsMoving());
        QVERIFY((hand.Frame().topLeft() - before.translated(-27, -54).topLeft()).manhattanLength() < 1.5);
        QVERIFY(qAbs(hand.Frame().width() - before.width()) < 0.01);
    }

    void TheLayoutChangesWithTheReleaseOnly() {
        Trimmer hand;
        hand.trim.Press(kTopLeft);
        hand.trim.Move(kTopLeft + QPoint(0, 60));
        QVERIFY(!IsTrimmed(hand.Layout()));
        const QRectF during = hand.Frame();
        hand.trim.Release(kTopLeft + QPoint(0, 60));
        QVERIFY(IsTrimmed(hand.Layout()));
        QCOMPARE(hand.Frame(), during);
        QVERIFY(hand.editor.Undo());
        QVERIFY(!hand.editor.CanUndo());
    }

    void ADragThatIsGivenUpChangesNothing() {
        Trimmer hand;
        hand.trim.Press(kTopLeft);
        hand.trim.Move(kTopLeft + QPoint(0, 60));
        hand.trim.GiveUp();
        QVERIFY(!hand.trim.Release(kTopLeft + QPoint(0, 60)));
        QVERIFY(!IsTrimmed(hand.Layout()));
    }

    void APressOutsideTheFrameDoesNothing() {
        Trimmer hand;
        QVERIFY(!hand.trim.Press(QPoint(217, 20)));
        hand.Pull(QPoint(217, 20), QPoint(217, 100));
        QVERIFY(!IsTrimmed(hand.Layout()));
    }

    void TheFrameStaysOnThePictureAndWithinItsSizes() {
        Trimmer hand;
        hand.Pull(kTopLeft, kTopLeft + QPoint(0, 900));
        QCOMPARE(hand.Layout().xZoom, kLargestInset);
        hand.Pull(hand.Frame().center().toPoint(), QPoint(-900, -900));
        QVERIFY((hand.Frame().topLeft() - QPointF(kTopLeft)).manhattanLength() < 1);
        hand.Pull(hand.Frame().center().toPoint(), QPoint(900, 900));
        QVERIFY((hand.Frame().bottomRight() - QPointF(433, 270.5)).manhattanLength() < 1);
        hand.Pull(hand.Frame().topLeft().toPoint(), QPoint(-900, -900));
        QVERIFY(!IsTrimmed(hand.Layout()));
    }

    void ANotchIsEightPixelsOfTheLongSide() {
        Trimmer hand;
        QVERIFY(hand.trim.Wheel(120, kMiddle));
        QCOMPARE(hand.Layout().xZoom, 8);
        QVERIFY(hand.trim.Wheel(-120, kMiddle));
        QVERIFY(!IsTrimmed(hand.Layout()));
        hand.trim.Wheel(-120, kMiddle);
        QVERIFY(!IsTrimmed(hand.Layout()));
    }

    void PartsOfANotchAddUp() {
        Trimmer hand;
        for (int part = 0; part < 12; ++part) {
            hand.trim.Wheel(10, kMiddle);
        }
        QCOMPARE(hand.Layout().xZoom, 8);
    }

    void TheWheelZoomsAboutTheMouse_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QPointF>("share");  // of the frame
        for (const Orientation orientation : kOrientations) {
            QTest::newRow(NameOf(orientation) + ", near a corner") << orientation << QPointF(0.1, 0.2);
            QTest::newRow(NameOf(orientation) + ", middle") << orientation << QPointF(0.5, 0.5);
            QTest::newRow(NameOf(orientation) + ", foot") << orientation << QPointF(0.7, 0.95);
        }
    }
    void TheWheelZoomsAboutTheMouse() {
        QFETCH(Orientation, orientation);
        QFETCH(QPointF, share);
        Trimmer hand(CustomThemes(orientation), QSize(2000, 2000));
        const auto place = [&hand](QPointF at) {
            const QRectF frame = hand.Frame();
            return frame.topLeft() + QPointF(frame.width() * at.x(), frame.height() * at.y());
        };
        const QPointF mouse = place(share);
        for (int notch = 0; notch < 6; ++notch) {
            hand.trim.Wheel(120, mouse);
            // The trim is kept in whole pixels of the panel.
            QVERIFY((place(share) - mouse).manhattanLength() < 3);
        }
        hand.trim.Wheel(-6 * 120, mouse);
        QVERIFY(!IsTrimmed(hand.Layout()) || hand.Layout().xZoom <= 1);
    }

    void OutsideOfTheFrameTheWheelZoomsAboutItsEdge() {
        Trimmer hand;
        const QPointF corner = hand.Frame().bottomRight();
        hand.trim.Wheel(960, corner + QPointF(40, 40));
        QVERIFY((hand.Frame().bottomRight() - corner).manhattanLength() < 3);
    }

    void KeysMoveAndSizeTheFrame() {
        Trimmer hand;
        for (int k = 0; k < 10; ++k) {
            QVERIFY(hand.trim.Key(Qt::Key_Plus, Qt::NoModifier));
        }
        QCOMPARE(hand.Layout().xZoom, 40);
        const int x = hand.Layout().xPt;
        const int y = hand.Layout().yPt;
        hand.trim.Key(Qt::Key_Left, Qt::NoModifier);
        hand.trim.Key(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(hand.Layout().xPt, x - 1);
        QCOMPARE(hand.Layout().yPt, y + 10);
        hand.trim.Key(Qt::Key_Minus, Qt::NoModifier);
        QCOMPARE(hand.Layout().xZoom, 36);
        QVERIFY(!hand.trim.Key(Qt::Key_A, Qt::NoModifier));
    }

    void AnotherPictureClearsTheTrimAndTheSameKeepsIt() {
        Trimmer hand;
        hand.trim.Wheel(480, kMiddle);
        hand.editor.SetPicture(DefaultBackground());
        QVERIFY(IsTrimmed(hand.Layout()));
        hand.editor.SetPicture(QStringLiteral("://background/4.jpg"));
        QVERIFY(!IsTrimmed(hand.Layout()));
    }

    void TurningKeepsEachRecordsTrim() {
        ThemeState themes = CustomThemes();
        themes.mode = 0;
        Trimmer hand(themes);
        hand.trim.Wheel(480, kMiddle);
        const LayoutRecord lying = hand.Layout();
        QVERIFY(IsTrimmed(lying));
        hand.editor.Turn(Orientation::Portrait);
        QVERIFY(!IsTrimmed(hand.Layout()));
        hand.editor.Turn(Orientation::Landscape);
        QCOMPARE(hand.Layout(), lying);
    }

    void ResettingShowsThePictureUntrimmed() {
        Trimmer hand;
        hand.trim.Wheel(480, kMiddle);
        hand.editor.ClearTrim();
        QVERIFY(!IsTrimmed(hand.Layout()));
        hand.editor.Undo();
        QVERIFY(IsTrimmed(hand.Layout()));
    }

    void WithoutAPictureNothingIsHarmed() {
        Trimmer hand(CustomThemes(), QSize());
        hand.Pull(kTopLeft, kTopLeft + QPoint(0, 60));
        hand.trim.Wheel(240, kMiddle);
        QVERIFY(hand.Layout().xZoom > 0);
    }
};

KIVO_TEST(TestTrimTool)
#include "tst_trim_tool.moc"
