#include "editor/typed_text.h"

#include <QFontMetricsF>
#include <algorithm>
#include <array>

#include "compose/panel_text.h"
#include "compose/wrapped_text.h"

namespace kivo {

namespace {

constexpr QChar kEllipsis(0x2026);
constexpr double kPlaceholderStrength = 0.55;
constexpr double kCaretWidth = 1;

}  // namespace

TypedText::TypedText(const ScreenState& state, const TypedInput& input, const QString& placeholder)
    : m_state(state), m_text(input.text) {
    m_preeditStart = qBound(0, input.caret, m_text.size());
    m_text.insert(m_preeditStart, input.preedit);
    m_preeditEnd = m_preeditStart + input.preedit.size();
    m_caret = m_preeditEnd;
    if (input.preedit.isEmpty()) {
        m_selectionStart = qBound(0, qMin(input.caret, input.anchor), m_text.size());
        m_selectionEnd = qBound(0, qMax(input.caret, input.anchor), m_text.size());
    }
    m_state.layout.freeText = m_text;
    m_block = LayOutFreeText(m_state);
    m_isPlaceholder = m_block.lines.isEmpty();
    if (m_isPlaceholder) {
        m_state.layout.freeText = placeholder;
        m_block = LayOutFreeText(m_state);
        m_block.color.setAlphaF(kPlaceholderStrength);
    }
    FindLines();
}

// The block's lines are parts of the text, in its order; what lies between two of them are blanks and at most
// one line break.
void TypedText::FindLines() {
    if (m_isPlaceholder) {
        const QPoint at = m_block.lines.isEmpty() ? QPoint() : m_block.lines.constFirst().baseLine;
        m_lines.append({0, QString(), at});
        return;
    }
    const QString visible = WithoutControls(m_text);
    int position = 0;
    for (const FreeTextLine& line : qAsConst(m_block.lines)) {
        QString text = line.text;
        int start = visible.indexOf(text, position);
        if (start < 0 && text.endsWith(kEllipsis)) {
            text.chop(1);
            start = visible.indexOf(text, position);
        }
        start = start < 0 ? position : start;
        m_lines.append({start, text, line.baseLine});
        position = qMin(start + text.size(), visible.size());
        while (position < visible.size() && visible.at(position) != QLatin1Char('\n') &&
               visible.at(position).isSpace()) {
            ++position;
        }
        if (position < visible.size() && visible.at(position) == QLatin1Char('\n')) {
            ++position;
        }
    }
}

bool TypedText::IsCut() const {
    return !m_isPlaceholder && m_block.isCut;
}

double TypedText::Advance(const QString& text) const {
    return QFontMetricsF(PanelFont(m_block.pixelSize)).horizontalAdvance(text);
}

int TypedText::LineOf(int position) const {
    int line = 0;
    while (line + 1 < m_lines.size() && m_lines.at(line + 1).start <= position) {
        ++line;
    }
    return line;
}

// Blanks at a line's end and empty lines at the text's end are not drawn; the caret goes there all the same.
QRectF TypedText::CaretAt(int position) const {
    const Line& line = m_lines.at(LineOf(position));
    const LineMetrics metrics = MetricsOf(m_block.pixelSize);
    QString before = WithoutControls(m_text).mid(line.start, qMax(0, position - line.start));
    const int breaks = before.count(QLatin1Char('\n'));
    QPointF at = line.baseLine;
    if (breaks > 0) {
        before = before.mid(before.lastIndexOf(QLatin1Char('\n')) + 1);
        at = QPointF(m_block.bounds.center().x(), at.y() + breaks * metrics.lineSpacing);
    }
    const double x = at.x() + Advance(before);
    const QRectF canvas(QPointF(0, 0), QSizeF(CanvasSize(m_state.orientation)));
    return QRectF(qBound(canvas.left(), x, canvas.right() - kCaretWidth),
                  qMin(at.y() - metrics.ascent, canvas.bottom() - metrics.height), kCaretWidth,
                  metrics.height);
}

QVector<QRectF> TypedText::RectsOf(int start, int end) const {
    QVector<QRectF> rects;
    if (m_isPlaceholder || start >= end) {
        return rects;
    }
    const LineMetrics metrics = MetricsOf(m_block.pixelSize);
    for (const Line& line : m_lines) {
        const int from = qBound(0, start - line.start, line.text.size());
        const int to = qBound(0, end - line.start, line.text.size());
        if (from < to) {
            const double left = line.baseLine.x() + Advance(line.text.left(from));
            const double right = line.baseLine.x() + Advance(line.text.left(to));
            rects.append(QRectF(left, line.baseLine.y() - metrics.ascent, right - left, metrics.height));
        }
    }
    return rects;
}

int TypedText::WithoutPreedit(int position) const {
    if (position <= m_preeditStart) {
        return position;
    }
    return qMax(m_preeditStart, position - (m_preeditEnd - m_preeditStart));
}

int TypedText::PositionAt(QPointF point) const {
    if (m_isPlaceholder) {
        return WithoutPreedit(m_caret);
    }
    const LineMetrics metrics = MetricsOf(m_block.pixelSize);
    const Line* nearest = &m_lines.constFirst();
    const auto distance = [&](const Line& line) {
        return qAbs(line.baseLine.y() - metrics.ascent + metrics.height / 2.0 - point.y());
    };
    for (const Line& line : m_lines) {
        nearest = distance(line) < distance(*nearest) ? &line : nearest;
    }
    int best = 0;
    double bestDistance = qAbs(point.x() - nearest->baseLine.x());
    for (int k = 1; k <= nearest->text.size(); ++k) {
        if (k < nearest->text.size() && nearest->text.at(k).isLowSurrogate()) {
            continue;
        }
        const double away = qAbs(point.x() - nearest->baseLine.x() - Advance(nearest->text.left(k)));
        if (away < bestDistance) {
            best = k;
            bestDistance = away;
        }
    }
    return WithoutPreedit(nearest->start + best);
}

int TypedText::LineStart() const {
    return WithoutPreedit(m_lines.at(LineOf(m_caret)).start);
}

int TypedText::LineEnd() const {
    const Line& line = m_lines.at(LineOf(m_caret));
    return WithoutPreedit(qMax(m_caret, line.start + line.text.size()));
}

int TypedText::LineBeside(int by) const {
    const int line = LineOf(m_caret) + by;
    if (line < 0 || line >= m_lines.size()) {
        return WithoutPreedit(m_caret);
    }
    const QRectF caret = Caret();
    return PositionAt(QPointF(caret.center().x(), m_lines.at(line).baseLine.y() - 1));
}

PanelTexts WithoutItemsUnder(const QRectF& box, PanelTexts texts) {
    std::array<bool, kLiveValueCount> meets{};
    for (const TextRun& run : qAsConst(texts.runs)) {
        meets[size_t(run.item)] = meets[size_t(run.item)] || QRectF(run.rect).intersects(box);
    }
    const auto goes = [&meets](const TextRun& run) { return meets[size_t(run.item)]; };
    texts.runs.erase(std::remove_if(texts.runs.begin(), texts.runs.end(), goes), texts.runs.end());
    return texts;
}

}  // namespace kivo
