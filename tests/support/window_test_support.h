#pragma once

// A whole main window over a software panel, in a home of its own, and a person's hands on it.

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>
#include <functional>
#include <memory>

#include "../config/forget_mark.h"
#include "compose/frame_composer.h"
#include "compose/panel_text.h"
#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "config/folders.h"
#include "config/settings_file.h"
#include "editor/zoom_widget.h"
#include "panel/frame_store.h"
#include "panel/panel_memory.h"
#include "pictures/layout_picture.h"
#include "pictures/picture_reader.h"
#include "resources/resources.h"
#include "support/built_paths.h"
#include "support/forwarding_hid_api.h"
#include "support/test_program.h"
#include "support/told_away_watch.h"
#include "virtualscreen/virtual_hid_api.h"
#include "virtualscreen/virtual_hotplug.h"
#include "widgets/window_style.h"
#include "window/language.h"
#include "window/main_window.h"

namespace kivo::test {

inline const QString kBin = ProgramFolder();

// No energy library, wherever the machine on which the tests run has one.
inline void UninstallEnergyLibrary() {
    qputenv("IPG_Dir", QFile::encodeName(QDir::home().filePath(QStringLiteral("no sensors"))));
    qputenv("IPG_Ver", "3.6");
}

// Once a test program.
inline void PrepareApplication() {
    UninstallEnergyLibrary();
    InitResources();
    InstallFontSubstitutes();
    QFont font(FontFamily());
    font.setPointSize(12);
    QApplication::setFont(font);
    ApplyWindowStyle(*qApp);
    QApplication::setQuitOnLastWindowClosed(false);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}

// Nothing is left of an earlier run: the next window is a new user's.
inline void ForgetEverything() {
    QDir(SettingsFolder()).removeRecursively();
    QDir(WorkingFolder()).removeRecursively();
    ForgetMark();
    configFolderCreated = 0;
}

// What lies behind the texts of a state, with what stands in where its own picture cannot be shown.
inline PanelBackground ExpectedBackground(const ScreenState& state) {
    LayoutPicture shown;
    const QStringList paths = PicturePaths(state);
    for (const QString& path : paths) {
        shown.image = LoadPicture(path);
        if (!shown.image.isNull()) {
            break;
        }
        shown.failure = PictureFailure::Missing;
    }
    SkinCache skins;
    return ComposeBackground(DrawnState(state, shown.IsStandIn()), shown.image, skins);
}

// As after an earlier run in that language, which brought the look of the settings to the panel.
inline void RememberPanel(InterfaceLanguage language = InterfaceLanguage::English) {
    QTranslator translator;
    InstallTranslation(translator, language, kBin);
    ThemeState themes = LoadThemeState(language);
    const SlotTable slotTable = LoadSlotTable();
    TickPlacedItems(themes, slotTable);
    const ScreenState state = MakeScreenState(themes, slotTable, LoadCurRectId(), language);
    const SharedFrame frame = MakePanelFrame(state, ExpectedBackground(state));
    FrameStore().Save(frame);
    PanelMemory().Write({VirtualHidApi().PanelKey(VirtualHidApi().DataPath()), frame->id});
}

// As after an earlier run: settings and marker are there, and the panel has its frame.
inline void SetUpProfile() {
    ForgetEverything();
    SeedDefaultProfile(kBin);
    MarkInitialized();
    configFolderCreated = 0;
    RememberPanel();
}

// A machine without sensors.
class NoSensors final : public PackageSensors {
public:
    bool Load() override { return false; }
    QString ErrorString() const override { return QStringLiteral("none"); }
    void ReadSample() override {}
    SensorReadings Readings() override { return {}; }
    std::optional<PackageNumbers> Numbers() override { return std::nullopt; }
};

inline std::unique_ptr<PackageSensors> MakeNoSensors() {
    return std::make_unique<NoSensors>();
}

// Whether the window is told of screens that come and go.
enum class Plugging { Untold, Told };

struct Desk {
    explicit Desk(const QLocale& locale = QLocale(QStringLiteral("en_US")), bool hasTray = true,
                  Plugging plugging = Plugging::Untold)
        : startWindow([this, locale, hasTray, plugging] {
              MainWindow::Parts parts{
                  wire, nullptr, kBin, LiveSession::PanelKind::Real, locale, [hasTray] { return hasTray; }};
              if (!hasFileDialog) {
                  parts.choosePictures = [this](QWidget*) { return PicturesToChoose(); };
                  parts.chooseLayoutFile = [this](QWidget*, MainWindow::LayoutFile, const QString& proposed) {
                      proposedLayoutFile = proposed;
                      return layoutFile;
                  };
              }
              parts.makePictureReaders = [this] { return pictureReaders; };
              if (plugging == Plugging::Told) {
                  parts.makeHotplug = [this] { return std::make_unique<VirtualHotplug>(panel); };
              }
              parts.timeAsleep = [this] { return timeAsleep; };
              parts.makeAwayWatch = [this] {
                  auto watch = std::make_unique<ToldAwayWatch>();
                  away = watch.get();
                  return watch;
              };
              parts.localTime = [this] { return localTime; };
              parts.restsAfter = restsAfter;
              parts.makeSensors = MakeNoSensors;
              window = std::make_unique<MainWindow>(parts);
          }) {
        startWindow();
    }
    ~Desk() { Close(); }

