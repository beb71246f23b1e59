#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include "config/replace_file.h"
#include "session/autostart.h"

namespace kivo {

namespace {

// The Desktop Application Autostart Specification's folder of the user.
QString EntryPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/autostart/kivo-screen.desktop");
}

}  // namespace

bool StartsAtLogin() {
    QFile file(EntryPath());
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    const QFileInfo program(ProgramOfEntry(file.readAll()));
    return program.isFile() && program.isExecutable();
}

QString SetStartsAtLogin(bool on) {
    const QString path = EntryPath();
    if (!on) {
        QFile file(path);
        // A link that leads nowhere does not exist, but is there.
        return file.remove() || !file.exists() ? QString() : file.errorString();
    }
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder)) {
        return QStringLiteral("The folder %1 cannot be created.").arg(folder);
    }
    QBuffer content;
    QFile former(path);
    const QByteArray entry = former.open(QIODevice::ReadOnly) ? former.readAll() : QByteArray();
    former.close();
    content.setData(SwitchedOnEntry(entry, QCoreApplication::applicationFilePath()));
    content.open(QIODevice::ReadOnly);
    return ReplaceFile(path, &content);
}

}  // namespace kivo
