// Pictures of the window to look at: every page, state and dialog, in a home of its own.
//
//     kivo-window-shots FOLDER [en_US|zh_CN|ru_RU]    one language, a file a picture
//     kivo-window-shots --sheet FILE [LOCALE...]      all of them on one page, a column a language
//
// QT_SCALE_FACTOR=1.5 or 2 gives the scaled screens.

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDir>
#include <QEnterEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

#include "compose/panel_text.h"
#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "config/portable_folder.h"
#include "editor/edit_bar.h"
#include "editor/zoom_widget.h"
#include "resources/resources.h"
#include "virtualscreen/virtual_hid_api.h"
#include "widgets/exit_message_box.h"
#include "widgets/toolkit_defaults.h"
#include "widgets/window_style.h"
#include "window/away_menu.h"
#include "window/main_window.h"
#include "window/night_dialog.h"
#include "window/nimb_process_dialog.h"
#include "window/state_line.h"

namespace {

class Photographer {
public:
    explicit Photographer(kivo::MainWindow& window) : m_window(window) {}

    void Wait(int ms) const {
        QEventLoop loop;
        QTimer::singleShot(ms, &loop, &QEventLoop::quit);
        loop.exec();
    }

    // Until thumbnails have ceased to come in.
    void WaitForStillness() const {
        constexpr int kStill = 4;
        constexpr int kMostRounds = 60;
        QImage before;
        for (int round = 0, still = 0; round < kMostRounds && still < kStill; ++round) {
            Wait(500);
            const QImage now = Find("pictureList")->grab().toImage();
            still = now == before ? still + 1 : 0;
            before = now;
        }
    }

    // The window, and over it what stands in windows of its own.
    void Shoot(const QString& name, QWidget* over = nullptr) const {
        Wait(250);
        QPixmap picture = m_window.grab();
        if (over != nullptr) {
            const QPoint corner = over->mapToGlobal(QPoint()) - m_window.mapToGlobal(QPoint());
            QPainter painter(&picture);
            if (!over->mask().isEmpty()) {
                painter.setClipRegion(over->mask().translated(corner));
            }
            painter.drawPixmap(corner, over->grab());
        }
        m_shots.append({name, picture.toImage()});
    }

    void Add(const QString& name, const QPixmap& picture) const { m_shots.append({name, picture.toImage()}); }

    template <typename Widget = QWidget>
    Widget* Find(const char* name) const {
        return m_window.findChild<Widget*>(QString::fromLatin1(name));
    }
    void Click(const char* name) const { Find<QAbstractButton>(name)->click(); }

