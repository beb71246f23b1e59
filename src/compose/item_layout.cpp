#include "compose/item_layout.h"

namespace kivo {

namespace {

constexpr int kSmallPixelSize = kBasePixelSize * 3 / 5;  // dates and captions
constexpr int kSmallestPlainSize = 14;  // rectangles of somebody's own are not obeyed below that
constexpr int kTimeDateGap = 4;         // kept free between a time and the date in the same slot
constexpr int kTileCaptionMargin = 2;   // kept free between a tile's caption and the tile's right edge

constexpr int Scaled(int pixelSize, double factor) {
    return int(pixelSize * factor);
}

bool IsEmphasised(const ScreenState& state, int item) {
    return state.layout.highlight == item;
}

// The power's number and caption grow with the orientation, all other emphasised items by a factor of their
// own.
double PowerFactor(const ScreenState& state) {
    return state.orientation == Orientation::Portrait ? 1.3 : 1.2;
}

int ThemeTimeSize(const ScreenState& state) {
    if (IsHourAlone(state)) {
        return kBasePixelSize * 2;
    }
    return IsEmphasised(state, Time) ? Scaled(kBasePixelSize, 1.5) : kBasePixelSize;
}

int ThemeDateSize(const ScreenState& state) {
    if (!IsEmphasised(state, Time)) {
        return kSmallPixelSize;
    }
    if (IsHourAlone(state)) {
        return state.style == 1 ? Scaled(kSmallPixelSize, 1.8) : kSmallPixelSize * 2;
    }
    return Scaled(kSmallPixelSize, LayoutOf(state.theme, state.orientation).dateGrowth);
}

// One size for all plain values of a theme: the largest at which their usual texts fit all their rectangles.
// A size chosen for each text alone would jump between 99 and 100 %, and stand beside another size on the
// next card.
int PlainValueSize(const ScreenState& state) {
    int size = kBasePixelSize;
    for (const int item : kLiveItems) {
        const QRect rect = state.layout.textRect[size_t(item)];
        if (item == Time || item == Date || IsEmphasised(state, item) || !IsShown(state, item) ||
            rect.isEmpty()) {
            continue;
        }
        while (size > kSmallestPlainSize && !UsualValueFits(item, state.language, size, rect)) {
            --size;
        }
    }
    return size;
}

int ThemeValueSize(const ScreenState& state, int item, int plainSize) {
    if (item == Time) {
        return ThemeTimeSize(state);
    }
    if (item == Date) {
        return ThemeDateSize(state);
    }
    if (!IsEmphasised(state, item)) {
        return plainSize;
    }
    if (const std::optional<int> size = FactsOf(state.theme).mainValueSize) {
        return *size;
    }
    if (item != CpuPower) {
        return Scaled(kBasePixelSize, 1.4);
    }
    // Deliberate: with the Western date forms the power stays at the base size.
    return state.language != InterfaceLanguage::Chinese ? kBasePixelSize
                                                        : Scaled(kBasePixelSize, PowerFactor(state));
}

int ThemeCaptionSize(const ScreenState& state, int item) {
    if (!IsEmphasised(state, item)) {
        return kSmallPixelSize;
    }
    return Scaled(kSmallPixelSize, item == CpuPower ? PowerFactor(state) : 1.5);
}

TextRun ThemeCaption(const ScreenState& state, int item) {
    const QRect tile = state.layout.tile[size_t(item)];
    const bool emphasised = IsEmphasised(state, item);
    const int height = tile.height() / 3;
    TextRun run{item,
                TextRole::Caption,
                state.captions[size_t(item)],
                QRect(),
                ThemeCaptionSize(state, item),
                TextAlign::Top};
    int top = tile.top() + tile.height() * 2 / 3 - 5;
    const CaptionPlace place = FactsOf(state.theme).captions;
    if (place == CaptionPlace::CardHead && !emphasised) {
        run.align = TextAlign::TopLeft;
        run.rect = QRect(QPoint(tile.left() + 20, tile.top() + 5),
                         QPoint(tile.right() - kTileCaptionMargin, tile.top() + 5 + height - 1));
        return run;
    }
    if (place == CaptionPlace::CardMiddle) {
        top = tile.top() + height - 5;
    } else if (place == CaptionPlace::BesideCard && !emphasised) {
        // The cards of temperature and power stand on their captions, the others hang below theirs.
        top = item == CpuTemperature || item == CpuPower ? tile.bottom() + 5 : tile.top() - 14;
    }
    run.rect = QRect(tile.left(), top, tile.width(), height);
    run.axis = ThemeAxis(state.theme, state.orientation, item);
    return run;
}

ValueScale ScaleUnder(const ScreenState& state, int item, const QRect& rect) {
    if (!Has(state.theme, kScales) || !HasScaleRange(item)) {
        return ValueScale();
    }
    return {ScaleRect(rect, state.layout.tile[size_t(item)]), FactsOf(state.theme).accent};
}

void LayOutTheme(const ScreenState& state, QVector<TextRun>& runs) {
    const QRect canvas(QPoint(0, 0), CanvasSize(state.orientation));
    const int plainSize = PlainValueSize(state);
    for (const int item : kLiveItems) {
        if (!IsShown(state, item)) {
            continue;
        }
        QRect rect = state.layout.textRect[size_t(item)] & canvas;
        if (IsSentInHalves(state, item)) {
            rect = EvenPart(rect);
        }
        if (!rect.isEmpty()) {
            runs.append({item, TextRole::Value, QString(), rect, ThemeValueSize(state, item, plainSize),
                         item == Date ? TextAlign::Top : TextAlign::Centre,
                         ThemeAxis(state.theme, state.orientation, item), ScaleUnder(state, item, rect)});
        }
        if (FactsOf(item).captionIn == CaptionIn::SlotsAndThemes) {
            TextRun caption = ThemeCaption(state, item);
            caption.rect &= canvas;
            if (!caption.rect.isEmpty()) {
                runs.append(caption);
            }
        }
    }
}

int CustomValueSize(int item, int slot) {
    const int size = item == Date ? kSmallPixelSize : kBasePixelSize;
    return slot == kCentreSlot ? Scaled(size, 1.5) : size;
}

void LayOutCustom(const ScreenState& state, QVector<TextRun>& runs) {
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const int item = ItemDrawnIn(state, slot);
        if (item == kEmptySlot) {
            continue;
        }
        const QRect rect = EvenPart(SlotRect(slot, state.orientation));
        const auto value = [&](int kind, const QRect& place) {
            return TextRun{
                kind, TextRole::Value, QString(), place, CustomValueSize(kind, slot), TextAlign::Centre};
        };
        if (item == Time && TimeSlotHoldsDate(state)) {
            const int above = rect.height() * 3 / 5;
            runs.append(value(Time, rect.adjusted(0, 0, 0, above - kTimeDateGap - rect.height())));
            runs.append(value(Date, rect.adjusted(0, above, 0, 0)));
            continue;
        }
        runs.append(value(item, rect));
        if (FactsOf(item).captionIn != CaptionIn::Nowhere) {
            runs.append({item, TextRole::Caption, state.captions[size_t(item)],
                         SlotCaptionRect(slot, state.orientation), kSmallPixelSize, TextAlign::Top});
        }
    }
}

}  // namespace

