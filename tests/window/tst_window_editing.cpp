#include <QClipboard>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>

#include "support/contrast.h"
#include "support/custom_page_test_support.h"
#include "support/person.h"
#include "support/test_program.h"
#include "support/told_states.h"
#include "widgets/focus_ring.h"
#include "widgets/window_colors.h"

using namespace kivo;
using namespace kivo::test;

// How editing feels: what ends it, what opens it, and what the window says meanwhile.
class TestWindowEditing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void init() { SetUpFactoryLayouts(); }
    void PasteIsReachedByTheRightButton_data() { AddLocales(); }
    void PasteIsReachedByTheRightButton();
    void APressElsewhereEndsTheTyping_data();
    void APressElsewhereEndsTheTyping();
    void TheToolsBelongToTheTyping();
    void ASecondPressOnTheDotClosesTheStrip();
    void UndoAndRedoAreOffWithoutSteps();
    void KeysUndoWhereverTheFocusIs();
    void UndoLeavesTheOtherLayoutsRow();
    void ADragOpensEditing();
    void EscapeLeavesTrimming();
    void ATickWithoutASlotSaysWhy_data() { AddLocales(); }
    void ATickWithoutASlotSaysWhy();
    void ACutTextIsTold();
    void HintsFitTheirPlace_data() { AddLocales(); }
    void HintsFitTheirPlace();
    void NothingHasTwoFocusRings();
    void WhatCouldNotBeSavedIsNotSaved();

private:
    static void AddLocales() {
        QTest::addColumn<QString>("locale");
        for (const char* locale : kLocales) {
            QTest::newRow(locale) << QString::fromLatin1(locale);
        }
    }
};

namespace {

QLabel* HintOf(const CustomDesk& desk) {
    return desk.Find<QLabel>("editHint");
}

bool IsOn(const CustomDesk& desk, const char* button) {
    return desk.Find<NimbPushButton>(button)->isEnabled();
}

}  // namespace

void TestWindowEditing::PasteIsReachedByTheRightButton() {
    QFETCH(QString, locale);
    const CustomDesk desk{QLocale(locale)};
    desk.Tap("btnEdit");
    desk.Tap("colorLabel");
    desk.Type(QStringLiteral("one"));
    QGuiApplication::clipboard()->setText(QStringLiteral(" two"));
    QWindow* const window = desk.window->windowHandle();
    const QPoint at = desk.TextBox()->mapTo(desk.window.get(), desk.TextBox()->rect().center());
    QTest::mousePress(window, Qt::RightButton, Qt::NoModifier, at);
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(menu != nullptr);
    QVERIFY(desk.Editor()->IsTextEntryOpen());
    QVERIFY(desk.Colors()->isVisible());

    // In the language of the window, and light on dark.
    const QMap<QString, QString> paste{{QStringLiteral("zh_CN"), QStringLiteral("粘贴")},
                                       {QStringLiteral("en_US"), QStringLiteral("Paste")},
                                       {QStringLiteral("ru_RU"), QStringLiteral("Вставить")}};
    QAction* const action = menu->actions().at(2);
    QCOMPARE(action->text(), paste.value(locale));
    const QRect row = menu->actionGeometry(action);
    QVERIFY(ContrastIn(CutOut(menu->grab().toImage(), row.adjusted(8, 2, -8, -2))) >= 4.5);

    // Where it was pressed, which is no row: one that is released over is chosen.
    QTest::mouseRelease(menu->windowHandle(), Qt::RightButton, Qt::NoModifier, QPoint(1, 1));
    QTest::mouseClick(menu->windowHandle(), Qt::LeftButton, Qt::NoModifier, row.center());
    QTRY_VERIFY(QApplication::activePopupWidget() == nullptr);
    QVERIFY(desk.Editor()->IsTextEntryOpen());
    QCOMPARE(desk.TextBox()->toPlainText(), QStringLiteral("one two"));
    desk.Type(QStringLiteral("!"));
    desk.Key(Qt::Key_Return);
    QCOMPARE(desk.Layout().freeText, QStringLiteral("one two!"));
}

