// What the pictures in the list are called: by their users, and aloud.

#include <QAccessible>

#include "pictures/built_in_names.h"
#include "pictures/picture_item_delegate.h"
#include "pictures/picture_list.h"
#include "pictures/picture_name.h"
#include "pictures/picture_path.h"
#include "widgets/my_list_widget.h"

namespace kivo {

namespace {

QString SpokenName(const QListWidgetItem& item) {
    const QString path = item.data(PictureList::kPathRole).toString();
    if (IsResource(path)) {
        return BuiltInPictureName(path);
    }
    const QString given = item.data(PictureList::kNameRole).toString();
    const QString name = given.isEmpty() ? PictureFileName(path) : given;
    const auto failure = static_cast<PictureFailure>(item.data(PictureList::kFailureRole).toInt());
    return failure == PictureFailure::None ? name
                                           : name + QStringLiteral(", ") + PictureList::FailureText(failure);
}

}  // namespace

QString PictureList::NameAt(int row) const {
    const QListWidgetItem* item = m_view->item(row);
    return item != nullptr ? item->data(kNameRole).toString() : QString();
}

PictureNames PictureList::UserNames() const {
    PictureNames names;
    for (int row = 0; row < m_view->count(); ++row) {
        const QString name = NameAt(row);
        if (!name.isEmpty()) {
            names.insert(CleanPicturePath(PathAt(row)), name);
        }
    }
    return names;
}

void PictureList::SetName(QListWidgetItem& item, const QString& name) {
    item.setData(kNameRole, name.isEmpty() ? QVariant() : QVariant(name));
    TellName(item);
}

void PictureList::TellName(QListWidgetItem& item) {
    const QString name = SpokenName(item);
    if (!name.isEmpty()) {
        item.setData(Qt::AccessibleTextRole, name);
    }
}

void PictureList::EditName(int row) {
    QListWidgetItem* const item = m_view->item(row);
    if (!PictureItemDelegate::CanName(m_view->model()->index(row, 0))) {
        return;
    }
    m_view->scrollToItem(item);
    // Editable no longer than it takes to open the line: assistive programs write into a row that is, and
    // over its text, which has a fixed meaning.
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    m_view->editItem(item);
    item->setFlags(item->flags() & ~Qt::ItemIsEditable);
}

void PictureList::TakeName(int row, const QString& text) {
    const QString path = PathAt(row);
    QString name = CleanPictureName(text);
    // The file's name is no name of one's own, typed or not.
    if (name == PictureFileTitle(path)) {
        name.clear();
    }
    if (name == NameAt(row)) {
        return;
    }
    if (!name.isEmpty()) {
        PictureNames names = UserNames();
        names.insert(CleanPicturePath(path), name);
        if (!CanNamesBeStored(names)) {
            Q_EMIT nameRefused();
            return;
        }
    }
    // A list written by hand may have the picture twice.
    for (int same = 0; same < m_view->count(); ++same) {
        if (IsSamePicture(PathAt(same), path)) {
            SetName(*m_view->item(same), name);
            QAccessibleEvent isRenamed(m_view, QAccessible::NameChanged);
            isRenamed.setChild(same);
            QAccessible::updateAccessibility(&isRenamed);
        }
    }
    Q_EMIT renamed();
}

}  // namespace kivo
