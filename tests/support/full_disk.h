#pragma once

// Linux only.

#include <sys/resource.h>
#include <QtGlobal>
#include <csignal>

namespace kivo::test {

// No file can grow past this while it lives: a disk that fills up in the middle of a copy.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_former);
        const rlimit limit{bytes, m_former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_former); }
    Q_DISABLE_COPY(FullDisk)

private:
    rlimit m_former{};
};

}  // namespace kivo::test
