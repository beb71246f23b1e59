#pragma once

#include <QDate>
#include <QTime>

namespace kivo {

struct LocalTime {
    QDate date;
    QTime time;  // whole seconds
};

// The system's clock in the system's time zone; a zone that is changed while the program runs counts at once.
// Asked several times a round, so it makes one call where Qt's own clock converts there and back. Any thread.
LocalTime ReadLocalTime();

}  // namespace kivo
