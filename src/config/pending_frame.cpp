#include "config/pending_frame.h"

#include <QFile>

#include "config/folders.h"

namespace kivo {

namespace {

QString MarkPath() {
    return WorkingFolder() + QStringLiteral("/whole.pending");
}

}  // namespace

bool IsFramePending() {
    return QFile::exists(MarkPath());
}

void SetFramePending(bool isPending) {
    QFile mark(MarkPath());
    const bool done = isPending ? mark.open(QIODevice::WriteOnly) : !mark.exists() || mark.remove();
    if (!done) {
        qWarning("%s: %s", qUtf8Printable(mark.fileName()), qUtf8Printable(mark.errorString()));
    }
}

}  // namespace kivo
