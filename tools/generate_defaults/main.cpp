// Writes the default files that lie beside the program: Config.ini from the catalogue's own tables, whole.png
// from the default state, Default.ini and DefaultProfile.bin. Run after a change of tables or artwork:
//   kivo-generate-defaults resources/defaults

#include <QFile>
#include <QGuiApplication>
#include <QSettings>
#include <QTextStream>

#include "compose/frame_composer.h"
#include "compose/panel_text.h"
#include "compose/theme_state.h"
#include "config/settings_file.h"
#include "pictures/picture_reader.h"
#include "resources/resources.h"

namespace {

// The shipped files are the same for everybody; each language puts its own samples in when it reads them.
constexpr kivo::InterfaceLanguage kNeutral = kivo::InterfaceLanguage::Chinese;

bool WriteIni(const QString& path, const QString& key, const QString& value) {
    QSettings settings(path, QSettings::IniFormat);
    settings.setValue(key, value);
    settings.sync();
    return settings.status() == QSettings::NoError;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QTextStream err(stderr);
    if (argc != 2) {
        err << "usage: kivo-generate-defaults DIRECTORY\n";
        return 2;
    }
    kivo::InitResources();
    kivo::InstallFontSubstitutes();
    const QString directory = QString::fromLocal8Bit(argv[1]);
    const QString config = directory + QStringLiteral("/Config.ini");
    QFile::remove(config);
    const kivo::ThemeState themes = kivo::FactoryThemeState(kNeutral);
    bool good = kivo::SaveThemeState(themes, config) && kivo::SaveSlotTable(kivo::FactorySlotTable(), config);

    const kivo::ScreenState state = kivo::MakeScreenState(themes, kivo::FactorySlotTable(), 2, kNeutral);
    kivo::SkinCache skins;
    const QImage background =
        kivo::ComposeBackground(state, kivo::LoadPicture(kivo::PicturePath(state)), skins).image;
    good = good && background.save(directory + QStringLiteral("/whole.png"), "PNG", 0);

    good = good && WriteIni(directory + QStringLiteral("/Default.ini"), QStringLiteral("SCREEN/Name"),
                            QStringLiteral("Kivo Screen"));
    good = good && WriteIni(directory + QStringLiteral("/DefaultProfile.bin"),
                            QStringLiteral("PROFILE/ProductName"), QStringLiteral("Kivo Screen"));
    if (!good) {
        err << "Not all files could be written to " << directory << ".\n";
    }
    return good ? 0 : 1;
}