void TestWindowEditing::APressElsewhereEndsTheTyping_data() {
    QTest::addColumn<QPoint>("at");
    QTest::newRow("head of the window") << QPoint(300, 20);
    QTest::newRow("left card") << QPoint(40, 515);
    QTest::newRow("heading") << QPoint(560, 112);
    QTest::newRow("between the check boxes") << QPoint(880, 240);
    QTest::newRow("picture list") << QPoint(905, 300);
    QTest::newRow("foot") << QPoint(480, 570);
    QTest::newRow("beside the screen") << QPoint(400, 125);
}

void TestWindowEditing::APressElsewhereEndsTheTyping() {
    QFETCH(QPoint, at);
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("colorLabel");
    desk.Type(QStringLiteral("kept"));
    QTest::mousePress(desk.window->windowHandle(), Qt::LeftButton, Qt::NoModifier, at);
    QVERIFY(!desk.Editor()->IsTextEntryOpen());
    QVERIFY(!desk.Colors()->isVisible());
    QCOMPARE(desk.Layout().freeText, QStringLiteral("kept"));
    QTest::mouseRelease(desk.window->windowHandle(), Qt::LeftButton, Qt::NoModifier, at);
    QVERIFY(desk.Editor()->IsEditing());
}

void TestWindowEditing::TheToolsBelongToTheTyping() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("colorLabel");
    desk.Type(QStringLiteral("go"));
    desk.Tap(desk.Tools(), QPoint(20, 20));  // the type icon
    QVERIFY(desk.Editor()->IsTextEntryOpen());
    desk.PickSize(2);
    QVERIFY(desk.Editor()->IsTextEntryOpen());
    desk.PickColor(4);
    QVERIFY(desk.Editor()->IsTextEntryOpen());
    desk.Type(QStringLiteral(" on"));
    desk.Key(Qt::Key_Return);
    QCOMPARE(desk.Layout().freeText, QStringLiteral("go on"));
}

void TestWindowEditing::ASecondPressOnTheDotClosesTheStrip() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("colorLabel");
    QVERIFY(desk.Colors()->isVisible());
    desk.Tap("colorLabel");
    QVERIFY(!desk.Colors()->isVisible());
    desk.Type(QStringLiteral("on"));
    QCOMPARE(desk.TextBox()->toPlainText(), QStringLiteral("on"));
    desk.Tap("colorLabel");
    QVERIFY(desk.Colors()->isVisible());
}

void TestWindowEditing::UndoAndRedoAreOffWithoutSteps() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    QVERIFY(!IsOn(desk, "backButton") && !IsOn(desk, "redoButton"));
    desk.Tick(1);
    QVERIFY(IsOn(desk, "backButton") && !IsOn(desk, "redoButton"));
    desk.Tap("backButton");
    QVERIFY(!IsOn(desk, "backButton") && IsOn(desk, "redoButton"));
    QCOMPARE(desk.Boxes(), (QVector<int>{1, 2, 3, 4, 5}));
    desk.Tap("redoButton");
    QVERIFY(IsOn(desk, "backButton") && !IsOn(desk, "redoButton"));
    QCOMPARE(desk.Boxes(), (QVector<int>{2, 3, 4, 5}));
    // Each layout has its own.
    desk.Tap("choiceSecond");
    QVERIFY(!IsOn(desk, "backButton") && !IsOn(desk, "redoButton"));
    desk.Tap("choiceFirst");
    QVERIFY(IsOn(desk, "backButton"));
    // A text that is typed can be taken back at once.
    desk.Tap("choiceSecond");
    desk.Tap("colorLabel");
    QVERIFY(!IsOn(desk, "backButton"));
    desk.Type(QStringLiteral("x"));
    QVERIFY(IsOn(desk, "backButton"));
    desk.Tap("btnEdit_cancel");
    desk.Tap("btnEdit");
    QVERIFY(!IsOn(desk, "backButton") && !IsOn(desk, "redoButton"));
}

