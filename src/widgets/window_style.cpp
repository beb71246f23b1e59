#include "widgets/window_style.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QEvent>
#include <QStyle>
#include <QToolTip>
#include <utility>

#include "widgets/kit_accessibility.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

// By it the style sheets know that a pop-up has square corners.
constexpr char kSquare[] = "square";
const QString kRounder = QStringLiteral("cornerRounder");

QString ScrollBarStyle() {
    return QStringLiteral(
               "QScrollBar { background: %1; border: none; border-radius: 3px; margin: 0; }"
               "QScrollBar:vertical { width: 6px; }"
               "QScrollBar:horizontal { height: 6px; }"
               "QScrollBar::handle { background: %2; border-radius: 3px; }"
               "QScrollBar::handle:hover, QScrollBar::handle:pressed { background: %3; }"
               "QScrollBar::handle:vertical { min-height: 24px; }"
               "QScrollBar::handle:horizontal { min-width: 24px; }"
               "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; border: none; }"
               "QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }")
        .arg(colors::kTrack.name(), colors::kThumb.name(), colors::kThumbHover.name());
}

// A tool tip keeps its left padding and edge free a second time, and on all four sides
// (PM_ToolTipLabelFrameWidth of the style sheets' style): one line of text is 28 pixels high with this.
QString ToolTipStyle() {
    return QStringLiteral(
               "QToolTip { background: %1; color: %2; border: 1px solid %3; border-radius: 6px;"
               " padding: 1px 2px 0 2px; font-size: 12px; }"
               "QToolTip[square=\"true\"] { border-radius: 0; }"
               // A message of the tray icon is drawn on a light ground of Qt's own where the desktop has
               // none.
               "QBalloonTip QLabel { color: #0C1116; }")
        .arg(colors::kToolTip.name(), colors::kTextHigh.name(), colors::kToolTipEdge.name());
}

QString MenuStyle() {
    return QStringLiteral(
               "QMenu { background: %1; color: %2; border: 1px solid %3; border-radius: 8px; padding: 4px;"
               " font-size: 13px; font-family: \"%7\"; }"  // Windows has a font of its own for menus
               "QMenu[square=\"true\"] { border-radius: 0; }"
               "QMenu::item { padding: 6px 20px 6px 14px; border-radius: 6px; }"
               "QMenu::item:selected { background: %4; color: %5; }"
               "QMenu::item:disabled { color: %6; }"
               "QMenu::separator { height: 1px; background: %3; margin: 4px 8px; }")
        .arg(colors::kRaised.name(), colors::kTextMid.name(), colors::kRaisedEdge.name(),
             colors::kListChosen.name(), colors::kTextHigh.name(), colors::kButtonTextOff.name(),
             QApplication::font().family());
}

// Class names of this program's namespace are written with dashes in a style sheet.
QString ListStyle() {
    return QStringLiteral(
        "kivo--MyListWidget { background: transparent; border: none; outline: none; }"
        "kivo--NimbPushButton, kivo--PressLabel { outline: none; }");
}

// Pop-ups are windows of their own: what lies outside of their round corners has to be let through. Where
// nothing can be, their corners are square.
class CornerRounder : public QObject {
public:
    CornerRounder(QObject* parent, std::function<bool()> blends)
        : QObject(parent), m_blends(std::move(blends)) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Polish &&
            (watched->inherits("QTipLabel") || watched->inherits("QMenu"))) {
            static_cast<QWidget*>(watched)->setAttribute(Qt::WA_TranslucentBackground);
            watched->setProperty(kSquare, !m_blends());
        } else if (event->type() == QEvent::Show && watched->inherits("QComboBoxPrivateContainer")) {
            // Its list was dressed before it came into this window.
            auto* const list = watched->findChild<QAbstractItemView*>();
            list->setProperty(kSquare, !m_blends());
            list->style()->unpolish(list);
            list->style()->polish(list);
        }
        return false;
    }

private:
    const std::function<bool()> m_blends;
};

}  // namespace

QString WindowStyleSheet() {
    return ScrollBarStyle() + ToolTipStyle() + MenuStyle() + ListStyle();
}

QPalette WindowPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, colors::kCard);
    palette.setColor(QPalette::WindowText, colors::kTextHigh);
    palette.setColor(QPalette::Base, colors::kWell);
    palette.setColor(QPalette::AlternateBase, colors::kHoverFill);
    palette.setColor(QPalette::Text, colors::kTextHigh);
    palette.setColor(QPalette::PlaceholderText, colors::kTextLow);
    palette.setColor(QPalette::Button, colors::kRaised);
    palette.setColor(QPalette::ButtonText, colors::kTextHigh);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Light, colors::kThumbHover);
    palette.setColor(QPalette::Midlight, colors::kThumb);
    palette.setColor(QPalette::Mid, colors::kRaisedEdge);
    palette.setColor(QPalette::Dark, colors::kWell);
    palette.setColor(QPalette::Shadow, Qt::black);
    palette.setColor(QPalette::Highlight, colors::kAccentDeep);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, colors::kAccentBright);
    palette.setColor(QPalette::LinkVisited, colors::kAccentBright);
    palette.setColor(QPalette::ToolTipBase, colors::kToolTip);
    palette.setColor(QPalette::ToolTipText, colors::kTextHigh);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, colors::kButtonTextOff);
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colors::kSelectedFill);
    return palette;
}

void ApplyWindowStyle(QApplication& application, std::function<bool()> blends) {
    InstallKitAccessibility();
    // The style of Windows draws fields to type in white, whatever the palette says.
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(WindowPalette());
    application.setStyleSheet(WindowStyleSheet());
    QToolTip::setPalette(WindowPalette());
    delete application.findChild<QObject*>(kRounder, Qt::FindDirectChildrenOnly);
    auto* const rounder = new CornerRounder(&application, std::move(blends));
    rounder->setObjectName(kRounder);
    application.installEventFilter(rounder);
}

}  // namespace kivo
