#pragma once

#include <QString>

namespace kivo {

// Files that are kept beside a settings file, of each ending so many: "<file>.broken", then "<file>.broken.2"
// up to this number.
inline constexpr int kMostKeptFiles = 9;

// The name of the file with that number, from 1 on. ending begins with its dot.
inline QString NumberedName(const QString& filePath, const char* ending, int number) {
    const QString name = filePath + QLatin1String(ending);
    return number == 1 ? name : name + QLatin1Char('.') + QString::number(number);
}

}  // namespace kivo
