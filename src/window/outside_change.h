#pragma once

// What the commands of a second start make of the saved state. Pure.

#include <QString>
#include <optional>

#include "editor/edit_state.h"
#include "session/outside_commands.h"

namespace kivo {

// The state with theme or layout, orientation, picture and free text as they were asked for; picture and text
// go to what is shown then. Nothing where that cannot be done, with one sentence in trouble.
std::optional<EditState> ChangedFromOutside(const EditState& saved, const OutsideCommands& commands,
                                            QString& trouble);

}  // namespace kivo
