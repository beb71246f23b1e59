#pragma once

// The steps by which a session comes up, as the program takes them.

#include "../panel/frame_pictures.h"
#include "compose/theme_state.h"
#include "config/default_profile.h"
#include "config/settings_file.h"
#include "panel/live_session.h"
#include "virtualscreen/virtual_hid_api.h"

namespace kivo::test {

// How long a test waits for a session that does its work.
inline constexpr int kPatienceMs = 20000;

// Short, for tests that do not look at the pause itself.
inline const LiveSession::Options kShortPauses{LiveSession::PanelKind::Real, std::chrono::milliseconds(20),
                                               ReadFramePicture};
inline const LiveSession::Options kSoftwarePanel{LiveSession::PanelKind::Software,
                                                 std::chrono::milliseconds(20), ReadFramePicture};

// What the settings hold, after default files were seeded from applicationDir.
inline ScreenState LoadState(const QString& applicationDir, InterfaceLanguage language) {
    SeedDefaultProfile(applicationDir);
    ThemeState themes = LoadThemeState(language);
    const SlotTable slotTable = LoadSlotTable();
    TickPlacedItems(themes, slotTable);
    return MakeScreenState(themes, slotTable, LoadCurRectId(), language);
}

inline ScreenState InPortrait(ScreenState state) {
    state.orientation = Orientation::Portrait;
    state.layout = FactoryThemeLayout(state.theme, state.orientation, InterfaceLanguage::English);
    return state;
}

// How many whole frames the panel has taken.
inline quint64 Frames(const VirtualHidApi& panel) {
    return panel.State().counts.frames;
}

inline void Open(LiveSession& session, const ScreenState& state) {
    session.SetLoaded(state);
    session.OpenScreen();
}

// Uploads the loaded state as a first frame and refreshes when that is over.
inline void StartWithFrame(LiveSession& session, const ScreenState& state) {
    Open(session, state);
    session.StartUpload();
    session.StartRefresh();
}

}  // namespace kivo::test
