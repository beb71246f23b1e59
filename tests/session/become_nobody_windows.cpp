#include "become_nobody.h"

namespace kivo::test {

bool BecomeNobody() {
    return false;
}

}  // namespace kivo::test
