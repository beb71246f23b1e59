#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include "session/outside_channel.h"
#include "session/runtime_folder_linux.h"

namespace kivo {

namespace {

constexpr char kSocketName[] = "kivo-screen.control";
constexpr int kWaiting = 64;  // callers that the system holds until they are taken
constexpr std::chrono::seconds kBreath{1};

QString SystemError() {
    return QString::fromLocal8Bit(std::strerror(errno));
}

// The runtime folder of the session; where there is none, one of the program's own beside the other temporary
// files.
FileHandle OpenRuntimeFolder(QString& trouble) {
    if (FileHandle folder = OpenOwnFolder(RuntimeFolderPath(), trouble)) {
        return folder;
    }
    const QString own = QDir::tempPath() + QStringLiteral("/kivo-screen-%1").arg(::geteuid());
    if (::mkdir(QFile::encodeName(own).constData(), S_IRWXU) != 0 && errno != EEXIST) {
        trouble = QStringLiteral("%1: %2").arg(own, SystemError());
        return FileHandle();
    }
    return OpenOwnFolder(own, trouble);
}

// By the open folder, so that neither its path's length nor what becomes of that path counts.
sockaddr_un AddressIn(const FileHandle& folder) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path =
        QByteArray("/proc/self/fd/") + QByteArray::number(folder.Get()) + '/' + kSocketName;
    std::copy(path.begin(), path.end(), address.sun_path);
    return address;
}

// What stands at the channel's place; a link is not followed.
bool LookAtPlace(const FileHandle& folder, struct stat& status) {
    return ::fstatat(folder.Get(), kSocketName, &status, AT_SYMLINK_NOFOLLOW) == 0;
}

bool IsOwnSocket(const FileHandle& folder) {
    struct stat status = {};
    return LookAtPlace(folder, status) && S_ISSOCK(status.st_mode) && status.st_uid == ::geteuid();
}

FileHandle NewSocket() {
    return FileHandle(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

bool Connect(const FileHandle& socket, const FileHandle& folder) {
    const sockaddr_un address = AddressIn(folder);
    return ::connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

bool IsOwnUser(const FileHandle& socket) {
    ucred peer = {};
    socklen_t length = sizeof peer;
    return ::getsockopt(socket.Get(), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 &&
           peer.uid == ::geteuid();
}

class SocketPeer final : public ChannelPeer {
public:
    explicit SocketPeer(FileHandle socket) : m_socket(std::move(socket)) {}

    void Start(std::function<void(const QByteArray&)> received, std::function<void()> gone) override {
        m_received = std::move(received);
        m_gone = std::move(gone);
        m_notifier = std::make_unique<QSocketNotifier>(m_socket.Get(), QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { Read(); });
    }

    bool IsThere() override {
        pollfd look = {m_socket.Get(), POLLRDHUP, 0};
        return ::poll(&look, 1, 0) == 0;
    }

    bool Send(const QByteArray& bytes) override {
        return ::send(m_socket.Get(), bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL) == bytes.size();
    }

private:
    // One piece each time: whoever sends without an end does not keep the window's thread.
    void Read() {
        char piece[4096];
        const ssize_t count = ::recv(m_socket.Get(), piece, sizeof piece, 0);
        if (count > 0) {
            m_received(QByteArray(piece, int(count)));
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            m_notifier->setEnabled(false);
            m_gone();
        }
    }

    FileHandle m_socket;
    std::function<void(const QByteArray&)> m_received;
    std::function<void()> m_gone;
    std::unique_ptr<QSocketNotifier> m_notifier;  // goes before the socket
};

class SocketListener final : public ChannelListener {
public:
    SocketListener(FileHandle folder, FileHandle socket, Arrived arrived)
        : m_folder(std::move(folder)),
          m_socket(std::move(socket)),
          m_arrived(std::move(arrived)),
          m_notifier(m_socket.Get(), QSocketNotifier::Read) {
        static_cast<void>(LookAtPlace(m_folder, m_place));
        QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { Accept(); });
    }
    // The next copy may have its own socket there by now.
    ~SocketListener() override {
        struct stat status = {};
        if (LookAtPlace(m_folder, status) && status.st_ino == m_place.st_ino &&
            status.st_dev == m_place.st_dev) {
            ::unlinkat(m_folder.Get(), kSocketName, 0);
        }
    }

private:
    void Accept() {
        FileHandle peer(::accept4(m_socket.Get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!peer && (errno == EMFILE || errno == ENFILE || errno == ENOMEM)) {
            // The caller goes on waiting, and would be told of again and again.
            m_notifier.setEnabled(false);
            QTimer::singleShot(kBreath, &m_notifier, [this] { m_notifier.setEnabled(true); });
        } else if (peer && IsOwnUser(peer)) {
            m_arrived(std::make_unique<SocketPeer>(std::move(peer)));
        }
    }

    const FileHandle m_folder;
    const FileHandle m_socket;
    const Arrived m_arrived;
    struct stat m_place = {};
    QSocketNotifier m_notifier;
};

// Waits for the socket; false when the deadline has passed.
bool Await(const FileHandle& socket, short events, QDeadlineTimer deadline) {
    while (true) {
        pollfd look = {socket.Get(), events, 0};
        const int ready = ::poll(&look, 1, int(deadline.remainingTime()));
        if (ready > 0) {
            return true;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

bool SendAll(const FileHandle& socket, const QByteArray& bytes, QDeadlineTimer deadline) {
    int sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            ::send(socket.Get(), bytes.constData() + sent, size_t(bytes.size() - sent), MSG_NOSIGNAL);
        if (count > 0) {
            sent += int(count);
        } else if ((errno != EAGAIN && errno != EINTR) || !Await(socket, POLLOUT, deadline)) {
            return false;
        }
    }
    return true;
}

}  // namespace

std::unique_ptr<ChannelListener> ChannelListener::Listen(Arrived arrived, QString& trouble) {
    FileHandle folder = OpenRuntimeFolder(trouble);
    if (!folder) {
        return nullptr;
    }
    struct stat status = {};
    if (LookAtPlace(folder, status)) {
        // So many callers may wait there that it takes no more.
        if (IsOwnSocket(folder) && (Connect(NewSocket(), folder) || errno == EAGAIN)) {
            trouble = QStringLiteral("another copy has it");
            return nullptr;
        }
        // A socket that a killed copy left, or a link, which goes by itself: what it leads to stays.
        if ((S_ISSOCK(status.st_mode) || S_ISLNK(status.st_mode)) &&
            ::unlinkat(folder.Get(), kSocketName, 0) != 0) {
            trouble = SystemError();
            return nullptr;
        }
    }
    FileHandle socket = NewSocket();
    const sockaddr_un address = AddressIn(folder);
    if (!socket || ::bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket.Get(), kWaiting) != 0) {
        trouble = SystemError();
        return nullptr;
    }
    return std::make_unique<SocketListener>(std::move(folder), std::move(socket), std::move(arrived));
}

ChannelReply CallChannel(const QByteArray& bytes, const std::function<bool(const QByteArray&)>& isWhole,
                         QDeadlineTimer deadline) {
    ChannelReply reply;
    QString trouble;
    const FileHandle folder = OpenRuntimeFolder(trouble);
    const FileHandle socket = NewSocket();
    if (!folder || !socket || !IsOwnSocket(folder) || !Connect(socket, folder) || !IsOwnUser(socket)) {
        return reply;
    }
    reply.state = ChannelReply::State::Silent;
    if (!SendAll(socket, bytes, deadline)) {
        return reply;
    }
    while (Await(socket, POLLIN, deadline)) {
        char piece[1024];
        const ssize_t count = ::recv(socket.Get(), piece, sizeof piece, 0);
        if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
            break;
        }
        reply.bytes.append(piece, std::max(int(count), 0));
        if (isWhole(reply.bytes)) {
            reply.state = ChannelReply::State::Answered;
            break;
        }
    }
    return reply;
}

}  // namespace kivo
