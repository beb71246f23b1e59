#pragma once

// The vendor's library for power and temperature of the processor package, which users install separately:
// found and loaded at run time, never linked against. Nothing but a file of its kind is needed, so it works
// wherever QLibrary does. One object belongs to one thread: the library's own (EnergyLibraryThread), or for a
// probe the GUI thread.

#include <QLibrary>
#include <QString>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>

namespace kivo {

// Value of an environment variable; empty where it is not set.
using EnvironmentReader = std::function<QString(const char* name)>;

class EnergyLibrary {
public:
    // Where the library is usually installed.
    static QString DefaultFolder();

    struct Parts {
        EnvironmentReader environment = {};  // default: the process's own
        QString defaultFolder = DefaultFolder();
    };

    EnergyLibrary();
    explicit EnergyLibrary(Parts parts);
    ~EnergyLibrary();
    EnergyLibrary(const EnergyLibrary&) = delete;
    EnergyLibrary& operator=(const EnergyLibrary&) = delete;

    // Whether there is a file to load where the library is looked for. If not, the reason is in errorString.
    bool IsInstalled();

    // Finds, loads, resolves and initialises the library. On failure the reason is in errorString; it may be
    // tried again. A library that is complete but does not start stays loaded for that.
    bool Load();
    // Unloads the library if it is loaded.
    void Release();

    // The library's own calls, to be made after Load has succeeded. Each tells whether it succeeded; what it
    // could not fill in it usually leaves as it was.
    bool ReadSample();
    // Package temperature of a node (processor) in degrees Celsius.
    bool GetTemperature(int node, int* degreesCelsius);
    // What a meter of a node measured between the last two samples: room for three numbers, of which count
    // are filled. For the package meter (1) the first one is the average power in watts.
    bool GetPowerData(int node, int meter, double* result, int* count);

    // Why Load failed last; empty at first. Deliberate: an incomplete environment is noted here although
    // loading goes on, so that text may stand here after a success too.
    QString errorString;

private:
    static constexpr std::size_t kEntryPointCount = 18;

    // Folder to look in, by the environment or the default one.
    QString FindFolder();
    // The library's file; empty where there is none.
    QString FindFile();
    bool Open(const QString& path);
    bool Resolve();
    template <typename Function, typename... Arguments>
    bool Call(std::size_t entryPoint, Arguments... arguments);

    const Parts m_parts;
    std::unique_ptr<QLibrary> m_library;  // null: not loaded
    std::array<QFunctionPointer, kEntryPointCount> m_entryPoints{};
};

}  // namespace kivo
