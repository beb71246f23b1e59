#include "editor/color_bar.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <algorithm>

#include "widgets/check_mark.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr QSize kSize(163, 48);
constexpr QRect kFirstButton(14, 17, 20, 22);
constexpr int kStep = 23;
constexpr qreal kRingDiameter = 19;
constexpr int kDarkGray = 96;  // below it a check is light

struct ColorEntry {
    const char* picture;
    const char* name;
};

// By the index of FreeTextColor. Deliberate: the picture of the orange is called red.
constexpr std::array<ColorEntry, kTextColorCount> kColors{{
    {"://skins/white.png", QT_TRANSLATE_NOOP("ColorBar", "白色")},
    {"://skins/black.png", QT_TRANSLATE_NOOP("ColorBar", "黑色")},
    {"://skins/red.png", QT_TRANSLATE_NOOP("ColorBar", "橙色")},
    {"://skins/yellow.png", QT_TRANSLATE_NOOP("ColorBar", "黄色")},
    {"://skins/blue.png", QT_TRANSLATE_NOOP("ColorBar", "蓝色")},
    {"://skins/green.png", QT_TRANSLATE_NOOP("ColorBar", "绿色")},
}};

}  // namespace

QString ColorButtonPicture(int color) {
    return QLatin1String(kColors.at(static_cast<std::size_t>(color)).picture);
}

QString ColorName(int color) {
    return QCoreApplication::translate("ColorBar", kColors.at(static_cast<std::size_t>(color)).name);
}

ColorBar::ColorBar(QWidget* parent) : QWidget(parent), m_ground(QStringLiteral("://skins/Union.png")) {
    setFixedSize(kSize);
    for (int color = 0; color < kTextColorCount; ++color) {
        const QString picture = ColorButtonPicture(color);
        auto* const button = new NimbPushButton(this);
        button->setGeometry(kFirstButton.translated(color * kStep, 0));
        button->SetPictures(picture, picture, picture, picture);
        button->SetCurIndex(color);
        button->setFocusPolicy(Qt::TabFocus);  // the mouse leaves the focus with the text
        button->SetCornerRadius(kFirstButton.width() / 2.0);
        button->SetIconDrawing(
            [this, color](QPainter& painter, const QRectF& rect, const QColor& /*ink*/,
                          NimbPushButton::State state) { DrawState(painter, rect, color, state); },
            kFirstButton.size());
        connect(button, &QPushButton::clicked, this, &ColorBar::btn_clicked);
        m_buttons.at(static_cast<std::size_t>(color)) = button;
    }
    Translate();
}

// The pictures are the same in every state, so a ring and a check tell them apart.
void ColorBar::DrawState(QPainter& painter, const QRectF& rect, int color,
                         NimbPushButton::State state) const {
    if (color == m_current) {
        const bool isDark = qGray(FreeTextColor(color).rgb()) < kDarkGray;
        DrawCheckMark(painter, rect.center(), isDark ? colors::kTextHigh : colors::kOnAccent);
    }
    if (state != NimbPushButton::Hover && state != NimbPushButton::Pressed) {
        return;
    }
    QRectF ring(0, 0, kRingDiameter, kRingDiameter);
    ring.moveCenter(rect.center());
    const bool isDown = state == NimbPushButton::Pressed;
    painter.setPen(QPen(isDown ? colors::kAccentBright : colors::kTextMid, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(ring);
}

void ColorBar::SetCurrentColor(int color) {
    m_current = color;
    Translate();
    for (NimbPushButton* button : m_buttons) {
        button->update();
    }
}

void ColorBar::btn_clicked() {
    const auto* const found = std::find(m_buttons.begin(), m_buttons.end(), sender());
    if (found == m_buttons.end()) {
        return;
    }
    Q_EMIT SendFontColor(static_cast<quint8>(found - m_buttons.begin()));
    hide();
}

void ColorBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
        return;
    }
    Q_EMIT dismissed();
    hide();
}

void ColorBar::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Q_EMIT shownChanged(true);
}

void ColorBar::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    Q_EMIT shownChanged(false);
}

void ColorBar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        Translate();
    }
    QWidget::changeEvent(event);
}

void ColorBar::Translate() {
    setAccessibleName(tr("文字颜色"));
    for (NimbPushButton* button : m_buttons) {
        button->setAccessibleName(ColorName(button->CurIndex()));
        button->setToolTip(ColorName(button->CurIndex()));
        button->setAccessibleDescription(button->CurIndex() == m_current ? tr("当前颜色") : QString());
    }
}

void ColorBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    m_ground.Draw(painter, rect());
}

}  // namespace kivo
