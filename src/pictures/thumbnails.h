#pragma once

// Makes thumbnails on threads of its own and hands them over on the thread it lives on. Asking costs nothing:
// no file is looked at by the asking thread.

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

namespace kivo {

class ThumbnailWork;

class Thumbnails : public QObject {
    Q_OBJECT

public:
    // Makes the thumbnail of a path in device pixels; null where there is none. Called on several threads at
    // a time; tells the work while it is in a file. What it holds may outlive this object.
    using Maker = std::function<QImage(const QString& path, QSize pixels, const ThumbnailWork& work)>;

    // Reads pictures through the cache in the user's cache folder.
    static Maker CachedMaker();

    // How long the end waits for what is being made.
    static constexpr std::chrono::milliseconds kEndPatience{300};

    explicit Thumbnails(Maker maker, QObject* parent = nullptr,
                        std::chrono::milliseconds endPatience = kEndPatience);
    // Waits a moment for what is being made, but not for a long decode or a file that hangs: that thread is
    // left behind, touches nothing of this object any more, and ends when it can.
    ~Thumbnails() override;

    // False from the moment on when some object of this class has left a thread behind. Such a thread may
    // still be in the middle of a decoder when main returns; a program then ends without taking down what
    // decoders use (std::_Exit). Any thread.
    static bool EverythingEnded();

    // What is wanted now, the most wanted first. What was wanted before and has not been begun is forgotten.
    void Want(const QStringList& paths, QSize pixels);

Q_SIGNALS:
    // Once for each path that was wanted and not forgotten. Null for what has no thumbnail.
    void ready(const QString& path, QSize pixels, const QImage& thumbnail);

protected:
    // Looks from time to time whether a thread hangs in a file.
    void timerEvent(QTimerEvent* event) override;

private:
    struct Shared;

    void StartWorker();
    void Deliver();

    // Owned together with the threads, of which one may outlive this object.
    std::shared_ptr<Shared> m_shared;
    const std::chrono::milliseconds m_endPatience;
    int m_watchTimer = 0;
};

}  // namespace kivo
