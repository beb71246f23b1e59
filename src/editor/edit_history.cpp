#include "editor/edit_history.h"

#include <algorithm>
#include <tuple>

namespace kivo {

namespace {

constexpr int kMostSteps = 200;

EditStep StepOf(const EditState& state) {
    const int variant = VariantInForce(state);
    EditStep step{LayoutInForce(state), state.slotTable[size_t(variant)], state.textRow};
    if (IsCustom(state.themes)) {
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
    WayOf(state).steps = {StepOf(state)};
}

void EditHistory::Append(const EditState& state, Kind kind) {
    Way& way = WayOf(state);
    const EditStep step = StepOf(state);
    if (way.steps.isEmpty()) {
        way.steps.append(step);
        return;
    }
    if (IsSame(step, way.steps.last())) {
        if (kind == Kind::Single) {
            way.lastKind = kind;  // something else came between all the same
        }
        return;
    }
    const bool joins = kind != Kind::Single && kind == way.lastKind;
    way.lastKind = kind;
    if (joins) {
        way.steps.removeLast();
        if (IsSame(step, way.steps.last())) {
            // There and back again: the step before is not of this kind, and none may join it.
            way.lastKind = Kind::Single;
            return;
        }
    }
    way.steps.append(step);
    if (way.steps.size() > kMostSteps) {
        way.steps.remove(1);  // the first entry stays the one that was loaded
    }
}

bool EditHistory::StepBack(EditState& state) {
    Way& way = WayOf(state);
    if (way.steps.size() <= 1) {
        return false;
    }
    way.steps.removeLast();
    way.lastKind = Kind::Single;
    const EditStep& step = way.steps.last();
    LayoutInForce(state) = step.layout;
    state.slotTable[size_t(VariantInForce(state))] = step.slotItems;
    state.textRow = step.textRow;
    return true;
}

void EditHistory::ReplacePicture(const QString& old, const QString& by) {
    for (Way& way : m_ways) {
        for (EditStep& step : way.steps) {
            kivo::ReplacePicture(step.layout, old, by);
        }
        way.steps.erase(std::unique(way.steps.begin(), way.steps.end(), IsSame), way.steps.end());
        way.lastKind = Kind::Single;
    }
}

}  // namespace kivo
