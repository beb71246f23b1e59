#include <sys/stat.h>
#include <unistd.h>
#include <QTemporaryDir>
#include <QtTest>

#include "device/hid_node_list.h"
#include "support/test_program.h"

using namespace kivo;

// Folders as the kernel has them, in files; the processes are the system's own.
class TestHidNodeList : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void ScreenComesFirstAndIsNamed();
    void NodeThatIsGoneIsTold();
    void WhoeverHoldsANodeIsTold();
    void ProcessesOfOthersAreCounted();
    void WithoutDevicesThereIsNothing();

private:
    void Write(const QString& path, const QByteArray& content);
    // A device of a class of its own folder, and its node with these rights.
    void Add(const char* node, const char* ids, const QByteArray& descriptor, mode_t rights = 0600);
    QString LineOf(const char* node) const;

    QScopedPointer<QTemporaryDir> m_folder;
    HidNodePlaces m_places;
};

void TestHidNodeList::init() {
    m_folder.reset(new QTemporaryDir);
    m_places.classFolder = m_folder->filePath(QStringLiteral("class"));
    m_places.nodeFolder = m_folder->filePath(QStringLiteral("dev"));
    m_places.processFolder = QStringLiteral("/proc");
    QVERIFY(QDir().mkpath(m_places.classFolder));
    QVERIFY(QDir().mkpath(m_places.nodeFolder));
}

void TestHidNodeList::Write(const QString& path, const QByteArray& content) {
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

void TestHidNodeList::Add(const char* node, const char* ids, const QByteArray& descriptor, mode_t rights) {
    const QString name = QString::fromLatin1(node);
    const QString device = m_places.classFolder + QLatin1Char('/') + name + QStringLiteral("/device/");
    Write(device + QStringLiteral("uevent"),
          QByteArray("HID_ID=0003:") + ids + "\nHID_NAME=Anna's toy\nHID_UNIQ=S3CRET\n");
    Write(device + QStringLiteral("report_descriptor"), QByteArray::fromHex(descriptor));
    const QString path = m_places.nodeFolder + QLatin1Char('/') + name;
    Write(path, {});
    QCOMPARE(::chmod(QFile::encodeName(path).constData(), rights), 0);
}

QString TestHidNodeList::LineOf(const char* node) const {
    return ListHidNodes(m_places)
        .filter(QRegularExpression(QStringLiteral("^%1;").arg(QLatin1String(node))))
        .value(0);
}

void TestHidNodeList::ScreenComesFirstAndIsNamed() {
    Add("hidraw1", "0000046D:0000C31C", "05010906a101c0");
    Add("hidraw5", "000004D9:0000FD01", "06a0ff0901a101c0");
    Add("hidraw6", "000004D9:0000FD01", "050c0901a101c0");
    const QStringList lines = ListHidNodes(m_places);
    QVERIFY(lines.size() >= 3);
    QVERIFY2(lines.at(0).startsWith(QStringLiteral(
                 "hidraw5; the screen's data; 04d9:fd01 release 0000; usages ffa0:0001; -rw------- ")),
             qPrintable(lines.at(0)));
    QVERIFY2(lines.at(1).startsWith(QStringLiteral("hidraw6; the screen's control; 04d9:fd01")),
             qPrintable(lines.at(1)));
    QVERIFY2(lines.at(2).startsWith(QStringLiteral("hidraw1; 046d:c31c release 0000; usages 0001:0006; ")),
             qPrintable(lines.at(2)));
    QVERIFY2(lines.at(0).contains(QStringLiteral(", read and write; no holder seen")),
             qPrintable(lines.at(0)));
    const QString all = lines.join(QLatin1Char('\n'));
    QVERIFY2(!all.contains(QStringLiteral("toy")) && !all.contains(QStringLiteral("S3CRET")),
             qPrintable(all));
}

void TestHidNodeList::NodeThatIsGoneIsTold() {
    Add("hidraw5", "000004D9:0000FD01", "06a0ff0901a101c0");
    QVERIFY(QFile::remove(m_places.nodeFolder + QStringLiteral("/hidraw5")));
    QVERIFY(QDir().mkpath(m_places.classFolder + QStringLiteral("/hidraw9")));
    QVERIFY2(LineOf("hidraw5").contains(QStringLiteral("; no such node; ")), qPrintable(LineOf("hidraw5")));
    QVERIFY2(LineOf("hidraw9").startsWith(QStringLiteral("hidraw9; gone meanwhile; ")),
             qPrintable(LineOf("hidraw9")));
}

void TestHidNodeList::WhoeverHoldsANodeIsTold() {
    Add("hidraw5", "000004D9:0000FD01", "06a0ff0901a101c0");
    Add("hidraw50", "000004D9:0000FD01", "06a0ff0901a101c0");
    QFile held(m_places.nodeFolder + QStringLiteral("/hidraw5"));
    QVERIFY(held.open(QIODevice::ReadOnly));
    QFile twice(held.fileName());
    QVERIFY(twice.open(QIODevice::ReadOnly));
    const QString self = QStringLiteral("(%1)").arg(QCoreApplication::applicationPid());
    QCOMPARE(LineOf("hidraw5").count(self), 1);
    QVERIFY2(
        LineOf("hidraw5").contains(QRegularExpression(QStringLiteral("; held by tests_device \\(\\d+\\)$"))),
        qPrintable(LineOf("hidraw5")));
    QVERIFY2(LineOf("hidraw50").endsWith(QStringLiteral("; no holder seen")), qPrintable(LineOf("hidraw50")));
}

void TestHidNodeList::ProcessesOfOthersAreCounted() {
    Add("hidraw5", "000004D9:0000FD01", "06a0ff0901a101c0");
    m_places.processFolder = m_folder->filePath(QStringLiteral("proc"));
    QVERIFY(QDir().mkpath(m_places.processFolder + QStringLiteral("/12")));
    QVERIFY(QDir().mkpath(m_places.processFolder + QStringLiteral("/13/fd")));
    QVERIFY(QDir().mkpath(m_places.processFolder + QStringLiteral("/sys")));
    QCOMPARE(ListHidNodes(m_places).constLast(),
             QStringLiteral("(1 processes of other users do not tell what they hold)"));
}

void TestHidNodeList::WithoutDevicesThereIsNothing() {
    QCOMPARE(ListHidNodes(m_places), QStringList());
    m_places.classFolder = QStringLiteral("/nowhere");
    QCOMPARE(ListHidNodes(m_places), QStringList());
}

KIVO_GUILESS_TEST(TestHidNodeList)
#include "tst_hid_node_list_linux.moc"
