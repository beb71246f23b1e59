#pragma once

// Reads model-specific registers of the CPU through WinRing0, an outside party's signed kernel driver, and
// registers and removes that driver's service. Complete, but nothing calls it yet; the driver is not shipped
// (README.md says why). Windows only: on Linux every call answers false and does nothing. One thread, no
// locks.

#include <QLatin1String>
#include <QString>
#include <QtGlobal>
#include <array>
#include <functional>

namespace kivo {

// The driver's own names and numbers.
inline const QLatin1String kDriverFile64("WinRing0x64.sys");
inline const QLatin1String kDriverFile32("WinRing0.sys");
inline const QLatin1String kDriverDevice("\\\\.\\WinRing0_1_2_0");
inline constexpr quint32 kReadMsrControlCode = 0x9C402084;
// Name and display name of the service it is registered as.
inline const QLatin1String kDriverService("MyWinRing0");

// Characters of a path on Windows, with the zero at its end.
inline constexpr int kLongestPath = 260;

// Windows' value for a handle that is none.
inline void* const kNoDriver = reinterpret_cast<void*>(~quintptr(0));

// What the module knows, for the process as a whole.
struct MsrDriverState {
    void* driverHandle = kNoDriver;  // once opened it stays so until the process ends
    bool driverReady = true;         // while false, ReadMsr refuses; nothing here clears it
    bool isWow64 = false;            // takes the driver's 64-bit file; nothing here sets it
    QString driverPath;
};
extern MsrDriverState msrDriver;

// Whether this process is a 32-bit one on a 64-bit Windows. Deliberate: the answer is not stored in
// MsrDriverState; a 64-bit program would get false and still need the driver's 64-bit file.
bool IsWow64();

bool FileExists(const QString& path);

// Opens the driver whose file lies beside the program, and registers and starts its service where it does not
// run yet. False, with no service touched, where there is no such file.
bool InitDriver();

// Opens the driver's device. An open one stays open and counts as success.
bool OpenDriver();

// Registers the service for driverPath and starts it. One that is there already is only started; what fails
// is not told.
void InstallDriverService();

// Stops the service and removes it.
void UninstallDriver();

// The two halves of that. `scm` is an open service manager (SC_HANDLE). Stopping answers whether it was
// stopped; removing is true also where there is nothing to remove.
bool StopDriverService(void* scm, const QString& name);
bool RemoveDriverService(void* scm, const QString& name);

// Register number `index`, low and high half. False, and nothing written, where the driver is not open or
// not ready, a pointer is null or the driver refuses.
bool ReadMsr(quint32 index, quint32* low, quint32* high);

// What lies behind, without the system.

using MsrRequest = std::array<quint8, 4>;  // register number, little-endian
using MsrAnswer = std::array<quint8, 8>;   // low half, high half, each little-endian

// Where the driver's file should lie: in the folder of the program, which is its path up to the last
// backslash. Empty where the path names no folder (a driver is never looked for elsewhere) or would be longer
// than Windows takes.
QString DriverPath(const QString& programPath, bool isWow64);

MsrRequest MakeMsrRequest(quint32 index);
quint32 LowHalf(const MsrAnswer& answer);
quint32 HighHalf(const MsrAnswer& answer);

// ReadMsr over another way to ask an open driver (false: it refuses).
using MsrDriverCall = std::function<bool(void* driver, const MsrRequest& request, MsrAnswer* answer)>;
bool ReadMsr(quint32 index, quint32* low, quint32* high, const MsrDriverCall& ask);

}  // namespace kivo
