#include "app/language.h"

#include <QCoreApplication>
#include <QTranslator>

namespace kivo {

namespace {

QString TranslationFile(InterfaceLanguage language) {
    switch (language) {
        case InterfaceLanguage::Chinese:
            return QStringLiteral("/lang/sc.qm");
        case InterfaceLanguage::Russian:
            return QStringLiteral("/lang/rus.qm");
        case InterfaceLanguage::English:
            break;
    }
    return QStringLiteral("/lang/en.qm");
}

}  // namespace

bool InstallTranslation(QTranslator& translator, InterfaceLanguage language, const QString& applicationDir) {
    return translator.load(applicationDir + TranslationFile(language)) &&
           QCoreApplication::installTranslator(&translator);
}

}  // namespace kivo
