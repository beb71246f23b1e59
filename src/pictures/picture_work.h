#pragma once

// What the reader of one picture and the owner of its thread tell each other. Used on the reader's thread.

#include <QtGlobal>

#include <atomic>
#include <functional>
#include <utility>

namespace kivo {

class PictureWork {
public:
    // Called with true before the reader goes into a file and with false when it is back.
    using FileWatch = std::function<void(bool inFile)>;

    // The flag outlives the work.
    explicit PictureWork(const std::atomic<bool>& stop, FileWatch watch = FileWatch())
        : m_stop(stop), m_watch(std::move(watch)) {}

    // Nobody wants the picture any more.
    bool IsStopped() const { return m_stop; }

    // Lives while the reader reads a file or looks one up, which may hang for as long as a network likes.
    // Nothing else counts as hanging, however long it takes. Its end may wait until it is this thread's turn
    // again. Not nested.
    class FileAccess {
    public:
        explicit FileAccess(const PictureWork& work) : m_work(work) { m_work.Tell(true); }
        ~FileAccess() { m_work.Tell(false); }
        Q_DISABLE_COPY_MOVE(FileAccess)

    private:
        const PictureWork& m_work;
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