bool IsSentInHalves(const ScreenState& state, int item) {
    return state.custom || (IsItem(item) && (FactsOf(state.theme).sentInHalves >> item & 1U) != 0);
}

FittedLine FitRun(const TextRun& run) {
    return FitLine(run.text, run.pixelSize, run.rect, run.align, run.axis);
}

QString EnglishDate(const QString& date) {
    const int year = date.indexOf(QStringLiteral("年"));
    const int month = date.indexOf(QStringLiteral("月"));
    const int day = date.indexOf(QStringLiteral("日"));
    if (year <= 0 || month <= year || day <= month) {
        return date;
    }
    const auto twoDigits = [](const QString& number) { return number.rightJustified(2, QLatin1Char('0')); };
    return QStringLiteral("%1.%2.%3")
        .arg(date.left(year), twoDigits(date.mid(year + 1, month - year - 1)),
             twoDigits(date.mid(month + 1, day - month - 1)));
}

QVector<TextRun> LayOutItems(const ScreenState& state) {
    QVector<TextRun> runs;
    runs.reserve(2 * kLiveValueCount);
    if (state.custom) {
        LayOutCustom(state, runs);
    } else {
        LayOutTheme(state, runs);
    }
    return runs;
}

QString WrittenValue(const ScreenState& state, int item, const QString& text) {
    QString written = item == Date && state.language == InterfaceLanguage::English ? EnglishDate(text) : text;
    // A blank that stands for a missing digit would push the others off the centre.
    while (written.startsWith(QLatin1Char(' '))) {
        written.remove(0, 1);
    }
    return written;
}

}  // namespace kivo
