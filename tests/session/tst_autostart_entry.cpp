#include <QTemporaryDir>
#include <QtTest>

#include "session/autostart.h"
#include "support/test_program.h"

using namespace kivo;

// The entry in the autostart folder of a Linux desktop.
class TestAutostartEntry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void OnWritesTheEntryOfThisProgram();
    void OnReplacesWhatIsThere_data();
    void OnReplacesWhatIsThere();
    void AProgramThatIsGoneDoesNotStart();
    void OffLeavesTheNeighboursAlone();
    void OffTakesADeadLinkAway();
    void OnWritesThroughALink();
    void TroubleIsTold();

private:
    QString Config(const char* below) const { return m_home->filePath(QString::fromLatin1(below)); }
    QString Entry() const { return Config("autostart/kivo-screen.desktop"); }
    void Write(const QByteArray& content) const;
    QByteArray Read() const;

    QScopedPointer<QTemporaryDir> m_home;
};

void TestAutostartEntry::init() {
    m_home.reset(new QTemporaryDir);
    QVERIFY(m_home->isValid());
    qputenv("XDG_CONFIG_HOME", m_home->path().toUtf8());
}

void TestAutostartEntry::Write(const QByteArray& content) const {
    QVERIFY(QDir().mkpath(Config("autostart")));
    QFile file(Entry());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray TestAutostartEntry::Read() const {
    QFile file(Entry());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no entry>");
}

void TestAutostartEntry::OnWritesTheEntryOfThisProgram() {
    QVERIFY(!StartsAtLogin());
    QCOMPARE(SetStartsAtLogin(true), QString());
    QCOMPARE(Read(), AutostartEntry(QCoreApplication::applicationFilePath()));
    QCOMPARE(QDir(Config("autostart")).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

void TestAutostartEntry::OnReplacesWhatIsThere_data() {
    QTest::addColumn<QByteArray>("before");
    const QByteArray entry = AutostartEntry(QCoreApplication::applicationFilePath());
    QTest::newRow("hidden") << entry + "Hidden=true\n";
    QTest::newRow("switched off by the desktop") << entry + "X-GNOME-Autostart-enabled=false\n";
    QTest::newRow("a program that is gone") << AutostartEntry(QStringLiteral("/nowhere/kivo-screen"));
    QTest::newRow("noise") << QByteArray("\0\1\2", 3);
}

void TestAutostartEntry::OnReplacesWhatIsThere() {
    QFETCH(QByteArray, before);
    Write(before);
    QVERIFY(!StartsAtLogin());
    QCOMPARE(SetStartsAtLogin(true), QString());
    QVERIFY(StartsAtLogin());
}

void TestAutostartEntry::AProgramThatIsGoneDoesNotStart() {
    const QString program = Config("kivo-screen");
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
    Write(AutostartEntry(program));
    QVERIFY(StartsAtLogin());
    QVERIFY(QFile::remove(program));
    QVERIFY(!StartsAtLogin());
}

void TestAutostartEntry::OffLeavesTheNeighboursAlone() {
    QCOMPARE(SetStartsAtLogin(true), QString());
    QVERIFY(QFile::copy(Entry(), Config("autostart/other.desktop")));
    QCOMPARE(SetStartsAtLogin(false), QString());
    QVERIFY(!QFile::exists(Entry()));
    QVERIFY(QFile::exists(Config("autostart/other.desktop")));
}

void TestAutostartEntry::OffTakesADeadLinkAway() {
    QVERIFY(QDir().mkpath(Config("autostart")));
    QVERIFY(QFile::link(Config("nowhere"), Entry()));
    QVERIFY(!StartsAtLogin());
    QCOMPARE(SetStartsAtLogin(false), QString());
    QVERIFY(!QFileInfo(Entry()).isSymLink());
}

void TestAutostartEntry::OnWritesThroughALink() {
    QVERIFY(QDir().mkpath(Config("autostart")));
    QFile kept(Config("kept.desktop"));
    QVERIFY(kept.open(QIODevice::WriteOnly));
    kept.close();
    QVERIFY(QFile::link(kept.fileName(), Entry()));
    QCOMPARE(SetStartsAtLogin(true), QString());
    QVERIFY(QFileInfo(Entry()).isSymLink());
    QVERIFY(StartsAtLogin());
    QVERIFY(QFileInfo(kept.fileName()).size() > 0);
}

void TestAutostartEntry::TroubleIsTold() {
    // A file where the folder should go; rights would not stop a superuser.
    QFile blocked(Config("autostart"));
    QVERIFY(blocked.open(QIODevice::WriteOnly));
    QVERIFY(!SetStartsAtLogin(true).isEmpty());
    QVERIFY(!StartsAtLogin());
    QVERIFY(blocked.remove());
    // A folder where the entry should go.
    QVERIFY(QDir().mkpath(Entry()));
    QVERIFY(!SetStartsAtLogin(true).isEmpty());
    QVERIFY(!SetStartsAtLogin(false).isEmpty());
    QVERIFY(!StartsAtLogin());
}

KIVO_GUILESS_TEST(TestAutostartEntry)
#include "tst_autostart_entry.moc"
