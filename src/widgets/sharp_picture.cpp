#include "widgets/sharp_picture.h"

#include <QFileInfo>
#include <QPainter>

namespace kivo {

namespace {

// From this device pixel ratio on the double picture is drawn; at 150 % it has to shrink, but shrinking is
// sharper than growing.
constexpr qreal kDoubleFrom = 1.1;

QPixmap Load(const QString& path) {
    if (path.isEmpty() || !QFileInfo::exists(path)) {
        return {};
    }
    QPixmap pixmap(path);
    pixmap.setDevicePixelRatio(1.0);  // what its name says about it is known here already
    return pixmap;
}

}  // namespace

QString DoublePicturePath(const QString& path) {
    const int dot = path.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : path.left(dot) + QLatin1String("@2x") + path.mid(dot);
}

const QPixmap& SharpPicture::Suiting(qreal ratio) const {
    const auto decoded = [](std::optional<QPixmap>& kept, const QString& path) -> const QPixmap& {
        return kept ? *kept : kept.emplace(Load(path));
    };
    if (ratio >= kDoubleFrom) {
        const QPixmap& twice = decoded(m_double, DoublePicturePath(m_path));
        return twice.isNull() ? decoded(m_single, m_path) : twice;
    }
    const QPixmap& once = decoded(m_single, m_path);
    return once.isNull() ? decoded(m_double, DoublePicturePath(m_path)) : once;
}

void SharpPicture::Draw(QPainter& painter, const QRectF& target) const {
    const QPixmap& chosen = Suiting(painter.device()->devicePixelRatioF());
    if (chosen.isNull()) {
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, chosen, QRectF(chosen.rect()));
    painter.restore();
}

QSizeF SharpPicture::FittedSize(const QSizeF& size) const {
    return QSizeF(Suiting(1.0).size()).scaled(size, Qt::KeepAspectRatio);
}

}  // namespace kivo
