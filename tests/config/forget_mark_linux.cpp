#include <QDir>
#include <QStandardPaths>

#include "forget_mark.h"

namespace kivo::test {

void ForgetMark() {
    QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         QStringLiteral("/Kivo Tool"))
        .removeRecursively();
}

}  // namespace kivo::test
