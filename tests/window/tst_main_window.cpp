#include <QAccessible>
#include <QLabel>
#include <QMenuBar>
#include <QScrollBar>
#include <QStatusBar>
#include <QSystemTrayIcon>

#include "config/settings_file.h"
#include "session/single_instance.h"
#include "support/test_program.h"
#include "support/window_test_support.h"
#include "widgets/exit_message_box.h"
#include "widgets/nimb_push_button.h"
#include "window/nimb_process_dialog.h"

Q_DECLARE_METATYPE(QSystemTrayIcon::ActivationReason)

using namespace kivo;
using namespace kivo::test;

// The window as the frame of the program: how it starts, hides, comes back and ends.
class TestMainWindow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void WidgetsStandInTheirPlaces_data();
    void WidgetsStandInTheirPlaces();
    void WordmarkTellsTheVersion();
    void ButtonsThatNobodySeesCannotBePressed();
    void BoxesHaveTheirPictures();
    void LanguageFollowsTheLocale_data();
    void LanguageFollowsTheLocale();
    void MissingTranslationLeavesTheSourceTexts();
    void TitleIsTheScreensName_data();
    void TitleIsTheScreensName();
    void FirstRunShowsUploadsMarksAndHides();
    void FirstRunWithoutAScreenEndsTheSame();
    void DefaultFilesSeededLaterUploadToo();
    void SecondRunGoesStraightToTheThreads();
    void BlankPanelGetsItsFrameQuietly();
    void TrayClickShowsAHiddenWindow_data();
    void TrayClickShowsAHiddenWindow();
    void TrayClickRaisesAVisibleWindow();
    void SecondCopyBringsTheWindowBack();
    void LeftButtonDragsTheWindow();
    void OtherButtonsDoNotDrag();
    void MinimiseButtonMinimises();
    void ExitRejectedStaysShown();
    void ExitAcceptedEndsTheProgram();
    void ExitAskedTwiceAsksOnce();
    void ClosingHidesToTheTray();
    void ClosingAsksWhereThereIsNoTray();
    void WithoutATrayItIsPutAwayMinimised();
    void PowerSamplesReachTheTexts();
    void TheControllersButtonDoesNothing();
    void TheTestButtonWritesItsText();
    void EverythingIsReachedByKeyboard();
};

void TestMainWindow::initTestCase() {
    PrepareApplication();
}

void TestMainWindow::init() {
    SetUpProfile();
}

void TestMainWindow::WidgetsStandInTheirPlaces_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("className");
    QTest::addColumn<QRect>("place");
    const auto row = [](const char* name, const char* className, const QRect& place) {
        QTest::newRow(name) << QString::fromLatin1(name) << QByteArray(className) << place;
    };
    row("btnExit", "kivo::NimbPushButton", {910, 11, 16, 16});
    row("btnMini", "kivo::NimbPushButton", {879, 11, 16, 16});
    row("btnTheme", "kivo::NimbPushButton", {530, 55, 147, 40});
    row("btnImage", "kivo::NimbPushButton", {680, 55, 147, 40});
    row("selFolder", "kivo::NimbPushButton", {600, 110, 0, 0});
    row("labelSelFolder", "QLabel", {530, 110, 0, 0});
    row("label_5", "QLabel", {514, 103, 156, 30});
    row("label_6", "QLabel", {514, 260, 156, 25});
    row("check1", "QCheckBox", {530, 142, 140, 24});
    row("check2", "QCheckBox", {530, 173, 140, 24});
    row("check3", "QCheckBox", {530, 204, 140, 24});
    row("check4", "QCheckBox", {681, 142, 111, 24});
    row("check5", "QCheckBox", {681, 173, 111, 24});
    row("check6", "QCheckBox", {681, 204, 111, 24});
    row("check7", "QCheckBox", {799, 142, 111, 24});
    row("check8", "QCheckBox", {799, 173, 0, 0});
    row("check9", "QCheckBox", {800, 210, 0, 0});
    row("zoomwidget", "kivo::ZoomWidget", {48, 118, 435, 312});
    row("btnRemote", "kivo::NimbPushButton", {390, 280, 24, 24});
    row("afterlabel", "QLabel", {20, 30, 21, 21});
    row("wordmark", "QWidget", {20, 30, 116, 21});
    row("btnEdit", "kivo::NimbPushButton", {144, 451, 100, 40});
    row("btnApply", "kivo::NimbPushButton", {285, 451, 100, 40});
    row("pushButton", "QPushButton", {420, 0, 80, 24});
    row("btnEdit_cancel", "kivo::NimbPushButton", {144, 451, 100, 40});
}

