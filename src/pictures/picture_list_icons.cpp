// The picture list's icons: asked for by what is painted, kept near the view.

#include <QIcon>
#include <QPixmap>
#include <QTimer>

#include "pictures/picture_list.h"
#include "pictures/picture_path.h"
#include "pictures/picture_source.h"
#include "pictures/thumbnail_picture.h"
#include "widgets/my_list_widget.h"

namespace kivo {

namespace {

// More icons than anybody sees at once; what lies far from the view is forgotten beyond that.
constexpr int kMostIcons = 300;

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

QSize PictureList::IconPixels() const {
    const double ratio = m_view->devicePixelRatioF();
    return QSize(qRound(kThumbnailSize.width() * ratio), qRound(kThumbnailSize.height() * ratio));
}

bool PictureList::IsIconKnown(const QString& path, QSize pixels) const {
    const auto known = m_known.constFind(path);
    return known != m_known.constEnd() && known->pixels == pixels &&
           (known->round == m_round || IsResource(path));
}

PictureList::Rows PictureList::RowsInView() const {
    const int height = m_view->viewport()->height();
    return {FirstRow(*m_view, [](const QRect& row) { return row.bottom() >= 0; }),
            FirstRow(*m_view, [height](const QRect& row) { return row.top() >= height; })};
}

void PictureList::WantIconsInView() {
    const auto [first, end] = RowsInView();
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
        ForgetIconsOutside({before, behind});
    }
}

void PictureList::LetGoOfIcons() {
    // A list that was never seen has no icons and no rows in view: laying them out would be for nothing.
    if (!m_known.isEmpty()) {
        ForgetIconsOutside(RowsInView());
    }
}

void PictureList::ForgetIconsOutside(Rows rows) {
    QHash<QString, Known> kept;
    for (int row = rows.from; row < rows.to; ++row) {
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
    TellName(item);
}

}  // namespace kivo
