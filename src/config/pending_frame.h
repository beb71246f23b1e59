#pragma once

// The mark that the panel still lacks the frame that was uploaded last. It lies beside "whole.png" and
// outlives the program: what was applied without a screen, or cut off half-way, is sent at the next start.

namespace kivo {

bool IsFramePending();
// A mark that cannot be written gives one log line; the frame is then pending until the program ends.
void SetFramePending(bool isPending);

}  // namespace kivo
