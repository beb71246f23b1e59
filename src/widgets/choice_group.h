#pragma once

// Holds the buttons of one choice, and draws nothing: assistive programs tell what is chosen from, by its
// accessible name. GUI thread.

#include <QWidget>

namespace kivo {

class ChoiceGroup : public QWidget {
    Q_OBJECT

public:
    explicit ChoiceGroup(QWidget* parent = nullptr);
};

}  // namespace kivo
