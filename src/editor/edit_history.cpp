#include "editor/edit_history.h"

#include <tuple>

namespace kivo {

namespace {

constexpr int kMostSteps = 200;

EditStep StepOf(const EditState& state) {
    EditStep step{LayoutInForce(state), {}, state.textRow};
    if (IsCustom(state.themes)) {
        const int variant = VariantInForce(state);
        step.slotItems = state.slotTable[size_t(variant)];
        // A text that is being typed is ticked before there is one; that alone is no step.
        SettleTextFlag(step.layout, variant);
    }
    return step;
}

bool IsSame(const EditStep& a, const EditStep& b) {
    return std::tie(a.layout, a.slotItems, a.textRow) == std::tie(b.layout, b.slotItems, b.textRow);
}

}  // namespace

void EditHistory::Start(const EditState& state) {
    m_ways.fill(Way());
    m_row = state.textRow;
    WayOf(state).steps = {StepOf(state)};
}

void EditHistory::Append(const EditState& state, Kind kind) {
    TellOthersTheRow(state);
    Way& way = WayOf(state);
    const EditStep step = StepOf(state);
    if (way.steps.isEmpty()) {
        way.steps.append(step);
        return;
    }
    if (IsSame(step, way.steps.at(way.at))) {
        if (kind == Kind::Single) {
            way.lastKind = kind;  // something else came between all the same
        }
        return;
    }
    way.steps.resize(way.at + 1);
    const bool joins = kind != Kind::Single && kind == way.lastKind;
    way.lastKind = kind;
    if (joins) {
        way.steps.removeLast();
        if (IsSame(step, way.steps.last())) {
            // There and back again: the step before is not of this kind, and none may join it.
            way.lastKind = Kind::Single;
            way.at = way.steps.size() - 1;
            return;
        }
    }
    way.steps.append(step);
    if (way.steps.size() > kMostSteps) {
        way.steps.remove(1);  // the first entry stays the one that was loaded
    }
    way.at = way.steps.size() - 1;
}

bool EditHistory::CanStepBack(const EditState& state) const {
    return WayOf(state).at > 0;
}

bool EditHistory::CanStepForth(const EditState& state) const {
    const Way& way = WayOf(state);
    return way.at + 1 < way.steps.size();
}

bool EditHistory::Step(EditState& state, int by) {
    Way& way = WayOf(state);
    const int to = way.at + by;
    if (to < 0 || to >= way.steps.size()) {
        return false;
    }
    way.at = to;
    way.lastKind = Kind::Single;
    const EditStep& step = way.steps.at(to);
    LayoutInForce(state) = step.layout;
    if (IsCustom(state.themes)) {
        state.slotTable[size_t(VariantInForce(state))] = step.slotItems;
    }
    state.textRow = step.textRow;
    TellOthersTheRow(state);
    return true;
}

void EditHistory::ReplacePicture(const QString& old, const QString& by) {
    for (Way& way : m_ways) {
        for (EditStep& step : way.steps) {
            kivo::ReplacePicture(step.layout, old, by);
        }
        RemoveRepeats(way);
        way.lastKind = Kind::Single;
    }
}

void EditHistory::RemoveRepeats(Way& way) {
    QVector<EditStep> kept;
    int at = 0;
    for (int k = 0; k < way.steps.size(); ++k) {
        if (kept.isEmpty() || !IsSame(kept.last(), way.steps.at(k))) {
            kept.append(way.steps.at(k));
        }
        if (k == way.at) {
            at = kept.size() - 1;
        }
    }
    way.steps = kept;
    way.at = at;
}

// The others' steps have the same row throughout: nothing of them moves it.
void EditHistory::TellOthersTheRow(const EditState& state) {
    if (state.textRow == m_row) {
        return;
    }
    m_row = state.textRow;
    const Way* const own = &WayOf(state);
    for (Way& way : m_ways) {
        if (&way != own) {
            for (EditStep& step : way.steps) {
                step.textRow = m_row;
            }
            RemoveRepeats(way);
        }
    }
}

}  // namespace kivo
