#pragma once

#include <QObject>

namespace kivo {

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
