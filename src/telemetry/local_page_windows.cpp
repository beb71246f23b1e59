// clang-format off
#include <windows.h>
#include <winhttp.h>
// clang-format on

#include <QDeadlineTimer>
#include <QString>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>

#include "telemetry/local_page.h"

namespace kivo {
namespace {

constexpr DWORD kPieceSize = 16 * 1024;

// A handle of WinHTTP's; its end may come later than this one's, where a request is under way.
class InternetHandle {
public:
    explicit InternetHandle(HINTERNET handle) : m_handle(handle) {}
    ~InternetHandle() {
        if (m_handle != nullptr) {
            WinHttpCloseHandle(m_handle);
        }
    }
    InternetHandle(const InternetHandle&) = delete;
    InternetHandle& operator=(const InternetHandle&) = delete;

    HINTERNET Get() const { return m_handle; }

private:
    const HINTERNET m_handle;
};

class Event {
public:
    explicit Event(bool isManualReset)
        : m_handle(CreateEventW(nullptr, isManualReset ? TRUE : FALSE, FALSE, nullptr)) {}
    ~Event() { CloseHandle(m_handle); }
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    void Set() { SetEvent(m_handle); }
    HANDLE Get() const { return m_handle; }

private:
    const HANDLE m_handle;
};

// What a request under way writes to. WinHTTP keeps it until it says that the request's handle is closed,
// which may be after everybody else has gone.
struct RequestState {
    Event done{false};
    std::atomic<bool> isGood{false};
    std::atomic<DWORD> length{0};
    std::array<char, kPieceSize> piece{};
};
using SharedState = std::shared_ptr<RequestState>;

void CALLBACK NoteStatus(HINTERNET, DWORD_PTR context, DWORD status, void* information, DWORD length) {
    auto* const state = reinterpret_cast<SharedState*>(context);
    if (state == nullptr) {
        return;
    }
    switch (status) {
        case WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING:
            delete state;
            return;
        case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
        case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
            (*state)->isGood = true;
            break;
        case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
            (*state)->length = *static_cast<const DWORD*>(information);
            (*state)->isGood = true;
            break;
        case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
            (*state)->length = length;
            (*state)->isGood = true;
            break;
        case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
            (*state)->isGood = false;
            break;
        default:
            return;
    }
    (*state)->done.Set();
}

// The requests are asynchronous: only those may be closed while they are under way.
class WinHttpPage final : public LocalPage {
public:
    WinHttpPage(quint16 port, const QString& path, const LocalPageLimits& limits)
        : m_path(path),
          m_limits(limits),
          m_session(WinHttpOpen(nullptr, WINHTTP_ACCESS_TYPE_NO_PROXY, WINHTTP_NO_PROXY_NAME,
                                WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC)),
          m_server(WinHttpConnect(m_session.Get(), L"localhost", port, 0)) {
        // What is given up lives on in the system no longer than that.
        const auto ms = static_cast<int>(limits.time.count());
        WinHttpSetTimeouts(m_session.Get(), ms, ms, ms, ms);
    }

    std::optional<QByteArray> Fetch() override {
        const InternetHandle request(
            WinHttpOpenRequest(m_server.Get(), L"GET", reinterpret_cast<const wchar_t*>(m_path.utf16()),
                               nullptr, WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES, 0));
        const auto state = std::make_shared<RequestState>();
        if (request.Get() == nullptr || !Prepare(request.Get(), state)) {
            return std::nullopt;
        }
        return Receive(request.Get(), *state);
    }

    void Cancel() override { m_cancelled.Set(); }

private:
    static bool Prepare(HINTERNET request, const SharedState& state) {
        DWORD disabled = WINHTTP_DISABLE_REDIRECTS | WINHTTP_DISABLE_AUTHENTICATION | WINHTTP_DISABLE_COOKIES;
        if (WinHttpSetOption(request, WINHTTP_OPTION_DISABLE_FEATURE, &disabled, sizeof(disabled)) == FALSE) {
            return false;
        }
        auto kept = std::make_unique<SharedState>(state);
        SharedState* context = kept.get();
        if (WinHttpSetOption(request, WINHTTP_OPTION_CONTEXT_VALUE, &context, sizeof(context)) == FALSE ||
            WinHttpSetStatusCallback(request, NoteStatus,
                                     WINHTTP_CALLBACK_FLAG_ALL_COMPLETIONS | WINHTTP_CALLBACK_FLAG_HANDLES,
                                     0) == WINHTTP_INVALID_STATUS_CALLBACK) {
            return false;
        }
        static_cast<void>(kept.release());  // the callback's
        return true;
    }

    // Whether the call that was begun has succeeded, in time and before it was cancelled.
    bool HasDone(BOOL isBegun, RequestState& state, const QDeadlineTimer& deadline) const {
        if (isBegun == FALSE) {
            return false;
        }
        // Where both are set the first one counts.
        const std::array<HANDLE, 2> events{m_cancelled.Get(), state.done.Get()};
        return WaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(), FALSE,
                                      static_cast<DWORD>(deadline.remainingTime())) == WAIT_OBJECT_0 + 1 &&
               state.isGood;
    }

    static bool IsPage(HINTERNET request) {
        DWORD status = 0;
        DWORD size = sizeof(status);
        return WinHttpQueryHeaders(request, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                                   WINHTTP_HEADER_NAME_BY_INDEX, &status, &size,
                                   WINHTTP_NO_HEADER_INDEX) != FALSE &&
               status == HTTP_STATUS_OK;
    }

    std::optional<QByteArray> Receive(HINTERNET request, RequestState& state) const {
        // A server that sends a byte now and then keeps nobody longer.
        const QDeadlineTimer deadline(m_limits.time);
        const auto hasDone = [&](BOOL isBegun) { return HasDone(isBegun, state, deadline); };
        if (!hasDone(WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, WINHTTP_NO_REQUEST_DATA, 0,
                                        0, 0)) ||
            !hasDone(WinHttpReceiveResponse(request, nullptr)) || !IsPage(request)) {
            return std::nullopt;
        }
        QByteArray page;
        // Only what has come is read: a system may wait for a full piece, and on after the request is closed.
        while (hasDone(WinHttpQueryDataAvailable(request, nullptr))) {
            if (state.length == 0) {
                return page;
            }
            if (!hasDone(WinHttpReadData(request, state.piece.data(),
                                         std::min<DWORD>(state.length, kPieceSize), nullptr))) {
                break;
            }
            page.append(state.piece.data(), static_cast<int>(state.length));
            if (page.size() > m_limits.size) {
                break;
            }
        }
        return std::nullopt;
    }

    const QString m_path;
    const LocalPageLimits m_limits;
    Event m_cancelled{true};
    const InternetHandle m_session;
    const InternetHandle m_server;
};

}  // namespace

std::unique_ptr<LocalPage> MakeLocalPage(quint16 port, const QString& path, const LocalPageLimits& limits) {
    return std::make_unique<WinHttpPage>(port, path, limits);
}

}  // namespace kivo
