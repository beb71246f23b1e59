#pragma once

// A web server on this machine that answers as a test says, one connection after the other.

// clang-format off
#include <winsock2.h>
#include <windows.h>
// clang-format on

#include <QByteArray>
#include <QList>
#include <QSemaphore>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace kivo::test {

class LocalServer {
public:
    // What to answer a request with; more than one piece is sent with pauses between them.
    struct Answer {
        QByteArray bytes;
        // Afterwards: close, keep silent, or send a further byte now and then.
        enum class End { Close, Hang, Drip } end = End::Close;
    };

    explicit LocalServer(Answer answer) : m_answer(std::move(answer)) {
        WSADATA data{};
        WSAStartup(MAKEWORD(2, 2), &data);
        m_listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        int size = sizeof(address);
        bind(m_listener, reinterpret_cast<sockaddr*>(&address), size);
        listen(m_listener, 5);
        getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size);
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { Serve(); });
    }
    ~LocalServer() {
        m_isStop = true;
        m_thread.join();
        closesocket(m_listener);
        WSACleanup();
    }
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;

    quint16 Port() const { return m_port; }
    void SetAnswer(const Answer& answer) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_answer = answer;
    }
    // The first lines of all requests.
    QList<QByteArray> Requests() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_requests;
    }
    // Comes back when a further request has come.
    void WaitForRequest() { m_asked.acquire(); }

    static Answer Page(const QByteArray& body, const char* status = "200 OK", const char* header = "") {
        return {QByteArray("HTTP/1.1 ") + status + "\r\nContent-Type: application/json\r\n" + header +
                "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body};
    }

private:
    // False when the server is to end first.
    bool WaitFor(SOCKET one) const {
        while (!m_isStop) {
            fd_set set;
            FD_ZERO(&set);
            FD_SET(one, &set);
            timeval pause{0, 20'000};
            if (select(0, &set, nullptr, nullptr, &pause) != 0) {
                return true;
            }
        }
        return false;
    }

    void Serve() {
        while (WaitFor(m_listener)) {
            const SOCKET peer = accept(m_listener, nullptr, nullptr);
            ReadRequest(peer);
            closesocket(peer);
        }
    }

    void ReadRequest(SOCKET peer) {
        QByteArray request;
        while (!request.contains("\r\n\r\n")) {
            char piece[1000];
            const int length = WaitFor(peer) ? recv(peer, piece, sizeof(piece), 0) : 0;
            if (length <= 0) {
                return;
            }
            request.append(piece, length);
        }
        Answer answer;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_requests.append(request.left(request.indexOf("\r\n")));
            answer = m_answer;
        }
        m_asked.release();
        Send(peer, answer);
    }

    void Send(SOCKET peer, const Answer& answer) {
        for (int sent = 0; sent < answer.bytes.size();) {
            const int length = send(peer, answer.bytes.constData() + sent, answer.bytes.size() - sent, 0);
            if (length <= 0) {
                return;
            }
            sent += length;
        }
        // The other side lets go of the connection, or the server ends.
        while (answer.end == Answer::End::Hang && WaitFor(peer)) {
            char byte = 0;
            if (recv(peer, &byte, 1, 0) <= 0) {
                return;
            }
        }
        while (answer.end == Answer::End::Drip && !m_isStop && send(peer, " ", 1, 0) == 1) {
            Sleep(20);
        }
    }

    std::atomic<bool> m_isStop{false};
    SOCKET m_listener = INVALID_SOCKET;
    quint16 m_port = 0;
    std::mutex m_mutex;
    Answer m_answer;
    QList<QByteArray> m_requests;
    QSemaphore m_asked;
    std::thread m_thread;
};

}  // namespace kivo::test
