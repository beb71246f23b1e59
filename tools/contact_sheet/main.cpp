// Draws the panel in every theme and orientation, and the custom layouts, over a few backgrounds in three
// languages, as the panel shows them (RGB565), for people to look at.
//   kivo-contact-sheet FILE [--scale N] [--live] [--language zh|en|ru] [--backgrounds 1,4,6,7]

#include <QCommandLineParser>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QTextStream>
#include <QTranslator>

#include "compose/background_picture.h"
#include "compose/frame_composer.h"
#include "compose/panel_text.h"
#include "compose/theme_state.h"
#include "resources/resources.h"

namespace {

using kivo::InterfaceLanguage;

struct Options {
    int scale = 1;
    bool live = false;
    QVector<QPair<QString, InterfaceLanguage>> languages;
    QVector<int> backgrounds;
};

kivo::ItemTexts LiveTexts(InterfaceLanguage language) {
    const bool russian = language == InterfaceLanguage::Russian;
    return {QStringLiteral("100℃"),
            QStringLiteral("100%"),
            QStringLiteral("38%"),
            QStringLiteral("18:46"),
            russian ? QStringLiteral("125Вт") : QStringLiteral("125w"),
            russian ? QStringLiteral("28.12.2026") : QStringLiteral("2026.12.28"),
            QStringLiteral("3400"),
            QString(),
            QString()};
}

// Themes 0..3, then the two custom layouts, then a custom layout with time and date in one slot and free
// text.
constexpr int kSheetRows = kivo::kThemeCount + 3;

kivo::ScreenState SheetState(int row, kivo::Orientation orientation, InterfaceLanguage language) {
    kivo::ThemeState themes = kivo::FactoryThemeState(language);
    kivo::SlotTable table = kivo::FactorySlotTable();
    themes.orientation = orientation;
    if (row < kivo::kThemeCount) {
        themes.theme = row;
    } else {
        themes.mode = 1;
        themes.style = row == kivo::kThemeCount + 1 ? 1 : 0;
    }
    if (row == kivo::kThemeCount + 2) {
        kivo::LayoutRecord& layout = themes.layouts[size_t(kivo::CustomLayoutIndex(0))];
        layout.shown[kivo::Date] = true;
        layout.shown[kivo::FanSpeed] = true;
        layout.freeText = QStringLiteral("Hello, Kivo! 你好 Привет");
        table[0] = {kivo::Time, kivo::CpuUsage, kivo::FanSpeed, kivo::MemoryUsage, kivo::CpuPower};
    }
    return kivo::MakeScreenState(themes, table, 2, language);
}

QImage Sheet(const Options& options, kivo::Orientation orientation) {
    const QSize cell = kivo::CanvasSize(orientation) * options.scale;
    const int gap = 4 * options.scale;
    const int columns = options.backgrounds.size() * options.languages.size();
    const int rows = kSheetRows;
    QImage sheet((cell.width() + gap) * columns + gap, (cell.height() + gap) * rows + gap,
                 QImage::Format_RGB32);
    sheet.fill(QColor(40, 40, 44));
    QPainter painter(&sheet);
    kivo::SkinCache skins;
    int column = 0;
    for (const auto& [name, language] : options.languages) {
        QTranslator translator;
        if (translator.load(QCoreApplication::applicationDirPath() +
                            QStringLiteral("/lang/%1.qm").arg(name))) {
            QCoreApplication::installTranslator(&translator);
        }
        for (const int number : options.backgrounds) {
            const QImage picture = kivo::LoadPicture(kivo::BuiltInBackgrounds().value(number - 1));
            for (int row = 0; row < rows; ++row) {
                const kivo::ScreenState state = SheetState(row, orientation, language);
                const kivo::ItemTexts texts = options.live ? LiveTexts(language) : state.layout.sample;
                const QImage frame =
                    kivo::ComposeFrame(state, kivo::ComposeBackground(state, picture, skins), texts);
                painter.drawImage(
                    QRect(QPoint(gap + column * (cell.width() + gap), gap + row * (cell.height() + gap)),
                          cell),
                    frame);
            }
            ++column;
        }
    }
    return sheet;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    kivo::InitResources();
    kivo::InstallFontSubstitutes();
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("file"),
                                 QStringLiteral("PNG to write; -landscape, -portrait are added"));
    parser.addOptions(
        {{QStringLiteral("scale"), QStringLiteral("Enlarge by <n>."), QStringLiteral("n"),
          QStringLiteral("1")},
         {QStringLiteral("live"), QStringLiteral("Long live values instead of the samples.")},
         {QStringLiteral("language"), QStringLiteral("Only <sc|en|rus>."), QStringLiteral("name")},
         {QStringLiteral("backgrounds"), QStringLiteral("Built-in pictures, as 1,4,6,7."),
          QStringLiteral("list"), QStringLiteral("1,4")}});
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        parser.showHelp(2);
    }
    Options options;
    options.scale = qBound(1, parser.value(QStringLiteral("scale")).toInt(), 8);
    options.live = parser.isSet(QStringLiteral("live"));
    for (const auto& language : {qMakePair(QStringLiteral("sc"), InterfaceLanguage::Chinese),
                                 qMakePair(QStringLiteral("en"), InterfaceLanguage::English),
                                 qMakePair(QStringLiteral("rus"), InterfaceLanguage::Russian)}) {
        const QString only = parser.value(QStringLiteral("language"));
        if (only.isEmpty() || only == language.first) {
            options.languages.append(language);
        }
    }
    const QStringList numbers = parser.value(QStringLiteral("backgrounds")).split(QLatin1Char(','));
    for (const QString& number : numbers) {
        options.backgrounds.append(qBound(1, number.toInt(), 11));
    }
    const QFileInfo file(parser.positionalArguments().constFirst());
    const QString stem = file.path() + QLatin1Char('/') + file.completeBaseName();
    const bool good =
        Sheet(options, kivo::Orientation::Landscape).save(stem + QStringLiteral("-landscape.png")) &&
        Sheet(options, kivo::Orientation::Portrait).save(stem + QStringLiteral("-portrait.png"));
    return good ? 0 : 1;
}
