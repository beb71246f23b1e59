#include <sys/file.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <unistd.h>
#include <QSharedMemory>
#include <QSystemSemaphore>
#include <QtTest>
#include <memory>
#include <vector>

#include "../config/private_home.h"
#include "instance_copies.h"
#include "session/single_instance.h"
#include "support/test_program.h"

using namespace kivo;
using kivo::test::Copy;
using kivo::test::kReachableFolder;

// Copies of the program as processes of their own, started, killed and set against each other.
class TestSingleInstance : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void NamesCarryTheUser();
    void FirstCopyGoesOn();
    void SecondCopyWakesTheFirstAndEndsWithZero();
    void RequestIsResetSoThatAFurtherStartWakesAgain();
    void SecondCopiesBeforeThePollAreOneRequest();
    void CopiesStartedAtOnceGiveExactlyOne_data();
    void CopiesStartedAtOnceGiveExactlyOne();
    void NextStartIsFirstAgainWhenTheFirstHasEnded();
    void NextStartIsFirstAgainWhenTheFirstWasKilled();
    void CopyKilledWhileItHoldsTheSemaphore();
    void CopiesKilledAtAnyMoment();
    void MemoryLeftUnderTheNumberOfANewKeyFile();
    void EveryWayOutOfThePollReleasesTheSemaphore();
    void MemoryThatCannotBeCreated();
    void NoFolderForTemporaryFiles();
    void StaleMemoryOfAnotherUser();
    void PollKeepsTheKeyFileFresh();
    void CopyThatIsStoppedInsideHoldsNobodyUp();
    void GuardThatIsCleanedAwayIsMadeAnew();
    void GuardThatCannotBeHadIsDoneWithout_data();
    void GuardThatCannotBeHadIsDoneWithout();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {

constexpr quint32 kStartUs = 5000;  // what a start takes and more

// Both as a copy of this user makes them, and as one without rights does.
void RemoveFromSystem(const QString& semaphore, const QString& memory) {
    QSharedMemory stale;
    stale.setNativeKey(QSharedMemory(memory).nativeKey());
    stale.attach();
    stale.detach();
    // Who makes a semaphore anew takes it along.
    const QSystemSemaphore anew(semaphore, 1, QSystemSemaphore::Create);
}

QString OfNobody(QString name) {
    name.truncate(name.lastIndexOf(QLatin1Char(' ')));
    return name + QStringLiteral(" %1").arg(kivo::test::kNobody);
}

QString GuardFile() {
    return QDir::temp().filePath(QStringLiteral("Kivo Screen Setting Guard %1").arg(::getuid()));
}

QString MemoryKeyFile() {
    return QSharedMemory(SingleInstance::MemoryName()).nativeKey();
}

// The system's number of the memory that this process has made; -1 for none.
int SegmentMadeHere() {
    struct shm_info info = {};
    const int last = ::shmctl(0, SHM_INFO, reinterpret_cast<struct shmid_ds*>(&info));
    for (int k = 0; k <= last; ++k) {
        struct shmid_ds segment = {};
        const int id = ::shmctl(k, SHM_STAT, &segment);
        if (id >= 0 && segment.shm_cpid == ::getpid()) {
            return id;
        }
    }
    return -1;
}

}  // namespace

void TestSingleInstance::init() {
    // A place where no other copy looks, but any user may.
    m_folder = std::make_unique<QTemporaryDir>(kReachableFolder);
    QVERIFY(m_folder->isValid());
    qputenv("TMPDIR", m_folder->path().toUtf8());
    QVERIFY(MemoryKeyFile().startsWith(m_folder->path()));
}

void TestSingleInstance::cleanup() {
    RemoveFromSystem(SingleInstance::SemaphoreName(), SingleInstance::MemoryName());
    RemoveFromSystem(OfNobody(SingleInstance::SemaphoreName()), OfNobody(SingleInstance::MemoryName()));
    qunsetenv("TMPDIR");
    m_folder.reset();
}

void TestSingleInstance::NamesCarryTheUser() {
    const QString user = QString::number(::getuid());
    QCOMPARE(SingleInstance::SemaphoreName(), QStringLiteral("Kivo Screen Setting Semaphore ") + user);
    QCOMPARE(SingleInstance::MemoryName(), QStringLiteral("Kivo Screen Setting Memory ") + user);
}

void TestSingleInstance::FirstCopyGoesOn() {
    Copy copy;
    QCOMPARE(copy.Ask("start"), QByteArray("first"));
    QCOMPARE(copy.Ask("poll"), QByteArray("quiet"));
    QCOMPARE(copy.End(), 0);
}

void TestSingleInstance::SecondCopyWakesTheFirstAndEndsWithZero() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    Copy second;
    QCOMPARE(second.Ask("start"), QByteArray("second"));
    QCOMPARE(second.End(), 0);
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
}

void TestSingleInstance::RequestIsResetSoThatAFurtherStartWakesAgain() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    for (int k = 0; k < 3; ++k) {
        QCOMPARE(Copy().Ask("start"), QByteArray("second"));
        QCOMPARE(first.Ask("poll"), QByteArray("asked"));
        QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
    }
}

