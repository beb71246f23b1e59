#include "window/state_line.h"

#include <QClipboard>
#include <QFile>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <chrono>

#include "widgets/nimb_push_button.h"
#include "widgets/window_colors.h"
#include "window/access_commands.h"
#include "window/panel_status_text.h"
#include "window/window_text.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr QRect kDot(0, 9, 6, 6);  // in the middle of the small letters and of the Chinese signs
constexpr int kTextLeft = 14;
constexpr int kBaseline = 16;
constexpr int kTextPixels = 12;
constexpr int kLinkSide = 6;  // room that a button keeps on both sides of its text
constexpr int kLinkGap = 16;
constexpr int kLinkHeight = 20;
constexpr std::chrono::milliseconds kCopiedStands{4000};

}  // namespace

StateLine::StateLine(QWidget* parent)
    : QWidget(parent), m_text(new QLabel(this)), m_copy(new NimbPushButton(this)) {
    setFixedSize(kSize);
    setObjectName(QStringLiteral("stateLine"));
    m_text->setObjectName(QStringLiteral("stateText"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    QFont textFont = font();
    textFont.setPixelSize(kTextPixels);
    m_text->setFont(textFont);
    QPalette textPalette = palette();
    textPalette.setColor(QPalette::WindowText, colors::kTextMid);
    m_text->setPalette(textPalette);

    m_copy->setObjectName(QStringLiteral("stateCopy"));
    m_copy->setToolTip(
        WindowText(QT_TRANSLATE_NOOP("MainWindow", "复制两条命令，在终端中运行后即可打开屏幕")));
    m_copy->setFocusPolicy(Qt::TabFocus);
    m_copy->SetTextPixelSize(kTextPixels);
    m_copy->SetTextColors({colors::kTextMid, colors::kTextHigh, colors::kTextHigh, colors::kTextLow});
    m_copy->hide();
    connect(m_copy, &QAbstractButton::clicked, this, &StateLine::CopyCommands);

    m_copied.setSingleShot(true);
    m_copied.setInterval(kCopiedStands);
    connect(&m_copied, &QTimer::timeout, this, &StateLine::ShowLink);
    Refresh();
}

void StateLine::Show(const PanelStatus& status) {
    if (status != m_status) {
        m_status = status;
        Refresh();
    }
}

void StateLine::ShowDark(DarkReasons reasons) {
    if (reasons != m_dark) {
        m_dark = reasons;
        Refresh();
    }
}

QString StateLine::PhraseOfPanel() const {
    const bool isAtRest =
        m_status.condition == PanelCondition::Connected || m_status.condition == PanelCondition::Sent;
    return isAtRest && m_dark ? DarkText(m_dark) : PanelStatusText(m_status);
}

void StateLine::NoteSaved(SettingsParts parts, bool areSaved) {
    const SettingsParts unsaved = areSaved ? m_unsaved & ~parts : m_unsaved | parts;
    if (unsaved != m_unsaved) {
        m_unsaved = unsaved;
        Refresh();
    }
}

void StateLine::Refresh() {
    const bool isDenied = !m_unsaved && m_status.condition == PanelCondition::Denied;
    m_text->setToolTip(isDenied ? QFile::decodeName(m_status.node) : QString());
    m_copy->setVisible(isDenied);
    const bool isAmber = m_unsaved || IsPanelOwed(m_status);
    if (isAmber != m_isAmber) {
        m_isAmber = isAmber;
        update(kDot);
    }
    const QString phrase =
        m_unsaved ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "设置未能保存")) : PhraseOfPanel();
    if (phrase != m_phrase) {
        m_phrase = phrase;
        m_copied.stop();
        ShowPhrase();
        ShowLink();
        Q_EMIT phraseChanged(m_phrase);
    }
}

// Label and button tell assistive programs of a new text by themselves. Deliberate: no alert beside it, which
// Windows gives a sound.
void StateLine::ShowPhrase() {
    m_text->setText(m_phrase);
    m_text->move(kTextLeft, kBaseline - QFontMetrics(m_text->font(), m_text).ascent());
    m_text->resize(m_text->sizeHint());
}

void StateLine::ShowLink() {
    const bool isNote = m_copied.isActive();
    const QString text = isNote ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "已复制"))
                                : WindowText(QT_TRANSLATE_NOOP("MainWindow", "复制命令"));
    QFont linkFont = m_text->font();
    linkFont.setUnderline(!isNote);
    m_copy->SetTextFont(linkFont);
    const QRect before = m_text->geometry();
    const int textWidth = QFontMetrics(m_text->font(), m_text).horizontalAdvance(text) + 1;
    m_copy->setText(text);
    m_copy->setGeometry(before.x() + before.width() + kLinkGap - kLinkSide,
                        before.y() + (before.height() - kLinkHeight) / 2, textWidth + 2 * kLinkSide,
                        kLinkHeight);
}

void StateLine::CopyCommands() {
    QGuiApplication::clipboard()->setText(AccessCommands());
    m_copied.start();
    ShowLink();
}

void StateLine::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_isAmber ? colors::kWarning : colors::kAccentBright);
    painter.drawEllipse(kDot);
}

}  // namespace kivo
