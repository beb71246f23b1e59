#include "widgets/photo_area.h"

namespace kivo {

PhotoArea::PhotoArea(QWidget* parent) : QWidget(parent) {}

}  // namespace kivo
