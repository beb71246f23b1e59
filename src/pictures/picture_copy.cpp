#include "pictures/picture_copy.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <algorithm>

#include "pictures/picture_decoder.h"
#include "pictures/picture_name.h"

namespace kivo {

namespace {

// Beyond that somebody plays with us.
constexpr int kMostOfOneTitle = 999;

bool HasNoPlaceInATitle(QChar character) {
    return !character.isLetterOrNumber() && !character.isMark() && character != QLatin1Char(' ') &&
           character != QLatin1Char('-') && character != QLatin1Char('_');
}

// Windows' names for devices, with any ending.
bool IsDeviceName(const QString& title) {
    static const QRegularExpression names(QStringLiteral("^(con|prn|aux|nul|com.|lpt.)$"),
                                          QRegularExpression::CaseInsensitiveOption);
    return names.match(title).hasMatch();
}

bool Holds(const QString& path, const QByteArray& bytes) {
    const QFileInfo info(path);
    if (info.isSymLink() || !info.isFile() || info.size() != bytes.size()) {
        return false;
    }
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(bytes.size() + 1) == bytes;
}

bool IsTaken(const QString& path) {
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

}  // namespace

QByteArray PictureToHandOn(const QImage& picture) {
    // Of the pixels alone: a copy of the picture would have its texts.
    const QImage plain =
        picture.convertToFormat(picture.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    const QImage bare(plain.constBits(), plain.width(), plain.height(), plain.bytesPerLine(), plain.format());
    QByteArray bytes;
    QBuffer buffer(&bytes);
    return !picture.isNull() && buffer.open(QIODevice::WriteOnly) && bare.save(&buffer, "PNG") ? bytes
                                                                                               : QByteArray();
}

QString SuffixOfPicture(const QByteArray& bytes) {
    QString suffix;
    if (bytes.startsWith(QByteArrayLiteral("\x89PNG\r\n\x1A\n"))) {
        suffix = QStringLiteral("png");
    } else if (bytes.startsWith(QByteArrayLiteral("\xFF\xD8\xFF"))) {
        suffix = QStringLiteral("jpg");
    } else {
        return {};
    }
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    constexpr int kEnoughToKnow = 320;
    const auto useful = [](QSize size) {
        return size.boundedTo(size.scaled(kEnoughToKnow, kEnoughToKnow, Qt::KeepAspectRatioByExpanding));
    };
    return buffer.open(QIODevice::ReadOnly) && !DecodePicture(buffer, useful).image.isNull() ? suffix
                                                                                             : QString();
}

QString PlainFileTitle(const QString& text) {
    QString title = text;
    title.truncate(int(std::remove_if(title.begin(), title.end(), HasNoPlaceInATitle) - title.begin()));
    title = CleanPictureName(title);
    return title.isEmpty() || IsDeviceName(title) ? QStringLiteral("picture") : title;
}

PictureCopy KeepPictureCopy(const QByteArray& bytes, const QString& title, const QString& suffix,
                            const QString& folder) {
    if (!QDir().mkpath(folder)) {
        return {QString(), false, QStringLiteral("The folder %1 cannot be made.").arg(folder)};
    }
    const QDir dir(folder);
    // Whole before it has its name.
    QTemporaryFile file(dir.filePath(QStringLiteral("XXXXXX.part")));
    bool isWritten = false;
    for (int number = 1; number <= kMostOfOneTitle; ++number) {
        const QString name = number == 1 ? title : QStringLiteral("%1 %2").arg(title).arg(number);
        const QString path = dir.filePath(name + QLatin1Char('.') + suffix);
        if (Holds(path, bytes)) {
            return {path, false, QString()};
        }
        if (IsTaken(path)) {
            continue;
        }
        isWritten = isWritten || (file.open() && file.write(bytes) == bytes.size() && file.flush());
        if (!isWritten) {
            return {QString(), false, file.errorString()};
        }
        // It writes over nothing: what has come there meanwhile takes the name.
        if (file.rename(path)) {
            file.setAutoRemove(false);
            return {path, true, QString()};
        }
    }
    return {QString(), false, QStringLiteral("No name is free for the picture.")};
}

}  // namespace kivo
