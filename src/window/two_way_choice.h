#pragma once

// Two buttons of which exactly one is pressed: the tabs, the orientation, a page's own choice. Assistive
// programs know them as radio buttons. GUI thread.

#include <QObject>

namespace kivo {

class NimbPushButton;

class TwoWayChoice : public QObject {
    Q_OBJECT

public:
    // The buttons outlive this object. Starts with the first one chosen.
    TwoWayChoice(NimbPushButton& first, NimbPushButton& second, QObject* parent = nullptr);

    // 0 or 1; any other number counts as 1. No signal.
    void SetChosen(int chosen);
    int Chosen() const { return m_chosen; }

Q_SIGNALS:
    // Somebody chose the other one.
    void chosen(int which);

private:
    void Choose(int which);
    void ShowChosen();

    NimbPushButton* const m_buttons[2];
    int m_chosen = 0;
};

}  // namespace kivo
