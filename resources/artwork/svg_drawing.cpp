#include "svg_drawing.h"

#include <QFile>
#include <QSvgRenderer>

namespace kivo::artwork {

namespace {

const QByteArray kStrokeWidth = QByteArrayLiteral("stroke-width=\"");

// The value of an attribute of the outermost element; empty where it has none.
QByteArray RootValue(const QByteArray& text, const QByteArray& attribute) {
    const int at = text.indexOf(attribute);
    if (at < 0 || at > text.indexOf('>')) {
        return {};
    }
    const int from = at + attribute.size();
    return text.mid(from, text.indexOf('"', from) - from);
}

}  // namespace

SvgDrawing::SvgDrawing(const QString& name) : m_name(name) {
    QFile file(QStringLiteral(KIVO_ARTWORK_FOLDER "/svg/%1.svg").arg(name));
    if (file.open(QIODevice::ReadOnly)) {
        m_text = file.readAll();
    }
    if (!QSvgRenderer(m_text).isValid()) {
        qFatal("%s.svg is missing or cannot be read.", qPrintable(name));
    }
    m_colour = RootValue(m_text, QByteArrayLiteral(" color=\""));
}

SvgDrawing& SvgDrawing::SetColour(const QColor& colour) {
    if (m_colour.isEmpty()) {
        qFatal("%s.svg takes no colour.", qPrintable(m_name));
    }
    m_colour = colour.name().toLatin1();
    return *this;
}

SvgDrawing& SvgDrawing::SetStrokeWidth(double width) {
    const QByteArray own = RootValue(m_text, kStrokeWidth);
    if (own.isEmpty()) {
        qFatal("%s.svg gives no stroke width.", qPrintable(m_name));
    }
    m_text.replace(m_text.indexOf(kStrokeWidth) + kStrokeWidth.size(), own.size(),
                   QByteArray::number(width, 'f', 6));
    return *this;
}

// By hand: Qt's reader knows the word for some attributes only.
QByteArray SvgDrawing::Resolved() const {
    QByteArray text = m_text;
    return m_colour.isEmpty() ? text : text.replace("currentColor", m_colour);
}

QSize SvgDrawing::Size() const {
    return QSvgRenderer(m_text).defaultSize();
}

void SvgDrawing::Draw(QPainter& painter, const QRectF& rect) const {
    painter.save();
    QSvgRenderer(Resolved()).render(&painter, rect);
    painter.restore();
}

QImage SvgDrawing::Picture(QSize size) const {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    Draw(painter, QRectF(QPointF(0, 0), size));
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

}  // namespace kivo::artwork
