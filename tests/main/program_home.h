#pragma once

// A home of its own for the program as a process of its own, and what it is started with.

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QtTest>

#include "support/process_end.h"

namespace kivo::test {

// Until something is given up; a machine with much else to do takes its time.
inline constexpr int kLongMs = 60000;

// Ends the program as the system would, and waits for it.
inline void End(QProcess& process) {
    process.terminate();
    QCOMPARE(ExitCode(process, kLongMs), 0);
}

class ProgramHome {
public:
    bool IsValid() const { return m_dir.isValid(); }
    QString File(const char* name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    // No display; nothing of the person's who runs the tests.
    QProcessEnvironment Environment() const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
            environment.remove(QString::fromLatin1(name));
        }
        for (const char* name : {"HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
            environment.insert(QString::fromLatin1(name), m_dir.path());
        }
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), File("config"));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), File("data"));
        return environment;
    }

private:
    const QTemporaryDir m_dir;
};

}  // namespace kivo::test
