#pragma once

// A picture that stays sharp on scaled screens: of "name.png" and "name@2x.png" the one is drawn that suits
// the device. GUI thread.

#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

namespace kivo {

// Where the double form of a picture lies if there is one: "name@2x.png" for "name.png". Empty for a name
// without a dot. Any thread.
QString DoublePicturePath(const QString& path);

class SharpPicture {
public:
    SharpPicture() = default;
    // Loads at once. A path that names no picture gives an empty one, which draws nothing.
    explicit SharpPicture(const QString& path);

    bool IsNull() const { return m_single.isNull() && m_double.isNull(); }

    // Scaled to all of `target` (the painter's coordinates), aspect ratio ignored, smooth.
    void Draw(QPainter& painter, const QRectF& target) const;

    // The largest rectangle of the picture's shape that fits `size`, in the same units.
    QSizeF FittedSize(const QSizeF& size) const;

private:
    QPixmap m_single;
    QPixmap m_double;
};

}  // namespace kivo
