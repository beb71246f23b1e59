#include <QtTest>

#include "../config/log_catcher.h"
#include "config/folders.h"
#include "panel/panel_memory.h"
#include "support/test_program.h"

using namespace kivo;
using kivo::test::LogCatcher;

namespace {

const QByteArray kId = QByteArrayLiteral("0123456789abcdef0123456789abcdef01234567");
const QByteArray kOtherId = QByteArrayLiteral("89abcdef0123456789abcdef0123456789abcdef");

}  // namespace

// What the panel took, over the program's end: the file may be anything by the next start.
class TestPanelMemory : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();

    void LiesInTheWorkingFolder();
    void TellsNothingWithoutAFile();
    void TellsWhatWasWritten_data();
    void TellsWhatWasWritten();
    void WritingReplaces();
    void ForgetsFromOneProcessToTheNext();
    void BelievesNoDamagedFile_data();
    void BelievesNoDamagedFile();
    void BelievesNoFileThatWasCutOff();
    void LeavesAFolderInItsPlaceAlone();
    void TellsOfAFileThatCannotBeWritten();
    void ForgettingWithoutAFileIsQuiet();
    void RemovesTheMarkOfVersionOne();

private:
    QString Path() const { return m_folder->filePath(QStringLiteral("whole.state")); }
    void Put(const QByteArray& content) const {
        QFile file(Path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }
    QByteArray Written(const RememberedPanel& panel) const {
        PanelMemory(Path()).Write(panel);
        QFile file(Path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestPanelMemory::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestPanelMemory::LiesInTheWorkingFolder() {
    QCOMPARE(PanelMemory::DefaultPath(), WorkingFolder() + QStringLiteral("/whole.state"));
}

void TestPanelMemory::TellsNothingWithoutAFile() {
    QVERIFY(!PanelMemory(Path()).Read());
    QVERIFY(!PanelMemory(m_folder->filePath(QStringLiteral("no such folder/whole.state"))).Read());
}

void TestPanelMemory::TellsWhatWasWritten_data() {
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("a serial number") << QByteArray("serial:0123-ABC");
    QTest::newRow("a port") << QByteArray("port:pci-0000:00:14.0-usb-0:2.1:1.1");
    QTest::newRow("not known") << QByteArray();
    QTest::newRow("blanks at both ends") << QByteArray("  a b  ");
    QTest::newRow("line ends") << QByteArray("a\nframe \r\nb\n");
    QTest::newRow("percent signs") << QByteArray("100%41%");
    QTest::newRow("zero bytes and bytes that are no text") << QByteArray("\0a\xff\xfe\0", 5);
    QTest::newRow("letters beyond ASCII") << QByteArray("屏幕 №1");
}

void TestPanelMemory::TellsWhatWasWritten() {
    QFETCH(QByteArray, key);
    PanelMemory(Path()).Write({key, kId});
    const std::optional<RememberedPanel> panel = PanelMemory(Path()).Read();
    QVERIFY(panel.has_value());
    QCOMPARE(panel->panelKey, key);
    QCOMPARE(panel->frameId, kId);
}

void TestPanelMemory::WritingReplaces() {
    const PanelMemory memory(Path());
    memory.Write({"a key that is longer than the next", kId});
    memory.Write({"b", kOtherId});
    QCOMPARE(memory.Read()->panelKey, QByteArray("b"));
    QCOMPARE(memory.Read()->frameId, kOtherId);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 1);
}

void TestPanelMemory::ForgetsFromOneProcessToTheNext() {
    PanelMemory(Path()).Write({"a", kId});
    PanelMemory(Path()).Forget();
    QVERIFY(!QFile::exists(Path()));
    QVERIFY(!PanelMemory(Path()).Read());
}

void TestPanelMemory::BelievesNoDamagedFile_data() {
    QTest::addColumn<QByteArray>("content");
    const QByteArray head("KivoPanel 1\n");
    const QByteArray panel("panel a\n");
    const QByteArray frame = "frame " + kId + "\n";
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("line ends only") << QByteArray("\n\n\n");
    QTest::newRow("zeros, as a power cut leaves them")
        << QByteArray(int((head + panel + frame).size()), '\0');
    QTest::newRow("another version") << "KivoPanel 2\n" + panel + frame;
    QTest::newRow("something before it") << " " + head + panel + frame;
    QTest::newRow("a mark of the byte order") << "\xef\xbb\xbf" + head + panel + frame;
    QTest::newRow("line ends of another system") << QByteArray(head + panel + frame).replace("\n", "\r\n");
    QTest::newRow("no head") << panel + frame;
    QTest::newRow("no panel") << head + frame;
    QTest::newRow("no frame") << head + panel;
    QTest::newRow("the lines exchanged") << head + frame + panel;
    QTest::newRow("a panel under another name") << head + "screen a\n" + frame;
    QTest::newRow("a frame under another name") << head + panel + "picture " + kId + "\n";
    QTest::newRow("no frame in its line") << head + panel + "frame \n";
    QTest::newRow("a frame that is too short") << head + panel + "frame " + kId.left(39) + "\n";
    QTest::newRow("a frame that is too long") << head + panel + "frame " + kId + "0\n";
    QTest::newRow("one line too many") << head + panel + frame + "more\n";
    QTest::newRow("something behind it") << head + panel + frame + "x";
    QTest::newRow("twice") << head + panel + frame + head + panel + frame;
    QTest::newRow("a key larger than any file") << head + "panel " + QByteArray(5000, 'a') + "\n" + frame;
    QTest::newRow("huge") << QByteArray(20 * 1024 * 1024, '\n');
    QTest::newRow("huge, the beginning right") << head + panel + frame + QByteArray(20 * 1024 * 1024, '\n');
}

void TestPanelMemory::BelievesNoDamagedFile() {
    QFETCH(QByteArray, content);
    Put(content);
    const PanelMemory memory(Path());
    QVERIFY(!memory.Read());
    memory.Write({"b", kOtherId});
    QVERIFY(memory.Read().has_value());
    QCOMPARE(memory.Read()->frameId, kOtherId);
}

void TestPanelMemory::BelievesNoFileThatWasCutOff() {
    const QByteArray whole = Written({"a panel", kId});
    QVERIFY(whole.size() > kId.size());
    for (int size = 0; size < whole.size(); ++size) {
        Put(whole.left(size));
        QVERIFY2(!PanelMemory(Path()).Read(), QByteArray::number(size));
    }
    Put(whole);
    QVERIFY(PanelMemory(Path()).Read().has_value());
}

void TestPanelMemory::LeavesAFolderInItsPlaceAlone() {
    QVERIFY(QDir().mkpath(Path() + QStringLiteral("/something")));
    const PanelMemory memory(Path());
    QVERIFY(!memory.Read());
    const LogCatcher log;
    memory.Write({"a", kId});
    memory.Forget();
    QCOMPARE(log.lines().size(), 2);
    QVERIFY(QFileInfo(Path() + QStringLiteral("/something")).isDir());
    QVERIFY(!memory.Read());
}

void TestPanelMemory::TellsOfAFileThatCannotBeWritten() {
    const QString path = m_folder->filePath(QStringLiteral("no such folder/whole.state"));
    const LogCatcher log;
    PanelMemory(path).Write({"a", kId});
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.lines().first().startsWith(path));
}

void TestPanelMemory::ForgettingWithoutAFileIsQuiet() {
    const LogCatcher log;
    PanelMemory(Path()).Forget();
    QVERIFY(log.lines().isEmpty());
}

void TestPanelMemory::RemovesTheMarkOfVersionOne() {
    const QString mark = WorkingFolder() + QStringLiteral("/whole.pending");
    QFile file(mark);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY(RemoveFormerMark());
    QVERIFY(!QFile::exists(mark));
    QVERIFY(!RemoveFormerMark());
}

KIVO_GUILESS_TEST(TestPanelMemory)
#include "tst_panel_memory.moc"
