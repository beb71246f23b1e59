#pragma once

// "whole.png" in the working folder: the background of the frame that was applied last, for the next start.
// While the program runs the frame is in memory and the file only follows it. Any thread.

#include <QString>
#include <chrono>
#include <filesystem>
#include <mutex>

#include "panel/panel_frame.h"

namespace kivo {

class FrameStore {
public:
    // path is the file; by default WorkingFolder() followed by "/whole.png".
    explicit FrameStore(QString path = DefaultPath());
    static QString DefaultPath();

    // Puts the frame's background in the file's place, in one step, marked with the frame's id and
    // accent. A failure is logged.
    bool Save(const SharedFrame& frame);

    // The saved frame, if the file is whole and was made for exactly this state; else null. A file of another
    // program or version, or with a changed pixel, is not believed: whoever asks composes the background
    // again.
    SharedFrame Load(const ScreenState& state);

    // Writes the frame of the last Save or Load again where its file has vanished or changed, its folder too.
    // Looks every two seconds; a file that cannot be written is tried again after a minute. now: any clock
    // that never runs backwards.
    void KeepSaved(std::chrono::milliseconds now);

private:
    // Read without Qt, which would turn the time into a local one.
    struct FileIdentity {
        bool exists = false;
        std::uintmax_t size = 0;
        std::filesystem::file_time_type modified;
        bool operator==(const FileIdentity& other) const {
            return exists == other.exists && size == other.size && modified == other.modified;
        }
    };
    FileIdentity Identity() const;
    bool Write(const SharedFrame& frame);  // m_mutex is held

    const QString m_path;
    const std::filesystem::path m_nativePath;
    std::mutex m_mutex;
    SharedFrame m_frame;      // what the file is to hold
    FileIdentity m_identity;  // of the file that holds it
    std::chrono::milliseconds m_nextLook{0};
};

}  // namespace kivo
