#include "editor/device_frame.h"
#include "editor_test_support.h"
#include "widgets/window_colors.h"

using namespace kivo;
using namespace kivo::test;

// The case round the preview: it lies where the screen lies, and only while the screen is shown.
class TestDeviceFrame : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        SetUpDrawing();
        ForgetSettings();
    }

    void ItLiesRoundTheScreenInBothOrientations() {
        QWidget window;
        window.resize(560, 560);
        ZoomWidget editor(&window);
        editor.setGeometry(QRect(QPoint(48, 118), EditorSize(Orientation::Landscape)));
        editor.ShowTheme(CustomThemes(Orientation::Landscape), true);
        const DeviceFrame frame(editor);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(frame.isVisible());
        // Eight pixels on all sides; the screen is 432 x 230 and stands in the middle of its widget.
        const QPoint away = frame.geometry().center() - editor.geometry().center();
        QVERIFY(qAbs(away.x()) <= 1 && qAbs(away.y()) <= 1);
        QVERIFY(qAbs(frame.width() - (432 + 16)) <= 1);
        QVERIFY(qAbs(frame.height() - (230 + 16)) <= 1);

        editor.SetOrientation(1);
        editor.setGeometry(QRect(QPoint(53, 113), EditorSize(Orientation::Portrait)));
        QVERIFY(frame.height() > frame.width());
        QVERIFY(qAbs(frame.geometry().center().x() - editor.geometry().center().x()) <= 1);
        QVERIFY(qAbs(frame.height() - (322 + 16)) <= 2);

        editor.hide();
        QVERIFY(frame.isHidden());
        editor.show();
        QVERIFY(frame.isVisible());
    }

    void ItMakesRoomForTheWholePicture() {
        QWidget window;
        window.resize(560, 560);
        ZoomWidget editor(&window);
        editor.setGeometry(QRect(QPoint(48, 118), EditorSize(Orientation::Landscape)));
        editor.ShowTheme(CustomThemes(Orientation::Landscape), true);
        const DeviceFrame frame(editor);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QPoint aboveTheScreen(200, 10);  // of the editor: its well while trimming, nothing else
        editor.SetEditing(true);
        QVERIFY(frame.isVisible());
        QVERIFY(window.grab().toImage().pixelColor(editor.pos() + aboveTheScreen) != window_colors::kWell);
        editor.SetTrimMode(1);
        QVERIFY(frame.isHidden());
        editor.SetTrimMode(0);
        QVERIFY(frame.isVisible());
        editor.SetTrimMode(1);
        editor.SetEditing(false);
        QVERIFY(frame.isVisible());
    }

    void ItTakesNoInput() {
        QWidget window;
        ZoomWidget editor(&window);
        editor.setGeometry(QRect(QPoint(48, 118), EditorSize(Orientation::Landscape)));
        const DeviceFrame frame(editor);
        QVERIFY(frame.testAttribute(Qt::WA_TransparentForMouseEvents));
        QCOMPARE(frame.focusPolicy(), Qt::NoFocus);
        // Below the editor, or it would be drawn over the screen.
        const QObjectList children = window.children();
        QVERIFY(children.indexOf(const_cast<DeviceFrame*>(&frame)) < children.indexOf(&editor));
    }
};

QTEST_MAIN(TestDeviceFrame)

#include "tst_device_frame.moc"
