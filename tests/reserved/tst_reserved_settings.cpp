#include <QRegularExpression>
#include <QtTest>

#include "../config/private_home.h"
#include "config/settings_file.h"
#include "reserved/reserved_settings.h"
#include "support/built_paths.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

class TestReservedSettings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theLanguageIsKept() {
        const PrivateHome home;
        QCOMPARE(LoadLangId(), 0);
        SaveLangId(2);
        QCOMPARE(LoadLangId(), 2);
        QVERIFY(ReadFile(ConfigFilePath()).contains("LangID=2"));
    }

    void identifiersAreMadeOnRequestOnly() {
        const PrivateHome home;
        QVERIFY(!HasUuid());
        QCOMPARE(LoadUuid(), QString());
        CreateUuid();
        QVERIFY(HasUuid());
        const QString first = LoadUuid();
        const QRegularExpression braced(QStringLiteral("^\\{[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\}$"));
        QVERIFY2(braced.match(first).hasMatch(), qPrintable(first));
        CreateUuid();
        QVERIFY(LoadUuid() != first);
        SettingsWriter().SetText(keys::kUuid.name, QString());
        QVERIFY(!HasUuid());
    }

    void theProductName_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("name");
        QTest::newRow("present") << QByteArray("[PROFILE]\nProductName=Kivo 320\n")
                                 << QStringLiteral("Kivo 320");
        QTest::newRow("absent key") << QByteArray("[PROFILE]\nOther=x\n") << QString();
        QTest::newRow("another group") << QByteArray("[Other]\nProductName=x\n") << QString();
        QTest::newRow("empty file") << QByteArray() << QString();
        QTest::newRow("noise") << QByteArray("\0\xff\x01=[[", 6) << QString();
    }
    void theProductName() {
        QFETCH(QByteArray, content);
        const QTemporaryDir program;
        QCOMPARE(LoadProductName(program.path()), QString());
        QVERIFY(WriteFile(program.path() + QStringLiteral("/DefaultProfile.bin"), content));
        QTEST(LoadProductName(program.path()), "name");
    }

    void theShippedProfileNamesTheProduct() {
        QCOMPARE(LoadProductName(InSourceFolder("resources/defaults")), QStringLiteral("Kivo Screen"));
    }
};

KIVO_GUILESS_TEST(TestReservedSettings)
#include "tst_reserved_settings.moc"
