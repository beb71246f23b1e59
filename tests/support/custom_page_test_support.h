#pragma once

// A person at the page of the custom layouts. Mouse and keys come from the window system and find their
// widget by themselves, so that what lies over it, or does not have the focus, counts.

#include <QAbstractItemView>
#include <QSettings>

#include "compose/free_text.h"
#include "config/settings_file.h"
#include "editor/color_bar.h"
#include "editor/edit_bar.h"
#include "editor/screen_mapping.h"
#include "editor/trim_frame.h"
#include "support/window_test_support.h"
#include "widgets/nimb_push_button.h"
#include "widgets/press_combobox.h"
#include "widgets/self_plain_text_edit.h"

namespace kivo::test {

inline bool IsTrimmed(const LayoutRecord& layout) {
    return layout.xPt != 0 || layout.yPt != 0 || layout.xZoom != 0 || layout.yZoom != 0;
}

inline constexpr SlotRow kNoItems{{kEmptySlot, kEmptySlot, kEmptySlot, kEmptySlot, kEmptySlot}};

// A profile whose custom layouts show nothing yet. The window comes up on the custom page.
inline void SetUpEmptyLayouts(int orientation = 0, int variant = 0) {
    SetUpProfile();
    SettingsWriter writer;
    for (int slot = 0; slot < kSlotCount; ++slot) {
        writer.SetInt(CustomShowKey(0, slot), kEmptySlot);
        writer.SetInt(CustomShowKey(1, slot), kEmptySlot);
    }
    for (int item = 0; item < kLiveValueCount; ++item) {
        for (const char* group : {"CUSTOM0", "CUSTOM1"}) {
            writer.SetInt(ItemKey(QString::fromLatin1(group), keys::kShow, item), 0);
            writer.SetInt(ItemKey(QString::fromLatin1(group), keys::kShow2, item), 0);
        }
    }
    writer.SetInt(keys::kMode.name, 1);
    writer.SetInt(keys::kStyle.name, variant);
    writer.SetInt(keys::kHor.name, orientation);
    QVERIFY(writer.Commit());
    RememberPanel();
}

// The factory's layouts, the custom page shown.
inline void SetUpFactoryLayouts(int orientation = 0, int variant = 0,
                                InterfaceLanguage language = InterfaceLanguage::English) {
    SetUpProfile();
    SettingsWriter writer;
    writer.SetInt(keys::kMode.name, 1);
    writer.SetInt(keys::kStyle.name, variant);
    writer.SetInt(keys::kHor.name, orientation);
    QVERIFY(writer.Commit());
    RememberPanel(language);
}

struct CustomDesk : Desk {
    explicit CustomDesk(const QLocale& locale = QLocale(QStringLiteral("en_US"))) : Desk(locale) {
        Show();
        window->activateWindow();
        QTRY_VERIFY(window->isActiveWindow());
        WaitForPictures();
    }

    EditBar* Tools() const { return window->findChild<EditBar*>(); }
    ColorBar* Colors() const { return window->findChild<ColorBar*>(); }
    SelfPlainTextEdit* TextBox() const { return Editor()->findChild<SelfPlainTextEdit*>(); }
    PressCombobox* SizeBox() const { return Find<PressCombobox>("sizeBox"); }
    LiveSession& Session() const { return window->Session(); }

