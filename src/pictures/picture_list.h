#pragma once

// The pictures that can be put behind the screen's texts: the add entry, the user's own pictures in the order
// in which they were added, and the eleven built-in backgrounds. Fills and keeps the list widget; the file
// dialog, the questions and what a choice does belong to the window. GUI thread.
//
// Rows: 0 is the add entry, 1 .. UserPictureCount() are the user's, the rest are built in.

#include <QHash>
#include <QModelIndex>
#include <QObject>
#include <QPersistentModelIndex>
#include <QSize>
#include <QString>
#include <QStringList>

#include "pictures/thumbnails.h"

class QListWidgetItem;
class QScrollBar;
class QTimer;
class QWidget;

namespace kivo {

class ExitItemDelegate;
class MyListWidget;
class PictureItemDelegate;

class PictureList : public QObject {
    Q_OBJECT

public:
    // The path of a row's picture.
    static constexpr int kPathRole = Qt::UserRole;

    // Gives the view its look (for a size of 390 x 240: four columns, three whole rows), its keys and its
    // delegate. The list is empty until it is loaded. Both have one owner, who may let either go first; no
    // event comes between. What maker holds outlives this object.
    explicit PictureList(MyListWidget* view, QObject* parent = nullptr);
    PictureList(MyListWidget* view, Thumbnails::Maker maker, QObject* parent = nullptr);

    // Clears the list and fills it from the settings; the add entry's path is no picture there. Selects
    // nothing.
    void LoadPictureList();
    // True when the user's pictures are on disk.
    bool SavePictureList();

    // Appends a row for a picture at the end of the list, whatever it is.
    void AddPictureItem(const QString& path);
    // The row of a picture of the user's that goes in before the built-in ones; one that is in the list
    // already stays where it is. Neither stores nor selects. -1 for an empty path, the add entry's, and when
    // the list has become too long to be stored.
    int InsertUserPicture(const QString& path);
    // Takes a user picture out and gives its path. Any other row stays, and the answer is empty.
    QString RemoveUserPicture(int row);

    // Empty where there is no such row.
    QString PathAt(int row) const;
    // The first of the rows 1 and on that has this path; -1 where none has. The add entry is never found.
    int RowOf(const QString& path) const;
    int UserPictureCount() const;
    bool IsUserPicture(int row) const;
    bool IsBuiltIn(int row) const;

    // Selects the row of a layout's picture path or, where that is empty, of its second one. Where no row has
    // it none is selected and none is the current one.
    void SelectPicture(const QString& path, const QString& secondPath);

    // What stands behind the texts after the picture `removed` has been taken out of `row`: `background` as
    // it was, or, if that is the one that has gone, the picture that moved up to the row, else the first
    // built-in one.
    QString BackgroundAfterRemoval(const QString& background, const QString& removed, int row) const;

    // For the file dialog, in Qt's form.
    static QString PictureFileFilter();

    // Emits handleDeleteClick(row) for a click on a delete cross, and for the delete key on any picture: also
    // on a built-in one, which stays.
    ExitItemDelegate* Delegate() const;

    // A scroll bar that does what the view's own would do, for a place outside of it; the view itself shows
    // none. It is hidden while every row is in view. Owned by parent.
    QScrollBar* CreateScrollBar(QWidget* parent) const;

Q_SIGNALS:
    // A row was clicked with the left button beside its delete cross, or chosen with return or space.
    void picked(const QModelIndex& index);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Known {
        QSize pixels;
        int round = 0;
    };

    void SetUpView();
    QListWidgetItem* NewItem(const QString& path);
    QStringList UserPictures() const;

    bool HandleKey(int key);
    void HandleClick(const QModelIndex& index);
    void RememberPicture(int row);
    void LeaveAddEntry();

    void WantIconsInView();
    void ForgetIconsOutside(int from, int to);
    void SetIcons(const QString& path, QSize pixels, const QImage& thumbnail);
    bool IsIconKnown(const QString& path, QSize pixels) const;
    QSize IconPixels() const;

    MyListWidget* const m_view;
    PictureItemDelegate* const m_delegate;
    Thumbnails* const m_thumbnails;
    QTimer* const m_wantIcons;
    // The pictures whose icon is known, with what it was made for. Files may change while the list is not
    // seen, so each time it is shown a new round of asking begins.
    QHash<QString, Known> m_known;
    int m_round = 0;
    QPersistentModelIndex m_lastPicture;
};

}  // namespace kivo
