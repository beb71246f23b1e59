#pragma once

// The energy library on a thread of its own, for its calls may hang, and neither the other sensors nor the
// program's end wait for them. Made and used on the thread that reads the sensors.

#include <QString>

#include <memory>
#include <optional>
#include <thread>

#include "telemetry/energy_library.h"

namespace kivo {

// Of the processor package.
struct PackageNumbers {
    double watts = 0.0;
    int degreesCelsius = 0;
};

class EnergyLibraryThread {
public:
    explicit EnergyLibraryThread(EnergyLibrary::Parts parts);
    // Lets the library go. A call that hangs is given half a second once more; then it is left to the system,
    // thread and all.
    ~EnergyLibraryThread();
    EnergyLibraryThread(const EnergyLibraryThread&) = delete;
    EnergyLibraryThread& operator=(const EnergyLibraryThread&) = delete;

    // Finds and starts the library, unless that has been done; to be tried again where it fails. Where there
    // is no such file nothing is asked of any thread.
    bool Load();
    bool IsLoaded() const { return m_answer.isLoaded; }
    // Why Load failed last.
    QString ErrorString() const { return m_answer.errorString; }

    // Takes a sample of a library that is loaded. False where no answer has come within half a second, or the
    // call before has not ended yet.
    bool ReadSample();
    // Of the time between the last two samples; nothing before the second. Deliberate: nothing asks whether a
    // call succeeded. The temperature of a failed one is 0, its power what the call before left behind.
    std::optional<PackageNumbers> Numbers() const { return m_answer.numbers; }

private:
    struct Answer {
        bool isLoaded = false;
        QString errorString;
        std::optional<PackageNumbers> numbers;
    };
    // What both threads see; it outlives this object where a call hangs.
    struct Shared;

    static void Run(const std::shared_ptr<Shared>& shared, EnergyLibrary::Parts parts);
    // One step of the library's: it is loaded, or gives a sample.
    bool Ask();

    EnergyLibrary m_finder;  // looks for the file, and enters nothing of it
    const EnergyLibrary::Parts m_parts;
    Answer m_answer;  // the last there was
    std::shared_ptr<Shared> m_shared;
    std::thread m_thread;  // not before there is a file
};

}  // namespace kivo
