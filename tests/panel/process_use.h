#pragma once

// What this process holds of the system's resources.

#include <QtGlobal>

namespace kivo::test {

struct ProcessUse {
    qint64 memoryBytes = 0;  // on its heap (Windows: committed)
    int handles = 0;         // open files, sockets, pipes (Windows: all kernel handles)
    int threads = 0;
};

ProcessUse MeasureProcess();

}  // namespace kivo::test
