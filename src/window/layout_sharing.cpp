#include "window/layout_sharing.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTimer>
#include <algorithm>
#include <mutex>
#include <utility>

#include "compose/shared_layout.h"
#include "config/replace_file.h"
#include "pictures/picture_copy.h"
#include "pictures/picture_path.h"
#include "pictures/picture_reader.h"
#include "pictures/picture_work.h"
#include "pictures/picture_workers.h"

namespace kivo {

namespace {

using Trouble = LayoutSharing::Trouble;
using Outcome = LayoutSharing::Outcome;

Outcome Failed(Trouble trouble, const QString& reason) {
    Outcome outcome;
    outcome.trouble = trouble;
    outcome.reason = reason;
    return outcome;
}

Trouble TroubleOf(SharedLayoutFault fault) {
    return fault == SharedLayoutFault::Newer ? Trouble::Newer : Trouble::NoLayout;
}

Outcome ReadLayout(const QString& path, const QString& pictureFolder, const std::atomic<bool>& isWanted) {
    // Looked at before it is opened: a pipe would never give an end.
    QFile file(path);
    if (!QFileInfo(path).isFile()) {
        return Failed(Trouble::NoFile, QStringLiteral("There is no such file."));
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return Failed(Trouble::NoFile, QStringLiteral("It cannot be read."));
    }
    // A byte more than there may be: a file that is too large is told from one that just fits.
    const QByteArray bytes = file.read(kLargestSharedLayout + 1);
    if (file.error() != QFileDevice::NoError) {
        return Failed(Trouble::NoFile, QStringLiteral("It cannot be read."));
    }
    const SharedLayoutReading reading = ReadSharedLayout(bytes);
    if (!reading.layout) {
        return Failed(TroubleOf(reading.fault), reading.reason);
    }
    Outcome outcome;
    outcome.layout = reading.layout->state;
    if (reading.layout->picture.isEmpty()) {
        return outcome;
    }
    const QString suffix = SuffixOfPicture(reading.layout->picture);
    if (suffix.isEmpty()) {
        return Failed(Trouble::BadPicture, QStringLiteral("Its picture cannot be shown."));
    }
    if (!isWanted) {
        return Failed(Trouble::NoAnswer, QString());
    }
    const PictureCopy copy = KeepPictureCopy(
        reading.layout->picture, PlainFileTitle(reading.layout->pictureName), suffix, pictureFolder);
    if (copy.path.isEmpty()) {
        return Failed(Trouble::CannotBeSaved,
                      QStringLiteral("Its picture cannot be saved (%1).").arg(copy.trouble));
    }
    outcome.layout->layout.picture = copy.path;
    outcome.newPicture = copy.isNew ? copy.path : QString();
    return outcome;
}

Outcome WriteLayout(const ScreenState& shown, const QString& pictureName, const QString& path,
                    const std::atomic<bool>& isWanted) {
    SharedLayout shared;
    shared.state = SharedStateOf(shown);
    if (shared.state.layout.picture.isEmpty()) {
        const QString picturePath = PicturePath(shown);
        const std::atomic<bool> stop{false};
        const Picture picture = ReadPicture(picturePath, nullptr, PictureWork(stop));
        shared.picture = PictureToHandOn(picture.image);
        if (shared.picture.isEmpty() || shared.picture.size() > kLargestSharedPicture) {
            return Failed(Trouble::BadPicture, QStringLiteral("Its picture cannot be read."));
        }
        shared.pictureName = pictureName.isEmpty() ? PictureFileTitle(picturePath) : pictureName;
    }
    const QByteArray bytes = WriteSharedLayout(shared);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        return Failed(Trouble::CannotBeSaved, file.errorString());
    }
    if (!isWanted) {
        return Failed(Trouble::NoAnswer, QString());
    }
    return CommitWhole(file) ? Outcome() : Failed(Trouble::CannotBeSaved, file.errorString());
}

}  // namespace

struct LayoutSharing::Link {
    std::mutex mutex;
    LayoutSharing* receiver;  // null when it has gone
};

LayoutSharing::LayoutSharing(const QString& pictureFolder, QObject* parent,
                             std::chrono::milliseconds patience)
    : QObject(parent),
      m_pictureFolder(pictureFolder),
      m_patience(patience),
      m_link(std::make_shared<Link>()) {
    m_link->receiver = this;
}

LayoutSharing::~LayoutSharing() {
    for (const Job& job : m_jobs) {
        *job.isWanted = false;
    }
    const std::lock_guard lock(m_link->mutex);
    m_link->receiver = nullptr;
}

void LayoutSharing::Import(const QString& file, Done done) {
    Run([file, folder = m_pictureFolder](
            const std::atomic<bool>& isWanted) { return ReadLayout(file, folder, isWanted); },
        std::move(done));
}

void LayoutSharing::Export(const ScreenState& shown, const QString& pictureName, const QString& file,
                           Done done) {
    Run([shown, pictureName,
         file](const std::atomic<bool>& isWanted) { return WriteLayout(shown, pictureName, file, isWanted); },
        std::move(done));
}

void LayoutSharing::Forget(const Outcome& outcome) {
    if (!outcome.newPicture.isEmpty()) {
        QFile::remove(outcome.newPicture);
    }
}

void LayoutSharing::Run(Task task, Done done) {
    const int number = ++m_lastNumber;
    m_jobs.push_back({number, std::move(task), std::move(done), std::make_shared<std::atomic<bool>>(true)});
    QTimer::singleShot(m_patience, this, [this, number] {
        EndJob(number, Failed(Trouble::NoAnswer, QStringLiteral("Its place does not answer.")));
    });
    if (m_jobs.size() == 1) {
        BeginFirst();
    }
}

void LayoutSharing::BeginFirst() {
    const auto doFirst = [link = m_link, number = m_jobs.front().number, task = m_jobs.front().task,
                          isWanted = m_jobs.front().isWanted](const PictureJob& /*job*/,
                                                              const PictureWork& /*work*/) {
        const Outcome outcome = task(*isWanted);
        const std::lock_guard lock(link->mutex);
        if (link->receiver == nullptr) {
            Forget(outcome);
            return;
        }
        QMetaObject::invokeMethod(
            link->receiver,
            [receiver = link->receiver, number, outcome] { receiver->EndJob(number, outcome); },
            Qt::QueuedConnection);
    };
    m_worker = std::make_unique<PictureWorkers>(doFirst, PictureWorkers::Patience());
    m_worker->Want({PictureJob{QStringLiteral("layout"), QSize()}});
}

void LayoutSharing::EndJob(int number, const Outcome& outcome) {
    const auto job = std::find_if(m_jobs.begin(), m_jobs.end(),
                                  [number](const Job& known) { return known.number == number; });
    if (job == m_jobs.end()) {
        Forget(outcome);  // it was given up before
        return;
    }
    const bool wasUnderWay = job == m_jobs.begin();
    const Done done = job->done;
    *job->isWanted = false;
    m_jobs.erase(job);
    if (wasUnderWay) {
        m_worker.reset();
        if (!m_jobs.empty()) {
            BeginFirst();
        }
    }
    done(outcome);
}

}  // namespace kivo
