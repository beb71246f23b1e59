#include <QtTest>

#include "device/screen_change.h"
#include "device/transfers.h"
#include "recording_hid_api.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;

namespace {

constexpr char kNode[] = "/dev/hidraw5";
const QString kDataName = QStringLiteral(R"(\\?\HID#VID_04D9&PID_FD01&MI_01#7&1)");

// A session that was started with a screen whose data collection has kNode, as on a system where nodes have
// numbers.
struct Desk {
    Desk() {
        session.InitDeviceTable();
        Put(DataCollection(kNode), "screen", "A");
        session.EnumerateScreens();
    }

    // The node belongs to this device from now on. Nobody tells the session.
    void Put(const HidDeviceInfo& device, const QByteArray& stamp, const QByteArray& key = {}) {
        hid.devices = {device};
        hid.stamps[kNode] = stamp;
        hid.panelKeys[kNode] = key;
    }

    int Opened() const { return static_cast<int>(hid.opened.size()); }

    RecordingHidApi hid;
    ScreenSession session{hid};
};

// The same with the software panel and its transfers.
struct Panel {
    Panel() {
        session.InitDeviceTable();
        session.EnumerateScreens();
    }

    // As the system's notification would have it done.
    void TellOfArrival() { ApplyScreenChange(session, {kDataName, true}, false, ArrivalPath::Enumeration); }
    quint64 MisdirectedReports() const { return hid.State().counts.Errors(PanelError::Interface); }

    VirtualHidApi hid;
    ScreenSession session{hid};
    Transfers transfers{session};
};

}  // namespace

// Whether the node at the data path is there and still the screen's: ScreenSession with its PanelNode.
class TestPanelNode : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void UnknownPathIsAbsent();
    void ScreenIsPresent();
    void KnownScreenCostsNoOpening();
    void NodeInDoubtIsAskedAgain();
    void NodeWithAnotherStampIsAskedAgain();
    void AnotherDeviceIsAbsentAndLeftAlone_data();
    void AnotherDeviceIsAbsentAndLeftAlone();
    void NodeOfBothCollectionsIsTheScreen();
    void NodeThatCannotTellIsBelieved();
    void FilterIsForThePathThatIsOpened();
    void NodeThatCannotBeOpenedIsTriedAgain_data();
    void NodeThatCannotBeOpenedIsTriedAgain();
    void AnswerIsNotBelievedWhenTheNodeChangesMeanwhile();

    void FirstTransferAsks();
    void TransferInDoubtAsksOnItsOwnHandle();
    void TransferToAnotherDeviceIsRefused_data();
    void TransferToAnotherDeviceIsRefused();
    void TransferWhoseNodeChangesMeanwhileIsRefused();
    void TransferToAnotherPanelWaitsForALook();
    void PanelWithoutAKeyIsBelieved();
    void PanelWithoutAKeyDoesNotHideAnotherOne();
    void RefusedTransferLeavesNothingOpen();

    void ReportsNeverGoToTheOtherInterface();
    void ReportsNeverGoToAKeyboard();
    void PictureOfOnePanelNeverGoesToAnother();
};

void TestPanelNode::UnknownPathIsAbsent() {
    RecordingHidApi hid;
    ScreenSession session(hid);
    QCOMPARE(session.LookAtPanel().presence, ScreenPresence::Absent);  // no table yet
    session.InitDeviceTable();
    session.EnumerateScreens();
    const PanelSighting sighting = session.LookAtPanel();
    QCOMPARE(sighting.presence, ScreenPresence::Absent);
    QCOMPARE(sighting.path, QByteArray());
    QVERIFY(session.OpenForTransfer() == nullptr);
    QVERIFY(hid.opened.empty());
}

void TestPanelNode::ScreenIsPresent() {
    Desk desk;
    const PanelSighting sighting = desk.session.LookAtPanel();
    QCOMPARE(sighting.presence, ScreenPresence::Present);
    QCOMPARE(sighting.panelKey, QByteArray("A"));
    QCOMPARE(sighting.path, QByteArray(kNode));
    QCOMPARE(desk.hid.OpenCount(), 0);
    QCOMPARE(desk.hid.misuses, 0);
}

