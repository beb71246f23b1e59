#include <QtTest>

#include <deque>

#include "sensor_bytes.h"
#include "sensor_words.h"
#include "support/test_program.h"
#include "telemetry/hardware_monitor_json.h"
#include "telemetry/hardware_monitor_source.h"
#include "telemetry/package_sensors.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// A server's page: what is asked for waits until the test has an answer for it.
class MadeUpServer {
public:
    // A null page is none.
    void Answer(const QByteArray& page) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_answers.push_back(page);
        m_changed.notify_all();
    }
    void Refuse() { Answer(QByteArray()); }
    void WaitForRequests(int count) {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [&] { return m_requests >= count; });
    }
    int Requests() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_requests;
    }
    std::optional<QByteArray> Fetch() {
        std::unique_lock<std::mutex> lock(m_mutex);
        ++m_requests;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_isCancelled || !m_answers.empty(); });
        if (m_isCancelled) {
            return std::nullopt;
        }
        const QByteArray page = m_answers.front();
        m_answers.pop_front();
        if (page.isNull()) {
            return std::nullopt;
        }
        return page;
    }
    void Cancel() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isCancelled = true;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<QByteArray> m_answers;
    int m_requests = 0;
    bool m_isCancelled = false;
};

class MadeUpPage final : public LocalPage {
public:
    explicit MadeUpPage(MadeUpServer& server) : m_server(server) {}
    std::optional<QByteArray> Fetch() override { return m_server.Fetch(); }
    void Cancel() override { m_server.Cancel(); }

private:
    MadeUpServer& m_server;
};

constexpr char kMachine[] = "65.2, 46.9, 1234";
constexpr char kNothing[] = "no source, no source, no source";

QString SaidOf(const QByteArray& leaf) {
    return Said(ReadHardwareMonitorPage(MonitorPage({leaf})));
}

}  // namespace

