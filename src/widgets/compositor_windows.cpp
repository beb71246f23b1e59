#include "widgets/compositor.h"

namespace kivo {

// Every Windows that the program runs on does, since Windows 8 (Microsoft, "Desktop Window Manager is always
// on").
bool BlendsWindows() {
    return true;
}

}  // namespace kivo
