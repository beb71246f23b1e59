#pragma once

namespace kivo::test {

// Gives the superuser's rights up for good, where this process has them and the system knows such a user.
bool BecomeNobody();

}  // namespace kivo::test
