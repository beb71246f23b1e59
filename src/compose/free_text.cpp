#include "compose/free_text.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <QtMath>

#include "compose/panel_text.h"

namespace kivo {

namespace {

constexpr int kLastRow = kTextRowCount - 1;
constexpr int kPictureTextLength = 20;  // characters of the last portrait row when a picture was chosen

QString VisibleText(const ScreenState& state) {
    QString text = state.layout.freeText;
    const bool cut = state.orientation == Orientation::Portrait && state.textRow == kLastRow &&
                     !state.layout.picture.isEmpty();
    if (cut && text.size() > kPictureTextLength) {
        // Not through the middle of a surrogate pair.
        text.truncate(text.at(kPictureTextLength - 1).isHighSurrogate() ? kPictureTextLength - 1
                                                                        : kPictureTextLength);
    }
    return text;
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

QVector<WrappedLine> Wrap(const QString& text, const QFont& font, int width) {
    QString paragraph = text;
    paragraph.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
    QTextLayout layout(paragraph, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    const QFontMetrics metrics(font);
    QVector<WrappedLine> lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        QString part = paragraph.mid(line.textStart(), line.textLength());
        while (!part.isEmpty() && part.at(part.size() - 1).isSpace()) {
            part.chop(1);
        }
        lines.append({part, metrics.horizontalAdvance(part)});
    }
    layout.endLayout();
    return lines;
}

}  // namespace

FreeTextBlock LayOutFreeText(const ScreenState& state) {
    FreeTextBlock block;
    const QString text = VisibleText(state);
    if (!state.custom || text.trimmed().isEmpty()) {
        return block;
    }
    block.pixelSize = FreeTextPixelSize(state.layout.sizeIndex);
    block.color = FreeTextColor(state.layout.colorIndex);
    const QFont font = PanelFont(block.pixelSize);
    const LineMetrics metrics = MetricsOf(block.pixelSize);
    const QSize canvas = CanvasSize(state.orientation);
    const QRect box = RowBox(state, metrics);

    const QFontMetrics fontMetrics(font);
    QVector<WrappedLine> lines = Wrap(text, font, box.width());
    const int mostLines = qMax(1, canvas.height() / metrics.lineSpacing);
    const int roomBelow = qMax(1, (canvas.height() - box.top()) / metrics.lineSpacing);
    const int room = state.textRow == kLastRow ? roomBelow : mostLines;
    if (lines.size() > room) {
        lines.resize(room);
        WrappedLine& last = lines.last();
        last.text = fontMetrics.elidedText(last.text + QChar(0x2026), Qt::ElideRight, box.width());
        last.width = fontMetrics.horizontalAdvance(last.text);
    }

    const int height = lines.size() * metrics.lineSpacing;
    int top = box.top();
    if (state.textRow != kLastRow) {
        top += qFloor((box.height() - height) / 2.0);
    }
    top = qMax(0, qMin(top, canvas.height() - height));
    for (int k = 0; k < lines.size(); ++k) {
        const QPoint baseLine(box.left() + (box.width() - lines[k].width) / 2,
                              top + k * metrics.lineSpacing + metrics.ascent);
        block.lines.append({lines[k].text, baseLine});
        // With the ink: signs of a fallback font can be taller than the line.
        block.bounds |=
            QRect(baseLine.x(), top + k * metrics.lineSpacing, qMax(1, lines[k].width), metrics.height) |
            fontMetrics.tightBoundingRect(lines[k].text).translated(baseLine).adjusted(-1, -1, 1, 1);
    }
    block.bounds &= QRect(QPoint(0, 0), canvas);
    return block;
}

void DrawFreeText(QPainter& painter, const ScreenState& state, const QRect& region) {
    if (!state.custom || state.layout.freeText.isEmpty()) {
        return;
    }
    const FreeTextBlock block = LayOutFreeText(state);
    if (!block.bounds.intersects(region)) {
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
