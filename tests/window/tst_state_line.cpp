#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QTranslator>
#include <memory>

#include "support/test_program.h"
#include "support/told_states.h"
#include "support/window_test_support.h"
#include "widgets/nimb_push_button.h"
#include "widgets/window_colors.h"
#include "window/access_commands.h"
#include "window/language.h"
#include "window/panel_status_text.h"
#include "window/state_line.h"

using namespace kivo;
using namespace kivo::test;

// The line that tells the state of the screen, by itself.
class TestStateLine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void EveryStateHasWordsOfItsOwn_data();
    void EveryStateHasWordsOfItsOwn();
    void TheLineShowsAndTellsThem_data() { AddStatesInAllLanguages(); }
    void TheLineShowsAndTellsThem();
    void EveryDarknessHasWordsOfItsOwn_data();
    void EveryDarknessHasWordsOfItsOwn();
    void DarknessIsToldWhileNothingIsTheMatter_data() { AddStatesInAllLanguages(); }
    void DarknessIsToldWhileNothingIsTheMatter();
    void NothingNewPaintsNothing();
    void UnsavedSettingsStandBeforeEverything_data() { AddStatesInAllLanguages(); }
    void UnsavedSettingsStandBeforeEverything();
    void OnlyADeniedScreenHasALink_data() { AddStatesInAllLanguages(); }
    void OnlyADeniedScreenHasALink();
    void TheLinkCopiesTheCommands_data();
    void TheLinkCopiesTheCommands();
    void TheNoteGoesByItself();
    void ANewStateTakesTheNoteAway();
};

namespace {

const ToldState& StateNamed(const char* name) {
    for (const ToldState& state : ToldStates()) {
        if (qstrcmp(state.name, name) == 0) {
            return state;
        }
    }
    qFatal("There is no state %s.", name);
}

// A line in a language, in a window of its own.
struct Line {
    explicit Line(const QString& locale = QStringLiteral("en_US")) {
        const bool isInstalled = InstallTranslation(translator, LanguageForLocale(QLocale(locale)), kBin);
        if (!isInstalled) {
            qFatal("There are no translations.");
        }
        window.resize(StateLine::kSize);
        line = std::make_unique<StateLine>(&window);
    }

    void Seen() {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }
    void Show(const char* state) const { line->Show(StateNamed(state).status); }
    QLabel* Text() const { return line->findChild<QLabel*>(QStringLiteral("stateText")); }
    NimbPushButton* Link() const { return line->findChild<NimbPushButton*>(QStringLiteral("stateCopy")); }
    QColor Dot() const {
        const QImage picture = line->grab().toImage();
        const double ratio = picture.devicePixelRatio();
        return picture.pixelColor(int(3 * ratio), int(12 * ratio));
    }

    QTranslator translator;
    QWidget window;
    std::unique_ptr<StateLine> line;
};

}  // namespace

void TestStateLine::EveryStateHasWordsOfItsOwn_data() {
    QTest::addColumn<QString>("locale");
    for (const char* locale : kLocales) {
        QTest::newRow(locale) << QString::fromLatin1(locale);
    }
}

void TestStateLine::EveryStateHasWordsOfItsOwn() {
    QFETCH(QString, locale);
    const Line line(locale);
    QStringList phrases;
    for (const ToldState& state : ToldStates()) {
        const QString phrase = PanelStatusText(state.status);
        QVERIFY2(!phrase.isEmpty(), state.name);
        QVERIFY2(!phrase.contains(QLatin1Char('%')), qPrintable(phrase));
        QVERIFY2(!phrase.endsWith(QLatin1Char('.')) && !phrase.endsWith(QStringLiteral("。")),
                 qPrintable(phrase));
        const bool isChinese = phrase.contains(QRegularExpression(QStringLiteral("\\p{Han}")));
        QCOMPARE(isChinese, locale == QLatin1String("zh_CN"));
        if (locale == QLatin1String("en_US")) {
            QCOMPARE(phrase, QString::fromUtf8(state.english));
        }
        QCOMPARE(IsPanelOwed(state.status), state.isAmber);
        phrases.append(phrase);
    }
    // Without a screen a software panel says what any other says.
    QCOMPARE(phrases.removeDuplicates(), 1);
}

