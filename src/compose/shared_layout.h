#pragma once

// A layout as one file that people hand to one another: how it looks, and its picture. The file is JSON, so
// that a person can read what it asks for. It comes from anywhere, so reading takes nothing on trust. Pure;
// any thread.

#include <QByteArray>
#include <QString>
#include <optional>

#include "compose/screen_state.h"

namespace kivo {

// How such a file's name ends, without the dot.
inline constexpr const char* kSharedLayoutSuffix = "kivolayout";

// In bytes: a file, and the picture in it. The largest picture that is kept for the panel, written without
// any loss, fits both.
constexpr qint64 kLargestSharedLayout = 24LL * 1024 * 1024;
constexpr qint64 kLargestSharedPicture = 17LL * 1024 * 1024;

struct SharedLayout {
    // What is shown, as SharedStateOf leaves it. The picture is one of the built-in ones, or empty where it
    // comes along.
    ScreenState state;
    QByteArray picture;   // a picture file, as it was in the file: whether it is one has not been looked at
    QString pictureName;  // what people call it; never a path
};

// What of a state is shared: nothing that belongs to this program's user or language, and nothing that the
// picture does not depend on. So texts and captions are empty, and the picture of the layout's own is one of
// the built-in ones or empty.
ScreenState SharedStateOf(const ScreenState& state);

// The file. shared.state is as SharedStateOf leaves it.
QByteArray WriteSharedLayout(const SharedLayout& shared);

enum class SharedLayoutFault {
    None,
    NoLayout,  // another kind of file, or a damaged one
    Newer,     // of a later version of the format
    BadValue,  // a value of the wrong kind, out of its range or too long
};

struct SharedLayoutReading {
    std::optional<SharedLayout> layout;
    SharedLayoutFault fault = SharedLayoutFault::None;
    QString reason;  // one sentence in English
};

// What such a file holds. A value that is missing is the factory's; one that is there and makes no sense
// makes the whole file useless, so that nobody gets half of what was sent. What is not known is passed over.
SharedLayoutReading ReadSharedLayout(const QByteArray& bytes);

}  // namespace kivo
