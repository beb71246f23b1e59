#include "compose/free_text.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <QtMath>

#include "compose/panel_text.h"

namespace kivo {

namespace {

constexpr int kLastRow = kTextRowCount - 1;
constexpr int kPictureTextLength = 20;  // characters of the last portrait row when a picture was chosen
constexpr int kLongestText = 500;       // characters that are looked at; a row holds far fewer

constexpr QChar kEllipsis(0x2026);

QString WithoutBlankEnd(QString text) {
    while (!text.isEmpty() && text.at(text.size() - 1).isSpace()) {
        text.chop(1);
    }
    return text;
}

// A sign that would tear a line apart or turn what follows around.
bool IsControl(QChar sign) {
    const ushort code = sign.unicode();
    const bool turns = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return turns || (sign.category() == QChar::Other_Control && sign != QLatin1Char('\n'));
}

// Cut between two characters as a person sees them, which may be several of Unicode's.
QString Shortened(const QString& text, int mostSigns) {
    if (text.size() <= mostSigns) {
        return text;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(mostSigns - 1);
    if (!finder.isAtBoundary()) {
        finder.toPreviousBoundary();
    }
    return WithoutBlankEnd(text.left(qMax(0, finder.position()))) + kEllipsis;
}

// Blanks and empty lines at its end would push it out of its place, or count as lines that do not fit.
QString VisibleText(const ScreenState& state) {
    QString text = Shortened(WithoutBlankEnd(state.layout.freeText.left(kLongestText + 1)), kLongestText);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (QChar& sign : text) {
        if (IsControl(sign)) {
            sign = QLatin1Char(' ');
        }
    }
    const bool cut = state.orientation == Orientation::Portrait && state.textRow == kLastRow &&
                     !state.layout.picture.isEmpty();
    text = WithoutBlankEnd(text);
    return cut ? Shortened(text, kPictureTextLength) : text;
}

// The row's box. Its bottom follows from the font, so that three lines and their spacing fit; only the first
// landscape row keeps the box of the table, or it would be centred over the middle slot.
QRect RowBox(const ScreenState& state, const LineMetrics& metrics) {
    QRect box = TextRowRect(state.textRow, state.orientation);
    if (state.orientation == Orientation::Portrait || state.textRow != 0) {
        box.setBottom(box.top() + 3 * metrics.height + metrics.lineSpacing - 1);
    }
    return box;
}

struct WrappedLine {
    QString text;
    int width;
};

// At most mostLines lines, the last of which may hide that there is more.
QVector<WrappedLine> Wrap(const QString& text, const QFont& font, int width, int mostLines) {
    QString paragraph = text;
    paragraph.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
    QTextLayout layout(paragraph, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    const QFontMetrics metrics(font);
    QVector<WrappedLine> lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid() && lines.size() < mostLines;
         line = layout.createLine()) {
        line.setLineWidth(width);
        const QString part = WithoutBlankEnd(paragraph.mid(line.textStart(), line.textLength()));
        lines.append({part, metrics.horizontalAdvance(part)});
    }
    layout.endLayout();
    return lines;
}

// The side slots that hold something in the row's band leave the middle to the text (landscape; in portrait
// the rows go across, as the slots do).
QRect BetweenSideSlots(const ScreenState& state, const QRect& box, const QRect& band) {
    constexpr int kMargin = 2;
    QRect between = box;
    if (state.orientation == Orientation::Portrait) {
        return between;
    }
    for (int slot = 0; slot < kSlotCount; ++slot) {
        if (slot == kCentreSlot || ItemDrawnIn(state, slot) == kEmptySlot) {
            continue;
        }
        const QRect taken = SlotRect(slot, state.orientation) | SlotCaptionRect(slot, state.orientation);
        if (taken.top() > band.bottom() || taken.bottom() < band.top()) {
            continue;
        }
        const int middle = CanvasSize(state.orientation).width() / 2;
        const int side =
            taken.left() < middle ? taken.right() + 1 : CanvasSize(state.orientation).width() - taken.left();
        // Both sides give way alike, so that the text stays in the middle of the panel.
        const int inset = qMax(0, side + kMargin - box.left());
        between = between & box.adjusted(inset, 0, -inset, 0);
    }
    return between;
}

// The lines in a box as wide as that; rows from the canvas's top to its foot.
FreeTextBlock LayOutIn(const ScreenState& state, const QString& text, const QRect& box) {
    FreeTextBlock block;
    block.pixelSize = FreeTextPixelSize(state.layout.sizeIndex);
    block.color = FreeTextColor(state.layout.colorIndex);
    const QFont font = PanelFont(block.pixelSize);
    const QFontMetrics fontMetrics(font);
    const LineMetrics metrics = MetricsOf(block.pixelSize);
    const QSize canvas = CanvasSize(state.orientation);
    const bool fromTheTop = state.textRow == kLastRow;
    const int height = fromTheTop ? canvas.height() - box.top() : canvas.height();
    const int room = qMax(1, height / metrics.lineSpacing);

    QVector<WrappedLine> lines = Wrap(text, font, box.width(), room + 1);
    if (lines.size() > room) {
        lines.resize(room);
        WrappedLine& last = lines.last();
        last.text = fontMetrics.elidedText(last.text + kEllipsis, Qt::ElideRight, box.width());
        last.width = fontMetrics.horizontalAdvance(last.text);
    }

    const int textHeight = lines.size() * metrics.lineSpacing;
    const int centred = box.top() + qFloor((box.height() - textHeight) / 2.0);
    const int top = qMax(0, qMin(fromTheTop ? box.top() : centred, canvas.height() - textHeight));
    for (int k = 0; k < lines.size(); ++k) {
        const int lineTop = top + k * metrics.lineSpacing;
        const QPoint baseLine(box.left() + (box.width() - lines[k].width) / 2, lineTop + metrics.ascent);
        block.lines.append({lines[k].text, baseLine});
        // With the ink: signs of a fallback font can be taller than the line.
        block.bounds |=
            QRect(baseLine.x(), lineTop, qMax(1, lines[k].width), metrics.height) |
            fontMetrics.tightBoundingRect(lines[k].text).translated(baseLine).adjusted(-1, -1, 1, 1);
    }
    block.bounds &= QRect(QPoint(0, 0), canvas);
    return block;
}

}  // namespace

FreeTextBlock LayOutFreeText(const ScreenState& state) {
    if (!state.custom) {
        return {};
    }
    const QString text = VisibleText(state);
    if (text.isEmpty()) {
        return {};
    }
    const QRect box = RowBox(state, MetricsOf(FreeTextPixelSize(state.layout.sizeIndex)));
    FreeTextBlock block = LayOutIn(state, text, box);
    // A text that would lie over the values beside it keeps between them, on more lines. These may reach the
    // slots of the next row too; two rounds are as many as there are rows of side slots.
    for (int round = 0; round < 2; ++round) {
        const QRect between = BetweenSideSlots(state, box, block.bounds);
        if (block.bounds.left() >= between.left() && block.bounds.right() <= between.right()) {
            break;
        }
        block = LayOutIn(state, text, between);
    }
    return block;
}

void DrawFreeText(QPainter& painter, const FreeTextBlock& block, const QRect& region) {
    if (block.lines.isEmpty() || !block.bounds.intersects(region)) {
        return;
    }
    painter.save();
    // A live update redraws the text where it reaches into these bounds and nowhere else.
    painter.setClipRect(block.bounds, Qt::IntersectClip);
    painter.setFont(PanelFont(block.pixelSize));
    painter.setPen(block.color);
    for (const FreeTextLine& line : block.lines) {
        painter.drawText(line.baseLine, line.text);
    }
    painter.restore();
}

}  // namespace kivo
