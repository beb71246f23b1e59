#include <QTemporaryDir>
#include <QtTest>

#include "device/hidraw_sysfs.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr char kDataDescriptor[] = "06a0ff0901a101c0";
constexpr char kControlDescriptor[] = "050c0901a101c0";

// The kernel's folders of one USB device, with the links between them.
class Sysfs {
public:
    Sysfs() {
        Write(QStringLiteral("usb/bcdDevice"), "0107\n");
        Write(QStringLiteral("usb/product"), "Panel\n");
        QDir(m_folder.path()).mkpath(QStringLiteral("class"));
        AddInterface(0, QStringLiteral("hidraw4"), kControlDescriptor);
        AddInterface(1, QStringLiteral("hidraw5"), kDataDescriptor);
    }

    QString ClassFolder() const { return m_folder.filePath(QStringLiteral("class")); }
    QString HidFolder(int number) const {
        return m_folder.filePath(QStringLiteral("usb/interface%1/hid").arg(number));
    }

    void AddInterface(int number, const QString& node, const QByteArray& descriptor) {
        const QString interface = QStringLiteral("usb/interface%1/").arg(number);
        Write(interface + QLatin1String("bInterfaceNumber"), '0' + QByteArray::number(number) + '\n');
        AddHid(interface + QLatin1String("hid/"), node, descriptor,
               "HID_PHYS=usb-0000:00:14.0-2/input" + QByteArray::number(number) + '\n');
    }

    void AddHid(const QString& folder, const QString& node, const QByteArray& descriptor,
                const QByteArray& port) {
        Write(folder + QLatin1String("uevent"),
              "DRIVER=hid-generic\nHID_ID=0003:000004D9:0000FD01\nHID_NAME=Panel\n" + port + "HID_UNIQ=\n");
        Write(folder + QLatin1String("report_descriptor"), QByteArray::fromHex(descriptor));
        const QString nodeFolder = folder + QLatin1String("hidraw/") + node;
        Write(nodeFolder + QLatin1String("/dev"), "247:5\n");
        QFile::link(m_folder.filePath(folder), m_folder.filePath(nodeFolder + QLatin1String("/device")));
        QFile::link(m_folder.filePath(nodeFolder), ClassFolder() + QLatin1Char('/') + node);
    }

private:
    void Write(const QString& path, const QByteArray& content) {
        const QFileInfo file(m_folder.filePath(path));
        QDir().mkpath(file.path());
        QFile written(file.filePath());
        QVERIFY(written.open(QIODevice::WriteOnly));
        written.write(content);
    }

    QTemporaryDir m_folder;
};

}  // namespace

class TestHidrawSysfs : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void InterfacesOfTheScreen();
    void DeviceWithBothCollections();
    void DeviceThatIsNoUsbDevice();
    void DeviceThatGoesMeanwhile();
    void PanelKeyIsThePort();
};

void TestHidrawSysfs::InterfacesOfTheScreen() {
    const Sysfs system;
    const auto data = DescribeHidraw(system.ClassFolder(), QStringLiteral("hidraw5"));
    QCOMPARE(data.size(), std::size_t{1});
    QCOMPARE(data.front().path, QByteArray("/dev/hidraw5"));
    QCOMPARE(data.front().vendorId, quint16{0x04D9});
    QCOMPARE(data.front().productId, quint16{0xFD01});
    QCOMPARE(data.front().releaseNumber, quint16{0x0107});
    QCOMPARE(data.front().usagePage, quint16{0xFFA0});
    QCOMPARE(data.front().usage, quint16{1});
    QCOMPARE(data.front().interfaceNumber, 1);
    QCOMPARE(data.front().product, QString());
    const auto control = DescribeHidraw(system.ClassFolder(), QStringLiteral("hidraw4"));
    QCOMPARE(control.size(), std::size_t{1});
    QCOMPARE(control.front().usagePage, quint16{0x000C});
    QCOMPARE(control.front().interfaceNumber, 0);
}

void TestHidrawSysfs::DeviceWithBothCollections() {
    Sysfs system;
    system.AddInterface(2, QStringLiteral("hidraw6"), QByteArray(kControlDescriptor) + kDataDescriptor);
    const auto both = DescribeHidraw(system.ClassFolder(), QStringLiteral("hidraw6"));
    QCOMPARE(both.size(), std::size_t{2});
    QCOMPARE(both.front().usagePage, quint16{0x000C});
    QCOMPARE(both.back().usagePage, quint16{0xFFA0});
    QCOMPARE(both.back().vendorId, quint16{0x04D9});
}

void TestHidrawSysfs::DeviceThatIsNoUsbDevice() {
    Sysfs system;
    system.AddHid(QStringLiteral("uhid/hid/"), QStringLiteral("hidraw7"), kDataDescriptor, "HID_PHYS=\n");
    const auto device = DescribeHidraw(system.ClassFolder(), QStringLiteral("hidraw7"));
    QCOMPARE(device.size(), std::size_t{1});
    QCOMPARE(device.front().interfaceNumber, -1);
    QCOMPARE(device.front().releaseNumber, quint16{0});
    QCOMPARE(device.front().usagePage, quint16{0xFFA0});
    QCOMPARE(PanelKeyOfHidraw(system.ClassFolder(), QStringLiteral("hidraw7")), QByteArray());
}

void TestHidrawSysfs::DeviceThatGoesMeanwhile() {
    const Sysfs system;
    const QString node = QStringLiteral("hidraw5");
    QVERIFY(QFile::remove(system.HidFolder(1) + QLatin1String("/report_descriptor")));
    const auto halfGone = DescribeHidraw(system.ClassFolder(), node);
    QCOMPARE(halfGone.size(), std::size_t{1});
    QCOMPARE(halfGone.front().usagePage, quint16{0});  // no collection of the screen's
    QVERIFY(QFile::remove(system.HidFolder(1) + QLatin1String("/uevent")));
    QVERIFY(DescribeHidraw(system.ClassFolder(), node).empty());
    QCOMPARE(PanelKeyOfHidraw(system.ClassFolder(), node), QByteArray());
    QVERIFY(DescribeHidraw(system.ClassFolder(), QStringLiteral("hidraw9")).empty());
    QVERIFY(DescribeHidraw(system.ClassFolder(), QString()).empty());
}

void TestHidrawSysfs::PanelKeyIsThePort() {
    const Sysfs system;
    const QByteArray port = "usb-0000:00:14.0-2";
    QCOMPARE(PanelKeyOfHidraw(system.ClassFolder(), QStringLiteral("hidraw4")), port);
    QCOMPARE(PanelKeyOfHidraw(system.ClassFolder(), QStringLiteral("hidraw5")), port);
}

KIVO_GUILESS_TEST(TestHidrawSysfs)
#include "tst_hidraw_sysfs_linux.moc"
