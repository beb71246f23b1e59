#include <QScreen>
#include <QSemaphore>
#include <QWindow>

#include "compose/theme_state.h"
#include "session/single_instance.h"
#include "support/test_program.h"
#include "support/window_test_support.h"
#include "widgets/exit_message_box.h"
#include "window/nimb_process_dialog.h"
#include "window/picture_choice.h"

using namespace kivo;
using namespace kivo::test;

// Ends and beginnings that nobody plans: cut off, half done, one dialog over another.
class TestWindowLife : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void EndsWhileTextIsTyped();
    void EndsInTheMiddleOfATrim();
    void FrameAppliedWithoutAScreenIsSentAtTheNextStart();
    void FirstRunThatIsCutOffIsDoneAgain();
    void FirstRunWaitsForADialog();
    void ExitIsAskedAfterAnUpload();
    void WindowOnAScreenThatIsGoneComesBack();
    void ApplyingOnePageLeavesTheOtherOnesEdits_data();
    void ApplyingOnePageLeavesTheOtherOnesEdits();
    void CancelLeavesTheKeyboardOnEdit();
    void SoftwarePanelGivesWayUnlessSomethingWouldBeLost_data();
    void SoftwarePanelGivesWayUnlessSomethingWouldBeLost();
    void TrayThatComesLaterTakesThePutAwayWindow_data();
    void TrayThatComesLaterTakesThePutAwayWindow();
    void WindowThatTheDesktopPlacesIsMappedAnew_data();
    void WindowThatTheDesktopPlacesIsMappedAnew();
};

void TestWindowLife::initTestCase() {
    PrepareApplication();
}

void TestWindowLife::init() {
    SetUpProfile();
}

void TestWindowLife::EndsWhileTextIsTyped() {
    Desk desk;
    desk.Show();
    desk.Click("btnImage");
    desk.Click("btnEdit");
    desk.window->slotShowColorbar(1);
    QVERIFY(desk.Editor()->IsTextEntryOpen());
    desk.Close();
}

void TestWindowLife::EndsInTheMiddleOfATrim() {
    Desk desk;
    desk.Show();
    desk.Click("btnImage");
    desk.Click("btnEdit");
    QTest::mouseClick(desk.Find("trimButton"), Qt::LeftButton);
    QVERIFY(desk.Editor()->IsTrimMode());
    QTest::mousePress(desk.Editor(), Qt::LeftButton, Qt::NoModifier, QPoint(200, 150));
    QTest::mouseMove(desk.Editor(), QPoint(210, 155));
    desk.Close();
}

void TestWindowLife::FrameAppliedWithoutAScreenIsSentAtTheNextStart() {
    {
        Desk desk;
        desk.Show();
        desk.panel.Unplug();
        desk.ClickRow("themeList", int(Theme::Tdp));
        desk.Apply();
        QVERIFY(desk.window->Session().Status().isFrameOwed);
    }
    Desk desk;
    QTRY_COMPARE_WITH_TIMEOUT(desk.panel.State().counts.frames, quint64(1), 20000);
    QVERIFY(!desk.window->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(!desk.window->Session().Status().isFrameOwed, 20000);
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > 0, 20000);
    QCOMPARE(int(desk.window->Session().Applied().theme), int(Theme::Tdp));
    desk.Close();
    Desk again;
    QTRY_VERIFY_WITH_TIMEOUT(again.panel.State().counts.areas > 5, 20000);
    QCOMPARE(again.panel.State().counts.frames, quint64(0));
}

void TestWindowLife::FirstRunThatIsCutOffIsDoneAgain() {
    ForgetEverything();
    {
        Desk desk;
        // The program is told to end while its first frame is being prepared.
        OnNextDialog<NimbProcessDialog>(desk.window.get(), [](NimbProcessDialog*) {
            QTimer::singleShot(50, qApp, [] { QCoreApplication::exit(); });
        });
        QTimer::singleShot(20000, desk.window.get(), [] { QCoreApplication::exit(77); });
        QCOMPARE(QApplication::exec(), 0);
        QCOMPARE(desk.panel.State().counts.frames, quint64(0));
    }
    configFolderCreated = 0;  // another process would begin so
    Desk desk;
    QTRY_COMPARE_WITH_TIMEOUT(desk.panel.State().counts.frames, quint64(1), 20000);
}

void TestWindowLife::FirstRunWaitsForADialog() {
    ForgetEverything();
    Desk desk;
    QTimer::singleShot(1500, desk.window.get(), [&] {
        QCOMPARE(desk.panel.State().counts.frames, quint64(0));
        auto* box = qobject_cast<ExitMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box != nullptr);
        box->reject();
    });
    desk.window->slotExit();
    QTRY_COMPARE_WITH_TIMEOUT(desk.panel.State().counts.frames, quint64(1), 20000);
}

