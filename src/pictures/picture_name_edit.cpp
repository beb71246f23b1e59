#include "pictures/picture_name_edit.h"

#include <QKeyEvent>

#include "pictures/picture_name.h"
#include "widgets/picture_item.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

QString Look() {
    return QStringLiteral(
               "QLineEdit { background: %1; color: %2; border: 1px solid %3; border-radius: 4px;"
               " padding: 0 1px; font-size: %4px; selection-background-color: %5; selection-color: %6; }")
        .arg(colors::kWell.name(), colors::kTextHigh.name(), colors::kAccentBright.name(),
             QString::number(kNamePixels), colors::kAccentDeep.name(), QColor(Qt::white).name());
}

}  // namespace

PictureNameEdit::PictureNameEdit(const QString& name, const QString& fileTitle, QWidget* parent)
    : QLineEdit(parent), m_first((name.isEmpty() ? fileTitle : name).left(kLongestPictureName)) {
    setObjectName(QStringLiteral("pictureName"));
    setAccessibleName(tr("图片名称"));
    setStyleSheet(Look());
    // Its edge says that it has the keyboard; a ring would lie over the picture.
    setProperty("noFocusRing", true);
    setMaxLength(kLongestPictureName);
    setText(m_first);
    setPlaceholderText(fileTitle);
    setAlignment(Qt::AlignHCenter);
    // Qt's own menu is neither translated nor in the window's colours.
    setContextMenuPolicy(Qt::PreventContextMenu);
    // What is dropped here is a picture for the list.
    setAcceptDrops(false);
}

// Keys that mean nothing to a line go no further: the list would pick the row or walk away from it.
void PictureNameEdit::keyPressEvent(QKeyEvent* event) {
    QLineEdit::keyPressEvent(event);
    event->accept();
}

}  // namespace kivo
