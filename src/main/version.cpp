#include "main/version.h"

namespace kivo {

QString VersionText(const QString& version, const QString& commit) {
    return commit.isEmpty() ? version : QStringLiteral("%1 (%2)").arg(version, commit);
}

}  // namespace kivo