    // The mouse comes over a widget, or goes.
    void Hover(const char* name, bool over) const {
        auto* widget = Find<QWidget>(name);
        QEnterEvent enter(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
        QEvent leave(QEvent::Leave);
        QApplication::sendEvent(widget, over ? static_cast<QEvent*>(&enter) : &leave);
    }
    void Key(int key) const {
        QWidget* widget = m_window.focusWidget() != nullptr ? m_window.focusWidget() : &m_window;
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(widget, &press);
    }

    const QVector<QPair<QString, QImage>>& Shots() const { return m_shots; }

private:
    kivo::MainWindow& m_window;
    mutable QVector<QPair<QString, QImage>> m_shots;
};

void ShootThemes(const Photographer& photographer) {
    for (int theme = 0; theme < kivo::kThemeCount; ++theme) {
        photographer.Find<QListWidget>("themeList")->setCurrentRow(theme);
        photographer.Shoot(QStringLiteral("theme_%1").arg(theme));
    }
    photographer.Click("btnPortrait");
    photographer.Shoot(QStringLiteral("theme_3_portrait"));
    photographer.Click("btnLandscape");
}

void Mouse(QWidget& widget, QEvent::Type type, const QPoint& at) {
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, at, widget.mapToGlobal(at), isMove ? Qt::NoButton : Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void ShootTextMenu(const Photographer& photographer, const QWidget& editor) {
    QWidget* const page = editor.findChild<QPlainTextEdit*>()->viewport();
    const QPoint at = page->rect().center();
    QContextMenuEvent wanted(QContextMenuEvent::Mouse, at, page->mapToGlobal(at));
    QApplication::sendEvent(page, &wanted);
    QWidget* const menu = QApplication::activePopupWidget();
    photographer.Shoot(QStringLiteral("custom_text_menu"), menu);
    if (menu != nullptr) {
        menu->close();
    }
}

void ShootCustom(const Photographer& photographer, kivo::MainWindow& window) {
    photographer.Click("btnImage");
    photographer.Shoot(QStringLiteral("custom"));
    photographer.Click("btnEdit");
    photographer.Shoot(QStringLiteral("custom_editing"));
    window.slotShowColorbar(1);
    photographer.Shoot(QStringLiteral("custom_text"));
    auto* editor = photographer.Find<kivo::ZoomWidget>("zoomwidget");
    editor->findChild<QPlainTextEdit*>()->setPlainText(QStringLiteral("Kivo 你好 Привет"));
    ShootTextMenu(photographer, *editor);
    photographer.Shoot(QStringLiteral("custom_typed"));
    window.slotShowColorbar(0);
    photographer.Shoot(QStringLiteral("custom_free_text"));
    Mouse(*editor, QEvent::MouseButtonPress, {75, 75});
    Mouse(*editor, QEvent::MouseMove, {200, 130});
    photographer.Shoot(QStringLiteral("custom_dragged"));
    Mouse(*editor, QEvent::MouseButtonRelease, {200, 30});
    auto* size = window.findChild<QComboBox*>();
    size->showPopup();
    photographer.Shoot(QStringLiteral("custom_sizes"), size->view()->window());
    size->hidePopup();
    window.findChild<kivo::EditBar*>()->SetEditPressed(true);
    window.slotEdit(1);
    photographer.Shoot(QStringLiteral("custom_trim"));
    photographer.Click("btnEdit_cancel");
    photographer.Click("choiceSecond");
    photographer.Shoot(QStringLiteral("custom_one"));
    photographer.Click("btnPortrait");
    photographer.Shoot(QStringLiteral("custom_one_portrait"));
    photographer.Click("choiceFirst");
    photographer.Click("btnEdit");
    photographer.Shoot(QStringLiteral("custom_portrait"));
    window.findChild<kivo::EditBar*>()->SetEditPressed(true);
    window.slotEdit(1);
    photographer.Shoot(QStringLiteral("custom_portrait_trim"));
    photographer.Click("btnEdit_cancel");
    photographer.Click("btnLandscape");
    photographer.Click("btnTheme");
}

void ShootReadOut(const Photographer& photographer, kivo::MainWindow& window) {
    photographer.Click("pushButton");
    photographer.WaitForStillness();
    photographer.Shoot(QStringLiteral("thermal_zone"));
    window.slotCpuPowClock(65, 48, 0, 0);
}

// The window's head in every state that the screen can be in, one below the other.
QPixmap HeadsInAllStates(kivo::MainWindow& window) {
    using Condition = kivo::PanelCondition;
    const QVector<kivo::PanelStatus> all{
        {Condition::Connected, false, false, {}, {}},  {Condition::Sending, false, true, {}, {}},
        {Condition::Sent, false, false, {18, 46}, {}}, {Condition::NoScreen, false, false, {}, {}},
        {Condition::NoScreen, false, true, {}, {}},    {Condition::Denied, false, true, {}, "/dev/hidraw3"},
        {Condition::Refusing, false, true, {}, {}},    {Condition::TryingAgain, false, true, {}, {}},
        {Condition::Connected, true, false, {}, {}},
    };
    constexpr int kHeadHeight = 58;
    QPixmap heads = window.grab();
    QPainter painter(&heads);
    int top = 0;
    const auto add = [&] {
        painter.drawPixmap(0, top, window.grab({0, 0, window.width(), kHeadHeight}));
        top += kHeadHeight;
    };
    for (const kivo::PanelStatus& status : all) {
        window.ShowPanelStatus(status);
        add();
    }
    // Over whatever the screen is in.
    auto* stateLine = window.findChild<kivo::StateLine*>();
    stateLine->NoteSaved(kivo::SettingsPart::Layout, false);
    add();
    stateLine->NoteSaved(kivo::SettingsPart::Layout, true);
    return heads;
}

void ShootScreenStates(const Photographer& photographer, kivo::MainWindow& window) {
    photographer.Add(QStringLiteral("screen_states"), HeadsInAllStates(window));
    kivo::PanelStatus status;
    status.isFrameOwed = true;
    window.ShowPanelStatus(status);
    photographer.Shoot(QStringLiteral("no_screen"));
    status.condition = kivo::PanelCondition::Denied;
    window.ShowPanelStatus(status);
    photographer.Find<QAbstractButton>("btnExit")->setFocus(Qt::OtherFocusReason);
    for (int step = 0; step < 60 && !photographer.Find("stateCopy")->hasFocus(); ++step) {
        photographer.Key(Qt::Key_Tab);
    }
    photographer.Shoot(QStringLiteral("denied"));
    photographer.Click("stateCopy");
    photographer.Shoot(QStringLiteral("denied_copied"));
    status.condition = kivo::PanelCondition::Connected;
    window.ShowPanelStatus(status);
}

// The second picture gets a name of its own, the third is being named.
void ShootNames(const Photographer& photographer, QListWidget& pictures) {
    const int before = pictures.currentRow();
    const auto type = [&](int row, const QString& name) {
        pictures.setFocus();
        pictures.setCurrentRow(row);
        photographer.Key(Qt::Key_F2);
        auto* const line = pictures.findChild<QLineEdit*>();
        line->setText(name);
        return line;
    };
    type(2, QStringLiteral("Закат, 夕阳, Sunset"));
    photographer.Key(Qt::Key_Return);
    photographer.Wait(50);
    type(3, QStringLiteral("海边的夕阳"));
    photographer.Shoot(QStringLiteral("own_picture_naming"));
    photographer.Key(Qt::Key_Escape);
    pictures.setCurrentRow(before);
}

// What changes under mouse and keyboard.
void ShootStates(const Photographer& photographer, kivo::MainWindow& window) {
    for (const char* name : {"btnApply", "btnImage", "btnExit", "btnMini"}) {
        photographer.Hover(name, true);
    }
    photographer.Shoot(QStringLiteral("hover"));
    for (const char* name : {"btnApply", "btnImage", "btnExit", "btnMini"}) {
        photographer.Hover(name, false);
    }
    auto* apply = photographer.Find<QAbstractButton>("btnApply");
    apply->setFocus(Qt::OtherFocusReason);
    photographer.Key(Qt::Key_Tab);
    photographer.Shoot(QStringLiteral("focus"));
    // Pictures of the user's own, with their crosses, and more rows than fit.
    auto* pictures = photographer.Find<QListWidget>("pictureList");
    window.itemClickedImage(pictures->model()->index(0, 0));
    pictures->verticalScrollBar()->setValue(0);
    photographer.WaitForStillness();
    photographer.Shoot(QStringLiteral("own_pictures"));
    ShootNames(photographer, *pictures);
    QTimer::singleShot(100, &window, [&] {
        photographer.Shoot(QStringLiteral("delete"), QApplication::activeModalWidget());
        static_cast<QDialog*>(QApplication::activeModalWidget())->reject();
    });
    window.SlotDeletePix(1);
}

// The picture that is shown has been moved away.
void ShootMissingPicture(const Photographer& photographer, const QString& ownPicture) {
    const QString away = ownPicture + QStringLiteral(".away");
    QFile::rename(ownPicture, away);
    auto* editor = photographer.Find<kivo::ZoomWidget>("zoomwidget");
    editor->CheckPicture();
    photographer.WaitForStillness();
    photographer.Shoot(QStringLiteral("picture_missing"));
    QFile::rename(away, ownPicture);
    editor->CheckPicture();
}

// One value of each kind: measured, not allowed, worked out.
void ShootSensors(const Photographer& photographer, kivo::MainWindow& window) {
    kivo::SensorReadings readings;
    readings[kivo::Quantity::Temperature] = kivo::Reading::Of(48, kivo::SourceId::HardwareMonitor);
    readings[kivo::Quantity::Power] =
        kivo::Reading::Without(kivo::ReadingGap::NoRight, kivo::SourceId::PowerCap);
    readings[kivo::Quantity::FanSpeed] = kivo::Reading::Without(kivo::ReadingGap::NoSource);
    window.Session().SetReadings(readings);
    window.ShowSensors();
    const QWidgetList all = QApplication::topLevelWidgets();
    for (QWidget* const list : all) {
        if (list->objectName() == QLatin1String("sensors")) {
            photographer.WaitForStillness();
            photographer.Add(QStringLiteral("sensors"), list->grab());
            list->close();
        }
    }
}

// The menus of the tray, and the night's times.
void ShootDarkness(const Photographer& photographer) {
    kivo::AwayMenu menu;
    menu.ShowRules(kivo::AwayRules());
    const QList<QMenu*> menus = QList<QMenu*>{&menu} + menu.findChildren<QMenu*>();
    for (QMenu* const each : menus) {
        each->resize(each->sizeHint());
        photographer.Add(QStringLiteral("dark_menu_%1").arg(menus.indexOf(each)), each->grab());
    }
    kivo::NightDialog night;
    night.Ask(23 * 60, 7 * 60);
    photographer.WaitForStillness();
    photographer.Add(QStringLiteral("night"), night.grab());
}

void ShootDialogs(const Photographer& photographer, kivo::MainWindow& window) {
    QTimer::singleShot(100, &window, [&] {
        photographer.Shoot(QStringLiteral("exit"), QApplication::activeModalWidget());
        static_cast<QDialog*>(QApplication::activeModalWidget())->reject();
    });
    window.slotExit();
    QTimer::singleShot(100, &window, [&] {
        photographer.Shoot(QStringLiteral("built_in"), QApplication::activeModalWidget());
        static_cast<QDialog*>(QApplication::activeModalWidget())->accept();
    });
    window.SlotDeletePix(photographer.Find<QListWidget>("pictureList")->count() - 1);
    QTimer::singleShot(300, &window, [&] {
        photographer.Shoot(QStringLiteral("progress"), QApplication::activeModalWidget());
    });
    window.slotApply();
}

// The last one of the pictures is the one that is shown.
QVector<QPair<QString, QImage>> ShootWindow(const QString& locale, const QStringList& ownPictures) {
    kivo::VirtualHidApi panel;
    kivo::MainWindow::Parts parts{panel, nullptr, QCoreApplication::applicationDirPath()};
    parts.locale = QLocale(locale);
    parts.hasTray = [] { return true; };
    parts.choosePictures = [ownPictures](QWidget*) { return ownPictures; };
    parts.makeSensors = [] { return kivo::MakeLibrarySensors(); };
    parts.readThermalZone = [](const kivo::StopAsked&) { return kivo::ThermalText(-10.5); };
    kivo::MainWindow window(parts);
    window.show();
    const Photographer photographer(window);
    photographer.WaitForStillness();
    ShootScreenStates(photographer, window);
    ShootThemes(photographer);
    ShootCustom(photographer, window);
    ShootStates(photographer, window);
    ShootMissingPicture(photographer, ownPictures.last());
    ShootReadOut(photographer, window);
    ShootSensors(photographer, window);
    ShootDarkness(photographer);
    ShootDialogs(photographer, window);
    if (!window.Stop()) {
        std::fputs("The window's threads did not end.\n", stderr);
    }
    return photographer.Shots();
}

bool Save(const QImage& image, const QString& path) {
    if (!image.save(path)) {
        std::fprintf(stderr, "Cannot write %s\n", qPrintable(path));
        return false;
    }
    return true;
}

// Twice as many columns as languages, so that the page is not a ribbon; a title over each picture.
QImage Sheet(const QStringList& locales, const QVector<QVector<QPair<QString, QImage>>>& languages) {
    constexpr int kGap = 16;
    constexpr int kTitle = 24;
    constexpr int kSetsAcross = 2;
    const QImage& first = languages[0][0].second;
    const QSize cell(first.width() + kGap, first.height() + kTitle + kGap);
    const int rows = (languages[0].size() + kSetsAcross - 1) / kSetsAcross;
    QImage sheet(cell.width() * locales.size() * kSetsAcross + kGap, cell.height() * rows + kGap,
                 QImage::Format_RGB32);
    sheet.fill(QColor(60, 60, 64));
    QPainter painter(&sheet);
    QFont font(kivo::FontFamily());
    font.setPixelSize(16);
    painter.setFont(font);
    painter.setPen(Qt::white);
    for (int language = 0; language < languages.size(); ++language) {
        const auto& shots = languages[language];
        for (int shot = 0; shot < shots.size(); ++shot) {
            const int column = shot / rows * locales.size() + language;
            const QPoint corner(kGap + column * cell.width(), kGap + shot % rows * cell.height());
            painter.drawText(QRect(corner, QSize(first.width(), kTitle)), Qt::AlignVCenter,
                             shots[shot].first + QStringLiteral("  ") + locales[language]);
            painter.drawImage(QRect(corner + QPoint(0, kTitle), first.size()), shots[shot].second);
        }
    }
    return sheet;
}

// As after a first run, with nothing that an earlier language has left. A folder of its own also on Windows,
// which tells the user's by no variable.
void SetUpProfile(const QString& home) {
    const QString data = home + QStringLiteral("/data");
    QDir(data).removeRecursively();
    QDir().mkpath(data);
    kivo::SetPortableFolder(data);
    kivo::SeedDefaultProfile(QCoreApplication::applicationDirPath());
    kivo::MarkInitialized();
    kivo::configFolderCreated = 0;
}

}  // namespace

int main(int argc, char** argv) {
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(name, home.path().toUtf8());
    }
    // No sensors, whatever the machine has: the pictures are the same everywhere.
    qputenv("IPG_Dir", home.path().toUtf8());
    qputenv("IPG_Ver", "3.6");
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    kivo::ScaleAsTheDisplay();
    QApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    const bool asSheet = arguments.removeAll(QStringLiteral("--sheet")) > 0;
    if (arguments.isEmpty()) {
        std::fputs(
            "Usage: kivo-window-shots FOLDER [LOCALE]\n       kivo-window-shots --sheet FILE [LOCALE...]\n",
            stderr);
        return 2;
    }
    const QString target = arguments.takeFirst();
    if (arguments.isEmpty()) {
        arguments =
            asSheet ? QStringList{QStringLiteral("zh_CN"), QStringLiteral("en_US"), QStringLiteral("ru_RU")}
                    : QStringList{QStringLiteral("en_US")};
    }
    QApplication::setQuitOnLastWindowClosed(false);
    kivo::InitResources();
    kivo::InstallFontSubstitutes();
    QFont font(kivo::FontFamily());
    font.setPointSize(12);
    QApplication::setFont(font);
    kivo::ApplyWindowStyle(application);
    QStringList ownPictures;
    for (const char* name : {"IMG_20260801_193512_HDR.png", "夏日海边与山间晨雾的照片.png",
                             "Фотография заката над морем.png", "Kivo.png"}) {
        ownPictures.append(home.filePath(QString::fromUtf8(name)));
        QImage(QStringLiteral("://background/%1.jpg").arg(6 + ownPictures.size()))
            .mirrored(true, false)
            .save(ownPictures.last());
    }

    QVector<QVector<QPair<QString, QImage>>> languages;
    for (const QString& locale : qAsConst(arguments)) {
        SetUpProfile(home.path());
        languages.append(ShootWindow(locale, ownPictures));
    }
    if (asSheet) {
        return Save(Sheet(arguments, languages), target) ? 0 : 1;
    }
    QDir().mkpath(target);
    bool good = true;
    for (const auto& [name, image] : qAsConst(languages[0])) {
        good = Save(image, QStringLiteral("%1/%2.png").arg(target, name)) && good;
    }
    return good ? 0 : 1;
}