void TestPanelNode::KnownScreenCostsNoOpening() {
    Desk desk;
    desk.session.LookAtPanel();
    const int stampsRead = desk.hid.stampsRead;
    for (int look = 1; look <= 3; ++look) {
        QCOMPARE(desk.session.LookAtPanel().presence, ScreenPresence::Present);
        QCOMPARE(desk.hid.stampsRead - stampsRead, look);
    }
    QCOMPARE(desk.Opened(), 1);
    QCOMPARE(desk.hid.identified, 1);
}

void TestPanelNode::NodeInDoubtIsAskedAgain() {
    Desk desk;
    desk.session.LookAtPanel();
    desk.session.DoubtNode();
    desk.session.LookAtPanel();
    QCOMPARE(desk.hid.identified, 2);
    desk.session.OpenScreenByName(kScreenName);
    desk.session.LookAtPanel();
    QCOMPARE(desk.hid.identified, 3);
    desk.session.OpenScreenById(kScreenVendorId, kScreenProductId);
    desk.session.LookAtPanel();
    QCOMPARE(desk.hid.identified, 4);
    // A doubt that comes while the node is asked is not lost.
    desk.hid.beforeIdentify = [&desk] { desk.session.DoubtNode(); };
    desk.session.DoubtNode();
    desk.session.LookAtPanel();
    desk.hid.beforeIdentify = {};
    desk.session.LookAtPanel();
    QCOMPARE(desk.hid.identified, 6);
}

void TestPanelNode::NodeWithAnotherStampIsAskedAgain() {
    Desk desk;
    desk.session.LookAtPanel();
    desk.Put(DataCollection(kNode), "screen, rights changed", "B");
    QCOMPARE(desk.session.LookAtPanel().panelKey, QByteArray("B"));
    QCOMPARE(desk.hid.identified, 2);
}

void TestPanelNode::AnotherDeviceIsAbsentAndLeftAlone_data() {
    QTest::addColumn<bool>("isScreen");
    QTest::newRow("a keyboard") << false;
    QTest::newRow("the screen's control interface") << true;
}

void TestPanelNode::AnotherDeviceIsAbsentAndLeftAlone() {
    QFETCH(bool, isScreen);
    Desk desk;
    desk.session.LookAtPanel();
    desk.Put(isScreen ? ControlCollection(kNode) : KeyboardCollection(kNode), "other", "B");
    for (int look = 0; look < 5; ++look) {
        const PanelSighting sighting = desk.session.LookAtPanel();
        QCOMPARE(sighting.presence, ScreenPresence::Absent);
        QCOMPARE(sighting.panelKey, QByteArray());
        QVERIFY(desk.session.OpenForTransfer() == nullptr);
    }
    QCOMPARE(desk.Opened(), 2);  // the screen once, the other one once
    desk.Put(DataCollection(kNode), "screen again", "A");
    QCOMPARE(desk.session.LookAtPanel().presence, ScreenPresence::Present);
}

void TestPanelNode::NodeOfBothCollectionsIsTheScreen() {
    Desk desk;
    desk.hid.devices = {ControlCollection(kNode), DataCollection(kNode)};
    QCOMPARE(desk.session.LookAtPanel().presence, ScreenPresence::Present);
    QVERIFY(desk.session.OpenForTransfer() != nullptr);
}

void TestPanelNode::NodeThatCannotTellIsBelieved() {
    Desk desk;
    desk.hid.devices.clear();
    QCOMPARE(desk.session.LookAtPanel().presence, ScreenPresence::Present);
    QVERIFY(desk.session.OpenForTransfer() != nullptr);
}

// What a node calls its own path may be another way to write it.
void TestPanelNode::FilterIsForThePathThatIsOpened() {
    class RenamingHidApi final : public HidApi {
    public:
        int Init() override { return 0; }
        std::vector<HidDeviceInfo> Enumerate(quint16, quint16) override { return {DataCollection(kNode)}; }
        HidHandle* OpenPath(const QByteArray&) override { return std::make_unique<HidHandle>().release(); }
        std::vector<HidDeviceInfo> Identify(HidHandle*) override { return {DataCollection("elsewhere")}; }
        int Write(HidHandle*, const quint8*, std::size_t length) override { return int(length); }
        int SendFeatureReport(HidHandle*, const quint8*, std::size_t) override { return -1; }
        void Close(HidHandle* handle) override { const std::unique_ptr<HidHandle> owned(handle); }
        int Exit() override { return 0; }
    };
    RenamingHidApi hid;
    ScreenSession session(hid);
    session.InitDeviceTable();
    session.ChangeTable(
        [](ScreenDeviceTable& table) { SetText(table.entries.front().dataPathFilter, "hidraw5"); });
    session.EnumerateScreens();
    QCOMPARE(session.LookAtPanel().presence, ScreenPresence::Present);
}

