#include "virtualscreen/virtual_hid_api.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace kivo {

struct VirtualHidApi::Handle final : public HidHandle {
    Handle(QByteArray ofNode, HidDeviceInfo ofCollection)
        : stamp(std::move(ofNode)), collection(std::move(ofCollection)) {}

    const QByteArray stamp;
    const HidDeviceInfo collection;
};

namespace {

constexpr quint16 kVendor = 0x04D9;
constexpr quint16 kProduct = 0xFD01;

QByteArray NodePath(int nodeNumber) {
    return "virtual/hidraw" + QByteArray::number(nodeNumber);
}

HidDeviceInfo Collection(const QByteArray& path, quint16 usagePage, int interfaceNumber) {
    HidDeviceInfo info;
    info.path = path;
    info.vendorId = kVendor;
    info.productId = kProduct;
    info.releaseNumber = 0x0100;
    info.manufacturer = QStringLiteral("Kivo");
    info.product = QStringLiteral("Kivo Screen (virtual)");
    info.usagePage = usagePage;
    info.usage = 1;
    info.interfaceNumber = interfaceNumber;
    return info;
}

HidDeviceInfo Keyboard(const QByteArray& path) {
    HidDeviceInfo info;
    info.path = path;
    info.vendorId = 0x046D;
    info.productId = 0xC31C;
    info.product = QStringLiteral("Keyboard (virtual)");
    info.usagePage = 0x0001;
    info.usage = 6;
    info.interfaceNumber = 0;
    return info;
}

bool IsScreen(const HidDeviceInfo& device) {
    return device.vendorId == kVendor && device.productId == kProduct;
}

}  // namespace

VirtualHidApi::VirtualHidApi() = default;
VirtualHidApi::~VirtualHidApi() = default;

int VirtualHidApi::Init() {
    const std::lock_guard lock(m_mutex);
    return m_failInit ? -1 : 0;
}

std::vector<HidDeviceInfo> VirtualHidApi::Enumerate(quint16 vendorId, quint16 productId) {
    const std::lock_guard lock(m_mutex);
    std::vector<HidDeviceInfo> devices;
    for (const QByteArray& path : {InterfacePath(0), InterfacePath(1), m_keyboardPath}) {
        const std::optional<HidDeviceInfo> device = CollectionAt(path);
        const bool isListed =
            std::any_of(devices.begin(), devices.end(),
                        [&path](const HidDeviceInfo& listed) { return listed.path == path; });
        if (device && !isListed && (vendorId == 0 || vendorId == device->vendorId) &&
            (productId == 0 || productId == device->productId)) {
            devices.push_back(*device);
        }
    }
    return devices;
}

HidHandle* VirtualHidApi::OpenPath(const QByteArray& path) {
    const std::lock_guard lock(m_mutex);
    const std::optional<HidDeviceInfo> device = CollectionAt(path);
    if (!device || (IsScreen(*device) && (m_failOpens || m_denyOpens))) {
        return nullptr;
    }
    ++m_openHandles;
    return std::make_unique<Handle>(StampAt(path), *device).release();
}

bool VirtualHidApi::IsDenied(const QByteArray& path) {
    const std::lock_guard lock(m_mutex);
    const std::optional<HidDeviceInfo> device = CollectionAt(path);
    return device && IsScreen(*device) && m_denyOpens;
}

std::vector<HidDeviceInfo> VirtualHidApi::Identify(HidHandle* handle) {
    HidDeviceInfo collection = static_cast<const Handle*>(handle)->collection;
    collection.manufacturer.clear();
    collection.product.clear();
    return {collection};
}

QByteArray VirtualHidApi::NodeStamp(const QByteArray& path) {
    const std::lock_guard lock(m_mutex);
    return StampAt(path);
}

QByteArray VirtualHidApi::PanelKey(const QByteArray& path) {
    const std::lock_guard lock(m_mutex);
    const std::optional<HidDeviceInfo> device = CollectionAt(path);
    return device && IsScreen(*device) ? m_panelKey : QByteArray();
}

int VirtualHidApi::Write(HidHandle* handle, const quint8* data, std::size_t length) {
    constexpr int kFailed = -1;
    const auto* const open = static_cast<const Handle*>(handle);
    std::unique_lock lock(m_mutex);
    if (open->stamp != StampAt(open->collection.path)) {
        return kFailed;
    }
    if (!IsScreen(open->collection)) {
        m_decoder.Count(PanelError::Interface, QStringLiteral("a report for another device"));
        return kFailed;
    }

    ++m_writesSinceFault;
    if (m_vanishAt && m_writesSinceFault >= *m_vanishAt) {
        m_vanishAt.reset();
        PullOut();
        lock.unlock();
        Notify(VirtualScreenEvent::Unplugged);
        return kFailed;
    }
    if (m_failWritesFrom && m_writesSinceFault >= *m_failWritesFrom) {
        return kFailed;
    }
    if (open->collection.interfaceNumber == 0) {
        m_decoder.Count(PanelError::Interface, QStringLiteral("a report for the control interface"));
        return kFailed;
    }

    const PanelReport report = m_decoder.Decode(data, length);
    // A refused chunk belongs to the frame too: who sends one and closes has given up on it.
    if (!m_decoder.FrameInProgress()) {
        m_frameHandle = nullptr;
    } else if (m_frameHandle == nullptr) {
        m_frameHandle = open;
    }
    lock.unlock();
    Notify(report.changedPicture ? VirtualScreenEvent::Picture : VirtualScreenEvent::Report);
    return static_cast<int>(length);
}

