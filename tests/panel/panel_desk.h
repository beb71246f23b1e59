#pragma once

// A software panel with everything before it, down to the sender; and a clock that stands still.

#include "../compose/compose_test_support.h"
#include "frame_pictures.h"
#include "panel/frame_store.h"
#include "panel/panel_memory.h"
#include "panel/panel_sender.h"
#include "pictures/picture_reader.h"
#include "virtualscreen/virtual_hid_api.h"

namespace kivo::test {

enum class Memory { Kept, None };

// What one run of the program has; the panel and the files stay for the next.
struct Run {
    Run(HidApi& hid, const QString& folder, Memory kind, ItemTexts& values)
        : session(hid),
          frames(folder + QStringLiteral("/whole.png")),
          memory(folder + QStringLiteral("/whole.state")),
          texts(values),
          sender({session, transfers, frames, kind == Memory::Kept ? &memory : nullptr,
                  [this](int item) { return texts[size_t(item)]; },
                  [this](const ScreenState& state) { return picture(state); }, [this] { return now.load(); },
                  [this] {
                      ++changes;
                      sender.Status();  // nobody holds a lock of the sender's
                  }}) {
        session.InitDeviceTable();
        session.EnumerateScreens();
    }
    // A clock that never begins at 0.
    std::atomic<std::chrono::milliseconds> now{std::chrono::hours(5)};
    std::atomic<int> changes{0};
    std::function<std::optional<FramePicture>(const ScreenState& state)> picture = ReadFramePicture;
    ScreenSession session;
    Transfers transfers{session};
    FrameStore frames;
    PanelMemory memory;
    ItemTexts& texts;
    PanelSender sender;

    bool Apply(Theme theme, Orientation orientation = Orientation::Landscape) {
        sender.SetChosen(ThemeScreen(theme, orientation));
        return sender.ComposeWholeFrame();
    }
    void SendTexts() {
        for (int item = 0; item < kLiveValueCount; ++item) {
            sender.RenderLiveItem(texts[size_t(item)], item);
        }
    }
    // A whole round of the refresh thread.
    bool Round() {
        const bool isThere = sender.BeginRound();
        if (isThere) {
            SendTexts();
        }
        return isThere;
    }
    PanelCondition Condition() const { return sender.Status().condition; }
    Theme AppliedTheme() const { return sender.Applied().theme; }
};

struct Desk {
    VirtualHidApi panel;
    QTemporaryDir folder;
    ItemTexts texts{QStringLiteral("45℃"),
                    QStringLiteral("37%"),
                    QStringLiteral("20%"),
                    QStringLiteral("18:46"),
                    QStringLiteral("15w"),
                    QStringLiteral("2026.11.21"),
                    QStringLiteral("1000"),
                    QString(),
                    QString()};
    std::unique_ptr<Run> run;

    explicit Desk(Memory memory = Memory::Kept) { StartRun(memory); }
    ~Desk() { run.reset(); }
    Q_DISABLE_COPY(Desk)

    // As the program starts with this theme as the loaded one.
    void StartRun(Memory memory = Memory::Kept, Theme theme = Theme::Default,
                  Orientation orientation = Orientation::Landscape) {
        run.reset();
        run = std::make_unique<Run>(panel, folder.path(), memory, texts);
        run->sender.SetLoaded(ThemeScreen(theme, orientation));
    }

    PanelCounts Counts() const { return panel.State().counts; }
    QImage Picture() const { return panel.State().image.copy(); }
    QString BackgroundPath() const { return folder.filePath(QStringLiteral("whole.png")); }
    QByteArray SavedBackground() const {
        QFile file(BackgroundPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    // What the panel shows, against a whole frame of this state with the texts of now; its first difference.
    QRect DifferenceTo(const ScreenState& state) const {
        SkinCache skins;
        const PanelBackground background = ComposeBackground(state, LoadPicture(PicturePath(state)), skins);
        return ChangedRect(panel.State().UprightImage().convertToFormat(QImage::Format_RGB16),
                           ComposeFrame(state, background, texts));
    }
    // The panel goes, and comes back after that change.
    void Replug(VirtualHidApi::NodeNumbers numbers = VirtualHidApi::NodeNumbers::Same,
                const QByteArray& key = QByteArray()) {
        panel.Unplug();
        if (!key.isEmpty()) {
            panel.SetPanelKey(key);
        }
        panel.Plug(numbers);
        run->session.EnumerateScreens();
    }
};

}  // namespace kivo::test
