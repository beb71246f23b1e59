#include "become_nobody.h"

#include "../config/private_home.h"

namespace kivo::test {

bool BecomeNobody() {
    return ::geteuid() != 0 || ::setresuid(kNobody, kNobody, kNobody) == 0;
}

}  // namespace kivo::test
