#pragma once

// All that an upload needs, for the tests of its thread and of the dialog that waits for it.

#include <QSemaphore>
#include <QTemporaryDir>
#include <memory>

#include "compose/theme_catalogue.h"
#include "frame_pictures.h"
#include "panel/frame_store.h"
#include "panel/nimb_process_thread.h"
#include "panel/panel_sender.h"
#include "telemetry/metric_snapshot.h"
#include "virtualscreen/virtual_hid_api.h"

namespace kivo::test {

// A counter that always says the same load.
class SteadyCounter final : public CpuCounter {
public:
    CpuRawSample Collect() override { return {}; }
    double Calculate(const CpuRawSample&, const CpuRawSample&) override { return 42.9; }
};

struct UploadBench {
    VirtualHidApi panel;
    ScreenSession session{panel};
    Transfers transfers{session};
    MetricSnapshot snapshot{InterfaceLanguage::English};
    QTemporaryDir folder;
    FrameStore frames{folder.filePath(QStringLiteral("whole.png"))};
    QSemaphore begun;  // by an upload that goes on to its pause
    PanelSender sender{{session, transfers, frames, nullptr,
                        [this](int item) { return snapshot.GetValueText(item); }, ReadFramePicture}};

    UploadBench() {
        sender.SetLoaded(StateOf(Orientation::Landscape));
        session.InitDeviceTable();
        session.EnumerateScreens();
    }
    std::unique_ptr<NimbProcessThread> Upload(
        std::chrono::milliseconds pause = std::chrono::milliseconds(20)) {
        return std::make_unique<NimbProcessThread>(
            NimbProcessThread::Parts{sender, snapshot, pause, [this] {
                                         begun.release();
                                         return std::make_unique<SteadyCounter>();
                                     }});
    }
    static ScreenState StateOf(Orientation orientation) {
        ScreenState state;
        state.orientation = orientation;
        state.language = InterfaceLanguage::English;
        state.layout = FactoryThemeLayout(state.theme, state.orientation, state.language);
        return state;
    }
};

}  // namespace kivo::test
