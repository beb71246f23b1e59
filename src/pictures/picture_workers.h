#pragma once

// The threads that read pictures. A thread that hangs in a file is left there and another one starts in its
// place, so that no file holds up another; the end does not wait for it either. Any thread may call.

#include <QSize>
#include <QString>
#include <QVector>

#include <chrono>
#include <functional>
#include <memory>

namespace kivo {

class PictureWork;

struct PictureJob {
    QString path;
    QSize pixels;   // of a thumbnail; empty: the picture itself
    int round = 0;  // of looks at the files, of a thumbnail
};

inline bool operator==(const PictureJob& a, const PictureJob& b) {
    return a.pixels == b.pixels && a.path == b.path && a.round == b.round;
}

class PictureWorkers {
public:
    // Does one job. Called on several threads at a time; tells the work while it is in a file. What it holds
    // may outlive this object.
    using Doer = std::function<void(const PictureJob& job, const PictureWork& work)>;

    struct Patience {
        // A thread that is in a file for so long hangs.
        std::chrono::milliseconds hangsAfter{2000};
        // How long the end waits for what is being done.
        std::chrono::milliseconds end{300};
    };

    PictureWorkers(Doer doer, Patience patience);
    // Waits a moment for what is being done, but not for a long decode or a file that hangs: that thread is
    // left behind, does no other job, and ends when it can.
    ~PictureWorkers();
    PictureWorkers(const PictureWorkers&) = delete;
    PictureWorkers& operator=(const PictureWorkers&) = delete;

    // False from the moment on when some object of this class has left a thread behind. Such a thread may
    // still be in the middle of a decoder when main returns; a program then ends without taking down what
    // decoders use (std::_Exit).
    static bool EverythingEnded();

    // What is wanted now, the most wanted first. What was wanted before and has not been begun is forgotten.
    // No job is done twice at a time: a thumbnail that is being made is not made again, a picture that is
    // being read is read once more afterwards.
    void Want(const QVector<PictureJob>& jobs);

    // To be called from time to time while anything is under way: replaces threads that hang.
    void LookAfterHanging();
    bool IsAnythingUnderWay() const;
    // What nobody should wait for: the jobs whose thread hangs, and those that are not begun because too many
    // hang already.
    QVector<PictureJob> HopelessJobs() const;

private:
    struct Shared;

    // Owned together with the threads, of which one may outlive this object.
    std::shared_ptr<Shared> m_shared;
};

}  // namespace kivo
