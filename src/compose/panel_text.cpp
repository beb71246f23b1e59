#include "compose/panel_text.h"

#include <QFontMetrics>
#include <QHash>
#include <QPainterPath>
#include <QStringList>
#include <QtMath>
#include <algorithm>
#include <mutex>

namespace kivo {

namespace {

// Below this share of its size a text is not made smaller any more but elided.
constexpr double kSmallestShare = 0.6;
constexpr int kSmallestPixelSize = 8;

struct MetricsCache {
    std::mutex mutex;
    QHash<int, LineMetrics> bySize;
};
Q_GLOBAL_STATIC(MetricsCache, metricsCache)

// Whether a digit or the colon of a time moves with what stands beside it.
bool KernsDigits(const QFont& font) {
    const QFontMetricsF metrics(font);
    double apart = 0;
    QString together;
    const QString signs = QStringLiteral("0123456789:");
    for (const QChar first : signs) {
        for (const QChar second : signs) {
            together += first;
            together += second;
            apart += metrics.horizontalAdvance(first) + metrics.horizontalAdvance(second);
        }
    }
    constexpr double kRounding = 0.5;
    return qAbs(metrics.horizontalAdvance(together) - apart) > kRounding;
}

// Whether a digit reaches over the sides of its advance, as those of a leaning font do. By its outline: Qt's
// own measures are rounded to whole pixels.
bool LeanDigits(const QFont& font) {
    const QFontMetricsF metrics(font);
    for (char digit = '0'; digit <= '9'; ++digit) {
        QPainterPath outline;
        outline.addText(0, 0, font, QString(QLatin1Char(digit)));
        const QRectF bounds = outline.boundingRect();
        if (bounds.left() < 0 || bounds.right() > metrics.horizontalAdvance(QLatin1Char(digit))) {
            return true;
        }
    }
    return false;
}

const QLatin1String kDigits("0123456789");

// Every sign that a value can have, once: digits, what dashes are made of, and the signs of all texts that
// are known before a value arrives.
QString SignsOfValues() {
    QString known = QString(kDigits) + QLatin1Char('-');
    for (const ItemFacts& facts : kItemTable) {
        if (!facts.hasLiveValue) {
            continue;
        }
        for (const LanguageText& text : {facts.sample, facts.startText, facts.widest}) {
            known += QString::fromUtf8(text.usual) + QString::fromUtf8(text.russian);
        }
    }
    QString signs;
    for (const QChar sign : qAsConst(known)) {
        if (!signs.contains(sign)) {
            signs += sign;
        }
    }
    return signs;
}

// digits: the ink of all ten.
LineMetrics::UsualValue UsualValueOf(const QFontMetrics& metrics, const QString& text, const QRect& digits) {
    if (text.isEmpty()) {
        return {};
    }
    const QRect ink = metrics.tightBoundingRect(text).united(digits);
    return {metrics.horizontalAdvance(text), -ink.top(), qMax(0, ink.bottom() + 1)};
}

LineMetrics Measure(int pixelSize) {
    const QFont font = PanelFont(pixelSize);
    const QFontMetrics metrics(font);
    // Whole pixels that hold the ink: Qt 5 rounds up, Qt 6 to the nearest.
    const QFontMetricsF exact(font);
    LineMetrics line;
    line.ascent = qCeil(exact.ascent());
    line.height = line.ascent + qCeil(exact.descent());
    line.lineSpacing = line.height + qRound(exact.leading());
    line.digitHeight = -metrics.tightBoundingRect(QStringLiteral("0")).top();
    static const QString signs = SignsOfValues();
    const QRect ink = metrics.tightBoundingRect(signs);
    line.inkAbove = -ink.top();
    line.inkBelow = qMax(0, ink.bottom() + 1);
    const QRect letters = metrics.tightBoundingRect(QStringLiteral("HbdlpqgyjДЩфр"));
    line.letterAbove = -letters.top();
    line.letterBelow = qMax(0, letters.bottom() + 1);
    const QRect digits = metrics.tightBoundingRect(kDigits);
    for (const ItemFacts& facts : kItemTable) {
        const auto usual = [&](InterfaceLanguage language) {
            return UsualValueOf(metrics, TextIn(facts.widest, language), digits);
        };
        line.value[size_t(facts.item)] = usual(InterfaceLanguage::English);
        line.russianValue[size_t(facts.item)] = usual(InterfaceLanguage::Russian);
    }
    line.colonWidth = metrics.horizontalAdvance(QLatin1Char(':'));
    line.separateDigits = !KernsDigits(font) && !LeanDigits(font);
    for (char digit = '0'; digit <= '9'; ++digit) {
        const int width = metrics.horizontalAdvance(QLatin1Char(digit));
        line.separateDigits = line.separateDigits && (digit == '0' || width == line.digitWidth);
        line.digitWidth = qMax(line.digitWidth, width);
    }
    return line;
}

int BaseLine(const QRect& rect, const LineMetrics& line, TextAlign align) {
    if (align != TextAlign::Centre && line.height <= rect.height()) {
        return rect.top() + line.ascent;
    }
    return rect.top() + (rect.height() + line.digitHeight) / 2;
}

int LeftOf(const QRect& rect, int width, TextAlign align, std::optional<int> axis) {
    if (align == TextAlign::TopLeft) {
        return rect.left();
    }
    if (!axis) {
        return rect.left() + (rect.width() - width) / 2;
    }
    // A sign's ink may reach a pixel beyond its advance, so that pixel is kept free where there is one.
    const int spare = qMax(0, rect.width() - width);
    const int edge = qMin(1, spare / 2);
    return qBound(rect.left() + edge, *axis - (width + 1) / 2, rect.left() + spare - edge);
}

bool StaysInside(const QRect& rect, int baseLine, int above, int below) {
    return baseLine - above >= rect.top() && baseLine + below - 1 <= rect.bottom();
}

// Whether the ink stays between the rectangle's top and bottom. The font-wide extents answer for most texts;
// only where they do not fit is the text itself measured.
bool FitsVertically(const QString& text, const QFontMetrics& metrics, const LineMetrics& line, int baseLine,
                    const QRect& rect) {
    if (StaysInside(rect, baseLine, line.inkAbove, line.inkBelow)) {
        return true;
    }
    // With all ten digits: the size must not hang on which of them a number has, or a clock would jump
    // between two.
    const bool hasDigit = std::any_of(text.begin(), text.end(), [](QChar sign) { return sign.isDigit(); });
    const QRect ink = metrics.tightBoundingRect(hasDigit ? text + QLatin1String("0123456789") : text);
    return StaysInside(rect, baseLine, -ink.top(), ink.bottom() + 1);
}

}  // namespace

QString FontFamily() {
    return QStringLiteral("Microsoft YaHei");
}

void InstallFontSubstitutes() {
    QFont::insertSubstitutions(
        FontFamily(),
        {QStringLiteral("Microsoft YaHei UI"), QStringLiteral("Noto Sans CJK SC"),
         QStringLiteral("Source Han Sans SC"), QStringLiteral("WenQuanYi Micro Hei"),
         QStringLiteral("WenQuanYi Zen Hei"), QStringLiteral("Droid Sans Fallback"), QStringLiteral("SimHei"),
         QStringLiteral("Segoe UI"), QStringLiteral("Noto Sans"), QStringLiteral("DejaVu Sans")});
}

QFont PanelFont(int pixelSize) {
    QFont font(FontFamily());
    font.setPixelSize(pixelSize);
    font.setHintingPreference(QFont::PreferVerticalHinting);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return font;
}

LineMetrics MetricsOf(int pixelSize) {
    MetricsCache* cache = metricsCache();
    const std::lock_guard<std::mutex> lock(cache->mutex);
    auto found = cache->bySize.find(pixelSize);
    if (found == cache->bySize.end()) {
        found = cache->bySize.insert(pixelSize, Measure(pixelSize));
    }
    return *found;
}

bool UsualValueFits(int item, InterfaceLanguage language, int pixelSize, const QRect& rect) {
    const LineMetrics line = MetricsOf(pixelSize);
    const auto& values = language == InterfaceLanguage::Russian ? line.russianValue : line.value;
    const LineMetrics::UsualValue& value = values[size_t(item)];
    return value.width <= rect.width() &&
           StaysInside(rect, BaseLine(rect, line, TextAlign::Centre), value.above, value.below);
}

FittedLine FitLine(const QString& text, int pixelSize, const QRect& rect, TextAlign align,
                   std::optional<int> axis) {
    const int smallest = qMin(pixelSize, qMax(kSmallestPixelSize, int(pixelSize * kSmallestShare)));
    FittedLine fitted;
    for (int size = pixelSize;; --size) {
        const QFontMetrics metrics(PanelFont(size));
        const LineMetrics line = MetricsOf(size);
        const int baseLine = BaseLine(rect, line, align);
        int width = metrics.horizontalAdvance(text);
        const bool fits = width <= rect.width() && FitsVertically(text, metrics, line, baseLine, rect);
        if (!fits && size > smallest) {
            continue;
        }
        fitted.text = text;
        if (width > rect.width()) {
            fitted.text = metrics.elidedText(text, Qt::ElideRight, rect.width());
            width = metrics.horizontalAdvance(fitted.text);
        }
        fitted.pixelSize = size;
        fitted.width = width;
        fitted.baseLine = QPoint(LeftOf(rect, width, align, axis), baseLine);
        return fitted;
    }
}

}  // namespace kivo
