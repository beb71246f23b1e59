#pragma once

// The line under the preview's buttons: what one can do while a layout is edited, and why something did not
// come out as asked. The notice of a picture that is not shown stands on the same line: it goes before what
// one can do, and after what did not come out. GUI thread.

#include <QLabel>

namespace kivo {

class PictureNotice;
class ZoomWidget;

// Why an item cannot be shown besides the others.
QString NothingIsFreeText();

class EditHint : public QLabel {
    Q_OBJECT

public:
    // Follows the editor and the notice, which live as long.
    EditHint(ZoomWidget& editor, PictureNotice& notice, QWidget* parent);

    // An item was ticked that has no slot. Stands until the next edit.
    void TellNothingIsFree();

private:
    void Follow();
    enum class Tone { Quiet, Warning };
    void Tell(const QString& text, Tone tone);
    void ShareLine();

    ZoomWidget& m_editor;
    PictureNotice& m_notice;
    Tone m_tone = Tone::Quiet;
};

}  // namespace kivo