class TestHardwareMonitorSource : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void PageIsRead() {
        const SensorReadings readings = ReadHardwareMonitorPage(MonitorPageOfAMachine());
        QCOMPARE(Said(readings), QString::fromLatin1(kMachine));
        QVERIFY(AreAllOf(readings, SourceId::LibreHardwareMonitor));
    }

    void OneSensorAlone_data() {
        QTest::addColumn<QByteArray>("leaf");
        QTest::addColumn<QString>("said");
        const auto temperature = [](const char* name, const char* value, const char* raw, const char* said) {
            QTest::newRow(name) << MonitorLeaf("Temperature", "/intelcpu/0/temperature/8", "CPU Package",
                                               value, raw)
                                << QStringLiteral("no source, %1, no source").arg(QLatin1String(said));
        };
        temperature("a decimal comma", "45,0 °C", nullptr, "45");
        temperature("a decimal point", "45.0 °C", nullptr, "45");
        temperature("degrees Fahrenheit are shown", "113,0 °F", nullptr, "45");
        temperature("the raw text is Celsius", "113,0 °F", "\"45,5 °C\"", "45.5");
        temperature("the raw number", "113,0 °F", "45.25", "45.25");
        temperature("a raw null", "45,0 °C", "null", "45");
        temperature("a raw text that is no number", "45,0 °C", "\"NaN\"", "45");
        temperature("neither", "-", "\"NaN\"", "unbelievable");
        temperature("a dash", "-", nullptr, "unbelievable");
        temperature("words", "warm", nullptr, "unbelievable");
        temperature("no unit", "45,0", nullptr, "unbelievable");
        temperature("minus 273", "-273,0 °C", "-273.15", "unbelievable");
        temperature("0 degrees", "0,0 °C", "0", "unbelievable");
        temperature("255 degrees", "255,0 °C", "255", "unbelievable");
        temperature("a raw number that no double holds", "45,0 °C", "1e999", "no source");
        temperature("a raw list", "45,0 °C", "[1]", "45");

        const auto row = [](const char* name, const QByteArray& leaf, const char* said) {
            QTest::newRow(name) << leaf << QString::fromLatin1(said);
        };
        row("Intel's power", MonitorLeaf("Power", "/intelcpu/0/power/0", "CPU Package", "65,2 W"),
            "65.2, no source, no source");
        row("AMD's temperature, older labels",
            MonitorLeaf("Temperature", "/amdcpu/0/temperature/0", "Core (Tdie)", "51,0 °C"),
            "no source, 51, no source");
        row("a fan", MonitorLeaf("Fan", "/lpc/it8688e/0/fan/0", "CPU Fan #1", "1234 RPM"),
            "no source, no source, 1234");
        row("a fan without a label of its own",
            MonitorLeaf("Fan", "/lpc/it8688e/0/fan/2", "Fan #3", "870 RPM"), "no source, no source, 870");
        row("a graphics card's package", MonitorLeaf("Power", "/gpu-amd/0/power/0", "Package", "200,0 W"),
            kNothing);
        row("a graphics card's fan", MonitorLeaf("Fan", "/gpu-amd/0/fan/0", "Fan #1", "900 RPM"), kNothing);
        row("a core", MonitorLeaf("Temperature", "/intelcpu/0/temperature/0", "CPU Core #1", "44,0 °C"),
            kNothing);
        row("the board's processor temperature",
            MonitorLeaf("Temperature", "/lpc/it8688e/0/temperature/2", "CPU", "44,0 °C"), kNothing);
        row("a limit of that name", MonitorLeaf("Level", "/intelcpu/0/level/0", "CPU Package", "44,0 °C"),
            kNothing);
        row("releases that tell no type",
            "{\"id\":3,\"Text\":\"CPU Package\",\"Value\":\"45,0 °C\",\"Children\":[]}", kNothing);
        row("a type that is a number",
            "{\"Text\":\"CPU Package\",\"Type\":3,\"SensorId\":4,\"Value\":5,\"Children\":6}", kNothing);
    }
    void OneSensorAlone() {
        QFETCH(QByteArray, leaf);
        QTEST(SaidOf(leaf), "said");
    }

    void FirstProcessorsBestLabelCounts() {
        QCOMPARE(Said(ReadHardwareMonitorPage(MonitorPage({
                     MonitorLeaf("Temperature", "/amdcpu/0/temperature/0", "Core (Tctl)", "60,0 °C"),
                     MonitorLeaf("Temperature", "/amdcpu/0/temperature/1", "Core (Tdie)", "50,0 °C"),
                     MonitorLeaf("Temperature", "/amdcpu/1/temperature/1", "Core (Tdie)", "40,0 °C"),
                 }))),
                 QStringLiteral("no source, 50, no source"));
    }

    void WhatIsNoPageHasNoSensors_data() {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("a web page") << QByteArray("<html><body>data</body></html>");
        QTest::newRow("cut off") << MonitorPageOfAMachine().chopped(10);
        QTest::newRow("a list") << QByteArray("[1,2,3]");
        QTest::newRow("deeper than a parser goes") << QByteArray(100'000, '[');
        QByteArray deep;
        for (int i = 0; i < 100'000; ++i) {
            deep += "{\"Children\":[";
        }
        QTest::newRow("a tree without an end") << deep;
        QTest::newRow("children that are none") << QByteArray("{\"Children\":[1,null,\"x\",[[]],{}]}");
        QTest::newRow("noise") << QByteArray("\0\xff\xfe{\"", 5);
    }
    void WhatIsNoPageHasNoSensors() {
        QFETCH(QByteArray, json);
        QCOMPARE(Said(ReadHardwareMonitorPage(json)), QString::fromLatin1(kNothing));
    }

    // A tree as deep as the parser lets through is walked to its end.
    void DeepTreeIsWalked() {
        QByteArray json = MonitorLeaf("Power", "/amdcpu/0/power/0", "Package", "65,2 W");
        for (int i = 0; i < 500; ++i) {
            json = "{\"Children\":[" + json + "]}";
        }
        QCOMPARE(Said(ReadHardwareMonitorPage(json)), QStringLiteral("65.2, no source, no source"));
    }

    void PageThatIsTooLongIsNotRead() {
        QByteArray page = MonitorPageOfAMachine();
        page += QByteArray(kLongestMonitorPage - page.size(), ' ');
        QCOMPARE(Said(ReadHardwareMonitorPage(page)), QString::fromLatin1(kMachine));
        page += ' ';
        QCOMPARE(Said(ReadHardwareMonitorPage(page)), QString::fromLatin1(kNothing));
        page += QByteArray(50 * 1024 * 1024, '[');
        QCOMPARE(Said(ReadHardwareMonitorPage(page)), QString::fromLatin1(kNothing));
    }

    // The server never answers: no reading waits for it.
    void ReadingsTellWhatCameLast() {
        MadeUpServer server;
        HardwareMonitorSource source(std::make_unique<MadeUpPage>(server), std::chrono::milliseconds(0));
        QCOMPARE(Said(source.Read(At(0))), QStringLiteral("not read, not read, not read"));
        server.WaitForRequests(1);
        server.Answer(MonitorPageOfAMachine());
        server.WaitForRequests(2);
        QCOMPARE(Said(source.Read(At(1))), QString::fromLatin1(kMachine));
        QCOMPARE(Said(source.Read(At(2))), QStringLiteral("65.2 still, 46.9 still, 1234 still"));
        QCOMPARE(Said(source.Read(At(200))), QStringLiteral("65.2 still, 46.9 still, 1234 still"));
        server.Answer(MonitorPage({MonitorLeaf("Power", "/amdcpu/0/power/0", "Package", "70,0 W")}));
        QTRY_COMPARE(Values(source.Read(At(201))), QStringLiteral("70, no source, no source"));
    }

    void ServerThatEndsIsNotRunningAndMayComeBack() {
        MadeUpServer server;
        HardwareMonitorSource source(std::make_unique<MadeUpPage>(server), std::chrono::milliseconds(0));
        server.Refuse();
        QTRY_COMPARE(Said(source.Read(At(0))), QString::fromLatin1(kNothing));
        server.Answer(MonitorPageOfAMachine());
        QTRY_COMPARE(Values(source.Read(At(1))), QString::fromLatin1(kMachine));
        // A page that failed is not asked for again by itself.
        server.Refuse();
        QTRY_COMPARE(Said(source.Read(At(2))), QStringLiteral("not running, not running, not running"));
        server.Answer(MonitorPageOfAMachine());
        QTRY_COMPARE(Values(source.Read(At(12))), QString::fromLatin1(kMachine));
    }

    void SilentServerHandsOverAfterTenSeconds_data() {
        QTest::addColumn<bool>("hasEnded");
        QTest::newRow("it has ended") << true;
        QTest::newRow("it does not answer") << false;
    }
    // Source and choice together.
    void SilentServerHandsOverAfterTenSeconds() {
        QFETCH(bool, hasEnded);
        MadeUpServer server;
        SensorParts parts;
        parts.library.environment = [](const char*) { return QString(); };
        parts.library.defaultFolder = QStringLiteral("/no/such/folder");
        parts.orders = {{{SourceId::LibreHardwareMonitor}, {SourceId::LibreHardwareMonitor}, {}}};
        parts.sources.push_back(std::make_unique<HardwareMonitorSource>(std::make_unique<MadeUpPage>(server),
                                                                        std::chrono::milliseconds(0)));
        SystemClocks clocks{std::chrono::seconds(1000), std::chrono::seconds(0)};
        parts.clocks = [&clocks] { return clocks; };
        parts.cpuLoad = [] { return 5; };
        const auto sensors = MakeSensorsFrom(std::move(parts));
        const auto temperature = [&] {
            sensors->ReadSample();
            return Said(sensors->Readings()[Quantity::Temperature]);
        };
        server.Answer(MonitorPageOfAMachine());
        QTRY_COMPARE(temperature(), QStringLiteral("46.9"));
        if (hasEnded) {
            server.Refuse();
            QTRY_VERIFY(temperature() == QLatin1String("46.9") && server.Requests() >= 3);
        }
        for (int second = 1; second < 10; ++second) {
            clocks.awake += std::chrono::seconds(1);
            QCOMPARE(temperature(), QStringLiteral("46.9"));
        }
        clocks.awake += std::chrono::seconds(1);
        QCOMPARE(temperature(), hasEnded ? QStringLiteral("not running") : QStringLiteral("silent"));
    }

    void PageThatIsNoneTakesTheValuesAway() {
        MadeUpServer server;
        HardwareMonitorSource source(std::make_unique<MadeUpPage>(server), std::chrono::milliseconds(0));
        server.Answer(MonitorPageOfAMachine());
        QTRY_COMPARE(Values(source.Read(At(0))), QString::fromLatin1(kMachine));
        server.Answer(QByteArray("{\"Children\":["));
        QTRY_COMPARE(Said(source.Read(At(1))), QString::fromLatin1(kNothing));
    }

    // One who reads every ten seconds has a value of now: after a reading pages are fetched for a while.
    void PagesAreFetchedForAWhileAfterAReading() {
        MadeUpServer server;
        HardwareMonitorSource source(std::make_unique<MadeUpPage>(server), std::chrono::milliseconds(0));
        for (int i = 0; i < 12; ++i) {
            server.Answer(MonitorPageOfAMachine());
        }
        source.Read(At(0));
        server.WaitForRequests(12);
        source.Read(At(1));
        server.WaitForRequests(13);
    }

    void NobodyIsAskedWithoutAReader() {
        MadeUpServer server;
        { const HardwareMonitorSource source(std::make_unique<MadeUpPage>(server)); }
        QCOMPARE(server.Requests(), 0);
    }

    // Would hang here otherwise: the request is under way and never answered.
    void EndCutsARequestShort() {
        MadeUpServer server;
        auto source = std::make_unique<HardwareMonitorSource>(std::make_unique<MadeUpPage>(server));
        source->Read(At(0));
        server.WaitForRequests(1);
        source.reset();
        QCOMPARE(server.Requests(), 1);
    }

    void PageIsOnThisMachinesPort() {
        QCOMPARE(int(kHardwareMonitorPort), 8085);
        QCOMPARE(QString::fromLatin1(kHardwareMonitorPath), QStringLiteral("/data.json"));
    }
};

KIVO_APPLESS_TEST(TestHardwareMonitorSource)
#include "tst_hardware_monitor_source.moc"
