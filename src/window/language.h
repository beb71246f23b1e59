#pragma once

#include <QLocale>
#include <QString>
#include <QTranslator>

#include "model/interface_language.h"

namespace kivo {

// Loads "lang/sc.qm", "lang/en.qm" or "lang/rus.qm" beside the program into translator and installs it. False
// where the file is missing; the program then shows its source texts (Chinese). GUI thread.
bool InstallTranslation(QTranslator& translator, InterfaceLanguage language, const QString& applicationDir);

// The same for Qt's own texts, in the menus of text boxes and in file dialogs: "lang/qtbase_zh_CN.qm" and
// "lang/qtbase_ru.qm". False for English, which they are written in.
bool InstallQtTranslation(QTranslator& translator, InterfaceLanguage language, const QString& applicationDir);

// The interface in a person's language, for as long as this lives. GUI thread.
class WindowLanguage {
public:
    // Translations that cannot be read are logged.
    WindowLanguage(const QLocale& locale, const QString& applicationDir);

    InterfaceLanguage Language() const { return m_language; }

private:
    const InterfaceLanguage m_language;
    QTranslator m_own;
    QTranslator m_qt;
};

}  // namespace kivo
