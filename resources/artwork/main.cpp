#include "progress.h"
#include "scenes.h"
#include "skins.h"
#include "window_files.h"
#include "window_picture.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QTextStream>

#include <algorithm>
#include <array>

// Makes every picture of resources/ from fixed seeds: the same program gives the same bytes. Backgrounds and
// panel skins go into background/, the window's pictures into skins/, what lies beside the program into
// skin/.

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

// How the name of a picture ends that has scale pixels for one of the plain one's.
QLatin1String Ending(int scale) {
    return QLatin1String(scale == 1 ? ".png" : "@2x.png");
}

bool SaveLayers(const QDir& folder, Theme theme, Orientation orientation, int scale) {
    const SkinLayers layers = DrawSkin(theme, orientation, scale);
    const QString suffix =
        QLatin1String(orientation == Orientation::Landscape ? "_01" : "_02") + Ending(scale);
    const auto save = [&](const char* layer, const QImage& image) {
        return image.isNull() || Save(folder, NameOf(theme) + QLatin1String(layer) + suffix, image);
    };
    return save("_background", layers.glass) && save("_ornaments", layers.ornaments) &&
           save("_frame", layers.frame) && save("_icons", layers.icons);
}

bool SaveSkins(const QDir& folder) {
    for (const kivo::ThemeFacts& facts : kivo::kThemeTable) {
        const Theme theme = facts.theme;
        for (const int scale : {1, 2}) {
            const QImage icon = DrawThemeIcon(theme, scale);
            if (!icon.isNull() &&
                !Save(folder, NameOf(theme) + QLatin1String("_icon") + Ending(scale), icon)) {
                return false;
            }
            for (const Orientation orientation : {Orientation::Landscape, Orientation::Portrait}) {
                if (!SaveLayers(folder, theme, orientation, scale)) {
                    return false;
                }
            }
        }
    }
    return true;
}

bool SaveBytes(const QDir& folder, const QString& name, const QByteArray& bytes) {
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        QTextStream(stderr) << "cannot write " << file.fileName() << ": " << file.errorString() << '\n';
        return false;
    }
    return true;
}

// The program's icon by itself, for desktops that want a file a size.
bool SaveIcons(const QDir& icons) {
    for (const int side : {16, 24, 32, 48, 64, 128, 256}) {
        if (!Save(icons, QStringLiteral("%1.png").arg(side), DrawLogo(side))) {
            return false;
        }
    }
    return true;
}

// As the window's ground is drawn on a screen that is not scaled.
QImage Halved(const QImage& picture) {
    QImage half(picture.size() / 2, QImage::Format_RGB32);
    QPainter painter(&half);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(half.rect()), picture, QRectF(picture.rect()));
    painter.end();
    return half;
}

bool SaveWindow(const QDir& pictures, const QDir& besideProgram) {
    for (const WindowPicture& picture : WindowPictures()) {
        const QString name = QLatin1String(picture.name);
        if (!Save(pictures, name + Ending(1), Render(picture, 1)) ||
            !Save(pictures, name + Ending(2), Render(picture, 2))) {
            return false;
        }
    }
    std::vector<QImage> logo;
    for (const int side : {16, 20, 24, 32, 40, 48, 64, 128, 256}) {
        logo.push_back(DrawLogo(side));
    }
    const QVector<QRgb> palette = ProgressPalette();
    const QImage ground = DrawGround();
    return Save(pictures, QStringLiteral("background_01.png"), ground) &&
           Save(pictures, QStringLiteral("background_01_small.png"), Halved(ground)) &&
           SaveBytes(pictures, QStringLiteral("logo.ico"), EncodeIco(logo)) &&
           SaveBytes(pictures, QStringLiteral("loading.gif"),
                     EncodeGif(DrawProgress(1), palette, kProgressDelay)) &&
           SaveBytes(pictures, QStringLiteral("loading@2x.gif"),
                     EncodeGif(DrawProgress(2), palette, kProgressDelay)) &&
           Save(besideProgram, QStringLiteral("process.png"), DrawProgressMask());
}

}  // namespace

int main(int argc, char** argv) {
    // It draws into memory only; no display is needed.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Makes the pictures of resources/."));
    parser.addHelpOption();
    const QCommandLineOption only(
        QStringLiteral("only"),
        QStringLiteral("Make this file alone (a background), or \"skins\" (the panel's), or \"window\"."),
        QStringLiteral("name"));
    parser.addOption(only);
    parser.addPositionalArgument(QStringLiteral("folder"),
                                 QStringLiteral("resources, or another folder to fill."));
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        parser.showHelp(2);
    }
    const QDir root(parser.positionalArguments().constFirst());
    const QDir folder(root.filePath(QStringLiteral("background")));
    const QDir window(root.filePath(QStringLiteral("skins")));
    const QDir besideProgram(root.filePath(QStringLiteral("skin")));
    const QDir icons(root.filePath(QStringLiteral("icons")));
    for (const QDir& each : {folder, window, besideProgram, icons}) {
        if (!each.mkpath(QStringLiteral("."))) {
            QTextStream(stderr) << "cannot make " << each.path() << '\n';
            return 1;
        }
    }
    const QString name = parser.value(only);
    const bool skins = name.isEmpty() || name == QLatin1String("skins");
    const bool windowToo = name.isEmpty() || name == QLatin1String("window");
    if (!skins && !windowToo && !IsBackground(name)) {
        QTextStream(stderr) << "no such picture: " << name << '\n';
        return 2;
    }
    const bool good =
        ((skins && !name.isEmpty()) || name == QLatin1String("window") || SaveBackgrounds(folder, name)) &&
        (!skins || SaveSkins(folder)) &&
        (!windowToo || (SaveWindow(window, besideProgram) && SaveIcons(icons)));
    return good ? 0 : 1;
}
