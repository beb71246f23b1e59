#pragma once

// Keeps a PNG file equal to what the virtual panel shows: its own 320 x 170 raster, however it is turned.
// Writes on a thread of its own, at most twice a second and once at the end; the file is replaced whole,
// never half written.

#include <QImage>
#include <QString>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "virtualscreen/virtual_hid_api.h"

namespace kivo {

class PanelImageWriter {
public:
    // Writes the present picture at once. The screen must outlive the writer.
    PanelImageWriter(VirtualHidApi& screen, const QString& fileName);
    // Writes the last picture.
    ~PanelImageWriter();
    PanelImageWriter(const PanelImageWriter&) = delete;
    PanelImageWriter& operator=(const PanelImageWriter&) = delete;

private:
    void Run();
    // False: it has to be tried again.
    bool WriteImage();

    VirtualHidApi& m_screen;
    const QString m_fileName;
    int m_listener = 0;
    bool m_failed = false;  // the last try did; worker thread only
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_dirty = true;
    bool m_stop = false;
    std::thread m_thread;
};

}  // namespace kivo
