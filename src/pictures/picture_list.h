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

#include "pictures/picture.h"
#include "pictures/stored_pictures.h"

class QIcon;
class QListWidgetItem;
class QScrollBar;
class QTimer;
class QWidget;

namespace kivo {

class ExitItemDelegate;
class MyListWidget;
class PictureItemDelegate;
class PictureSource;

class PictureList : public QObject {
    Q_OBJECT

public:
    // The path of a row's picture.
    static constexpr int kPathRole = Qt::UserRole;
    // Why it cannot be shown, a PictureFailure; not set where it can or where that is not known yet.
    static constexpr int kFailureRole = Qt::UserRole + 1;
    // What its user calls a picture of their own; not set where they have not named it.
    static constexpr int kNameRole = Qt::UserRole + 2;

    // Gives the view its look (for a size of 390 x 240: four columns, three whole rows), its keys and its
    // delegate. The list is empty until it is loaded. Both have one owner, who may let either go first; no
    // event comes between. The source outlives this object.
    PictureList(MyListWidget* view, PictureSource& source, QObject* parent = nullptr);

    // Clears the list and fills it from the settings; the add entry's path is no picture there. Selects
    // nothing.
    void LoadPictureList();
    // True when the user's pictures and their names are on disk.
    bool SavePictureList();

    // Appends a row for a picture at the end of the list, whatever it is.
    void AddPictureItem(const QString& path);
    // Puts pictures of the user's in before the built-in ones, in this order; one that is in the list already
    // stays where it is. Neither stores nor selects.
    struct Inserted {
        int lastRow = -1;  // of the last one of them that is in the list now; -1: none is
        bool areAll =
            true;  // not where the list would become too long to be stored, nor for no picture's path
    };
    Inserted InsertUserPictures(const QStringList& paths);
    // Takes a user picture out and gives its path. Any other row stays, and the answer is empty.
    QString RemoveUserPicture(int row);

    // Empty where there is no such row.
    QString PathAt(int row) const;
    // The first of the rows 1 and on that has this path; -1 where none has. The add entry is never found.
    int RowOf(const QString& path) const;
    // What its user calls the picture; empty where they have not named it.
    QString NameAt(int row) const;
    int UserPictureCount() const;
    bool IsUserPicture(int row) const;
    bool IsBuiltIn(int row) const;

    // Selects the row of a picture. Where no row has it none is selected and none is the current one.
    void SelectPicture(const QString& path);

    // What stands behind the texts after the picture `removed` has been taken out of `row`: `background` as
    // it was, or, if that is the one that has gone, the picture that moved up to the row, else the first
    // built-in one.
    QString BackgroundAfterRemoval(const QString& background, const QString& removed, int row) const;

    // Opens a line over the name of a picture of the user's: return or the focus that goes elsewhere takes
    // what was typed, escape leaves it. Nothing typed gives the file's name back. Any other row stays as it
    // is.
    void EditName(int row);

    // Nobody looks at the list for the time being: lets go of every icon that is not in view.
    void LetGoOfIcons();

    // For the file dialog, in Qt's form.
    static QString PictureFileFilter();

    // In words, for people.
    static QString FailureText(PictureFailure failure);

    // Emits handleDeleteClick(row) for a click on a delete cross, and for the delete key on any picture: also
    // on a built-in one, which stays.
    ExitItemDelegate* Delegate() const;

    // A scroll bar that does what the view's own would do, for a place outside of it; the view itself shows
    // none. It is hidden while every row is in view. Owned by parent.
    QScrollBar* CreateScrollBar(QWidget* parent) const;

Q_SIGNALS:
    // A row was clicked with the left button beside its delete cross, or chosen with return or space.
    void picked(const QModelIndex& index);
    // A picture of the user's has another name, which is not stored yet.
    void renamed();
    // A name was not taken: with it the settings would be too large to be read again.
    void nameRefused();
    // Picture files were dropped onto the list, from a file manager.
    void dropped(const QStringList& paths);

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

    PictureNames UserNames() const;
    static void SetName(QListWidgetItem& item, const QString& name);
    static void TellName(QListWidgetItem& item);
    void TakeName(int row, const QString& text);

    bool HandleKey(int key);
    bool HandleMenuKey();
    void HandleClick(const QModelIndex& index);
    void RememberPicture(int row);
    void LeaveAddEntry();

    struct Rows {
        int from = 0;
        int to = 0;  // the one behind the last
    };
    Rows RowsInView() const;
    void WantIconsInView();
    void ForgetIconsOutside(Rows rows);
    void SetIcons(const QString& path, QSize pixels, const Picture& thumbnail);
    void NoteAnswer(const QString& path);
    static void ShowThumbnail(QListWidgetItem& item, const QIcon& icon, PictureFailure failure);
    bool HandleDrag(QEvent* event);
    bool IsIconKnown(const QString& path, QSize pixels) const;
    QSize IconPixels() const;

    MyListWidget* const m_view;
    PictureItemDelegate* const m_delegate;
    PictureSource& m_source;
    QTimer* const m_wantIcons;
    // The pictures whose icon is known, with what it was made for. Files may change while the list is not
    // seen, so each time it is shown a new round of asking begins.
    QHash<QString, Known> m_known;
    int m_round = 0;
    QPersistentModelIndex m_lastPicture;
};

}  // namespace kivo