void TestPanelNode::NodeThatCannotBeOpenedIsTriedAgain_data() {
    QTest::addColumn<bool>("denied");
    QTest::newRow("for want of the right") << true;
    QTest::newRow("otherwise") << false;
}

void TestPanelNode::NodeThatCannotBeOpenedIsTriedAgain() {
    QFETCH(bool, denied);
    Desk desk;
    desk.hid.denies = denied;
    desk.hid.refusesOpen = [](const QByteArray&) { return true; };
    const ScreenPresence expected = denied ? ScreenPresence::Denied : ScreenPresence::Absent;
    QCOMPARE(desk.session.LookAtPanel().presence, expected);
    QCOMPARE(desk.session.LookAtPanel().presence, expected);
    QCOMPARE(desk.session.LookAtPanel().path, QByteArray(kNode));
    desk.hid.refusesOpen = {};
    QCOMPARE(desk.session.LookAtPanel().presence, ScreenPresence::Present);
    // The rights go again, which the stamp tells.
    desk.hid.stamps[kNode] = "rights changed";
    desk.hid.refusesOpen = [](const QByteArray&) { return true; };
    QCOMPARE(desk.session.LookAtPanel().presence, expected);
}

void TestPanelNode::AnswerIsNotBelievedWhenTheNodeChangesMeanwhile() {
    Desk desk;
    desk.hid.beforeIdentify = [&desk] { desk.hid.stamps[kNode] = "keyboard"; };
    QCOMPARE(desk.session.LookAtPanel().presence, ScreenPresence::Absent);
    QCOMPARE(desk.session.LookAtPanel().presence, ScreenPresence::Present);  // asked once more
    QCOMPARE(desk.hid.identified, 2);
}

void TestPanelNode::FirstTransferAsks() {
    Desk desk;
    QVERIFY(desk.session.OpenForTransfer() != nullptr);
    QCOMPARE(desk.hid.identified, 1);
    for (int transfer = 0; transfer < 3; ++transfer) {
        QVERIFY(desk.session.OpenForTransfer() != nullptr);
    }
    desk.session.LookAtPanel();
    QCOMPARE(desk.hid.identified, 1);
    QCOMPARE(desk.Opened(), 4);
}

void TestPanelNode::TransferInDoubtAsksOnItsOwnHandle() {
    Desk desk;
    desk.session.LookAtPanel();
    desk.session.DoubtNode();
    QVERIFY(desk.session.OpenForTransfer() != nullptr);
    QCOMPARE(desk.hid.identified, 2);
    QCOMPARE(desk.Opened(), 2);
}

void TestPanelNode::TransferToAnotherDeviceIsRefused_data() {
    QTest::addColumn<bool>("told");
    QTest::newRow("its stamp differs") << false;
    QTest::newRow("in doubt") << true;
}

void TestPanelNode::TransferToAnotherDeviceIsRefused() {
    QFETCH(bool, told);
    Desk desk;
    QVERIFY(desk.session.OpenForTransfer() != nullptr);
    desk.Put(KeyboardCollection(kNode), told ? "screen" : "keyboard");
    if (told) {
        desk.session.DoubtNode();
    }
    QVERIFY(desk.session.OpenForTransfer() == nullptr);
    QVERIFY(desk.session.OpenForTransfer() == nullptr);
    QCOMPARE(desk.Opened(), 2);
    QCOMPARE(desk.hid.OpenCount(), 0);
}

void TestPanelNode::TransferWhoseNodeChangesMeanwhileIsRefused() {
    Desk desk;
    desk.session.LookAtPanel();
    desk.hid.beforeOpen = [&desk] { desk.Put(KeyboardCollection(kNode), "keyboard"); };
    QVERIFY(desk.session.OpenForTransfer() == nullptr);
    desk.hid.beforeOpen = {};
    QVERIFY(desk.session.OpenForTransfer() == nullptr);
    QCOMPARE(desk.hid.OpenCount(), 0);
}

