#include <QLabel>
#include <QPushButton>
#include <QSemaphore>
#include <algorithm>
#include <atomic>

#include "../telemetry/energy_library_folders.h"
#include "support/test_program.h"
#include "support/window_test_support.h"

using namespace kivo;
using namespace kivo::test;

// Power and temperature from the library to the panel, and the read-out at the top of the window.
class TestWindowSensors : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void LibrarysNumbersReachThePanel_data();
    void LibrarysNumbersReachThePanel();
    void LibraryIsProbedAndLeftAlone();
    void ConstructorProbesTheLibraryOnce();
    void FirstRunStartsThePollerToo();
    void OnePollerAtATime();
    void NoPollerAfterTheEnd();
    void HangingLibraryDoesNotHoldTheEndUp();
    void ReadOutShowsTheLiveTemperature();
    void ReadOutSaysWhoMeasures();
    void ReadOutSaysNothingTwice();
    void ReadOutSaysWhatAClickHasRead();
    void SensorsListRefreshesItself();
    void ClickReadsTheThermalZone();
    void KeyboardStaysOnTheReadOut();
    void ReadingStandsBeforeTheLiveTemperatureForAWhile();
    void OneReadingAtATime();
    void EndDoesNotWaitForAReading();

private:
    static void Install(const char* variant) {
        qputenv("IPG_Dir", QFile::encodeName(LibraryFolder(variant)));
        qputenv("IPG_Ver", "3.6");
    }
};

namespace {

// With the energy library that a test has installed, and no sensors of the machine's own.
struct SensorDesk : Desk {
    SensorDesk() { Close(); }
    ~SensorDesk() { Close(); }

    void Start() {
        window = std::make_unique<MainWindow>([this] {
            MainWindow::Parts parts{wire, nullptr, kBin};
            parts.locale = QLocale(QStringLiteral("en_US"));
            parts.hasTray = [] { return true; };
            parts.makeSensors = [this] {
                ++pollers;
                return MakeLibrarySensors();
            };
            parts.readThermalZone = readThermalZone;
            return parts;
        }());
    }
    QPushButton* ReadOut() const { return Find<QPushButton>("pushButton"); }

    std::atomic<int> pollers{0};  // that have begun
    ThermalZoneThread::Reader readThermalZone = [](const StopAsked&) { return ThermalText(28); };
};

QWidget* Toplevel(const char* name) {
    const QWidgetList all = QApplication::topLevelWidgets();
    const auto found = std::find_if(all.begin(), all.end(), [name](QWidget* widget) {
        return widget->objectName() == QLatin1String(name);
    });
    return found == all.end() ? nullptr : *found;
}

// What is seen of a window's labels.
QStringList TextsOf(const QWidget& window) {
    QStringList texts;
    const auto labels = window.findChildren<QLabel*>();
    for (const QLabel* label : labels) {
        if (label->isVisible()) {
            texts.append(label->text());
        }
    }
    return texts;
}

// Whether a label with that text is described so to whoever listens.
bool IsTold(const QWidget& window, const QString& text, const QString& description) {
    const auto labels = window.findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
        return label->text() == text && label->accessibleDescription() == description;
    });
}

const QString kDegrees28 = QStringLiteral("28.0°C");  // one decimal is enough to read

}  // namespace

void TestWindowSensors::initTestCase() {
    PrepareApplication();
}

void TestWindowSensors::init() {
    SetUpProfile();
}

void TestWindowSensors::cleanup() {
    UninstallEnergyLibrary();
}

void TestWindowSensors::LibrarysNumbersReachThePanel_data() {
    QTest::addColumn<QByteArray>("variant");
    QTest::addColumn<QString>("temperature");
    QTest::addColumn<QString>("power");
    QTest::addColumn<QString>("fan");
    QTest::newRow("at rest") << QByteArray("complete") << QStringLiteral("45℃") << QStringLiteral("12w")
                             << QStringLiteral("1000");
    QTest::newRow("at work") << QByteArray("hot") << QStringLiteral("74℃") << QStringLiteral("65w")
                             << QStringLiteral("3400");
}

