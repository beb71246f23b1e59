#pragma once

// A screen made of software, behind the HID seam: for people who own no screen, and for tests. It can be
// pulled out, plugged in and made to fail. Every function may be called on any thread.

#include <functional>
#include <map>
#include <mutex>
#include <optional>

#include "device/hid_api.h"
#include "virtualscreen/panel_decoder.h"

namespace kivo {

enum class VirtualScreenEvent {
    Report,   // a report arrived that changed no pixel
    Picture,  // the picture changed
    Plugged,  // both interfaces are there
    Unplugged,
};

class VirtualHidApi final : public HidApi {
public:
    using Listener = std::function<void(VirtualScreenEvent)>;
    enum class NodeNumbers {
        Same,
        New,      // both interfaces get new paths, as a kernel may give them
        Swapped,  // each interface gets the path that the other one had
    };

    // Starts plugged in, with a black picture.
    VirtualHidApi();
    ~VirtualHidApi() override;

    int Init() override;
    std::vector<HidDeviceInfo> Enumerate(quint16 vendorId, quint16 productId) override;
    HidHandle* OpenPath(const QByteArray& path) override;
    bool IsDenied(const QByteArray& path) override;
    std::vector<HidDeviceInfo> Identify(HidHandle* handle) override;
    QByteArray NodeStamp(const QByteArray& path) override;
    QByteArray PanelKey(const QByteArray& path) override;
    int Write(HidHandle* handle, const quint8* data, std::size_t length) override;
    int SendFeatureReport(HidHandle* handle, const quint8* data, std::size_t length) override;
    void Close(HidHandle* handle) override;
    int Exit() override;

    // Handles that were open stay useless after the screen comes back. The picture is kept; a frame that was
    // not complete is forgotten. Each plugging-in makes new nodes (NodeStamp), also under the same paths.
    void Unplug();
    void Plug(NodeNumbers numbers = NodeNumbers::Same);
    bool IsPlugged() const;

    // Another panel from now on, as HidApi::PanelKey tells them apart; to be called while none is plugged in.
    void SetPanelKey(const QByteArray& key);

    // A keyboard has this path from now on, as when a node's number is given out again; empty: none has.
    // Where the path is one of the screen's, the keyboard hides it. It can be opened; a report for it is an
    // error.
    void PutKeyboardAt(const QByteArray& path);

    QByteArray ControlPath() const;
    QByteArray DataPath() const;

    // A copy of its own, the picture too.
    PanelState State() const;
    // Handles opened and not yet closed.
    int OpenHandles() const;

    // Faults, until ClearFaults. Reports are counted from the call, the first is 1.
    void FailInit();
    void FailOpens();
    // As FailOpens, for want of the right to open it.
    void DenyOpens();
    void FailWritesFrom(quint64 report);
    // The screen is pulled out while it takes this report.
    void VanishAtReport(quint64 report);
    void ClearFaults();

    // Called on the thread that made the event, with no lock of the panel held; it should only take note.
    // Once RemoveListener is back, the listener is not called any more; not to be called from a listener.
    int AddListener(Listener listener);
    void RemoveListener(int id);

private:
    struct Handle;

    // All three with the mutex held; no collection and an empty stamp where no node is.
    QByteArray InterfacePath(int number) const;
    std::optional<HidDeviceInfo> CollectionAt(const QByteArray& path) const;
    QByteArray StampAt(const QByteArray& path) const;
    void PullOut();
    void Notify(VirtualScreenEvent event);

    mutable std::mutex m_mutex;  // everything but the listeners
    PanelDecoder m_decoder;
    bool m_plugged = true;
    bool m_failInit = false;
    bool m_failOpens = false;
    bool m_denyOpens = false;
    quint64 m_generation = 1;  // of the nodes: one a plugging-in
    int m_nodeNumber = 0;
    bool m_swapped = false;  // the data interface has the lower number
    QByteArray m_panelKey = "virtual";
    QByteArray m_keyboardPath;
    quint64 m_keyboardGeneration = 0;
    int m_openHandles = 0;
    quint64 m_writesSinceFault = 0;
    std::optional<quint64> m_failWritesFrom;
    std::optional<quint64> m_vanishAt;
    const Handle* m_frameHandle = nullptr;  // the one that the frame in progress comes on

    std::mutex m_listenerMutex;
    std::map<int, Listener> m_listeners;
    int m_nextListener = 1;
};

}  // namespace kivo