void TestStateLine::TheLineShowsAndTellsThem() {
    QFETCH(int, state);
    QFETCH(QString, locale);
    const ToldState& shown = ToldStates()[size_t(state)];
    const Line line(locale);
    line.line->Show(shown.status);
    const QString phrase = PanelStatusText(shown.status);
    QCOMPARE(line.line->Phrase(), phrase);
    QCOMPARE(line.Text()->text(), phrase);
    QCOMPARE(line.Dot(), shown.isAmber ? window_colors::kWarning : window_colors::kAccentBright);
    QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(line.Text());
    QCOMPARE(told->text(QAccessible::Name), phrase);
    // Qt announces a label's new text as its new name, unless it has a name of its own.
    QVERIFY(line.Text()->accessibleName().isEmpty());
    QCOMPARE(told->role(), QAccessible::StaticText);
    QCOMPARE(line.Text()->toolTip(), QString::fromUtf8(shown.status.node));
}

void TestStateLine::EveryDarknessHasWordsOfItsOwn_data() {
    EveryStateHasWordsOfItsOwn_data();
}

void TestStateLine::EveryDarknessHasWordsOfItsOwn() {
    QFETCH(QString, locale);
    const Line line(locale);
    line.Show("connected");
    QStringList phrases;
    for (const DarkReason reason :
         {DarkReason::Ending, DarkReason::Asleep, DarkReason::Locked, DarkReason::ScreenSaver,
          DarkReason::Asked, DarkReason::NightBlack, DarkReason::NightDimmed}) {
        line.line->ShowDark(reason);
        const QString phrase = line.line->Phrase();
        QCOMPARE(phrase, DarkText(reason));
        QVERIFY(!phrase.isEmpty());
        QCOMPARE(phrase.contains(QRegularExpression(QStringLiteral("\\p{Han}"))),
                 locale == QLatin1String("zh_CN"));
        QVERIFY(line.Text()->geometry().right() < StateLine::kSize.width());
        QCOMPARE(line.Dot(), window_colors::kAccentBright);
        // What made it darker stands before the night.
        QCOMPARE(DarkText(reason | DarkReason::NightDimmed), phrase);
        phrases.append(phrase);
    }
    QCOMPARE(phrases.removeDuplicates(), 0);
    QCOMPARE(DarkText({}), QString());
}

void TestStateLine::DarknessIsToldWhileNothingIsTheMatter() {
    QFETCH(int, state);
    QFETCH(QString, locale);
    const PanelStatus& status = ToldStates()[size_t(state)].status;
    const bool isAtRest =
        status.condition == PanelCondition::Connected || status.condition == PanelCondition::Sent;
    const Line line(locale);
    const QSignalSpy told(line.line.get(), &StateLine::phraseChanged);
    line.line->Show(status);
    line.line->ShowDark(DarkReason::Locked);
    QCOMPARE(line.line->Phrase(), isAtRest ? DarkText(DarkReason::Locked) : PanelStatusText(status));
    line.line->NoteSaved(SettingsPart::Away, false);
    QVERIFY(line.line->Phrase() != DarkText(DarkReason::Locked));
    line.line->NoteSaved(SettingsPart::Away, true);
    line.line->ShowDark({});
    QCOMPARE(line.line->Phrase(), PanelStatusText(status));
    QCOMPARE(told.last().first().toString(), PanelStatusText(status));
}

void TestStateLine::NothingNewPaintsNothing() {
    Line line;
    line.Seen();
    line.Show("denied");
    QCoreApplication::processEvents();
    const EventCounter window(line.window, QEvent::Paint);
    const EventCounter whole(*line.line, QEvent::Paint);
    const EventCounter text(*line.Text(), QEvent::Paint);
    const EventCounter link(*line.Link(), QEvent::Paint);
    const QSignalSpy told(line.line.get(), &StateLine::phraseChanged);
    for (int round = 0; round < 3; ++round) {
        line.Show("denied");
        line.line->NoteSaved(SettingsPart::Layout, true);
        QCoreApplication::processEvents();
    }
    QCOMPARE(window.count + whole.count + text.count + link.count, 0);
    QCOMPARE(told.count(), 0);
    line.Show("connected");
    QTRY_VERIFY(text.count > 0);
    QCOMPARE(told.count(), 1);
}

