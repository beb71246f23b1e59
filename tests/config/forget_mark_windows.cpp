#include <windows.h>

#include "forget_mark.h"

namespace kivo::test {

void ForgetMark() {
    RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\Kivo Tool\\Kivo Config");
}

}  // namespace kivo::test