    // The mouse, in pixels of a widget.
    static void Press(const QWidget* widget, QPoint at) { Mouse(QTest::MousePress, widget, at); }
    static void Move(const QWidget* widget, QPoint at) { Mouse(QTest::MouseMove, widget, at); }
    static void Release(const QWidget* widget, QPoint at) { Mouse(QTest::MouseRelease, widget, at); }
    static void Tap(const QWidget* widget, QPoint at) { Mouse(QTest::MouseClick, widget, at); }
    static void Tap(const QWidget* widget) { Tap(widget, widget->rect().center()); }
    void Tap(const char* name) const { Tap(Find(name)); }
    void DoubleTap(QPoint at) const { Mouse(QTest::MouseDClick, Editor(), at); }
    void Tick(int number) const {
        const QWidget* box = Find(qPrintable(QStringLiteral("check%1").arg(number)));
        Tap(box, QPoint(8, box->height() / 2));
    }
    void Drag(QPoint from, QPoint to) const {
        Press(Editor(), from);
        Move(Editor(), (from + to) / 2);
        Move(Editor(), to);
        Release(Editor(), to);
    }
    void Wheel(QPoint at, int notches) const {
        ZoomWidget* editor = Editor();
        QWheelEvent event(at, editor->mapToGlobal(at), QPoint(), QPoint(0, 120 * notches), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(editor, &event);
    }

    // The keyboard, to whoever has the focus.
    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QTest::keyClick(window->windowHandle(), key, modifiers);
    }
    void Type(const QString& text) const {
        for (const QChar sign : text) {
            QTest::sendKeyEvent(QTest::Click, window->windowHandle(), Qt::Key_unknown, QString(sign),
                                Qt::NoModifier);
        }
    }

    // Tools.
    void PickColor(int color) const {
        Tap("colorLabel");
        QVERIFY(Colors()->isVisible());
        Tap(Colors()->Buttons().at(size_t(color)));
    }
    void PickSize(int step) const {
        Tap("sizeBox");
        QAbstractItemView* list = SizeBox()->view();
        QTRY_VERIFY(list->isVisible());
        const QPoint place = list->visualRect(list->model()->index(step, 0)).center();
        // The list takes no click before the mouse has moved in it.
        Move(list->viewport(), place - QPoint(20, 0));
        Move(list->viewport(), place);
        Tap(list->viewport(), place);
        QTRY_VERIFY(!list->isVisible());
    }
    // Opens editing where it is not open, types a free text and ends it with Return.
    void WriteText(const QString& text) const {
        if (!Editor()->IsEditing()) {
            Tap("btnEdit");
        }
        DoubleTap(TextZone().center());
        QVERIFY(Editor()->IsTextEntryOpen());
        Key(Qt::Key_A, Qt::ControlModifier);
        Key(Qt::Key_Backspace);
        Type(text);
        Key(Qt::Key_Return);
        QVERIFY(!Editor()->IsTextEntryOpen());
    }

    // Places in the editor.
    Orientation Lying() const { return Editor()->Edited().themes.orientation; }
    QPoint SlotPlace(int slot) const { return SlotPressRect(slot, Lying(), Editor()->size()).center(); }
    QRect TextZone() const { return TextDoubleClickRect(Editor()->Edited().textRow, Lying()); }
    // Where the free text is drawn.
    QPoint TextPlace() const {
        const ScreenState state = Editor()->Shown();
        const QRect drawn = LayOutFreeText(state).bounds;
        return MappingFor(state.orientation, Editor()->size()).Mapped(drawn).center();
    }
    QPoint RowPlace(int row) const { return TextDropRect(row, Lying(), Editor()->size()).center(); }
    QRectF TrimPlace() const {
        const ScreenState state = Editor()->Shown();
        const TrimView view =
            MakeTrimView(LoadPicture(PicturePath(state)).size(), state.orientation, state.layout);
        return TrimMappingFor(state.orientation, Editor()->size(), view.picture).Mapped(view.frame);
    }

    // What is edited.
    const LayoutRecord& Layout() const { return LayoutInForce(Editor()->Edited()); }
    SlotRow Slots() const { return Editor()->Shown().slotItems; }
    // Numbers of the boxes that are ticked.
    QVector<int> Boxes() const {
        QVector<int> numbers;
        for (int number = 1; number <= kLiveValueCount; ++number) {
            if (Find<QCheckBox>(qPrintable(QStringLiteral("check%1").arg(number)))->isChecked()) {
                numbers.append(number);
            }
        }
        return numbers;
    }

