#pragma once

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace kivo::test {

inline constexpr uid_t kNobody = 65534;

// For folders that Unprivileged has to reach too: nobody else may get to the one of a build.
inline const QString kReachableFolder = QStringLiteral("/tmp/kivo-test-XXXXXX");

// A home folder of the test's own, empty at first; everything under it belongs to whoever runs the test.
class PrivateHome {
public:
    PrivateHome() { Use(m_dir.path()); }

    // Looks for folders under another path from here on.
    static void Use(const QString& home) {
        qputenv("HOME", home.toUtf8());
        qputenv("XDG_CONFIG_HOME", (home + QStringLiteral("/.config")).toUtf8());
        qputenv("XDG_DATA_HOME", (home + QStringLiteral("/.local/share")).toUtf8());
    }

    QString path(const QString& below = QString()) const { return m_dir.path() + below; }
    QString settings(const QString& below = QString()) const {
        return path(QStringLiteral("/.local/share/Kivo Tool")) + below;
    }
    QString marker() const { return path(QStringLiteral("/.config/Kivo Tool/Kivo Config.ini")); }

private:
    QTemporaryDir m_dir{kReachableFolder};
};

inline bool WriteFile(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

inline QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no such file>");
}

// While it lives, the rights of files hold for this test even if the superuser runs it.
class Unprivileged {
public:
    Unprivileged() : m_wasRoot(geteuid() == 0) {
        if (m_wasRoot && setresuid(kNobody, kNobody, 0) != 0) {
            qFatal("The test cannot give up its rights.");
        }
    }
    ~Unprivileged() {
        if (m_wasRoot && setresuid(0, 0, 0) != 0) {
            qFatal("The test cannot get its rights back.");
        }
    }
    Q_DISABLE_COPY(Unprivileged)

private:
    bool m_wasRoot;
};

}  // namespace kivo::test