void TestWindowLife::ExitIsAskedAfterAnUpload() {
    Desk desk;
    desk.Show();
    OnNextDialog<NimbProcessDialog>(desk.window.get(), [&](NimbProcessDialog*) { desk.window->slotExit(); });
    desk.Apply();
    bool asked = false;
    OnNextDialog<ExitMessageBox>(desk.window.get(), [&](ExitMessageBox* box) {
        asked = true;
        box->reject();
    });
    QTRY_VERIFY(asked);
    QCOMPARE(desk.panel.State().counts.frames, quint64(1));
}

void TestWindowLife::WindowOnAScreenThatIsGoneComesBack() {
    Desk desk;
    desk.Show();
    desk.window->move(5000, 3000);
    desk.window->BringToFront();
    QVERIFY(QGuiApplication::primaryScreen()->geometry().intersects(desk.window->geometry()));
}

void TestWindowLife::ApplyingOnePageLeavesTheOtherOnesEdits_data() {
    QTest::addColumn<bool>("applyCustom");
    QTest::newRow("themes applied") << false;
    QTest::newRow("custom layout applied") << true;
}

void TestWindowLife::ApplyingOnePageLeavesTheOtherOnesEdits() {
    QFETCH(bool, applyCustom);
    const ThemeState before = LoadThemeState(InterfaceLanguage::English);
    Desk desk;
    desk.Show();
    // A picture is chosen on both pages, and only one of them is applied.
    desk.ClickRow("themeList", int(Theme::Time));
    desk.ClickRow("pictureList", 4);
    desk.Click("btnImage");
    desk.ClickRow("pictureList", 5);
    if (!applyCustom) {
        desk.Click("btnTheme");
    }
    desk.Apply();
    const ThemeState after = LoadThemeState(InterfaceLanguage::English);
    const auto themeLayout = size_t(ThemeLayoutIndex(Theme::Time, Orientation::Landscape));
    const auto customLayout = size_t(CustomLayoutIndex(0));
    QCOMPARE(after.layouts[themeLayout].picture != before.layouts[themeLayout].picture, !applyCustom);
    QCOMPARE(after.layouts[customLayout].picture != before.layouts[customLayout].picture, applyCustom);
    QCOMPARE(after.theme, applyCustom ? before.theme : int(Theme::Time));
}

void TestWindowLife::CancelLeavesTheKeyboardOnEdit() {
    Desk desk;
    desk.Show();
    desk.window->activateWindow();
    desk.Click("btnImage");
    desk.Click("btnEdit");
    desk.Find("btnEdit_cancel")->setFocus(Qt::TabFocusReason);
    QTest::keyClick(desk.Find("btnEdit_cancel"), Qt::Key_Space);
    QCOMPARE(desk.window->focusWidget(), desk.Find("btnEdit"));
}

void TestWindowLife::SoftwarePanelGivesWayUnlessSomethingWouldBeLost_data() {
    QTest::addColumn<QByteArray>("what");
    QTest::addColumn<bool>("panel");
    QTest::addColumn<bool>("givesWay");
    QTest::newRow("nothing") << QByteArray() << true << true;
    QTest::newRow("dialog") << QByteArray("dialog") << true << false;
    QTest::newRow("editing") << QByteArray("editing") << true << false;
    QTest::newRow("not applied") << QByteArray("not applied") << true << false;
    QTest::newRow("a picture that is looked at") << QByteArray("picture") << true << false;
    QTest::newRow("a real screen") << QByteArray() << false << false;
}

void TestWindowLife::SoftwarePanelGivesWayUnlessSomethingWouldBeLost() {
    QFETCH(QByteArray, what);
    QFETCH(bool, panel);
    QFETCH(bool, givesWay);
    SingleInstance first;
    QVERIFY(first.Start());
    VirtualHidApi screen;
    MainWindow::Parts parts{screen,
                            &first,
                            kBin,
                            panel ? LiveSession::PanelKind::Software : LiveSession::PanelKind::Real,
                            QLocale(QStringLiteral("en_US")),
                            [] { return true; }};
    const QString slowPicture = QStringLiteral("/slow.png");
    const auto isAtEnd = std::make_shared<QSemaphore>();
    parts.makePictureReaders = [slowPicture, isAtEnd] {
        PictureSource::Readers readers = FileReaders();
        readers.picture = [read = readers.picture, slowPicture, isAtEnd](
                              const QString& path, const Picture* former, const PictureWork& work) {
            if (path == slowPicture) {
                isAtEnd->acquire();
            }
            return read(path, former, work);
        };
        return readers;
    };
    MainWindow window(parts);
    auto* editor = window.findChild<ZoomWidget*>(QStringLiteral("zoomwidget"));
    if (what == "picture") {
        window.findChild<PictureChoice*>()->Choose(slowPicture);
    } else if (what == "editing") {
        editor->SetEditing(true);
    } else if (what == "not applied") {
        editor->SetOrientation(1);
    }
    SingleInstance second;
    InstanceAnswer answer = InstanceAnswer::None;
    const auto start = [&second, &answer] {
        QVERIFY(!second.Start([] { return InstanceRequest::GiveWay; }));
        answer = second.AwaitAnswer();
    };
    if (what == "dialog") {
        OnNextDialog<ExitMessageBox>(&window, [&start](ExitMessageBox* box) {
            start();
            box->reject();
            QCoreApplication::exit();
        });
        QTimer::singleShot(0, &window, &MainWindow::slotExit);
    } else {
        QTimer::singleShot(0, &window, [&start] {
            start();
            QCoreApplication::exit();
        });
    }
    QCOMPARE(QApplication::exec(), 0);
    const InstanceAnswer goesOn = panel ? InstanceAnswer::Stays : InstanceAnswer::ComesToFront;
    QVERIFY(answer == (givesWay ? InstanceAnswer::TookPlace : goesOn));
    QCOMPARE(window.isVisible(), !givesWay);
    isAtEnd->release();
    QVERIFY(window.Stop());
}

