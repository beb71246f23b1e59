#include "panel/frame_store.h"

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QLoggingCategory>
#include <QSaveFile>

#include "config/folders.h"
#include "config/replace_file.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(backgroundLog, "kivo.background")

// Light compression (0 is none, 100 the quickest): the file is written at every apply and read at a start
// only.
constexpr int kPngQuality = 80;

// The PNG's text fields with the frame's id and, where its accent is the picture's, that accent ("#ffb45a"):
// found anew, it might be another one beside ticks that a panel shows already.
const QString kIdField = QStringLiteral("kivo-frame");
const QString kAccentField = QStringLiteral("kivo-accent");

std::optional<QRgb> AccentOf(const QImage& image) {
    const QColor accent(image.text(kAccentField));
    return accent.isValid() ? std::optional<QRgb>(accent.rgb()) : std::nullopt;
}

constexpr std::chrono::seconds kLookAfter{2};
constexpr std::chrono::minutes kTryAgainAfter{1};

}  // namespace

FrameStore::FrameStore(QString path) : m_path(std::move(path)), m_nativePath(m_path.toStdU16String()) {}

QString FrameStore::DefaultPath() {
    return WorkingFolder() + QStringLiteral("/whole.png");
}

FrameStore::FileIdentity FrameStore::Identity() const {
    std::error_code error;
    FileIdentity identity;
    identity.modified = std::filesystem::last_write_time(m_nativePath, error);
    if (!error) {
        identity.size = std::filesystem::file_size(m_nativePath, error);  // an error for a folder
    }
    if (error) {
        return {};
    }
    identity.exists = true;
    return identity;
}

bool FrameStore::Write(const SharedFrame& frame) {
    QImage marked = frame->background.image;
    marked.setText(kIdField, QString::fromLatin1(frame->id));
    if (frame->background.accent) {
        marked.setText(kAccentField, QColor(*frame->background.accent).name());
    }
    QDir().mkpath(QFileInfo(m_path).path());  // it may have vanished with its folder
    QSaveFile file(m_path);
    const bool saved =
        file.open(QIODevice::WriteOnly) && marked.save(&file, "PNG", kPngQuality) && CommitWhole(file);
    if (!saved) {
        qCWarning(backgroundLog).noquote()
            << "The background cannot be saved as" << m_path << "(" << file.errorString() << ").";
    }
    m_frame = frame;
    // A former frame's file that is still there is not this one's.
    m_identity = saved ? Identity() : FileIdentity();
    return saved;
}

bool FrameStore::Save(const SharedFrame& frame) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return Write(frame);
}

SharedFrame FrameStore::Load(const ScreenState& state) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const FileIdentity identity = Identity();
    QImageReader reader(m_path, "png");
    // By its header a picture of another size is not decoded at all.
    if (reader.size() != CanvasSize(state.orientation)) {
        return nullptr;
    }
    const QImage image = reader.read();
    if (image.isNull()) {
        return nullptr;
    }
    SharedFrame frame = MakePanelFrame(state, {image.convertToFormat(QImage::Format_RGB16), AccentOf(image)});
    if (image.text(kIdField).toLatin1() != frame->id) {
        return nullptr;
    }
    m_frame = frame;
    m_identity = identity;
    return frame;
}

void FrameStore::KeepSaved(std::chrono::milliseconds now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_frame || now < m_nextLook) {
        return;
    }
    const bool isThere = m_identity.exists && Identity() == m_identity;
    m_nextLook = now + (isThere || Write(m_frame) ? kLookAfter : kTryAgainAfter);
}

}  // namespace kivo
