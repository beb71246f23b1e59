#include "reserved/zoom_label.h"

namespace kivo {

ZoomLabel::ZoomLabel(QWidget* parent) : QLabel(parent) {}

}  // namespace kivo
