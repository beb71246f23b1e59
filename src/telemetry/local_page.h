#pragma once

// The seam to a page of a web server on this machine.

#include <QByteArray>

#include <chrono>
#include <memory>
#include <optional>

namespace kivo {

class LocalPage {
public:
    LocalPage() = default;
    LocalPage(const LocalPage&) = delete;
    LocalPage& operator=(const LocalPage&) = delete;
    virtual ~LocalPage() = default;

    // Asks for the page and waits for it. Nothing where the whole of it does not come in time, or anything
    // but the page: a password asked for, another place, a page too long.
    virtual std::optional<QByteArray> Fetch() = 0;
    // Ends a Fetch that is under way, at once, and every later one. Any thread.
    virtual void Cancel() = 0;
};

struct LocalPageLimits {
    int size;                                                 // in bytes
    std::chrono::milliseconds time{std::chrono::seconds(5)};  // for a page as a whole
};

// A page of http://localhost, there and nowhere else: no proxy, no redirection, no password. `path` begins
// with a slash. There is one on Windows only.
std::unique_ptr<LocalPage> MakeLocalPage(quint16 port, const QString& path, const LocalPageLimits& limits);

}  // namespace kivo
