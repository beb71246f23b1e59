#include <QImage>
#include <QProcess>
#include <QtTest>
#include <memory>

#include "program_home.h"
#include "support/built_paths.h"
#include "support/private_bus_linux.h"
#include "support/test_program.h"

using namespace kivo::test;

// The program as a process, beside a logind that says that the person goes and comes.
class TestProgramAway : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void SleepWaitsForTheBlackPanel();
    void LockAndEndAreDarkWhereTicked();
    void NobodyTellsAndTheProgramRuns();

private:
    // Up, with its first frame on the panel.
    std::unique_ptr<QProcess> Run() const;
    QImage Panel() const { return QImage(m_home->File("panel.png")); }
    bool IsBlack() const;

    std::unique_ptr<ProgramHome> m_home;
    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<FakeLogind> m_logind;
};

void TestProgramAway::init() {
    m_home = std::make_unique<ProgramHome>();
    QVERIFY(m_home->IsValid());
    m_bus = std::make_unique<PrivateBus>();
    m_logind = std::make_unique<FakeLogind>(m_bus->Connect(QStringLiteral("logind")));
}

void TestProgramAway::cleanup() {
    m_logind.reset();
    m_bus.reset();
}

std::unique_ptr<QProcess> TestProgramAway::Run() const {
    auto process = std::make_unique<QProcess>();
    QProcessEnvironment environment = m_home->Environment();
    for (const char* name : {"DBUS_SYSTEM_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS"}) {
        environment.insert(QString::fromLatin1(name), m_bus->Address());
    }
    process->setProcessEnvironment(environment);
    process->setProcessChannelMode(QProcess::MergedChannels);
    QFile::remove(m_home->File("panel.png"));
    process->start(BuiltProgram("kivo-screen"), {QStringLiteral("--virtual-screen"),
                                                 QStringLiteral("--panel-image"), m_home->File("panel.png")});
    const bool isUp = QTest::qWaitFor([this] { return !Panel().isNull() && !IsBlack(); }, kLongMs);
    return isUp ? std::move(process) : nullptr;
}

bool TestProgramAway::IsBlack() const {
    const QImage image = Panel().convertToFormat(QImage::Format_RGB32);
    QImage black(image.size(), QImage::Format_RGB32);
    black.fill(Qt::black);
    return !image.isNull() && image == black;
}

void TestProgramAway::SleepWaitsForTheBlackPanel() {
    const std::unique_ptr<QProcess> program = Run();
    QVERIFY(program);
    for (int sleep = 0; sleep < 2; ++sleep) {
        QTRY_COMPARE_WITH_TIMEOUT(m_logind->Held(), 1, kLongMs);
        Q_EMIT m_logind->PrepareForSleep(true);
        QTRY_COMPARE_WITH_TIMEOUT(m_logind->Held(), 0, kLongMs);
        QTRY_VERIFY_WITH_TIMEOUT(IsBlack(), kLongMs);
        Q_EMIT m_logind->PrepareForSleep(false);
        QTRY_VERIFY_WITH_TIMEOUT(!Panel().isNull() && !IsBlack(), kLongMs);
    }
    // A lock is not ticked.
    Q_EMIT m_logind->session.Lock();
    QTRY_COMPARE_WITH_TIMEOUT(m_logind->Held(), 1, kLongMs);
    QVERIFY(!IsBlack());
    End(*program);
    QVERIFY(!IsBlack());
    QCOMPARE(m_logind->Held(), 0);
}

void TestProgramAway::LockAndEndAreDarkWhereTicked() {
    const std::unique_ptr<QProcess> first = Run();
    QVERIFY(first);
    End(*first);
    QFile settings(m_home->File("data/Kivo Tool/Config.ini"));
    QVERIFY(settings.open(QIODevice::Append));
    QVERIFY(settings.write("\n[Away]\nDarkAtLock=1\nDarkAtExit=1\n") > 0);
    settings.close();
    m_logind->session.timesAsked = 0;
    const std::unique_ptr<QProcess> program = Run();
    QVERIFY(program);
    QTRY_VERIFY_WITH_TIMEOUT(m_logind->session.timesAsked > 0, kLongMs);
    Q_EMIT m_logind->session.Lock();
    QTRY_VERIFY_WITH_TIMEOUT(IsBlack(), kLongMs);
    Q_EMIT m_logind->session.Unlock();
    QTRY_VERIFY_WITH_TIMEOUT(!Panel().isNull() && !IsBlack(), kLongMs);
    End(*program);
    QVERIFY(IsBlack());
}

// A system without logind, and a bus that dies under the program.
void TestProgramAway::NobodyTellsAndTheProgramRuns() {
    m_logind.reset();
    const std::unique_ptr<QProcess> program = Run();
    QVERIFY(program);
    m_bus.reset();
    QFile::remove(m_home->File("panel.png"));
    QTRY_VERIFY_WITH_TIMEOUT(!Panel().isNull(), kLongMs);
    QCOMPARE(program->state(), QProcess::Running);
    End(*program);
}

KIVO_TEST(TestProgramAway)
#include "tst_program_away.moc"
