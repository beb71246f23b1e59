#include <QCheckBox>
#include <QMenu>
#include <QRandomGenerator>
#include <QSlider>

#include "compose/theme_catalogue.h"
#include "support/custom_page_test_support.h"
#include "support/test_program.h"
#include "widgets/exit_message_box.h"

using KeyMap = QMap<QString, QString>;
Q_DECLARE_METATYPE(KeyMap)

using namespace kivo;
using namespace kivo::test;

// What nobody means to do: broken settings, a folder that takes no files, and a monkey at the mouse.
class TestWindowNoise : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void NonsenseInTheKeys_data();
    void NonsenseInTheKeys();
    void FolderThatTakesNoFilesCrashesNothing();
    void Monkey_data();
    void Monkey();
};

void TestWindowNoise::initTestCase() {
    PrepareApplication();
}

void TestWindowNoise::NonsenseInTheKeys_data() {
    QTest::addColumn<KeyMap>("nonsense");
    const auto row = [](const char* name, const KeyMap& nonsense) { QTest::newRow(name) << nonsense; };
    row("no numbers", {{QStringLiteral("CustomShow/0-0"), QStringLiteral("")},
                       {QStringLiteral("CustomShow/0-1"), QStringLiteral("word")},
                       {QStringLiteral("CustomShow/1-2"), QStringLiteral("1e3")},
                       {QStringLiteral("CUSTOM0/Show_0"), QStringLiteral("perhaps")},
                       {QStringLiteral("CUSTOM0/ShowRect_1"), QStringLiteral("wide")}});
    row("too large", {{QStringLiteral("CustomShow/0-0"), QStringLiteral("99")},
                      {QStringLiteral("CustomShow/0-4"), QStringLiteral("99999999999999999999")},
                      {QStringLiteral("CUSTOM0/Color"), QStringLiteral("77")},
                      {QStringLiteral("CUSTOM0/XZoom"), QStringLiteral("60000")},
                      {QStringLiteral("Config/CurRectID"), QStringLiteral("12")},
                      {QStringLiteral("Config/Hor"), QStringLiteral("8")}});
    row("too small", {{QStringLiteral("CustomShow/0-0"), QStringLiteral("-7")},
                      {QStringLiteral("CUSTOM0/Size"), QStringLiteral("-1")},
                      {QStringLiteral("CUSTOM0/YPt"), QStringLiteral("-65535")},
                      {QStringLiteral("Config/Style"), QStringLiteral("-5")}});
    row("twice in a row, and free texts in slots", {{QStringLiteral("CustomShow/0-0"), QStringLiteral("3")},
                                                    {QStringLiteral("CustomShow/0-1"), QStringLiteral("7")},
                                                    {QStringLiteral("CustomShow/0-3"), QStringLiteral("8")}});
    row("no such picture, and signs that turn the text",
        {{QStringLiteral("CUSTOM0/StringPixmap"), QStringLiteral("/no/such/picture.png")},
         {QStringLiteral("CUSTOM0/StringD1"), QStringLiteral("\u202E\t\u0001 back")}});
}

void TestWindowNoise::NonsenseInTheKeys() {
    QFETCH(KeyMap, nonsense);
    SetUpFactoryLayouts();
    {
        QSettings settings(ConfigFilePath(), QSettings::IniFormat);
        for (auto it = nonsense.constBegin(); it != nonsense.constEnd(); ++it) {
            settings.setValue(it.key(), it.value());
        }
    }
    CustomDesk desk;
    // What is mended in the settings the start sends as a frame of its own, before any value.
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > 0, 20000);
    desk.Tap("btnEdit");
    desk.Tick(7);
    desk.Tick(1);
    desk.Drag(desk.SlotPlace(1), desk.SlotPlace(0));
    desk.Tap("backButton");
    desk.WriteText(QStringLiteral("fine"));
    desk.ApplyAndCompare();
    QCOMPARE(StoredSlots().size(), 10);
    QCOMPARE(desk.panel.State().counts.errors, quint64(0));
}

