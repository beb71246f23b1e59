#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <QThread>
#include <QWinEventNotifier>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "session/outside_channel.h"

namespace kivo {

namespace {

constexpr DWORD kBufferBytes = 4096;
constexpr unsigned long kTryEveryMs = 20;

class Handle {
public:
    explicit Handle(HANDLE handle = nullptr) : m_handle(handle) {}
    Handle(Handle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    ~Handle() {
        if (*this) {
            CloseHandle(m_handle);
        }
    }
    Q_DISABLE_COPY(Handle)
    Handle& operator=(Handle&& other) = delete;

    HANDLE Get() const { return m_handle; }
    explicit operator bool() const { return m_handle != nullptr && m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

// The token's user, as the bytes that hold a TOKEN_USER; empty where it cannot be had.
std::vector<quint64> OwnUser() {
    HANDLE opened = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) {
        return {};
    }
    const Handle token(opened);
    DWORD bytes = 0;
    GetTokenInformation(opened, TokenUser, nullptr, 0, &bytes);
    std::vector<quint64> user(bytes / sizeof(quint64) + 1);
    if (GetTokenInformation(opened, TokenUser, user.data(), bytes, &bytes) == 0) {
        return {};
    }
    return user;
}

PSID SidOf(std::vector<quint64>& user) {
    return reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid;
}

std::wstring OwnUserText() {
    std::vector<quint64> user = OwnUser();
    wchar_t* text = nullptr;
    if (user.empty() || ConvertSidToStringSidW(SidOf(user), &text) == 0) {
        return {};
    }
    std::wstring sid(text);
    LocalFree(text);
    return sid;
}

// The copies of one session meet each other, as they do by their shared names.
std::wstring PipeName(const std::wstring& sid) {
    DWORD session = 0;
    ProcessIdToSessionId(GetCurrentProcessId(), &session);
    return L"\\\\.\\pipe\\Kivo Screen Control " + std::to_wstring(session) + L" " + sid;
}

// Nobody else could have made a pipe that this user owns.
bool IsOwnUsers(HANDLE pipe) {
    std::vector<quint64> user = OwnUser();
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (user.empty() || GetSecurityInfo(pipe, SE_KERNEL_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr,
                                        nullptr, nullptr, &descriptor) != ERROR_SUCCESS) {
        return false;
    }
    const bool isOwn = owner != nullptr && EqualSid(owner, SidOf(user)) != 0;
    LocalFree(descriptor);
    return isOwn;
}

// One instance of the pipe. The user owns it and has all rights, nobody else any.
Handle MakePipe(bool isFirst) {
    const std::wstring sid = OwnUserText();
    const std::wstring rights = L"O:" + sid + L"D:P(A;;GA;;;" + sid + L")";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (sid.empty() || ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1,
                                                                            &descriptor, nullptr) == 0) {
        return Handle();
    }
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor, FALSE};
    Handle pipe(CreateNamedPipeW(
        PipeName(sid).c_str(),
        PIPE_ACCESS_DUPLEX | FILE_FLAG_OVERLAPPED | (isFirst ? FILE_FLAG_FIRST_PIPE_INSTANCE : 0),
        PIPE_TYPE_BYTE | PIPE_READMODE_BYTE | PIPE_WAIT | PIPE_REJECT_REMOTE_CLIENTS,
        PIPE_UNLIMITED_INSTANCES, kBufferBytes, kBufferBytes, 0, &attributes));
    const DWORD error = GetLastError();
    LocalFree(descriptor);
    SetLastError(error);
    return pipe;
}

// An operation that goes on beside the event loop. The event tells when it is over.
struct Operation {
    Operation() : event(CreateEventW(nullptr, TRUE, FALSE, nullptr)) { overlapped.hEvent = event.Get(); }

    // Not to be left while the kernel still writes here.
    void Cancel(HANDLE pipe) {
        DWORD bytes = 0;
        if (isPending && (CancelIoEx(pipe, &overlapped) != 0 || GetLastError() != ERROR_NOT_FOUND)) {
            GetOverlappedResult(pipe, &overlapped, &bytes, TRUE);
        }
        isPending = false;
    }

