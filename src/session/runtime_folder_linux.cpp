#include "session/runtime_folder_linux.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QFile>
#include <cerrno>
#include <cstring>

namespace kivo {

FileHandle::~FileHandle() {
    if (m_handle >= 0) {
        ::close(m_handle);
    }
}

FileHandle OpenOwnFolder(const QString& path, QString& trouble) {
    FileHandle folder(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!folder || ::fstat(folder.Get(), &status) != 0) {
        trouble = QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
        return FileHandle();
    }
    if (status.st_uid != ::geteuid() || (status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        trouble = QStringLiteral("%1 is open to others.").arg(path);
        return FileHandle();
    }
    return folder;
}

QString RuntimeFolderPath() {
    const QString named = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return named.isEmpty() ? QStringLiteral("/run/user/%1").arg(::geteuid()) : named;
}

}  // namespace kivo