    void Close() {
        if (window) {
            QVERIFY(window->Stop());
            window.reset();
        }
    }

    // The program ends and is started again; the panel goes on showing what it has.
    void Restart() {
        Close();
        startWindow();
    }

    // Up and running, and seen.
    void Show() {
        window->show();
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }

    template <typename Widget = QWidget>
    Widget* Find(const char* name) const {
        auto* widget = window->findChild<Widget*>(QString::fromLatin1(name));
        if (widget == nullptr) {
            qFatal("The window has no %s.", name);
        }
        return widget;
    }
    ZoomWidget* Editor() const { return Find<ZoomWidget>("zoomwidget"); }

    void Click(const char* name) const { QTest::mouseClick(Find<QWidget>(name), Qt::LeftButton); }
    void ClickCheck(int number) const {
        auto* box = Find<QCheckBox>(qPrintable(QStringLiteral("check%1").arg(number)));
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
    }
    void ClickRow(const char* list, int row) const {
        auto* widget = Find<QListWidget>(list);
        QListWidgetItem* item = widget->item(row);
        widget->scrollToItem(item);
        QTest::mouseClick(widget->viewport(), Qt::LeftButton, Qt::NoModifier,
                          widget->visualItemRect(item).center());
        WaitForPictures();
    }
    // Until the preview shows the picture that is chosen: it is read beside the window.
    void WaitForPictures() const {
        for (int time = 0; time < 2; ++time) {
            Editor()->grab();  // asks for what it shows, then for what stands in for it
            // Asked once for each look: composing may ask for a picture at any time.
            QVERIFY(QTest::qWaitFor([this] { return !window->Pictures().IsBusy(); }, 20000));
        }
    }
    // Presses apply and waits until the dialog is gone.
    void Apply() const { Click("btnApply"); }

    VirtualHidApi panel;
    WireTap wire{panel};
    // In the file dialog; none: cancelled.
    QStringList PicturesToChoose() const {
        return pictureToChoose.isEmpty() ? QStringList() : pictureToChoose.split(QLatin1Char('\n'));
    }
    QString pictureToChoose;     // several of them a line each
    QString layoutFile;          // in the file dialog of layouts; empty: cancelled
    QString proposedLayoutFile;  // what that dialog was opened with
    bool hasFileDialog = false;  // the program's own; from the next start on
    PictureSource::Readers pictureReaders = FileReaders();
    std::chrono::nanoseconds timeAsleep{0};                         // of the machine
    std::chrono::milliseconds restsAfter = WindowRest::kUsualWait;  // from the next start on
    ToldAwayWatch* away = nullptr;                                  // the window's
    QTime localTime{12, 0};  // as the window has it; the panel shows the machine's
    std::function<void()> startWindow;
    std::unique_ptr<MainWindow> window;
};

inline QRect PlaceInWindow(const QWidget& widget) {
    return {widget.mapTo(widget.window(), QPoint()), widget.size()};
}

// Counts what a widget was told.
class EventCounter : public QObject {
public:
    EventCounter(QObject& watched, QEvent::Type type) : m_type(type) { watched.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        count += event->type() == m_type ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }

private:
    const QEvent::Type m_type;
};

// Runs act on the next modal dialog as soon as it is there; act has to close it.
template <typename Dialog = QDialog>
void OnNextDialog(QObject* context, std::function<void(Dialog*)> act) {
    auto* timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, context, [timer, act] {
        if (auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget())) {
            timer->stop();
            timer->deleteLater();
            act(dialog);
        }
    });
    timer->start(5);
}

// What the panel has to show of a state with these texts, upright.
inline QImage ExpectedPanel(const ScreenState& state, const ItemTexts& texts) {
    return ComposeFrame(state, ExpectedBackground(state), texts);
}

inline int PixelsThatDiffer(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) {
        return -1;
    }
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            count += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
        }
    }
    return count;
}

}  // namespace kivo::test
