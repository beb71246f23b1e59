#include "compose/background_store.h"

#include <QLoggingCategory>
#include <QSaveFile>

#include "compose/background_picture.h"
#include "config/folders.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(backgroundLog, "kivo.background")

// Light compression (0 is none, 100 the quickest): the file is written at every apply and read by nobody
// else.
constexpr int kPngQuality = 80;

QImage OnCanvas(const QImage& background, const QSize& canvas) {
    if (background.isNull()) {
        QImage black(canvas, QImage::Format_RGB16);
        black.fill(Qt::black);
        return black;
    }
    if (background.size() == canvas) {
        return background;
    }
    return background.scaled(canvas, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB16);
}

}  // namespace

BackgroundStore::BackgroundStore(QString path)
    : m_path(std::move(path)), m_nativePath(m_path.toStdU16String()) {}

QString BackgroundStore::DefaultPath() {
    return WorkingFolder() + QStringLiteral("/whole.png");
}

BackgroundStore::FileIdentity BackgroundStore::Identity() const {
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

bool BackgroundStore::Exists() const {
    return Identity().exists;
}

bool BackgroundStore::Save(const QImage& background) {
    QSaveFile file(m_path);
    const bool saved =
        file.open(QIODevice::WriteOnly) && background.save(&file, "PNG", kPngQuality) && file.commit();
    if (!saved) {
        qCWarning(backgroundLog).noquote()
            << "The background cannot be saved as" << m_path << "(" << file.errorString() << ").";
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_background = background;
    m_canvas = QImage();
    m_identity = Identity();
    m_known = true;
    return saved;
}

QImage BackgroundStore::Load(Orientation orientation) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const FileIdentity identity = Identity();
    if (!m_known || !(identity == m_identity)) {
        m_background = identity.exists ? LoadPicture(m_path).convertToFormat(QImage::Format_RGB16) : QImage();
        m_identity = identity;
        m_known = true;
        m_canvas = QImage();
    }
    const QSize canvas = CanvasSize(orientation);
    if (m_canvas.size() != canvas) {
        m_canvas = OnCanvas(m_background, canvas);
    }
    return m_canvas;
}

}  // namespace kivo
