#pragma once

// The place of a picture in the window: a plain widget with a type of its own, so that it can be found by it.

#include <QWidget>

namespace kivo {

class PhotoArea : public QWidget {
    Q_OBJECT

public:
    explicit PhotoArea(QWidget* parent = nullptr);
};

}  // namespace kivo
