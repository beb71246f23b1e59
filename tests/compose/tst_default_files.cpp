#include <QtTest>

#include "compose/frame_composer.h"
#include "compose/theme_state.h"
#include "compose_test_support.h"
#include "config/default_profile.h"
#include "config/setting_keys.h"
#include "config/settings_file.h"
#include "pictures/picture_reader.h"
#include "support/built_paths.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const QString kDefaults = InSourceFolder("resources/defaults");

}  // namespace

// The files beside the program and the tables they come from. When one of these fails after a change of
// tables or artwork, tools/generate_defaults makes the files again.
class TestDefaultFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpDrawing(); }
    void ConfigIsWhatTheTablesGive();
    void ConfigHoldsEveryKeyOfEveryLayout();
    void BackgroundIsTheDefaultStates();
    void ScreenFileIsThere();
};

void TestDefaultFiles::ConfigIsWhatTheTablesGive() {
    const QTemporaryDir folder;
    const QString made = folder.filePath(QStringLiteral("Config.ini"));
    QVERIFY(SaveThemeState(FactoryThemeState(InterfaceLanguage::Chinese), made));
    QVERIFY(SaveSlotTable(FactorySlotTable(), made));
    // Key by key: line ends and order are each platform's own.
    const QSettings shipped(kDefaults + QStringLiteral("/Config.ini"), QSettings::IniFormat);
    const QSettings fresh(made, QSettings::IniFormat);
    QStringList keys = shipped.allKeys();
    QStringList freshKeys = fresh.allKeys();
    keys.sort();
    freshKeys.sort();
    QVERIFY(keys.size() > 100);
    QCOMPARE(keys, freshKeys);
    for (const QString& key : qAsConst(keys)) {
        QVERIFY2(shipped.value(key) == fresh.value(key), qPrintable(key));
    }
}

void TestDefaultFiles::ConfigHoldsEveryKeyOfEveryLayout() {
    const SettingsReader settings(kDefaults + QStringLiteral("/Config.ini"));
    for (const NamedSetting& setting : AllSettings()) {
        const bool ofALayout = ThemeGroups().contains(setting.key.section(QLatin1Char('/'), 0, 0));
        const bool ofASlot = setting.key.startsWith(QLatin1String("CustomShow/"));
        if ((ofALayout || ofASlot) && !setting.setting.isOptional) {
            QVERIFY2(settings.Contains(setting.key), qPrintable(setting.key));
        }
    }
}

void TestDefaultFiles::BackgroundIsTheDefaultStates() {
    const QImage shipped(kDefaults + QStringLiteral("/whole.png"));
    QCOMPARE(shipped.size(), QSize(320, 170));
    const ScreenState state = MakeScreenState(FactoryThemeState(InterfaceLanguage::Chinese),
                                              FactorySlotTable(), 2, InterfaceLanguage::Chinese);
    SkinCache skins;
    const QImage composed = ComposeBackground(state, LoadPicture(PicturePath(state)), skins).image;
    const QImage compared = shipped.convertToFormat(QImage::Format_RGB16);
    // Qt scales with the vector instructions a processor has; these may round the last bit differently.
    int different = 0;
    for (int y = 0; y < composed.height(); ++y) {
        for (int x = 0; x < composed.width(); ++x) {
            const QColor a = composed.pixelColor(x, y);
            const QColor b = compared.pixelColor(x, y);
            constexpr int kOneStep = 9;  // of five bits
            QVERIFY(qAbs(a.red() - b.red()) <= kOneStep && qAbs(a.green() - b.green()) <= kOneStep &&
                    qAbs(a.blue() - b.blue()) <= kOneStep);
            different += a != b ? 1 : 0;
        }
    }
    QVERIFY2(different < 320 * 170 / 20, qPrintable(QString::number(different)));
}

void TestDefaultFiles::ScreenFileIsThere() {
    QVERIFY(QFile::exists(kDefaults + QStringLiteral("/Default.ini")));
}

KIVO_TEST(TestDefaultFiles)
#include "tst_default_files.moc"
