#pragma once

// What the real panel took, over the program's end: "whole.state", beside "whole.png". No settings are in it.
// A software panel forgets with its process, so nothing of it is kept. One thread at a time.

#include <QByteArray>
#include <QString>
#include <optional>

namespace kivo {

struct RememberedPanel {
    QByteArray panelKey;  // see HidApi::PanelKey; empty: not known
    QByteArray frameId;   // of the frame it took whole, see PanelFrame
};

class PanelMemory {
public:
    // path is the file; by default WorkingFolder() followed by "/whole.state".
    explicit PanelMemory(QString path = DefaultPath());
    static QString DefaultPath();

    // Nothing where there is no such file, or it is no whole one.
    std::optional<RememberedPanel> Read() const;
    // Replaces the file in one step. What cannot be written gives one log line; the next start then sends a
    // frame more than it had to.
    void Write(const RememberedPanel& panel) const;
    // Before a frame begins: cut off half-way, it must not pass for the one that was there.
    void Forget() const;

private:
    const QString m_path;
};

// Version 1.0 kept an empty file "whole.pending" beside whole.png while it owed the panel a frame. Removes
// it; whether it was there. Then what is remembered is older than what that version has sent, and not to be
// believed.
bool RemoveFormerMark();

}  // namespace kivo
