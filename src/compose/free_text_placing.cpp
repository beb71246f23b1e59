#include "compose/free_text_placing.h"

#include <QtMath>
#include <limits>
#include <optional>
#include <utility>

#include "compose/wrapped_text.h"

namespace kivo {

namespace {

constexpr int kLastRow = kTextRowCount - 1;
constexpr int kSmallestSize = 12;

// Ways of giving way, as pixels of way that are as bad: in the next band is better than much smaller, a
// little smaller better than at the other end of the panel.
constexpr int kCostOfSize = 25;        // a pixel smaller
constexpr int kCostOfLine = 20;        // a line more than the row would need
constexpr int kCostOfBrokenWord = 60;  // a word broken that the row would keep whole

// The row's box. Its bottom follows from the font, so that three lines and their spacing fit; only the first
// landscape row keeps the box of the table, or it would be centred over the middle slot.
QRect RowBox(const ScreenState& state, const LineMetrics& metrics) {
    QRect box = TextRowRect(state.textRow, state.orientation);
    if (state.orientation == Orientation::Portrait || state.textRow != 0) {
        box.setBottom(box.top() + 3 * metrics.height + metrics.lineSpacing - 1);
    }
    return box;
}

// That many lines at their row, whatever else is there.
FreeTextBlock AtItsRow(const ScreenState& state, const TextAtSize& text, const WrappedText& wrapped) {
    const LineMetrics& metrics = text.Metrics();
    const QRect box = RowBox(state, metrics);
    const int height = wrapped.lines.size() * metrics.lineSpacing;
    const int top = state.textRow == kLastRow ? box.top() : box.top() + qFloor((box.height() - height) / 2.0);
    FreeTextBlock block;
    block.pixelSize = text.PixelSize();
    block.color = FreeTextColor(state.layout.colorIndex);
    for (int k = 0; k < wrapped.lines.size(); ++k) {
        const WrappedLine& line = wrapped.lines[k];
        const QPoint baseLine(box.left() + (box.width() - line.width) / 2,
                              top + k * metrics.lineSpacing + metrics.ascent);
        block.lines.append({line.text, baseLine});
        const QRect ink = text.InkOf(line.text).translated(baseLine);
        if (!ink.isEmpty()) {
            // As high as any line of that size, or a text would hop while it is typed.
            block.bounds |= ink | QRect(ink.left(), baseLine.y() - metrics.letterAbove, ink.width(),
                                        metrics.letterAbove + metrics.letterBelow);
        }
    }
    return block;
}

// The shortest way into the area. What is larger than the area sticks out on the right or at the foot.
QPoint WayInto(const QRect& area, const QRect& bounds) {
    const int right = qMin(0, area.right() - bounds.right());
    const int down = qMin(0, area.bottom() - bounds.bottom());
    return QPoint(qMax(area.left() - bounds.left(), right), qMax(area.top() - bounds.top(), down));
}

void Move(FreeTextBlock& block, QPoint way) {
    for (FreeTextLine& line : block.lines) {
        line.baseLine += way;
    }
    block.bounds.translate(way);
}

int LinesThatFit(const TextAtSize& text, int height) {
    const LineMetrics& metrics = text.Metrics();
    const int above = height - metrics.letterAbove - metrics.letterBelow;
    return above < 0 ? 0 : 1 + above / metrics.lineSpacing;
}

// Signs stand between pixels: their sides are blurred over one more.
int WrapWidth(const QRect& area) {
    return area.width() - 2;
}

struct Placed {
    FreeTextBlock block;
    int cost = 0;
};

// Tries the areas at one size.
class Placing {
public:
    // asked: the text as its row alone would have it.
    Placing(const ScreenState& state, const QVector<QRect>& areas, WrappedText asked)
        : m_state(state), m_areas(areas), m_asked(std::move(asked)) {}

