#include "device/screen_change.h"

#include <QLoggingCategory>
#include <vector>

#include "device/interface_name.h"
#include "device/screen_session.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(changeLog, "kivo.device")

class Change {
public:
    Change(ScreenSession& session, const DeviceChange& change, bool suspended, ArrivalPath pathFrom)
        : m_session(session),
          m_name(change.name),
          m_interface(ParseInterfaceName(change.name)),
          m_suspended(suspended),
          m_pathFrom(pathFrom) {}

    const InterfaceName& Interface() const { return m_interface; }
    const ScreenChangeOutcome& Outcome() const { return m_outcome; }

    void Arrive(quint32 index) {
        if (m_interface.matched && m_pathFrom == ArrivalPath::Name) {
            m_session.ChangeTable([this, index](ScreenDeviceTable& table) {
                SetText(table.entries.at(index).dataPath, InterfacePath(m_name));
                table.entries.at(index).dataFound = 1;
            });
        }
        // Deliberate: while the data interface is missing, another one of the screen is not even looked at.
        if (!m_interface.matched && !IsDataFound(index)) {
            return;
        }
        if (m_pathFrom == ArrivalPath::Enumeration) {
            m_session.EnumerateScreens();
        }
        if (!m_suspended && IsDataFound(index)) {
            Open();
        }
    }

    // before: the entry as it was when the change came.
    void Leave(quint32 index, const ScreenDeviceEntry& before) {
        if (m_interface.matched) {
            LeaveData(index, before);
            return;
        }
        // Deliberate: another interface does nothing while the data interface is there, and closes once more
        // after it.
        if (before.dataFound == 1) {
            return;
        }
        if (m_pathFrom == ArrivalPath::Enumeration) {
            m_session.ForgetMissingPaths();
        }
        Close();
    }

private:
    bool IsDataFound(quint32 index) const { return m_session.Entry(index).dataFound == 1; }

    void LeaveData(quint32 index, const ScreenDeviceEntry& before) {
        if (IsStillThere(index, before)) {
            return;  // it was another screen than the one that is used
        }
        // Another one that is still there takes its place.
        m_session.EnumerateScreens();
        const bool isThereAnother = IsDataFound(index);
        if (before.dataFound == 0 && !isThereAnother) {
            return;
        }
        Close();
        if (isThereAnother && !m_suspended) {
            Open();
        }
    }

    // Whether the removal leaves the entry's screen where it is; if not, the entry is cleared.
    bool IsStillThere(quint32 index, const ScreenDeviceEntry& before) {
        if (m_pathFrom == ArrivalPath::Enumeration) {
            // The name does not tell which of two screens it was; the list does.
            m_session.ForgetMissingPaths();
            const ScreenDeviceEntry left = m_session.Entry(index);
            return left.dataFound == 1 && left.dataPath == before.dataPath;
        }
        // The list gives paths in another letter case than the notification.
        const bool isNamed = InterfacePath(m_name).compare(TextOf(before.dataPath), Qt::CaseInsensitive) == 0;
        if (before.dataFound == 1 && isNamed) {
            m_session.ChangeTable(
                [index](ScreenDeviceTable& table) { table.entries.at(index).dataFound = 0; });
            return false;
        }
        return true;
    }

    void Open() {
        // Deliberate: the name as it stands, not the window's title.
        m_session.OpenScreenByName(kScreenName);
        if (m_interface.matched) {
            m_session.WarnIfDenied();
            m_outcome.dataArrived = true;
        }
    }

    void Close() {
        if (!m_suspended) {
            m_session.CloseScreen();
            m_outcome.closed = true;
        }
    }

    ScreenSession& m_session;
    const QString& m_name;
    const InterfaceName m_interface;
    const bool m_suspended;
    const ArrivalPath m_pathFrom;
    ScreenChangeOutcome m_outcome;
};

}  // namespace

ScreenChangeOutcome ApplyScreenChange(ScreenSession& session, const DeviceChange& change, bool suspended,
                                      ArrivalPath pathFrom) {
    Change applied(session, change, suspended, pathFrom);
    const InterfaceName& changed = applied.Interface();
    if (changed.matched) {
        qCDebug(changeLog, "vid = %d, pid = %d\n", changed.vendorId, changed.productId);
    }
    std::vector<ScreenDeviceEntry> entries;
    const quint32 count = session.EntryCount();
    for (quint32 index = 0; index < count; ++index) {
        entries.push_back(session.Entry(index));
    }
    for (quint32 index = 0; index < entries.size(); ++index) {
        const ScreenDeviceEntry& entry = entries[index];
        if (entry.vendorId != changed.vendorId || entry.productId != changed.productId) {
            continue;
        }
        session.DoubtNode();
        if (change.arrived) {
            applied.Arrive(index);
        } else {
            applied.Leave(index, entry);
        }
    }
    return applied.Outcome();
}

}  // namespace kivo
