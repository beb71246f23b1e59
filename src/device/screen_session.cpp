#include "device/screen_session.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QSettings>
#include <algorithm>

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(sessionLog, "kivo.device")

// The texts are formats with their line end, and the line end is part of the message: "\n" alone is an empty
// line between two devices. Manufacturer and product arrive as wide strings; they are printed whole, as
// UTF-8, for a wide string read as a narrow one would stop after its first letter or run on.
void LogDevice(const HidDeviceInfo& device) {
    qCDebug(sessionLog, "type: %x %x\n", device.vendorId, device.productId);
    qCDebug(sessionLog, "path: %s\n", device.path.constData());
    qCDebug(sessionLog, "usge %x uu %x\n", device.usage, device.usagePage);
    qCDebug(sessionLog, "Manufacturer: %s\n", qUtf8Printable(device.manufacturer));
    qCDebug(sessionLog, "Product:      %s\n", qUtf8Printable(device.product));
    qCDebug(sessionLog, "Release:      %x\n", device.releaseNumber);
    qCDebug(sessionLog, "Interface:    %d\n", device.interfaceNumber);
    qCDebug(sessionLog, "\n");
    qCDebug(sessionLog, "\n");
}

bool IsScreen(const HidDeviceInfo& device) {
    return device.vendorId == kScreenVendorId && device.productId == kScreenProductId;
}

void ForgetIfMissing(ScreenDeviceEntry& entry, const std::vector<HidDeviceInfo>& devices) {
    const auto isListed = [&entry, &devices](
                              bool (*isCollection)(const ScreenDeviceEntry&, const HidDeviceInfo&),
                              const QByteArray& path) {
        return std::any_of(devices.begin(), devices.end(), [&](const HidDeviceInfo& device) {
            return device.path == path && isCollection(entry, device);
        });
    };
    if (!isListed(&IsControlCollection, TextOf(entry.controlPath))) {
        entry.controlPath.fill('\0');
        entry.controlFound = 0;
    }
    if (!isListed(&IsDataCollection, TextOf(entry.dataPath))) {
        entry.dataPath.fill('\0');
        entry.dataFound = 0;
    }
}

}  // namespace

ScreenSession::ScreenSession(HidApi& api)
    : m_api(api),
      m_screenDeviceTable(std::make_unique<ScreenDeviceTable>()),
      m_panelNode(api, m_deviceMutex) {}

ScreenSession::~ScreenSession() = default;

void ScreenSession::InitDeviceTable() {
    // Deliberate: the file beside the program is looked at and has no say. Its name is kept for tables that
    // are not compiled in; today's values are.
    const QSettings unread(QCoreApplication::applicationDirPath() + QLatin1String("/Default.ini"),
                           QSettings::IniFormat);

    const std::lock_guard lock(m_deviceMutex);
    const std::lock_guard table(m_tableMutex);
    ResetScreenTable(*m_screenDeviceTable);
}

int ScreenSession::EnumerateScreens() {
    const std::lock_guard lock(m_deviceMutex);
    if (m_api.Init() != 0) {
        return -1;
    }
    const std::vector<HidDeviceInfo> devices = m_api.Enumerate(0, 0);
    const std::lock_guard table(m_tableMutex);
    for (const HidDeviceInfo& device : devices) {
        if (IsScreen(device)) {
            LogDevice(device);
        }
        NoteDevice(*m_screenDeviceTable, device);
    }
    return 0;
}

void ScreenSession::OpenScreenByName(const QByteArray& name) {
    const std::lock_guard lock(m_deviceMutex);
    if (m_api.Init() != 0) {
        return;
    }
    const quint32 count = EntryCount();
    for (quint32 i = 0; i < count; ++i) {
        const ScreenDeviceEntry& entry = m_screenDeviceTable->entries.at(i);
        if (entry.dataFound == 1 && TextOf(entry.name) == name) {
            OpenEntry(entry);
        }
    }
}

