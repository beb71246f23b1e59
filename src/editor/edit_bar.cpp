#include "editor/edit_bar.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QPainter>
#include <algorithm>

#include "compose/panel_text.h"
#include "editor/color_bar.h"
#include "widgets/nimb_push_button.h"
#include "widgets/press_combobox.h"
#include "widgets/press_label.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr QSize kSize(433, 40);
constexpr QRect kTypeIcon(12, 10, 20, 20);
constexpr QRect kSizeBox(38, 7, 84, 26);
constexpr QRect kColorLabel(129, 10, 20, 20);
constexpr int kHairX = 155;
constexpr int kHairTop = 10;
constexpr int kHairHeight = 20;
constexpr QRect kTrimButton(161, 6, 84, 28);
constexpr QRect kBackButton(251, 6, 84, 28);
constexpr QRect kRedoButton(341, 6, 84, 28);
constexpr QSize kIconSize(16, 16);
constexpr int kTextPixels = 13;
constexpr qreal kButtonRadius = 8;
constexpr QRect kFirstChoice(160, 9, 20, 22);
constexpr int kChoiceStep = 15;
constexpr qreal kOffStrength = 0.4;

constexpr std::array<const char*, kTextColorCount> kIndicators{
    "://skins/font_white.png",  "://skins/font_black.png", "://skins/font_orange.png",
    "://skins/font_yellow.png", "://skins/font_blue.png",  "://skins/font_green.png"};

QString IndicatorPicture(int color) {
    return QLatin1String(kIndicators.at(static_cast<std::size_t>(color)));
}

void SetUpToolButton(NimbPushButton* button, const QRect& place, const QString& plate, const QString& icon) {
    button->setGeometry(place);
    // Hover and off have no picture of their own: then the button draws the same plate itself.
    button->SetLook(NimbPushButton::Look::Quiet);
    button->SetCornerRadius(kButtonRadius);
    button->SetPictures(QStringLiteral("://skins/%1.png").arg(plate + QLatin1Char('1')), QString(),
                        QStringLiteral("://skins/%1.png").arg(plate + QLatin1Char('2')), QString());
    button->SetIcons(QStringLiteral("://skins/icon_%1_n.png").arg(icon),
                     QStringLiteral("://skins/icon_%1_s.png").arg(icon), kIconSize);
    button->SetTextPixelSize(kTextPixels);
}

// The icon of the back button, the other way round.
void DrawRedoIcon(QPainter& painter, const QRectF& rect, const QColor& /*color*/,
                  NimbPushButton::State state) {
    const bool isDown = state == NimbPushButton::Pressed;
    const SharpPicture icon(QStringLiteral("://skins/icon_back_%1.png").arg(QLatin1Char(isDown ? 's' : 'n')));
    if (state == NimbPushButton::Disabled) {
        painter.setOpacity(kOffStrength);
    }
    painter.translate(2 * rect.center().x(), 0);
    painter.scale(-1, 1);
    icon.Draw(painter, rect);
}

// One that is as it should be already keeps the look that the mouse has given it.
void SwitchButton(NimbPushButton& button, bool on) {
    if (button.isEnabled() != on) {
        button.SetButtonEnabled(on);
    }
}

}  // namespace

