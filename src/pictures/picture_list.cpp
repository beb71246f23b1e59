#include "pictures/picture_list.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDropEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMenu>
#include <QPersistentModelIndex>
#include <QScrollBar>
#include <QSet>
#include <QTimer>

#include "compose/theme_catalogue.h"
#include "pictures/built_in_names.h"
#include "pictures/picture_files.h"
#include "pictures/picture_item_delegate.h"
#include "pictures/picture_path.h"
#include "pictures/picture_source.h"
#include "pictures/stored_pictures.h"
#include "pictures/thumbnail_picture.h"
#include "widgets/my_list_widget.h"

namespace kivo {

namespace {

constexpr int kAddRow = 0;

// Four columns of them in 390, three whole rows in 240.
constexpr QSize kCellSize{97, 80};

QString AddEntryPath() {
    return QStringLiteral("://skins/add.png");
}

bool IsBuiltInPath(const QString& path) {
    static const QStringList builtIn = BuiltInBackgrounds();
    return IsResource(path) && builtIn.contains(path);
}

// Deliberate, fixed: the built-in pictures share one text. Their own names are painted and read aloud.
QString RowText(const QString& path) {
    if (path == AddEntryPath()) {
        return PictureList::tr("选择图片文件夹");
    }
    return IsBuiltInPath(path) ? PictureList::tr("默认图片") : QString();
}

}  // namespace

PictureList::PictureList(MyListWidget* view, PictureSource& source, QObject* parent)
    : QObject(parent),
      m_view(view),
      m_delegate(new PictureItemDelegate(this)),
      m_source(source),
      m_wantIcons(new QTimer(this)) {
    SetUpView();
    // What is seen tells what is wanted: every paint asks, once the window has been drawn.
    m_wantIcons->setSingleShot(true);
    connect(m_wantIcons, &QTimer::timeout, this, &PictureList::WantIconsInView);
    connect(&m_source, &PictureSource::thumbnailReady, this, &PictureList::SetIcons);
    connect(&m_source, &PictureSource::answered, this, &PictureList::NoteAnswer);
    connect(m_view, &QListWidget::currentRowChanged, this, &PictureList::RememberPicture);
    connect(m_view, &QListWidget::clicked, this, &PictureList::HandleClick);
    connect(m_view, &MyListWidget::rightClick, this, &PictureList::LeaveAddEntry);
    connect(m_delegate, &PictureItemDelegate::nameClickedTwice, this, &PictureList::EditName);
    connect(m_delegate, &PictureItemDelegate::nameTyped, this, &PictureList::TakeName);
    m_view->installEventFilter(this);
    m_view->viewport()->installEventFilter(this);
}

void PictureList::SetUpView() {
    m_view->ShowAsGrid(kThumbnailSize, kCellSize);
    // Otherwise a thousand rows are measured one by one.
    m_view->setUniformItemSizes(true);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->verticalScrollBar()->setSingleStep(kCellSize.height());
    m_view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_view->setAccessibleName(tr("背景图片"));
    m_view->setItemDelegate(m_delegate);
    // Files that were named by a camera differ at their end.
    m_view->setTextElideMode(Qt::ElideMiddle);
    m_view->viewport()->setAcceptDrops(true);
}

ExitItemDelegate* PictureList::Delegate() const {
    return m_delegate;
}

QScrollBar* PictureList::CreateScrollBar(QWidget* parent) const {
    const QScrollBar* own = m_view->verticalScrollBar();
    auto* bar = new QScrollBar(Qt::Vertical, parent);
    bar->setFocusPolicy(Qt::NoFocus);
    bar->setAccessibleName(m_view->accessibleName());
    const auto follow = [own, bar] {
        bar->setPageStep(own->pageStep());
        bar->setSingleStep(own->singleStep());
        bar->setRange(own->minimum(), own->maximum());
        bar->setValue(own->value());
        bar->setVisible(own->maximum() > own->minimum());
    };
    connect(own, &QScrollBar::rangeChanged, bar, follow);
    connect(own, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    connect(bar, &QScrollBar::valueChanged, own, &QScrollBar::setValue);
    follow();
    return bar;
}

void PictureList::LoadPictureList() {
    m_view->clear();
    m_known.clear();
    AddPictureItem(AddEntryPath());
    const QStringList stored = ReadStoredPictures();
    const PictureNames names = ReadPictureNames(stored);
    for (const QString& path : stored) {
        // Settings written by hand: it would be a picture that cannot be told from the add entry.
        if (!IsSamePicture(path, AddEntryPath())) {
            QListWidgetItem* const item = NewItem(path);
            SetName(*item, names.value(CleanPicturePath(path)));
            m_view->addItem(item);
        }
    }
    const QStringList builtIn = BuiltInBackgrounds();
    for (const QString& path : builtIn) {
        AddPictureItem(path);
    }
}

QStringList PictureList::UserPictures() const {
    QStringList paths;
    for (int row = kAddRow + 1; IsUserPicture(row); ++row) {
        paths.append(PathAt(row));
    }
    return paths;
}

bool PictureList::SavePictureList() {
    return WriteStoredPictures(UserPictures(), UserNames());
}

QListWidgetItem* PictureList::NewItem(const QString& path) {
    auto* item = new QListWidgetItem(RowText(path));
    item->setData(kPathRole, path);
    TellName(*item);
    // A row that is new has no icon yet, whatever another one of this picture had.
    m_known.remove(path);
    return item;
}

void PictureList::AddPictureItem(const QString& path) {
    m_view->addItem(NewItem(path));
}

PictureList::Inserted PictureList::InsertUserPictures(const QStringList& paths) {
    QSet<QString> present;
    for (int row = kAddRow + 1; row < m_view->count(); ++row) {
        present.insert(CleanPicturePath(PathAt(row)));
    }
    QStringList stored = UserPictures();
    Inserted inserted;
    QString last;
    for (const QString& path : paths) {
        const QString clean = CleanPicturePath(path);
        if (path.isEmpty() || IsSamePicture(path, AddEntryPath())) {
            inserted.areAll = false;
            continue;
        }
        if (!present.contains(clean)) {
            stored.append(path);
            if (!CanBeStored(stored)) {
                inserted.areAll = false;
                break;
            }
            m_view->insertItem(kAddRow + 1 + UserPictureCount(), NewItem(path));
            present.insert(clean);
        }
        last = path;
    }
    inserted.lastRow = last.isEmpty() ? -1 : RowOf(last);
    return inserted;
}

QString PictureList::RemoveUserPicture(int row) {
    if (!IsUserPicture(row)) {
        return QString();
    }
    QString path = PathAt(row);
    delete m_view->takeItem(row);
    return path;
}

QString PictureList::PathAt(int row) const {
    const QListWidgetItem* item = m_view->item(row);
    return item != nullptr ? item->data(kPathRole).toString() : QString();
}

int PictureList::RowOf(const QString& path) const {
    for (int row = kAddRow + 1; row < m_view->count(); ++row) {
        if (IsSamePicture(PathAt(row), path)) {
            return row;
        }
    }
    return -1;
}

int PictureList::UserPictureCount() const {
    return qMax(0, m_view->count() - ExitItemDelegate::kFixedRows);
}

bool PictureList::IsUserPicture(int row) const {
    return ExitItemDelegate::CanDelete(row, m_view->count());
}

bool PictureList::IsBuiltIn(int row) const {
    return row > kAddRow && row < m_view->count() && !IsUserPicture(row);
}

void PictureList::SelectPicture(const QString& path) {
    // Deliberate: where no row has it none is selected. A frame round another picture would say that this one
    // is shown.
    const int row = RowOf(path);
    if (row < 0) {
        m_lastPicture = QPersistentModelIndex();
    }
    m_view->setCurrentRow(row);
}

QString PictureList::BackgroundAfterRemoval(const QString& background, const QString& removed,
                                            int row) const {
    // A list written by hand may have had it twice.
    if (!IsSamePicture(background, removed) || RowOf(background) >= 0) {
        return background;
    }
    QString next = row > kAddRow ? PathAt(row) : QString();
    return next.isEmpty() ? BuiltInBackgrounds().constFirst() : next;
}

QString PictureList::PictureFileFilter() {
    const QStringList suffixes = PictureSuffixes();
    return QStringLiteral("*.") + suffixes.join(QStringLiteral(" *.")) + QStringLiteral(";;") +
           tr("All Files(*)");
}

QString PictureList::FailureText(PictureFailure failure) {
    switch (failure) {
        case PictureFailure::Missing:
            return tr("找不到此图片");
        case PictureFailure::NoAnswer:
            return tr("此图片没有响应");
        case PictureFailure::Unreadable:
            return tr("无法打开此图片");
        default:
            return QString();
    }
}

// The selection has to tell which picture is shown, and the add entry is none. With the keys it can be stood
// on, or nobody could open it with them; it is left with the focus.
void PictureList::LeaveAddEntry() {
    if (m_view->currentRow() != kAddRow) {
        return;
    }
    // The list stays where it is scrolled to.
    const bool scrolls = m_view->hasAutoScroll();
    m_view->setAutoScroll(false);
    m_view->setCurrentRow(m_lastPicture.isValid() ? m_lastPicture.row() : -1);
    m_view->setAutoScroll(scrolls);
}

void PictureList::RememberPicture(int row) {
    if (row > kAddRow) {
        m_lastPicture = m_view->model()->index(row, 0);
    }
}

void PictureList::HandleClick(const QModelIndex& index) {
    // The view reports a click on the delete cross, too.
    if (!m_delegate->IsClickOnCross()) {
        Q_EMIT picked(index);
    }
    LeaveAddEntry();
}

bool PictureList::HandleKey(int key) {
    const QModelIndex current = m_view->currentIndex();
    switch (key) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            Q_EMIT picked(current);
            return true;
        case Qt::Key_F2:
            EditName(current.row());
            return true;
        // A built-in picture has no cross, but whoever wants to delete it is told why it stays.
        case Qt::Key_Delete:
            if (current.row() > kAddRow) {
                Q_EMIT m_delegate->handleDeleteClick(current.row());
            }
            return true;
        default:
            return false;
    }
}

bool PictureList::HandleMenuKey() {
    const QPersistentModelIndex current = m_view->currentIndex();
    if (!PictureItemDelegate::CanName(current)) {
        return HandleKey(Qt::Key_Delete);
    }
    auto* const menu = new QMenu(m_view);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("pictureMenu"));
    connect(menu->addAction(tr("重命名")), &QAction::triggered, this,
            [this, current] { EditName(current.row()); });
    connect(menu->addAction(tr("删除")), &QAction::triggered, this,
            [this, current] { Q_EMIT m_delegate->handleDeleteClick(current.row()); });
    menu->popup(m_view->viewport()->mapToGlobal(m_view->visualRect(current).center()));
    return true;
}

