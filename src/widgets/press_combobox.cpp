#include "widgets/press_combobox.h"

#include <QKeyEvent>
#include <QListView>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr qreal kRadius = 8;
constexpr QSizeF kChevron(8, 4);
constexpr int kChevronRight = 9;
constexpr int kTextPixels = 13;
constexpr int kRowHeight = 30;

QString ListStyle() {
    // A rounded list needs a window of its own that is transparent, the plain one has a frame. Not "popup" in
    // the style's sense: that one lies over the chooser and has check marks.
    return QStringLiteral(
               "QComboBox { combobox-popup: 0; }"
               "QComboBoxPrivateContainer { background: transparent; border: none; }"
               "QComboBox QAbstractItemView { background: %1; border: 1px solid %2; border-radius: 8px;"
               " color: %3; padding: 3px; outline: none; selection-background-color: %4; }"
               "QComboBox QAbstractItemView[square=\"true\"] { border-radius: 0; }"
               "QComboBox QAbstractItemView::item { height: %6px; padding-left: 10px; border-radius: 6px; }"
               "QComboBox QAbstractItemView::item:selected { background: %4; color: %5; }")
        .arg(colors::kRaised.name(), colors::kRaisedEdge.name(), colors::kTextMid.name(),
             colors::kListChosen.name(), colors::kTextHigh.name())
        .arg(kRowHeight);
}

}  // namespace

PressCombobox::PressCombobox(QWidget* parent) : QComboBox(parent) {
    auto* const list = new QListView(this);
    setView(list);
    setItemDelegate(new QStyledItemDelegate(this));  // the plain one ignores the height of a row
    setStyleSheet(ListStyle());
    QFont textFont = font();
    textFont.setPixelSize(kTextPixels);
    // Named, since Windows has a font of its own for lists.
    textFont.setFamily(textFont.family());
    setFont(textFont);
    list->setFont(textFont);
    QWidget* const container = list->window();
    container->setWindowFlags(container->windowFlags() | Qt::FramelessWindowHint |
                              Qt::NoDropShadowWindowHint);
    container->setAttribute(Qt::WA_TranslucentBackground);
    setProperty("focusRadius", kRadius);
}

void PressCombobox::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        Q_EMIT clicked();
    }
    QComboBox::mousePressEvent(event);
}

void PressCombobox::keyPressEvent(QKeyEvent* event) {
    const QScopedValueRollback<bool> atKey(m_atKey, true);
    QComboBox::keyPressEvent(event);
}

// Which keys open the list is the base class's business: here it has decided.
void PressCombobox::showPopup() {
    // Assistive programs are offered it also while nobody sees the chooser.
    if (!isVisible()) {
        return;
    }
    if (m_atKey && count() > 0) {
        Q_EMIT clicked();
    }
    QComboBox::showPopup();
}

void PressCombobox::enterEvent(EnterEvent* event) {
    QComboBox::enterEvent(event);
    update();
}

void PressCombobox::leaveEvent(QEvent* event) {
    QComboBox::leaveEvent(event);
    update();
}

void PressCombobox::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isOpen = view()->isVisible();
    const bool isLit = isEnabled() && (underMouse() || isOpen);
    const QColor edge = !isEnabled() ? colors::kButtonEdgeOff
                        : isOpen     ? colors::kAccentBright
                        : isLit      ? colors::kButtonEdgeHover
                                     : colors::kRaisedEdge;
    const QColor ink = !isEnabled() ? colors::kButtonTextOff : isLit ? QColor(Qt::white) : colors::kTextHigh;
    painter.setPen(QPen(edge, 1));
    painter.setBrush(colors::kWell);
    painter.drawRoundedRect(QRectF(rect()).adjusted(.5, .5, -.5, -.5), kRadius - .5, kRadius - .5);

    const QRect textRect = TextRect();
    painter.setPen(ink);
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft,
                     fontMetrics().elidedText(currentText(), Qt::ElideRight, textRect.width()));

    const QRectF chevron(
        QPointF(width() - kChevronRight - kChevron.width(), (height() - kChevron.height()) / 2), kChevron);
    painter.setPen(
        QPen(isEnabled() ? colors::kTextMid : ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(
        QPolygonF({chevron.topLeft(), QPointF(chevron.center().x(), chevron.bottom()), chevron.topRight()}));
}

}  // namespace kivo