void TestWindowSensors::LibrarysNumbersReachThePanel() {
    QFETCH(QByteArray, variant);
    QFETCH(QString, temperature);
    QFETCH(QString, power);
    QFETCH(QString, fan);
    Install(variant.constData());
    SensorDesk desk;
    desk.Start();
    LiveSession& session = desk.window->Session();
    QTRY_COMPARE_WITH_TIMEOUT(session.LiveText(CpuTemperature), temperature, 20000);
    desk.Apply();
    const ScreenState state = session.Applied();
    ItemTexts texts;
    const auto panelShowsItsTexts = [&] {
        // Both at once: values go on while the expected picture is made.
        texts = session.ShownTexts();
        const QImage shown = desk.panel.State().UprightImage();
        return PixelsThatDiffer(shown, ExpectedPanel(state, texts)) == 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(panelShowsItsTexts(), 20000);
    QCOMPARE(texts[CpuTemperature], temperature);
    QCOMPARE(texts[CpuPower], power);
    QCOMPARE(texts[FanSpeed], fan);
}

void TestWindowSensors::LibraryIsProbedAndLeftAlone() {
    Install("start_fails");
    SensorDesk desk;
    desk.Start();
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > 5, 20000);
    QCOMPARE(desk.window->Session().LiveText(CpuPower), QStringLiteral("--w"));
    QVERIFY(desk.window->Session().Readings()[Quantity::Power].gap == ReadingGap::NoSource);
}

void TestWindowSensors::ConstructorProbesTheLibraryOnce() {
    const LibraryNotes notes;
    SensorDesk desk;
    Install("complete");
    desk.Start();
    QCOMPARE(notes.Lines(), (QByteArrayList{"loaded", "started", "unloaded"}));
    QCOMPARE(desk.pollers.load(), 0);
}

void TestWindowSensors::FirstRunStartsThePollerToo() {
    ForgetEverything();
    Install("complete");
    SensorDesk desk;
    desk.Start();
    QTRY_COMPARE_WITH_TIMEOUT(desk.window->Session().LiveText(CpuTemperature), QStringLiteral("45℃"), 30000);
    QCOMPARE(desk.panel.State().counts.frames, quint64(1));
}

void TestWindowSensors::OnePollerAtATime() {
    Install("complete");
    SensorDesk desk;
    desk.Start();
    MainWindow& window = *desk.window;
    window.StopPowerPoller();  // there is none yet
    window.StartPowerPoller();
    window.StartPowerPoller();
    QTRY_COMPARE_WITH_TIMEOUT(window.Session().LiveText(CpuTemperature), QStringLiteral("45℃"), 20000);
    QCOMPARE(desk.pollers.load(), 1);
    window.StopPowerPoller();
    QCoreApplication::processEvents();
    window.Session().SetReadings({});
    window.StartPowerPoller();
    QTRY_COMPARE_WITH_TIMEOUT(window.Session().LiveText(CpuTemperature), QStringLiteral("45℃"), 20000);
    QCOMPARE(desk.pollers.load(), 2);
}

void TestWindowSensors::NoPollerAfterTheEnd() {
    Install("complete");
    SensorDesk desk;
    desk.Start();
    QVERIFY(desk.window->Stop());
    desk.window->StartPowerPoller();
    // The start that the constructor put off is over when this, put off later, has come.
    bool isOver = false;
    QTimer::singleShot(1000, desk.window.get(), [&isOver] { isOver = true; });
    QTRY_VERIFY_WITH_TIMEOUT(isOver, 20000);
    QVERIFY(desk.window->Stop());
    QCOMPARE(desk.pollers.load(), 0);
}

void TestWindowSensors::HangingLibraryDoesNotHoldTheEndUp() {
    const LibraryNotes notes;
    Install("calls_hang");
    SensorDesk desk;
    desk.Start();
    desk.window->StartPowerPoller();
    QTRY_VERIFY_WITH_TIMEOUT(notes.Lines().contains("hangs"), 20000);
    QVERIFY(desk.window->Stop());
    desk.window.reset();
}

