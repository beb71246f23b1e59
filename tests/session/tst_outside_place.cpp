#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <QtTest>
#include <vector>

#include "outside_caller.h"
#include "session/outside_control.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// Where the channel lies on Linux, and who gets through it.
class TestOutsidePlace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_folder.reset(); }
    void SocketOfAKilledCopyIsReplaced();
    void LinkIsNotFollowed();
    void FileThatIsNoSocketStays();
    void SocketOfTheNextCopyStays();
    void FolderOpenToOthersIsPassedOver();
    void OwnFolderThatIsOpenToOthersIsNotUsed_data();
    void OwnFolderThatIsOpenToOthersIsNotUsed();
    void CallersWithoutNumberKeepNobodyFromAsking();
    void AnotherUserIsNotHeard();

private:
    QString Socket() const { return m_folder->Path("kivo-screen.control"); }
    QString OwnFolder() const { return m_folder->Path("kivo-screen-") + QString::number(::geteuid()); }
    // A connection by hand; -1 where there is none.
    int Connect() const;

    std::unique_ptr<OutsideFolder> m_folder;
};

namespace {

void Open(OutsideControl& control) {
    control.Open([](const OutsideCommands&, const OutsideReply& reply) { reply.give({true, QString()}); });
}

bool IsTaken() {
    const OutsideCaller caller(Asked(OutsideKind::Show));
    return QTest::qWaitFor([&caller] { return caller.IsOver(); }, 40000) && caller.Answer() &&
           caller.Answer()->isTaken;
}

void Write(const QString& path, const QByteArray& content) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray Read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<none>");
}

}  // namespace

void TestOutsidePlace::init() {
    m_folder = std::make_unique<OutsideFolder>();
    QVERIFY(m_folder->IsValid());
}

int TestOutsidePlace::Connect() const {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(Socket());
    std::copy(path.begin(), path.end(), address.sun_path);
    if (::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(socket);
        return -1;
    }
    return socket;
}

void TestOutsidePlace::SocketOfAKilledCopyIsReplaced() {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = QFile::encodeName(Socket());
    std::copy(path.begin(), path.end(), address.sun_path);
    QCOMPARE(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
    OutsideControl control;
    Open(control);
    QVERIFY(control.IsListening());
    QVERIFY(IsTaken());
    control.Close();
    QVERIFY(!QFileInfo::exists(Socket()));
}

void TestOutsidePlace::LinkIsNotFollowed() {
    const QString kept = m_folder->Path("kept");
    Write(kept, "mine");
    QVERIFY(QFile::link(kept, Socket()));
    OutsideControl control;
    Open(control);
    QVERIFY(control.IsListening());
    QVERIFY(!QFileInfo(Socket()).isSymLink());
    QCOMPARE(Read(kept), QByteArray("mine"));
    // Nor by whoever calls.
    const QString moved = m_folder->Path("moved");
    QVERIFY(QFile::rename(Socket(), moved));
    QVERIFY(QFile::link(moved, Socket()));
    const ChannelReply reply =
        CallChannel(OutsideRequest(Asked(OutsideKind::Show)), IsWholeMessage, QDeadlineTimer(1000));
    QVERIFY(reply.state == ChannelReply::State::Nobody);
}

void TestOutsidePlace::FileThatIsNoSocketStays() {
    Write(Socket(), "mine");
    OutsideControl control;
    Open(control);
    QVERIFY(!control.IsListening());
    QCOMPARE(Read(Socket()), QByteArray("mine"));
    QVERIFY(QFile::remove(Socket()));
    QTRY_VERIFY_WITH_TIMEOUT(control.IsListening(), 30000);
}

void TestOutsidePlace::SocketOfTheNextCopyStays() {
    OutsideControl first;
    Open(first);
    QVERIFY(QFile::remove(Socket()));
    OutsideControl second;
    Open(second);
    QVERIFY(second.IsListening());
    first.Close();
    QVERIFY(IsTaken());
}

void TestOutsidePlace::FolderOpenToOthersIsPassedOver() {
    const QString open = m_folder->Path("open");
    QVERIFY(QDir().mkdir(open));
    QCOMPARE(::chmod(QFile::encodeName(open).constData(), 0755), 0);
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(open));
    OutsideControl control;
    Open(control);
    QVERIFY(control.IsListening());
    QVERIFY(QDir(open).isEmpty(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot));
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(OwnFolder()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, mode_t(0700));
    QVERIFY(IsTaken());
}