EditBar::EditBar(QWidget* parent)
    : QWidget(parent),
      m_ground(QStringLiteral("://skins/edit_bk.png")),
      m_typeIcon(QStringLiteral("://skins/icon_type_w.png")),
      m_sizeBox(new PressCombobox(this)),
      m_colorLabel(new PressLabel(this)),
      m_trimButton(new NimbPushButton(this)),
      m_backButton(new NimbPushButton(this)),
      m_redoButton(new NimbPushButton(this)),
      m_choiceGround(new QWidget(this)) {
    setFixedSize(kSize);
    QFont textFont = font();
    textFont.setFamily(FontFamily());
    textFont.setPixelSize(kTextPixels);
    setFont(textFont);

    m_sizeBox->setObjectName(QStringLiteral("sizeBox"));
    m_sizeBox->setFont(textFont);
    m_sizeBox->setGeometry(kSizeBox);
    m_sizeBox->addItems({QString(), QString(), QString()});
    m_colorLabel->setObjectName(QStringLiteral("colorLabel"));
    m_colorLabel->setGeometry(kColorLabel);
    m_colorLabel->setFocusPolicy(Qt::TabFocus);
    m_colorLabel->setCursor(Qt::PointingHandCursor);
    m_colorLabel->setProperty("focusRadius", kColorLabel.width() / 2.0);
    m_colorLabel->SetOpens(PressLabel::Opens::Closed);
    m_trimButton->setObjectName(QStringLiteral("trimButton"));
    SetUpToolButton(m_trimButton, kTrimButton, QStringLiteral("cut"), QStringLiteral("trim"));
    m_trimButton->SetToggleMode(true);
    m_backButton->setObjectName(QStringLiteral("backButton"));
    SetUpToolButton(m_backButton, kBackButton, QStringLiteral("ret"), QStringLiteral("back"));
    m_redoButton->setObjectName(QStringLiteral("redoButton"));
    SetUpToolButton(m_redoButton, kRedoButton, QStringLiteral("ret"), QStringLiteral("back"));
    m_redoButton->SetIconDrawing(DrawRedoIcon, kIconSize);
    // The mouse leaves the focus with the text or the trim frame that the tools are there for.
    for (QWidget* tool :
         std::initializer_list<QWidget*>{m_sizeBox, m_trimButton, m_backButton, m_redoButton}) {
        tool->setFocusPolicy(Qt::TabFocus);
    }
    MakeColourChoices();
    Translate();
    ControlLabelColor(0);

    connect(m_sizeBox, qOverload<int>(&QComboBox::currentIndexChanged), this, &EditBar::slotFontsizeCurIndex);
    connect(m_sizeBox, &PressCombobox::clicked, this, &EditBar::combo_clicked);
    connect(m_colorLabel, &PressLabel::clicked, this, &EditBar::label_clicked);
    // At the press and not at the release: a toggle changes with the press, also when it is let go elsewhere.
    connect(m_trimButton, &NimbPushButton::EnterSignal, this, &EditBar::btn_clicked);
    connect(m_backButton, &QPushButton::clicked, this, &EditBar::btn_clicked);
    connect(m_redoButton, &QPushButton::clicked, this, [this] {
        SetEditPressed(false);
        Q_EMIT SendRedo();
    });
}

// Deliberate: they are never shown. Colours are picked in the strip of their own.
void EditBar::MakeColourChoices() {
    m_choiceGround->setGeometry(QRect(
        kFirstChoice.topLeft(), QSize(kTrimButton.left() - kFirstChoice.left(), kFirstChoice.height())));
    for (int color = 0; color < kTextColorCount; ++color) {
        const QString picture = ColorButtonPicture(color);
        auto* const choice = new NimbPushButton(this);
        choice->setObjectName(QStringLiteral("colourChoice"));
        choice->setGeometry(kFirstChoice.translated(color * kChoiceStep, 0));
        choice->SetPictures(picture, picture, picture, picture);
        choice->SetCurIndex(color);
        connect(choice, &QPushButton::clicked, this, &EditBar::btn_clicked);
        m_choices.at(static_cast<std::size_t>(color)) = choice;
    }
    HideColourChoices();
}

void EditBar::HideColourChoices(int /*which*/) {
    m_choiceGround->hide();
    for (NimbPushButton* choice : m_choices) {
        choice->hide();
    }
}

void EditBar::SetEditPressed(bool on) {
    m_trimButton->SetPressed(on);
    if (!on) {
        Q_EMIT SendEdit(0);
    }
}

bool EditBar::IsEditPressed() const {
    return m_trimButton->IsPressed();
}

void EditBar::SetWays(bool undo, bool redo) {
    SwitchButton(*m_backButton, undo);
    SwitchButton(*m_redoButton, redo);
}

void EditBar::SetSizeEnabled(bool on) {
    m_sizeBox->setEnabled(on);
}

void EditBar::SetFontSizeIndex(int index) {
    if (index >= 0 && index < m_sizeBox->count()) {
        m_sizeBox->setCurrentIndex(index);
    }
}

void EditBar::SetTrimEnabled(bool on) {
    if (!on && IsEditPressed()) {
        SetEditPressed(false);
    }
    SwitchButton(*m_trimButton, on);
}

