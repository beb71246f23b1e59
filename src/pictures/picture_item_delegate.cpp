#include "pictures/picture_item_delegate.h"

#include <QAbstractItemView>
#include <QDir>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

#include "pictures/built_in_names.h"
#include "pictures/picture_list.h"
#include "pictures/picture_name_edit.h"
#include "pictures/picture_path.h"
#include "widgets/picture_item.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace {

// Stands for a picture that is on its way, or that cannot be shown: without it such a row would be a hole.
void DrawPlaceholder(QPainter* painter, const QRectF& place) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(window_colors::kCardEdge);
    painter->setBrush(window_colors::kWell);
    painter->drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), kPictureRadius, kPictureRadius);
    painter->restore();
}

// A picture's frame, struck through: what was here cannot be shown.
void DrawMissingSymbol(QPainter* painter, const QRectF& place) {
    constexpr QSizeF kSymbol(26, 20);
    QRectF frame(QPointF(0, 0), kSymbol);
    frame.moveCenter(place.center());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(window_colors::kTextLow, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawRoundedRect(frame, 3, 3);
    painter->drawPolyline(QPolygonF({frame.bottomLeft() + QPointF(4, -4), frame.center() + QPointF(-3, 0),
                                     frame.center() + QPointF(1, 4), frame.center() + QPointF(4, 1),
                                     frame.bottomRight() + QPointF(-4, -4)}));
    painter->setPen(QPen(window_colors::kWarning, 2, Qt::SolidLine, Qt::RoundCap));
    painter->drawLine(frame.bottomLeft() + QPointF(-3, 3), frame.topRight() + QPointF(3, -3));
    painter->restore();
}

QString PathOf(const QModelIndex& index) {
    return index.data(PictureList::kPathRole).toString();
}

QString GivenNameOf(const QModelIndex& index) {
    return index.data(PictureList::kNameRole).toString();
}

PictureFailure FailureOf(const QModelIndex& index) {
    return static_cast<PictureFailure>(index.data(PictureList::kFailureRole).toInt());
}

// A name may look like markup, which a tool tip would follow.
QString AsPlainText(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

}  // namespace

QSize PictureItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const {
    return PictureItemSize(option.decorationSize, true);
}

void PictureItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    if (index.data(Qt::DecorationRole).isNull()) {
        DrawPlaceholder(painter, PicturePlace(option.rect, option.decorationSize));
    }
    if (FailureOf(index) != PictureFailure::None) {
        DrawMissingSymbol(painter, PicturePlace(option.rect, option.decorationSize));
    }
    ExitItemDelegate::paint(painter, option, index);
}

bool PictureItemDelegate::CanName(const QModelIndex& index) {
    return index.isValid() && CanDelete(index.row(), index.model()->rowCount()) && !IsResource(PathOf(index));
}

QString PictureItemDelegate::PaintedName(const QModelIndex& index) const {
    const QString path = PathOf(index);
    if (IsResource(path)) {
        const QString name = BuiltInPictureName(path);
        return name.isEmpty() ? ExitItemDelegate::PaintedName(index) : name;
    }
    const QString name = GivenNameOf(index);
    return name.isEmpty() ? PictureFileTitle(path) : name;
}

bool PictureItemDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                    const QStyleOptionViewItem& option, const QModelIndex& index) {
    const QString path = PathOf(index);
    if (event->type() != QEvent::ToolTip || path.isEmpty() || IsResource(path)) {
        return ExitItemDelegate::helpEvent(event, view, option, index);
    }
    QStringList lines{GivenNameOf(index), PictureList::FailureText(FailureOf(index)),
                      QDir::toNativeSeparators(path)};
    lines.removeAll(QString());
    QToolTip::showText(event->globalPos(), AsPlainText(lines.join(QLatin1Char('\n'))), view);
    return true;
}

QWidget* PictureItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                           const QModelIndex& index) const {
    return CanName(index) ? new PictureNameEdit(GivenNameOf(index), PictureFileTitle(PathOf(index)), parent)
                          : nullptr;
}

void PictureItemDelegate::setEditorData(QWidget* /*editor*/, const QModelIndex& /*index*/) const {}

void PictureItemDelegate::setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                                       const QModelIndex& index) const {
    const auto* const edit = qobject_cast<PictureNameEdit*>(editor);
    if (edit != nullptr && edit->IsChanged()) {
        Q_EMIT nameTyped(index.row(), edit->text());
    }
}

void PictureItemDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                               const QModelIndex& /*index*/) const {
    // Inside the frame of a selected item.
    constexpr QMargins kFrame(3, 0, 3, 2);
    editor->setGeometry(NamePlace(option.rect, option.decorationSize).marginsRemoved(kFrame));
}

bool PictureItemDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                      const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (ExitItemDelegate::editorEvent(event, model, option, index)) {
        return true;
    }
    if (event->type() != QEvent::MouseButtonDblClick || !CanName(index)) {
        return false;
    }
    const auto* const mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() != Qt::LeftButton ||
        !NamePlace(option.rect, option.decorationSize).contains(mouse->pos())) {
        return false;
    }
    Q_EMIT nameClickedTwice(index.row());
    return true;
}

bool PictureItemDelegate::eventFilter(QObject* watched, QEvent* event) {
    // The tab key leaves the line for the next widget, as it leaves the list. Qt's own way would select the
    // next row.
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
            return false;
        }
    }
    return ExitItemDelegate::eventFilter(watched, event);
}

}  // namespace kivo