void TestWindowNoise::FolderThatTakesNoFilesCrashesNothing() {
    SetUpFactoryLayouts();
    CustomDesk desk;
    // A folder in the file's place: even the superuser cannot write it.
    QVERIFY(QFile::remove(ConfigFilePath()));
    QVERIFY(QDir().mkpath(ConfigFilePath() + QStringLiteral("/in the way")));
    EditEverything(desk);
    int logged = 0;
    static int* counter = nullptr;
    counter = &logged;
    const QtMessageHandler former =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& line) {
            *counter += type == QtWarningMsg && line.contains(QLatin1String("Config.ini")) ? 1 : 0;
        });
    desk.Tap("btnApply");
    qInstallMessageHandler(former);
    QVERIFY(logged > 0);
    // The panel has it all the same.
    QTRY_VERIFY_WITH_TIMEOUT(desk.PanelShows(desk.Editor()->Shown()), 20000);
    CheckEverything(desk, 0);
}

namespace {

// Where a hand without a plan reaches: anywhere, but controls more often than they are large. Ending the
// program and applying, which takes its second, are left to chance.
QPoint AnyPlace(const CustomDesk& desk, QRandomGenerator& dice) {
    const QWidget* window = desk.window.get();
    const QPoint anywhere(dice.bounded(1, window->width()), dice.bounded(1, window->height()));
    if (dice.bounded(3) == 0) {
        return anywhere;
    }
    const QList<QWidget*> widgets = window->findChildren<QWidget*>();
    const QWidget* widget = widgets.at(dice.bounded(widgets.size()));
    const bool isDull = widget->window() != window || !widget->isVisible() || widget->size().isEmpty() ||
                        widget->objectName() == QLatin1String("btnApply") ||
                        widget->objectName() == QLatin1String("btnExit");
    if (isDull) {
        return desk.Editor()->mapTo(
            window, QPoint(dice.bounded(desk.Editor()->width()), dice.bounded(desk.Editor()->height())));
    }
    return widget->mapTo(window, QPoint(dice.bounded(widget->width()), dice.bounded(widget->height())));
}

void AnyMouse(const CustomDesk& desk, QRandomGenerator& dice) {
    QWindow* window = desk.window->windowHandle();
    QPoint at = AnyPlace(desk, dice);
    if (const QWidget* popup = QApplication::activePopupWidget()) {
        window = popup->windowHandle();
        at = QPoint(dice.bounded(1, popup->width()), dice.bounded(1, popup->height()));
    }
    const Qt::MouseButton button = dice.bounded(12) == 0 ? Qt::RightButton : Qt::LeftButton;
    constexpr QTest::MouseAction kActions[] = {QTest::MouseClick, QTest::MouseClick,   QTest::MouseClick,
                                               QTest::MousePress, QTest::MouseRelease, QTest::MouseMove,
                                               QTest::MouseMove,  QTest::MouseDClick};
    const QTest::MouseAction action = kActions[dice.bounded(8)];
    QTest::mouseEvent(action, window, action == QTest::MouseMove ? Qt::NoButton : button, Qt::NoModifier, at);
}

void AnyKey(const CustomDesk& desk, QRandomGenerator& dice) {
    constexpr Qt::Key kKeys[] = {
        Qt::Key_Return, Qt::Key_Escape, Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Space,     Qt::Key_Left,
        Qt::Key_Right,  Qt::Key_Up,     Qt::Key_Down,   Qt::Key_PageUp,  Qt::Key_Plus,      Qt::Key_Minus,
        Qt::Key_F2,     Qt::Key_F4,     Qt::Key_Delete, Qt::Key_Home,    Qt::Key_Backspace, Qt::Key_Enter};
    switch (dice.bounded(4)) {
        case 0: {
            constexpr Qt::Key kWithControl[] = {Qt::Key_Z, Qt::Key_A, Qt::Key_Y};
            desk.Key(kWithControl[dice.bounded(3)], Qt::ControlModifier);
            break;
        }
        case 1:
            desk.Type(
                QString(QChar(dice.bounded(2) == 0 ? dice.bounded(32, 127) : dice.bounded(0x4E00, 0x9F00))));
            break;
        default:
            desk.Key(kKeys[dice.bounded(18)], dice.bounded(4) == 0 ? Qt::ShiftModifier : Qt::NoModifier);
    }
}

// What holds whatever was done.
void CheckSense(const CustomDesk& desk) {
    const ZoomWidget* editor = desk.Editor();
    const EditState& edited = editor->Edited();
    const ScreenState shown = editor->Shown();
    const bool custom = shown.custom;
    QCOMPARE(desk.TextBox()->isVisible(), editor->IsTextEntryOpen());
    QVERIFY(custom || !editor->IsEditing());
    QCOMPARE(desk.Tools()->isVisible(), editor->IsEditing());
    QCOMPARE(desk.Find("btnEdit")->isVisible(), custom && !editor->IsEditing());
    QCOMPARE(desk.Find("btnEdit_cancel")->isVisible(), editor->IsEditing());
    QVERIFY(editor->IsEditing() || !editor->IsTrimMode());
    QCOMPARE(desk.Find<NimbPushButton>("trimButton")->IsPressed(), editor->IsTrimMode());
    QVERIFY(editor->IsTrimMode() || !desk.Find("btnRemote")->isVisible());
    QVERIFY(editor->IsTextEntryOpen() || !desk.Colors()->isVisible());
    for (int variant = 0; variant < kVariantCount; ++variant) {
        const LayoutRecord& layout = edited.themes.layouts[size_t(CustomLayoutIndex(variant))];
        const auto& flags = variant == 0 ? layout.shown : layout.selected;
        QVERIFY(layout.freeText.size() <= 40);
        if (!editor->IsTextEntryOpen()) {
            QCOMPARE(flags[OtherText], !layout.freeText.isEmpty());
        }
        const SlotRow& row = edited.slotTable[size_t(variant)];
        for (int item : row) {
            QVERIFY(item == kEmptySlot || HasLiveValue(item));
            QVERIFY(item == kEmptySlot ||
                    (flags[size_t(item)] && std::count(row.begin(), row.end(), item) == 1));
        }
    }
    if (custom) {
        QCOMPARE(desk.Tools()->IndicatorColor(), shown.layout.colorIndex);
        QCOMPARE(desk.SizeBox()->currentIndex(), shown.layout.sizeIndex);
        for (int kind = 0; kind < int(OtherText); ++kind) {
            QCOMPARE(desk.Boxes().contains(kind + 1), IsShown(shown, kind));
        }
    }
    QCOMPARE(desk.Find<QSlider>("dimSlider")->value(), shown.layout.dim);
    QCOMPARE(desk.Find<QSlider>("blurSlider")->value(), shown.layout.blur);
    QCOMPARE(desk.Find("dimSlider")->isEnabled(), !editor->IsTrimming());
    QCOMPARE(desk.Find("accentFromPicture")->isVisible(), !custom && shown.theme != Theme::Scene);
    QVERIFY(custom ||
            desk.Find<QCheckBox>("accentFromPicture")->isChecked() == shown.layout.accentFromPicture);
    QCOMPARE(desk.Find("backButton")->isEnabled(), editor->CanUndo());
    QCOMPARE(desk.Find("redoButton")->isEnabled(), editor->CanRedo());
    QCOMPARE(desk.panel.State().counts.errors, quint64(0));
}

// In both layouts: undone to the beginning and redone to the end, every state comes back.
void GoThereAndBack(const CustomDesk& desk) {
    for (const char* layout : {"choiceFirst", "choiceSecond"}) {
        desk.Tap("btnImage");
        desk.Tap(layout);
        if (!desk.Editor()->IsEditing()) {
            desk.Tap("btnEdit");
        }
        while (desk.Editor()->CanRedo()) {
            desk.Tap("redoButton");
        }
        QVector<EditState> way{desk.Editor()->Edited()};
        while (desk.Editor()->CanUndo()) {
            desk.Tap("backButton");
            way.append(desk.Editor()->Edited());
        }
        for (int step = way.size() - 2; step >= 0; --step) {
            QVERIFY(desk.Editor()->CanRedo());
            desk.Tap("redoButton");
            QVERIFY2(desk.Editor()->Edited() == way.at(step), qPrintable(QString::number(step)));
        }
        QVERIFY(!desk.Editor()->CanRedo());
    }
}

}  // namespace