    Handle event;
    OVERLAPPED overlapped = {};
    bool isPending = false;
};

class PipePeer final : public ChannelPeer {
public:
    explicit PipePeer(Handle pipe) : m_pipe(std::move(pipe)) {}
    ~PipePeer() override {
        m_read.Cancel(m_pipe.Get());
        m_write.Cancel(m_pipe.Get());
    }

    void Start(std::function<void(const QByteArray&)> received, std::function<void()> gone) override {
        m_received = std::move(received);
        m_gone = std::move(gone);
        m_notifier = std::make_unique<QWinEventNotifier>(m_read.event.Get());
        QObject::connect(m_notifier.get(), &QWinEventNotifier::activated, m_notifier.get(),
                         [this] { Finish(); });
        Begin();
    }

    bool IsThere() override {
        DWORD available = 0;
        return PeekNamedPipe(m_pipe.Get(), nullptr, 0, nullptr, &available, nullptr) != 0;
    }

    // The pipe's buffer takes it at once.
    bool Send(const QByteArray& bytes) override {
        m_answer = bytes;
        DWORD sent = 0;
        if (WriteFile(m_pipe.Get(), m_answer.constData(), DWORD(m_answer.size()), nullptr,
                      &m_write.overlapped) == 0 &&
            GetLastError() != ERROR_IO_PENDING) {
            return false;
        }
        m_write.isPending = GetOverlappedResult(m_pipe.Get(), &m_write.overlapped, &sent, FALSE) == 0 &&
                            GetLastError() == ERROR_IO_INCOMPLETE;
        return !m_write.isPending && sent == DWORD(m_answer.size());
    }

private:
    // The event is set also where the read is over at once.
    void Begin() {
        m_read.isPending =
            ReadFile(m_pipe.Get(), m_piece.data(), DWORD(m_piece.size()), nullptr, &m_read.overlapped) != 0 ||
            GetLastError() == ERROR_IO_PENDING;
        if (!m_read.isPending) {
            SetEvent(m_read.event.Get());  // told of as the others are
        }
    }

    void Finish() {
        DWORD count = 0;
        const bool isRead =
            m_read.isPending && GetOverlappedResult(m_pipe.Get(), &m_read.overlapped, &count, FALSE) != 0;
        if (!isRead && m_read.isPending && GetLastError() == ERROR_IO_INCOMPLETE) {
            return;
        }
        m_read.isPending = false;
        ResetEvent(m_read.event.Get());
        if (!isRead || count == 0) {
            m_notifier->setEnabled(false);
            m_gone();
            return;
        }
        const QByteArray piece(m_piece.data(), int(count));
        Begin();
        m_received(piece);
    }

    const Handle m_pipe;
    Operation m_read;
    Operation m_write;
    QByteArray m_answer;
    std::array<char, kBufferBytes> m_piece;
    std::function<void(const QByteArray&)> m_received;
    std::function<void()> m_gone;
    std::unique_ptr<QWinEventNotifier> m_notifier;
};

// Keeps one instance of the pipe for the next caller.
class PipeListener final : public ChannelListener {
public:
    PipeListener(Handle first, Arrived arrived)
        : m_pipe(std::make_unique<Handle>(std::move(first))),
          m_arrived(std::move(arrived)),
          m_notifier(m_connect.event.Get()) {
        QObject::connect(&m_notifier, &QWinEventNotifier::activated, &m_notifier, [this] { Accept(); });
        Await();
    }
    ~PipeListener() override {
        if (m_pipe) {
            m_connect.Cancel(m_pipe->Get());
        }
    }

private:
    void Await() {
        ResetEvent(m_connect.event.Get());
        const bool isOver = ConnectNamedPipe(m_pipe->Get(), &m_connect.overlapped) != 0;
        const DWORD error = GetLastError();
        m_connect.isPending = !isOver && error == ERROR_IO_PENDING;
        if (!m_connect.isPending) {
            SetEvent(m_connect.event.Get());  // a caller was there already, or has gone again
        }
    }

