#include <sys/socket.h>
#include <unistd.h>
#include <QSocketNotifier>
#include <csignal>

#include "app/quit_signals.h"

namespace kivo {

namespace {

// A signal handler may do next to nothing; it writes a byte that the event loop then reads. [0] is the
// handler's end.
int signalSockets[2] = {-1, -1};

extern "C" void WriteSignalByte(int) {
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(signalSockets[0], &byte, 1);
}

constexpr int kQuitSignals[] = {SIGINT, SIGTERM, SIGHUP};

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
    for (const int number : kQuitSignals) {
        sigaction(number, &action, nullptr);
    }
}

QuitSignals::~QuitSignals() {
    for (const int number : kQuitSignals) {
        std::signal(number, SIG_DFL);
    }
    for (int& socket : signalSockets) {
        if (socket >= 0) {
            ::close(socket);
            socket = -1;
        }
    }
}

}  // namespace kivo