void TestMainWindow::WidgetsStandInTheirPlaces() {
    QFETCH(QString, name);
    QFETCH(QByteArray, className);
    QFETCH(QRect, place);
    const Desk desk;
    const auto* widget = desk.window->findChild<QWidget*>(name);
    QVERIFY(widget != nullptr);
    QCOMPARE(QByteArray(widget->metaObject()->className()), className);
    QCOMPARE(widget->geometry(), place);
    QCOMPARE(widget->parentWidget(), desk.Find("centralwidget"));
    QCOMPARE(desk.window->size(), QSize(960, 588));
    QVERIFY(!desk.Find<QMenuBar>("menubar")->isVisibleTo(desk.window.get()));
    QVERIFY(!desk.Find<QStatusBar>("statusbar")->isVisibleTo(desk.window.get()));
    if (place.isEmpty()) {
        QVERIFY(widget->focusPolicy() == Qt::NoFocus || name.startsWith(QLatin1String("label")));
    }
}

void TestMainWindow::WordmarkTellsTheVersion() {
    QCoreApplication::setApplicationVersion(QStringLiteral("4.5.6 (1a2b3c)"));
    const Desk desk;
    QCOMPARE(desk.Find("wordmark")->toolTip(), QStringLiteral("Kivo Screen 4.5.6 (1a2b3c)"));
}

// A screen reader offers to press whatever is there.
void TestMainWindow::ButtonsThatNobodySeesCannotBePressed() {
    Desk desk;
    desk.Show();
    for (const char* name : {"ReadEC", "pushButton_3", "selFolder"}) {
        auto* const button = desk.Find<QAbstractButton>(name);
        QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(button);
        QVERIFY(told->state().invisible && told->state().disabled);
        told->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
    QVERIFY(!SettingsReader().Contains(QStringLiteral("test/test")));
}

void TestMainWindow::BoxesHaveTheirPictures() {
    const Desk desk;
    QCOMPARE(desk.window->styleSheet(),
             QStringLiteral(" #MainWindow{border-image:url(:/skins/background_01.png)}"));
    for (int number = 1; number <= 9; ++number) {
        const QString sheet = desk.Find(qPrintable(QStringLiteral("check%1").arg(number)))->styleSheet();
        QVERIFY(sheet.contains(QLatin1String("unchecked{image:url(://skins/seting_bt_02_n.png)}")));
        QVERIFY(sheet.contains(QLatin1String("unchecked:hover{image:url(:/skins/seting_bt_02_n.png)}")));
        QVERIFY(sheet.contains(QLatin1String("unchecked:pressed{image:url(:/skins/seting_bt_02_s.png)}")));
        QVERIFY(sheet.contains(QLatin1String("checked{image:url(:/skins/seting_bt_02_s.png)}")));
        QVERIFY(sheet.contains(QLatin1String("checked:hover{image:url(:/skins/seting_bt_02_s.png)}")));
        QVERIFY(sheet.contains(QLatin1String("checked:pressed{image:url(:/skins/seting_bt_02_n.png)}")));
    }
}

void TestMainWindow::LanguageFollowsTheLocale_data() {
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("paste");  // in the menu of a text box, which Qt makes
    const QString chinese = QStringLiteral("粘贴(&P)");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN") << QStringLiteral("确认") << chinese;
    QTest::newRow("Taiwan") << QStringLiteral("zh_TW") << QStringLiteral("确认") << chinese;
    QTest::newRow("Russian") << QStringLiteral("ru_RU") << QStringLiteral("Применить")
                             << QStringLiteral("В&ставить");
    const QString english = QStringLiteral("&Paste");
    QTest::newRow("English") << QStringLiteral("en_GB") << QStringLiteral("Apply") << english;
    QTest::newRow("German") << QStringLiteral("de_DE") << QStringLiteral("Apply") << english;
}

void TestMainWindow::LanguageFollowsTheLocale() {
    QFETCH(QString, locale);
    QFETCH(QString, caption);
    const Desk desk{QLocale(locale)};
    QCOMPARE(desk.Find<QPushButton>("btnApply")->text(), caption);
    QTEST(QCoreApplication::translate("QWidgetTextControl", "&Paste"), "paste");
}

void TestMainWindow::MissingTranslationLeavesTheSourceTexts() {
    const QTemporaryDir empty;
    VirtualHidApi panel;
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("translations in .* cannot be read")));
    MainWindow window(
        {panel, nullptr, empty.path(), LiveSession::PanelKind::Real, QLocale(QStringLiteral("en_US"))});
    QCOMPARE(window.findChild<QPushButton*>(QStringLiteral("btnApply"))->text(), QStringLiteral("确认"));
    QVERIFY(window.Stop());
}

