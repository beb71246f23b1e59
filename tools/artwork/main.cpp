#include "overview.h"
#include "scenes.h"
#include "sheet.h"
#include "skins.h"

#include <QCommandLineParser>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QTextStream>

#include <algorithm>
#include <array>

// Makes every picture of resources/background/ into a folder, from fixed seeds: the same program gives the
// same bytes. With --sheet it shows what is in the folder on one picture instead.

namespace {

using namespace kivo::artwork;

struct Background {
    const char* name;
    QImage (*draw)();
};

constexpr std::array<Background, 11> kBackgrounds = {{{"1.jpg", DrawDawn},
                                                      {"2.jpg", DrawAurora},
                                                      {"3.jpg", DrawDunes},
                                                      {"4.jpg", DrawShore},
                                                      {"5.jpg", DrawHarbour},
                                                      {"6.png", DrawPaperHills},
                                                      {"7.jpg", DrawNebula},
                                                      {"8.jpg", DrawMorningFirs},
                                                      {"9.jpg", DrawSilk},
                                                      {"10.jpg", DrawContours},
                                                      {"11.jpg", DrawPlanet}}};

bool Save(const QDir& folder, const QString& name, const QImage& image) {
    QImageWriter writer(folder.filePath(name));
    if (name.endsWith(QLatin1String(".jpg"))) {
        writer.setQuality(92);
        writer.setOptimizedWrite(true);
    } else {
        writer.setQuality(0);  // for PNG: as small as it gets
    }
    if (!writer.write(image)) {
        QTextStream(stderr) << "cannot write " << writer.fileName() << ": " << writer.errorString() << '\n';
        return false;
    }
    return true;
}

bool IsBackground(const QString& name) {
    return std::any_of(kBackgrounds.begin(), kBackgrounds.end(),
                       [&](const Background& background) { return name == QLatin1String(background.name); });
}

bool SaveBackgrounds(const QDir& folder, const QString& only) {
    for (const Background& background : kBackgrounds) {
        const QString name = QLatin1String(background.name);
        if ((only.isEmpty() || only == name) && !Save(folder, name, background.draw())) {
            return false;
        }
    }
    return true;
}

bool SaveLayers(const QDir& folder, Theme theme, Orientation orientation, const SkinLayers& layers) {
    const QString suffix = QLatin1String(orientation == Orientation::Landscape ? "_01.png" : "_02.png");
    const auto save = [&](const char* layer, const QImage& image) {
        return image.isNull() || Save(folder, NameOf(theme) + QLatin1String(layer) + suffix, image);
    };
    return save("_background", layers.glass) && save("_ornaments", layers.ornaments) &&
           save("_frame", layers.frame) && save("_icons", layers.icons);
}

// The overview carries no words yet, so its English form is the same picture; the scene theme has none.
bool SaveOverview(const QDir& folder, Theme theme, Orientation orientation, const QImage& overview) {
    const QString stem =
        NameOf(theme) +
        QLatin1String(orientation == Orientation::Landscape ? "_background_all" : "_background_all3");
    return Save(folder, stem + QLatin1String(".png"), overview) &&
           (theme == Theme::Scene || Save(folder, stem + QLatin1String("_en.png"), overview));
}

bool SaveSkins(const QDir& folder) {
    const QImage background(folder.filePath(QStringLiteral("2.jpg")));
    if (background.isNull()) {
        QTextStream(stderr) << "the overview pictures need " << folder.filePath(QStringLiteral("2.jpg"))
                            << '\n';
        return false;
    }
    for (const Theme theme : kThemes) {
        const QImage icon = DrawThemeIcon(theme);
        if (!icon.isNull() && !Save(folder, NameOf(theme) + QLatin1String("_icon.png"), icon)) {
            return false;
        }
        for (const Orientation orientation : {Orientation::Landscape, Orientation::Portrait}) {
            const SkinLayers layers = DrawSkin(theme, orientation);
            const QImage panel = ComposePanel(theme, orientation, layers, icon, background);
            if (!SaveLayers(folder, theme, orientation, layers) ||
                !SaveOverview(folder, theme, orientation, DrawOverview(theme, orientation, panel))) {
                return false;
            }
        }
    }
    return Save(folder, QStringLiteral("default_background_black.png"), DrawBlackVeil());
}

}  // namespace

int main(int argc, char** argv) {
    // It draws into memory only; no display is needed.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Makes the pictures of resources/background."));
    parser.addHelpOption();
    const QCommandLineOption sheet(
        QStringLiteral("sheet"),
        QStringLiteral("Write a contact sheet of FOLDER's skins over --over's picture."),
        QStringLiteral("file"));
    const QCommandLineOption over(QStringLiteral("over"),
                                  QStringLiteral("The sheet's picture (default: FOLDER/1.jpg)."),
                                  QStringLiteral("picture"));
    const QCommandLineOption only(QStringLiteral("only"),
                                  QStringLiteral("Make this file alone (a background), or \"skins\"."),
                                  QStringLiteral("name"));
    parser.addOptions({sheet, over, only});
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("Where the pictures go."));
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        parser.showHelp(2);
    }
    const QDir folder(parser.positionalArguments().constFirst());
    if (!folder.mkpath(QStringLiteral("."))) {
        QTextStream(stderr) << "cannot make " << folder.path() << '\n';
        return 1;
    }
    if (parser.isSet(sheet)) {
        const QString picture =
            parser.isSet(over) ? parser.value(over) : folder.filePath(QStringLiteral("1.jpg"));
        return MakeSheet(folder, picture, parser.value(sheet)) ? 0 : 1;
    }
    const QString name = parser.value(only);
    if (!name.isEmpty() && name != QLatin1String("skins") && !IsBackground(name)) {
        QTextStream(stderr) << "no such picture: " << name << '\n';
        return 2;
    }
    if (name != QLatin1String("skins") && !SaveBackgrounds(folder, name)) {
        return 1;
    }
    const bool skins = name.isEmpty() || name == QLatin1String("skins");
    return !skins || SaveSkins(folder) ? 0 : 1;
}
