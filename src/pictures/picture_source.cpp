#include "pictures/picture_source.h"

#include <QHash>
#include <QTimerEvent>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

#include "pictures/picture_path.h"
#include "pictures/picture_reader.h"
#include "pictures/picture_shelf.h"
#include "pictures/picture_work.h"

namespace kivo {

namespace {

// How long a hanging thread may go unseen, as a share of the time after which it hangs.
constexpr int kLooksPerHang = 4;

// Questions about one picture, numbered in the order in which they were asked.
struct Questions {
    quint64 asked = 0;
    quint64 answered = 0;  // all up to this one
    bool isHopeless = false;
};

struct ThumbnailAnswer {
    PictureJob job;
    Picture thumbnail;
};

}  // namespace

struct PictureSource::Shared {
    Shared(Readers how, PictureSource* owner) : readers(std::move(how)), receiver(owner) {}

    const Readers readers;

    mutable std::mutex mutex;  // for all that follows
    std::condition_variable change;
    bool isStopped = false;
    PictureSource* receiver;  // null when it has gone
    PictureShelf shelf{kMostKeptBytes};
    QHash<QString, Questions> questions;  // open ones only
    QVector<PictureJob> wantedPictures;   // not begun yet, the newest first
    QVector<PictureJob> wantedThumbnails;
    int round = 0;                            // of looks at the thumbnails' files
    std::vector<ThumbnailAnswer> thumbnails;  // to be told
    QStringList answers;                      // to be told
    bool isTelling = false;
    int reads = 0;

    // On a worker, without the lock.
    void Do(const PictureJob& job, const PictureWork& work) {
        if (job.pixels.isEmpty()) {
            DoPicture(job, work);
            return;
        }
        Picture thumbnail = readers.thumbnail(job.path, job.pixels, work);
        const std::lock_guard lock(mutex);
        wantedThumbnails.removeOne(job);
        if (job.round == round) {
            thumbnails.push_back({job, std::move(thumbnail)});
            Tell();
        }
    }

    void DoPicture(const PictureJob& job, const PictureWork& work) {
        const QString key = CleanPicturePath(job.path);
        std::optional<Picture> former;
        quint64 upTo = 0;
        {
            const std::lock_guard lock(mutex);
            const Picture* known = shelf.Find(key);
            former = known != nullptr ? std::optional<Picture>(*known) : std::nullopt;
            // Also where it has been answered meanwhile: it may have been asked for twice.
            wantedPictures.removeOne(job);
            const auto open = questions.find(key);
            if (open != questions.end()) {
                upTo = open->asked;
            }
        }
        const Picture picture = readers.picture(job.path, former ? &*former : nullptr, work);
        const std::lock_guard lock(mutex);
        NoteAnswer(key, job, upTo, picture, former);
    }

    // Under the lock.
    void NoteAnswer(const QString& key, const PictureJob& job, quint64 upTo, const Picture& picture,
                    const std::optional<Picture>& former) {
        if (picture.failure == PictureFailure::Stopped) {
            return;
        }
        const bool isFormer = former && picture.failure == former->failure &&
                              picture.image.cacheKey() == former->image.cacheKey();
        if (!isFormer) {
            ++reads;
            if (picture.failure != PictureFailure::None) {
                LogPictureFailure(job.path, picture);
            }
        }
        shelf.Put(key, picture);
        const auto open = questions.find(key);
        if (open != questions.end()) {
            open->answered = upTo;
            open->isHopeless = false;
            if (open->asked == upTo) {
                questions.erase(open);
            }
        }
        answers.append(job.path);
        Tell();
        change.notify_all();
    }

    // Under the lock, so that the receiver cannot go meanwhile.
    void Tell() {
        if (receiver != nullptr && !isTelling) {
            isTelling = true;
            QMetaObject::invokeMethod(receiver, &PictureSource::Deliver, Qt::QueuedConnection);
        }
    }

    // Under the lock. The number of the question.
    quint64 Ask(const QString& path) {
        const QString key = CleanPicturePath(path);
        Questions& open = questions[key];
        const PictureJob job{path, QSize()};
        wantedPictures.removeOne(job);
        wantedPictures.prepend(job);
        return ++open.asked;
    }

    // Under the lock: a file that does not answer, as far as it is known.
    void NoteHopeless(const PictureJob& job) {
        const QString key = CleanPicturePath(job.path);
        const auto open = questions.find(key);
        if (!job.pixels.isEmpty() || open == questions.end() || open->isHopeless) {
            return;
        }
        open->isHopeless = true;
        if (shelf.Find(key) == nullptr) {
            const Picture silent = NoPicture(PictureFailure::NoAnswer, QStringLiteral("does not answer"));
            LogPictureFailure(job.path, silent);
            shelf.Put(key, silent);
        }
        answers.append(job.path);
        Tell();
        change.notify_all();
    }

    // Under the lock: a thumbnail that is made and not told of yet.
    bool IsMade(const PictureJob& job) const {
        return std::any_of(thumbnails.begin(), thumbnails.end(),
                           [&job](const ThumbnailAnswer& answer) { return answer.job == job; });
    }

