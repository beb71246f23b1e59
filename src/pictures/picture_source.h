#pragma once

// The pictures behind the texts, for everybody who shows them or sends them to the panel: preview, composer
// and list get the same image, or the same failure. Reads on threads of its own; a few images are kept. Lives
// on the window's thread, which never waits here and never looks at a picture's file.

#include <QObject>
#include <QSize>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

#include "pictures/picture.h"
#include "pictures/picture_workers.h"

namespace kivo {

class PictureSource : public QObject {
    Q_OBJECT

public:
    // What reads; called on several threads at a time. What they hold may outlive this object.
    struct Readers {
        // former is what is known of that picture, or null.
        std::function<Picture(const QString& path, const Picture* former, const PictureWork& work)> picture;
        std::function<Picture(const QString& path, QSize pixels, const PictureWork& work)> thumbnail;
    };

    // Bytes of the images that are kept, all together: four of a common screen's shape.
    static constexpr qint64 kMostKeptBytes = 32LL * 1024 * 1024;

    explicit PictureSource(Readers readers, QObject* parent = nullptr,
                           PictureWorkers::Patience patience = PictureWorkers::Patience());
    // See ~PictureWorkers.
    ~PictureSource() override;

    // --- The window's thread. ---

    // Has the picture read where it is not known. answered tells.
    void Want(const QString& path);
    // Looks again whether the file is what was read; what is known stays meanwhile. answered tells.
    void Check(const QString& path);

    // The thumbnails that are wanted now, the most wanted first; what was wanted before and has not been
    // begun is forgotten. thumbnailReady tells of each. Another round of looks at the files than the last
    // one's: what was begun before it is not told any more.
    void WantThumbnails(const QStringList& paths, QSize pixels, int round = 0);

    // Nobody looks at the pictures for the time being: lets go of every image but those that are about to be
    // told of. What could not be shown stays known; an image is read again when it is wanted.
    void LetGoOfImages();

    // --- Any thread. ---

    // What is known of the picture; nothing before it was read, and when it was let go of again. Waits for
    // nothing.
    std::optional<Picture> Known(const QString& path);

    // Checks the picture and waits for the outcome, but not for a file that hangs: then what was known
    // before, else that there is no answer. Nothing when the source stops meanwhile. Not on the window's
    // thread.
    std::optional<Picture> Await(const QString& path);

    // Nobody waits here any more.
    void Stop();

    // Pictures that have been decoded so far, bytes that are kept now, and whether anything is being read or
    // about to be told.
    int ReadCount() const;
    qint64 KeptBytes() const;
    bool IsBusy() const;

Q_SIGNALS:
    // A picture was read or looked at again, also where it is the same; or its file does not answer.
    void answered(const QString& path);
    // Once for each thumbnail that was wanted and not forgotten.
    void thumbnailReady(const QString& path, QSize pixels, const kivo::Picture& thumbnail);

protected:
    // Looks from time to time whether a thread hangs in a file.
    void timerEvent(QTimerEvent* event) override;

private:
    struct Shared;

    void Watch();
    void Deliver();

    std::shared_ptr<Shared> m_shared;
    std::unique_ptr<PictureWorkers> m_workers;
    const int m_watchIntervalMs;
    int m_watchTimer = 0;
};

}  // namespace kivo
