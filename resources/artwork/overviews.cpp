// Makes the overview pictures of the theme list: each theme's frame, composed by the program itself with the
// sample texts over the second background, small under the theme's emblem. The skins are those compiled in.
//   kivo-overviews resources

#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QImageWriter>
#include <QTextStream>
#include <QTranslator>

#include "compose/custom_layout.h"
#include "compose/frame_composer.h"
#include "compose/panel_text.h"
#include "compose/theme_catalogue.h"
#include "compose/theme_state.h"
#include "overview.h"
#include "pictures/picture_reader.h"
#include "resources/resources.h"

namespace {

using kivo::InterfaceLanguage;

QImage Frame(kivo::Theme theme, kivo::Orientation orientation, InterfaceLanguage language) {
    kivo::ThemeState themes = kivo::FactoryThemeState(language);
    themes.theme = int(theme);
    themes.orientation = orientation;
    const kivo::ScreenState state = kivo::MakeScreenState(themes, kivo::FactorySlotTable(), 0, language);
    kivo::SkinCache skins;
    const QImage picture = kivo::LoadPicture(kivo::BuiltInBackgrounds().value(1));
    return kivo::ComposeFrame(state, kivo::ComposeBackground(state, picture, skins), state.layout.sample);
}

bool Save(const QString& path, const QImage& image) {
    QImageWriter writer(path);
    writer.setQuality(0);  // for PNG: as small as it gets
    if (!writer.write(image)) {
        QTextStream(stderr) << "cannot write " << path << ": " << writer.errorString() << '\n';
        return false;
    }
    return true;
}

// All pictures that this language is shown. The scene has one for all, with figures only.
bool SaveOverviews(const QDir& resources, InterfaceLanguage language) {
    for (const kivo::Orientation orientation : {kivo::Orientation::Landscape, kivo::Orientation::Portrait}) {
        const QStringList names = kivo::OverviewPictures(orientation, language);
        for (int theme = 0; theme < kivo::kThemeCount; ++theme) {
            const QImage frame = Frame(
                kivo::Theme(theme), orientation,
                kivo::Has(kivo::Theme(theme), kivo::kHourAlone) ? InterfaceLanguage::English : language);
            QString path = resources.filePath(QString(names[theme]).remove(QStringLiteral("://")));
            for (const int scale : {1, 2}) {
                const QImage overview = kivo::artwork::DrawOverview(
                    kivo::Theme(theme), kivo::artwork::Orientation(orientation), frame, scale);
                if (scale == 2) {
                    path.replace(QStringLiteral(".png"), QStringLiteral("@2x.png"));
                }
                if (!Save(path, overview)) {
                    return false;
                }
            }
        }
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    kivo::InitResources();
    kivo::InstallFontSubstitutes();
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Makes the overview pictures of the theme list."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("resources, or a copy of it."));
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        parser.showHelp(2);
    }
    const QDir resources(parser.positionalArguments().constFirst());
    if (!SaveOverviews(resources, InterfaceLanguage::Chinese)) {
        return 1;
    }
    for (const auto& [language, name] :
         {std::pair(InterfaceLanguage::English, "en.qm"), std::pair(InterfaceLanguage::Russian, "rus.qm")}) {
        QTranslator captions;
        if (!captions.load(QLatin1String(name),
                           QCoreApplication::applicationDirPath() + QLatin1String("/lang"))) {
            QTextStream(stderr) << "no captions in " << name << "; build kivo_languages first\n";
            return 1;
        }
        QCoreApplication::installTranslator(&captions);
        if (!SaveOverviews(resources, language)) {
            return 1;
        }
    }
    return 0;
}