void EditBar::TellColorsShown(bool shown) {
    m_colorLabel->SetOpens(shown ? PressLabel::Opens::Open : PressLabel::Opens::Closed);
}

void EditBar::btn_clicked() {
    if (sender() == m_trimButton) {
        Q_EMIT SendEdit(m_trimButton->IsPressed() ? 1 : 0);
    } else if (sender() == m_backButton) {
        SetEditPressed(false);
        Q_EMIT SendImageReset();
    } else {
        const auto* const found = std::find(m_choices.begin(), m_choices.end(), sender());
        if (found == m_choices.end()) {
            return;
        }
        const auto color = static_cast<quint8>(found - m_choices.begin());
        Q_EMIT SendFontColor(color);
        ControlLabelColor(color);
    }
}

void EditBar::label_clicked() {
    if (sender() != m_colorLabel) {
        return;
    }
    Q_EMIT ShowColorbarSignal(1);
    SetEditPressed(false);
}

void EditBar::combo_clicked() {
    if (sender() != m_sizeBox) {
        return;
    }
    Q_EMIT SizeClicked();
    SetEditPressed(false);
}

void EditBar::slotFontsizeCurIndex(int iIndex) {
    qDebug("slotFontsizeCurIndex = %d \n", iIndex);
    if (m_sizeChangeArmed) {
        Q_EMIT SendFontSize(static_cast<quint8>(iIndex));
    } else {
        m_sizeChangeArmed = true;
    }
}

void EditBar::slotSetFontSize(int iIndex) {
    // A size that is set already makes no change to swallow: then the person's next one would be lost.
    const bool changes = iIndex != m_sizeBox->currentIndex() && iIndex >= 0 && iIndex < m_sizeBox->count();
    if (!changes) {
        return;
    }
    m_sizeChangeArmed = false;
    m_sizeBox->setCurrentIndex(iIndex);
}

void EditBar::ControlLabelColor(quint8 iColor) {
    if (iColor >= kTextColorCount) {
        return;
    }
    m_color = iColor;
    ShowIndicator();
}

// For the screen that the bar is on, so that the dot is sharp there.
void EditBar::ShowIndicator() {
    const qreal ratio = devicePixelRatioF();
    QPixmap pixmap(kColorLabel.size() * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    const QRectF place(QPointF(0, 0), QSizeF(kColorLabel.size()));
    SharpPicture(IndicatorPicture(m_color)).Draw(painter, place);
    painter.end();
    m_colorLabel->setPixmap(pixmap);
    m_colorLabel->setAccessibleDescription(ColorName(m_color));
}

bool EditBar::event(QEvent* event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::ScreenChangeInternal) {
        ShowIndicator();
    }
    return QWidget::event(event);
}

void EditBar::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        Translate();
    }
    QWidget::changeEvent(event);
}

void EditBar::Translate() {
    m_sizeBox->setItemText(0, tr("大"));
    m_sizeBox->setItemText(1, tr("中"));
    m_sizeBox->setItemText(2, tr("小"));
    m_sizeBox->setAccessibleName(tr("文字大小"));
    m_sizeBox->view()->setAccessibleName(tr("文字大小"));
    m_sizeBox->setToolTip(tr("文字大小"));
    m_colorLabel->setAccessibleName(tr("文字颜色"));
    m_colorLabel->setToolTip(tr("文字颜色"));
    m_trimButton->setText(tr("修剪"));
    m_trimButton->setToolTip(tr("选取图片的显示区域"));
    m_backButton->setText(tr("返回"));
    m_backButton->setToolTip(tr("撤销上一步"));
    m_redoButton->setText(tr("重做"));
    m_redoButton->setToolTip(tr("恢复撤销的步骤"));
    for (NimbPushButton* choice : m_choices) {
        choice->setAccessibleName(ColorName(choice->CurIndex()));
    }
}

void EditBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    m_ground.Draw(painter, rect());
    m_typeIcon.Draw(painter, kTypeIcon);
    painter.fillRect(kHairX, kHairTop, 1, kHairHeight, colors::kRaisedEdge);
}

}  // namespace kivo