int VirtualHidApi::SendFeatureReport(HidHandle* /*handle*/, const quint8* /*data*/, std::size_t /*length*/) {
    // The screen has no feature reports; the system refuses them.
    return -1;
}

void VirtualHidApi::Close(HidHandle* handle) {
    const std::unique_ptr<HidHandle> owned(handle);
    const std::lock_guard lock(m_mutex);
    --m_openHandles;
    if (m_frameHandle != handle) {
        return;
    }
    // Whoever sent the frame gave up on it.
    m_frameHandle = nullptr;
    m_decoder.AbandonFrame();
}

int VirtualHidApi::Exit() {
    return 0;
}

void VirtualHidApi::Unplug() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_plugged) {
            return;
        }
        PullOut();
    }
    Notify(VirtualScreenEvent::Unplugged);
}

void VirtualHidApi::PullOut() {
    m_plugged = false;
    m_frameHandle = nullptr;
    m_decoder.AbandonFrame();
}

void VirtualHidApi::Plug(NodeNumbers numbers) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_plugged) {
            return;
        }
        m_plugged = true;
        ++m_generation;
        if (numbers == NodeNumbers::New) {
            ++m_nodeNumber;
        }
        if (numbers == NodeNumbers::Swapped) {
            m_swapped = !m_swapped;
        }
    }
    Notify(VirtualScreenEvent::Plugged);
}

void VirtualHidApi::SetPanelKey(const QByteArray& key) {
    const std::lock_guard lock(m_mutex);
    m_panelKey = key;
}

void VirtualHidApi::PutKeyboardAt(const QByteArray& path) {
    const std::lock_guard lock(m_mutex);
    m_keyboardPath = path;
    ++m_keyboardGeneration;
}

bool VirtualHidApi::IsPlugged() const {
    const std::lock_guard lock(m_mutex);
    return m_plugged;
}

QByteArray VirtualHidApi::ControlPath() const {
    const std::lock_guard lock(m_mutex);
    return InterfacePath(0);
}

QByteArray VirtualHidApi::DataPath() const {
    const std::lock_guard lock(m_mutex);
    return InterfacePath(1);
}

QByteArray VirtualHidApi::InterfacePath(int number) const {
    return NodePath(2 * m_nodeNumber + (m_swapped ? 1 - number : number));
}

std::optional<HidDeviceInfo> VirtualHidApi::CollectionAt(const QByteArray& path) const {
    if (!m_keyboardPath.isEmpty() && path == m_keyboardPath) {
        return Keyboard(path);
    }
    if (m_plugged && path == InterfacePath(0)) {
        return Collection(path, 0x000C, 0);
    }
    if (m_plugged && path == InterfacePath(1)) {
        return Collection(path, 0xFFA0, 1);
    }
    return std::nullopt;
}

QByteArray VirtualHidApi::StampAt(const QByteArray& path) const {
    const std::optional<HidDeviceInfo> device = CollectionAt(path);
    if (!device) {
        return {};
    }
    return IsScreen(*device) ? "screen " + QByteArray::number(m_generation)
                             : "keyboard " + QByteArray::number(m_keyboardGeneration);
}

PanelState VirtualHidApi::State() const {
    const std::lock_guard lock(m_mutex);
    PanelState state = m_decoder.State();
    // Deep: a shared picture would make the next report copy it, on the thread that sends.
    state.image = state.image.copy();
    return state;
}

int VirtualHidApi::OpenHandles() const {
    const std::lock_guard lock(m_mutex);
    return m_openHandles;
}

void VirtualHidApi::FailInit() {
    const std::lock_guard lock(m_mutex);
    m_failInit = true;
}

void VirtualHidApi::FailOpens() {
    const std::lock_guard lock(m_mutex);
    m_failOpens = true;
}

void VirtualHidApi::DenyOpens() {
    const std::lock_guard lock(m_mutex);
    m_denyOpens = true;
}

void VirtualHidApi::FailWritesFrom(quint64 report) {
    const std::lock_guard lock(m_mutex);
    m_writesSinceFault = 0;
    m_failWritesFrom = report;
}

void VirtualHidApi::VanishAtReport(quint64 report) {
    const std::lock_guard lock(m_mutex);
    m_writesSinceFault = 0;
    m_vanishAt = report;
}

void VirtualHidApi::ClearFaults() {
    const std::lock_guard lock(m_mutex);
    m_failInit = false;
    m_failOpens = false;
    m_denyOpens = false;
    m_failWritesFrom.reset();
    m_vanishAt.reset();
}

int VirtualHidApi::AddListener(Listener listener) {
    const std::lock_guard lock(m_listenerMutex);
    const int id = m_nextListener++;
    m_listeners.emplace(id, std::move(listener));
    return id;
}

void VirtualHidApi::RemoveListener(int id) {
    const std::lock_guard lock(m_listenerMutex);
    m_listeners.erase(id);
}

void VirtualHidApi::Notify(VirtualScreenEvent event) {
    const std::lock_guard lock(m_listenerMutex);
    for (const auto& [id, listener] : m_listeners) {
        listener(event);
    }
}

}  // namespace kivo
