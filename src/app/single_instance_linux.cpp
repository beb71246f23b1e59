#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QFile>

#include "app/single_instance_platform.h"

namespace kivo {

QString InstanceNameSuffix() {
    return QStringLiteral(" %1").arg(::getuid());
}

// The semaphore is released by the system.
InstanceGuard TakeInstanceGuard(std::chrono::milliseconds /*longest*/) {
    return InstanceGuard::Held;
}

void ReleaseInstanceGuard() {}

// Window managers see to it by themselves.
void LetRunningCopyComeToFront() {}

void KeepKeyFile(const QString& nativeKey) {
    // Nothing is lost where it fails.
    static_cast<void>(::utimensat(AT_FDCWD, QFile::encodeName(nativeKey).constData(), nullptr, 0));
}

}  // namespace kivo
