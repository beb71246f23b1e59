#include "config/settings_guard.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QTemporaryFile>
#include <QtDebug>

#include "config/log_once.h"
#include "config/numbered_name.h"
#include "config/settings_file.h"

namespace kivo {
namespace {

// A write takes milliseconds, and the program runs once: an older lock was left by a copy that was killed.
constexpr int kStaleLockMs = 1000;
constexpr int kLockPatienceMs = 2500;

// An odd number of quotes would swallow the lines that follow.
bool QuotesAreClosed(const QByteArray& line) {
    bool open = false;
    for (int i = 0; i < line.size(); ++i) {
        if (line[i] == '\\') {
            ++i;
        } else if (line[i] == '"') {
            open = !open;
        }
    }
    return !open;
}

bool HasControlCharacter(const QByteArray& line) {
    for (const char byte : line) {
        if (static_cast<unsigned char>(byte) < 0x20 && byte != '\t') {
            return true;
        }
    }
    return false;
}

bool IsWellFormedLine(const QByteArray& line) {
    if (line.isEmpty() || line.startsWith(';')) {
        return true;
    }
    if (HasControlCharacter(line)) {
        return false;
    }
    if (line.startsWith('[')) {
        return line.endsWith(']');
    }
    return line.contains('=') && QuotesAreClosed(line);
}

QString KeptName(const QString& filePath, int number) {
    return NumberedName(filePath, ".broken", number);
}

// A name under which something can be kept; the last one is freed when all are taken.
QString FreeKeptName(const QString& filePath) {
    for (int number = 1; number <= kMostKeptFiles; ++number) {
        QString name = KeptName(filePath, number);
        if (!QFileInfo::exists(name) && !QFileInfo(name).isSymLink()) {
            return name;
        }
    }
    QString last = KeptName(filePath, kMostKeptFiles);
    QFile::remove(last);
    return last;
}

// QSettings waits for its lock without limit: for half a minute where a killed writer left an empty lock
// file, for ever where something else stands under that name. So the way is cleared before it comes.
bool LockIsFree(const QString& filePath) {
    const QString lockPath = filePath + QStringLiteral(".lock");
    if (!QFileInfo::exists(lockPath)) {
        return true;
    }
    QLockFile lock(lockPath);
    lock.setStaleLockTime(kStaleLockMs);
    return lock.tryLock(kLockPatienceMs);
}

bool KeepAside(const QString& filePath, SettingsFileState state) {
    const QString shownPath = QDir::toNativeSeparators(filePath);
    const QString keptName = FreeKeptName(filePath);
    const QString shownName = QDir::toNativeSeparators(keptName);
    const bool kept = state == SettingsFileState::Damaged ? QFile::copy(filePath, keptName)
                                                          : QDir().rename(filePath, keptName);
    if (!kept) {
        WarnOnce(QStringLiteral("%1 cannot be kept as %2; nothing is stored.").arg(shownPath, shownName));
        return false;
    }
    qWarning().noquote() << QStringLiteral("%1 was broken and is kept as %2.").arg(shownPath, shownName);
    return true;
}

}  // namespace

bool IsWellFormedIni(const QByteArray& content) {
    constexpr char kUtf8Mark[] = "\xEF\xBB\xBF";
    QByteArray text = content.startsWith(kUtf8Mark) ? content.mid(3) : content;
    text.replace('\r', '\n');
    const QList<QByteArray> lines = text.split('\n');
    for (const QByteArray& line : lines) {
        if (!IsWellFormedLine(line.trimmed())) {
            return false;
        }
    }
    return true;
}

SettingsFileState InspectSettingsFile(const QString& filePath) {
    const QFileInfo info(filePath);
    if (!info.exists()) {
        return SettingsFileState::Usable;
    }
    // Before opening: a pipe would hold the program up.
    if (!info.isFile()) {
        return SettingsFileState::NotAFile;
    }
    if (info.size() > kLargestSettingsFile) {
        return SettingsFileState::TooLarge;
    }
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        return SettingsFileState::Unreadable;
    }
    const QByteArray content = file.read(kLargestSettingsFile + 1);
    if (file.error() != QFileDevice::NoError) {
        return SettingsFileState::Unreadable;
    }
    if (content.size() > kLargestSettingsFile) {
        return SettingsFileState::TooLarge;
    }
    if (content.contains('\0')) {
        return SettingsFileState::NotText;
    }
    return IsWellFormedIni(content) ? SettingsFileState::Usable : SettingsFileState::Damaged;
}

QString Describe(SettingsFileState state) {
    switch (state) {
        case SettingsFileState::Damaged:
            return QStringLiteral("has lines that cannot be read; they are skipped.");
        case SettingsFileState::NotText:
            return QStringLiteral("is no settings file; the defaults are used.");
        case SettingsFileState::TooLarge:
            return QStringLiteral("is far too large for a settings file; the defaults are used.");
        case SettingsFileState::NotAFile:
            return QStringLiteral("is not a file; the defaults are used.");
        case SettingsFileState::Unreadable:
            return QStringLiteral("may not be read; the defaults are used and nothing is stored.");
        case SettingsFileState::Usable:
            break;
    }
    return QStringLiteral("is in order.");
}

bool PrepareForWriting(const QString& filePath) {
    const QString shownPath = QDir::toNativeSeparators(filePath);
    if (!LockIsFree(filePath)) {
        WarnOnce(QStringLiteral("%1 is locked; nothing is stored.").arg(shownPath));
        return false;
    }
    const SettingsFileState state = InspectSettingsFile(filePath);
    if (state == SettingsFileState::Unreadable) {
        WarnOnce(shownPath + QLatin1Char(' ') + Describe(state));
        return false;
    }
    return state == SettingsFileState::Usable || KeepAside(filePath, state);
}

bool HasRoom(const QString& filePath, qint64 growth) {
    // For the lock file, and so that the disk is not full to its last byte.
    constexpr qint64 kReserve = qint64{16} * 1024;
    // A link leads to where the new file is written.
    const QString target = QFileInfo(filePath).canonicalFilePath();
    const QFileInfo file(target.isEmpty() ? filePath : target);
    QTemporaryFile probe(file.path() + QStringLiteral("/XXXXXX.probe"));
    if (!probe.open()) {
        return true;
    }
    const QByteArray content(int(file.size() + growth + kReserve), '\n');
    return probe.write(content) == content.size() && probe.flush();
}

}  // namespace kivo
