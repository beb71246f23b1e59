#pragma once

namespace kivo::test {

// Takes the mark of the first run away, wherever this platform keeps it: the next start is a new user's.
void ForgetMark();

}  // namespace kivo::test
