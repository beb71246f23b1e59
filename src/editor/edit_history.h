#pragma once

// The ways back through the edits of the layouts, each its own. A way's first entry is the state that was
// loaded; there is no way back behind it.

#include <QString>
#include <QVector>
#include <array>

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
    // What a step did. Steps of one kind with nothing else between them, as the notches of a wheel are, go
    // back as one, however much time lies between.
    enum class Kind { Single, Zoom, Move };

    // Forgets everything; state is where the ways back end.
    void Start(const EditState& state);

    // Remembers the state after an edit of the layout in force, or after that has come into force. One that
    // changed nothing is not remembered; of a layout that was not in force since Start it is the first entry.
    void Append(const EditState& state, Kind kind = Kind::Single);

    // Puts the layout in force one step back, with its slots and the text row. False at its first entry.
    bool StepBack(EditState& state);

    // Whether there is a way back for the layout in force.
    bool CanStepBack(const EditState& state) const { return WayOf(state).steps.size() > 1; }

    // Puts another picture, untrimmed, wherever a layout had that one. Steps that do not differ any more are
    // one from then on.
    void ReplacePicture(const QString& old, const QString& by);

private:
    struct Way {
        Kind lastKind = Kind::Single;
        QVector<EditStep> steps;
    };
    Way& WayOf(const EditState& state) { return m_ways[size_t(LayoutIndexInForce(state.themes))]; }
    const Way& WayOf(const EditState& state) const {
        return m_ways[size_t(LayoutIndexInForce(state.themes))];
    }

    std::array<Way, kLayoutCount> m_ways;
};

}  // namespace kivo
