#include <QtTest>

#include "device/hotplug.h"
#include "support/test_program.h"

using namespace kivo;

// The system's own notifications, with or without somebody who sends them.
class TestHotplugLinux : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void RegistersAndEnds() {
        int told = 0;
        int asked = 0;
        for (int k = 0; k < 3; ++k) {
            const std::unique_ptr<Hotplug> hotplug = MakeSystemHotplug();
            QVERIFY(hotplug->Register(
                [&asked] {
                    ++asked;
                    return quintptr(0);
                },
                [&told](const DeviceChange& /*change*/) { ++told; }, [&told] { ++told; }));
            QCOMPARE(int(hotplug->PathOfArrival()), int(ArrivalPath::Enumeration));
            QTest::qWait(50);  // nothing comes, and nothing spins or warns
        }
        QCOMPARE(told, 0);
        QCOMPARE(asked, 0);  // messages do not come through a window here
    }

    void EndsWithoutHavingBeenRegistered() { QVERIFY(MakeSystemHotplug() != nullptr); }
};

KIVO_GUILESS_TEST(TestHotplugLinux)
#include "tst_hotplug_linux.moc"
