#pragma once

class QWidget;

namespace kivo {

class LiveSession;

// Starts the upload of the chosen state and keeps the window behind the small round sign, in an event loop of
// its own, until the upload reports. False when the upload could not be started, or the program ends
// meanwhile: the upload may then go on. GUI thread.
bool UploadBehindDialog(QWidget& window, LiveSession& session);

}  // namespace kivo
