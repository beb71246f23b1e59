#pragma once

// The whole program as a person has it: its own folder, real windows, real messages. Only the libraries of
// screen and counters beside it are the tests' own.

// clang-format off
#include <windows.h>
// clang-format on

#include <QProcess>
#include <QtTest>
#include <memory>
#include <vector>

#include "virtualscreen/panel_decoder.h"

namespace kivo::test {

inline constexpr int kPatienceMs = 60000;
// Until it is told to end; with a limit it says at the end what it sent.
inline const QStringList kForLong = {QStringLiteral("--run-for"), QStringLiteral("600")};

// A folder with all that is in it.
void CopyTree(const QString& from, const QString& to);

class WindowsProgram : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

protected:
    void Start(const QStringList& arguments = {}) { StartIn(m_folder->path(), arguments); }
    void StartIn(const QString& folder, const QStringList& arguments);
    // Another copy beside it; true once that has ended with status 0.
    bool SecondCopyEndsWell() const;
    // True once the program has ended by itself with status 0.
    bool EndsWell();
    // Tells it that the session ends, and waits for the end.
    bool EndsWellWithTheSession();
    HWND Window() const;
    bool IsPutAway() const { return !IsWindowVisible(Window()) || IsIconic(Window()); }
    void SetPlugged(bool isPlugged);
    // What the screen has taken so far.
    PanelState Panel() const;
    QByteArray Reports() const;
    std::vector<PanelReport> DecodedReports(PanelDecoder& decoder) const;
    void Mark(const QByteArray& bytes);
    bool IsMarked() const;

    std::unique_ptr<QTemporaryDir> m_folder;  // with the program in it
    std::unique_ptr<QTemporaryDir> m_screen;
    std::unique_ptr<QProcess> m_process;
    QProcessEnvironment m_environment;
};

}  // namespace kivo::test