    void Accept() {
        DWORD bytes = 0;
        if (m_connect.isPending &&
            GetOverlappedResult(m_pipe->Get(), &m_connect.overlapped, &bytes, FALSE) == 0 &&
            GetLastError() == ERROR_IO_INCOMPLETE) {
            return;
        }
        m_connect.isPending = false;
        auto next = std::make_unique<Handle>(MakePipe(false));
        std::swap(m_pipe, next);
        if (*m_pipe) {
            Await();
        } else {
            m_notifier.setEnabled(false);  // no more callers; the window goes on without
        }
        m_arrived(std::make_unique<PipePeer>(std::move(*next)));
    }

    std::unique_ptr<Handle> m_pipe;
    const Arrived m_arrived;
    Operation m_connect;
    QWinEventNotifier m_notifier;
};

// Waits for an operation of the caller; the bytes it moved, or none.
DWORD Bytes(HANDLE pipe, Operation& operation, bool hasBegun, QDeadlineTimer deadline) {
    DWORD count = 0;
    operation.isPending = hasBegun || GetLastError() == ERROR_IO_PENDING;
    if (!operation.isPending ||
        WaitForSingleObject(operation.event.Get(), DWORD(deadline.remainingTime())) != WAIT_OBJECT_0) {
        operation.Cancel(pipe);
        return 0;
    }
    operation.isPending = false;
    return GetOverlappedResult(pipe, &operation.overlapped, &count, FALSE) != 0 ? count : 0;
}

}  // namespace

std::unique_ptr<ChannelListener> ChannelListener::Listen(Arrived arrived, QString& trouble) {
    const QString another = QStringLiteral("another copy has it");
    // Wine gives a second copy a first instance too, so it is asked before whether there is one.
    constexpr DWORD kShortestWaitMs = 1;
    if (WaitNamedPipeW(PipeName(OwnUserText()).c_str(), kShortestWaitMs) != 0 ||
        GetLastError() == ERROR_SEM_TIMEOUT) {
        trouble = another;
        return nullptr;
    }
    Handle pipe = MakePipe(true);
    if (!pipe) {
        trouble =
            GetLastError() == ERROR_ACCESS_DENIED ? another : QStringLiteral("code %1").arg(GetLastError());
        return nullptr;
    }
    return std::make_unique<PipeListener>(std::move(pipe), std::move(arrived));
}

ChannelReply CallChannel(const QByteArray& bytes, const std::function<bool(const QByteArray&)>& isWhole,
                         QDeadlineTimer deadline) {
    ChannelReply reply;
    const std::wstring name = PipeName(OwnUserText());
    HANDLE opened = INVALID_HANDLE_VALUE;
    while (true) {
        // Whoever made the pipe may learn who calls, and act in no one's name.
        opened = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                             FILE_FLAG_OVERLAPPED | SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION, nullptr);
        if (opened != INVALID_HANDLE_VALUE || GetLastError() != ERROR_PIPE_BUSY || deadline.hasExpired()) {
            break;
        }
        QThread::msleep(kTryEveryMs);
    }
    const Handle pipe(opened);
    if (!pipe || !IsOwnUsers(opened)) {
        return reply;
    }
    reply.state = ChannelReply::State::Silent;
    Operation write;
    const bool isWriting =
        WriteFile(opened, bytes.constData(), DWORD(bytes.size()), nullptr, &write.overlapped) != 0;
    if (Bytes(opened, write, isWriting, deadline) != DWORD(bytes.size())) {
        return reply;
    }
    while (true) {
        std::array<char, kBufferBytes> piece{};
        Operation read;
        const bool isReading =
            ReadFile(opened, piece.data(), DWORD(piece.size()), nullptr, &read.overlapped) != 0;
        const DWORD count = Bytes(opened, read, isReading, deadline);
        if (count == 0) {
            return reply;
        }
        reply.bytes.append(piece.data(), int(count));
        if (isWhole(reply.bytes)) {
            reply.state = ChannelReply::State::Answered;
            return reply;
        }
    }
}

}  // namespace kivo
