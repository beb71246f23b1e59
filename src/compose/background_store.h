#pragma once

// "whole.png" in the working folder: the frame without its texts, which every live update is drawn over.
// Saved by the upload thread, read by the refresh thread; both may call at any time.

#include <QImage>
#include <QString>
#include <filesystem>
#include <mutex>

#include "compose/geometry.h"

namespace kivo {

class BackgroundStore {
public:
    // path is the file; by default WorkingFolder() followed by "/whole.png".
    explicit BackgroundStore(QString path = DefaultPath());
    static QString DefaultPath();

    // Puts background (Format_RGB16, canvas size) in the file's place, in one step. A failure is logged; the
    // picture is then kept in memory, so that live updates still fit what the panel shows. One call at a
    // time.
    bool Save(const QImage& background);

    // What the file holds, scaled to the whole canvas of that orientation, as Format_RGB16. Black where it is
    // missing or cannot be read. Decoded once; again when the file's size or time changes.
    QImage Load(Orientation orientation);

    bool Exists() const;

private:
    // Asked for at every live update, so it is read without Qt, which would turn the time into a local one.
    struct FileIdentity {
        bool exists = false;
        std::uintmax_t size = 0;
        std::filesystem::file_time_type modified;
        bool operator==(const FileIdentity& other) const {
            return exists == other.exists && size == other.size && modified == other.modified;
        }
    };
    FileIdentity Identity() const;

    const QString m_path;
    const std::filesystem::path m_nativePath;
    std::mutex m_mutex;
    QImage m_background;
    FileIdentity m_identity;
    bool m_known = false;  // m_background belongs to m_identity
    QImage m_canvas;       // m_background in the size last asked for
};

}  // namespace kivo
