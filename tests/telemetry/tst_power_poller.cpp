#include <QtTest>

#include <array>
#include <limits>

#include "energy_library_folders.h"
#include "support/test_program.h"
#include "telemetry/intel_power_gadget_thread.h"
#include "told.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr std::chrono::milliseconds kShortPeriod{20};
constexpr std::chrono::milliseconds kEndlessPeriod = std::chrono::hours(1);

using Parts = IntelPowerGadgetThread::Parts;

Parts LibraryParts(const QString& folder, std::chrono::milliseconds period = kShortPeriod) {
    return {[folder] { return MakeLibrarySensors({Environment(folder)}); }, period};
}

Parts LibraryParts(const char* variant, std::chrono::milliseconds period = kShortPeriod) {
    return LibraryParts(LibraryFolder(variant), period);
}

using Sample = std::array<int, 4>;

// The samples that a poller tells.
struct Samples : Told<Sample> {
    explicit Samples(IntelPowerGadgetThread& poller)
        : Told(poller, &IntelPowerGadgetThread::RefreshCpuPowClock,
               [](int power, int temperature, int third, int fourth) {
                   return Sample{power, temperature, third, fourth};
               }) {}
};

// What a poller tells, in its order: a temperature reading, or a sample.
struct Signals : Told<QString> {
    explicit Signals(IntelPowerGadgetThread& poller)
        : Told(poller, &IntelPowerGadgetThread::readingsTaken, [](const SensorReadings& readings) {
              const Reading& temperature = readings[Quantity::Temperature];
              return temperature.value ? QStringLiteral("reading %1").arg(*temperature.value)
                                       : QStringLiteral("gap %1").arg(int(temperature.gap));
          }) {
        Add(poller, &IntelPowerGadgetThread::RefreshCpuPowClock,
            [](int, int temperature, int, int) { return QStringLiteral("sample %1").arg(temperature); });
    }
};

// What the poller did with its sensors, and what these answer.
struct Record {
    std::atomic<int> loads{0};
    std::atomic<int> samples{0};
    std::atomic<int> loadsUntilFound{0};
    std::atomic<bool> isReleased{false};
    QString error = QStringLiteral("nothing there");
    std::mutex mutex;  // over both
    std::optional<PackageNumbers> numbers = PackageNumbers{12.9, 45};
    SensorReadings readings = {};
};

class RecordingSensors final : public PackageSensors {
public:
    explicit RecordingSensors(Record& record) : m_record(record) {}
    ~RecordingSensors() override { m_record.isReleased = true; }
    bool Load() override { return ++m_record.loads > m_record.loadsUntilFound; }
    QString ErrorString() const override { return m_record.error; }
    void ReadSample() override { ++m_record.samples; }
    SensorReadings Readings() override {
        const std::lock_guard<std::mutex> lock(m_record.mutex);
        return m_record.readings;
    }
    std::optional<PackageNumbers> Numbers() override {
        const std::lock_guard<std::mutex> lock(m_record.mutex);
        return m_record.numbers;
    }

private:
    Record& m_record;
};

Parts RecordingParts(Record& record, std::chrono::milliseconds period = kShortPeriod) {
    return {[&record] { return std::make_unique<RecordingSensors>(record); }, period};
}

// What is logged is kept here while this lives.
class DebugLines {
public:
    DebugLines() {
        lines.clear();
        m_former = qInstallMessageHandler(Keep);
    }
    ~DebugLines() { qInstallMessageHandler(m_former); }
    Q_DISABLE_COPY(DebugLines)
    static int Count(const QString& line) {
        const std::lock_guard<std::mutex> lock(mutex);
        return lines.count(line);
    }

private:
    static void Keep(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& line) {
        const std::lock_guard<std::mutex> lock(mutex);
        lines.append(line);
    }
    static inline std::mutex mutex;
    static inline QStringList lines;
    QtMessageHandler m_former;
};

}  // namespace

Q_DECLARE_METATYPE(Sample)

