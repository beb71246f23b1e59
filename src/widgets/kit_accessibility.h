#pragma once

// What assistive programs are told of the kit's buttons, of check boxes and of groups: role, state, and
// actions that do what a click does. GUI thread.

namespace kivo {

// Has Qt ask for these interfaces. Before the first widget of the kit; more often does no harm.
void InstallKitAccessibility();

}  // namespace kivo
