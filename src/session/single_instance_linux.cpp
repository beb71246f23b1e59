#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QThread>
#include <cerrno>

#include "session/single_instance_platform.h"

namespace kivo {

namespace {

constexpr unsigned long kTryEveryMs = 2;

int guardFile = -1;  // open while the guard is held

// Opened afresh each time: the file may have been cleaned away since. -1 where it cannot be had, or is not
// this user's own.
int OpenGuardFile() {
    const QString path =
        QDir::tempPath() + QStringLiteral("/Kivo Screen Setting Guard") + InstanceNameSuffix();
    const int file = ::open(QFile::encodeName(path).constData(),
                            O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR);
    struct stat status = {};
    if (file >= 0 &&
        (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != ::geteuid())) {
        ::close(file);
        return -1;
    }
    return file;
}

bool IsCleanedAway(int file) {
    struct stat status = {};
    return ::fstat(file, &status) == 0 && status.st_nlink == 0;
}

}  // namespace

QString InstanceNameSuffix() {
    return QStringLiteral(" %1").arg(::getuid());
}

// The system gives the semaphore back for a copy that is killed, but not for one that is stopped, and Qt
// waits for a semaphore without a limit. A file lock can be tried for as long as one likes, and goes with its
// holder too.
InstanceGuard TakeInstanceGuard(std::chrono::milliseconds longest) {
    const QDeadlineTimer deadline(longest);
    while (true) {
        const int file = OpenGuardFile();
        if (file < 0) {
            return InstanceGuard::Held;  // the semaphore alone has to do
        }
        const bool isLocked = ::flock(file, LOCK_EX | LOCK_NB) == 0;
        const bool isTaken = !isLocked && (errno == EWOULDBLOCK || errno == EINTR);
        if (!isTaken && !IsCleanedAway(file)) {
            guardFile = file;  // where files cannot be locked, the semaphore alone again
            return InstanceGuard::Held;
        }
        ::close(file);
        if (deadline.hasExpired()) {
            return InstanceGuard::Refused;
        }
        QThread::msleep(kTryEveryMs);
    }
}

void ReleaseInstanceGuard() {
    if (guardFile >= 0) {
        ::close(guardFile);
        guardFile = -1;
    }
}

// Window managers see to it by themselves.
void LetRunningCopyComeToFront() {}

void KeepKeyFile(const QString& nativeKey) {
    // Nothing is lost where it fails.
    static_cast<void>(::utimensat(AT_FDCWD, QFile::encodeName(nativeKey).constData(), nullptr, 0));
}

}  // namespace kivo
