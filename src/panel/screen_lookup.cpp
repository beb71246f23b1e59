#include "panel/screen_lookup.h"

#include <future>
#include <utility>

#include "device/screen_session.h"
#include "panel/device_queue.h"

namespace kivo {

std::optional<bool> IsScreenPluggedIn(std::function<std::unique_ptr<HidApi>()> makeHid,
                                      std::chrono::milliseconds longest) {
    auto isThere = std::make_shared<std::promise<bool>>();
    std::future<bool> answer = isThere->get_future();
    auto thread = std::make_unique<DeviceQueue>();
    thread->Do([isThere, makeHid = std::move(makeHid)] {
        const std::unique_ptr<HidApi> hid = makeHid();
        ScreenSession session(*hid);
        session.InitDeviceTable();
        session.EnumerateScreens();
        isThere->set_value(session.Entry(0).dataFound != 0);
    });
    if (answer.wait_for(longest) != std::future_status::ready) {
        // Deliberate: never destroyed, which would wait for the listing.
        static_cast<void>(thread.release());
        return std::nullopt;
    }
    return answer.get();
}

}  // namespace kivo
