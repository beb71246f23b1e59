#pragma once

// The free text while it is typed: laid out as it will stand, from the first letter, with the places of caret
// and selection in it. All places are canvas pixels. Pure; made anew for every change.

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVector>

#include "compose/free_text.h"
#include "compose/item_drawing.h"
#include "compose/screen_state.h"

namespace kivo {

// What the text box holds. Positions count UTF-16 code units from the text's beginning.
struct TypedInput {
    QString text;
    int caret = 0;
    int anchor = 0;   // the selection's other end
    QString preedit;  // what an input method shows at the caret and has not given yet
};

class TypedText {
public:
    // state is the screen that is edited; placeholder stands, fainter, where a text will stand that is not
    // there yet.
    TypedText(const ScreenState& state, const TypedInput& input, const QString& placeholder);

    // The screen with the text, or with the placeholder.
    const ScreenState& State() const { return m_state; }
    const FreeTextBlock& Block() const { return m_block; }
    // Whether the text will not stand there as a whole.
    bool IsCut() const;

    QRectF Caret() const { return CaretAt(m_caret); }
    QVector<QRectF> Selection() const { return RectsOf(m_selectionStart, m_selectionEnd); }
    // Under what an input method has not given yet.
    QVector<QRectF> Preedit() const { return RectsOf(m_preeditStart, m_preeditEnd); }

    // Positions in the text box.
    int PositionAt(QPointF point) const;
    int LineStart() const;
    int LineEnd() const;
    // One line up (-1) or down (1); the caret's own where there is none.
    int LineBeside(int by) const;

private:
    struct Line {
        int start = 0;  // in m_text
        QString text;
        QPointF baseLine;
    };
    void FindLines();
    int LineOf(int position) const;
    QRectF CaretAt(int position) const;
    QVector<QRectF> RectsOf(int start, int end) const;
    int WithoutPreedit(int position) const;
    double Advance(const QString& text) const;

    ScreenState m_state;
    QString m_text;  // with what the input method shows
    bool m_isPlaceholder = false;
    FreeTextBlock m_block;
    QVector<Line> m_lines;  // one at least
    int m_caret = 0;        // in m_text
    int m_selectionStart = 0;
    int m_selectionEnd = 0;
    int m_preeditStart = 0;
    int m_preeditEnd = 0;
};

// The items that make room for a box: those whose value, caption or chip meets it. Canvas pixels.
ItemFlags ItemsUnder(const QRectF& box, const PanelTexts& texts);

// The texts without those of some items.
PanelTexts WithoutItems(const ItemFlags& items, PanelTexts texts);

}  // namespace kivo
