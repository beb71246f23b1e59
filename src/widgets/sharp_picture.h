#pragma once

// A picture that stays sharp on scaled screens: of "name.png" and "name@2x.png" the one is drawn that suits
// the device. GUI thread.

#include <QPixmap>
#include <QRectF>
#include <QString>
#include <optional>

class QPainter;

namespace kivo {

// Where the double form of a picture lies if there is one: "name@2x.png" for "name.png". Empty for a name
// without a dot. Any thread.
QString DoublePicturePath(const QString& path);

class SharpPicture {
public:
    SharpPicture() = default;
    // Decodes when it is first drawn or asked, and only what that needs. A path that names no picture gives
    // an empty one, which draws nothing.
    explicit SharpPicture(const QString& path) : m_path(path) {}

    bool IsNull() const { return Suiting(1.0).isNull(); }

    // Scaled to all of `target` (the painter's coordinates), aspect ratio ignored, smooth.
    void Draw(QPainter& painter, const QRectF& target) const;

    // The largest rectangle of the picture's shape that fits `size`, in the same units.
    QSizeF FittedSize(const QSizeF& size) const;

private:
    // The picture for that device pixel ratio; the other one where there is only that.
    const QPixmap& Suiting(qreal ratio) const;

    QString m_path;
    // Not decoded yet: nothing.
    mutable std::optional<QPixmap> m_single;
    mutable std::optional<QPixmap> m_double;
};

}  // namespace kivo
