#include <malloc.h>

#include <QByteArray>
#include <QDir>
#include <QFile>

#include "process_use.h"

namespace kivo::test {

namespace {

// A line of /proc/self/status, without its unit.
qint64 Status(const QByteArray& name) {
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith(name + ':')) {
                return line.mid(name.size() + 1).simplified().split(' ').first().toLongLong();
            }
        }
    }
    qFatal("%s is not in /proc/self/status.", name.constData());
}

}  // namespace

ProcessUse MeasureProcess() {
    // Not what lies in RAM: of that the allocator keeps more or less, as the threads have taken turns.
    const struct mallinfo2 heap = mallinfo2();
    const QDir handles(QStringLiteral("/proc/self/fd"));
    return {qint64(heap.uordblks + heap.hblkhd),
            int(handles.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size()),
            int(Status("Threads"))};
}

}  // namespace kivo::test
