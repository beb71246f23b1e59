#pragma once

// Trimming by hand: mouse, wheel and keys move and size the crop frame over the whole picture. Positions are
// widget pixels. A drag shows a draft and becomes one edit when it is let go. Knows no widget. GUI thread.

#include <QPoint>
#include <QSize>

#include "editor/layout_editor.h"
#include "editor/screen_mapping.h"
#include "editor/trim_frame.h"

namespace kivo {

class TrimTool {
public:
    // editor outlives the tool.
    explicit TrimTool(LayoutEditor& editor) : m_editor(editor) {}

    // Where it works: the picture in its own pixels (empty: there is none) and the widget's size. Told before
    // every other call.
    void SetPlace(QSize picture, QSize widget);

    // The picture and the frame over it, of the draft while one is dragged.
    TrimView View() const;
    TrimMapping Mapping() const;

    // What the mouse is over, or has hold of.
    TrimZone Zone() const { return m_zone; }
    void Hover(QPoint position);

    // False where the press is outside of the frame.
    bool Press(QPoint position);
    void Move(QPoint position);
    // Whether the layout has changed.
    bool Release(QPoint position);
    void GiveUp();
    void Leave();  // trimming ends
    bool IsDragging() const { return m_isDragging; }
    bool IsMoving() const { return m_isDragging && m_zone == TrimZone::Inside; }

    // A turn of the wheel, in eighths of a degree: zooms about what is under the mouse. Whether the layout
    // has changed.
    bool Wheel(int angle, QPointF position);
    // Arrows move, plus and minus zoom; false for any other key.
    bool Key(int key, Qt::KeyboardModifiers modifiers);

private:
    void Zoom(double inset, QPointF about);

    LayoutEditor& m_editor;
    QSize m_picture;
    QSize m_widget;
    TrimZone m_zone = TrimZone::None;
    bool m_isDragging = false;
    QPoint m_pressedAt;
    TrimView m_start;     // when the drag began
    QRectF m_draft;       // the frame as the drag has made it so far
    QRectF m_zoomed;      // the frame that zooming led to, before it was kept in whole pixels
    int m_wheelRest = 0;  // wheel movement (eighths of a degree) not yet acted on
};

}  // namespace kivo
