#pragma once

// Finds the screen among the HID devices and keeps what the whole process knows of it: the device table, the
// control handle and the data handle. One object at a time, handed on by reference. Every
// function may be called on any thread; one mutex covers initialising, enumerating, opening and closing,
// never a write, so that a screen that hangs does not stop the window. Reading the table needs a mutex of its
// own only: what other devices come and go is not held up by an opening that hangs.

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "device/hid_api.h"
#include "device/panel_node.h"
#include "device/screen_device_table.h"
#include "device/screen_handle.h"

namespace kivo {

class ScreenSession {
public:
    // The interface must outlive the session, and the session every handle it gave out.
    explicit ScreenSession(HidApi& api);
    ~ScreenSession();
    ScreenSession(const ScreenSession&) = delete;
    ScreenSession& operator=(const ScreenSession&) = delete;

    // Forgets every path and puts the built-in values into the table.
    void InitDeviceTable();

    // Looks through all HID devices and notes the paths of the screens: the last one listed wins, and the
    // paths of a screen that is absent now stay. 0, or -1 when the HID library could not be initialised.
    int EnumerateScreens();

    // Opens both interfaces of every found entry of exactly this name (bytes compared). What cannot be opened
    // is null afterwards; nothing is logged.
    void OpenScreenByName(const QByteArray& name);

    // Closes both handles, but only if the data handle is open. Deliberate: every transfer closes the data
    // handle, so the control handle normally stays open, replaced at the next opening.
    void CloseScreen();

    // As OpenScreenByName for the entries with these ids; gives the data handle as it is afterwards.
    SharedScreenHandle OpenScreenById(quint32 vendorId, quint32 productId);

    // One line for a screen that was found but could not be opened for want of the right to: for a person who
    // wonders why it stays dark. To be called after an opening that somebody waits for.
    void WarnIfDenied();

    // Empties the paths of every entry whose collection is not listed under it any more, which is not found
    // then. Where paths are numbers that the system gives out again, one may soon be another device's.
    void ForgetMissingPaths();

    // Release number (binary coded decimal) of the device a handle was opened on, from a fresh list of the
    // devices; none for a null handle or a device that is gone.
    std::optional<quint16> GetReleaseNumber(const SharedScreenHandle& handle);

    // Ends the HID library; its result. Not part of a normal end of the program.
    int ExitHid();

    // The open handles of the session, null when closed. Whoever holds one may write on it while another
    // thread closes or replaces the session's.
    SharedScreenHandle controlHandle() const;
    SharedScreenHandle dataHandle() const;

    quint32 EntryCount() const;
    // A copy of one record; a default one for an index out of range.
    ScreenDeviceEntry Entry(quint32 index) const;
    // Changes the table under the session's mutexes. The function may call the session again.
    void ChangeTable(const std::function<void(ScreenDeviceTable&)>& change);

    // Whether the screen of the first entry is there and may be opened. For worker threads: it waits for an
    // opening that hangs. Opens the data path only when its node is in doubt (PanelNode), and from then on
    // transfers go to the panel that was seen here.
    PanelSighting LookAtPanel();

    // The node at the data path may be another one, or a dead one: the next look, or the next transfer, asks
    // it. After an arrival, a removal, a write that failed. Never waits.
    void DoubtNode() { m_panelNode.Doubt(); }

    // The start of a transfer: closes the session's data handle and opens the data path of the first entry as
    // a handle of the caller's own, so that two transfers at once never close each other's. Null when it
    // cannot, when the node there is not the screen's any more, and when it is another panel's than the one
    // last seen by LookAtPanel: what was drawn for one never goes to another.
    SharedScreenHandle OpenForTransfer();

private:
    void OpenEntry(const ScreenDeviceEntry& entry);

    HidApi& m_api;
    // Recursive: the last owner of a handle may let go of it while a session call holds the mutex.
    mutable std::recursive_mutex m_deviceMutex;
    // Taken after the other one, never held over a call of the interface. Recursive for ChangeTable.
    mutable std::recursive_mutex m_tableMutex;
    std::unique_ptr<ScreenDeviceTable> m_screenDeviceTable;  // written under both, read under either
    PanelNode m_panelNode;
    SharedScreenHandle m_controlHandle;
    SharedScreenHandle m_dataHandle;
};

}  // namespace kivo
