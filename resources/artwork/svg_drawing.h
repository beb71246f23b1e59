#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSize>
#include <QString>

namespace kivo::artwork {

// A drawing of the folder svg/. What takes its state's colour is drawn there in "currentColor"; the outermost
// stroke width can be another one, because a stroke does not grow with its icon.
class SvgDrawing {
public:
    // By the file's name without ".svg". A drawing that is missing or no SVG ends the program: half a set of
    // pictures is of no use.
    explicit SvgDrawing(const QString& name);

    SvgDrawing& SetColour(const QColor& colour);
    SvgDrawing& SetStrokeWidth(double width);  // in the drawing's own units

    QSize Size() const;  // of its view box
    // Stretched over the rectangle, in painter coordinates.
    void Draw(QPainter& painter, const QRectF& rect) const;
    // Alone on transparent ground, in pixels.
    QImage Picture(QSize size) const;

private:
    QByteArray Resolved() const;

    QString m_name;
    QByteArray m_text;
    QByteArray m_colour;  // empty where the drawing has all its colours
};

}  // namespace kivo::artwork
