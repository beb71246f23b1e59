#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include "support/built_paths.h"
#include "support/process_end.h"
#include "support/test_program.h"
#include "window/access_commands.h"

using namespace kivo;
using namespace kivo::test;

// The commands that give a person the right to open the screen, run by a true shell in which "sudo" only
// remembers what it was asked for.
class TestAccessCommands : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void TheyWriteThePackagesRule();
    void TheyMakeItTakeEffect();
    void ARuleThatCannotBeWrittenIsNotAnnounced();
    void AShellReadsThemAsOne();

private:
    // Exit status of the shell.
    int Run(const QString& commands);
    QByteArray Read(const char* file) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestAccessCommands::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QFile sudo(m_folder->filePath(QStringLiteral("sudo")));
    QVERIFY(sudo.open(QFile::WriteOnly));
    sudo.write(
        "#!/bin/sh\n"
        "cd \"$(dirname \"$0\")\"\n"
        "[ -e broken ] && exit 1\n"
        "echo \"$@\" >>asked\n"
        "[ \"$1\" != tee ] || cat >rule\n");
    sudo.close();
    QVERIFY(sudo.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

int TestAccessCommands::Run(const QString& commands) {
    QProcess shell;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"),
                       m_folder->path() + QLatin1Char(':') + qEnvironmentVariable("PATH"));
    shell.setProcessEnvironment(environment);
    shell.start(QStringLiteral("sh"), {QStringLiteral("-c"), commands});
    return ExitCode(shell);
}

QByteArray TestAccessCommands::Read(const char* file) const {
    QFile read(m_folder->filePath(QString::fromLatin1(file)));
    return read.open(QFile::ReadOnly) ? read.readAll() : QByteArray();
}

void TestAccessCommands::TheyWriteThePackagesRule() {
    QCOMPARE(Run(AccessCommands()), 0);
    QFile packaged(kivo::test::InSourceFolder("packaging/linux/60-kivo-screen.rules"));
    QVERIFY(packaged.open(QFile::ReadOnly));
    QByteArray rule;
    for (const QByteArray& line : packaged.readAll().split('\n')) {
        rule += line.startsWith('#') || line.isEmpty() ? QByteArray() : line + '\n';
    }
    QVERIFY(rule.contains("uaccess"));
    QCOMPARE(Read("rule"), rule);
}

void TestAccessCommands::TheyMakeItTakeEffect() {
    QCOMPARE(Run(AccessCommands()), 0);
    QCOMPARE(Read("asked"), QByteArray("tee /etc/udev/rules.d/60-kivo-screen.rules\n"
                                       "udevadm control --reload\n"
                                       "udevadm trigger --action=change --subsystem-match=hidraw\n"));
}

void TestAccessCommands::ARuleThatCannotBeWrittenIsNotAnnounced() {
    QFile broken(m_folder->filePath(QStringLiteral("broken")));
    QVERIFY(broken.open(QFile::WriteOnly));
    QVERIFY(Run(AccessCommands()) != 0);
    QVERIFY(Read("asked").isEmpty());
}

// A password that is asked for in the first line would else be the second one.
void TestAccessCommands::AShellReadsThemAsOne() {
    const QStringList lines = AccessCommands().split(QLatin1Char('\n'));
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines[0].endsWith(QLatin1String("&&")));
    QVERIFY(!lines[1].isEmpty());
}

KIVO_TEST(TestAccessCommands)
#include "tst_access_commands.moc"