    // The nearest place at which the whole text fits, if it costs less than limit.
    std::optional<Placed> Nearest(TextAtSize& text, int limit) const {
        std::optional<Placed> nearest;
        for (const QRect& area : m_areas) {
            if (limit <= 0) {
                break;
            }
            const int mostLines = LinesThatFit(text, area.height());
            // The cheaper question first.
            if (text.Advance() > mostLines * area.width()) {
                continue;
            }
            const WrappedText& wrapped = text.WrappedTo(WrapWidth(area));
            const int costOfLines = CostOfLines(wrapped);
            if (wrapped.lines.size() > mostLines || costOfLines >= limit) {
                continue;
            }
            Placed placed = Place(text, wrapped, area);
            placed.cost += costOfLines;
            const QRect& bounds = placed.block.bounds;
            if (placed.cost < limit && (bounds.isNull() || area.contains(bounds))) {
                limit = placed.cost;
                nearest = placed;
            }
        }
        return nearest;
    }

    // As much of the text as fits, in the area that holds most of it; of several in the nearest.
    FreeTextBlock MostOf(const TextAtSize& text) const {
        Placed best;
        int mostSigns = -1;
        for (const QRect& area : m_areas) {
            const WrappedText wrapped =
                text.CutTo(WrapWidth(area), qMax(1, LinesThatFit(text, area.height())));
            int signs = 0;
            for (const WrappedLine& line : wrapped.lines) {
                signs += line.text.size();
            }
            if (signs < mostSigns) {
                continue;
            }
            Placed placed = Place(text, wrapped, area);
            if (signs > mostSigns || placed.cost < best.cost) {
                mostSigns = signs;
                best = placed;
                // Accents in piles can be higher than any area.
                best.block.bounds &= area;
            }
        }
        best.block.isCut = true;
        return best.block;
    }

private:
    int CostOfLines(const WrappedText& wrapped) const {
        return kCostOfLine * qMax(0, wrapped.lines.size() - m_asked.lines.size()) +
               kCostOfBrokenWord * qMax(0, wrapped.brokenWords - m_asked.brokenWords);
    }

    Placed Place(const TextAtSize& text, const WrappedText& wrapped, const QRect& area) const {
        Placed placed{AtItsRow(m_state, text, wrapped), 0};
        if (!placed.block.bounds.isNull()) {
            const QPoint way = WayInto(area, placed.block.bounds);
            Move(placed.block, way);
            placed.cost = way.manhattanLength();
        }
        return placed;
    }

    const ScreenState& m_state;
    const QVector<QRect>& m_areas;
    WrappedText m_asked;
};

}  // namespace

FreeTextBlock PlaceFreeText(const ScreenState& state, const QVector<QRect>& areas) {
    const VisibleText visible = VisibleFreeText(state);
    if (!state.custom || visible.text.isEmpty() || areas.isEmpty()) {
        return {};
    }
    const int askedSize = FreeTextPixelSize(state.layout.sizeIndex);
    TextAtSize text(visible.text, askedSize);
    const Placing placing(state, areas,
                          text.WrappedTo(WrapWidth(TextRowRect(state.textRow, state.orientation))));

    std::optional<Placed> nearest = placing.Nearest(text, std::numeric_limits<int>::max());
    for (int size = askedSize - 1; size >= kSmallestSize; --size) {
        const int costOfSize = (askedSize - size) * kCostOfSize;
        if (nearest && nearest->cost <= costOfSize) {
            break;
        }
        text = TextAtSize(visible.text, size);
        std::optional<Placed> smaller =
            placing.Nearest(text, nearest ? nearest->cost - costOfSize : std::numeric_limits<int>::max());
        if (smaller) {
            smaller->cost += costOfSize;
            nearest = smaller;
        }
    }
    FreeTextBlock block = nearest ? nearest->block : placing.MostOf(text);
    block.isCut = block.isCut || visible.isCut;
    return block;
}

}  // namespace kivo