void TestWindowEditing::KeysUndoWhereverTheFocusIs() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    for (const char* focus : {"zoomwidget", "pictureList", "btnApply", "check2"}) {
        desk.Tick(1);
        QCOMPARE(desk.Boxes(), (QVector<int>{2, 3, 4, 5}));
        desk.Find(focus)->setFocus();
        desk.Key(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(desk.Boxes(), (QVector<int>{1, 2, 3, 4, 5}));
        desk.Key(Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(desk.Boxes(), (QVector<int>{2, 3, 4, 5}));
        desk.Key(Qt::Key_Z, Qt::ControlModifier);
        desk.Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(desk.Boxes(), (QVector<int>{2, 3, 4, 5}));
        desk.Key(Qt::Key_Z, Qt::ControlModifier);
    }
}

void TestWindowEditing::UndoLeavesTheOtherLayoutsRow() {
    SetUpEmptyLayouts();
    const CustomDesk desk;
    desk.WriteText(QStringLiteral("first"));
    desk.Tap("choiceSecond");
    desk.WriteText(QStringLiteral("second"));
    desk.Drag(desk.RowPlace(2), desk.RowPlace(0));
    QCOMPARE(desk.Editor()->Edited().textRow, 0);
    desk.Tap("choiceFirst");
    desk.Tap("backButton");
    QCOMPARE(desk.Layout().freeText, QString());
    QCOMPARE(desk.Editor()->Edited().textRow, 0);
}

void TestWindowEditing::ADragOpensEditing() {
    const CustomDesk desk;
    const SlotRow before = desk.Slots();
    const QPoint window = desk.window->pos();
    desk.Tap(desk.Editor(), desk.SlotPlace(0));
    QVERIFY(!desk.Editor()->IsEditing());  // a click
    desk.Drag(desk.SlotPlace(0), desk.SlotPlace(4));
    QVERIFY(desk.Editor()->IsEditing());
    QVERIFY(desk.Tools()->isVisible());
    QCOMPARE(desk.Slots()[4], before[0]);
    QCOMPARE(desk.Slots()[0], before[4]);
    QCOMPARE(desk.window->pos(), window);
    QVERIFY(IsOn(desk, "backButton"));
    desk.Tap("btnEdit_cancel");
    QCOMPARE(desk.Slots(), before);
}

void TestWindowEditing::EscapeLeavesTrimming() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("trimButton");
    desk.Wheel(desk.Editor()->rect().center(), 3);
    desk.Key(Qt::Key_Escape);
    QVERIFY(!desk.Editor()->IsTrimMode());
    QVERIFY(desk.Editor()->IsEditing());
    QVERIFY(!desk.Find<NimbPushButton>("trimButton")->IsPressed());
    QVERIFY(!desk.Find("btnRemote")->isVisible());
    QVERIFY(IsTrimmed(desk.Layout()));
    desk.Tap("trimButton");
    QVERIFY(desk.Editor()->IsTrimMode());
}

void TestWindowEditing::ATickWithoutASlotSaysWhy() {
    QFETCH(QString, locale);
    const CustomDesk desk{QLocale(locale)};
    QLabel* const hint = HintOf(desk);
    QVERIFY(!hint->isVisible());
    desk.Tick(7);  // ticked, but all five places are taken
    QVERIFY(hint->isVisible());
    const QString why = hint->text();
    QVERIFY(hint->sizeHint().width() <= hint->width());
    QVERIFY(ContrastIn(CutOut(desk.window->grab().toImage(), hint->geometry())) >= 4.5);
    desk.Tick(7);
    QVERIFY(!hint->isVisible());
    desk.Tick(7);
    desk.WriteText(QStringLiteral("x"));
    QVERIFY(hint->text() != why);
    desk.Tick(6);  // joins the time
    QVERIFY(hint->text() != why);
    desk.Tick(4);
    desk.Tick(6);
    desk.Tick(6);  // refused
    QCOMPARE(desk.Boxes().contains(6), hint->text() != why);
}

