#pragma once

// The undo and redo steps of the layouts, each layout's its own. The first entry is the state that was
// loaded; nothing lies behind it.
//
// The row of the free text is one for all layouts, so at most one layout has steps of it: the one in which it
// was moved last. Undo in another layout leaves the row where it is.

#include <QString>
#include <QVector>
#include <array>

#include "editor/edit_state.h"

namespace kivo {

// Page, theme, style and orientation are no edits and not part of it.
struct EditStep {
    LayoutRecord layout;
    SlotRow slotItems{};  // of a custom layout
    int textRow = 0;
};

class EditHistory {
public:
    // What a step did. Steps of one kind with nothing else between them, as the notches of a wheel are, go
    // back as one, however much time lies between.
    enum class Kind { Single, Zoom, Move, Dim, Blur };

    // Forgets everything; undo ends at this state.
    void Start(const EditState& state);

    // Remembers the state after an edit of the layout in force, or after that has come into force. One that
    // changed nothing is not remembered, any other ends what could be redone; of a layout that was not in
    // force since Start it is the first entry.
    void Append(const EditState& state, Kind kind = Kind::Single);

    // Puts the layout in force one step back or forth, with its slots and, where the step moved it, the text
    // row. False where there is no such step.
    bool StepBack(EditState& state) { return Step(state, -1); }
    bool StepForth(EditState& state) { return Step(state, 1); }

    // Whether the layout in force has such a step.
    bool CanStepBack(const EditState& state) const;
    bool CanStepForth(const EditState& state) const;

    // Puts another picture, untrimmed, wherever a layout had that one. Steps that do not differ any more are
    // one from then on.
    void ReplacePicture(const QString& old, const QString& by);

private:
    struct Way {
        Kind lastKind = Kind::Single;
        int at = 0;  // the step that is in force
        QVector<EditStep> steps;
    };
    Way& WayOf(const EditState& state) { return m_ways[size_t(LayoutIndexInForce(state.themes))]; }
    const Way& WayOf(const EditState& state) const {
        return m_ways[size_t(LayoutIndexInForce(state.themes))];
    }
    bool Step(EditState& state, int by);
    static void RemoveRepeats(Way& way);
    void TellOthersTheRow(const EditState& state);

    std::array<Way, kLayoutCount> m_ways;
    int m_row = 0;  // in force
};

}  // namespace kivo
