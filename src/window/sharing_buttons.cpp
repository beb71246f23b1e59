#include "window/sharing_buttons.h"

#include <QPainter>
#include <QPainterPath>

#include "widgets/nimb_push_button.h"
#include "widgets/window_colors.h"
#include "window/window_text.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr QRect kPlace(411, 451, 72, 40);
constexpr QRect kFirstHalf(3, 3, 32, 34);
constexpr QRect kSecondHalf(37, 3, 32, 34);
constexpr qreal kRadius = 10;
constexpr QSize kIconSize(18, 18);
constexpr qreal kStroke = 1.6;

// A tray, and an arrow from its ground up or from above into it. Up and down of the arrow's head in an icon
// of 18 pixels.
void DrawArrow(QPainter& painter, const QRectF& rect, const QColor& color, qreal tip, qreal wings) {
    painter.translate(rect.topLeft());
    painter.setPen(QPen(color, kStroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    QPainterPath tray(QPointF(2.2, 11));
    tray.lineTo(2.2, 13.2);
    tray.quadTo(2.2, 15.8, 4.8, 15.8);
    tray.lineTo(13.2, 15.8);
    tray.quadTo(15.8, 15.8, 15.8, 13.2);
    tray.lineTo(15.8, 11);
    painter.drawPath(tray);
    painter.drawLine(QPointF(9, 2.2), QPointF(9, 11));
    painter.drawPolyline(QPolygonF({QPointF(5.4, wings), QPointF(9, tip), QPointF(12.6, wings)}));
}

void DrawExport(QPainter& painter, const QRectF& rect, const QColor& color, NimbPushButton::State) {
    DrawArrow(painter, rect, color, 2.2, 5.8);
}

void DrawImport(QPainter& painter, const QRectF& rect, const QColor& color, NimbPushButton::State) {
    DrawArrow(painter, rect, color, 11, 7.4);
}

void SetUp(NimbPushButton& button, const char* name, const QRect& place, const QString& text,
           const NimbPushButton::IconDrawing& icon) {
    button.setObjectName(QLatin1String(name));
    button.setGeometry(place);
    button.SetLook(NimbPushButton::Look::Choice);
    button.SetIconDrawing(icon, kIconSize);
    button.setToolTip(text);
    button.setAccessibleName(text);
}

}  // namespace

SharingButtons::SharingButtons(QWidget* parent)
    : QWidget(parent), m_export(new NimbPushButton(this)), m_import(new NimbPushButton(this)) {
    setGeometry(kPlace);
    setObjectName(QStringLiteral("sharingButtons"));
    SetUp(*m_export, "btnExport", kFirstHalf, WindowText(QT_TRANSLATE_NOOP("MainWindow", "导出布局")),
          DrawExport);
    SetUp(*m_import, "btnImport", kSecondHalf, WindowText(QT_TRANSLATE_NOOP("MainWindow", "导入布局")),
          DrawImport);
    connect(m_export, &QAbstractButton::clicked, this, &SharingButtons::exportWanted);
    connect(m_import, &QAbstractButton::clicked, this, &SharingButtons::importWanted);
}

QWidget* SharingButtons::First() const {
    return m_export;
}

QWidget* SharingButtons::Last() const {
    return m_import;
}

void SharingButtons::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors::kCardEdge, 1));
    painter.setBrush(colors::kWell);
    painter.drawRoundedRect(QRectF(rect()).adjusted(.5, .5, -.5, -.5), kRadius - .5, kRadius - .5);
}

}  // namespace kivo
