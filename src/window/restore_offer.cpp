#include "window/restore_offer.h"
#include "window/window_text.h"

#include <QFontMetrics>
#include <QLabel>

#include "config/kept_settings.h"
#include "widgets/nimb_push_button.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr int kTextPixels = 12;
constexpr int kLinkSide = 6;  // room that a button keeps on both sides of its text
constexpr int kLinkGap = 10;

}  // namespace

RestoreOffer::RestoreOffer(QWidget* parent) : QWidget(parent), m_hasKept(HasKeptSettings()) {
    setFixedSize(kSize);
    setObjectName(QStringLiteral("restoreOffer"));
    auto* text = new QLabel(WindowText(QT_TRANSLATE_NOOP("MainWindow", "设置已换成默认值")), this);
    text->setTextFormat(Qt::PlainText);
    QFont textFont = font();
    textFont.setPixelSize(kTextPixels);
    text->setFont(textFont);
    QPalette textPalette = palette();
    textPalette.setColor(QPalette::WindowText, colors::kTextMid);
    text->setPalette(textPalette);
    text->setGeometry(0, 0, text->sizeHint().width(), height());

    NimbPushButton* const restore = AddLink("restoreSettings", text->width() + kLinkGap,
                                            WindowText(QT_TRANSLATE_NOOP("MainWindow", "恢复我的设置")));
    connect(restore, &QAbstractButton::clicked, this, &RestoreOffer::restoreWanted);
    NimbPushButton* const dismiss = AddLink("keepDefaults", restore->geometry().right() + 1 + kLinkGap,
                                            WindowText(QT_TRANSLATE_NOOP("MainWindow", "保留现在的")));
    connect(dismiss, &QAbstractButton::clicked, this, &RestoreOffer::Dismiss);
    Refresh(true);
}

NimbPushButton* RestoreOffer::AddLink(const char* name, int left, const QString& text) {
    auto* link = new NimbPushButton(text, this);
    link->setObjectName(QLatin1String(name));
    link->setFocusPolicy(Qt::TabFocus);
    QFont linkFont = font();
    linkFont.setPixelSize(kTextPixels);
    linkFont.setUnderline(true);
    link->SetTextFont(linkFont);
    link->SetTextPixelSize(kTextPixels);
    link->SetTextColors({colors::kTextMid, colors::kTextHigh, colors::kTextHigh, colors::kTextLow});
    link->setGeometry(left, 0, QFontMetrics(linkFont, link).horizontalAdvance(text) + 1 + 2 * kLinkSide,
                      height());
    return link;
}

void RestoreOffer::Refresh(bool isRoomFree) {
    m_hasKept = m_hasKept && HasKeptSettings();
    setVisible(m_hasKept && isRoomFree);
}

void RestoreOffer::Dismiss() {
    DismissKeptSettings();
    Refresh(true);
}

}  // namespace kivo
