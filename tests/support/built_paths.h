#pragma once

// Where the build has put what tests look at: absolute paths, also before there is an application. They are
// compiled into built_paths.cpp only, so that the objects of all other sources are the same in every clone.

#include <QString>

namespace kivo::test {

extern const char* const kSourceFolder;      // the clone
extern const char* const kProgramFolder;     // the program and what lies beside it
extern const char* const kTestFolder;        // test programs and what they start or load
extern const char* const kExecutableSuffix;  // ".exe" or nothing

inline QString InSourceFolder(const char* path) {
    return QString::fromUtf8(kSourceFolder) + QLatin1Char('/') + QLatin1String(path);
}
inline QString ProgramFolder() {
    return QString::fromUtf8(kProgramFolder);
}
// One of the project's programs, or a helper that the tests start.
inline QString BuiltProgram(const char* name) {
    return ProgramFolder() + QLatin1Char('/') + QLatin1String(name) + QLatin1String(kExecutableSuffix);
}
inline QString InTestFolder(const char* path) {
    return QString::fromUtf8(kTestFolder) + QLatin1Char('/') + QLatin1String(path);
}
inline QString TestHelper(const char* name) {
    return InTestFolder(name) + QLatin1String(kExecutableSuffix);
}

}  // namespace kivo::test
