#pragma once

// A person's hands on the picture list, and what the list, the settings and the preview say afterwards.

#include "../pictures/picture_files.h"
#include "pictures/picture_list.h"
#include "support/person.h"
#include "widgets/exit_item_delegate.h"

namespace kivo::test {

// A picture of two by two red pixels; Qt cannot write this format.
inline const QByteArray kRedGif =
    QByteArray::fromHex("47494638396102000200800000ff0000ffffff2c00000000020002000002028451003b");

inline int StoredCount() {
    return QSettings(ConfigFilePath(), QSettings::IniFormat).value(QStringLiteral("ImageList/Count")).toInt();
}

// The paths as they stand in the file, with nothing of the program in between.
inline QStringList StoredPaths() {
    QSettings settings(ConfigFilePath(), QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("ImageList"));
    QStringList paths;
    const int count = settings.childKeys().size() - 1;
    for (int n = 0; n < count; ++n) {
        paths.append(settings.value(QString::number(n)).toString());
    }
    return paths;
}

inline QString MainText(const char* source) {
    return QCoreApplication::translate("MainWindow", source);
}

inline QListWidget* List(const Desk& desk) {
    return desk.Find<QListWidget>("pictureList");
}
inline QString PathOfRow(const Desk& desk, int row) {
    return List(desk)->item(row)->data(PictureList::kPathRole).toString();
}
inline QString Background(const Desk& desk) {
    return PicturePath(desk.Editor()->Shown());
}
inline QString SelectedPath(const Desk& desk) {
    return PathOfRow(desk, List(desk)->currentRow());
}

inline void AddByHand(Desk& desk, const QString& path) {
    desk.pictureToChoose = path;
    ClickListRow(desk, "pictureList", 0);
}

enum class DeleteBy { Cross, Key, RightPress };

inline void DeleteRow(const Desk& desk, int row, DeleteBy by) {
    QListWidget* list = List(desk);
    const QPoint centre = RowCentre(list, row);
    switch (by) {
        case DeleteBy::Cross:
            ClickAt(list->viewport(),
                    ExitItemDelegate::CrossRect(list->visualItemRect(list->item(row))).center());
            break;
        case DeleteBy::Key:
            ClickAt(list->viewport(), centre);
            desk.WaitForPictures();  // only then is its picture taken
            PressKey(desk, Qt::Key_Delete);
            break;
        case DeleteBy::RightPress:
            ClickAt(list->viewport(), centre, Qt::RightButton);
            break;
    }
    desk.WaitForPictures();
}

// How red, green and blue the preview is on the whole, with the same values each time: live ones come
// meanwhile.
inline QColor PreviewColour(const Desk& desk) {
    desk.WaitForPictures();
    ItemTexts same;
    same.fill(QStringLiteral("0"));
    desk.Editor()->SetLiveTexts(same);
    const QImage preview =
        desk.Editor()->grab().toImage().scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return preview.pixelColor(0, 0);
}
inline bool IsMostlyRed(const QColor& colour) {
    return colour.red() > 2 * colour.green() && colour.red() > 2 * colour.blue();
}

}  // namespace kivo::test