void TestMainWindow::TitleIsTheScreensName_data() {
    QTest::addColumn<QString>("locale");
    for (const char* locale : {"zh_CN", "en_US", "ru_RU"}) {
        QTest::newRow(locale) << QString::fromLatin1(locale);
    }
}

void TestMainWindow::TitleIsTheScreensName() {
    QFETCH(QString, locale);
    const Desk desk{QLocale(locale)};
    QCOMPARE(desk.window->windowTitle(), QStringLiteral("Kivo Screen"));
    QTRY_VERIFY(desk.window->Session().Screen().controlHandle() != nullptr);
}

void TestMainWindow::FirstRunShowsUploadsMarksAndHides() {
    ForgetEverything();
    Desk desk;
    bool seen = false;
    QRect dialogPlace;
    auto* watcher = new QTimer(desk.window.get());
    connect(watcher, &QTimer::timeout, this, [&] {
        if (auto* dialog = qobject_cast<NimbProcessDialog*>(QApplication::activeModalWidget())) {
            seen = desk.window->isVisible();
            dialogPlace = dialog->geometry();
        }
    });
    watcher->start(20);
    // Seeding has set the mark already; the seeded files tell that it is a first run.
    QVERIFY(!IsFirstRun());
    QVERIFY(!desk.window->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.frames == 1, 20000);
    QTRY_VERIFY_WITH_TIMEOUT(!desk.window->isVisible(), 20000);
    QVERIFY(seen);
    const QRect window = desk.window->geometry();
    QCOMPARE(dialogPlace, QRect(window.x() + 480 - 64, window.y() + 294 - 64, 128, 128));
    QTRY_COMPARE(desk.window->findChild<Tray*>()->Told(),
                 QStringLiteral("The screen is ready. Click this icon to open the settings window."));
    QVERIFY(!IsFirstRun());
    QCOMPARE(int(configFolderCreated), 0);
    // Live values go on.
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > 5, 20000);
    QCOMPARE(desk.panel.State().counts.errors, quint64(0));
}

void TestMainWindow::FirstRunWithoutAScreenEndsTheSame() {
    ForgetEverything();
    Desk desk;
    const EventCounter shown(*desk.window, QEvent::Show);
    desk.panel.Unplug();
    QTRY_VERIFY_WITH_TIMEOUT(shown.count > 0 && !desk.window->isVisible(), 20000);
    QVERIFY(!IsFirstRun());
    QVERIFY(desk.window->Session().Status().isFrameOwed);
    QTRY_COMPARE(desk.window->findChild<Tray*>()->Told(),
                 QStringLiteral("No screen answers yet. Click this icon to open the settings window."));
}

void TestMainWindow::DefaultFilesSeededLaterUploadToo() {
    // Set up once, but somebody threw the settings away since.
    QVERIFY(QFile::remove(ConfigFilePath()));
    Desk desk;
    const EventCounter shown(*desk.window, QEvent::Show);
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.frames == 1, 20000);
    QTRY_VERIFY_WITH_TIMEOUT(shown.count > 0 && !desk.window->isVisible(), 20000);
}

