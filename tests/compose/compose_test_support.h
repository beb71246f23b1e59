#pragma once

// Screens, texts and small measuring tools that the tests of compose/ share.

#include <QByteArray>
#include <QCoreApplication>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <QTest>
#include <QTranslator>
#include <QVector>

#include <optional>
#include <utility>

#include "compose/item_drawing.h"
#include "compose/panel_text.h"
#include "compose/screen_state.h"
#include "leaning_font.h"
#include "resources/resources.h"
#include "support/built_paths.h"

namespace kivo::test {

// Resources and fonts as the program sets them up, once at the start of a test program. KIVO_TEST_FONT puts
// another family first among the stand-ins; kLeaningFont is one of our own.
inline void SetUpDrawing() {
    InitResources();
    const QString family = qEnvironmentVariable("KIVO_TEST_FONT");
    if (family == QLatin1String(kLeaningFont)) {
        AddLeaningFont();
    }
    if (!family.isEmpty()) {
        QFont::insertSubstitution(QStringLiteral("Microsoft YaHei"), family);
    }
    InstallFontSubstitutes();
}

constexpr std::array<InterfaceLanguage, 3> kLanguages{InterfaceLanguage::Chinese, InterfaceLanguage::English,
                                                      InterfaceLanguage::Russian};
constexpr std::array<Orientation, 2> kOrientations{Orientation::Landscape, Orientation::Portrait};
inline const std::array<Theme, kThemeCount> kThemes = [] {
    std::array<Theme, kThemeCount> themes{};
    for (const ThemeFacts& facts : kThemeTable) {
        themes[size_t(facts.theme)] = facts.theme;
    }
    return themes;
}();

// Those with an accent; they are those with glass.
inline const QVector<Theme> kAccentThemes = [] {
    QVector<Theme> themes;
    for (const Theme theme : kThemes) {
        if (HasAccent(theme)) {
            themes.append(theme);
        }
    }
    return themes;
}();

inline QByteArray NameOf(InterfaceLanguage language) {
    constexpr std::array<const char*, 3> names{"Chinese", "English", "Russian"};
    return names[size_t(language)];
}
inline QByteArray NameOf(Orientation orientation) {
    return orientation == Orientation::Landscape ? "landscape" : "portrait";
}
inline QByteArray NameOf(Theme theme) {
    return FactsOf(theme).files;
}

// The captions as the program gets them from the translation of that language.
inline const ItemTexts& CaptionsIn(InterfaceLanguage language) {
    static const std::array<ItemTexts, 3> captions = [] {
        const std::array<QString, 3> files{QStringLiteral("sc.qm"), QStringLiteral("en.qm"),
                                           QStringLiteral("rus.qm")};
        std::array<ItemTexts, 3> all;
        for (size_t k = 0; k < files.size(); ++k) {
            QTranslator translator;
            if (!translator.load(files[k], ProgramFolder() + QStringLiteral("/lang"))) {
                qFatal("The translation %s is missing.", qPrintable(files[k]));
            }
            QCoreApplication::installTranslator(&translator);
            all[k] = ItemCaptions();
            QCoreApplication::removeTranslator(&translator);
        }
        return all;
    }();
    return captions[size_t(language)];
}

inline ScreenState ThemeScreen(Theme theme, Orientation orientation,
                               InterfaceLanguage language = InterfaceLanguage::Chinese) {
    ScreenState state;
    state.theme = theme;
    state.orientation = orientation;
    state.language = language;
    state.layout = FactoryThemeLayout(theme, orientation, language);
    state.captions = CaptionsIn(language);
    return state;
}

// A custom layout with these items in its slots, all of them ticked.
inline ScreenState CustomScreen(const SlotRow& slotItems, Orientation orientation,
                                InterfaceLanguage language = InterfaceLanguage::Chinese, int variant = 0) {
    ScreenState state;
    state.custom = true;
    state.variant = variant;
    state.orientation = orientation;
    state.language = language;
    state.layout.sample = SampleTexts(language);
    state.slotItems = slotItems;
    state.captions = CaptionsIn(language);
    for (const int item : slotItems) {
        if (item >= 0 && item < kLiveValueCount) {
            (variant == 0 ? state.layout.shown : state.layout.selected)[size_t(item)] = true;
        }
    }
    return state;
}

constexpr SlotRow kNoItems{{kEmptySlot, kEmptySlot, kEmptySlot, kEmptySlot, kEmptySlot}};

inline SlotRow OnlySlot(int slot, int item) {
    SlotRow row = kNoItems;
    row[size_t(slot)] = item;
    return row;
}

// Time and date ticked together with one slot for both.
inline ScreenState SharedSlotScreen(int slot, Orientation orientation,
                                    InterfaceLanguage language = InterfaceLanguage::Chinese) {
    ScreenState state = CustomScreen(OnlySlot(slot, Time), orientation, language);
    state.layout.shown[Date] = true;
    return state;
}

struct NamedScreen {
    QByteArray name;
    ScreenState state;
};

inline QVector<NamedScreen> AllThemeScreens() {
    QVector<NamedScreen> screens;
    for (const InterfaceLanguage language : kLanguages) {
        for (const Orientation orientation : kOrientations) {
            for (const Theme theme : kThemes) {
                const QByteArray name = NameOf(theme) + ", " + NameOf(orientation) + ", " + NameOf(language);
                ScreenState state = ThemeScreen(theme, orientation, language);
                screens.append({name, state});
                if (theme == Theme::Scene) {
                    state.style = 1;
                    screens.append({name + ", style 1", state});
                }
            }
        }
    }
    return screens;
}

// Every item in every slot of layout 0 and alone in layout 1, and the slot that time and date share.
inline QVector<NamedScreen> AllCustomScreens() {
    QVector<NamedScreen> screens;
    constexpr size_t kItems = kLiveItems.size();
    for (const InterfaceLanguage language : kLanguages) {
        for (const Orientation orientation : kOrientations) {
            const QByteArray end = ", " + NameOf(orientation) + ", " + NameOf(language);
            for (size_t first = 0; first < kItems; ++first) {
                SlotRow row;
                for (int slot = 0; slot < kSlotCount; ++slot) {
                    row[size_t(slot)] = kLiveItems[(first + size_t(slot)) % kItems];
                }
                const QByteArray number = QByteArray::number(kLiveItems[first]);
                screens.append({"five items from " + number + end, CustomScreen(row, orientation, language)});
                screens.append(
                    {"item " + number + " alone" + end,
                     CustomScreen(OnlySlot(kCentreSlot, kLiveItems[first]), orientation, language, 1)});
            }
            for (int slot = 0; slot < kSlotCount; ++slot) {
                screens.append({"time and date in slot " + QByteArray::number(slot) + end,
                                SharedSlotScreen(slot, orientation, language)});
            }
        }
    }
    return screens;
}

inline QVector<NamedScreen> AllScreens() {
    return AllThemeScreens() + AllCustomScreens();
}

// What the items can show in a language, from the shortest to the longest.
inline QVector<ItemTexts> LiveTexts(InterfaceLanguage language) {
    const bool russian = language == InterfaceLanguage::Russian;
    const QString watt = russian ? QStringLiteral("Вт") : QStringLiteral("w");
    const auto date = [russian](const char* day, const char* month, const char* year) {
        const QString separator = QStringLiteral(".");
        QStringList parts{QLatin1String(year), QLatin1String(month), QLatin1String(day)};
        return russian
                   ? QLatin1String(day) + separator + QLatin1String(month) + separator + QLatin1String(year)
                   : parts.join(separator);
    };
    const auto row = [&](const char* temperature, const char* usage, const char* memory, const char* time,
                         const char* power, const QString& day, const char* fan) {
        return ItemTexts{QLatin1String(temperature) + QStringLiteral("℃"),
                         QLatin1String(usage) + QStringLiteral("%"),
                         QLatin1String(memory) + QStringLiteral("%"),
                         QLatin1String(time),
                         QLatin1String(power) + watt,
                         day,
                         QLatin1String(fan),
                         QString(),
                         QString()};
    };
    return {row("0", "1", "0", "00:00", "1", date("01", "01", "2000"), "1000"),
            row("45", "65", "20", "11:11", "15", date("31", "12", "2019"), "1500"),
            row("7", "100", "9", "23:58", "88", date("11", "11", "2111"), "3500"),
            row("100", "8", "100", "17:47", "125", date("28", "08", "2028"), "2700"),
            row("-12", "44", "71", "04:04", "998", date("24", "10", "2044"), "1100")};
}

// All that a value can ever hold: the live texts, the samples and the placeholders.
inline QVector<ItemTexts> AllTexts(InterfaceLanguage language) {
    QVector<ItemTexts> texts = LiveTexts(language);
    texts.append(SampleTexts(language));
    texts.append({QStringLiteral("00℃"), QStringLiteral("00%"), QStringLiteral("0000.00.00"),
                  QStringLiteral("00:00"), QStringLiteral("0000"), QStringLiteral("0000.00.00"),
                  QStringLiteral("0000"), QString(), QString()});
    for (const int item : kLiveItems) {
        for (const ItemTexts& each : std::as_const(texts)) {
            if (each[size_t(item)].isEmpty()) {
                qFatal("Live item %d is never drawn: it has no text here.", item);
            }
        }
    }
    return texts;
}

inline QRect CanvasRect(Orientation orientation) {
    return QRect(QPoint(0, 0), CanvasSize(orientation));
}

inline QImage BlackCanvas(Orientation orientation) {
    QImage image(CanvasSize(orientation), QImage::Format_RGB16);
    image.fill(Qt::black);
    return image;
}

// A canvas on which every pixel differs from its neighbours, none of them white or black.
inline QImage NoisyCanvas(Orientation orientation) {
    QImage image(CanvasSize(orientation), QImage::Format_RGB16);
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<quint16*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            row[x] = quint16(0x0841 + (x * 37 + y * 113) % 0x7000);
        }
    }
    return image;
}

