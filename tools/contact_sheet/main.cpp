// Draws the panel in every theme and orientation, and the custom layouts, over a few backgrounds in three
// languages, as the panel shows them (RGB565), for people to look at.
//   kivo-contact-sheet FILE [--scale N] [--live] [--language sc|en|rus] [--backgrounds 1,4,6,7|all]
//       [--dim N] [--blur N] [--accent]
//
// One page: on its left the landscape frames, on its right the portrait ones, a row a theme or layout, a
// column a language and background. kivo-window-shots --sheet makes the same of the window.

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QPainter>
#include <QTextStream>
#include <QTranslator>

#include "compose/frame_composer.h"
#include "compose/panel_text.h"
#include "compose/theme_state.h"
#include "pictures/picture_reader.h"
#include "resources/resources.h"

namespace {

using kivo::InterfaceLanguage;

struct Options {
    int scale = 1;
    bool live = false;
    int dim = 0;  // percent, as blur
    int blur = 0;
    bool accentFromPicture = false;
    QVector<QPair<QString, InterfaceLanguage>> languages;
    QVector<int> backgrounds;
};

kivo::ItemTexts LiveTexts(InterfaceLanguage language) {
    kivo::ItemTexts texts;
    for (const int item : kivo::kLiveItems) {
        texts[size_t(item)] = TextIn(kivo::FactsOf(item).widest, language);
    }
    const bool russian = language == InterfaceLanguage::Russian;
    texts[kivo::CpuTemperature] = QStringLiteral("100℃");
    texts[kivo::MemoryUsage] = QStringLiteral("38%");
    texts[kivo::Time] = QStringLiteral("18:46");
    texts[kivo::Date] = russian ? QStringLiteral("28.12.2026") : QStringLiteral("2026.12.28");
    return texts;
}

// Themes 0..3, then the two custom layouts, then a custom layout with time and date in one slot and free
// text, in another colour over each background.
constexpr int kLayouts = kivo::kThemeCount + 3;

kivo::ScreenState SheetState(int layout, kivo::Orientation orientation, InterfaceLanguage language,
                             int background) {
    kivo::ThemeState themes = kivo::FactoryThemeState(language);
    kivo::SlotTable table = kivo::FactorySlotTable();
    themes.orientation = orientation;
    if (layout < kivo::kThemeCount) {
        themes.theme = layout;
    } else {
        themes.mode = 1;
        themes.customStyle = layout == kivo::kThemeCount + 1 ? 1 : 0;
    }
    if (layout == kivo::kThemeCount + 2) {
        kivo::LayoutRecord& record = themes.layouts[size_t(kivo::CustomLayoutIndex(0))];
        record.shown[kivo::Date] = true;
        record.shown[kivo::FanSpeed] = true;
        record.freeText = QStringLiteral("Hello, Kivo! 你好 Привет");
        record.colorIndex = background % kivo::kTextColorCount;
        table[0] = {kivo::Time, kivo::CpuUsage, kivo::FanSpeed, kivo::MemoryUsage, kivo::CpuPower};
    }
    return kivo::MakeScreenState(themes, table, 2, language);
}

// A strip of the page: one language over one background. Lying frames stand in two lines, the themes over the
// custom layouts; right of them all standing ones.
constexpr int kGap = 4;
constexpr QSize kLying = kivo::CanvasSize(kivo::Orientation::Landscape);
constexpr QSize kStanding = kivo::CanvasSize(kivo::Orientation::Portrait);
constexpr int kStandingLeft = (kLying.width() + kGap) * kivo::kThemeCount;
constexpr QSize kStrip(kStandingLeft + (kStanding.width() + kGap) * kLayouts + kGap,
                       2 * (kLying.height() + kGap));

QPoint PlaceInStrip(int layout, kivo::Orientation orientation) {
    if (orientation == kivo::Orientation::Portrait) {
        return QPoint(kStandingLeft + layout * (kStanding.width() + kGap), 0);
    }
    const int line = layout / kivo::kThemeCount;
    return QPoint(layout % kivo::kThemeCount * (kLying.width() + kGap), line * (kLying.height() + kGap));
}

QImage Sheet(const Options& options) {
    const int strips = options.backgrounds.size() * options.languages.size();
    QImage sheet(QSize(kStrip.width(), kStrip.height() * strips + kGap) * options.scale,
                 QImage::Format_RGB32);
    sheet.fill(QColor(40, 40, 44));
    QPainter painter(&sheet);
    painter.scale(options.scale, options.scale);  // without smoothing: every pixel of the panel is seen
    painter.translate(kGap, kGap);
    kivo::SkinCache skins;
    for (const auto& [name, language] : options.languages) {
        QTranslator translator;
        if (translator.load(QCoreApplication::applicationDirPath() +
                            QStringLiteral("/lang/%1.qm").arg(name))) {
            QCoreApplication::installTranslator(&translator);
        }
        for (const int number : options.backgrounds) {
            const QImage picture = kivo::LoadPicture(kivo::BuiltInBackgrounds().value(number - 1));
            for (const auto orientation : {kivo::Orientation::Landscape, kivo::Orientation::Portrait}) {
                for (int layout = 0; layout < kLayouts; ++layout) {
                    kivo::ScreenState state = SheetState(layout, orientation, language, number);
                    state.layout.dim = options.dim;
                    state.layout.blur = options.blur;
                    state.layout.accentFromPicture = options.accentFromPicture;
                    const kivo::ItemTexts texts = options.live ? LiveTexts(language) : state.layout.sample;
                    painter.drawImage(
                        PlaceInStrip(layout, orientation),
                        kivo::ComposeFrame(state, kivo::ComposeBackground(state, picture, skins), texts));
                }
            }
            painter.translate(0, kStrip.height());
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
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("PNG to write."));
    parser.addOptions(
        {{QStringLiteral("scale"), QStringLiteral("Enlarge by <n>."), QStringLiteral("n"),
          QStringLiteral("1")},
         {QStringLiteral("live"), QStringLiteral("Long live values instead of the samples.")},
         {QStringLiteral("language"), QStringLiteral("Only <sc|en|rus>."), QStringLiteral("name")},
         {QStringLiteral("backgrounds"), QStringLiteral("Built-in pictures, as 1,4,6,7, or all."),
          QStringLiteral("list"), QStringLiteral("1,4")},
         {QStringLiteral("dim"), QStringLiteral("Dim the pictures by <n> percent."), QStringLiteral("n")},
         {QStringLiteral("blur"), QStringLiteral("Blur the pictures by <n> percent."), QStringLiteral("n")},
         {QStringLiteral("accent"), QStringLiteral("Take the themes' accents from the pictures.")}});
    parser.process(application);
    if (parser.positionalArguments().size() != 1) {
        parser.showHelp(2);
    }
    Options options;
    options.scale = qBound(1, parser.value(QStringLiteral("scale")).toInt(), 8);
    options.live = parser.isSet(QStringLiteral("live"));
    options.dim = qBound(0, parser.value(QStringLiteral("dim")).toInt(), 100);
    options.blur = qBound(0, parser.value(QStringLiteral("blur")).toInt(), 100);
    options.accentFromPicture = parser.isSet(QStringLiteral("accent"));
    for (const auto& language : {qMakePair(QStringLiteral("sc"), InterfaceLanguage::Chinese),
                                 qMakePair(QStringLiteral("en"), InterfaceLanguage::English),
                                 qMakePair(QStringLiteral("rus"), InterfaceLanguage::Russian)}) {
        const QString only = parser.value(QStringLiteral("language"));
        if (only.isEmpty() || only == language.first) {
            options.languages.append(language);
        }
    }
    const QString list = parser.value(QStringLiteral("backgrounds"));
    const int count = kivo::BuiltInBackgrounds().size();
    for (int number = 1; list == QLatin1String("all") && number <= count; ++number) {
        options.backgrounds.append(number);
    }
    const QStringList numbers = list.split(QLatin1Char(','));
    for (const QString& number : numbers) {
        if (number != QLatin1String("all")) {
            options.backgrounds.append(qBound(1, number.toInt(), count));
        }
    }
    const bool good = Sheet(options).save(parser.positionalArguments().constFirst());
    return good ? 0 : 1;
}