void TestMainWindow::SecondRunGoesStraightToTheThreads() {
    Desk desk;
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > 5, 20000);
    QCOMPARE(desk.panel.State().counts.frames, quint64(0));
    QVERIFY(!desk.window->isVisible());
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void TestMainWindow::BlankPanelGetsItsFrameQuietly() {
    VirtualHidApi panel;
    MainWindow window({panel, nullptr, kBin, LiveSession::PanelKind::Software,
                       QLocale(QStringLiteral("en_US")), [] { return true; }});
    QTRY_VERIFY_WITH_TIMEOUT(panel.State().counts.frames == 1, 20000);
    QVERIFY(!window.isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(panel.State().counts.areas > 5, 20000);
    QVERIFY(window.Stop());
}

void TestMainWindow::TrayClickShowsAHiddenWindow_data() {
    QTest::addColumn<QSystemTrayIcon::ActivationReason>("reason");
    QTest::addColumn<bool>("shows");
    QTest::newRow("click") << QSystemTrayIcon::Trigger << true;
    QTest::newRow("double click") << QSystemTrayIcon::DoubleClick << true;
    QTest::newRow("middle click") << QSystemTrayIcon::MiddleClick << false;
    QTest::newRow("context menu") << QSystemTrayIcon::Context << false;
}

void TestMainWindow::TrayClickShowsAHiddenWindow() {
    QFETCH(QSystemTrayIcon::ActivationReason, reason);
    QFETCH(bool, shows);
    Desk desk;
    desk.window->iconActivated(reason);
    QCOMPARE(desk.window->isVisible(), shows);
    desk.window->showMinimized();
    desk.window->iconActivated(reason);
    QCOMPARE(desk.window->isMinimized(), !shows);
}

void TestMainWindow::TrayClickRaisesAVisibleWindow() {
    Desk desk;
    desk.Show();
    const QPoint place = desk.window->pos();
    desk.window->iconActivated(QSystemTrayIcon::Trigger);
    QVERIFY(desk.window->isVisible());
    QTRY_VERIFY(desk.window->isActiveWindow());
    QCOMPARE(desk.window->pos(), place);
}

void TestMainWindow::SecondCopyBringsTheWindowBack() {
    SingleInstance first;
    QVERIFY(first.Start());
    VirtualHidApi panel;
    MainWindow window({panel, &first, kBin, LiveSession::PanelKind::Real, QLocale(QStringLiteral("en_US")),
                       [] { return true; }});
    for (int start = 1; start <= 2; ++start) {
        window.hide();
        SingleInstance second;
        QVERIFY(!second.Start());
        QTRY_VERIFY(window.isVisible());
        QVERIFY(first.TakeWakeUpRequest() == InstanceRequest::None);
    }
    QVERIFY(window.Stop());
}

void TestMainWindow::LeftButtonDragsTheWindow() {
    Desk desk;
    desk.Show();
    const QPoint before = desk.window->pos();
    QTest::mousePress(desk.window.get(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 40));
    QMouseEvent move(QEvent::MouseMove, QPointF(330, 60), QPointF(before + QPoint(330, 60)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(desk.window.get(), &move);
    QCOMPARE(desk.window->pos(), before + QPoint(30, 20));
    QTest::mouseRelease(desk.window.get(), Qt::LeftButton, Qt::NoModifier, QPoint(300, 40));
    QApplication::sendEvent(desk.window.get(), &move);
    QCOMPARE(desk.window->pos(), before + QPoint(30, 20));
}

void TestMainWindow::OtherButtonsDoNotDrag() {
    Desk desk;
    desk.Show();
    const QPoint before = desk.window->pos();
    QTest::mousePress(desk.window.get(), Qt::RightButton, Qt::NoModifier, QPoint(300, 40));
    QMouseEvent move(QEvent::MouseMove, QPointF(330, 60), QPointF(before + QPoint(330, 60)), Qt::NoButton,
                     Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(desk.window.get(), &move);
    QCOMPARE(desk.window->pos(), before);
}

void TestMainWindow::MinimiseButtonMinimises() {
    Desk desk;
    desk.Show();
    desk.Click("btnMini");
    QVERIFY(desk.window->isMinimized());
    desk.window->BringToFront();
    QVERIFY(!desk.window->isMinimized());
}

void TestMainWindow::ExitRejectedStaysShown() {
    Desk desk;
    QSignalSpy quit(qApp, &QCoreApplication::aboutToQuit);
    OnNextDialog<ExitMessageBox>(desk.window.get(), [&](ExitMessageBox* box) {
        QCOMPARE(box->geometry(), desk.window->geometry());
        QCOMPARE(box->windowTitle(),
                 QCoreApplication::translate("MainWindow", "温馨提示", "before the program ends"));
        box->reject();
    });
    desk.window->slotExit();  // as from the tray, with the window hidden
    QVERIFY(desk.window->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > 0, 20000);
}

void TestMainWindow::ExitAcceptedEndsTheProgram() {
    Desk desk;
    desk.Show();
    bool ended = false;
    OnNextDialog<ExitMessageBox>(desk.window.get(), [](ExitMessageBox* box) { box->accept(); });
    QTimer::singleShot(0, desk.window.get(), [&] { desk.Click("btnExit"); });
    QTimer::singleShot(20000, desk.window.get(), [] { QCoreApplication::exit(77); });
    QEventLoop loop;
    connect(desk.window.get(), &QObject::destroyed, &loop, &QEventLoop::quit);
    const int status = QApplication::exec();
    ended = status == 0;
    QVERIFY(ended);
    QVERIFY(!desk.window->isVisible());
}

void TestMainWindow::ExitAskedTwiceAsksOnce() {
    Desk desk;
    desk.Show();
    int boxes = 0;
    OnNextDialog<ExitMessageBox>(desk.window.get(), [&](ExitMessageBox* box) {
        desk.window->slotExit();
        boxes = desk.window->findChildren<ExitMessageBox*>().size();
        box->reject();
    });
    desk.Click("btnExit");
    QCOMPARE(boxes, 1);
}

void TestMainWindow::ClosingHidesToTheTray() {
    Desk desk;
    desk.Show();
    desk.window->close();
    QVERIFY(!desk.window->isVisible());
    // It lives on.
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > 0, 20000);
}

void TestMainWindow::ClosingAsksWhereThereIsNoTray() {
    Desk desk(QLocale(QStringLiteral("en_US")), false);
    desk.Show();
    bool asked = false;
    OnNextDialog<ExitMessageBox>(desk.window.get(), [&](ExitMessageBox* box) {
        asked = true;
        box->reject();
    });
    desk.window->close();
    QTRY_VERIFY(asked);
    QVERIFY(desk.window->isVisible());
}

void TestMainWindow::WithoutATrayItIsPutAwayMinimised() {
    Desk desk(QLocale(QStringLiteral("en_US")), false);
    desk.window->PutAway();
    QVERIFY(desk.window->isMinimized());
}

void TestMainWindow::PowerSamplesReachTheTexts() {
    Desk desk;
    desk.window->slotCpuPowClock(65, 48, 1, 2);
    QCOMPARE(desk.window->Session().LiveText(CpuPower), QStringLiteral("65w"));
    QCOMPARE(desk.window->Session().LiveText(CpuTemperature), QStringLiteral("48℃"));
}

void TestMainWindow::TheControllersButtonDoesNothing() {
    static QStringList said;
    said.clear();
    const auto keep = [](QtMsgType, const QMessageLogContext&, const QString& line) { said.append(line); };
    const QtMessageHandler former = qInstallMessageHandler(keep);
    const Desk desk;
    qInstallMessageHandler(former);
    QVERIFY2(said.filter(QStringLiteral("connectSlotsByName")).isEmpty(),
             qPrintable(said.join(QLatin1Char('\n'))));

    auto* button = desk.Find<QPushButton>("ReadEC");
    QVERIFY(button->size().isEmpty());
    desk.WaitForPictures();
    const QImage before = desk.window->grab().toImage();
    const int children = desk.window->findChildren<QObject*>().size();
    Q_EMIT button->clicked();
    QVERIFY(QMetaObject::invokeMethod(desk.window.get(), "on_ReadEC_clicked", Qt::DirectConnection));
    QCOMPARE(desk.window->findChildren<QObject*>().size(), children);
    QCOMPARE(desk.window->grab().toImage(), before);
}

void TestMainWindow::TheTestButtonWritesItsText() {
    const Desk desk;
    QVERIFY(!SettingsReader().Contains(QStringLiteral("test/test")));
    auto* button = desk.Find<QPushButton>("pushButton_3");
    QVERIFY(button->size().isEmpty());
    Q_EMIT button->clicked();
    QCOMPARE(SettingsReader().Text(QStringLiteral("test/test")), QStringLiteral("点击输入"));
}

void TestMainWindow::EverythingIsReachedByKeyboard() {
    Desk desk;
    desk.Show();
    for (const char* page : {"btnTheme", "btnImage"}) {
        desk.Click(page);
        desk.window->activateWindow();
        desk.Find(page)->setFocus(Qt::TabFocusReason);
        QSet<QString> reached;
        for (int step = 0; step < 60; ++step) {
            if (QWidget* focus = QApplication::focusWidget()) {
                reached.insert(focus->objectName());
                QVERIFY2(!focus->accessibleName().isEmpty() || !focus->property("text").toString().isEmpty(),
                         qPrintable(focus->objectName()));
                QVERIFY2(!focus->toolTip().isEmpty(), qPrintable(focus->objectName()));
            }
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        const auto controls = desk.Find("centralwidget")->findChildren<QWidget*>();
        for (const QWidget* control : controls) {
            const bool needed = control->isVisible() && control->isEnabled() && !control->size().isEmpty() &&
                                (qobject_cast<const QAbstractButton*>(control) != nullptr ||
                                 qobject_cast<const QListWidget*>(control) != nullptr);
            if (needed) {
                QVERIFY2(reached.contains(control->objectName()), qPrintable(control->objectName()));
            }
        }
    }
}

KIVO_TEST(TestMainWindow)
#include "tst_main_window.moc"
