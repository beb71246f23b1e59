// How the button looks.

#include "widgets/nimb_push_button.h"

#include <QPainter>
#include <optional>

#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr qreal kPlateRadius = 10;
constexpr qreal kChoiceRadius = 8;
constexpr qreal kIconGap = 8;
constexpr qreal kSideRoom = 6;  // between the edge and the widest text
constexpr int kSmallestText = 11;
constexpr qreal kOffOpacity = 0.45;  // of a picture whose button is off
constexpr QSizeF kAccentBar(24, 2.5);

struct PlateColors {
    QColor fill;
    QColor edge;
    QColor text;
};

PlateColors QuietColors(NimbPushButton::State state) {
    switch (state) {
        case NimbPushButton::Hover:
            return {colors::kHoverFill, colors::kButtonEdgeHover, colors::kTextHigh};
        case NimbPushButton::Pressed:
            return {colors::kSelectedFill, colors::kAccentBright, Qt::white};
        case NimbPushButton::Disabled:
            return {colors::kButton, colors::kButtonEdgeOff, colors::kButtonTextOff};
        case NimbPushButton::Normal:
            break;
    }
    return {colors::kButton, colors::kButtonEdge, colors::kButtonText};
}

PlateColors PrimaryColors(NimbPushButton::State state) {
    switch (state) {
        case NimbPushButton::Hover:
            return {colors::kAccentDeepHover, colors::kAccentBright, Qt::white};
        case NimbPushButton::Pressed:
            return {colors::kAccentDeepPress, colors::kAccentDeepEdge, Qt::white};
        case NimbPushButton::Disabled:
            return QuietColors(state);
        case NimbPushButton::Normal:
            break;
    }
    return {colors::kAccentDeep, colors::kAccentDeepEdge, Qt::white};
}

PlateColors DeleteColors(NimbPushButton::State state) {
    switch (state) {
        case NimbPushButton::Hover:
            return {colors::kDeleteFillHover, colors::kDelete, colors::kDelete};
        case NimbPushButton::Pressed:
            return {colors::kDeleteFillPress, colors::kDelete, colors::kDelete};
        case NimbPushButton::Disabled:
            return QuietColors(state);
        case NimbPushButton::Normal:
            break;
    }
    return {colors::kDeleteFill, colors::kDeleteEdge, colors::kDelete};
}

// Of the looks that have a plate in every state.
std::optional<PlateColors> ColorsOf(NimbPushButton::Look look, NimbPushButton::State state) {
    switch (look) {
        case NimbPushButton::Look::Quiet:
            return QuietColors(state);
        case NimbPushButton::Look::Primary:
            return PrimaryColors(state);
        case NimbPushButton::Look::Delete:
            return DeleteColors(state);
        case NimbPushButton::Look::Tab:
        case NimbPushButton::Look::Choice:
        case NimbPushButton::Look::Bare:
            break;
    }
    return std::nullopt;
}

QColor ChoiceColor(NimbPushButton::State state, const QColor& off, const QColor& hover, const QColor& on) {
    switch (state) {
        case NimbPushButton::Hover:
            return hover;
        case NimbPushButton::Pressed:
            return on;
        case NimbPushButton::Disabled:
            return colors::kChoiceOff;
        case NimbPushButton::Normal:
            break;
    }
    return off;
}

}  // namespace

// What the person sees: the paint state, and beside it what a look has to tell apart.
NimbPushButton::State NimbPushButton::DrawnState() const {
    if (!isEnabled() && (m_look != Look::Bare || m_enabledFlag)) {
        return Disabled;
    }
    if (m_toggleMode && m_enabledFlag && m_paintState == Normal && underMouse()) {
        return Hover;
    }
    return static_cast<State>(m_paintState);
}

QColor NimbPushButton::TextColor(State state) const {
    if (const std::optional<PlateColors> plate = ColorsOf(m_look, state)) {
        return plate->text;
    }
    // The accent marks what is chosen: the icon, or the text where there is none.
    if (m_look == Look::Choice) {
        return ChoiceColor(state, colors::kTextMid, colors::kTextHigh,
                           m_iconSize.isEmpty() ? colors::kAccentBright : colors::kTextHigh);
    }
    return m_textColors.value(state);
}

QColor NimbPushButton::IconColor(State state) const {
    if (m_look == Look::Choice) {
        return ChoiceColor(state, colors::kChoiceIcon, colors::kTextHigh, colors::kAccentBright);
    }
    return TextColor(state);
}

qreal NimbPushButton::CornerRadius() const {
    if (m_cornerRadius >= 0) {
        return m_cornerRadius;
    }
    return m_look == Look::Choice ? kChoiceRadius : kPlateRadius;
}

