#include "widgets/exit_message_box.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
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
constexpr int kWidestPanel = 600;
constexpr int kWideningStep = 20;
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

QFont SizedFont(const QFont& base, int pixels, QFont::Weight weight) {
    QFont font = base;
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

// Breaks the text into lines of that width and gives the height of all of them.
int LayOutText(QTextLayout& layout, int width) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    int lines = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const qreal above = (kLineHeight - line.height()) / 2;
        line.setPosition(QPointF(0, lines * kLineHeight + above));
        ++lines;
    }
    layout.endLayout();
    return lines * kLineHeight;
}

int TextWidth(int panelWidth) {
    return panelWidth - kTextLeft - kMargin;
}

// The text without what does not fit so many lines; the last one then ends in dots.
QString ShortenedText(const QString& text, const QFont& font, int width, int mostLines) {
    QTextLayout layout(text, font);
    LayOutText(layout, width);
    if (layout.lineCount() <= mostLines) {
        return text;
    }
    const int lastLine = layout.lineAt(mostLines - 1).textStart();
    QString rest = text.mid(lastLine);
    rest.replace(QChar::LineSeparator, QLatin1Char(' '));
    return text.left(lastLine) + QFontMetrics(font).elidedText(rest, Qt::ElideRight, width);
}

void DrawShadow(QPainter& painter, const QRectF& panel) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 7));
    for (int around = kShadow; around > 0; --around) {
        const qreal radius = kPanelRadius + around;
        painter.drawRoundedRect(panel.adjusted(-around, -around, around, around), radius, radius);
    }
}

bool Run(ExitMessageBox* shown) {
    // On the heap and watched: the window may go while the box waits, and takes its children along.
    const QPointer<ExitMessageBox> box = shown;
    const bool accepted = box->exec() == QDialog::Accepted;
    const bool isThere = !box.isNull();
    delete box;
    return isThere && accepted;
}

// Of the desktop. Without any monitor nobody sees where the box stands.
QRect FreeRoom() {
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->availableGeometry() : QRect(QPoint(0, 0), 2 * kPanel);
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
    if (m_window != nullptr) {
        m_window->installEventFilter(this);
    }
    m_overWindow = IsWindowSeen();
    Place();
}

ExitMessageBox::ExitMessageBox(const Question& question, QWidget* window)
    : ExitMessageBox(question.text, window) {
    setWindowTitle(question.title);
    setAccessibleName(question.title);
    m_okButton->setText(question.yes);
    if (question.isDeletion) {
        m_okButton->SetLook(NimbPushButton::Look::Delete);
    }
    PlaceButtons();
}

void ExitMessageBox::SetOnlyOk(bool onlyOk) {
    m_cancelButton->setVisible(!onlyOk);
    PlaceButtons();
}

bool ExitMessageBox::Ask(QWidget* window, const Question& question) {
    return Run(new ExitMessageBox(question, window));
}

void ExitMessageBox::Tell(QWidget* window, const QString& text) {
    auto* const box = new ExitMessageBox(text, window);
    box->SetOnlyOk(true);
    Run(box);
}

bool ExitMessageBox::IsWindowSeen() const {
    return m_window != nullptr && m_window->isVisible() && !m_window->isMinimized();
}

// Once the window has been seen the box belongs to it, also while it is away again.
void ExitMessageBox::LookBelow() {
    if (!IsWindowSeen()) {
        return;
    }
    m_overWindow = true;
    // A picture of the window under the veil, so that nothing depends on a desktop that can blend windows.
    m_below = m_window->grab();
}

void ExitMessageBox::Place() {
    LayOutPanel();
    if (m_overWindow) {
        clearMask();
        if (IsWindowSeen()) {
            setGeometry(m_window->geometry());
        }
    } else {
        QRect place(QPoint(0, 0), m_panelSize);
        place.moveCenter(FreeRoom().center());
        setGeometry(place);
        // A shadow would be a black frame where the desktop does not blend windows.
        QPainterPath panel;
        panel.addRoundedRect(QRectF(QPointF(0, 0), QSizeF(m_panelSize)), kPanelRadius, kPanelRadius);
        setMask(QRegion(panel.toFillPolygon().toPolygon()));
    }
    PlaceButtons();
}

