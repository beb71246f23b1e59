#pragma once

#include <QObject>

namespace kivo {

// A request to quit, the program's own or the system's, ends the event loop at once. Qt 6 asks every window
// first, and the main window refuses to close: it goes to the tray. Qt 5 asks none. One for the application,
// in the GUI thread.
class QuitAtOnce : public QObject {
    Q_OBJECT

public:
    QuitAtOnce();

    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace kivo
