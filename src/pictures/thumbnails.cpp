#include "pictures/thumbnails.h"

#include <QTimerEvent>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "pictures/thumbnail_cache.h"
#include "pictures/thumbnail_picture.h"
#include "pictures/thumbnail_work.h"

namespace kivo {

namespace {

using Clock = std::chrono::steady_clock;

// Two keep a screenful ahead of the eye and leave the window its share of a small machine.
constexpr std::size_t kAtWork = 2;
// A thread that hangs in a file for so long is replaced by another one, up to so many. When its file lets it
// go it waits for its turn.
constexpr std::chrono::seconds kHangsAfter{2};
constexpr std::size_t kMostWorkers = 8;
constexpr int kWatchIntervalMs = 500;

std::atomic<bool> leftThreadBehind{false};

struct Job {
    QString path;
    QSize pixels;
};

bool operator==(const Job& a, const Job& b) {
    return a.pixels == b.pixels && a.path == b.path;
}

struct Result {
    Job job;
    QImage thumbnail;
};

struct Worker {
    std::thread thread;
    bool busy = false;
    bool hangs = false;  // until its file lets it go
    bool waits = false;  // for its turn, after it hung
    bool ended = false;
    Job job;                                  // while busy
    std::optional<Clock::time_point> inFile;  // since when
};

}  // namespace

struct Thumbnails::Shared {
    Shared(Maker how, Thumbnails* owner) : maker(std::move(how)), receiver(owner) {}

    const Maker maker;
    std::atomic<bool> stop{false};

    std::mutex mutex;  // for all that follows
    std::condition_variable wake;
    std::condition_variable workerEnded;
    std::deque<Job> queue;
    std::vector<Result> results;
    std::list<Worker> workers;  // a thread keeps the address of its own
    Thumbnails* receiver;       // null when it has gone

    void Work(Worker& self) {
        std::unique_lock lock(mutex);
        while (true) {
            wake.wait(lock, [this] { return stop || (!queue.empty() && HasPlace()); });
            if (stop) {
                break;
            }
            self.job = std::move(queue.front());
            queue.pop_front();
            self.busy = true;
            Result result{self.job, QImage()};
            lock.unlock();
            const ThumbnailWork work(stop, [this, &self](bool inFile) { Follow(self, inFile); });
            result.thumbnail = maker(result.job.path, result.job.pixels, work);
            lock.lock();
            self.busy = false;
            wake.notify_all();
            Report(std::move(result));
        }
        self.ended = true;
        workerEnded.notify_all();
    }

    // Under the lock, so that the receiver cannot go meanwhile.
    void Report(Result result) {
        if (receiver == nullptr) {
            return;
        }
        if (results.empty()) {
            QMetaObject::invokeMethod(receiver, &Thumbnails::Deliver, Qt::QueuedConnection);
        }
        results.push_back(std::move(result));
    }

    bool IsBeingMade(const Job& job) const {
        return std::any_of(workers.begin(), workers.end(),
                           [&job](const Worker& worker) { return worker.busy && worker.job == job; });
    }

    // On the worker's own thread, without the lock.
    void Follow(Worker& self, bool inFile) {
        std::unique_lock lock(mutex);
        if (inFile) {
            self.inFile = Clock::now();
            return;
        }
        self.inFile.reset();
        if (!self.hangs) {
            return;
        }
        self.hangs = false;
        self.waits = true;
        wake.wait(lock, [this] { return stop || Count(&IsAtWork) < kAtWork; });
        self.waits = false;
    }

    static bool IsAtWork(const Worker& worker) { return worker.busy && !worker.hangs && !worker.waits; }
    static bool IsIdle(const Worker& worker) { return !worker.busy; }

    std::size_t Count(bool (*matches)(const Worker&)) const {
        return static_cast<std::size_t>(std::count_if(workers.begin(), workers.end(), matches));
    }

    // For one more job. Whoever waits for its turn goes first.
    bool HasPlace() const {
        return Count([](const Worker& worker) { return worker.busy && !worker.hangs; }) < kAtWork;
    }

    void FindHanging() {
        const Clock::time_point longAgo = Clock::now() - kHangsAfter;
        for (Worker& worker : workers) {
            worker.hangs = worker.hangs || (worker.inFile && *worker.inFile < longAgo);
        }
        wake.notify_all();
    }

    bool HasEnded() const {
        return std::all_of(workers.begin(), workers.end(), [](const Worker& worker) { return worker.ended; });
    }
};

Thumbnails::Maker Thumbnails::CachedMaker() {
    auto cache = std::make_shared<ThumbnailCache>();
    return [cache](const QString& path, QSize pixels, const ThumbnailWork& work) {
        return CachedThumbnail(*cache, path, pixels, work);
    };
}

Thumbnails::Thumbnails(Maker maker, QObject* parent, std::chrono::milliseconds endPatience)
    : QObject(parent),
      m_shared(std::make_shared<Shared>(std::move(maker), this)),
      m_endPatience(endPatience) {}

Thumbnails::~Thumbnails() {
    std::vector<std::thread> toJoin;
    {
        std::unique_lock lock(m_shared->mutex);
        m_shared->receiver = nullptr;
        m_shared->stop = true;
        m_shared->wake.notify_all();
        m_shared->workerEnded.wait_for(lock, m_endPatience, [this] { return m_shared->HasEnded(); });
        for (Worker& worker : m_shared->workers) {
            if (worker.ended) {
                toJoin.push_back(std::move(worker.thread));
            } else {
                leftThreadBehind = true;
                worker.thread.detach();
            }
        }
    }
    for (std::thread& thread : toJoin) {
        thread.join();
    }
}

bool Thumbnails::EverythingEnded() {
    return !leftThreadBehind;
}

// Under the lock.
void Thumbnails::StartWorker() {
    Worker& worker = m_shared->workers.emplace_back();
    worker.thread = std::thread([shared = m_shared, &worker] { shared->Work(worker); });
}

void Thumbnails::Want(const QStringList& paths, QSize pixels) {
    const std::lock_guard lock(m_shared->mutex);
    m_shared->queue.clear();
    for (const QString& path : paths) {
        Job job{path, pixels};
        if (!m_shared->IsBeingMade(job)) {
            m_shared->queue.push_back(std::move(job));
        }
    }
    if (m_shared->queue.empty()) {
        return;
    }
    while (m_shared->workers.size() < kAtWork) {
        StartWorker();
    }
    m_shared->wake.notify_all();
    if (m_watchTimer == 0) {
        m_watchTimer = startTimer(kWatchIntervalMs);
    }
}

void Thumbnails::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_watchTimer) {
        QObject::timerEvent(event);
        return;
    }
    const std::lock_guard lock(m_shared->mutex);
    if (m_shared->queue.empty()) {
        killTimer(m_watchTimer);
        m_watchTimer = 0;
        return;
    }
    m_shared->FindHanging();
    while (m_shared->workers.size() < kMostWorkers && m_shared->HasPlace() &&
           m_shared->Count(&Shared::IsIdle) == 0) {
        StartWorker();
    }
}

void Thumbnails::Deliver() {
    std::vector<Result> results;
    {
        const std::lock_guard lock(m_shared->mutex);
        results.swap(m_shared->results);
    }
    for (const Result& result : results) {
        Q_EMIT ready(result.job.path, result.job.pixels, result.thumbnail);
    }
}

}  // namespace kivo
