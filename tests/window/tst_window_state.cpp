#include <QAccessible>
#include <QLabel>

#include "config/settings_file.h"
#include "support/contrast.h"
#include "support/test_program.h"
#include "support/told_states.h"
#include "support/window_test_support.h"
#include "widgets/exit_message_box.h"
#include "widgets/focus_ring.h"
#include "widgets/nimb_push_button.h"
#include "window/panel_status_text.h"
#include "window/state_line.h"

using namespace kivo;
using namespace kivo::test;

// The state of the screen in the window and the tray. Run once more for each scale of the screen:
// QT_SCALE_FACTOR has to be there before the program is.
class TestWindowState : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void cleanupTestCase() { m_desk.reset(); }
    void EveryStateFitsItsPlace_data() { AddStatesInAllLanguages(); }
    void EveryStateFitsItsPlace();
    void ThePlaceIsFree_data();
    void ThePlaceIsFree();
    void EveryStateCanBeRead_data() { AddStatesInAllLanguages(); }
    void EveryStateCanBeRead();
    void TheToolTipHasItOnASecondLine_data() { AddStatesInAllLanguages(); }
    void TheToolTipHasItOnASecondLine();
    void TheLinkIsReachedByKeyboard();
    void AScreenThatComesAndGoesIsTold();
    void SettingsThatCannotBeSavedAreTold_data();
    void SettingsThatCannotBeSavedAreTold();

private:
    // One window for all rows of a language.
    Desk& DeskIn(const QString& locale);

    std::unique_ptr<Desk> m_desk;
    QString m_locale;
};

namespace {

// Behind the tabs, as the window's picture has it.
constexpr QRect kTabsWell(526, 51, 305, 48);

StateLine* LineOf(const Desk& desk) {
    return desk.Find<StateLine>("stateLine");
}

// While it lives, a file stands in the place of the settings' folder: even the superuser cannot write
// settings.
class FolderTakenAway {
public:
    FolderTakenAway() : m_folder(SettingsFolder()) {
        QDir(m_folder).removeRecursively();
        QFile file(m_folder);
        if (!file.open(QFile::WriteOnly)) {
            qFatal("The settings' folder cannot be taken away.");
        }
    }
    ~FolderTakenAway() { QFile::remove(m_folder); }
    Q_DISABLE_COPY_MOVE(FolderTakenAway)

private:
    const QString m_folder;
};

}  // namespace

Desk& TestWindowState::DeskIn(const QString& locale) {
    if (!m_desk || m_locale != locale) {
        m_desk.reset();
        SetUpProfile();
        m_desk = std::make_unique<Desk>(QLocale(locale));
        m_desk->Show();
        // The rows say what state the screen is in, not the panel of the test.
        m_desk->window->Session().disconnect(m_desk->window.get());
        m_locale = locale;
    }
    return *m_desk;
}

void TestWindowState::EveryStateFitsItsPlace() {
    QFETCH(int, state);
    QFETCH(QString, locale);
    const Desk& desk = DeskIn(locale);
    desk.window->ShowPanelStatus(ToldStates()[size_t(state)].status);
    const QRect place = LineOf(desk)->rect();
    const auto* text = desk.Find<QLabel>("stateText");
    QVERIFY(place.contains(text->geometry()));
    QVERIFY(text->sizeHint().width() <= text->width() && text->sizeHint().height() <= text->height());
    const auto* link = desk.Find<NimbPushButton>("stateCopy");
    if (link->isVisible()) {
        QVERIFY(place.contains(link->geometry()));
        QVERIFY(!link->geometry().intersects(text->geometry()));
    }
}

void TestWindowState::ThePlaceIsFree_data() {
    QTest::addColumn<QString>("locale");
    for (const char* locale : kLocales) {
        QTest::newRow(locale) << QString::fromLatin1(locale);
    }
}

void TestWindowState::ThePlaceIsFree() {
    QFETCH(QString, locale);
    const Desk& desk = DeskIn(locale);
    StateLine* line = LineOf(desk);
    const QRect place = PlaceInWindow(*line);
    QVERIFY(!place.intersects(kTabsWell));
    for (const char* page : {"btnTheme", "btnImage", "btnEdit"}) {
        desk.Click(page);
        const auto siblings =
            desk.Find("centralwidget")->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        for (const QWidget* other : siblings) {
            if (other != line && other->isVisible() && !other->size().isEmpty()) {
                QVERIFY2(!place.intersects(PlaceInWindow(*other)), qPrintable(other->objectName()));
            }
        }
    }
    desk.Click("btnEdit_cancel");
    desk.Click("btnTheme");
    // The picture behind it has nothing there, and ends its name before it.
    line->hide();
    const QImage window = desk.window->grab().toImage();
    line->show();
    QVERIFY(ContrastIn(CutOut(window, place)) < 1.3);
    constexpr int kNameWidth = 90;
    QVERIFY(ContrastIn(CutOut(window, {place.x() - kNameWidth, place.y(), kNameWidth, place.height()})) >
            4.5);
}

