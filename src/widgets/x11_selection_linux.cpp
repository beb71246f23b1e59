#include "widgets/x11_selection_linux.h"

#include <xcb/xcb.h>
#include <cstdlib>
#include <memory>

namespace kivo {

namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

}  // namespace

bool IsScreenSelectionOwned(const QByteArray& prefix) {
    int screen = 0;
    const std::unique_ptr<xcb_connection_t, Disconnect> connection(xcb_connect(nullptr, &screen));
    if (xcb_connection_has_error(connection.get()) != 0) {
        return false;
    }
    const QByteArray name = prefix + QByteArray::number(screen);
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> selection(xcb_intern_atom_reply(
        connection.get(), xcb_intern_atom(connection.get(), 1, uint16_t(name.size()), name.constData()),
        nullptr));
    if (!selection || selection->atom == XCB_ATOM_NONE) {
        return false;
    }
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(xcb_get_selection_owner_reply(
        connection.get(), xcb_get_selection_owner(connection.get(), selection->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

}  // namespace kivo
