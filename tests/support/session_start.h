#pragma once

// The steps by which a session comes up, as the program takes them.

#include "../panel/frame_pictures.h"
#include "compose/theme_state.h"
#include "config/default_profile.h"
#include "config/settings_file.h"
#include "panel/live_session.h"

namespace kivo::test {

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