void TestWindowState::EveryStateCanBeRead() {
    QFETCH(int, state);
    QFETCH(QString, locale);
    const Desk& desk = DeskIn(locale);
    desk.window->ShowPanelStatus(ToldStates()[size_t(state)].status);
    const QImage window = desk.window->grab().toImage();
    for (const char* name : {"stateText", "stateCopy"}) {
        const QWidget* widget = desk.Find(name);
        if (widget->isVisible()) {
            const double contrast = ContrastIn(CutOut(window, PlaceInWindow(*widget)));
            QVERIFY2(contrast >= 4.5, QByteArray(name) + ": " + QByteArray::number(contrast));
        }
    }
    QRect dot = PlaceInWindow(*LineOf(desk));
    dot.setRight(desk.Find("stateText")->mapTo(desk.window.get(), QPoint()).x() - 1);
    QVERIFY(ContrastIn(CutOut(window, dot)) >= 4.5);
    QCOMPARE(QAccessible::queryAccessibleInterface(desk.Find("stateText"))->text(QAccessible::Name),
             PanelStatusText(ToldStates()[size_t(state)].status));
}

void TestWindowState::TheToolTipHasItOnASecondLine() {
    QFETCH(int, state);
    QFETCH(QString, locale);
    const Desk& desk = DeskIn(locale);
    const auto* tray = desk.window->findChild<Tray*>();
    QVERIFY(tray->ToolTip().contains(QLatin1Char('\n')));
    const PanelStatus& status = ToldStates()[size_t(state)].status;
    desk.window->ShowPanelStatus(status);
    const QString name = QCoreApplication::translate("MainWindow", "副屏设置");
    QCOMPARE(tray->ToolTip(), name + QLatin1Char('\n') + PanelStatusText(status));
    // Windows cuts what is longer.
    constexpr int kLongestToolTip = 127;
    QVERIFY(tray->ToolTip().size() <= kLongestToolTip);
}

void TestWindowState::TheLinkIsReachedByKeyboard() {
    const Desk& desk = DeskIn(QStringLiteral("en_US"));
    PanelStatus status;
    status.condition = PanelCondition::Denied;
    desk.window->ShowPanelStatus(status);
    desk.window->activateWindow();
    desk.Find("btnTheme")->setFocus(Qt::TabFocusReason);
    QWidget* const link = desk.Find("stateCopy");
    for (int step = 0; step < 60 && !link->hasFocus(); ++step) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QVERIFY(link->hasFocus());
    const auto* ring = desk.window->findChild<FocusRing*>();
    QCOMPARE(ring->RingedWidget(), link);
    // The ring stays clear of what is near, as the line does.
    QVERIFY(!PlaceInWindow(*ring).intersects(PlaceInWindow(*desk.Find("pushButton"))));
    QVERIFY(!PlaceInWindow(*ring).intersects(kTabsWell));
    // A link that goes does not take the keyboard with it.
    desk.window->ShowPanelStatus({});
    QVERIFY(QApplication::focusWidget() != nullptr && QApplication::focusWidget()->isVisible());
}

void TestWindowState::AScreenThatComesAndGoesIsTold() {
    SetUpProfile();
    Desk desk(QLocale(QStringLiteral("en_US")), true, Plugging::Told);
    // The panel is looked at beside the window.
    QTRY_COMPARE(LineOf(desk)->Phrase(), QStringLiteral("Connected"));
    desk.panel.Unplug();
    QTRY_COMPARE(LineOf(desk)->Phrase(), QStringLiteral("No screen"));
    desk.panel.Plug();
    QTRY_COMPARE(LineOf(desk)->Phrase(), QStringLiteral("Connected"));
}

void TestWindowState::SettingsThatCannotBeSavedAreTold_data() {
    QTest::addColumn<QByteArray>("page");
    QTest::newRow("themes") << QByteArray("btnTheme");
    QTest::newRow("custom layout") << QByteArray("btnImage");
}

void TestWindowState::SettingsThatCannotBeSavedAreTold() {
    QFETCH(QByteArray, page);
    SetUpProfile();
    Desk desk;
    desk.Show();
    desk.Click(page.constData());
    const QString unsaved = QStringLiteral("Settings could not be saved");
    desk.Apply();
    QVERIFY(LineOf(desk)->Phrase() != unsaved);
    {
        const FolderTakenAway away;
        desk.Apply();
        QCOMPARE(LineOf(desk)->Phrase(), unsaved);
        QVERIFY(desk.window->findChild<Tray*>()->ToolTip().endsWith(QLatin1Char('\n') + unsaved));
    }
    desk.Apply();
    QVERIFY(LineOf(desk)->Phrase() != unsaved);
    {
        // Pictures are settings too.
        const FolderTakenAway away;
        desk.pictureToChoose = QStringLiteral("/no/such/picture.png");
        OnNextDialog<ExitMessageBox>(desk.window.get(), [](ExitMessageBox* box) { box->accept(); });
        desk.window->itemClickedImage(desk.Find<QListWidget>("pictureList")->model()->index(0, 0));
        QCOMPARE(LineOf(desk)->Phrase(), unsaved);
    }
    // Another setting that can be saved is not the list; the next apply saves it too.
    desk.window->on_pushButton_3_clicked();
    QCOMPARE(LineOf(desk)->Phrase(), unsaved);
    desk.Apply();
    QVERIFY(LineOf(desk)->Phrase() != unsaved);
}

KIVO_TEST(TestWindowState)
#include "tst_window_state.moc"
