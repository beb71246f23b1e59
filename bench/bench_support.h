#pragma once

// What the benchmarks share: an application without a display, a device that swallows reports, states to
// draw.

#include <QGuiApplication>
#include <QTemporaryDir>
#include <array>

#include "compose/panel_text.h"
#include "compose/theme_state.h"
#include "device/hid_api.h"
#include "device/screen_session.h"
#include "device/transfers.h"
#include "resources/resources.h"

namespace kivo::bench {

// Takes every report and looks at none: what remains is the program's own work.
class SwallowingHidApi final : public HidApi {
public:
    int Init() override { return 0; }
    std::vector<HidDeviceInfo> Enumerate(quint16, quint16) override {
        HidDeviceInfo info;
        info.path = "swallow";
        info.vendorId = 0x04D9;
        info.productId = 0xFD01;
        info.usagePage = 0xFFA0;
        info.usage = 1;
        return {info};
    }
    HidHandle* OpenPath(const QByteArray&) override { return new HidHandle; }
    int Write(HidHandle*, const quint8*, std::size_t length) override {
        ++reports;
        return int(length);
    }
    int SendFeatureReport(HidHandle*, const quint8*, std::size_t length) override { return int(length); }
    void Close(HidHandle* handle) override { delete handle; }
    int Exit() override { return 0; }

    quint64 reports = 0;
};

struct Link {
    SwallowingHidApi hid;
    ScreenSession session{hid};
    Transfers transfers{session};

    Link() {
        session.InitDeviceTable();
        session.EnumerateScreens();
    }
};

inline ScreenState ThemeOf(Theme theme, Orientation orientation) {
    ThemeState themes = FactoryThemeState(InterfaceLanguage::Chinese);
    themes.theme = int(theme);
    themes.orientation = orientation;
    return MakeScreenState(themes, FactorySlotTable(), 2, InterfaceLanguage::Chinese);
}

// The custom layout of the factory with a free text.
inline ScreenState CustomOf(const QString& freeText, int textRow, Orientation orientation) {
    ThemeState themes = FactoryThemeState(InterfaceLanguage::Chinese);
    themes.mode = 1;
    themes.orientation = orientation;
    themes.layouts[size_t(CustomLayoutIndex(0))].freeText = freeText;
    return MakeScreenState(themes, FactorySlotTable(), textRow, InterfaceLanguage::Chinese);
}

inline void Prepare() {
    InitResources();
    InstallFontSubstitutes();
}

}  // namespace kivo::bench

// main with an application object around the benchmarks.
#define KIVO_BENCHMARK_MAIN()                                     \
    int main(int argc, char** argv) {                             \
        qputenv("QT_QPA_PLATFORM", "offscreen");                  \
        const QGuiApplication application(argc, argv);            \
        kivo::bench::Prepare();                                   \
        benchmark::Initialize(&argc, argv);                       \
        if (benchmark::ReportUnrecognizedArguments(argc, argv)) { \
            return 1;                                             \
        }                                                         \
        benchmark::RunSpecifiedBenchmarks();                      \
        return 0;                                                 \
    }