void TestOutsidePlace::OwnFolderThatIsOpenToOthersIsNotUsed_data() {
    QTest::addColumn<bool>("isLink");
    QTest::newRow("made by somebody before") << false;
    QTest::newRow("a link to a folder") << true;
}

void TestOutsidePlace::OwnFolderThatIsOpenToOthersIsNotUsed() {
    QFETCH(bool, isLink);
    qputenv("XDG_RUNTIME_DIR", "/nowhere");
    if (isLink) {
        const QString elsewhere = m_folder->Path("elsewhere");
        QCOMPARE(::mkdir(QFile::encodeName(elsewhere).constData(), 0700), 0);
        QVERIFY(QFile::link(elsewhere, OwnFolder()));
    } else {
        QVERIFY(QDir().mkdir(OwnFolder()));
        QCOMPARE(::chmod(QFile::encodeName(OwnFolder()).constData(), 0777), 0);
    }
    OutsideControl control;
    Open(control);
    QVERIFY(!control.IsListening());
    QVERIFY(QDir(OwnFolder()).isEmpty(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot));
}

// Thousands, each with half a message, or none; and some that never let go of their answer.
void TestOutsidePlace::CallersWithoutNumberKeepNobodyFromAsking() {
    OutsideControl control;
    Open(control);
    const QByteArray request = OutsideRequest(Asked(OutsideKind::Show));
    std::vector<int> open;
    for (int number = 0; number < 3000; ++number) {
        const int socket = Connect();
        QVERIFY(socket >= 0);
        const int length = number % 3 == 0 ? request.size() : number % request.size();
        QCOMPARE(::send(socket, request.constData(), size_t(length), MSG_NOSIGNAL), ssize_t(length));
        open.push_back(socket);
        while (open.size() > 200) {
            ::close(open.front());
            open.erase(open.begin());
        }
        QCoreApplication::processEvents();
        QVERIFY(control.CallerCount() <= OutsideControl::kMostCallers);
    }
    QVERIFY(IsTaken());
    for (const int socket : open) {
        ::close(socket);
    }
    QTRY_COMPARE(control.CallerCount(), 0);
}

// Only the superuser can become somebody else.
void TestOutsidePlace::AnotherUserIsNotHeard() {
    if (::geteuid() != 0) {
        return;
    }
    constexpr uid_t kNobody = 65534;
    OutsideControl control;
    Open(control);
    QCOMPARE(::seteuid(kNobody), 0);
    const int kept = Connect();
    QCOMPARE(::seteuid(0), 0);
    QCOMPARE(kept, -1);
    // Where the rights of folder and socket have been loosened the two sides still ask who is there.
    QCOMPARE(::chmod(QFile::encodeName(m_folder->Path(".")).constData(), 0755), 0);
    QCOMPARE(::chmod(QFile::encodeName(Socket()).constData(), 0777), 0);
    QCOMPARE(::seteuid(kNobody), 0);
    const int socket = Connect();
    QCOMPARE(::seteuid(0), 0);
    QVERIFY(socket >= 0);
    const QByteArray request = OutsideRequest(Asked(OutsideKind::Show));
    static_cast<void>(::send(socket, request.constData(), size_t(request.size()), MSG_NOSIGNAL));
    QCoreApplication::processEvents();
    char byte = 0;
    QTRY_VERIFY(::recv(socket, &byte, 1, MSG_DONTWAIT) != 1 && errno != EAGAIN);
    QCOMPARE(control.CallerCount(), 0);
    ::close(socket);
}

KIVO_GUILESS_TEST(TestOutsidePlace)
#include "tst_outside_place.moc"