class TestPowerPoller : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void WattsAreCutOff_data() {
        QTest::addColumn<double>("watts");
        QTest::addColumn<int>("whole");
        QTest::newRow("under thirteen") << 12.9 << 12;
        QTest::newRow("less than one") << 0.99 << 0;
        QTest::newRow("negative, towards zero") << -3.7 << -3;
        QTest::newRow("the largest") << 2147483647.0 << 2147483647;
        QTest::newRow("one too large") << 2147483648.0 << 0;
        QTest::newRow("the least") << -2147483648.0 << std::numeric_limits<int>::min();
        QTest::newRow("far too large") << 1e300 << 0;
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 0;
        QTest::newRow("endless") << -std::numeric_limits<double>::infinity() << 0;
    }
    void WattsAreCutOff() {
        QFETCH(double, watts);
        QFETCH(int, whole);
        QCOMPARE(WholeWatts(watts), whole);
    }

    void LibrarysNumbersAreTold_data() {
        QTest::addColumn<QString>("variant");
        QTest::addColumn<Sample>("told");
        QTest::newRow("a good library") << "complete" << Sample{12, 45, 0, 0};
        QTest::newRow("calls that fail") << "calls_fail" << Sample{0, 0, 0, 0};
        QTest::newRow("a power that no integer holds") << "no_number" << Sample{0, -40, 0, 0};
    }
    void LibrarysNumbersAreTold() {
        QFETCH(QString, variant);
        QFETCH(Sample, told);
        IntelPowerGadgetThread poller(LibraryParts(qPrintable(variant)));
        const Samples samples(poller);
        poller.start(QThread::InheritPriority);
        QTRY_VERIFY(samples.count() >= 2);
        QCOMPARE(samples.at(0), told);
        QCOMPARE(samples.at(1), told);
    }

    // A call that fails brings no temperature, and leaves the power of the one before.
    void LibraryThatFailsLater() {
        IntelPowerGadgetThread poller(LibraryParts("fails_later"));
        const Samples samples(poller);
        poller.start();
        QTRY_VERIFY(samples.count() >= 3);
        QCOMPARE(samples.at(0), (Sample{12, 45, 0, 0}));
        QCOMPARE(samples.at(1), (Sample{12, 0, 0, 0}));
        QCOMPARE(samples.at(2), (Sample{12, 0, 0, 0}));
    }

    void PeriodIsASecond() { QCOMPARE(Parts{}.period.count(), std::chrono::milliseconds::rep(1000)); }

    void EachSampleIsLoggedWhereThatIsAskedFor_data() {
        QTest::addColumn<double>("watts");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("a fraction") << 12.9 << QByteArray("-1 -- 12.9");
        QTest::newRow("whole") << 65.0 << QByteArray("-1 -- 65");
    }
    void EachSampleIsLoggedWhereThatIsAskedFor() {
        QFETCH(double, watts);
        QFETCH(QByteArray, line);
        Record record;
        record.numbers->watts = watts;
        QLoggingCategory::setFilterRules(QStringLiteral("kivo.telemetry.sensors.debug=true"));
        QTest::ignoreMessage(QtDebugMsg, line.constData());
        IntelPowerGadgetThread poller(RecordingParts(record));
        const Samples samples(poller);
        poller.start();
        QTRY_VERIFY(samples.count() >= 1);
        poller.AskToStop();
        QVERIFY(poller.wait());
        QLoggingCategory::setFilterRules(QString());
    }

    void SignalHasTheNameThatOthersConnectTo() {
        const QMetaObject& meta = IntelPowerGadgetThread::staticMetaObject;
        QVERIFY(meta.indexOfSignal("RefreshCpuPowClock(qint32,qint32,qint32,qint32)") >= 0);
    }

    void BadLibraryIsTriedAgainAndTellsNothing_data() {
        QTest::addColumn<QString>("variant");
        QTest::newRow("a name is missing") << "stop_log_missing";
        QTest::newRow("its start fails") << "start_fails";
    }
    void BadLibraryIsTriedAgainAndTellsNothing() {
        QFETCH(QString, variant);
        const QString folder = LibraryFolder(qPrintable(variant));
        std::atomic<int> tries{0};
        const auto environment = [&](const char* name) {
            ++tries;
            return Environment(folder)(name);
        };
        IntelPowerGadgetThread poller(Parts{[&] { return MakeLibrarySensors({environment}); }, kShortPeriod});
        const Samples samples(poller);
        poller.start();
        QTRY_VERIFY(tries > 10);
        QVERIFY(poller.isRunning());
        poller.AskToStop();
        QVERIFY(poller.wait());
        QCOMPARE(samples.count(), 0);
    }

    void NothingInstalled() {
        const LibraryPlace empty;
        std::atomic<int> tries{0};
        const auto noEnvironment = [&tries](const char*) {
            ++tries;
            return QString();
        };
        IntelPowerGadgetThread poller(Parts{[&] {
                                                return MakeLibrarySensors({noEnvironment, empty.Folder()});
                                            },
                                            kShortPeriod});
        const Samples samples(poller);
        QTest::ignoreMessage(QtDebugMsg, "Error: 无法在指定路径下找到库文件。");
        QTest::ignoreMessage(QtDebugMsg, "isStop.\n");
        poller.start();
        QTRY_VERIFY(tries > 10);
        poller.AskToStop();
        QVERIFY(poller.wait());
        QCOMPARE(samples.count(), 0);
    }

    void LibraryThatIsInstalledLaterIsFound() {
        const LibraryPlace place;
        std::atomic<int> tries{0};
        const auto environment = [&](const char* name) {
            ++tries;
            return Environment(place.Folder())(name);
        };
        IntelPowerGadgetThread poller(Parts{[&] { return MakeLibrarySensors({environment}); }, kShortPeriod});
        const Samples samples(poller);
        QTest::ignoreMessage(QtDebugMsg, "Error: 无法在指定路径下找到库文件。");
        poller.start();
        QTRY_VERIFY(tries > 4);
        QCOMPARE(samples.count(), 0);
        QVERIFY(place.Put("complete"));
        QTRY_VERIFY(samples.count() >= 1);
        QCOMPARE(samples.at(0), (Sample{12, 45, 0, 0}));
        QVERIFY(poller.isRunning());
    }

    // Also while other sensors answer, and it is tried again before each sample.
    void FailureIsLoggedOnce() {
        Record record;
        record.loadsUntilFound = 20;
        const DebugLines log;
        IntelPowerGadgetThread poller(RecordingParts(record));
        const Samples samples(poller);
        poller.start();
        QTRY_VERIFY(record.loads > 21);
        poller.AskToStop();
        QVERIFY(poller.wait());
        QVERIFY(record.isReleased);
        QVERIFY(samples.count() >= 20);
        QCOMPARE(log.Count(QStringLiteral("Error: nothing there")), 1);
        QCOMPARE(log.Count(QStringLiteral("isStop.\n")), 1);
    }

    // It takes long, and nobody knows yet how it will end.
    void LibraryThatStillLoadsHasNotFailed() {
        Record record;
        record.loadsUntilFound = 3;
        record.error.clear();
        const DebugLines log;
        IntelPowerGadgetThread poller(RecordingParts(record));
        poller.start();
        QTRY_VERIFY(record.loads > 4);
        poller.AskToStop();
        QVERIFY(poller.wait());
        QCOMPARE(log.Count(QStringLiteral("Error: ")), 0);
    }

    // As ever: where the library is, nothing is told before its second sample.
    void NothingIsToldOfTheFirstSampleOfALibrary() {
        Record record;
        IntelPowerGadgetThread poller(RecordingParts(record, kEndlessPeriod));
        const Signals told(poller);
        poller.start();
        QTRY_COMPARE(record.samples.load(), 1);
        poller.AskToStop();
        QVERIFY(poller.wait());
        QCOMPARE(told.count(), 0);
    }

    void FirstSampleIsTakenBeforeThePause() {
        Record record;
        IntelPowerGadgetThread poller(RecordingParts(record, kEndlessPeriod));
        const Samples samples(poller);
        poller.start();
        QTRY_COMPARE(record.samples.load(), 1);
        QCOMPARE(samples.count(), 0);
    }

    void EndsInEveryState_data() {
        QTest::addColumn<int>("loadsUntilFound");
        QTest::addColumn<bool>("terminated");
        QTest::newRow("without a library, asked") << 1000000 << false;
        QTest::newRow("without a library, stopped") << 1000000 << true;
        QTest::newRow("with one, asked") << 0 << false;
        QTest::newRow("with one, stopped") << 0 << true;
    }
    // The pause lasts an hour: what ends is not waited for.
    void EndsInEveryState() {
        QFETCH(int, loadsUntilFound);
        QFETCH(bool, terminated);
        Record record;
        record.loadsUntilFound = loadsUntilFound;
        IntelPowerGadgetThread poller(RecordingParts(record, kEndlessPeriod));
        poller.start();
        QTRY_VERIFY(record.samples > 0);
        if (terminated) {
            poller.Stop();
        } else {
            poller.AskToStop();
            QVERIFY(poller.wait());
        }
        QVERIFY(poller.isFinished());
        QCOMPARE(int(poller.isStop), 1);
        QVERIFY(record.isReleased);
    }

    void ReadingsAreToldBeforeEachSample() {
        Record record;
        record.readings[Quantity::Temperature] = Reading::Of(45.5, SourceId::HardwareMonitor);
        IntelPowerGadgetThread poller(RecordingParts(record));
        const Signals told(poller);
        poller.start();
        QTRY_VERIFY(told.count() >= 4);
        for (const int pair : {0, 2}) {
            QCOMPARE(told.at(pair), QStringLiteral("reading 45.5"));
            QCOMPARE(told.at(pair + 1), QStringLiteral("sample 45"));
        }
    }

    void GapsAreToldWhenTheyChange() {
        Record record;
        record.loadsUntilFound = 1000000;
        record.numbers.reset();
        record.readings[Quantity::Temperature] = Reading::Without(ReadingGap::NoSource);
        IntelPowerGadgetThread poller(RecordingParts(record));
        const Signals told(poller);
        poller.start();
        QTRY_VERIFY(record.samples > 5);
        {
            const std::lock_guard<std::mutex> lock(record.mutex);
            record.readings[Quantity::Temperature] = Reading::Without(ReadingGap::NotRunning);
        }
        QTRY_VERIFY(told.count() >= 2);
        const int samples = record.samples;
        QTRY_VERIFY(record.samples > samples + 5);
        QCOMPARE(told.count(), 2);
        QCOMPARE(told.at(0), QStringLiteral("gap %1").arg(int(ReadingGap::NoSource)));
        QCOMPARE(told.at(1), QStringLiteral("gap %1").arg(int(ReadingGap::NotRunning)));
    }

    // Their moment is what keeps them from growing old.
    void ValuesThatStayTheSameAreToldAgain() {
        Record record;
        record.numbers.reset();
        record.readings[Quantity::FanSpeed] = Reading::Of(900, SourceId::HardwareMonitor);
        IntelPowerGadgetThread poller(RecordingParts(record));
        const Signals told(poller);
        poller.start();
        QTRY_VERIFY(told.count() >= 3);
    }

    void ReadingsCrossThreads() {
        Record record;
        record.readings[Quantity::FanSpeed] = Reading::Of(1450, SourceId::HardwareMonitor);
        IntelPowerGadgetThread poller(RecordingParts(record));
        double arrived = 0.0;
        const QObject context;  // goes before what is written to
        connect(&poller, &IntelPowerGadgetThread::readingsTaken, &context,
                [&arrived](const SensorReadings& readings) {
                    arrived = readings[Quantity::FanSpeed].value.value_or(0.0);
                });
        poller.start();
        QTRY_COMPARE(arrived, 1450.0);
        QVERIFY(QMetaType::type("kivo::SensorReadings") != QMetaType::UnknownType);
    }

    void StopBeforeTheStart() {
        Record record;
        IntelPowerGadgetThread poller(RecordingParts(record, kEndlessPeriod));
        poller.Stop();
        poller.start();
        QVERIFY(poller.wait());
        QCOMPARE(record.samples.load(), 0);
    }

    void StopTwice() {
        Record record;
        IntelPowerGadgetThread poller(RecordingParts(record));
        poller.start();
        QTRY_VERIFY(record.samples > 0);
        poller.Stop();
        poller.Stop();
        QVERIFY(poller.isFinished());
    }

    void LibraryThatHangsIsLeft_data() {
        QTest::addColumn<bool>("destroyed");
        QTest::newRow("stopped") << false;
        QTest::newRow("destroyed") << true;
    }
    // Would hang here otherwise.
    void LibraryThatHangsIsLeft() {
        QFETCH(bool, destroyed);
        const LibraryNotes notes;
        auto poller = std::make_unique<IntelPowerGadgetThread>(LibraryParts("calls_hang"));
        const Samples samples(*poller);
        const Signals told(*poller);
        poller->start();
        QTRY_VERIFY(notes.Lines().contains("hangs"));
        // It goes on meanwhile, and says so.
        QTRY_COMPARE(told.count(), 1);
        QCOMPARE(told.at(0), QStringLiteral("gap %1").arg(int(ReadingGap::Silent)));
        if (destroyed) {
            poller->AskToStop();
            QVERIFY(poller->wait());
        } else {
            poller->Stop();
        }
        QVERIFY(poller->isFinished());
        poller.reset();
        QCOMPARE(samples.count(), 0);
    }
};

KIVO_GUILESS_TEST(TestPowerPoller)
#include "tst_power_poller.moc"
