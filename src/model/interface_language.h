#pragma once

#include <QLocale>

namespace kivo {

// The three languages the program speaks. English stands for every locale that is neither Chinese nor
// Russian.
enum class InterfaceLanguage { Chinese, English, Russian };

// The interface language for a locale; the country does not matter.
InterfaceLanguage LanguageForLocale(const QLocale& locale);

// The process-wide language: set once at start by the main window, read from any thread. Chinese until it is
// set. Code that only formats takes the language as an argument instead.
void SetInterfaceLanguage(InterfaceLanguage language);
InterfaceLanguage CurrentInterfaceLanguage();

}  // namespace kivo