void TestWindowNoise::Monkey_data() {
    QTest::addColumn<quint32>("seed");
    for (quint32 seed : {1U, 22U, 333U, 4444U}) {
        QTest::addRow("seed %u", seed) << seed;
    }
}

void TestWindowNoise::Monkey() {
    QFETCH(quint32, seed);
    SetUpFactoryLayouts(int(seed % 2));
    QRandomGenerator dice(seed);
    CustomDesk desk;
    const QTemporaryDir folder;
    desk.pictureToChoose = folder.filePath(QStringLiteral("own.png"));
    QVERIFY(LoadPicture(DefaultBackground()).scaled(300, 200).save(desk.pictureToChoose));
    // Whatever is asked: no.
    QTimer no;
    connect(&no, &QTimer::timeout, &no, [] {
        if (auto* box = qobject_cast<ExitMessageBox*>(QApplication::activeModalWidget())) {
            box->reject();
        } else if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            menu->close();
        }
    });
    no.start(5);
    const int wanted = qEnvironmentVariableIntValue("KIVO_MONKEY_EVENTS");
    const int events = wanted > 0 ? wanted : 1500;
    for (int event = 0; event < events; ++event) {
        if (!desk.window->isVisible() || desk.window->isMinimized()) {
            desk.window->BringToFront();
        }
        if (!desk.Editor()->IsEditing() && dice.bounded(10) == 0) {
            desk.Tap("btnImage");
            desk.Tap("btnEdit");
        }
        if (dice.bounded(500) == 0) {
            desk.Tap("btnApply");
        }
        if (desk.Editor()->IsEditing() && dice.bounded(40) == 0) {
            desk.Tap(dice.bounded(2) == 0 ? "colorLabel" : "trimButton");
        }
        switch (desk.Colors()->isVisible() ? dice.bounded(3) - 2 : dice.bounded(6)) {
            case -2:
                desk.Tap(desk.Colors()->Buttons().at(size_t(dice.bounded(kTextColorCount))));
                break;
            case -1:
            case 0:
                AnyKey(desk, dice);
                break;
            case 1:
                desk.Wheel(QPoint(dice.bounded(400), dice.bounded(300)), dice.bounded(-3, 4));
                break;
            default:
                AnyMouse(desk, dice);
        }
        if (desk.window->isVisible() && !desk.window->isMinimized()) {
            CheckSense(desk);
        }
        if (QTest::currentTestFailed()) {
            qWarning("After event %d.", event);
            return;
        }
    }
    while (QWidget* popup = QApplication::activePopupWidget()) {
        popup->close();
    }
    QTest::mouseRelease(desk.window->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(500, 300));
    QTest::mouseRelease(desk.window->windowHandle(), Qt::RightButton, Qt::NoModifier, QPoint(500, 300));
    desk.window->BringToFront();
    GoThereAndBack(desk);
    desk.ApplyAndCompare();
    QCOMPARE(desk.panel.State().counts.errors, quint64(0));
}

KIVO_TEST(TestWindowNoise)
#include "tst_window_noise.moc"
