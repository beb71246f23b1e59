#include "editor/edit_history.h"

#include <tuple>

namespace kivo {

namespace {

constexpr int kMostSteps = 200;

EditStep StepOf(const EditState& state) {
    const int variant = VariantInForce(state);
    EditStep step{LayoutInForce(state), state.slotTable[size_t(variant)], state.textRow};
    if (state.themes.mode != 0) {
        // A text that is being typed is ticked before there is one; that alone is no step.
        CustomFlags(step.layout, variant)[OtherText] = !step.layout.freeText.isEmpty();
    }
    return step;
}

bool IsSame(const EditStep& a, const EditStep& b) {
    return std::tie(a.layout, a.slotItems, a.textRow) == std::tie(b.layout, b.slotItems, b.textRow);
}

}  // namespace

void EditHistory::Start(const EditState& state) {
    m_layoutIndex = LayoutIndexInForce(state.themes);
    m_lastKind = Kind::Single;
    m_steps = {StepOf(state)};
}

void EditHistory::Append(const EditState& state, Kind kind) {
    const EditStep step = StepOf(state);
    if (IsSame(step, m_steps.last())) {
        return;
    }
    const bool joins = kind != Kind::Single && kind == m_lastKind && m_steps.size() > 1;
    m_lastKind = kind;
    if (joins) {
        m_steps.removeLast();
        if (IsSame(step, m_steps.last())) {
            return;  // there and back again
        }
    }
    m_steps.append(step);
    if (m_steps.size() > kMostSteps) {
        m_steps.remove(1);  // the first entry stays the one that was loaded
    }
}

bool EditHistory::StepBack(EditState& state) {
    if (!CanStepBack()) {
        return false;
    }
    m_steps.removeLast();
    m_lastKind = Kind::Single;
    const EditStep& step = m_steps.last();
    LayoutInForce(state) = step.layout;
    state.slotTable[size_t(VariantInForce(state))] = step.slotItems;
    state.textRow = step.textRow;
    return true;
}

}  // namespace kivo
