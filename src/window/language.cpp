#include "window/language.h"

#include <QCoreApplication>

namespace kivo {

namespace {

struct TranslationFiles {
    QString own;
    QString qt;
};

TranslationFiles FilesOf(InterfaceLanguage language) {
    switch (language) {
        case InterfaceLanguage::Chinese:
            return {QStringLiteral("/lang/sc.qm"), QStringLiteral("/lang/qtbase_zh_CN.qm")};
        case InterfaceLanguage::Russian:
            return {QStringLiteral("/lang/rus.qm"), QStringLiteral("/lang/qtbase_ru.qm")};
        case InterfaceLanguage::English:
            break;
    }
    return {QStringLiteral("/lang/en.qm"), {}};
}

bool Install(QTranslator& translator, const QString& file) {
    return translator.load(file) && QCoreApplication::installTranslator(&translator);
}

}  // namespace

bool InstallTranslation(QTranslator& translator, InterfaceLanguage language, const QString& applicationDir) {
    return Install(translator, applicationDir + FilesOf(language).own);
}

bool InstallQtTranslation(QTranslator& translator, InterfaceLanguage language,
                          const QString& applicationDir) {
    const QString file = FilesOf(language).qt;
    return !file.isEmpty() && Install(translator, applicationDir + file);
}

WindowLanguage::WindowLanguage(const QLocale& locale, const QString& applicationDir)
    : m_language(LanguageForLocale(locale)) {
    SetInterfaceLanguage(m_language);
    if (!InstallTranslation(m_own, m_language, applicationDir)) {
        qWarning("The translations in %s/lang cannot be read; texts stay Chinese.",
                 qUtf8Printable(applicationDir));
    }
    InstallQtTranslation(m_qt, m_language, applicationDir);
}

}  // namespace kivo