bool PictureList::eventFilter(QObject* watched, QEvent* event) {
    // A list that has the focus loses it when it is destroyed, and is none any more by then.
    if (watched == m_view && qobject_cast<MyListWidget*>(watched) == nullptr) {
        return false;
    }
    switch (event->type()) {
        case QEvent::Paint:
            if (!m_wantIcons->isActive()) {
                m_wantIcons->start(0);
            }
            break;
        case QEvent::Show:
            ++m_round;
            break;
        case QEvent::FocusOut:
            LeaveAddEntry();
            break;
        case QEvent::MouseButtonRelease:
            // A press that was let go elsewhere is no click, but has made its row the current one.
            if (watched == m_view->viewport()) {
                QTimer::singleShot(0, this, &PictureList::LeaveAddEntry);
            }
            break;
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return watched == m_view->viewport() && HandleDrag(event);
        case QEvent::ContextMenu:
            // A right press of the mouse tells by itself.
            return watched == m_view &&
                   static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Keyboard &&
                   HandleMenuKey();
        case QEvent::KeyPress:
            if (watched == m_view) {
                return HandleKey(static_cast<QKeyEvent*>(event)->key());
            }
            break;
        default:
            break;
    }
    return QObject::eventFilter(watched, event);
}

bool PictureList::HandleDrag(QEvent* event) {
    auto* const drag = static_cast<QDropEvent*>(event);
    const QStringList paths = PictureFilesOf(drag->mimeData());
    if (paths.isEmpty()) {
        drag->ignore();
        return true;
    }
    // Never moved away from where they lie, whatever the file manager proposes.
    drag->setDropAction(Qt::CopyAction);
    drag->accept();
    if (event->type() == QEvent::Drop) {
        // Once the file manager has its answer: what comes of it may ask something.
        QMetaObject::invokeMethod(
            this, [this, paths] { Q_EMIT dropped(paths); }, Qt::QueuedConnection);
    }
    return true;
}

}  // namespace kivo
