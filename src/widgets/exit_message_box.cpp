#include "widgets/exit_message_box.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QTextLayout>

#include "widgets/focus_ring.h"
#include "widgets/nimb_push_button.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr QSize kPanel(380, 200);
constexpr qreal kPanelRadius = 16;
constexpr int kShadow = 14;
constexpr int kMargin = 24;
constexpr int kTitlePixels = 16;
constexpr QRect kTitle(24, 20, 332, 24);
constexpr QRect kIcon(24, 64, 40, 40);
constexpr int kTextLeft = 80;
constexpr int kTextPixels = 14;
constexpr int kLineHeight = 22;
constexpr QSize kButton(100, 36);
constexpr int kButtonGap = 8;
constexpr int kButtonFoot = 20;

QFont SizedFont(const QFont& base, int pixels, int weight) {
    QFont font = base;
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

// Breaks the text into lines of the panel's width and gives the height of all of them.
int LayOutText(QTextLayout& layout) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    int lines = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(kPanel.width() - kTextLeft - kMargin);
        const qreal above = (kLineHeight - line.height()) / 2;
        line.setPosition(QPointF(0, lines * kLineHeight + above));
        ++lines;
    }
    layout.endLayout();
    return lines * kLineHeight;
}

void DrawShadow(QPainter& painter, const QRectF& panel) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 7));
    for (int around = kShadow; around > 0; --around) {
        const qreal radius = kPanelRadius + around;
        painter.drawRoundedRect(panel.adjusted(-around, -around, around, around), radius, radius);
    }
}

void DrawPlainWarning(QPainter& painter, const QRectF& square) {
    const QPolygonF triangle({QPointF(square.center().x(), square.top() + 3),
                              QPointF(square.right() - 2, square.bottom() - 4),
                              QPointF(square.left() + 2, square.bottom() - 4)});
    QColor fill = colors::kWarning;
    fill.setAlphaF(.14);
    painter.setPen(QPen(colors::kWarning, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(fill);
    painter.drawPolygon(triangle);
    const qreal x = square.center().x();
    painter.drawLine(QPointF(x, square.top() + 15), QPointF(x, square.top() + 24));
    painter.drawPoint(QPointF(x, square.top() + 30));
}

bool Run(const QString& text, QWidget* window, bool onlyOk) {
    // On the heap and watched: the window may go while the box waits, and takes its children along.
    QPointer<ExitMessageBox> box = new ExitMessageBox(text, window);
    box->SetOnlyOk(onlyOk);
    const bool accepted = box->exec() == QDialog::Accepted;
    const bool isThere = !box.isNull();
    delete box;
    return isThere && accepted;
}

}  // namespace

ExitMessageBox::ExitMessageBox(const QString& text, QWidget* window)
    : QDialog(window, Qt::Dialog | Qt::FramelessWindowHint),
      m_text(text),
      m_window(window != nullptr ? window->window() : nullptr),
      m_okButton(new NimbPushButton(tr("确定"), this)),
      m_cancelButton(new NimbPushButton(tr("取消"), this)),
      m_warning(QStringLiteral("://skins/waring_icon.png")) {
    setModal(true);
    setWindowTitle(tr("温馨提示"));
    setAccessibleName(windowTitle());
    setAccessibleDescription(m_text);
    setAttribute(Qt::WA_TranslucentBackground);

    m_okButton->setObjectName(QStringLiteral("btnOk"));
    m_okButton->SetLook(NimbPushButton::Look::Primary);
    m_okButton->setDefault(true);
    m_okButton->setAccessibleDescription(m_text);
    m_cancelButton->setObjectName(QStringLiteral("btnCancel"));
    m_cancelButton->SetLook(NimbPushButton::Look::Quiet);
    setTabOrder(m_okButton, m_cancelButton);
    m_okButton->setFocus();
    connect(m_okButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_cancelButton, &QPushButton::clicked, this, &QDialog::reject);

    new FocusRing(this);
    if (m_window != nullptr)
        m_window->installEventFilter(this);
    Place();
}

void ExitMessageBox::SetOnlyOk(bool onlyOk) {
    m_cancelButton->setVisible(!onlyOk);
    PlaceButtons();
}

bool ExitMessageBox::Ask(QWidget* window, const QString& text) {
    return Run(text, window, false);
}

void ExitMessageBox::Tell(QWidget* window, const QString& text) {
    Run(text, window, true);
}

bool ExitMessageBox::HasWindowBelow() const {
    return m_window != nullptr && m_window->isVisible() && !m_window->isMinimized();
}

void ExitMessageBox::Place() {
    if (HasWindowBelow()) {
        setGeometry(m_window->geometry());
    } else {
        QRect place(QPoint(0, 0), PanelSize() + QSize(2 * kShadow, 2 * kShadow));
        place.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
        setGeometry(place);
    }
    PlaceButtons();
}

QSize ExitMessageBox::PanelSize() const {
    QTextLayout layout(LineText(), SizedFont(font(), kTextPixels, QFont::Normal));
    const int needed = kIcon.top() + LayOutText(layout) + kMargin + kButton.height() + kButtonFoot;
    return {kPanel.width(), qMax(kPanel.height(), needed)};
}

QRect ExitMessageBox::PanelRect() const {
    const QSize size = PanelSize();
    return {QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size};
}

// From the right: OK, and Cancel where there is one. A long word makes its button wider.
void ExitMessageBox::PlaceButtons() {
    const QRect panel = PanelRect();
    const int top = panel.top() + panel.height() - kButtonFoot - kButton.height();
    int right = panel.left() + panel.width() - kMargin;
    for (NimbPushButton* button : {m_okButton, m_cancelButton}) {
        const QSize size(qMax(kButton.width(), button->sizeHint().width()), kButton.height());
        button->setGeometry(QRect(QPoint(right - size.width(), top), size));
        right -= size.width() + kButtonGap;
    }
}

bool ExitMessageBox::eventFilter(QObject* watched, QEvent* event) {
    const bool movesBox = event->type() == QEvent::Move || event->type() == QEvent::Resize ||
                          event->type() == QEvent::WindowStateChange;
    if (watched == m_window && movesBox && HasWindowBelow()) {
        if (event->type() != QEvent::Move)
            m_below = m_window->grab();
        Place();
    }
    return QDialog::eventFilter(watched, event);
}

void ExitMessageBox::showEvent(QShowEvent* event) {
    // A picture of the window under the veil, so that nothing depends on a desktop that can blend windows.
    m_below = HasWindowBelow() ? m_window->grab() : QPixmap();
    Place();
    QDialog::showEvent(event);
}

void ExitMessageBox::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    PlaceButtons();
}

