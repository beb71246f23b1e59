#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QSlider>

#include "support/custom_page_test_support.h"
#include "support/person.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// What a person makes of a background as a whole: dimmed, blurred, and the accent taken from it. Read on the
// panel and in the settings.
class TestWindowPictureLooks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void init() { SetUpFactoryLayouts(); }
    void WhatIsChosenIsAppliedAndStays_data();
    void WhatIsChosenIsAppliedAndStays();
    void TheAccentIsOfferedWhereThereIsOne();
    void ADragIsOneStep();
    void KeysTakeThemBackOnTheThemePage();
    void TheSlidersFollowTheLayout();
    void TrimmingSwitchesThemOff();
    void AWheelWhileTypingEndsTheTyping();
    void CancelTakesThemBack();
    void TheyHaveNamesAndTheKeyboard();
};

namespace {

// The middle of the knob at that many percent.
QPoint KnobAt(const QWidget* slider, int percent) {
    return {6 + (slider->width() - 12) * percent / 100, slider->height() / 2};
}

void Slide(const CustomDesk& desk, const char* name, int from, int to) {
    const QWidget* slider = desk.Find(name);
    CustomDesk::Press(slider, KnobAt(slider, from));
    CustomDesk::Move(slider, KnobAt(slider, (from + to) / 2));
    CustomDesk::Move(slider, KnobAt(slider, to));
    CustomDesk::Release(slider, KnobAt(slider, to));
}

void TickAccent(const CustomDesk& desk) {
    const QWidget* box = desk.Find("accentFromPicture");
    CustomDesk::Tap(box, QPoint(8, box->height() / 2));
}

int Value(const CustomDesk& desk, const char* name) {
    return desk.Find<QSlider>(name)->value();
}

}  // namespace

void TestWindowPictureLooks::WhatIsChosenIsAppliedAndStays_data() {
    QTest::addColumn<bool>("custom");
    QTest::newRow("a theme") << false;
    QTest::newRow("a layout") << true;
}

void TestWindowPictureLooks::WhatIsChosenIsAppliedAndStays() {
    QFETCH(bool, custom);
    EditState applied;
    {
        CustomDesk desk;
        desk.Tap(custom ? "btnImage" : "btnTheme");
        Slide(desk, "dimSlider", 0, 40);
        Slide(desk, "blurSlider", 0, 70);
        if (!custom) {
            TickAccent(desk);
        }
        QVERIFY(desk.Layout().dim == 40 && desk.Layout().blur == 70);
        QCOMPARE(desk.Layout().accentFromPicture, !custom);
        desk.ApplyAndCompare();
        applied = desk.Editor()->Edited();
        QVERIFY(LoadEditState(InterfaceLanguage::English) == applied);
    }
    // The next start changes no pixel: whole.png has the very frame that the settings ask for.
    CustomDesk desk;
    QVERIFY(desk.Editor()->Edited() == applied);
    const SharedFrame kept = FrameStore().Load(desk.Editor()->Shown());
    QVERIFY(kept);
    const PanelBackground expected = ExpectedBackground(desk.Editor()->Shown());
    QCOMPARE(PixelsThatDiffer(kept->background.image, expected.image), 0);
    QVERIFY(kept->background.accent == expected.accent);
    QCOMPARE(kept->background.accent.has_value(), !custom);
    QVERIFY(Value(desk, "dimSlider") == 40 && Value(desk, "blurSlider") == 70);
}

void TestWindowPictureLooks::TheAccentIsOfferedWhereThereIsOne() {
    CustomDesk desk;
    const auto* box = desk.Find<QCheckBox>("accentFromPicture");
    QVERIFY(!box->isVisible());
    desk.Tap("btnTheme");
    for (int theme = 0; theme < kThemeCount; ++theme) {
        ClickListRow(desk, "themeList", theme);
        QCOMPARE(box->isVisible(), Theme(theme) != Theme::Scene);
        QVERIFY(!(box->isVisible() && desk.Find("pageChoice")->isVisible()));  // they have one place
        QVERIFY(!box->isChecked());
        if (box->isVisible()) {
            TickAccent(desk);
            QVERIFY(box->isChecked() && desk.Layout().accentFromPicture);
        }
    }
    ClickListRow(desk, "themeList", int(Theme::Default));
    QVERIFY(box->isChecked());
    TickAccent(desk);
    QVERIFY(!box->isChecked() && !desk.Layout().accentFromPicture);
    desk.Tap("btnImage");
    QVERIFY(!box->isVisible());
}

void TestWindowPictureLooks::ADragIsOneStep() {
    CustomDesk desk;
    desk.Tap("btnEdit");
    Slide(desk, "dimSlider", 0, 50);
    Slide(desk, "dimSlider", 50, 100);
    Slide(desk, "blurSlider", 0, 30);
    const QVector<QPair<int, int>> steps{{100, 0}, {50, 0}, {0, 0}};
    for (const auto& [dim, blur] : steps) {
        desk.Tap("backButton");
        QVERIFY(Value(desk, "dimSlider") == dim && Value(desk, "blurSlider") == blur);
        QVERIFY(desk.Layout().dim == dim && desk.Layout().blur == blur);
    }
    QVERIFY(!desk.Find("backButton")->isEnabled());
    desk.Tap("redoButton");
    QCOMPARE(Value(desk, "dimSlider"), 50);
}

