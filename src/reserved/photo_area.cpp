#include "reserved/photo_area.h"

namespace kivo {

PhotoArea::PhotoArea(QWidget* parent) : QWidget(parent) {}

}  // namespace kivo
