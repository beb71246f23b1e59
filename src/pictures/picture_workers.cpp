#include "pictures/picture_workers.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <list>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "pictures/picture_path.h"
#include "pictures/picture_work.h"

namespace kivo {

namespace {

using Clock = std::chrono::steady_clock;

// Two keep a screenful ahead of the eye and leave the window its share of a small machine. They decode, so
// more of them would take the memory of more pictures.
constexpr std::size_t kAtWork = 2;

// So many threads may hang before no more files are opened. What is chosen may still be read where the list's
// thumbnails have run into a share that is gone; a part of the program cannot hang.
constexpr std::size_t kMostHangingThumbnails = 6;
constexpr std::size_t kMostHanging = 8;

std::atomic<bool> leftThreadBehind{false};

struct Worker {
    std::thread thread;
    bool busy = false;
    bool hangs = false;  // until its file lets it go
    bool waits = false;  // for its turn, after it hung
    bool ended = false;
    PictureJob job;                           // while busy
    std::optional<Clock::time_point> inFile;  // since when
};

}  // namespace

struct PictureWorkers::Shared {
    Shared(Doer how, Patience howLong) : doer(std::move(how)), patience(howLong) {}

    const Doer doer;
    const Patience patience;
    std::atomic<bool> stop{false};

    mutable std::mutex mutex;  // for all that follows
    std::condition_variable wake;
    std::condition_variable workerEnded;
    std::deque<PictureJob> queue;
    std::list<Worker> workers;  // a thread keeps the address of its own

    void Work(Worker& self) {
        std::unique_lock lock(mutex);
        while (true) {
            wake.wait(lock, [this] { return stop || (HasPlace() && FirstJob() != queue.end()); });
            if (stop) {
                break;
            }
            const auto first = FirstJob();
            self.job = *first;
            queue.erase(first);
            self.busy = true;
            lock.unlock();
            doer(self.job, PictureWork(stop, [this, &self](bool inFile) { Follow(self, inFile); }));
            lock.lock();
            self.busy = false;
            wake.notify_all();
        }
        self.ended = true;
        workerEnded.notify_all();
    }

    bool IsBeingDone(const PictureJob& job) const {
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
    static bool IsHanging(const Worker& worker) { return worker.hangs; }
    static bool IsIdle(const Worker& worker) { return !worker.busy; }

    std::size_t Count(bool (*matches)(const Worker&)) const {
        return static_cast<std::size_t>(std::count_if(workers.begin(), workers.end(), matches));
    }

    // For one more job. Whoever waits for its turn goes first.
    bool HasPlace() const {
        return Count([](const Worker& worker) { return worker.busy && !worker.hangs; }) < kAtWork;
    }

    bool MayBegin(const PictureJob& job) const {
        if (IsResource(job.path)) {
            return true;
        }
        return Count(&IsHanging) < (job.pixels.isEmpty() ? kMostHanging : kMostHangingThumbnails);
    }

    std::deque<PictureJob>::iterator FirstJob() {
        return std::find_if(queue.begin(), queue.end(),
                            [this](const PictureJob& job) { return MayBegin(job) && !IsBeingDone(job); });
    }

    // Under the lock.
    static void StartWorkers(const std::shared_ptr<Shared>& shared) {
        while (shared->HasPlace() && shared->FirstJob() != shared->queue.end() &&
               shared->Count(&IsIdle) + shared->Count(&IsAtWork) < kAtWork) {
            Worker& worker = shared->workers.emplace_back();
            worker.thread = std::thread([shared, &worker] { shared->Work(worker); });
        }
        shared->wake.notify_all();
    }

    void FindHanging() {
        const Clock::time_point longAgo = Clock::now() - patience.hangsAfter;
        for (Worker& worker : workers) {
            worker.hangs = worker.hangs || (worker.inFile && *worker.inFile < longAgo);
        }
    }

    bool HasEnded() const {
        return std::all_of(workers.begin(), workers.end(), [](const Worker& worker) { return worker.ended; });
    }
};

PictureWorkers::PictureWorkers(Doer doer, Patience patience)
    : m_shared(std::make_shared<Shared>(std::move(doer), patience)) {}

PictureWorkers::~PictureWorkers() {
    std::vector<std::thread> toJoin;
    {
        std::unique_lock lock(m_shared->mutex);
        m_shared->stop = true;
        m_shared->wake.notify_all();
        m_shared->workerEnded.wait_for(lock, m_shared->patience.end, [this] { return m_shared->HasEnded(); });
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

bool PictureWorkers::EverythingEnded() {
    return !leftThreadBehind;
}

void PictureWorkers::Want(const QVector<PictureJob>& jobs) {
    const std::lock_guard lock(m_shared->mutex);
    m_shared->queue.clear();
    for (const PictureJob& job : jobs) {
        // A picture that is asked for while it is being read may have changed since.
        if (job.pixels.isEmpty() || !m_shared->IsBeingDone(job)) {
            m_shared->queue.push_back(job);
        }
    }
    if (!m_shared->queue.empty()) {
        Shared::StartWorkers(m_shared);
    }
}

void PictureWorkers::LookAfterHanging() {
    const std::lock_guard lock(m_shared->mutex);
    m_shared->FindHanging();
    Shared::StartWorkers(m_shared);
}

bool PictureWorkers::IsAnythingUnderWay() const {
    const std::lock_guard lock(m_shared->mutex);
    return !m_shared->queue.empty() || std::any_of(m_shared->workers.begin(), m_shared->workers.end(),
                                                   [](const Worker& worker) { return worker.busy; });
}

QVector<PictureJob> PictureWorkers::HopelessJobs() const {
    const std::lock_guard lock(m_shared->mutex);
    QVector<PictureJob> jobs;
    for (const Worker& worker : m_shared->workers) {
        if (worker.hangs) {
            jobs.append(worker.job);
        }
    }
    for (const PictureJob& job : m_shared->queue) {
        if (!m_shared->MayBegin(job)) {
            jobs.append(job);
        }
    }
    return jobs;
}

}  // namespace kivo
