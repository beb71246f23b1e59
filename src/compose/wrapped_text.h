#pragma once

// A free text made ready for the panel: what of it can be shown, and wrapped into lines of a width. Pure; any
// thread.

#include <QFont>
#include <QFontMetrics>
#include <QHash>
#include <QString>
#include <QVector>

#include "compose/panel_text.h"
#include "compose/screen_state.h"

namespace kivo {

// Without the blanks and line breaks at its end.
QString WithoutBlankEnd(QString text);

// With a blank for each sign that would turn what follows around or tear a line apart; line breaks stay.
QString WithoutControls(QString text);

// The text as it is to be shown: without blanks and empty lines at its end, without signs that would turn or
// tear it.
struct VisibleText {
    QString text;
    bool isCut = false;  // longer than its row may be; an ellipsis stands for the rest
};
VisibleText VisibleFreeText(const ScreenState& state);

struct WrappedLine {
    QString text;
    int width = 0;  // its advance in pixels
};

struct WrappedText {
    QVector<WrappedLine> lines;
    int brokenWords = 0;  // lines that end within a word
    bool isWhole = true;  // false: there is more than these lines
};

// A text at one size, wrapped again and again into different widths.
class TextAtSize {
public:
    TextAtSize(QString text, int pixelSize);

    int PixelSize() const { return m_pixelSize; }
    const LineMetrics& Metrics() const { return m_metrics; }
    int Advance() const { return m_advance; }  // of the text in one line
    // By words, anywhere where a word is wider than that. At most as many lines as no panel can hold.
    const WrappedText& WrappedTo(int width);
    // The same, but at most that many lines, the last of which ends in an ellipsis where there is more.
    WrappedText CutTo(int width, int mostLines) const;
    // The ink of a line that starts at the origin of its base line.
    QRect InkOf(const QString& line) const;

private:
    WrappedText Wrap(int width, int mostLines) const;

    QString m_text;
    int m_pixelSize;
    QFont m_font;
    QFontMetrics m_fontMetrics;
    LineMetrics m_metrics;
    int m_advance;
    QHash<int, WrappedText> m_wrapped;  // by width
};

}  // namespace kivo