inline quint16 PixelAt(const QImage& image, int x, int y) {
    return reinterpret_cast<const quint16*>(image.constScanLine(y))[x];
}

// The smallest rectangle that holds every pixel in which two RGB16 pictures of one size differ; null for
// none.
inline QRect ChangedRect(const QImage& a, const QImage& b) {
    int left = a.width();
    int right = -1;
    int top = a.height();
    int bottom = -1;
    for (int y = 0; y < a.height(); ++y) {
        const auto* rowA = reinterpret_cast<const quint16*>(a.constScanLine(y));
        const auto* rowB = reinterpret_cast<const quint16*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            if (rowA[x] != rowB[x]) {
                left = qMin(left, x);
                right = qMax(right, x);
                top = qMin(top, y);
                bottom = y;
            }
        }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

// What a run paints, measured on a black canvas that is larger than the panel by kMargin on every side.
constexpr int kMargin = 24;
inline QImage DrawnAlone(const TextRun& run, Orientation orientation) {
    QImage image(CanvasSize(orientation) + QSize(2 * kMargin, 2 * kMargin), QImage::Format_RGB16);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.translate(kMargin, kMargin);
    DrawTexts(painter, {run}, run.rect);
    return image;
}

// The rectangle of that ink in canvas pixels; null where nothing is painted.
inline QRect InkOf(const QImage& drawnAlone) {
    QImage black = drawnAlone;
    black.fill(Qt::black);
    const QRect ink = ChangedRect(drawnAlone, black);
    return ink.isNull() ? ink : ink.translated(-kMargin, -kMargin);
}
inline QRect InkOf(const TextRun& run, Orientation orientation) {
    return InkOf(DrawnAlone(run, orientation));
}

inline QString Joined(const FreeTextBlock& block) {
    QString text;
    for (const FreeTextLine& line : block.lines) {
        text += line.text;
    }
    return text;
}

inline QByteArray Describe(const QRect& rect) {
    return QByteArray::number(rect.left()) + "," + QByteArray::number(rect.top()) + " - " +
           QByteArray::number(rect.right()) + "," + QByteArray::number(rect.bottom());
}

inline QByteArray Describe(const TextRun& run) {
    return (run.role == TextRole::Value ? "value " : "caption ") + QByteArray::number(run.item) + " \"" +
           run.text.toUtf8() + "\" in " + Describe(run.rect);
}

// Collects what is logged while it lives, and keeps it from the test's output.
class LogLines {
public:
    LogLines() {
        Lines().clear();
        m_former = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { Lines().append(line); });
    }
    ~LogLines() { qInstallMessageHandler(m_former); }
    Q_DISABLE_COPY(LogLines)

    static QStringList& Lines() {
        static QStringList lines;
        return lines;
    }

private:
    QtMessageHandler m_former = nullptr;
};

}  // namespace kivo::test

Q_DECLARE_METATYPE(kivo::InterfaceLanguage)
Q_DECLARE_METATYPE(kivo::Orientation)
Q_DECLARE_METATYPE(kivo::ScreenState)
Q_DECLARE_METATYPE(std::optional<QRgb>)
Q_DECLARE_METATYPE(kivo::TextAlign)
Q_DECLARE_METATYPE(kivo::Theme)
