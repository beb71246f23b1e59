#include <windows.h>
// After windows.h, whose types they use.
#include <psapi.h>
#include <tlhelp32.h>

#include "process_use.h"

namespace kivo::test {

namespace {

int CountThreads() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 thread = {};
    thread.dwSize = sizeof thread;
    int count = 0;
    for (BOOL found = Thread32First(snapshot, &thread); found != FALSE;
         found = Thread32Next(snapshot, &thread)) {
        count += thread.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

}  // namespace

ProcessUse MeasureProcess() {
    PROCESS_MEMORY_COUNTERS memory = {};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return {qint64(memory.PagefileUsage), int(handles), CountThreads()};
}

}  // namespace kivo::test
