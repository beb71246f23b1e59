#include "telemetry/energy_library.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace kivo {
namespace {

// In the order in which they are resolved. Deliberate: only four of them are called; the others are asked
// for so that a library of another make or age is refused.
constexpr std::array<const char*, 18> kEntryPointNames{
    "IntelEnergyLibInitialize",
    "ReadSample",
    "GetNumNodes",
    "GetNumMsrs",
    "GetMsrName",
    "GetMsrFunc",
    "GetPowerData",
    "IsGTAvailable",
    "GetGTFrequency",
    "GetSysTime",
    "GetTimeInterval",
    "GetIAFrequency",
    "GetTDP",
    "GetMaxTemperature",
    "GetTemperature",
    "GetBaseFrequency",
    "StartLog",
    "StopLog",
};

// Places in kEntryPointNames.
enum EntryPoint : std::size_t {
    Initialize = 0,
    SampleReader = 1,
    PowerReader = 6,
    TemperatureReader = 14,
};

// The library's prototypes. They return a bool, taken as the byte it travels in: whatever is in there can be
// read. On x64 there is but one calling convention.
using Answer = unsigned char;
using InitializeFunction = Answer();
using ReadSampleFunction = Answer();
using GetTemperatureFunction = Answer(int node, int* degreesCelsius);
using GetPowerDataFunction = Answer(int node, int meter, double* result, int* count);

const QString& FileName() {
    static const QString name = QStringLiteral("EnergyLib64.dll");
    return name;
}

QString ProcessEnvironment(const char* name) {
    return qEnvironmentVariable(name);
}

}  // namespace

QString EnergyLibrary::DefaultFolder() {
    return QStringLiteral("C:\\Program Files\\Intel\\Power Gadget 3.6");
}

EnergyLibrary::EnergyLibrary() : EnergyLibrary(Parts{}) {}

EnergyLibrary::EnergyLibrary(Parts parts) : m_parts(std::move(parts)) {
    static_assert(kEntryPointNames.size() == kEntryPointCount);
}

EnergyLibrary::~EnergyLibrary() {
    Release();
}

QString EnergyLibrary::FindFile() {
    const QString folder = FindFolder();
    // Where there are no drives the default folder would be one of that name in the current folder, which
    // may be anybody's.
    if (folder != m_parts.defaultFolder || QDir::isAbsolutePath(folder)) {
        const QFileInfo file(QDir(folder), FileName());
        if (file.exists()) {
            return file.absoluteFilePath();
        }
    }
    errorString = QStringLiteral("无法在指定路径下找到库文件。");
    return {};
}

bool EnergyLibrary::IsInstalled() {
    return !FindFile().isEmpty();
}

bool EnergyLibrary::Load() {
    const QString path = FindFile();
    if (path.isEmpty() || !Open(path)) {
        return false;
    }
    if (!Resolve()) {
        errorString = QStringLiteral("未能解析一个或多个函数指针");
        Release();  // or it could not be replaced by a complete one
        return false;
    }
    if (!Call<InitializeFunction>(Initialize)) {
        // Deliberate: the name is spelt like this.
        errorString = QStringLiteral("Intal Power Gadget library initializing failed.");
        return false;
    }
    return true;
}

QString EnergyLibrary::FindFolder() {
    const auto& read = m_parts.environment ? m_parts.environment : EnvironmentReader(ProcessEnvironment);
    QString folder = read("IPG_Dir");
    // Deliberate: what the version is does not matter, but without one the folder does not count either.
    const QString version = read("IPG_Ver");
    if (folder.isEmpty() || version.isEmpty()) {
        errorString = QStringLiteral(
            "Intel Power Gadget not found. Please install the application or check the user's path "
            "environment variable.");
        return m_parts.defaultFolder;
    }
    return folder;
}

bool EnergyLibrary::Open(const QString& path) {
    if (m_library && m_library->fileName() == path) {
        return true;
    }
    Release();
    // A new one each time: QLibrary tries a file only once.
    auto library = std::make_unique<QLibrary>(path);
    if (!library->load()) {
        errorString = QStringLiteral("从") + path + QStringLiteral("加载库失败: ") + library->errorString();
        return false;
    }
    m_library = std::move(library);
    return true;
}

bool EnergyLibrary::Resolve() {
    for (std::size_t i = 0; i < kEntryPointCount; ++i) {
        m_entryPoints[i] = m_library->resolve(kEntryPointNames[i]);
    }
    return std::find(m_entryPoints.begin(), m_entryPoints.end(), nullptr) == m_entryPoints.end();
}

void EnergyLibrary::Release() {
    m_entryPoints.fill(nullptr);
    if (m_library) {
        m_library->unload();
        m_library.reset();
    }
}

template <typename Function, typename... Arguments>
bool EnergyLibrary::Call(std::size_t entryPoint, Arguments... arguments) {
    auto* const function = reinterpret_cast<Function*>(m_entryPoints[entryPoint]);
    if (function == nullptr) {
        return false;
    }
    return function(arguments...) != 0;
}

bool EnergyLibrary::ReadSample() {
    return Call<ReadSampleFunction>(SampleReader);
}

bool EnergyLibrary::GetTemperature(int node, int* degreesCelsius) {
    return Call<GetTemperatureFunction>(TemperatureReader, node, degreesCelsius);
}

bool EnergyLibrary::GetPowerData(int node, int meter, double* result, int* count) {
    return Call<GetPowerDataFunction>(PowerReader, node, meter, result, count);
}

}  // namespace kivo
