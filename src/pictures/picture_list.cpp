#include "pictures/picture_list.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDropEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QPixmap>
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

// More icons than anybody sees at once; what lies far from the view is forgotten beyond that.
constexpr int kMostIcons = 300;

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

// The rows stand line by line, so whatever asks for their height divides them in two.
template <typename Predicate>
int FirstRow(const QListWidget& view, Predicate isBeyond) {
    int low = 0;
    int high = view.count();
    while (low < high) {
        const int middle = (low + high) / 2;
        if (isBeyond(view.visualItemRect(view.item(middle)))) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return low;
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
    for (const QString& path : stored) {
        // Settings written by hand: it would be a picture that cannot be told from the add entry.
        if (!IsSamePicture(path, AddEntryPath())) {
            AddPictureItem(path);
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
    return WriteStoredPictures(UserPictures());
}

QListWidgetItem* PictureList::NewItem(const QString& path) {
    auto* item = new QListWidgetItem(RowText(path));
    item->setData(kPathRole, path);
    const QString name = IsResource(path) ? BuiltInPictureName(path) : PictureFileName(path);
    if (!name.isEmpty()) {
        item->setData(Qt::AccessibleTextRole, name);
    }
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

void PictureList::SelectPicture(const QString& path, const QString& secondPath) {
    // Deliberate: where no row has it none is selected. A frame round another picture would say that this one
    // is shown.
    const int row = RowOf(path.isEmpty() ? secondPath : path);
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
                   HandleKey(Qt::Key_Delete);
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

QSize PictureList::IconPixels() const {
    const double ratio = m_view->devicePixelRatioF();
    return QSize(qRound(kThumbnailSize.width() * ratio), qRound(kThumbnailSize.height() * ratio));
}

bool PictureList::IsIconKnown(const QString& path, QSize pixels) const {
    const auto known = m_known.constFind(path);
    return known != m_known.constEnd() && known->pixels == pixels &&
           (known->round == m_round || IsResource(path));
}

void PictureList::WantIconsInView() {
    const int height = m_view->viewport()->height();
    const int first = FirstRow(*m_view, [](const QRect& row) { return row.bottom() >= 0; });
    const int end = FirstRow(*m_view, [height](const QRect& row) { return row.top() >= height; });
    // A page more on either side, for whoever scrolls.
    const int page = end - first;
    const int before = qMax(0, first - page);
    const int behind = qMin(m_view->count(), end + page);
    const QSize pixels = IconPixels();
    QStringList wanted;
    const auto want = [&](int from, int to) {
        for (int row = from; row < to; ++row) {
            const QString path = PathAt(row);
            if (!IsIconKnown(path, pixels)) {
                wanted.append(path);
            }
        }
    };
    want(first, end);
    want(end, behind);
    want(before, first);
    m_source.WantThumbnails(wanted, pixels, m_round);
    if (m_known.size() > kMostIcons) {
        ForgetIconsOutside(before, behind);
    }
}

void PictureList::ForgetIconsOutside(int from, int to) {
    QHash<QString, Known> kept;
    for (int row = from; row < to; ++row) {
        const auto known = m_known.constFind(PathAt(row));
        if (known != m_known.constEnd()) {
            kept.insert(known.key(), known.value());
        }
    }
    for (int row = 0; row < m_view->count(); ++row) {
        if (!kept.contains(PathAt(row))) {
            m_view->item(row)->setIcon(QIcon());
        }
    }
    m_known = kept;
}

void PictureList::SetIcons(const QString& path, QSize pixels, const Picture& thumbnail) {
    // The window may have moved to another screen meanwhile.
    if (pixels != IconPixels()) {
        return;
    }
    m_known.insert(path, {pixels, m_round});
    QIcon icon;
    if (!thumbnail.image.isNull()) {
        QPixmap pixmap = QPixmap::fromImage(thumbnail.image);
        pixmap.setDevicePixelRatio(m_view->devicePixelRatioF());
        icon = QIcon(pixmap);
    }
    for (int row = 0; row < m_view->count(); ++row) {
        if (PathAt(row) == path) {
            ShowThumbnail(*m_view->item(row), icon, thumbnail.failure);
        }
    }
}

// What preview or panel have found out of a picture's file holds for its card too.
void PictureList::NoteAnswer(const QString& path) {
    const int row = RowOf(path);
    if (row < 0 || IsResource(path)) {
        return;
    }
    const std::optional<Picture> known = m_source.Known(path);
    if (known && known->failure != PictureFailure::None) {
        ShowThumbnail(*m_view->item(row), QIcon(), known->failure);
    }
    // Thumbnails that are made already cost a look at the file.
    if (m_known.remove(PathAt(row)) > 0 && !m_wantIcons->isActive()) {
        m_wantIcons->start(0);
    }
}

void PictureList::ShowThumbnail(QListWidgetItem& item, const QIcon& icon, PictureFailure failure) {
    item.setIcon(icon);
    const QString path = item.data(kPathRole).toString();
    if (IsResource(path)) {
        return;
    }
    const bool isShown = failure == PictureFailure::None;
    item.setData(kFailureRole, isShown ? QVariant() : QVariant(int(failure)));
    const QString name = PictureFileName(path);
    item.setData(Qt::AccessibleTextRole, isShown ? name : name + QStringLiteral(", ") + FailureText(failure));
}

}  // namespace kivo
