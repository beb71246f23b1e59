#pragma once

// What the maker of one thumbnail and the owner of its thread tell each other. Used on the maker's thread.

#include <QtGlobal>

#include <atomic>
#include <functional>
#include <utility>

namespace kivo {

class ThumbnailWork {
public:
    // Called with true before the maker goes into a file and with false when it is back.
    using FileWatch = std::function<void(bool inFile)>;

    // The flag outlives the work.
    explicit ThumbnailWork(const std::atomic<bool>& stop, FileWatch watch = FileWatch())
        : m_stop(stop), m_watch(std::move(watch)) {}

    // Nobody wants the thumbnail any more.
    bool IsStopped() const { return m_stop; }

    // Lives while the maker reads a file or looks one up, which may hang for as long as a network likes.
    // Nothing else counts as hanging, however long it takes. Its end may wait until it is this thread's turn
    // again. Not nested.
    class FileAccess {
    public:
        explicit FileAccess(const ThumbnailWork& work) : m_work(work) { m_work.Tell(true); }
        ~FileAccess() { m_work.Tell(false); }
        Q_DISABLE_COPY_MOVE(FileAccess)

    private:
        const ThumbnailWork& m_work;
    };

private:
    void Tell(bool inFile) const {
        if (m_watch) {
            m_watch(inFile);
        }
    }

    const std::atomic<bool>& m_stop;
    const FileWatch m_watch;
};

}  // namespace kivo