    // Under the lock, or an older list could come after a newer one.
    void Enqueue(PictureWorkers& workers) const { workers.Want(wantedPictures + wantedThumbnails); }
};

PictureSource::PictureSource(Readers readers, QObject* parent, PictureWorkers::Patience patience)
    : QObject(parent),
      m_shared(std::make_shared<Shared>(std::move(readers), this)),
      m_workers(std::make_unique<PictureWorkers>(
          [shared = m_shared](const PictureJob& job, const PictureWork& work) { shared->Do(job, work); },
          patience)),
      m_watchIntervalMs(qMax(1, int(patience.hangsAfter.count()) / kLooksPerHang)) {}

PictureSource::~PictureSource() {
    Stop();
    const std::lock_guard lock(m_shared->mutex);
    m_shared->receiver = nullptr;
}

void PictureSource::Want(const QString& path) {
    {
        const std::lock_guard lock(m_shared->mutex);
        const QString key = CleanPicturePath(path);
        if (m_shared->shelf.Find(key) != nullptr || m_shared->questions.contains(key)) {
            return;
        }
        m_shared->Ask(path);
        m_shared->Enqueue(*m_workers);
    }
    Watch();
}

void PictureSource::Check(const QString& path) {
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->Ask(path);
        m_shared->Enqueue(*m_workers);
    }
    Watch();
}

void PictureSource::WantThumbnails(const QStringList& paths, QSize pixels, int round) {
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->round = round;
        m_shared->wantedThumbnails.clear();
        for (const QString& path : paths) {
            const PictureJob job{path, pixels, round};
            if (!m_shared->IsMade(job)) {
                m_shared->wantedThumbnails.append(job);
            }
        }
        m_shared->Enqueue(*m_workers);
    }
    if (!paths.isEmpty()) {
        Watch();
    }
}

void PictureSource::LetGoOfImages() {
    const std::lock_guard lock(m_shared->mutex);
    QStringList kept;
    for (const QString& path : std::as_const(m_shared->answers)) {
        kept.append(CleanPicturePath(path));
    }
    m_shared->shelf.RemoveImages(kept);
}

std::optional<Picture> PictureSource::Known(const QString& path) {
    const std::lock_guard lock(m_shared->mutex);
    const Picture* known = m_shared->shelf.Use(CleanPicturePath(path));
    return known != nullptr ? std::optional<Picture>(*known) : std::nullopt;
}

std::optional<Picture> PictureSource::Await(const QString& path) {
    const QString key = CleanPicturePath(path);
    QMetaObject::invokeMethod(this, &PictureSource::Watch, Qt::QueuedConnection);
    std::unique_lock lock(m_shared->mutex);
    while (!m_shared->isStopped) {
        const quint64 question = m_shared->Ask(path);
        m_shared->Enqueue(*m_workers);
        m_shared->change.wait(lock, [&] {
            const auto open = m_shared->questions.constFind(key);
            return m_shared->isStopped || open == m_shared->questions.constEnd() || open->isHopeless ||
                   open->answered >= question;
        });
        const Picture* known = m_shared->shelf.Use(key);
        if (known != nullptr && !m_shared->isStopped) {
            return *known;
        }
        // Others have asked for so much meanwhile that it was let go of again.
    }
    return std::nullopt;
}

void PictureSource::Stop() {
    const std::lock_guard lock(m_shared->mutex);
    m_shared->isStopped = true;
    m_shared->change.notify_all();
}

int PictureSource::ReadCount() const {
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->reads;
}

qint64 PictureSource::KeptBytes() const {
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->shelf.Bytes();
}

bool PictureSource::IsBusy() const {
    const std::lock_guard lock(m_shared->mutex);
    return m_shared->isTelling || !m_shared->questions.isEmpty();
}

void PictureSource::Watch() {
    if (m_watchTimer == 0) {
        m_watchTimer = startTimer(m_watchIntervalMs);
    }
}

void PictureSource::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_watchTimer) {
        QObject::timerEvent(event);
        return;
    }
    if (!m_workers->IsAnythingUnderWay()) {
        killTimer(m_watchTimer);
        m_watchTimer = 0;
        return;
    }
    m_workers->LookAfterHanging();
    const QVector<PictureJob> hopeless = m_workers->HopelessJobs();
    const std::lock_guard lock(m_shared->mutex);
    for (const PictureJob& job : hopeless) {
        m_shared->NoteHopeless(job);
    }
}

void PictureSource::Deliver() {
    QStringList answers;
    std::vector<ThumbnailAnswer> thumbnails;
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->isTelling = false;
        answers.swap(m_shared->answers);
        thumbnails.swap(m_shared->thumbnails);
    }
    answers.removeDuplicates();
    for (const QString& path : std::as_const(answers)) {
        Q_EMIT answered(path);
    }
    for (const ThumbnailAnswer& answer : thumbnails) {
        Q_EMIT thumbnailReady(answer.job.path, answer.job.pixels, answer.thumbnail);
    }
}

}  // namespace kivo
