#pragma once

#include <QtGlobal>

namespace kivo {

// The mark where this system keeps it for the user; first_run_marker.h says where.
bool IsUserMarked();

// 0 on success, else a Windows status code.
qint32 MarkUser();

}  // namespace kivo