    // Whether the panel shows exactly that state, with the texts that it took.
    bool PanelShows(const ScreenState& state) {
        if (m_background.image.isNull() || state != m_backgroundOf) {
            m_background = ExpectedBackground(state);
            m_backgroundOf = state;
        }
        const ItemTexts texts = Session().ShownTexts();
        const PanelState shown = panel.State();
        return Session().ShownTexts() == texts &&
               PixelsThatDiffer(ComposeFrame(state, m_background, texts), shown.UprightImage()) == 0;
    }
    // Applies, and holds the panel against it.
    void ApplyAndCompare() {
        const quint64 before = panel.State().counts.frames;
        Tap("btnApply");
        QCOMPARE(panel.State().counts.frames, before + 1);
        QVERIFY(Session().Applied() == Editor()->Shown());
        QTRY_VERIFY_WITH_TIMEOUT(PanelShows(Editor()->Shown()), 20000);
    }
    // Lets all live values go round once at least; each round begins with a command.
    void WaitForLiveValues() {
        const quint64 before = panel.State().counts.commands;
        QTRY_VERIFY_WITH_TIMEOUT(panel.State().counts.commands > before + 1, 20000);
    }

private:
    static void Mouse(QTest::MouseAction action, const QWidget* widget, QPoint at) {
        const QWidget* window = widget->window();
        QTest::mouseEvent(action, window->windowHandle(),
                          action == QTest::MouseMove ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier,
                          widget->mapTo(window, at));
    }

    PanelBackground m_background;
    ScreenState m_backgroundOf;
};

// Something of everything: a picture, a trim, items, a text with colour, size and row.
inline void EditEverything(const CustomDesk& desk) {
    desk.ClickRow("pictureList", 3);
    desk.Tap("btnEdit");
    desk.Tap("trimButton");
    desk.Wheel(desk.Editor()->rect().center(), 4);
    desk.Drag(desk.Editor()->rect().center(), desk.Editor()->rect().center() + QPoint(12, 8));
    desk.Tap("trimButton");
    desk.WriteText(QStringLiteral("Kivo 你好"));
    desk.PickColor(3);
    desk.Key(Qt::Key_Return);
    desk.PickSize(1);
    desk.Drag(desk.RowPlace(2), desk.RowPlace(0));
    desk.Tick(7);  // with five items and the text there is no room for it
    desk.Drag(desk.SlotPlace(0), desk.SlotPlace(3));
    desk.Tick(6);
}

inline void CheckEverything(const CustomDesk& desk, int variant) {
    const LayoutRecord& layout = desk.Layout();
    QCOMPARE(layout.freeText, QStringLiteral("Kivo 你好"));
    QCOMPARE(layout.colorIndex, 3);
    QCOMPARE(layout.sizeIndex, 1);
    QVERIFY(layout.xZoom > 0 && layout.yZoom > 0 && layout.xPt > 0);
    QVERIFY(!layout.picture.isEmpty());
    QCOMPARE(desk.Editor()->Edited().textRow, 0);
    QCOMPARE(desk.Boxes(), variant == 0 ? (QVector<int>{1, 2, 3, 4, 5, 6, 8}) : (QVector<int>{6, 8}));
    QCOMPARE(desk.Slots(), variant == 0 ? (SlotRow{{MemoryUsage, CpuUsage, Time, CpuTemperature, CpuPower}})
                                        : (SlotRow{{kEmptySlot, kEmptySlot, Date, kEmptySlot, kEmptySlot}}));
}

// The slot table as the settings file has it, by key.
inline QMap<QString, QString> StoredSlots() {
    const QSettings settings(ConfigFilePath(), QSettings::IniFormat);
    QMap<QString, QString> stored;
    const QStringList all = settings.allKeys();
    for (const QString& key : all) {
        if (key.startsWith(QLatin1String("CustomShow/"))) {
            stored[key] = settings.value(key).toString();
        }
    }
    return stored;
}

}  // namespace kivo::test
