#pragma once

// The line under the preview's buttons: what one can do while a layout is edited, and why something did not
// come out as asked. GUI thread.

#include <QLabel>

namespace kivo {

class ZoomWidget;

// Why an item cannot be shown besides the others.
QString NothingIsFreeText();

class EditHint : public QLabel {
    Q_OBJECT

public:
    // Follows the editor, which lives as long.
    EditHint(ZoomWidget& editor, QWidget* parent);

    // An item was ticked that has no slot. Stands until the next edit.
    void TellNothingIsFree();

private:
    void Follow();
    enum class Tone { Quiet, Warning };
    void Tell(const QString& text, Tone tone);

    ZoomWidget& m_editor;
};

}  // namespace kivo
