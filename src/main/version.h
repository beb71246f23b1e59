#pragma once

#include <QString>

namespace kivo {

// The commit that the program was built from, with "-dirty" where its sources had changes of their own; empty
// where nobody knows. Its source is made by cmake/KivoCommit.cmake.
QString SourceCommit();

// As it is told to people: "1.0.0 (1a2b3c4d5e6f)", or the version alone.
QString VersionText(const QString& version, const QString& commit);

}  // namespace kivo
