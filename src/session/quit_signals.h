#pragma once

#include <QObject>
#include <chrono>

namespace kivo {

// What the end of the program may take from when it is asked for: what Windows gives before it ends the
// process itself. No other system gives less.
inline constexpr std::chrono::milliseconds kTimeToEnd{5000};

// Lets the program end cleanly when the system asks it to (Ctrl+C, a session that ends): emits quitRequested
// on the GUI thread. One object, made after the application object.
class QuitSignals : public QObject {
    Q_OBJECT

public:
    explicit QuitSignals(QObject* parent = nullptr);
    ~QuitSignals() override;

Q_SIGNALS:
    void quitRequested();
};

}  // namespace kivo
