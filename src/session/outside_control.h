#pragma once

// The running copy's side of the channel: takes requests of second starts and gives each its answer. Bears
// whatever comes: garbage, half messages, callers without number. Nothing here waits. GUI thread.

#include <QByteArray>
#include <QObject>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>

#include "session/outside_channel.h"
#include "session/outside_commands.h"

namespace kivo {

// How whoever asked is answered.
struct OutsideReply {
    // Whether somebody still waits: what is not taken by then must not be done later on.
    std::function<bool()> isAwaited;
    std::function<void(const OutsideAnswer& answer)> give;  // once
};

class OutsideControl : public QObject {
    Q_OBJECT

public:
    using Take = std::function<void(const OutsideCommands& commands, const OutsideReply& reply)>;

    // Callers at a time. One more takes the place of the oldest that waits for no answer.
    static constexpr int kMostCallers = 32;

    explicit OutsideControl(QObject* parent = nullptr);
    ~OutsideControl() override;

    // Listens from now on; where the channel cannot be had, a copy that ends may have it still, tries again
    // once a second. take is called from the event loop.
    void Open(Take take);
    // Answers nobody any more. Before the next copy may be the first one.
    void Close();

    bool IsListening() const { return m_listener != nullptr; }
    int CallerCount() const { return int(m_callers.size()); }

private:
    enum class Phase { Asks, Waits, IsAnswered };
    struct Caller {
        std::unique_ptr<ChannelPeer> peer;
        QByteArray bytes;
        Phase phase = Phase::Asks;
    };

    void Listen();
    void Welcome(std::unique_ptr<ChannelPeer> peer);
    void Read(quint64 number, const QByteArray& bytes);
    void Ask(quint64 number);
    void Dismiss(quint64 number);
    bool IsAwaited(quint64 number);
    void Answer(quint64 number, const OutsideAnswer& answer);

    Take m_take;
    std::unique_ptr<ChannelListener> m_listener;
    QTimer m_tryAgain;
    QString m_trouble;                    // told last
    std::map<quint64, Caller> m_callers;  // by number, the oldest first
    quint64 m_lastNumber = 0;
};

}  // namespace kivo