// There is no button for it, and nothing is opened for editing there.
void TestWindowPictureLooks::KeysTakeThemBackOnTheThemePage() {
    CustomDesk desk;
    desk.Tap("btnTheme");
    const QString first = desk.Layout().picture;
    const int row = desk.Find<QListWidget>("pictureList")->currentRow();
    for (const char* focus : {"themeList", "pictureList", "btnApply", "zoomwidget"}) {
        Slide(desk, "dimSlider", 0, 40);
        TickAccent(desk);
        ClickListRow(desk, "pictureList", row + 2);
        QVERIFY(desk.Layout().picture != first);
        desk.Find(focus)->setFocus();
        desk.Key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(desk.Layout().picture, first);
        QCOMPARE(desk.Find<QListWidget>("pictureList")->currentRow(), row);
        QVERIFY(desk.Layout().accentFromPicture && desk.Find<QCheckBox>("accentFromPicture")->isChecked());
        desk.Key(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(!desk.Layout().accentFromPicture && !desk.Find<QCheckBox>("accentFromPicture")->isChecked());
        desk.Key(Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(desk.Layout().dim == 0 && Value(desk, "dimSlider") == 0);
        desk.Key(Qt::Key_Y, Qt::ControlModifier);
        QVERIFY(desk.Layout().dim == 40 && Value(desk, "dimSlider") == 40);
        desk.Key(Qt::Key_Z, Qt::ControlModifier);
    }
    // Another theme has steps of its own.
    Slide(desk, "dimSlider", 0, 40);
    ClickListRow(desk, "themeList", int(Theme::Time));
    desk.Key(Qt::Key_Z, Qt::ControlModifier);
    ClickListRow(desk, "themeList", int(Theme::Default));
    QCOMPARE(desk.Layout().dim, 40);
}

void TestWindowPictureLooks::TheSlidersFollowTheLayout() {
    CustomDesk desk;
    Slide(desk, "blurSlider", 0, 60);
    desk.Tap("choiceSecond");
    QCOMPARE(Value(desk, "blurSlider"), 0);
    desk.Tap("btnTheme");
    Slide(desk, "dimSlider", 0, 20);
    desk.Tap("btnPortrait");
    QVERIFY(Value(desk, "dimSlider") == 0 && Value(desk, "blurSlider") == 0);
    desk.Tap("btnLandscape");
    QCOMPARE(Value(desk, "dimSlider"), 20);
    desk.Tap("btnImage");
    desk.Tap("choiceFirst");
    QVERIFY(Value(desk, "dimSlider") == 0 && Value(desk, "blurSlider") == 60);
}

void TestWindowPictureLooks::TrimmingSwitchesThemOff() {
    CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("trimButton");
    QVERIFY(!desk.Find("dimSlider")->isEnabled() && !desk.Find("blurSlider")->isEnabled());
    desk.Key(Qt::Key_Escape);
    QVERIFY(desk.Find("dimSlider")->isEnabled() && desk.Find("blurSlider")->isEnabled());
}

// No press tells of it, and the slider keeps the value that it was turned to.
void TestWindowPictureLooks::AWheelWhileTypingEndsTheTyping() {
    CustomDesk desk;
    desk.Tap("btnEdit");
    desk.DoubleTap(desk.TextZone().center());
    QVERIFY(desk.Editor()->IsTextEntryOpen());
    desk.Type(QStringLiteral("Hi"));
    auto* slider = desk.Find<QSlider>("dimSlider");
    const QPoint at = slider->rect().center();
    QWheelEvent event(at, slider->mapToGlobal(at), QPoint(), QPoint(0, 240), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(slider, &event);
    QVERIFY(!desk.Editor()->IsTextEntryOpen());
    QCOMPARE(desk.Layout().freeText, QStringLiteral("Hi"));
    QVERIFY(slider->value() == 20 && desk.Layout().dim == 20);
}

void TestWindowPictureLooks::CancelTakesThemBack() {
    CustomDesk desk;
    desk.Tap("btnEdit");
    Slide(desk, "dimSlider", 0, 50);
    desk.Tap("btnEdit_cancel");
    QVERIFY(desk.Layout().dim == 0 && Value(desk, "dimSlider") == 0);
}

void TestWindowPictureLooks::TheyHaveNamesAndTheKeyboard() {
    CustomDesk desk;
    for (const char* name : {"dimSlider", "blurSlider"}) {
        auto* slider = desk.Find<QSlider>(name);
        QVERIFY(!slider->accessibleName().isEmpty());
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(slider);
        QCOMPARE(told->role(), QAccessible::Slider);
        QCOMPARE(told->text(QAccessible::Name), slider->accessibleName());
        slider->setFocus(Qt::TabFocusReason);
        desk.Key(Qt::Key_Right);
        desk.Key(Qt::Key_PageUp);
        QCOMPARE(slider->value(), 30);
        QCOMPARE(told->valueInterface()->currentValue().toInt(), 30);
    }
    QVERIFY(desk.Layout().dim == 30 && desk.Layout().blur == 30);
    desk.Find("dimSlider")->setFocus(Qt::TabFocusReason);
    desk.Key(Qt::Key_Tab);
    QVERIFY(desk.Find("blurSlider")->hasFocus());
    desk.Key(Qt::Key_Tab);
    QVERIFY(desk.Find("pictureList")->hasFocus());
}

KIVO_TEST(TestWindowPictureLooks)
#include "tst_window_picture_looks.moc"