// The box covers the window, so the window is dragged by it.
void ExitMessageBox::mousePressEvent(QMouseEvent* event) {
    m_dragging = event->button() == Qt::LeftButton;
    m_dragOffset = event->globalPos() - (HasWindowBelow() ? m_window->pos() : pos());
}

void ExitMessageBox::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dragging || event->buttons() == Qt::NoButton)
        return;
    QWidget* const moved = HasWindowBelow() ? m_window : this;
    moved->move(event->globalPos() - m_dragOffset);
}

void ExitMessageBox::mouseReleaseEvent(QMouseEvent* /*event*/) {
    m_dragging = false;
}

void ExitMessageBox::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (HasWindowBelow()) {
        painter.drawPixmap(rect(), m_below);
        painter.fillRect(rect(), colors::kScrim);
    }
    DrawPanel(painter);
}

void ExitMessageBox::DrawPanel(QPainter& painter) const {
    const QRect panel = PanelRect();
    DrawShadow(painter, panel);
    painter.setPen(QPen(colors::kRaisedEdge, 1));
    painter.setBrush(colors::kMessagePanel);
    painter.drawRoundedRect(QRectF(panel).adjusted(.5, .5, -.5, -.5), kPanelRadius - .5, kPanelRadius - .5);

    painter.translate(panel.topLeft());
    painter.setPen(colors::kTextHigh);
    painter.setFont(SizedFont(font(), kTitlePixels, QFont::Medium));
    painter.drawText(kTitle, Qt::AlignLeft | Qt::AlignVCenter, windowTitle());

    QTextLayout layout(LineText(), SizedFont(font(), kTextPixels, QFont::Normal));
    const int textHeight = LayOutText(layout);
    // One line stands beside the icon's middle, more of them begin at its top.
    const int lift = qMax(0, (kIcon.height() - textHeight) / 2);
    painter.setPen(colors::kTextBody);
    layout.draw(&painter, QPointF(kTextLeft, kIcon.top() + lift));

    if (m_warning.IsNull())
        DrawPlainWarning(painter, kIcon);
    else
        m_warning.Draw(painter, kIcon);
}

QString ExitMessageBox::LineText() const {
    QString text = m_text;
    return text.replace(QLatin1Char('\n'), QChar::LineSeparator);
}

}  // namespace kivo
