#include <QLabel>

#include "config/kept_settings.h"
#include "support/window_test_support.h"
#include "widgets/nimb_push_button.h"
#include "window/restore_offer.h"

using namespace kivo;
using namespace kivo::test;

// Settings that gave way to the defaults because the first-run mark was lost, offered in the window.
class TestRestoreOffer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void init();
    void WithoutKeptSettingsThereIsNoOffer();
    void RestoringShowsAndSendsThem_data();
    void RestoringShowsAndSendsThem();
    void RestoringThatFailsSendsNothing();
    void OneAnswerIsEnoughForAll();
    void DismissingLeavesWhatIsThere();
    void TheOfferStandsAtTheNextStartToo();
    void TheToolBarTakesItsPlace();
    void TheWordsFit_data();
    void TheWordsFit();

private:
    // A person's own theme, and then the mark is lost.
    static void LoseTheMark();
    static int ThemeShown(const Desk& desk) { return desk.Editor()->Edited().themes.theme; }
};

void TestRestoreOffer::init() {
    SetUpProfile();
}

void TestRestoreOffer::LoseTheMark() {
    SettingsWriter settings;
    settings.SetInt(keys::kThemeId.name, int(Theme::Tdp));
    QVERIFY(settings.Commit());
    ForgetMark();
}

void TestRestoreOffer::WithoutKeptSettingsThereIsNoOffer() {
    const Desk desk;
    QVERIFY(desk.Find("restoreOffer")->isHidden());
}

void TestRestoreOffer::RestoringShowsAndSendsThem_data() {
    QTest::addColumn<int>("key");
    QTest::newRow("mouse") << 0;
    QTest::newRow("space") << int(Qt::Key_Space);
    QTest::newRow("Return") << int(Qt::Key_Return);
}

void TestRestoreOffer::RestoringShowsAndSendsThem() {
    QFETCH(int, key);
    LoseTheMark();
    Desk desk;
    desk.Show();
    // The first frame of what looks like a first run goes out meanwhile.
    QTRY_COMPARE_WITH_TIMEOUT(desk.panel.State().counts.frames, quint64(1), 20000);
    QTRY_VERIFY_WITH_TIMEOUT(!desk.window->isVisible() || desk.window->isMinimized(), 20000);
    desk.Show();
    QVERIFY(ThemeShown(desk) != int(Theme::Tdp));
    auto* restore = desk.Find<NimbPushButton>("restoreSettings");
    QVERIFY(restore->isVisible());
    QCOMPARE(restore->text(), QStringLiteral("Restore my settings"));
    if (key == 0) {
        QTest::mouseClick(restore, Qt::LeftButton);
    } else {
        QVERIFY((restore->focusPolicy() & Qt::TabFocus) != 0);
        restore->setFocus(Qt::TabFocusReason);
        QTest::keyClick(restore, Qt::Key(key));
    }
    QCOMPARE(ThemeShown(desk), int(Theme::Tdp));
    QVERIFY(desk.Find("restoreOffer")->isHidden());
    QTRY_COMPARE_WITH_TIMEOUT(desk.panel.State().counts.frames, quint64(2), 20000);
    QCOMPARE(int(desk.window->Session().Applied().theme), int(Theme::Tdp));
    desk.Restart();
    QCOMPARE(ThemeShown(desk), int(Theme::Tdp));
}

// What is chosen in the window has not been applied.
void TestRestoreOffer::RestoringThatFailsSendsNothing() {
    LoseTheMark();
    Desk desk;
    desk.Show();
    QTRY_COMPARE_WITH_TIMEOUT(desk.panel.State().counts.frames, quint64(1), 20000);
    QTRY_VERIFY_WITH_TIMEOUT(!desk.window->isVisible() || desk.window->isMinimized(), 20000);
    desk.Show();
    const int applied = int(desk.window->Session().Applied().theme);
    desk.Click("btnImage");
    // What gives way cannot be kept: a folder that is not empty stands in its place.
    SettingsWriter settings;
    settings.SetInt(keys::kThemeId.name, int(Theme::Time));
    QVERIFY(settings.Commit());
    QVERIFY(QDir().mkpath(ConfigFilePath() + QStringLiteral(".replaced/in the way")));
    desk.Click("restoreSettings");
    QVERIFY(desk.Find("restoreOffer")->isVisible());
    QCOMPARE(desk.panel.State().counts.frames, quint64(1));
    QCOMPARE(int(desk.window->Session().Applied().theme), applied);
    // The values go on.
    const quint64 areas = desk.panel.State().counts.areas;
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > areas, 90000);
}

void TestRestoreOffer::OneAnswerIsEnoughForAll() {
    LoseTheMark();
    QVERIFY(QFile::copy(ConfigFilePath(), ConfigFilePath() + QStringLiteral(".kept")));
    Desk desk;
    QVERIFY(QFile::exists(ConfigFilePath() + QStringLiteral(".kept")));
    SettingsWriter settings;
    settings.SetInt(keys::kThemeId.name, int(Theme::Time));
    QVERIFY(settings.Commit());
    ForgetMark();
    desk.Restart();
    desk.Show();
    QVERIFY(QFile::exists(ConfigFilePath() + QStringLiteral(".kept.2")));
    desk.Click("restoreSettings");
    QCOMPARE(ThemeShown(desk), int(Theme::Time));
    QVERIFY(desk.Find("restoreOffer")->isHidden());
    QVERIFY(!HasKeptSettings());
}

void TestRestoreOffer::DismissingLeavesWhatIsThere() {
    LoseTheMark();
    Desk desk;
    const int theme = ThemeShown(desk);
    desk.Show();
    desk.Click("keepDefaults");
    QVERIFY(desk.Find("restoreOffer")->isHidden());
    QVERIFY(!HasKeptSettings());
    QCOMPARE(ThemeShown(desk), theme);
    desk.Restart();
    QVERIFY(desk.Find("restoreOffer")->isHidden());
}

void TestRestoreOffer::TheOfferStandsAtTheNextStartToo() {
    LoseTheMark();
    Desk desk;
    desk.Restart();
    desk.Show();
    QVERIFY(desk.Find("restoreSettings")->isVisible());
}

void TestRestoreOffer::TheToolBarTakesItsPlace() {
    LoseTheMark();
    Desk desk;
    desk.Show();
    desk.Click("btnImage");
    QVERIFY(desk.Find("restoreOffer")->isVisible());
    desk.Click("btnEdit");
    QVERIFY(desk.Find("restoreOffer")->isHidden());
    desk.Click("btnEdit_cancel");
    QVERIFY(desk.Find("restoreOffer")->isVisible());
}

void TestRestoreOffer::TheWordsFit_data() {
    QTest::addColumn<QString>("locale");
    for (const char* locale : {"zh_CN", "en_US", "ru_RU"}) {
        QTest::newRow(locale) << QString::fromLatin1(locale);
    }
}

void TestRestoreOffer::TheWordsFit() {
    QFETCH(QString, locale);
    LoseTheMark();
    Desk desk{QLocale(locale)};
    desk.Show();
    const QWidget* const offer = desk.Find("restoreOffer");
    const auto parts = offer->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(parts.size(), 3);
    int right = -1;
    for (const QWidget* part : parts) {
        QVERIFY(part->x() > right);
        QVERIFY(offer->rect().contains(part->geometry()));
        QVERIFY(part->sizeHint().width() <= part->width() || part->inherits("kivo::NimbPushButton"));
        right = part->geometry().right();
    }
    QVERIFY(!offer->geometry().intersects(desk.Editor()->geometry()));
}

KIVO_TEST(TestRestoreOffer)
#include "tst_restore_offer.moc"