void TestWindowSensors::ReadOutShowsTheLiveTemperature() {
    SensorDesk desk;
    desk.Start();
    desk.Show();
    QCOMPARE(desk.ReadOut()->text(), QStringLiteral("--℃"));
    QVERIFY(desk.ReadOut()->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > 0, 20000);
    Install("complete");
    QTRY_COMPARE_WITH_TIMEOUT(desk.ReadOut()->text(), QStringLiteral("45℃"), 20000);
}

void TestWindowSensors::ReadOutSaysWhoMeasures() {
    Desk desk;
    desk.Show();
    const auto* readOut = desk.Find<QPushButton>("pushButton");
    SensorReadings readings;
    readings[Quantity::Temperature] = Reading::Without(ReadingGap::NoSource);
    desk.window->Session().SetReadings(readings);
    const QString click = QStringLiteral(u"CPU temperature; click to read the system\u2019s thermal zone\n");
    QTRY_VERIFY(readOut->toolTip().startsWith(click + QStringLiteral("No sensor that can be read\n")));
    QCOMPARE(readOut->text(), QStringLiteral("--℃"));
    QCOMPARE(readOut->accessibleDescription(), readOut->toolTip());
    readings[Quantity::Temperature] = Reading::Of(61.0, SourceId::CoreTemp);
    desk.window->Session().SetReadings(readings);
    QTRY_COMPARE(readOut->toolTip(), click + QStringLiteral("Core Temp"));
    QCOMPARE(readOut->accessibleDescription(), readOut->toolTip());
    QCOMPARE(readOut->text(), QStringLiteral("61℃"));
}

// A screen reader would be told in every round. The tool tip and what is told are set together.
void TestWindowSensors::ReadOutSaysNothingTwice() {
    Desk desk;
    desk.Show();
    auto* readOut = desk.Find<QPushButton>("pushButton");
    SensorReadings readings;
    readings[Quantity::Temperature] = Reading::Of(61.0, SourceId::CoreTemp);
    desk.window->Session().SetReadings(readings);
    QTRY_COMPARE(readOut->text(), QStringLiteral("61℃"));
    const EventCounter told(*readOut, QEvent::ToolTipChange);
    for (const double degrees : {62.0, 63.0}) {
        readings[Quantity::Temperature] = Reading::Of(degrees, SourceId::CoreTemp);
        desk.window->Session().SetReadings(readings);
        QTRY_COMPARE(readOut->text(), QString::number(degrees) + QStringLiteral("℃"));
    }
    QCOMPARE(told.count, 0);
}

// The tool tip names whose number is seen, not whose is behind it.
void TestWindowSensors::ReadOutSaysWhatAClickHasRead() {
    SensorDesk desk;
    Install("complete");
    desk.Start();
    desk.Show();
    QTRY_COMPARE_WITH_TIMEOUT(desk.ReadOut()->text(), QStringLiteral("45℃"), 20000);
    QVERIFY(desk.ReadOut()->toolTip().endsWith(QStringLiteral("\nIntel Power Gadget")));
    desk.Click("pushButton");
    QTRY_COMPARE(desk.ReadOut()->text(), kDegrees28);
    QVERIFY(desk.ReadOut()->toolTip().endsWith(QStringLiteral("\nThe system's thermal zone")));
    QCOMPARE(desk.ReadOut()->accessibleDescription(), desk.ReadOut()->toolTip());
}

void TestWindowSensors::SensorsListRefreshesItself() {
    Desk desk;
    SensorReadings readings;
    readings[Quantity::Power] = Reading::Without(ReadingGap::NoRight, SourceId::PowerCap);
    desk.window->Session().SetReadings(readings);
    desk.window->ShowSensors();
    QWidget* const list = Toplevel("sensors");
    QVERIFY(list != nullptr && QTest::qWaitForWindowExposed(list));
    QTRY_VERIFY(
        TextsOf(*list).contains(QStringLiteral("The kernel's energy counters: No permission to read it")));
    readings[Quantity::Power] = Reading::Of(37.0, SourceId::PowerCap);
    desk.window->Session().SetReadings(readings);
    QTRY_VERIFY(TextsOf(*list).contains(QStringLiteral("37 W")));
    QVERIFY(TextsOf(*list).contains(QStringLiteral("The kernel's energy counters")));
    QVERIFY(IsTold(*list, QStringLiteral("37 W"), QStringLiteral("The kernel's energy counters")));
    // Asked for again, it is the same list.
    desk.window->ShowSensors();
    QCOMPARE(Toplevel("sensors"), list);
    QTest::keyClick(list, Qt::Key_Escape);
    QVERIFY(!list->isVisible());
}

