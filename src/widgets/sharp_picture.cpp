#include "widgets/sharp_picture.h"

#include <QFileInfo>
#include <QPainter>

namespace kivo {

namespace {

// From this device pixel ratio on the double picture is drawn; at 150 % it has to shrink, but shrinking is
// sharper than growing.
constexpr qreal kDoubleFrom = 1.1;

QPixmap Load(const QString& path) {
    if (path.isEmpty() || !QFileInfo::exists(path))
        return {};
    QPixmap pixmap(path);
    pixmap.setDevicePixelRatio(1.0);  // what its name says about it is known here already
    return pixmap;
}

}  // namespace

QString DoublePicturePath(const QString& path) {
    const int dot = path.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? QString() : path.left(dot) + QLatin1String("@2x") + path.mid(dot);
}

SharpPicture::SharpPicture(const QString& path)
    : m_single(Load(path)), m_double(Load(DoublePicturePath(path))) {}

void SharpPicture::Draw(QPainter& painter, const QRectF& target) const {
    if (IsNull())
        return;
    const bool wantsDouble = painter.device()->devicePixelRatioF() >= kDoubleFrom;
    const QPixmap& chosen = m_single.isNull() || (wantsDouble && !m_double.isNull()) ? m_double : m_single;
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(target, chosen, QRectF(chosen.rect()));
    painter.restore();
}

QSizeF SharpPicture::FittedSize(const QSizeF& size) const {
    const QPixmap& any = m_single.isNull() ? m_double : m_single;
    return QSizeF(any.size()).scaled(size, Qt::KeepAspectRatio);
}

}  // namespace kivo
