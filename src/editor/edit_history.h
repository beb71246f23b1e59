#pragma once

// The way back through the edits of one layout. The first entry is the state that was loaded; there is no way
// back behind it.

#include <QVector>
#include <optional>

#include "editor/edit_state.h"

namespace kivo {

// Page, theme, style and orientation are no edits and not part of it.
struct EditStep {
    LayoutRecord layout;
    SlotRow slotItems{};
    int textRow = 0;
};

class EditHistory {
public:
    // What a step did. Steps of one kind that follow each other closely, as the notches of a wheel do, go
    // back as one.
    enum class Kind { Single, Zoom, Move };

    // Forgets everything; state is where the way back ends.
    void Start(const EditState& state);

    // Remembers the state after an edit of the layout in force. One that changed nothing is not remembered.
    void Append(const EditState& state, Kind kind = Kind::Single);

    // Puts state, whose layout in force is the one that was edited, one step back. False at the first entry.
    bool StepBack(EditState& state);

    bool CanStepBack() const { return m_steps.size() > 1; }

    // The layout (index in ThemeState::layouts) whose edits are remembered; -1 before Start.
    int LayoutIndex() const { return m_layoutIndex; }

private:
    int m_layoutIndex = -1;
    Kind m_lastKind = Kind::Single;
    QVector<EditStep> m_steps;
};

}  // namespace kivo
