#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "main/console.h"

namespace kivo {

namespace {

bool isAttached = false;
bool hasOwnOutput = false;
bool hasOwnError = false;
UINT formerCodePage = 0;

bool IsRedirected(DWORD handle) {
    const HANDLE stream = GetStdHandle(handle);
    return stream != nullptr && stream != INVALID_HANDLE_VALUE && GetFileType(stream) != FILE_TYPE_UNKNOWN;
}

}  // namespace

void UseParentConsole() {
    const bool hasOutput = IsRedirected(STD_OUTPUT_HANDLE);
    const bool hasError = IsRedirected(STD_ERROR_HANDLE);
    if ((hasOutput && hasError) || AttachConsole(ATTACH_PARENT_PROCESS) == 0) {
        return;
    }
    // What is printed is UTF-8. The console is its owner's, who gets it back as it was.
    isAttached = true;
    formerCodePage = GetConsoleOutputCP();
    SetConsoleOutputCP(CP_UTF8);
    std::atexit(LeaveParentConsole);
    hasOwnOutput = !hasOutput && std::freopen("CONOUT$", "w", stdout) != nullptr;
    hasOwnError = !hasError && std::freopen("CONOUT$", "w", stderr) != nullptr;
}

void LeaveParentConsole() {
    if (!isAttached) {
        return;
    }
    isAttached = false;
    // What is printed from now on goes nowhere; a file it was sent to stays.
    if (hasOwnOutput) {
        std::freopen("NUL", "w", stdout);
    }
    if (hasOwnError) {
        std::freopen("NUL", "w", stderr);
    }
    SetConsoleOutputCP(formerCodePage);
    FreeConsole();
}

}  // namespace kivo
