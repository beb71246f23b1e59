#pragma once

// The case of the screen, drawn round the editor's preview: what is in it is what lies on the desk. It goes
// where the preview goes and makes room while a picture is trimmed. Takes no input. GUI thread.

#include <QWidget>

namespace kivo {

class ZoomWidget;

class DeviceFrame : public QWidget {
    Q_OBJECT

public:
    // A sibling of the editor, right below it. The editor has to outlive it or share its parent.
    explicit DeviceFrame(ZoomWidget& editor);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void Follow();

    ZoomWidget& m_editor;
};

}  // namespace kivo
