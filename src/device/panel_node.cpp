#include "device/panel_node.h"

#include <algorithm>
#include <utility>

namespace kivo {

PanelNode::PanelNode(HidApi& api, std::recursive_mutex& deviceMutex)
    : m_api(api), m_deviceMutex(deviceMutex) {}

PanelSighting PanelNode::Look(const ScreenDeviceEntry& entry) {
    const QByteArray path = TextOf(entry.dataPath);
    if (path.isEmpty()) {
        return {};
    }
    const QByteArray stamp = m_api.NodeStamp(path);
    if (!IsKnown(path, stamp) && !OpenKnown(entry, stamp)) {
        return {m_api.IsDenied(path) ? ScreenPresence::Denied : ScreenPresence::Absent, {}, path, {}};
    }
    if (!m_answer->isScreen) {
        return {ScreenPresence::Absent, {}, path, {}};
    }
    if (!m_answer->panelKey.isEmpty()) {
        m_panelKey = m_answer->panelKey;
    }
    return {ScreenPresence::Present, m_answer->panelKey, path, stamp};
}

SharedScreenHandle PanelNode::Open(const ScreenDeviceEntry& entry) {
    const QByteArray path = TextOf(entry.dataPath);
    if (path.isEmpty()) {
        return nullptr;
    }
    const auto mayTake = [this] {
        const bool isKeyKnown = !m_answer->panelKey.isEmpty() && !m_panelKey.isEmpty();
        return m_answer->isScreen && (!isKeyKnown || m_answer->panelKey == m_panelKey);
    };
    const QByteArray stamp = m_api.NodeStamp(path);
    if (IsKnown(path, stamp) && !mayTake()) {
        return nullptr;
    }
    SharedScreenHandle handle = OpenKnown(entry, stamp);
    if (!handle || !mayTake()) {
        return nullptr;
    }
    if (m_panelKey.isEmpty()) {
        m_panelKey = m_answer->panelKey;
    }
    return handle;
}

bool PanelNode::IsKnown(const QByteArray& path, const QByteArray& stamp) const {
    return m_answer && m_answer->path == path && m_answer->stamp == stamp && m_answer->doubts == m_doubts;
}

SharedScreenHandle PanelNode::OpenKnown(const ScreenDeviceEntry& entry, const QByteArray& stamp) {
    const QByteArray path = TextOf(entry.dataPath);
    std::optional<Answer> answer;
    if (IsKnown(path, stamp)) {
        answer = m_answer;
    }
    m_answer.reset();
    const quint64 doubts = m_doubts;
    SharedScreenHandle handle = ScreenHandle::Open(m_api, m_deviceMutex, path);
    if (!handle) {
        return nullptr;
    }
    if (!answer) {
        answer = Ask(entry, *handle);
        answer->stamp = stamp;
        answer->doubts = doubts;
    }
    // Another node may have come in between: then it is not known which one was opened and asked.
    if (m_api.NodeStamp(path) != stamp) {
        return nullptr;
    }
    m_answer = std::move(answer);
    return handle;
}

PanelNode::Answer PanelNode::Ask(const ScreenDeviceEntry& entry, const ScreenHandle& handle) const {
    std::vector<HidDeviceInfo> collections = handle.Identify();
    const auto isData = [&](HidDeviceInfo& collection) {
        collection.path = handle.Path();  // the filter is for the path that is opened
        return IsDataCollection(entry, collection);
    };
    Answer answer;
    answer.path = handle.Path();
    // A node that cannot tell is believed.
    answer.isScreen = collections.empty() || std::any_of(collections.begin(), collections.end(), isData);
    answer.panelKey = answer.isScreen ? m_api.PanelKey(handle.Path()) : QByteArray();
    return answer;
}

}  // namespace kivo
