#include "virtualscreen/panel_image_writer.h"

#include <QLoggingCategory>
#include <QSaveFile>
#include <chrono>

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(imageLog, "kivo.panel")

// The shortest time between two pictures.
constexpr std::chrono::milliseconds kInterval{500};

}  // namespace

PanelImageWriter::PanelImageWriter(VirtualHidApi& screen, const QString& fileName)
    : m_screen(screen), m_fileName(fileName), m_thread([this] { Run(); }) {
    m_listener = m_screen.AddListener([this](VirtualScreenEvent event) {
        if (event != VirtualScreenEvent::Picture) {
            return;
        }
        {
            const std::lock_guard lock(m_mutex);
            m_dirty = true;
        }
        m_wake.notify_one();
    });
}

PanelImageWriter::~PanelImageWriter() {
    m_screen.RemoveListener(m_listener);
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void PanelImageWriter::Run() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [this] { return m_dirty || m_stop; });
        const bool isLast = m_stop;
        bool written = true;
        if (m_dirty) {
            m_dirty = false;
            lock.unlock();
            written = WriteImage();
            lock.lock();
        }
        if (m_stop && (isLast || !m_dirty)) {
            return;
        }
        // Somebody may just be looking at the file: Windows lets nobody replace it then.
        m_dirty = m_dirty || !written;
        // Whatever changes during this time goes into the next picture.
        m_wake.wait_for(lock, kInterval, [this] { return m_stop; });
    }
}

bool PanelImageWriter::WriteImage() {
    QSaveFile file(m_fileName);
    // The flush tells of a disk that is full; the commit alone would put a part in the picture's place.
    const bool written = file.open(QIODevice::WriteOnly) && m_screen.State().image.save(&file, "PNG") &&
                         file.flush() && file.commit();
    // One line for a row of failures.
    if (!written && !m_failed) {
        qCWarning(imageLog, "The panel's picture cannot be written to %s: %s", qUtf8Printable(m_fileName),
                  qUtf8Printable(file.errorString()));
    }
    m_failed = !written;
    return written;
}

}  // namespace kivo
