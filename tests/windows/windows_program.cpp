#include "windows_program.h"

#include "../config/forget_mark.h"
#include "support/built_paths.h"
#include "support/process_end.h"
#include "windows_desk.h"

namespace kivo::test {

namespace {

constexpr char kMarkKey[] = "Software\\Kivo Tool\\Kivo Config";
constexpr char kMarkName[] = "isInitialized";

}  // namespace

void CopyTree(const QString& from, const QString& to) {
    QVERIFY(QDir().mkpath(to));
    const QFileInfoList entries = QDir(from).entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        const QString target = to + QLatin1Char('/') + entry.fileName();
        if (entry.isDir()) {
            CopyTree(entry.filePath(), target);
        } else {
            QVERIFY2(QFile::copy(entry.filePath(), target), qPrintable(target));
        }
    }
}

void WindowsProgram::initTestCase() {
    m_folder = std::make_unique<QTemporaryDir>();
    const QDir source(ProgramFolder());
    for (const char* file :
         {"KivoScreen.exe", "Config.ini", "whole.png", "Default.ini", "DefaultProfile.bin"}) {
        const QString name = QLatin1String(file);
        QVERIFY2(QFile::copy(source.filePath(name), m_folder->filePath(name)), file);
    }
    CopyTree(source.filePath(QStringLiteral("lang")), m_folder->filePath(QStringLiteral("lang")));
    CopyTree(source.filePath(QStringLiteral("skin")), m_folder->filePath(QStringLiteral("skin")));
    for (const char* library : {"pdh.dll", "hidapi.dll"}) {
        const QString name = QLatin1String(library);
        QVERIFY2(QFile::copy(InTestFolder("libraries/") + name, m_folder->filePath(name)), library);
    }
}

void WindowsProgram::init() {
    m_screen = std::make_unique<QTemporaryDir>();
    SetPlugged(true);
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert(QStringLiteral("KIVO_TEST_SCREEN"), m_screen->path());
    m_environment.insert(QStringLiteral("KIVO_TEST_UTILISATIONS"), QStringLiteral("37.99"));
    ForgetMark();
    const QString roaming =
        QFileInfo(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).path();
    QVERIFY(QDir(roaming + QStringLiteral("/Kivo Tool")).removeRecursively());
}

void WindowsProgram::cleanup() {
    m_process.reset();  // kills what still runs
}

void WindowsProgram::StartIn(const QString& folder, const QStringList& arguments) {
    m_process = std::make_unique<QProcess>();
    m_process->setProcessEnvironment(m_environment);
    m_process->start(folder + QStringLiteral("/KivoScreen.exe"), arguments);
    QVERIFY(m_process->waitForStarted(kPatienceMs));
}

bool WindowsProgram::SecondCopyEndsWell() const {
    QProcess second;
    second.setProcessEnvironment(m_environment);
    second.start(m_folder->filePath(QStringLiteral("KivoScreen.exe")), QStringList());
    return ExitCode(second, kPatienceMs) == 0;
}

bool WindowsProgram::EndsWell() {
    return ExitCode(*m_process, kPatienceMs) == 0;
}

bool WindowsProgram::EndsWellWithTheSession() {
    SendMessageW(Window(), WM_ENDSESSION, TRUE, 0);
    return EndsWell();
}

HWND WindowsProgram::Window() const {
    return FindWindowW(nullptr, L"Kivo Screen");
}

void WindowsProgram::SetPlugged(bool isPlugged) {
    QFile file(m_screen->filePath(QStringLiteral("plugged")));
    if (isPlugged) {
        QVERIFY(file.open(QIODevice::WriteOnly));
    } else {
        QVERIFY(file.remove());
    }
}

QByteArray WindowsProgram::Reports() const {
    QFile file(m_screen->filePath(QStringLiteral("reports")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::vector<PanelReport> WindowsProgram::DecodedReports(PanelDecoder& decoder) const {
    const QByteArray reports = Reports();
    std::vector<PanelReport> decoded;
    int at = 0;
    while (at + 4 <= reports.size()) {
        quint32 length = 0;
        for (int place = 0; place < 4; ++place) {
            length |= quint32(quint8(reports[at + place])) << (8 * place);
        }
        at += 4;
        if (at + int(length) > reports.size()) {
            break;  // it is just being written
        }
        decoded.push_back(decoder.Decode(reinterpret_cast<const quint8*>(reports.constData()) + at, length));
        at += int(length);
    }
    return decoded;
}

PanelState WindowsProgram::Panel() const {
    PanelDecoder decoder;
    DecodedReports(decoder);
    return decoder.State();
}

void WindowsProgram::Mark(const QByteArray& bytes) {
    HKEY key = nullptr;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, kMarkKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr),
             LSTATUS(ERROR_SUCCESS));
    RegSetValueExA(key, kMarkName, 0, REG_SZ, reinterpret_cast<const BYTE*>(bytes.constData()),
                   static_cast<DWORD>(bytes.size()));
    RegCloseKey(key);
}

bool WindowsProgram::IsMarked() const {
    char bytes[16] = {};
    DWORD size = sizeof(bytes);
    return RegGetValueA(HKEY_CURRENT_USER, kMarkKey, kMarkName, RRF_RT_REG_SZ, nullptr, bytes, &size) ==
               ERROR_SUCCESS &&
           QByteArray(bytes, static_cast<int>(size)) == QByteArray("true\0", 5);
}

}  // namespace kivo::test
