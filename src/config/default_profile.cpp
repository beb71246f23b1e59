#include "config/default_profile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSettings>
#include <QtDebug>

#include <array>

#include "config/first_run_marker.h"
#include "config/folders.h"

namespace kivo {
namespace {

constexpr std::array kDefaultFiles{QLatin1String("/Config.ini"), QLatin1String("/whole.png")};
constexpr qint64 kCopyBlock = 64 * 1024;

/// Puts a complete copy of `source` in the place of `target` in one step; on failure `target` is as it was.
/// The copy is made by content, not by QFile::copy, so that a read-only original gives a writable copy.
/// Returns what went wrong, empty on success.
QString ReplaceByCopy(const QString& source, const QString& target) {
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly)) {
        return in.errorString();
    }
    if (QFileInfo(target).isFile() && !QFileInfo(target).isWritable()) {
        // Failing shows at open() below.
        QFile::setPermissions(target, QFile::permissions(target) | QFile::WriteOwner | QFile::WriteUser);
    }
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly)) {
        return out.errorString();
    }
    QByteArray block(static_cast<int>(kCopyBlock), Qt::Uninitialized);
    qint64 length = 0;
    while ((length = in.read(block.data(), block.size())) > 0) {
        if (out.write(block.constData(), length) != length) {
            return out.errorString();
        }
    }
    if (length < 0) {
        return in.errorString();
    }
    return out.commit() ? QString() : out.errorString();
}

void CopyDefaultFile(const QString& source, const QString& target) {
    const QString trouble = ReplaceByCopy(source, target);
    if (trouble.isEmpty()) {
        qDebug("File copied successfully.");
        return;
    }
    qWarning("Failed to copy file.");
    qWarning().noquote() << QStringLiteral("%1 to %2: %3")
                                .arg(QDir::toNativeSeparators(source), QDir::toNativeSeparators(target),
                                     trouble);
}

}  // namespace

void SeedDefaultProfile(const QString& applicationDir) {
    const QString settingsFolder = SettingsFolder();
    bool replace = false;
    if (IsFirstRun()) {
        MarkInitialized();
        configFolderCreated = 1;
        // Asked again instead of believing the code, which only tells of opening and closing. A mark that
        // cannot be set makes every start a first one, and none of them may take away what the user has made
        // since.
        replace = !IsFirstRun();
        if (!replace) {
            qWarning("The first-run mark cannot be set; existing settings are kept.");
        }
    }
    for (const QLatin1String& name : kDefaultFiles) {
        const QString target = settingsFolder + name;
        if (QFileInfo::exists(target)) {
            if (!replace) {
                continue;
            }
        } else {
            configFolderCreated = 1;
        }
        CopyDefaultFile(applicationDir + name, target);
    }
}

QString LoadProductName(const QString& applicationDir) {
    const QSettings profile(applicationDir + QStringLiteral("/DefaultProfile.bin"), QSettings::IniFormat);
    return profile.value(QStringLiteral("PROFILE/ProductName")).toString();
}

}  // namespace kivo
