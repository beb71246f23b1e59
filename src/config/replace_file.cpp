#include "config/replace_file.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>
#include <QSaveFile>

#include <algorithm>

namespace kivo {
namespace {

constexpr int kCopyBlock = 64 * 1024;

}  // namespace

QString ReplaceFile(const QString& target, QIODevice* source) {
    const QFileInfo former(target);
    const QDateTime formerTime = former.lastModified();
    if (former.isFile() && !former.isWritable()) {
        // Where this fails, open() below tells.
        QFile::setPermissions(target, former.permissions() | QFile::WriteOwner | QFile::WriteUser);
    }
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly)) {
        return out.errorString();
    }
    QByteArray block(kCopyBlock, Qt::Uninitialized);
    qint64 length = 0;
    while ((length = source->read(block.data(), block.size())) > 0) {
        if (out.write(block.constData(), length) != length) {
            return out.errorString();
        }
    }
    if (length < 0) {
        return source->errorString();
    }
    // QSettings keeps what it has read and tells a new file from the old one by size and time alone. File
    // times move in steps of some milliseconds, so two versions of one size could pass for the same.
    if (!out.flush()) {
        return out.errorString();
    }
    if (formerTime.isValid()) {
        const QDateTime later = std::max(QDateTime::currentDateTime(), formerTime.addMSecs(1));
        out.setFileTime(later, QFileDevice::FileModificationTime);
    }
    return CommitWhole(out) ? QString() : out.errorString();
}

QString ReplaceFileByCopy(const QString& target, const QString& source) {
    QFile original(source);
    return original.open(QIODevice::ReadOnly) ? ReplaceFile(target, &original) : original.errorString();
}

bool CommitWhole(QSaveFile& file) {
    return file.flush() && file.commit();
}

}  // namespace kivo
