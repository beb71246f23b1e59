#include <windows.h>

#include <mutex>

#include "session/quit_signals.h"

namespace kivo {

namespace {

std::mutex objectMutex;
QuitSignals* object = nullptr;

// The console the program was started from says Ctrl+C, or closes. On a thread that the system makes for it.
BOOL WINAPI OnConsoleEvent(DWORD event) {
    {
        const std::lock_guard<std::mutex> guard(objectMutex);
        if (object == nullptr) {
            return FALSE;
        }
        QMetaObject::invokeMethod(object, &QuitSignals::quitRequested, Qt::QueuedConnection);
    }
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) {
        // The system ends the process as soon as this is back; it ends meanwhile, by itself.
        Sleep(DWORD(kTimeToEnd.count()));
    }
    return TRUE;
}

}  // namespace

QuitSignals::QuitSignals(QObject* parent) : QObject(parent) {
    const std::lock_guard<std::mutex> guard(objectMutex);
    object = this;
    SetConsoleCtrlHandler(&OnConsoleEvent, TRUE);
}

QuitSignals::~QuitSignals() {
    SetConsoleCtrlHandler(&OnConsoleEvent, FALSE);
    const std::lock_guard<std::mutex> guard(objectMutex);
    object = nullptr;
}

}  // namespace kivo
