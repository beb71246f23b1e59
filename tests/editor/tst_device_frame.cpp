#include "editor/device_frame.h"
#include "editor_test_support.h"
#include "support/test_program.h"
#include "widgets/window_colors.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// A custom layout in the place where the window has it, its case behind.
struct Desk {
    Desk() { editor.setGeometry(QRect(QPoint(48, 118), EditorSize(Orientation::Landscape))); }

    bool Show() {
        window.resize(560, 560);
        editor.ShowTheme(CustomThemes(Orientation::Landscape), true);
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }

    QWidget window;
    ZoomWidget editor{&window};
    DeviceFrame frame{editor};
};

}  // namespace

// The case round the preview: it lies where the screen lies, and only while the screen is shown.
class TestDeviceFrame : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        SetUpDrawing();
        ForgetSettings();
    }

    void ItLiesRoundTheScreenInBothOrientations() {
        Desk desk;
        QVERIFY(desk.Show());
        QVERIFY(desk.frame.isVisible());
        // Eight pixels on all sides, four where it stands; the screen is 432 x 230 and stands in the middle
        // of its widget.
        const QPoint away = desk.frame.geometry().center() - desk.editor.geometry().center();
        QVERIFY(qAbs(away.x()) <= 1 && qAbs(away.y()) <= 1);
        QVERIFY(qAbs(desk.frame.width() - (432 + 16)) <= 1);
        QVERIFY(qAbs(desk.frame.height() - (230 + 16)) <= 1);

        desk.editor.SetOrientation(1);
        desk.editor.setGeometry(QRect(QPoint(53, 113), EditorSize(Orientation::Portrait)));
        QVERIFY(desk.frame.height() > desk.frame.width());
        QVERIFY(qAbs(desk.frame.geometry().center().x() - desk.editor.geometry().center().x()) <= 1);
        QVERIFY(qAbs(desk.frame.height() - (322 + 8)) <= 2);

        desk.editor.hide();
        QVERIFY(desk.frame.isHidden());
        desk.editor.show();
        QVERIFY(desk.frame.isVisible());
    }

    void ItMakesRoomForTheWholePicture() {
        Desk desk;
        QVERIFY(desk.Show());
        const QPoint aboveTheScreen(200, 10);  // of the editor: its well while trimming, nothing else
        desk.editor.SetEditing(true);
        QVERIFY(desk.frame.isVisible());
        QVERIFY(desk.window.grab().toImage().pixelColor(desk.editor.pos() + aboveTheScreen) !=
                window_colors::kWell);
        desk.editor.SetTrimMode(1);
        QVERIFY(desk.frame.isHidden());
        desk.editor.SetTrimMode(0);
        QVERIFY(desk.frame.isVisible());
        desk.editor.SetTrimMode(1);
        desk.editor.SetEditing(false);
        QVERIFY(desk.frame.isVisible());
    }

    void ItTakesNoInput() {
        Desk desk;
        QVERIFY(desk.frame.testAttribute(Qt::WA_TransparentForMouseEvents));
        QCOMPARE(desk.frame.focusPolicy(), Qt::NoFocus);
        // Below the editor, or it would be drawn over the screen.
        const QObjectList children = desk.window.children();
        QVERIFY(children.indexOf(&desk.frame) < children.indexOf(&desk.editor));
    }
};

KIVO_TEST(TestDeviceFrame)

#include "tst_device_frame.moc"
