#pragma once

#include <QCoreApplication>
#include <QString>

namespace kivo {

// A text of the window in the language of the translator that is installed. text is the Chinese source,
// marked with QT_TRANSLATE_NOOP("MainWindow", ...) where it stands.
inline QString WindowText(const char* text) {
    return QCoreApplication::translate("MainWindow", text);
}

}  // namespace kivo
