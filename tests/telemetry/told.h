#pragma once

#include <QObject>
#include <QVector>

#include <memory>
#include <mutex>

namespace kivo::test {

// What a worker's signal told, collected on that worker's thread. (QSignalSpy would do so without a lock.)
template <typename Value>
class Told {
public:
    // make turns the signal's arguments into a Value.
    template <typename Sender, typename Signal, typename Make>
    Told(Sender& sender, Signal signal, Make make) {
        Add(sender, signal, make);
    }

    // What another signal tells is collected too.
    template <typename Sender, typename Signal, typename Make>
    void Add(Sender& sender, Signal signal, Make make) {
        QObject::connect(
            &sender, signal, &sender,
            [list = m_list, make](auto... arguments) {
                const std::lock_guard<std::mutex> lock(list->mutex);
                list->values.append(make(arguments...));
            },
            Qt::DirectConnection);
    }

    int count() const { return values().size(); }
    Value at(int index) const { return values().at(index); }

private:
    struct List {
        std::mutex mutex;
        QVector<Value> values;
    };

    QVector<Value> values() const {
        const std::lock_guard<std::mutex> lock(m_list->mutex);
        QVector<Value> copy;
        for (const Value& value : qAsConst(m_list->values)) {
            copy.append(value);
        }
        return copy;
    }

    const std::shared_ptr<List> m_list = std::make_shared<List>();
};

}  // namespace kivo::test