void TestSingleInstance::SecondCopiesBeforeThePollAreOneRequest() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
    QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
}

void TestSingleInstance::CopiesStartedAtOnceGiveExactlyOne_data() {
    QTest::addColumn<int>("copies");
    QTest::newRow("two") << 2;
    QTest::newRow("ten") << 10;
}

void TestSingleInstance::CopiesStartedAtOnceGiveExactlyOne() {
    QFETCH(int, copies);
    for (int round = 0; round < 8; ++round) {
        std::vector<std::unique_ptr<Copy>> all;
        for (int k = 0; k < copies; ++k) {
            all.push_back(std::make_unique<Copy>());
        }
        for (const auto& copy : all) {
            QVERIFY(copy->WaitStarted());
        }
        for (const auto& copy : all) {
            copy->Tell("start");
        }
        int first = 0;
        int second = 0;
        Copy* running = nullptr;
        for (const auto& copy : all) {
            const QByteArray answer = copy->Answer();
            first += answer == "first" ? 1 : 0;
            second += answer == "second" ? 1 : 0;
            running = answer == "first" ? copy.get() : running;
        }
        QCOMPARE(first, 1);
        QCOMPARE(second, copies - 1);
        QCOMPARE(running->Ask("poll"), QByteArray("asked"));
        // Some rounds end by a kill, which leaves everything behind for the next one.
        QVERIFY(round % 2 == 0 ? running->End() == 0 : running->Kill());
    }
}

void TestSingleInstance::NextStartIsFirstAgainWhenTheFirstHasEnded() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    QCOMPARE(first.End(), 0);
    QVERIFY(!QFile::exists(MemoryKeyFile()));
    QCOMPARE(Copy().Ask("start"), QByteArray("first"));
}

void TestSingleInstance::NextStartIsFirstAgainWhenTheFirstWasKilled() {
    for (int k = 0; k < 3; ++k) {
        Copy first;
        QCOMPARE(first.Ask("start"), QByteArray("first"));
        // What was asked of it dies with it.
        QCOMPARE(Copy().Ask("start"), QByteArray("second"));
        QVERIFY(first.Kill());
        QVERIFY(QFile::exists(MemoryKeyFile()));
    }
    Copy next;
    QCOMPARE(next.Ask("start"), QByteArray("first"));
    QCOMPARE(next.Ask("poll"), QByteArray("quiet"));
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(next.Ask("poll"), QByteArray("asked"));
}

void TestSingleInstance::CopyKilledWhileItHoldsTheSemaphore() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    for (int k = 0; k < 3; ++k) {
        Copy holder;
        QCOMPARE(holder.Ask("hold"), QByteArray("holding"));
        Copy waiting;
        waiting.Tell("start");
        QVERIFY(holder.Kill());
        // Both get the semaphore, or they would never answer.
        QCOMPARE(waiting.Answer(), QByteArray("second"));
        QCOMPARE(first.Ask("poll"), QByteArray("asked"));
    }
}

void TestSingleInstance::CopiesKilledAtAnyMoment() {
    QRandomGenerator random(20260);
    for (int k = 0; k < 60; ++k) {
        Copy victim;
        QVERIFY(victim.WaitStarted());
        victim.Tell("start");
        QThread::usleep(random.bounded(kStartUs));
        QVERIFY(victim.Kill());
    }
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    for (int k = 0; k < 30; ++k) {
        Copy victim;
        QVERIFY(victim.WaitStarted());
        victim.Tell("start");
        QThread::usleep(random.bounded(kStartUs));
        QVERIFY(victim.Kill());
        QVERIFY(first.Ask("poll") != "no answer");
    }
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
}

// The key file was cleaned away, and the next one gets its number: most file systems give them out again.
void TestSingleInstance::MemoryLeftUnderTheNumberOfANewKeyFile() {
    for (int k = 0; k < 10; ++k) {
        {
            Copy killed;
            QCOMPARE(killed.Ask("start"), QByteArray("first"));
            QVERIFY(killed.Kill());
        }
        QVERIFY(QFile::remove(MemoryKeyFile()));
        Copy first;
        QCOMPARE(first.Ask("start"), QByteArray("first"));
        QCOMPARE(Copy().Ask("start"), QByteArray("second"));
        QCOMPARE(first.Ask("poll"), QByteArray("asked"));
    }
}

void TestSingleInstance::EveryWayOutOfThePollReleasesTheSemaphore() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
    QCOMPARE(Copy().Ask("hold"), QByteArray("holding"));
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
    QCOMPARE(Copy().Ask("hold"), QByteArray("holding"));
    // Nothing to attach to.
    QVERIFY(QFile::rename(MemoryKeyFile(), MemoryKeyFile() + QStringLiteral(".away")));
    QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
    QCOMPARE(Copy().Ask("hold"), QByteArray("holding"));
    QVERIFY(QFile::rename(MemoryKeyFile() + QStringLiteral(".away"), MemoryKeyFile()));
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
}