void TestWindowSensors::ClickReadsTheThermalZone() {
    SensorDesk desk;
    desk.Start();
    desk.Show();
    QTest::mouseClick(desk.ReadOut(), Qt::LeftButton);
    QTRY_COMPARE(desk.ReadOut()->text(), kDegrees28);
    QVERIFY(QFontMetrics(desk.ReadOut()->font()).horizontalAdvance(QStringLiteral("-10.000000°C")) <=
            desk.ReadOut()->width());
}

void TestWindowSensors::KeyboardStaysOnTheReadOut() {
    SensorDesk desk;
    QSemaphore mayEnd;
    desk.readThermalZone = [&mayEnd](const StopAsked& isStopAsked) {
        while (!mayEnd.tryAcquire(1, 20) && !isStopAsked()) {
        }
        return ThermalText(28);
    };
    desk.Start();
    desk.Show();
    desk.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(desk.window.get()));
    desk.ReadOut()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(desk.ReadOut(), Qt::Key_Space);
    QCOMPARE(desk.ReadOut()->text(), QStringLiteral("..."));
    QVERIFY(desk.ReadOut()->hasFocus());
    mayEnd.release();
    QTRY_COMPARE(desk.ReadOut()->text(), kDegrees28);
    QVERIFY(desk.ReadOut()->hasFocus());
}

void TestWindowSensors::ReadingStandsBeforeTheLiveTemperatureForAWhile() {
    SensorDesk desk;
    Install("complete");
    desk.Start();
    desk.Show();
    QTRY_COMPARE_WITH_TIMEOUT(desk.ReadOut()->text(), QStringLiteral("45℃"), 20000);
    desk.Click("pushButton");
    QTRY_COMPARE(desk.ReadOut()->text(), kDegrees28);
    QTRY_COMPARE_WITH_TIMEOUT(desk.ReadOut()->text(), QStringLiteral("45℃"), 30000);
}

void TestWindowSensors::OneReadingAtATime() {
    SensorDesk desk;
    QSemaphore begun;
    QSemaphore mayEnd;
    desk.readThermalZone = [&](const StopAsked&) {
        begun.release();
        mayEnd.acquire();
        return NoThermalText();
    };
    desk.Start();
    desk.Show();
    desk.Click("pushButton");
    begun.acquire();
    QCOMPARE(desk.ReadOut()->text(), QStringLiteral("..."));
    desk.Click("pushButton");
    desk.window->on_pushButton_clicked();
    mayEnd.release();
    QTRY_COMPARE(desk.ReadOut()->text(), QStringLiteral("N/A"));
    QCOMPARE(begun.available(), 0);
    mayEnd.release();
    desk.Click("pushButton");
    QTRY_COMPARE(begun.available(), 1);
}

void TestWindowSensors::EndDoesNotWaitForAReading() {
    SensorDesk desk;
    QSemaphore begun;
    // Goes on until it is told to give up, as the command does.
    desk.readThermalZone = [&begun](const StopAsked& isStopAsked) {
        begun.release();
        while (!isStopAsked()) {
            QThread::yieldCurrentThread();
        }
        return ThermalText(28);
    };
    desk.Start();
    desk.Show();
    desk.Click("pushButton");
    begun.acquire();
    QVERIFY(desk.window->Stop());
    QCoreApplication::processEvents();
    QCOMPARE(desk.ReadOut()->text(), QStringLiteral("..."));
    desk.Close();
}

KIVO_TEST(TestWindowSensors)
#include "tst_window_sensors.moc"
