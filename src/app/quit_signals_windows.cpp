#include "app/quit_signals.h"

namespace kivo {

// A GUI process of Windows gets no signals: a session that ends closes its windows, and there is no console
// that could send Ctrl+C.
QuitSignals::QuitSignals(QObject* parent) : QObject(parent) {}
QuitSignals::~QuitSignals() = default;

}  // namespace kivo