QFont NimbPushButton::FittedFont(qreal width) const {
    QFont font = m_hasTextFont ? m_textFont : this->font();
    for (int pixels = m_textPixelSize;; --pixels) {
        font.setPixelSize(pixels);
        if (pixels <= kSmallestText || QFontMetricsF(font).horizontalAdvance(text()) <= width) {
            return font;
        }
    }
}

QSize NimbPushButton::sizeHint() const {
    const QFontMetricsF metrics(FittedFont(QWIDGETSIZE_MAX));
    qreal width = 2 * kPlateRadius + metrics.horizontalAdvance(text());
    if (!m_iconSize.isEmpty()) {
        width += m_iconSize.width() + (text().isEmpty() ? 0 : kIconGap);
    }
    const qreal height = qMax(metrics.height(), static_cast<qreal>(m_iconSize.height())) + kPlateRadius;
    return QSizeF(width, height).toSize();
}

void NimbPushButton::paintEvent(QPaintEvent* /*event*/) {
    const State state = DrawnState();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const SharpPicture& picture = m_pictures[state];
    if (m_usesPictures && !picture.IsNull()) {
        picture.Draw(painter, rect());
    } else if (m_look == Look::Bare) {
        DrawBareGround(painter, state);
    } else {
        DrawPlate(painter, state);
    }
    DrawContents(painter, state);
}

void NimbPushButton::DrawPlate(QPainter& painter, State state) const {
    const qreal radius = CornerRadius();
    painter.save();
    if (const std::optional<PlateColors> plate = ColorsOf(m_look, state)) {
        // On the half pixel, so that the edge covers whole ones.
        painter.setPen(QPen(plate->edge, 1));
        painter.setBrush(plate->fill);
        painter.drawRoundedRect(QRectF(rect()).adjusted(.5, .5, -.5, -.5), radius - .5, radius - .5);
    } else if (state == Hover && m_look == Look::Choice) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors::kHoverFill);
        painter.drawRoundedRect(QRectF(rect()), radius, radius);
    } else if (state == Pressed) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors::kSelectedFill);
        painter.drawRoundedRect(QRectF(rect()), radius, radius);
        if (m_look == Look::Tab) {
            const QPointF corner((width() - kAccentBar.width()) / 2, height() - kAccentBar.height());
            painter.setBrush(colors::kAccentBright);
            painter.drawRoundedRect(QRectF(corner, kAccentBar), kAccentBar.height() / 2,
                                    kAccentBar.height() / 2);
        }
    }
    painter.restore();
}

void NimbPushButton::DrawBareGround(QPainter& painter, State state) const {
    // A state without a picture shows that of the normal one, dimmed where the button is off.
    if (m_usesPictures) {
        painter.setOpacity(state == Disabled ? kOffOpacity : 1.0);
        m_pictures[Normal].Draw(painter, rect());
        painter.setOpacity(1.0);
        return;
    }
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_backColors.value(state));
    if (m_ellipse) {
        painter.drawEllipse(rect());
    } else {
        painter.drawRect(rect());
    }
    painter.restore();
}

// Icon and text as one group in the middle.
void NimbPushButton::DrawContents(QPainter& painter, State state) const {
    const bool hasText = !text().isEmpty();
    const qreal iconRoom = m_iconSize.isEmpty() ? 0 : m_iconSize.width() + (hasText ? kIconGap : 0);
    const qreal room = width() - 2 * kSideRoom - iconRoom;
    const QFont font = FittedFont(room);
    const QFontMetricsF metrics(font);
    const QString shown = hasText ? metrics.elidedText(text(), Qt::ElideRight, room) : QString();
    const qreal textWidth = qMin(metrics.horizontalAdvance(shown), qMax(room, 0.0));
    // On a whole pixel, or an icon's lines would be blurred.
    const qreal left = qRound((width() - iconRoom - textWidth) / 2);
    if (!m_iconSize.isEmpty()) {
        DrawIcon(painter, QRectF(QPointF(left, qRound((height() - m_iconSize.height()) / 2.0)), m_iconSize),
                 state);
    }
    if (!hasText) {
        return;
    }
    painter.setFont(font);
    painter.setPen(TextColor(state));
    painter.drawText(QRectF(left + iconRoom, 0, textWidth + 1, height()),
                     Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine | Qt::TextDontClip, shown);
}

void NimbPushButton::DrawIcon(QPainter& painter, const QRectF& rect, State state) const {
    painter.save();
    if (state == Disabled) {
        painter.setOpacity(m_iconDrawing ? 1.0 : kOffOpacity);
    }
    if (m_iconDrawing) {
        m_iconDrawing(painter, rect, IconColor(state), state);
    } else {
        (state == Pressed ? m_iconPressed : m_iconNormal).Draw(painter, rect);
    }
    painter.restore();
}

}  // namespace kivo
