#include <sys/socket.h>
#include <unistd.h>
#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>

#include "session/quit_signals.h"

namespace kivo {

namespace {

// A signal handler may do next to nothing; it writes a byte that the event loop then reads. [0] is the
// handler's end.
int signalSockets[2] = {-1, -1};

extern "C" void WriteSignalByte(int) {
    const int error = errno;
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalSockets[0], &byte, 1);
    errno = error;
}

constexpr std::array<int, 3> kQuitSignals{SIGINT, SIGTERM, SIGHUP};

// What was there before, for the way back.
std::array<struct sigaction, kQuitSignals.size()> formerActions;

}  // namespace

QuitSignals::QuitSignals(QObject* parent) : QObject(parent) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalSockets) != 0) {
        return;
    }
    auto* notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char bytes[16];
        while (::read(signalSockets[1], bytes, sizeof bytes) > 0) {
        }
        Q_EMIT quitRequested();
    });
    struct sigaction action = {};
    action.sa_handler = WriteSignalByte;
    action.sa_flags = SA_RESTART;
    for (size_t k = 0; k < kQuitSignals.size(); ++k) {
        ::sigaction(kQuitSignals[k], nullptr, &formerActions[k]);
        // A signal that is ignored was meant to be: the program was started by nohup or in the background.
        if (formerActions[k].sa_handler != SIG_IGN) {
            ::sigaction(kQuitSignals[k], &action, nullptr);
        }
    }
}

QuitSignals::~QuitSignals() {
    if (signalSockets[0] < 0) {
        return;
    }
    for (size_t k = 0; k < kQuitSignals.size(); ++k) {
        ::sigaction(kQuitSignals[k], &formerActions[k], nullptr);
    }
    for (int& socket : signalSockets) {
        if (socket >= 0) {
            ::close(socket);
            socket = -1;
        }
    }
}

}  // namespace kivo