void TestWindowLife::TrayThatComesLaterTakesThePutAwayWindow_data() {
    QTest::addColumn<QByteArray>("meanwhile");
    QTest::addColumn<bool>("isVisible");
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("shown by a person") << QByteArray("shown") << true;
    QTest::newRow("shown, then minimised by a person") << QByteArray("minimised") << true;
    QTest::newRow("shown by the desktop, then minimised by a person") << QByteArray("task bar") << true;
}

void TestWindowLife::TrayThatComesLaterTakesThePutAwayWindow() {
    QFETCH(QByteArray, meanwhile);
    QFETCH(bool, isVisible);
    bool hasTray = false;
    int asked = 0;
    VirtualHidApi panel;
    MainWindow window({panel, nullptr, kBin, LiveSession::PanelKind::Real, QLocale(QStringLiteral("en_US")),
                       [&hasTray, &asked] {
                           ++asked;
                           return hasTray;
                       }});
    const auto aPollPasses = [&asked] {
        const int before = asked;
        QTRY_VERIFY(asked > before);
    };
    window.PutAway();
    QVERIFY(window.isMinimized());
    aPollPasses();
    QVERIFY(window.isMinimized());
    if (meanwhile == "task bar") {
        window.setWindowState(Qt::WindowNoState);
        aPollPasses();
    } else if (!meanwhile.isEmpty()) {
        window.BringToFront();
    }
    if (meanwhile == "minimised" || meanwhile == "task bar") {
        window.findChild<QAbstractButton*>(QStringLiteral("btnMini"))->click();
    }
    hasTray = true;
    aPollPasses();
    QCOMPARE(window.isVisible(), isVisible);
    // Put away again, it needs no task bar.
    window.BringToFront();
    window.PutAway();
    QVERIFY(!window.isVisible());
    QVERIFY(window.Stop());
}

void TestWindowLife::WindowThatTheDesktopPlacesIsMappedAnew_data() {
    QTest::addColumn<bool>("desktopPlaces");
    QTest::addColumn<bool>("hasDialog");
    QTest::addColumn<int>("changes");  // unmapped, mapped
    QTest::newRow("by the desktop") << true << false << 2;
    QTest::newRow("by the desktop, under a dialog") << true << true << 0;
    QTest::newRow("by itself") << false << false << 0;
}

void TestWindowLife::WindowThatTheDesktopPlacesIsMappedAnew() {
    QFETCH(bool, desktopPlaces);
    QFETCH(bool, hasDialog);
    QFETCH(int, changes);
    VirtualHidApi panel;
    MainWindow::Parts parts{panel,
                            nullptr,
                            kBin,
                            LiveSession::PanelKind::Real,
                            QLocale(QStringLiteral("en_US")),
                            [] { return false; }};
    parts.desktopPlacesWindows = [desktopPlaces] { return desktopPlaces; };
    MainWindow window(parts);
    window.PutAway();
    QDialog dialog;
    dialog.setModal(true);
    dialog.setVisible(hasDialog);
    if (hasDialog) {
        dialog.activateWindow();
        QTRY_VERIFY(dialog.isActiveWindow());
    }
    QVERIFY(!window.isActiveWindow());
    const QSignalSpy mapped(window.windowHandle(), &QWindow::visibleChanged);
    window.BringToFront();
    QCOMPARE(mapped.count(), changes);
    QVERIFY(window.isVisible() && !window.isMinimized());
    if (!hasDialog) {
        // What is in front already stays as it is.
        QTRY_VERIFY(window.isActiveWindow());
        window.BringToFront();
        QCOMPARE(mapped.count(), changes);
    }
    QVERIFY(window.Stop());
}

KIVO_TEST(TestWindowLife)
#include "tst_window_life.moc"
