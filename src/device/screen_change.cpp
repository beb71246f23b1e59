#include "device/screen_change.h"

#include <QLoggingCategory>

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
        if (m_suspended || !IsDataFound(index)) {
            return;
        }
        // Deliberate: the name as it stands, not the window's title.
        m_session.OpenScreenByName(kScreenName);
        if (m_interface.matched) {
            m_session.WarnIfDenied();
            m_outcome.dataArrived = true;
        }
    }

    void Leave(quint32 index) {
        // Deliberate: the data interface that is gone already does nothing; another one does nothing while
        // the data interface is there, and closes once more after it.
        if (m_interface.matched != IsDataFound(index)) {
            return;
        }
        if (m_interface.matched) {
            m_session.ChangeTable(
                [index](ScreenDeviceTable& table) { table.entries.at(index).dataFound = 0; });
        }
        if (m_pathFrom == ArrivalPath::Enumeration) {
            m_session.ForgetMissingDataPaths();
        }
        if (!m_suspended) {
            m_session.CloseScreen();
            m_outcome.closed = true;
        }
    }

private:
    bool IsDataFound(quint32 index) const { return m_session.Entry(index).dataFound == 1; }

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
    const quint32 count = session.EntryCount();
    for (quint32 index = 0; index < count; ++index) {
        const ScreenDeviceEntry entry = session.Entry(index);
        if (entry.vendorId != changed.vendorId || entry.productId != changed.productId) {
            continue;
        }
        if (change.arrived) {
            applied.Arrive(index);
        } else {
            applied.Leave(index);
        }
    }
    return applied.Outcome();
}

}  // namespace kivo
