// clang-format off
#include <windows.h>
#include <setupapi.h>
// clang-format on

#include <QtTest>

#include <set>

#include "../telemetry/sensor_words.h"
#include "support/test_program.h"
#include "telemetry/energy_meter_devices.h"
#include "telemetry/sensor_lists.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr GUID kMeters{0x45BD8344, 0x7ED6, 0x49CF, {0xA4, 0x40, 0xC2, 0x76, 0xC9, 0x33, 0xB0, 0x53}};
const std::wstring kMetersText = L"{45BD8344-7ED6-49cf-A440-C276C933B053}";
const std::wstring kInterfaceKey = L"System\\CurrentControlSet\\Control\\DeviceClasses\\" + kMetersText;

// A device of the energy meters' interface, as its driver would register it. It cannot be opened.
class RegisteredMeter {
public:
    RegisteredMeter() {
        Forget();
        const HDEVINFO devices = SetupDiCreateDeviceInfoList(nullptr, nullptr);
        SP_DEVINFO_DATA device{};
        device.cbSize = sizeof(device);
        QVERIFY(SetupDiCreateDeviceInfoW(devices, L"Root\\KivoMeter\\0000", &kMeters, nullptr, nullptr, 0,
                                         &device) != FALSE);
        QVERIFY(SetupDiRegisterDeviceInfo(devices, &device, 0, nullptr, nullptr, nullptr) != FALSE);
        QVERIFY(SetupDiCreateDeviceInterfaceW(devices, &device, &kMeters, nullptr, 0, nullptr) != FALSE);
        SetupDiDestroyDeviceInfoList(devices);
    }
    ~RegisteredMeter() { Forget(); }
    Q_DISABLE_COPY(RegisteredMeter)

    // What its driver does when it starts: only then it is present.
    void SwitchOn() {
        const std::wstring path =
            kInterfaceKey + L"\\##?#ROOT#KIVOMETER#0000#" + kMetersText + L"\\#\\Control";
        const DWORD isLinked = 1;
        HKEY key = nullptr;
        QCOMPARE(RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE,
                                 nullptr, &key, nullptr),
                 LSTATUS(ERROR_SUCCESS));
        QCOMPARE(RegSetValueExW(key, L"Linked", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&isLinked),
                                sizeof(isLinked)),
                 LSTATUS(ERROR_SUCCESS));
        RegCloseKey(key);
    }

private:
    static void Forget() {
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, kInterfaceKey.c_str());
        RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"System\\CurrentControlSet\\Enum\\Root\\KivoMeter");
    }
};

}  // namespace

class TestSensorLists : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void EachQuantityHasItsOrder() {
        using Order = std::vector<SourceId>;
        const SourceOrders orders = PlatformSourceOrders();
        const auto order = [&orders](Quantity quantity) { return orders[static_cast<size_t>(quantity)]; };
        QVERIFY((order(Quantity::Power) == Order{SourceId::EnergyLibrary, SourceId::EnergyMeterCounters,
                                                 SourceId::EnergyMeterInterface, SourceId::HwInfo,
                                                 SourceId::LibreHardwareMonitor}));
        QVERIFY((order(Quantity::Temperature) == Order{SourceId::EnergyLibrary, SourceId::HwInfo,
                                                       SourceId::LibreHardwareMonitor, SourceId::CoreTemp,
                                                       SourceId::FirmwareZone}));
        QVERIFY((order(Quantity::FanSpeed) == Order{SourceId::HwInfo, SourceId::LibreHardwareMonitor}));
    }

    void EverySourceOfAnOrderIsMadeOnce() {
        std::set<SourceId> listed;
        for (const std::vector<SourceId>& order : PlatformSourceOrders()) {
            listed.insert(order.begin(), order.end());
        }
        listed.erase(SourceId::EnergyLibrary);
        const SensorSources sources = MakeSensorSources();
        std::set<SourceId> made;
        for (const auto& source : sources) {
            made.insert(source->Id());
        }
        QVERIFY(made == listed);
        QVERIFY(made.size() == sources.size());
    }

    // A system with none of the programs and none of the counters.
    void SourcesThatFindNothingSaySo() {
        const SensorSources sources = MakeSensorSources();
        for (int second = 0; second < 3; ++second) {
            for (const auto& source : sources) {
                const SensorReadings readings = source->Read(At(second));
                QVERIFY(AreAllOf(readings, source->Id()));
                for (const Quantity quantity : {Quantity::Power, Quantity::Temperature, Quantity::FanSpeed}) {
                    const QString said = Said(readings[quantity]);
                    QVERIFY2(said == QLatin1String("no source") || said == QLatin1String("not read"),
                             qPrintable(said));
                }
            }
        }
    }

    void MeterThatIsNotThereIsNotDenied() {
        const EnergyMeterSystem system = SystemEnergyMeters();
        for (const QString& path : {QString(), QStringLiteral("\\\\?\\no#such#device")}) {
            const EnergyMeterSystem::Opened opened = system.open(path);
            QVERIFY(opened.device == nullptr && !opened.isDenied);
        }
    }

    void MetersAreListedByTheirInterface() {
        const EnergyMeterSystem system = SystemEnergyMeters();
        RegisteredMeter meter;
        QVERIFY(system.list().empty());
        meter.SwitchOn();
        const std::vector<QString> paths = system.list();
        QCOMPARE(int(paths.size()), 1);
        QCOMPARE(paths[0].toLower(),
                 QStringLiteral("\\\\?\\root#kivometer#0000#{45bd8344-7ed6-49cf-a440-c276c933b053}"));
        EnergyMeterDevices source(system);
        QCOMPARE(Power(source, At(0)), QStringLiteral("no source"));
    }

    // A file is no meter: it answers nothing.
    void FileIsNoMeter() {
        QTemporaryFile file;
        QVERIFY(file.open());
        const QString path = QDir::toNativeSeparators(file.fileName());
        EnergyMeterSystem system = SystemEnergyMeters();
        QVERIFY(system.open(path).device != nullptr);
        system.list = [&path] { return std::vector<QString>{path}; };
        EnergyMeterDevices source(system);
        QCOMPARE(Power(source, At(0)), QStringLiteral("no source"));
    }
};

KIVO_GUILESS_TEST(TestSensorLists)
#include "tst_sensor_lists.moc"