void TestWindowEditing::ACutTextIsTold() {
    SetUpFactoryLayouts(1);
    const CustomDesk desk;
    desk.ClickRow("pictureList", 3);
    desk.WriteText(QStringLiteral("short"));
    const QString usual = HintOf(desk)->text();
    desk.Tap("colorLabel");
    const QString typing = HintOf(desk)->text();
    QVERIFY(typing != usual);
    desk.Type(QString(40, QChar(0x4F60)));
    QVERIFY(HintOf(desk)->text() != typing);
    desk.Key(Qt::Key_Return);
    QVERIFY(HintOf(desk)->text() != usual);
}

void TestWindowEditing::HintsFitTheirPlace() {
    QFETCH(QString, locale);
    const CustomDesk desk{QLocale(locale)};
    const QLabel* const hint = HintOf(desk);
    const auto fits = [hint] { return hint->isVisible() && hint->sizeHint().width() <= hint->width(); };
    desk.Tap("btnEdit");
    QVERIFY(fits());
    for (const char* button : {"btnEdit_cancel", "btnApply", "btnPortrait"}) {
        const QWidget* const other = desk.Find(button);
        const QRect place(other->mapTo(hint->parentWidget(), QPoint()), other->size());
        QVERIFY(!place.intersects(hint->geometry()));
    }
    QVERIFY(hint->geometry().bottom() <= 532);
    desk.Tap("trimButton");
    QVERIFY(fits());
    desk.Tap("colorLabel");
    QVERIFY(fits());
    desk.Tap("choiceSecond");
    QVERIFY(fits());
    desk.Tap("btnEdit_cancel");
    QVERIFY(!hint->isVisible());
}

void TestWindowEditing::NothingHasTwoFocusRings() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    auto* const ring = desk.window->findChild<FocusRing*>();
    desk.Find("btnApply")->setFocus();
    QVERIFY(TabTo(desk, "zoomwidget"));
    QCOMPARE(ring->RingedWidget(), desk.Editor());
    // The editor draws none of its own: the line at its edge is the case's.
    const QImage focused = desk.Editor()->grab().toImage();
    const QRgb accent = window_colors::kAccentBright.rgb();
    for (int x = 0; x < focused.width(); ++x) {
        QVERIFY(focused.pixel(x, 1) != accent);
    }
    desk.Key(Qt::Key_F2);
    QVERIFY(desk.TextBox()->hasFocus());
    QVERIFY(ring->RingedWidget() == nullptr);  // it has a frame in that colour
    desk.Key(Qt::Key_Return);
    QCOMPARE(ring->RingedWidget(), desk.Editor());
}

void TestWindowEditing::WhatCouldNotBeSavedIsNotSaved() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Drag(desk.SlotPlace(0), desk.SlotPlace(4));
    const EditState saved = desk.Editor()->Saved();
    // A file in the folder's place: even the superuser cannot write into it.
    const QString folder = SettingsFolder();
    const QString away = folder + QStringLiteral(".away");
    QVERIFY(QDir().rename(folder, away));
    QVERIFY(QFile(folder).open(QFile::WriteOnly));
    desk.Tap("btnApply");
    QCOMPARE(desk.Editor()->Saved(), saved);
    QCOMPARE(desk.Find<QLabel>("stateText")->text(), QStringLiteral("Settings could not be saved"));
    QVERIFY(QFile::remove(folder));
    QVERIFY(QDir().rename(away, folder));
    desk.Tap("btnApply");
    QCOMPARE(desk.Editor()->Saved(), desk.Editor()->Edited());
    QCOMPARE(LoadSlotTable(), desk.Editor()->Edited().slotTable);
}

KIVO_TEST(TestWindowEditing)
#include "tst_window_editing.moc"
