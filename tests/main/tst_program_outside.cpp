#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <memory>

#include "program_home.h"
#include "support/built_paths.h"
#include "support/test_program.h"

using namespace kivo::test;

// A running copy and second starts with arguments, as processes, as a person starts them.
class TestProgramOutside : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void CommandsAreTakenByTheRunningCopy();
    void BareEnvironmentIsEnough();
    void LayoutOfAFileIsApplied();
    void WhatIsNotTakenSaysWhy();
    void BadValuesAreNotSent();
    void BlankPanelStaysBlank();
    void WithNoCopyRunningTheProgramStartsSo();
    void CopyThatHangsIsGivenUp();
    void StartsAtTheSameTimeAreAllTaken();

private:
    // A copy on a software panel, up and listening.
    std::unique_ptr<QProcess> Run(const QStringList& arguments = {}) const;
    // Exit status of a second start; said gets what it said.
    int Tell(const QStringList& arguments, QByteArray* said = nullptr) const;
    bool Write(const char* name, const QByteArray& bytes) const {
        QFile file(m_home->File(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }
    QImage Panel() const { return QImage(m_home->File("panel.png")); }
    static QStringList Words(const char* text) { return QString::fromUtf8(text).split(QLatin1Char(' ')); }

    std::unique_ptr<ProgramHome> m_home;
};

namespace {

bool IsBlack(const QImage& image) {
    if (image.isNull()) {
        return false;
    }
    QImage black(image.size(), QImage::Format_RGB32);
    black.fill(Qt::black);
    return image.convertToFormat(QImage::Format_RGB32) == black;
}

}  // namespace

void TestProgramOutside::init() {
    m_home = std::make_unique<ProgramHome>();
    QVERIFY(m_home->IsValid());
}

std::unique_ptr<QProcess> TestProgramOutside::Run(const QStringList& arguments) const {
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(m_home->Environment());
    process->setProcessChannelMode(QProcess::MergedChannels);
    process->start(BuiltProgram("kivo-screen"), Words("--virtual-screen --panel-image") +
                                                    QStringList{m_home->File("panel.png")} + arguments);
    // Its first frame is there, so that the next one is another.
    const auto isUp = [this] {
        return QFileInfo::exists(m_home->File("kivo-screen.control")) && !Panel().isNull() &&
               !IsBlack(Panel());
    };
    return QTest::qWaitFor(isUp, kLongMs) ? std::move(process) : nullptr;
}

int TestProgramOutside::Tell(const QStringList& arguments, QByteArray* said) const {
    QProcess process;
    process.setProcessEnvironment(m_home->Environment());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(m_home->File(""));
    process.start(BuiltProgram("kivo-screen"), arguments);
    const int code = ExitCode(process, kLongMs);
    if (said != nullptr) {
        *said = process.readAll();
    }
    return code;
}

void TestProgramOutside::CommandsAreTakenByTheRunningCopy() {
    const std::unique_ptr<QProcess> copy = Run();
    QVERIFY(copy);
    QImage picture(640, 340, QImage::Format_RGB32);
    picture.fill(Qt::darkRed);
    QVERIFY(picture.save(m_home->File("night.png")));
    const QStringList tries[] = {
        Words("--theme 3"),           Words("--orientation portrait"),
        Words("--layout one"),        {QStringLiteral("--text"), QStringLiteral("Good night")},
        Words("--picture night.png"), Words("--layout five --orientation landscape")};
    for (const QStringList& arguments : tries) {
        const QImage before = Panel();
        QByteArray said;
        QCOMPARE(Tell(arguments, &said), 0);
        QCOMPARE(said, QByteArray());
        QTRY_VERIFY2_WITH_TIMEOUT(!Panel().isNull() && Panel() != before,
                                  qPrintable(arguments.join(QLatin1Char(' '))), kLongMs);
    }
    QCOMPARE(Tell(Words("--show")), 0);
    End(*copy);
    QVERIFY(!QFileInfo::exists(m_home->File("kivo-screen.control")));
}

// As a job has it that runs beside the session: no display, no language, no folders but these.
void TestProgramOutside::BareEnvironmentIsEnough() {
    const std::unique_ptr<QProcess> copy = Run();
    QVERIFY(copy);
    QProcess job;
    QProcessEnvironment environment;
    for (const char* name : {"HOME", "TMPDIR", "XDG_RUNTIME_DIR", "LD_LIBRARY_PATH", "ASAN_OPTIONS",
                             "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        const QString key = QString::fromLatin1(name);
        if (m_home->Environment().contains(key)) {
            environment.insert(key, m_home->Environment().value(key));
        }
    }
    job.setProcessEnvironment(environment);
    job.start(BuiltProgram("kivo-screen"), Words("--theme 2"));
    QCOMPARE(ExitCode(job, kLongMs), 0);
    QCOMPARE(job.readAllStandardError(), QByteArray());
    End(*copy);
}

void TestProgramOutside::LayoutOfAFileIsApplied() {
    QVERIFY(Write("upright.kivolayout",
                  "{\"Kivo Screen layout\": 1, \"shows\": \"theme\", \"theme\": 2, \"orientation\": "
                  "\"portrait\"}"));
    QVERIFY(Write("bad.kivolayout", "{\"Kivo Screen layout\": 1, \"dim\": 101}"));
    const std::unique_ptr<QProcess> copy = Run();
    QVERIFY(copy);
    const QImage before = Panel();
    QByteArray said;
    QCOMPARE(Tell(Words("--apply upright.kivolayout"), &said), 0);
    QCOMPARE(said, QByteArray());
    QTRY_VERIFY_WITH_TIMEOUT(!Panel().isNull() && Panel() != before, kLongMs);
    QCOMPARE(Tell(Words("--apply bad.kivolayout"), &said), 1);
    QVERIFY2(said.contains("bad.kivolayout") && said.contains("'dim'"), said.constData());
    QCOMPARE(said.count('\n'), 1);
    End(*copy);
    QFile settings(m_home->File("data/Kivo Tool/Config.ini"));
    QVERIFY(settings.open(QIODevice::ReadOnly));
    const QByteArray kept = settings.readAll();
    QVERIFY(kept.contains("ThemeID=2") && kept.contains("Hor=1"));
}

void TestProgramOutside::WhatIsNotTakenSaysWhy() {
    const std::unique_ptr<QProcess> copy = Run();
    QVERIFY(copy);
    QFile broken(m_home->File("broken.png"));
    QVERIFY(broken.open(QIODevice::WriteOnly));
    QByteArray said;
    QCOMPARE(Tell(Words("--picture broken.png"), &said), 1);
    QVERIFY2(said.startsWith("kivo-screen: ") && said.contains("broken.png"), said.constData());
    QCOMPARE(said.count('\n'), 1);
    QCOMPARE(Tell(Words("--text Hello"), &said), 1);
    QVERIFY2(said.contains("theme"), said.constData());
    QCOMPARE(said.count('\n'), 1);
    End(*copy);
}

void TestProgramOutside::BadValuesAreNotSent() {
    for (const char* arguments :
         {"--theme 4", "--layout six", "--orientation up", "--blank maybe", "--picture missing.png",
          "--apply missing.kivolayout", "--apply panel.png --theme 1", "--quit", "--theme", "--show now"}) {
        QByteArray said;
        QCOMPARE(Tell(Words(arguments), &said), 2);
        QCOMPARE(said.count('\n'), 1);
    }
    QVERIFY(!QFile::exists(m_home->File("data")));
}

void TestProgramOutside::BlankPanelStaysBlank() {
    const std::unique_ptr<QProcess> copy = Run();
    QVERIFY(copy);
    QCOMPARE(Tell(Words("--blank on")), 0);
    QTRY_VERIFY_WITH_TIMEOUT(IsBlack(Panel()), kLongMs);
    QCOMPARE(Tell(Words("--theme 2")), 0);
    QCOMPARE(Tell(Words("--blank on")), 0);
    QVERIFY(IsBlack(Panel()));
    QCOMPARE(Tell(Words("--blank off")), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!IsBlack(Panel()), kLongMs);
    End(*copy);
}

void TestProgramOutside::WithNoCopyRunningTheProgramStartsSo() {
    {
        const std::unique_ptr<QProcess> first = Run();
        QVERIFY(first);
        End(*first);
    }
    QProcess dark;
    dark.setProcessEnvironment(m_home->Environment());
    dark.start(BuiltProgram("kivo-screen"), Words("--virtual-screen --theme 3 --blank on --panel-image") +
                                                QStringList{m_home->File("panel.png")});
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(m_home->File("kivo-screen.control")), kLongMs);
    QTRY_VERIFY_WITH_TIMEOUT(IsBlack(Panel()), kLongMs);
    QCOMPARE(Tell(Words("--blank off")), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!IsBlack(Panel()), kLongMs);
    End(dark);
    QFile settings(m_home->File("data/Kivo Tool/Config.ini"));
    QVERIFY(settings.open(QIODevice::ReadOnly));
    QVERIFY(settings.readAll().contains("ThemeID=3"));
}

// It is stopped, as by a debugger; what it was told then must not come true when it goes on.
void TestProgramOutside::CopyThatHangsIsGivenUp() {
    const std::unique_ptr<QProcess> copy = Run();
    QVERIFY(copy);
    QCOMPARE(::kill(pid_t(copy->processId()), SIGSTOP), 0);
    QByteArray said;
    const int status = Tell(Words("--theme 3"), &said);
    QCOMPARE(::kill(pid_t(copy->processId()), SIGCONT), 0);
    QCOMPARE(status, 1);
    QVERIFY2(said.contains("does not answer"), said.constData());
    QCOMPARE(Tell(Words("--orientation portrait")), 0);
    End(*copy);
    QFile settings(m_home->File("data/Kivo Tool/Config.ini"));
    QVERIFY(settings.open(QIODevice::ReadOnly));
    const QByteArray kept = settings.readAll();
    QVERIFY(kept.contains("Hor=1"));
    QVERIFY(!kept.contains("ThemeID=3"));
}

void TestProgramOutside::StartsAtTheSameTimeAreAllTaken() {
    const std::unique_ptr<QProcess> copy = Run();
    QVERIFY(copy);
    std::vector<std::unique_ptr<QProcess>> starts;
    for (int number = 0; number < 8; ++number) {
        starts.push_back(std::make_unique<QProcess>());
        starts.back()->setProcessEnvironment(m_home->Environment());
        starts.back()->start(BuiltProgram("kivo-screen"), Words(number % 2 == 0 ? "--theme 1" : "--theme 2"));
    }
    for (const auto& start : starts) {
        QCOMPARE(ExitCode(*start, kLongMs), 0);
    }
    End(*copy);
}

KIVO_GUILESS_TEST(TestProgramOutside)
#include "tst_program_outside.moc"
