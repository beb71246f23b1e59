#include "widgets/choice_group.h"

namespace kivo {

ChoiceGroup::ChoiceGroup(QWidget* parent) : QWidget(parent) {}

}  // namespace kivo
