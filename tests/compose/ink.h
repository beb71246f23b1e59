#pragma once

// What texts really paint, pixel by pixel: each drawn alone, on a canvas that is larger than the panel, so
// that what would leave it is seen too.

#include <QImage>
#include <QPainter>
#include <QVector>

#include "compose_test_support.h"

namespace kivo::test {

class Ink {
public:
    // of one text, canvas pixels.
    static Ink Of(const TextRun& run) {
        return Ink(run.rect, [&run](QPainter& painter) { DrawTexts(painter, {run}, run.rect); });
    }
    static Ink Of(FreeTextBlock block) {
        block.color = Qt::white;
        return Ink(block.bounds, [&block](QPainter& painter) { DrawFreeText(painter, block, block.bounds); });
    }
    // Without the clipping that keeps even the oddest sign within the bounds.
    static Ink Unclipped(const FreeTextBlock& block) {
        return Ink(block.bounds, [&block](QPainter& painter) {
            painter.setPen(Qt::white);
            painter.setFont(PanelFont(block.pixelSize));
            for (const FreeTextLine& line : block.lines) {
                painter.drawText(line.baseLine, line.text);
            }
        });
    }

    bool IsEmpty() const { return m_bounds.isNull(); }
    const QRect& Bounds() const { return m_bounds; }

    // The free pixels between this and the other, by the side on which there are most; limit where there are
    // as many or more. -1: they lie over each other.
    int DistanceTo(const Ink& other, int limit) const {
        if (!m_bounds.adjusted(-limit, -limit, limit, limit).intersects(other.m_bounds)) {
            return limit;
        }
        int nearest = limit;
        for (int y = m_bounds.top(); y <= m_bounds.bottom(); ++y) {
            for (int x = m_bounds.left(); x <= m_bounds.right(); ++x) {
                if (IsInk(x, y)) {
                    nearest = other.DistanceTo(x, y, nearest);
                }
            }
        }
        return nearest;
    }

private:
    static constexpr int kAround = 24;

    template <typename Draw>
    Ink(const QRect& place, const Draw& draw)
        : m_origin(place.topLeft() - QPoint(kAround, kAround)),
          m_image(place.size() + QSize(2 * kAround, 2 * kAround), QImage::Format_Grayscale8) {
        m_image.fill(Qt::black);
        if (place.isEmpty()) {
            return;
        }
        {
            QPainter painter(&m_image);
            painter.translate(-m_origin);
            draw(painter);
        }
        for (int y = 0; y < m_image.height(); ++y) {
            const uchar* row = m_image.constScanLine(y);
            for (int x = 0; x < m_image.width(); ++x) {
                if (row[x] != 0) {
                    m_bounds |= QRect(m_origin + QPoint(x, y), QSize(1, 1));
                }
            }
        }
    }

    bool IsInk(int x, int y) const {
        const QPoint at = QPoint(x, y) - m_origin;
        return m_image.rect().contains(at) && m_image.constScanLine(at.y())[at.x()] != 0;
    }

    int DistanceTo(int x, int y, int limit) const {
        int nearest = limit;
        const QRect around = QRect(x - limit, y - limit, 2 * limit + 1, 2 * limit + 1) & m_bounds;
        for (int otherY = around.top(); otherY <= around.bottom(); ++otherY) {
            for (int otherX = around.left(); otherX <= around.right(); ++otherX) {
                if (IsInk(otherX, otherY)) {
                    nearest = qMin(nearest, qMax(qAbs(otherX - x), qAbs(otherY - y)) - 1);
                }
            }
        }
        return nearest;
    }

    QPoint m_origin;
    QImage m_image;
    QRect m_bounds;
};

}  // namespace kivo::test
