#include "compose/wrapped_text.h"

#include <QImage>
#include <QPainter>
#include <QTextBoundaryFinder>
#include <QTextLayout>
#include <algorithm>
#include <iterator>
#include <utility>

namespace kivo {

namespace {

constexpr int kLastRow = kTextRowCount - 1;
constexpr int kPictureTextLength = 20;  // characters of the last portrait row when a picture was chosen
constexpr int kLongestText = 500;       // characters that are shown; a row holds far fewer
constexpr int kMostSigns = 4000;        // of Unicode's, in them

constexpr QChar kEllipsis(0x2026);

// A sign that would tear a line apart or turn what follows around.
bool IsControl(QChar sign) {
    const ushort code = sign.unicode();
    const bool turns = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return turns || (sign.category() == QChar::Other_Control && sign != QLatin1Char('\n'));
}

// At most that many characters as a person counts them: each may be several of Unicode's.
VisibleText Shortened(const QString& text, int mostCharacters) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int end = 0;
    for (int count = 0; count < mostCharacters && end >= 0 && end < text.size(); ++count) {
        end = finder.toNextBoundary();
    }
    if (end < 0 || end >= text.size()) {
        return {text, false};
    }
    return {WithoutBlankEnd(text.left(end)) + kEllipsis, true};
}

// The smallest rectangle that holds all that is not black.
QRect BrightRect(const QImage& image) {
    QRect bright;
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        const uchar* end = row + image.width();
        const auto isBright = [](uchar pixel) { return pixel != 0; };
        const uchar* first = std::find_if(row, end, isBright);
        if (first != end) {
            const auto last =
                std::find_if(std::make_reverse_iterator(end), std::make_reverse_iterator(first), isBright);
            bright |= Corners(int(first - row), y, int(last.base() - row) - 1, y);
        }
    }
    return bright;
}

}  // namespace

QString WithoutBlankEnd(QString text) {
    while (!text.isEmpty() && text.at(text.size() - 1).isSpace()) {
        text.chop(1);
    }
    return text;
}

QString WithoutControls(QString text) {
    std::replace_if(text.begin(), text.end(), &IsControl, QLatin1Char(' '));
    return text;
}

VisibleText VisibleFreeText(const ScreenState& state) {
    // Blanks and empty lines at its end would push it out of its place, or count as lines that do not fit.
    QString text = WithoutBlankEnd(state.layout.freeText.left(kMostSigns));
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text = WithoutControls(text);
    const bool isShort = state.orientation == Orientation::Portrait && state.textRow == kLastRow &&
                         !state.layout.picture.isEmpty();
    return Shortened(WithoutBlankEnd(text), isShort ? kPictureTextLength : kLongestText);
}

TextAtSize::TextAtSize(QString text, int pixelSize)
    : m_text(std::move(text)),
      m_pixelSize(pixelSize),
      m_font(PanelFont(pixelSize)),
      m_fontMetrics(m_font),
      m_metrics(MetricsOf(pixelSize)),
      m_advance(m_fontMetrics.horizontalAdvance(m_text)) {
    m_text.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
}

const WrappedText& TextAtSize::WrappedTo(int width) {
    constexpr int kMoreThanAnyPanelHolds = 40;
    auto found = m_wrapped.find(width);
    if (found == m_wrapped.end()) {
        found = m_wrapped.insert(width, Wrap(width, kMoreThanAnyPanelHolds));
    }
    return *found;
}

WrappedText TextAtSize::CutTo(int width, int mostLines) const {
    WrappedText wrapped = Wrap(width, mostLines);
    if (!wrapped.isWhole) {
        WrappedLine& last = wrapped.lines.last();
        last.text = m_fontMetrics.elidedText(last.text + kEllipsis, Qt::ElideRight, width);
        last.width = m_fontMetrics.horizontalAdvance(last.text);
    }
    return wrapped;
}

QRect TextAtSize::InkOf(const QString& line) const {
    // Drawn, for the font's own measures are wrong by many pixels where other fonts stand in for some of the
    // signs.
    constexpr int kUnsure = 24;
    const QRect measured(0, -m_metrics.ascent, m_fontMetrics.horizontalAdvance(line), m_metrics.height);
    const QRect around =
        (measured | m_fontMetrics.tightBoundingRect(line)).adjusted(-kUnsure, -kUnsure, kUnsure, kUnsure);
    QImage drawn(around.size(), QImage::Format_Grayscale8);
    drawn.fill(Qt::black);
    QPainter painter(&drawn);
    painter.setFont(m_font);
    painter.setPen(Qt::white);
    painter.drawText(-around.topLeft(), line);
    painter.end();
    return BrightRect(drawn).translated(around.topLeft());
}

WrappedText TextAtSize::Wrap(int width, int mostLines) const {
    QTextLayout layout(m_text, m_font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QTextBoundaryFinder wordEnds(QTextBoundaryFinder::Line, m_text);
    WrappedText wrapped;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        if (wrapped.lines.size() == mostLines) {
            wrapped.isWhole = false;
            break;
        }
        line.setLineWidth(width);
        const int end = line.textStart() + line.textLength();
        wordEnds.setPosition(end);
        wrapped.brokenWords += end < m_text.size() && !wordEnds.isAtBoundary() ? 1 : 0;
        const QString part = WithoutBlankEnd(m_text.mid(line.textStart(), line.textLength()));
        wrapped.lines.append({part, m_fontMetrics.horizontalAdvance(part)});
    }
    layout.endLayout();
    return wrapped;
}

}  // namespace kivo
