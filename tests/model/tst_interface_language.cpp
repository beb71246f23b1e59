#include <QtTest>

#include "model/interface_language.h"
#include "support/test_program.h"

using namespace kivo;

class TestInterfaceLanguage : public QObject {
    Q_OBJECT

private slots:
    void startsAsChinese() { QCOMPARE(CurrentInterfaceLanguage(), InterfaceLanguage::Chinese); }

    void followsTheLocale_data() {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<int>("language");
        const auto row = [](const char* name, const char* locale, InterfaceLanguage language) {
            QTest::newRow(name) << QString::fromLatin1(locale) << static_cast<int>(language);
        };
        row("mainland Chinese", "zh_CN", InterfaceLanguage::Chinese);
        row("Taiwanese Chinese", "zh_TW", InterfaceLanguage::Chinese);
        row("Russian", "ru_RU", InterfaceLanguage::Russian);
        row("Russian of Ukraine", "ru_UA", InterfaceLanguage::Russian);
        row("English", "en_US", InterfaceLanguage::English);
        row("German falls to English", "de_DE", InterfaceLanguage::English);
        row("Arabic falls to English", "ar_EG", InterfaceLanguage::English);
        row("Ukrainian is not Russian", "uk_UA", InterfaceLanguage::English);
        row("the C locale", "C", InterfaceLanguage::English);
        row("an unknown locale", "xx_YY", InterfaceLanguage::English);
    }
    void followsTheLocale() {
        QFETCH(QString, locale);
        QFETCH(int, language);
        QCOMPARE(static_cast<int>(LanguageForLocale(QLocale(locale))), language);
    }

    void isSetOnceForTheWholeProgram() {
        SetInterfaceLanguage(InterfaceLanguage::Russian);
        QCOMPARE(CurrentInterfaceLanguage(), InterfaceLanguage::Russian);
        SetInterfaceLanguage(InterfaceLanguage::English);
        QCOMPARE(CurrentInterfaceLanguage(), InterfaceLanguage::English);
    }
};

KIVO_APPLESS_TEST(TestInterfaceLanguage)
#include "tst_interface_language.moc"
