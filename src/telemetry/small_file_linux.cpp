#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>

#include <array>
#include <cerrno>
#include <map>

#include "telemetry/small_file.h"

namespace kivo {

std::optional<QByteArray> ReadSmallFile(const QString& path) {
    const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) {
        return std::nullopt;
    }
    std::array<char, 255> buffer{};
    const ssize_t length = ::read(file, buffer.data(), buffer.size());
    const int error = errno;
    ::close(file);
    errno = error;
    if (length < 0) {
        return std::nullopt;
    }
    return FirstLine(QByteArray(buffer.data(), int(length)));
}

QByteArray FirstLine(const QByteArray& text) {
    const int end = text.indexOf('\n');
    return (end < 0 ? text : text.left(end)).trimmed();
}

std::optional<qint64> WholeNumber(const QByteArray& line) {
    bool isNumber = false;
    const qint64 number = line.toLongLong(&isNumber);
    return isNumber ? std::make_optional(number) : std::nullopt;
}

std::optional<qint64> ReadNumberFile(const QString& path) {
    const auto line = ReadSmallFile(path);
    return line ? WholeNumber(*line) : std::nullopt;
}

QStringList NumberedFolders(const QString& folder, const QString& prefix, NumberBase base) {
    std::map<int, QString> found;
    const QStringList names = QDir(folder).entryList({prefix + QLatin1Char('*')}, QDir::Dirs);
    for (const QString& name : names) {
        bool isNumber = false;
        const int number = QStringView(name).mid(prefix.size()).toInt(&isNumber, static_cast<int>(base));
        if (isNumber) {
            found.emplace(number, folder + QLatin1Char('/') + name);
        }
    }
    QStringList paths;
    for (const auto& [number, path] : found) {
        paths.append(path);
    }
    return paths;
}

QByteArray FolderEntries(const QString& folder) {
    QByteArray names;
    DIR* const entries = ::opendir(QFile::encodeName(folder).constData());
    if (entries == nullptr) {
        return names;
    }
    while (const dirent* entry = ::readdir(entries)) {
        names.append(entry->d_name).append('/');
    }
    ::closedir(entries);
    return names;
}

}  // namespace kivo