SharedScreenHandle ScreenSession::OpenScreenById(quint32 vendorId, quint32 productId) {
    const std::lock_guard lock(m_deviceMutex);
    if (m_api.Init() != 0) {
        return nullptr;
    }
    const quint32 count = EntryCount();
    for (quint32 i = 0; i < count; ++i) {
        const ScreenDeviceEntry& entry = m_screenDeviceTable->entries.at(i);
        if (entry.dataFound == 1 && entry.vendorId == vendorId && entry.productId == productId) {
            OpenEntry(entry);
        }
    }
    return m_dataHandle;
}

void ScreenSession::OpenEntry(const ScreenDeviceEntry& entry) {
    DoubtNode();
    // The old handles go before the new ones come: none is ever dropped open.
    m_controlHandle.reset();
    m_dataHandle.reset();
    m_controlHandle = ScreenHandle::Open(m_api, m_deviceMutex, TextOf(entry.controlPath));
    m_dataHandle = ScreenHandle::Open(m_api, m_deviceMutex, TextOf(entry.dataPath));
}

void ScreenSession::CloseScreen() {
    const std::lock_guard lock(m_deviceMutex);
    if (!m_dataHandle) {
        return;
    }
    m_controlHandle.reset();
    m_dataHandle.reset();
}

void ScreenSession::WarnIfDenied() {
    const std::lock_guard lock(m_deviceMutex);
    const quint32 count = EntryCount();
    for (quint32 i = 0; i < count; ++i) {
        const ScreenDeviceEntry& entry = m_screenDeviceTable->entries.at(i);
        const QByteArray path = TextOf(entry.dataPath);
        if (entry.dataFound == 1 && !m_dataHandle && m_api.IsDenied(path)) {
            qCWarning(
                sessionLog,
                "You have no right to open the screen at %s; the rule in 60-kivo-screen.rules gives it: "
                "see \"With a real screen\" in README.md.",
                path.constData());
        }
    }
}

void ScreenSession::ForgetMissingPaths() {
    const std::lock_guard lock(m_deviceMutex);
    // Of what cannot be listed nothing is known.
    const std::vector<HidDeviceInfo> devices =
        m_api.Init() == 0 ? m_api.Enumerate(0, 0) : std::vector<HidDeviceInfo>();
    const std::lock_guard table(m_tableMutex);
    const quint32 count = EntryCount();
    for (quint32 i = 0; i < count; ++i) {
        ForgetIfMissing(m_screenDeviceTable->entries.at(i), devices);
    }
}

std::optional<quint16> ScreenSession::GetReleaseNumber(const SharedScreenHandle& handle) {
    if (!handle) {
        return std::nullopt;
    }
    const std::lock_guard lock(m_deviceMutex);
    for (const HidDeviceInfo& device : m_api.Enumerate(0, 0)) {
        if (device.path == handle->Path()) {
            return device.releaseNumber;
        }
    }
    return std::nullopt;
}

int ScreenSession::ExitHid() {
    const std::lock_guard lock(m_deviceMutex);
    return m_api.Exit();
}

SharedScreenHandle ScreenSession::controlHandle() const {
    const std::lock_guard lock(m_deviceMutex);
    return m_controlHandle;
}

SharedScreenHandle ScreenSession::dataHandle() const {
    const std::lock_guard lock(m_deviceMutex);
    return m_dataHandle;
}

quint32 ScreenSession::EntryCount() const {
    const std::lock_guard table(m_tableMutex);
    return std::min<quint32>(m_screenDeviceTable->count, kScreenTableCapacity);
}

ScreenDeviceEntry ScreenSession::Entry(quint32 index) const {
    const std::lock_guard table(m_tableMutex);
    return index < EntryCount() ? m_screenDeviceTable->entries.at(index) : ScreenDeviceEntry();
}

void ScreenSession::ChangeTable(const std::function<void(ScreenDeviceTable&)>& change) {
    const std::lock_guard lock(m_deviceMutex);
    const std::lock_guard table(m_tableMutex);
    change(*m_screenDeviceTable);
}

PanelSighting ScreenSession::LookAtPanel() {
    const std::lock_guard lock(m_deviceMutex);
    return m_panelNode.Look(m_screenDeviceTable->entries.front());
}

SharedScreenHandle ScreenSession::OpenForTransfer() {
    const std::lock_guard lock(m_deviceMutex);
    m_dataHandle.reset();
    return m_panelNode.Open(m_screenDeviceTable->entries.front());
}

}  // namespace kivo
