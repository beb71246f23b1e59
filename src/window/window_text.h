#pragma once

#include <QCoreApplication>
#include <QString>

namespace kivo {

// A text of the window in the language of the translator that is installed. text is the Chinese source,
// marked with QT_TRANSLATE_NOOP("MainWindow", ...) where it stands.
inline QString WindowText(const char* text) {
    return QCoreApplication::translate("MainWindow", text);
}

// A text whose translations differ with its place, which the comment names.
struct PlacedText {
    const char* text;
    const char* comment;
};
// The same for such a text, marked with QT_TRANSLATE_NOOP3("MainWindow", ...).
inline QString WindowText(const PlacedText& text) {
    return QCoreApplication::translate("MainWindow", text.text, text.comment);
}

}  // namespace kivo
