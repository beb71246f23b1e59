#pragma once

// The user's own folder for what lasts as long as the session: the outside channel and the log lie there. Any
// thread.

#include <QString>
#include <QtGlobal>
#include <utility>

namespace kivo {

// An open file, folder or socket; closed with it.
class FileHandle {
public:
    explicit FileHandle(int handle = -1) : m_handle(handle) {}
    FileHandle(FileHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~FileHandle();
    Q_DISABLE_COPY(FileHandle)

    int Get() const { return m_handle; }
    explicit operator bool() const { return m_handle >= 0; }

private:
    int m_handle;
};

// A folder that is this user's own, and closed to everybody else; no link. Else nothing, and why.
FileHandle OpenOwnFolder(const QString& path, QString& trouble);

// Where the session's runtime folder is to lie. A cron job is told of none, but it is there.
QString RuntimeFolderPath();

}  // namespace kivo
