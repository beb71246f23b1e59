#pragma once

namespace kivo {

// Registers the compiled-in pictures under ":/background/" (the panel's) and ":/skins/" (the
// window's). They live in a static library, whose resources
// the linker would drop unless somebody asks for them: every program and test that reads one calls this
// once, before the first read. Calling it again does nothing. Any thread, but not two at once.
void InitResources();

}  // namespace kivo
