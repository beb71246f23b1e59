#include "window/picture_notice.h"

#include <QDir>
#include <QFontMetrics>
#include <QLabel>
#include <QPainter>

#include "pictures/picture_path.h"
#include "widgets/window_colors.h"
#include "window/window_text.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr int kTextLeft = 14;
constexpr int kTextPixels = 12;
constexpr QRect kDot(0, 7, 6, 6);

QString Sentence(PictureFailure failure) {
    switch (failure) {
        case PictureFailure::Missing:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "找不到图片“%1”，暂用默认图片"));
        case PictureFailure::NoAnswer:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "图片“%1”没有响应，暂用默认图片"));
        default:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "无法打开图片“%1”，暂用默认图片"));
    }
}

}  // namespace

PictureNotice::PictureNotice(QWidget* parent) : QWidget(parent), m_text(new QLabel(this)) {
    setObjectName(QStringLiteral("pictureNotice"));
    setFixedSize(kSize);
    m_text->setObjectName(QStringLiteral("pictureNoticeText"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    QFont textFont = font();
    textFont.setPixelSize(kTextPixels);
    m_text->setFont(textFont);
    QPalette textPalette = palette();
    textPalette.setColor(QPalette::WindowText, colors::kTextMid);
    m_text->setPalette(textPalette);
    m_text->setGeometry(kTextLeft, 0, kSize.width() - kTextLeft, kSize.height());
    hide();
}

void PictureNotice::Show(const QString& path, PictureFailure failure) {
    m_hasSomethingToSay = failure != PictureFailure::None;
    if (m_hasSomethingToSay) {
        Say(path, failure);
    }
    setVisible(m_hasSomethingToSay && !m_isCovered);
    Q_EMIT changed();
}

void PictureNotice::SetCovered(bool on) {
    m_isCovered = on;
    setVisible(m_hasSomethingToSay && !on);
}

void PictureNotice::Say(const QString& path, PictureFailure failure) {
    const QString sentence = Sentence(failure);
    const QFontMetrics metrics(m_text->font(), m_text);
    const int room =
        m_text->width() - metrics.horizontalAdvance(QString(sentence).remove(QLatin1String("%1")));
    const QString name = PictureFileName(path);
    m_text->setText(sentence.arg(metrics.elidedText(name, Qt::ElideMiddle, room)));
    m_text->setToolTip(QDir::toNativeSeparators(path));
}

void PictureNotice::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors::kWarning);
    painter.drawEllipse(kDot);
}

}  // namespace kivo
