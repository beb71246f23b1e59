#include "pictures/picture_reader.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>

#include <atomic>
#include <cmath>

#include "pictures/picture_decoder.h"
#include "pictures/picture_path.h"
#include "pictures/picture_work.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(pictureLog, "kivo.picture")

// Pictures are decoded to about this many pixels on the shorter side: several times the panel's, so that a
// trim frame still finds detail.
constexpr int kUsefulShortSide = 1080;

// Tells while it is being read.
class WatchedFile final : public QFile {
public:
    WatchedFile(const QString& path, const PictureWork& work) : QFile(path), m_work(work) {}

protected:
    qint64 readData(char* data, qint64 length) override {
        const PictureWork::FileAccess access(m_work);
        return QFile::readData(data, length);
    }

private:
    const PictureWork& m_work;
};

QSize SizeForPanel(QSize size) {
    const int shortSide = qMin(size.width(), size.height());
    if (shortSide > kUsefulShortSide) {
        size.scale(kUsefulShortSide, kUsefulShortSide, Qt::KeepAspectRatioByExpanding);
    }
    const double pixels = double(size.width()) * size.height();
    if (pixels > double(kMostPicturePixels)) {
        // Rounded down, or the long side would bring it over the bound again.
        const double share = std::sqrt(double(kMostPicturePixels) / pixels);
        size = QSize(qMax(1, int(size.width() * share)), qMax(1, int(size.height() * share)));
    }
    return size;
}

// A picture that has not been decoded at reduced size: no larger than one that has.
QImage Reduced(const QImage& picture) {
    constexpr int kMostDepth = 32;
    const QImage plain =
        picture.depth() > kMostDepth ? picture.convertToFormat(QImage::Format_ARGB32) : picture;
    const QSize size = SizeForPanel(plain.size());
    return size == plain.size() ? plain : plain.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

Picture Stopped() {
    return NoPicture(PictureFailure::Stopped, QStringLiteral("was not wanted any more"));
}

}  // namespace

Picture LookUpPicture(const QString& path, const PictureWork& work) {
    if (work.IsStopped()) {
        return Stopped();
    }
    const PictureWork::FileAccess access(work);
    const QFileInfo info(path);
    // Looked at before it is opened: a pipe would never give an end.
    if (path.isEmpty() || !info.isFile()) {
        return NoPicture(PictureFailure::Missing, QStringLiteral("is not a file"));
    }
    // A part of the program changes with the program only.
    const qint64 modified = IsResource(path) ? 0 : info.lastModified().toMSecsSinceEpoch();
    return {QImage(), PictureFailure::None, QString(), {modified, info.size()}};
}

Picture DecodePictureFile(const QString& path, const Picture& looked, const UsefulSize& usefulSize,
                          const PictureWork& work) {
    WatchedFile file(path, work);
    {
        const PictureWork::FileAccess access(work);
        if (!file.open(QIODevice::ReadOnly)) {
            return NoPicture(PictureFailure::Unreadable,
                             QStringLiteral("cannot be read (%1)").arg(file.errorString()));
        }
    }
    DecodedPicture decoded = DecodePicture(file, usefulSize);
    if (work.IsStopped()) {
        return Stopped();
    }
    // A picture whose reading failed may have been decoded in part. The next reading may do better, so it has
    // no version.
    if (file.error() != QFileDevice::NoError) {
        return NoPicture(PictureFailure::Unreadable,
                         QStringLiteral("cannot be read (%1)").arg(file.errorString()));
    }
    if (decoded.image.isNull()) {
        return NoPicture(PictureFailure::Unreadable, decoded.refusal, looked.version);
    }
    return {std::move(decoded.image), PictureFailure::None, QString(), looked.version};
}

Picture ReadPicture(const QString& path, const Picture* former, const PictureWork& work) {
    const Picture looked = LookUpPicture(path, work);
    if (looked.failure != PictureFailure::None || work.IsStopped()) {
        return looked.failure == PictureFailure::None ? Stopped() : looked;
    }
    if (former != nullptr && IsSameVersion(former->version, looked.version)) {
        return *former;
    }
    Picture picture = DecodePictureFile(path, looked, SizeForPanel, work);
    // Nothing is scaled any more once the end has come: that may need what the program has put away by then.
    if (picture.failure == PictureFailure::None) {
        picture.image = Reduced(picture.image);
    }
    return picture;
}

QImage LoadPicture(const QString& path) {
    const std::atomic<bool> stop{false};
    const Picture picture = ReadPicture(path, nullptr, PictureWork(stop));
    if (picture.failure != PictureFailure::None) {
        LogPictureFailure(path, picture);
    }
    return picture.image;
}

void LogPictureFailure(const QString& path, const Picture& picture) {
    qCWarning(pictureLog).noquote() << "The picture" << path << picture.reason + QLatin1Char('.');
}

}  // namespace kivo