void TestPanelNode::TransferToAnotherPanelWaitsForALook() {
    Desk desk;
    QVERIFY(desk.session.OpenForTransfer() != nullptr);  // the first one seen is taken
    desk.Put(DataCollection(kNode), "second screen", "B");
    QVERIFY(desk.session.OpenForTransfer() == nullptr);
    QVERIFY(desk.session.OpenForTransfer() == nullptr);
    QCOMPARE(desk.session.LookAtPanel().panelKey, QByteArray("B"));
    QVERIFY(desk.session.OpenForTransfer() != nullptr);
    QCOMPARE(desk.hid.identified, 2);
}

void TestPanelNode::PanelWithoutAKeyIsBelieved() {
    Desk desk;
    desk.Put(DataCollection(kNode), "screen");
    QVERIFY(desk.session.OpenForTransfer() != nullptr);
    desk.Put(DataCollection(kNode), "screen with a key", "B");
    QVERIFY(desk.session.OpenForTransfer() != nullptr);
}

void TestPanelNode::PanelWithoutAKeyDoesNotHideAnotherOne() {
    Desk desk;
    desk.session.LookAtPanel();
    desk.Put(DataCollection(kNode), "screen without a key");
    QCOMPARE(desk.session.LookAtPanel().panelKey, QByteArray());
    QVERIFY(desk.session.OpenForTransfer() != nullptr);
    desk.Put(DataCollection(kNode), "second screen", "B");
    QVERIFY(desk.session.OpenForTransfer() == nullptr);
}

void TestPanelNode::RefusedTransferLeavesNothingOpen() {
    Desk desk;
    desk.Put(KeyboardCollection(kNode), "keyboard");
    desk.session.OpenScreenByName(kScreenName);
    QVERIFY(desk.session.OpenForTransfer() == nullptr);
    QCOMPARE(desk.hid.OpenCount(), 0);
    QCOMPARE(desk.hid.misuses, 0);
}

// The kernel gives the numbers out again, in another order, and the event comes after the next report.
void TestPanelNode::ReportsNeverGoToTheOtherInterface() {
    Panel panel;
    QCOMPARE(panel.transfers.SendTimeSync(), TransferResult::Taken);
    for (int cycle = 0; cycle < 4; ++cycle) {
        const QByteArray before = panel.hid.DataPath();
        panel.hid.Unplug();
        panel.hid.Plug(VirtualHidApi::NodeNumbers::Swapped);
        QCOMPARE(panel.hid.ControlPath(), before);
        QCOMPARE(panel.transfers.SendTimeSync(), TransferResult::NotThere);
        QCOMPARE(panel.MisdirectedReports(), quint64{0});
        panel.TellOfArrival();
        QCOMPARE(panel.transfers.SendTimeSync(), TransferResult::Taken);
    }
    QCOMPARE(panel.hid.State().counts.commands, quint64{5});
}

void TestPanelNode::ReportsNeverGoToAKeyboard() {
    Panel panel;
    QCOMPARE(panel.transfers.SendTimeSync(), TransferResult::Taken);
    panel.hid.Unplug();
    panel.hid.PutKeyboardAt(panel.hid.DataPath());
    QCOMPARE(panel.transfers.SendTimeSync(), TransferResult::NotThere);
    QCOMPARE(panel.MisdirectedReports(), quint64{0});
    panel.hid.Plug(VirtualHidApi::NodeNumbers::New);
    QCOMPARE(panel.transfers.SendTimeSync(), TransferResult::NotThere);
    QCOMPARE(panel.session.LookAtPanel().presence, ScreenPresence::Absent);
    panel.TellOfArrival();
    QCOMPARE(panel.transfers.SendTimeSync(), TransferResult::Taken);
    QCOMPARE(panel.MisdirectedReports(), quint64{0});
}

void TestPanelNode::PictureOfOnePanelNeverGoesToAnother() {
    Panel panel;
    const QByteArray first = panel.session.LookAtPanel().panelKey;
    QVERIFY(!first.isEmpty());
    panel.hid.Unplug();
    panel.hid.SetPanelKey("second");
    panel.hid.Plug();
    panel.TellOfArrival();
    QCOMPARE(panel.transfers.SendTimeSync(), TransferResult::NotThere);
    QCOMPARE(panel.session.LookAtPanel().panelKey, QByteArray("second"));
    QCOMPARE(panel.transfers.SendTimeSync(), TransferResult::Taken);
    QCOMPARE(panel.hid.State().counts.commands, quint64{1});
}

KIVO_GUILESS_TEST(TestPanelNode)
#include "tst_panel_node.moc"
