#pragma once

// What reading a picture gave: the picture, or why there is none. A plain value that threads share.

#include <QImage>
#include <QString>
#include <QtGlobal>

namespace kivo {

enum class PictureFailure {
    None,
    Missing,     // there is no such file
    Unreadable,  // it cannot be opened or read, holds no picture, or one that is absurdly large
    NoAnswer,    // its file has not answered so far; it may yet
    Stopped,     // nobody waits for it any more: says nothing of the file
};

// A picture's file as the file system tells it. A file that has changed has another one.
struct PictureVersion {
    qint64 modifiedMs = -1;  // since 1970; -1: not known, equal to no other
    qint64 bytes = -1;
};

inline bool IsSameVersion(const PictureVersion& a, const PictureVersion& b) {
    return a.bytes >= 0 && a.bytes == b.bytes && a.modifiedMs == b.modifiedMs;
}

struct Picture {
    QImage image;  // null exactly where there is a failure
    PictureFailure failure = PictureFailure::None;
    QString reason = {};  // for the log: "is too large ...", "cannot be read ..."
    PictureVersion version = {};
};

inline Picture NoPicture(PictureFailure failure, const QString& reason, PictureVersion version = {}) {
    return {QImage(), failure, reason, version};
}

}  // namespace kivo