void TestStateLine::UnsavedSettingsStandBeforeEverything() {
    QFETCH(int, state);
    QFETCH(QString, locale);
    const ToldState& shown = ToldStates()[size_t(state)];
    const Line line(locale);
    line.line->Show(shown.status);
    line.line->NoteSaved(SettingsPart::Layout, false);
    const QString unsaved = line.line->Phrase();
    QVERIFY(!unsaved.isEmpty() && unsaved != PanelStatusText(shown.status));
    if (locale == QLatin1String("en_US")) {
        QCOMPARE(unsaved, QStringLiteral("Settings could not be saved"));
    }
    QCOMPARE(line.Dot(), window_colors::kWarning);
    QVERIFY(line.Link()->isHidden());
    // What the screen does meanwhile does not take it away.
    line.Show("sending");
    line.Show("sent");
    QCOMPARE(line.line->Phrase(), unsaved);
    line.line->Show(shown.status);
    line.line->NoteSaved(SettingsPart::Layout, false);
    QCOMPARE(line.Text()->text(), unsaved);
    // Pictures that are saved save no layout.
    line.line->NoteSaved(SettingsPart::Pictures, true);
    QCOMPARE(line.line->Phrase(), unsaved);
    line.line->NoteSaved(SettingsPart::Pictures, false);
    line.line->NoteSaved(SettingsPart::Layout, true);
    QCOMPARE(line.line->Phrase(), unsaved);
    line.line->NoteSaved(SettingsPart::Pictures, true);
    QCOMPARE(line.Text()->text(), PanelStatusText(shown.status));
    QCOMPARE(line.Dot(), shown.isAmber ? window_colors::kWarning : window_colors::kAccentBright);
}

void TestStateLine::OnlyADeniedScreenHasALink() {
    QFETCH(int, state);
    QFETCH(QString, locale);
    const ToldState& shown = ToldStates()[size_t(state)];
    const Line line(locale);
    line.line->Show(shown.status);
    QCOMPARE(!line.Link()->isHidden(), shown.status.condition == PanelCondition::Denied);
    QVERIFY(!line.Link()->text().isEmpty());
    QVERIFY(!line.Link()->toolTip().isEmpty());
    QCOMPARE(QAccessible::queryAccessibleInterface(line.Link())->text(QAccessible::Name),
             line.Link()->text());
}

void TestStateLine::TheLinkCopiesTheCommands_data() {
    QTest::addColumn<int>("key");
    QTest::newRow("mouse") << 0;
    QTest::newRow("space") << int(Qt::Key_Space);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
    QTest::newRow("Return") << int(Qt::Key_Return);
}

void TestStateLine::TheLinkCopiesTheCommands() {
    QFETCH(int, key);
    Line line;
    line.Seen();
    line.Show("denied");
    QCOMPARE(line.Link()->text(), QStringLiteral("Copy commands"));
    QGuiApplication::clipboard()->setText(QStringLiteral("something else"));
    if (key == 0) {
        QTest::mouseClick(line.Link(), Qt::LeftButton);
    } else {
        QVERIFY((line.Link()->focusPolicy() & Qt::TabFocus) != 0);
        line.Link()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(line.Link(), Qt::Key(key));
    }
    QCOMPARE(QGuiApplication::clipboard()->text(), AccessCommands());
    QCOMPARE(line.Link()->text(), QStringLiteral("Copied"));
    QVERIFY(line.line->rect().contains(line.Link()->geometry()));
    QCOMPARE(QAccessible::queryAccessibleInterface(line.Link())->text(QAccessible::Name),
             QStringLiteral("Copied"));
    // The state stands beside it all the while.
    QCOMPARE(line.Text()->text(), QStringLiteral("No permission to open the screen"));
    QCOMPARE(line.line->Phrase(), QStringLiteral("No permission to open the screen"));
}

void TestStateLine::TheNoteGoesByItself() {
    Line line;
    line.Seen();
    line.Show("denied");
    QTest::mouseClick(line.Link(), Qt::LeftButton);
    QCOMPARE(line.Link()->text(), QStringLiteral("Copied"));
    QTRY_COMPARE_WITH_TIMEOUT(line.Link()->text(), QStringLiteral("Copy commands"), 20000);
}

void TestStateLine::ANewStateTakesTheNoteAway() {
    Line line;
    line.Seen();
    line.Show("denied");
    QTest::mouseClick(line.Link(), Qt::LeftButton);
    line.Show("denied");
    QCOMPARE(line.Link()->text(), QStringLiteral("Copied"));
    line.Show("connected");
    QVERIFY(!line.Link()->isVisible());
    line.Show("denied");
    QVERIFY(line.Link()->isVisible());
    QCOMPARE(line.Link()->text(), QStringLiteral("Copy commands"));
}

KIVO_TEST(TestStateLine)
#include "tst_state_line.moc"
