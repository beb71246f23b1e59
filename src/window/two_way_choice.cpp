#include "window/two_way_choice.h"

#include "widgets/nimb_push_button.h"

namespace kivo {

TwoWayChoice::TwoWayChoice(NimbPushButton& first, NimbPushButton& second, QObject* parent)
    : QObject(parent), m_buttons{&first, &second} {
    for (int which : {0, 1}) {
        NimbPushButton* button = m_buttons[which];
        button->SetToggleMode(true);
        button->SetExclusive(true);
        connect(button, &QAbstractButton::clicked, this, [this, which] { Choose(which); });
        // A press that is let go elsewhere has turned its button all the same.
        connect(button, &QAbstractButton::released, this, &TwoWayChoice::ShowChosen);
    }
    ShowChosen();
}

void TwoWayChoice::SetChosen(int chosen) {
    m_chosen = chosen == 0 ? 0 : 1;
    ShowChosen();
}

void TwoWayChoice::Choose(int which) {
    const bool changed = which != m_chosen;
    SetChosen(which);
    if (changed) {
        Q_EMIT chosen(which);
    }
}

void TwoWayChoice::ShowChosen() {
    m_buttons[0]->SetPressed(m_chosen == 0);
    m_buttons[1]->SetPressed(m_chosen == 1);
}

}  // namespace kivo