void TestSingleInstance::MemoryThatCannotBeCreated() {
    // Its key file is there, and is not.
    QVERIFY(QFile::link(QStringLiteral("/nowhere/at all"), MemoryKeyFile()));
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
    // A further copy starts fully as well.
    Copy second;
    QCOMPARE(second.Ask("start"), QByteArray("first"));
    QCOMPARE(second.End(), 0);
    QCOMPARE(first.End(), 0);
    QVERIFY(QFile::remove(MemoryKeyFile()));
}

void TestSingleInstance::NoFolderForTemporaryFiles() {
    qputenv("TMPDIR", "/proc");  // not even a superuser makes files there
    Copy copy;
    QCOMPARE(copy.Ask("start"), QByteArray("first"));
    QCOMPARE(copy.Ask("poll"), QByteArray("quiet"));
    QCOMPARE(copy.End(), 0);
    qputenv("TMPDIR", m_folder->path().toUtf8());
}

void TestSingleInstance::StaleMemoryOfAnotherUser() {
    // Under the very key that the copy will use there is memory which it may not touch.
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7777)));
    const bool isRoot = ::geteuid() == 0;
    const QString name = isRoot ? OfNobody(SingleInstance::MemoryName()) : SingleInstance::MemoryName();
    QSharedMemory foreign;
    foreign.setNativeKey(QSharedMemory(name).nativeKey());
    QVERIFY2(foreign.create(1), qPrintable(foreign.errorString()));
    const int id = SegmentMadeHere();
    struct shmid_ds segment = {};
    QCOMPARE(::shmctl(id, IPC_STAT, &segment), 0);
    segment.shm_perm.mode = 0;
    QCOMPARE(::shmctl(id, IPC_SET, &segment), 0);

    Copy copy;
    QCOMPARE(copy.Ask("nobody"), QByteArray("nobody"));
    QCOMPARE(copy.Ask("start"), QByteArray("first"));
    QCOMPARE(copy.Ask("poll"), QByteArray("quiet"));
    QCOMPARE(copy.End(), 0);
    QCOMPARE(::shmctl(id, IPC_RMID, nullptr), 0);
}

void TestSingleInstance::PollKeepsTheKeyFileFresh() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    const QDateTime longAgo(QDate(2001, 1, 1), QTime(12, 0));
    QFile key(MemoryKeyFile());
    QVERIFY(key.open(QIODevice::Append));
    QVERIFY(key.setFileTime(longAgo, QFileDevice::FileModificationTime));
    key.close();
    QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
    QVERIFY(QFileInfo(MemoryKeyFile()).lastModified() > longAgo.addYears(10));
    // It is still the same memory.
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
}

void TestSingleInstance::CopyThatIsStoppedInsideHoldsNobodyUp() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    Copy holder;
    QCOMPARE(holder.Ask("hold"), QByteArray("holding"));
    // The running copy's window would stand still.
    QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
    // It cannot know, and a program that does not start is worse than two.
    QCOMPARE(Copy().Ask("start"), QByteArray("first"));
    QVERIFY(holder.Kill());
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
}

void TestSingleInstance::GuardThatIsCleanedAwayIsMadeAnew() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    const QFileInfo guard(GuardFile());
    QVERIFY(guard.isFile());
    QCOMPARE(guard.permissions() & QFile::Permissions(0x0077), QFile::Permissions());
    QVERIFY(QFile::remove(GuardFile()));
    Copy holder;
    QCOMPARE(holder.Ask("guard"), QByteArray("guarding"));
    QCOMPARE(Copy().Ask("guard"), QByteArray("refused"));
    QVERIFY(holder.Kill());
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
}

void TestSingleInstance::GuardThatCannotBeHadIsDoneWithout_data() {
    QTest::addColumn<QByteArray>("inItsPlace");
    for (const char* what : {"link", "folder", "file of another user"}) {
        QTest::newRow(what) << QByteArray(what);
    }
}

void TestSingleInstance::GuardThatCannotBeHadIsDoneWithout() {
    QFETCH(QByteArray, inItsPlace);
    const QString target = m_folder->filePath(QStringLiteral("elsewhere"));
    QFile file(GuardFile());
    if (inItsPlace == "link") {
        QVERIFY(QFile::link(target, GuardFile()));
    } else if (inItsPlace == "folder") {
        QVERIFY(QDir().mkpath(GuardFile()));
    } else {
        QVERIFY(file.open(QIODevice::WriteOnly));
        // That user keeps it locked.
        QCOMPARE(::flock(file.handle(), LOCK_EX), 0);
        if (::chown(QFile::encodeName(GuardFile()).constData(), kivo::test::kNobody, gid_t(-1)) != 0) {
            QVERIFY(::geteuid() != 0);
            QVERIFY(file.setPermissions(QFile::Permissions()));
        }
    }
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
    QVERIFY(!QFile::exists(target));
}

KIVO_GUILESS_TEST(TestSingleInstance)
#include "tst_single_instance.moc"