// As wide as usual unless the text would make it a tower, and no larger than the place it stands in.
void ExitMessageBox::LayOutPanel() {
    QString text = m_text;
    text.replace(QLatin1Char('\n'), QChar::LineSeparator);
    const QFont textFont = SizedFont(font(), kTextPixels, QFont::Normal);
    const QSize room =
        (m_overWindow ? m_window->size() : FreeRoom().size()) - QSize(2 * kShadow, 2 * kShadow);
    const int around = kIcon.top() + kMargin + kButton.height() + kButtonFoot;
    const int widest = qMax(kPanel.width(), qMin(kWidestPanel, room.width()));
    int width = kPanel.width();
    int textHeight = 0;
    for (;; width = qMin(width + kWideningStep, widest)) {
        QTextLayout layout(text, textFont);
        textHeight = LayOutText(layout, TextWidth(width));
        if (width == widest || around + textHeight <= width * 2 / 3) {
            break;
        }
    }
    const int mostLines = qMax(1, (room.height() - around) / kLineHeight);
    m_shownText = ShortenedText(text, textFont, TextWidth(width), mostLines);
    textHeight = qMin(textHeight, mostLines * kLineHeight);
    m_panelSize = QSize(width, qMax(kPanel.height(), around + textHeight));
}

QRect ExitMessageBox::PanelRect() const {
    return {QPoint((width() - m_panelSize.width()) / 2, (height() - m_panelSize.height()) / 2), m_panelSize};
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
    if (watched == m_window && IsWindowSeen()) {
        switch (event->type()) {
            case QEvent::Show:
            case QEvent::Resize:
            case QEvent::WindowStateChange:
                LookBelow();
                Place();
                raise();
                update();
                break;
            case QEvent::Move:
                setGeometry(m_window->geometry());
                break;
            default:
                break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void ExitMessageBox::showEvent(QShowEvent* event) {
    LookBelow();
    Place();
    QDialog::showEvent(event);
}

void ExitMessageBox::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    PlaceButtons();
}

// The box covers the window, so the window is dragged by it.
QWidget& ExitMessageBox::DraggedWidget() {
    return IsWindowSeen() ? *m_window : *this;
}

void ExitMessageBox::mousePressEvent(QMouseEvent* event) {
    m_dragging = event->button() == Qt::LeftButton;
    m_dragOffset = event->globalPos() - DraggedWidget().pos();
}

void ExitMessageBox::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dragging || event->buttons() == Qt::NoButton) {
        return;
    }
    DraggedWidget().move(event->globalPos() - m_dragOffset);
}

void ExitMessageBox::mouseReleaseEvent(QMouseEvent* /*event*/) {
    m_dragging = false;
}

void ExitMessageBox::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_overWindow) {
        painter.drawPixmap(rect(), m_below);
        painter.fillRect(rect(), colors::kScrim);
        DrawShadow(painter, PanelRect());
    }
    DrawPanel(painter);
}

void ExitMessageBox::DrawPanel(QPainter& painter) const {
    const QRect panel = PanelRect();
    painter.setPen(QPen(colors::kRaisedEdge, 1));
    painter.setBrush(colors::kMessagePanel);
    painter.drawRoundedRect(QRectF(panel).adjusted(.5, .5, -.5, -.5), kPanelRadius - .5, kPanelRadius - .5);

    painter.translate(panel.topLeft());
    painter.setPen(colors::kTextHigh);
    painter.setFont(SizedFont(font(), kTitlePixels, QFont::Medium));
    painter.drawText(kTitle.adjusted(0, 0, panel.width() - kPanel.width(), 0),
                     Qt::AlignLeft | Qt::AlignVCenter, windowTitle());

    QTextLayout layout(m_shownText, SizedFont(font(), kTextPixels, QFont::Normal));
    const int textHeight = LayOutText(layout, TextWidth(panel.width()));
    // One line stands beside the icon's middle, more of them begin at its top.
    const int lift = qMax(0, (kIcon.height() - textHeight) / 2);
    painter.setPen(colors::kTextBody);
    layout.draw(&painter, QPointF(kTextLeft, kIcon.top() + lift));

    m_warning.Draw(painter, kIcon);
}

}  // namespace kivo
