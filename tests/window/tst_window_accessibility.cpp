#include "support/custom_page_test_support.h"
#include "support/person.h"
#include "support/pressed_by_program.h"
#include "support/test_program.h"
#include "widgets/choice_group.h"

using namespace kivo;
using namespace kivo::test;

// What assistive programs have of the window, and what they can do there.
class TestWindowAccessibility : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void init() { SetUpFactoryLayouts(); }
    void WhateverTakesKeysHasAName_data() { AddLocales(); }
    void WhateverTakesKeysHasAName();
    void WhatNobodySeesCannotBePressed();
    void ChoicesAreRadioButtons();
    void GroupsSayWhatIsChosen_data() { AddLocales(); }
    void GroupsSayWhatIsChosen();
    void TheColourDotIsAButtonThatOpensTheColours();
    void BuiltInPicturesHaveNamesOfTheirOwn_data();
    void BuiltInPicturesHaveNamesOfTheirOwn();
    void ARowThatIsSelectedIsChosen();
    void ATickByProgramIsAClick();
    void ATickWithoutASlotSaysWhy();
    void TheEditorIsWorkedByKeyboard();
    void NoKeyIsTrapped();

private:
    static void AddLocales();
};

namespace {

QAccessibleInterface* ToldOf(QObject* object) {
    return QAccessible::queryAccessibleInterface(object);
}

// The window's own, without those of windows that belong to it.
QVector<QWidget*> WidgetsOf(const Desk& desk) {
    QVector<QWidget*> own;
    for (QWidget* widget : desk.window->findChildren<QWidget*>()) {
        if (widget->window() == desk.window.get()) {
            own.append(widget);
        }
    }
    return own;
}

// Themes, custom page, editing, typing, trimming: each is looked at.
template <typename Look>
void OnEveryPage(const CustomDesk& desk, Look look) {
    desk.Tap("btnTheme");
    look();
    desk.Tap("btnImage");
    look();
    desk.Tap("btnEdit");
    look();
    desk.Tap("trimButton");
    look();
    desk.Tap("trimButton");
    desk.Tap("colorLabel");
    look();
}

QString NameOf(QObject* object) {
    return ToldOf(object)->text(QAccessible::Name);
}

}  // namespace

void TestWindowAccessibility::AddLocales() {
    QTest::addColumn<QString>("locale");
    for (const char* locale : {"zh_CN", "en_US", "ru_RU"}) {
        QTest::newRow(locale) << QString::fromLatin1(locale);
    }
}

void TestWindowAccessibility::WhateverTakesKeysHasAName() {
    QFETCH(QString, locale);
    const CustomDesk desk{QLocale(locale)};
    int looked = 0;
    OnEveryPage(desk, [&] {
        for (QWidget* widget : WidgetsOf(desk)) {
            if (widget->isVisible() && widget->focusPolicy() != Qt::NoFocus) {
                QVERIFY2(!NameOf(widget).isEmpty(), qPrintable(widget->objectName()));
                QVERIFY2(!widget->size().isEmpty(), qPrintable(widget->objectName()));
                ++looked;
            }
        }
    });
    QVERIFY(looked > 60);
}

void TestWindowAccessibility::WhatNobodySeesCannotBePressed() {
    const CustomDesk desk;
    int looked = 0;
    OnEveryPage(desk, [&] {
        for (QWidget* widget : WidgetsOf(desk)) {
            QAccessibleInterface* const told = ToldOf(widget);
            if (told == nullptr || (widget->isVisible() && !widget->size().isEmpty())) {
                continue;
            }
            if (widget == desk.SizeBox()) {
                // Qt's own interface always offers it.
                Press(told);
                QVERIFY(QApplication::activePopupWidget() == nullptr);
                continue;
            }
            QVERIFY2(!OffersPress(told), qPrintable(widget->objectName()));
            QVERIFY2(!widget->isVisible(), qPrintable(widget->objectName()));
            ++looked;
        }
    });
    QVERIFY(looked > 60);
}

void TestWindowAccessibility::ChoicesAreRadioButtons() {
    const CustomDesk desk;
    const char* const pairs[][2]{
        {"btnTheme", "btnImage"}, {"choiceFirst", "choiceSecond"}, {"btnLandscape", "btnPortrait"}};
    for (const auto& pair : pairs) {
        QAccessibleInterface* const first = ToldOf(desk.Find(pair[0]));
        QAccessibleInterface* const second = ToldOf(desk.Find(pair[1]));
        QCOMPARE(first->role(), QAccessible::RadioButton);
        QCOMPARE(second->role(), QAccessible::RadioButton);
        for (QAccessibleInterface* const wanted : {first, second, second, first}) {
            Press(wanted);
            QVERIFY(wanted->state().checked);
            QVERIFY(first->state().checked != second->state().checked);
        }
        Press(second);
    }
    // What they stand for came with it.
    const ThemeState& themes = desk.Editor()->Edited().themes;
    QCOMPARE(themes.mode, 1);
    QCOMPARE(themes.customStyle, 1);
    QCOMPARE(themes.orientation, Orientation::Portrait);
}

void TestWindowAccessibility::GroupsSayWhatIsChosen() {
    QFETCH(QString, locale);
    const CustomDesk desk{QLocale(locale)};
    QStringList names;
    for (const char* page : {"btnTheme", "btnImage"}) {
        desk.Tap(page);
        if (!desk.Editor()->Edited().themes.mode) {
            desk.ClickRow("themeList", int(Theme::Scene));  // the one with two sizes of the date
        }
        for (ChoiceGroup* group : desk.window->findChildren<ChoiceGroup*>()) {
            QAccessibleInterface* const told = ToldOf(group);
            QCOMPARE(told->role(), QAccessible::Grouping);
            QCOMPARE(told->childCount(), 2);
            for (int index = 0; index < 2; ++index) {
                QCOMPARE(told->child(index)->role(), QAccessible::RadioButton);
                QVERIFY(!told->child(index)->text(QAccessible::Name).isEmpty());
                QVERIFY(told->rect().contains(told->child(index)->rect()));
            }
            names.append(NameOf(group));
        }
    }
    names.removeDuplicates();
    QCOMPARE(names.size(), 3);  // orientation, number of items, size of the date
    QVERIFY(!names.contains(QString()));
}

void TestWindowAccessibility::TheColourDotIsAButtonThatOpensTheColours() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    QAccessibleInterface* const dot = ToldOf(desk.Find("colorLabel"));
    QCOMPARE(dot->role(), QAccessible::Button);
    QVERIFY(dot->state().expandable && dot->state().collapsed && !dot->state().expanded);
    Press(dot);
    QVERIFY(desk.Colors()->isVisible());
    QVERIFY(dot->state().expanded && !dot->state().collapsed);
    Press(ToldOf(desk.Colors()->Buttons().at(3)));
    QCOMPARE(desk.Layout().colorIndex, 3);
    QVERIFY(!desk.Colors()->isVisible() && dot->state().collapsed);
    QCOMPARE(dot->text(QAccessible::Description), ColorName(3));
    Press(dot);
    Press(dot);
    QVERIFY(!desk.Colors()->isVisible() && dot->state().collapsed);
}

void TestWindowAccessibility::BuiltInPicturesHaveNamesOfTheirOwn_data() {
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("names");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN")
                             << QStringLiteral("黎明 极光 沙丘 海岸 港湾 剪纸 星云 晨雾 丝绸 等高线 轨道");
    QTest::newRow("English") << QStringLiteral("en_US")
                             << QStringLiteral(
                                    "Dawn Aurora Dunes Shore Harbour Paper Nebula Mist Silk Contours Orbit");
    QTest::newRow("Russian")
        << QStringLiteral("ru_RU")
        << QStringLiteral("Рассвет Сияние Дюны Берег Гавань Бумага Туманность Туман Шёлк Изолинии Орбита");
}

void TestWindowAccessibility::BuiltInPicturesHaveNamesOfTheirOwn() {
    QFETCH(QString, locale);
    QFETCH(QString, names);
    const CustomDesk desk{QLocale(locale)};
    auto* const list = desk.Find<QListWidget>("pictureList");
    QStringList told;
    for (int row = 1; row < list->count(); ++row) {
        told.append(ToldOf(list)->child(row)->text(QAccessible::Name));
        QCOMPARE(list->item(row)->text(), QCoreApplication::translate("kivo::PictureList", "默认图片"));
    }
    QCOMPARE(told, names.split(QLatin1Char(' ')));
}

// Selecting is all that a program can do with a row.
void TestWindowAccessibility::ARowThatIsSelectedIsChosen() {
    const CustomDesk desk;
    const auto select = [&desk](const char* list, int row) {
        ToldOf(desk.Find(list))
            ->child(row)
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::toggleAction());
    };
    select("pictureList", 4);
    QTRY_COMPARE(desk.Layout().picture, QStringLiteral("://background/4.jpg"));
    QCOMPARE(desk.Find<QListWidget>("pictureList")->currentRow(), 4);
    desk.Tap("btnTheme");
    select("themeList", 2);
    QTRY_COMPARE(desk.Editor()->Edited().themes.theme, 2);
    QCOMPARE(desk.Find<QListWidget>("themeList")->currentRow(), 2);
}

void TestWindowAccessibility::ATickByProgramIsAClick() {
    const CustomDesk desk;
    auto* const box = desk.Find<QCheckBox>("check2");
    QVERIFY(box->isChecked());
    ToldOf(box)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    QVERIFY(!box->isChecked());
    const SlotRow row = desk.Slots();
    QVERIFY(std::find(row.begin(), row.end(), int(CpuUsage)) == row.end());
    QVERIFY(!IsShown(desk.Editor()->Shown(), CpuUsage));
}

void TestWindowAccessibility::ATickWithoutASlotSaysWhy() {
    const CustomDesk desk;
    const auto said = [&desk](const char* box) {
        return ToldOf(desk.Find(box))->text(QAccessible::Description);
    };
    // The factory's five slots are taken: a sixth item has no place, those five have.
    const QString full = QCoreApplication::translate("MainWindow", "五个位置已满：先取消一项，再勾选此项");
    QVERIFY(said("check7").contains(full));
    QCOMPARE(desk.Find("check7")->toolTip(), said("check7"));
    QVERIFY(!said("check2").contains(full));
    desk.Tick(2);
    const QString usual = said("check7");
    QVERIFY(!usual.isEmpty() && !usual.contains(full));
    desk.Tick(7);
    QCOMPARE(said("check7"), usual);
    QVERIFY(said("check2").contains(full));
    // One item takes the place of the other.
    desk.Tap("choiceSecond");
    for (const char* box : {"check1", "check2", "check7"}) {
        QVERIFY(!said(box).contains(full));
    }
}

void TestWindowAccessibility::TheEditorIsWorkedByKeyboard() {
    const CustomDesk desk;
    const SlotRow before = desk.Slots();
    desk.Find("btnEdit")->setFocus(Qt::TabFocusReason);
    desk.Key(Qt::Key_Space);
    QVERIFY(desk.Editor()->IsEditing() && desk.Editor()->hasFocus());
    // Temperature and power change places.
    desk.Key(Qt::Key_Left);
    desk.Key(Qt::Key_Space);
    desk.Key(Qt::Key_Right);
    desk.Key(Qt::Key_Right);
    desk.Key(Qt::Key_Space);
    QCOMPARE(desk.Slots()[4], before[0]);
    QCOMPARE(desk.Slots()[0], before[4]);
    desk.Key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(desk.Slots(), before);
    desk.Key(Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(desk.Slots()[4], before[0]);
    desk.Key(Qt::Key_Return);
    QVERIFY(desk.Editor()->IsTextEntryOpen());
    desk.Type(QStringLiteral("Kivo"));
    desk.Key(Qt::Key_Escape);
    QCOMPARE(desk.Layout().freeText, QStringLiteral("Kivo"));
    QVERIFY(desk.Editor()->hasFocus());
    const int row = desk.Editor()->Edited().textRow;
    desk.Key(Qt::Key_PageUp);
    QCOMPARE(desk.Editor()->Edited().textRow, row - 1);
    QVERIFY(TabTo(desk, "trimButton"));
    desk.Key(Qt::Key_Return);
    QVERIFY(desk.Editor()->IsTrimming());
    QVERIFY(TabTo(desk, "zoomwidget"));
    desk.Key(Qt::Key_Plus);
    QVERIFY(IsTrimmed(desk.Layout()));
    desk.Key(Qt::Key_Escape);
    QVERIFY(!desk.Editor()->IsTrimming() && desk.Editor()->hasFocus());
    QVERIFY(TabTo(desk, "btnEdit_cancel"));
    desk.Key(Qt::Key_Return);
    QCOMPARE(desk.Slots(), before);
    QVERIFY(!IsTrimmed(desk.Layout()));
}

// Tab leads on from everything, also from the text that is typed and from the colours.
void TestWindowAccessibility::NoKeyIsTrapped() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Key(Qt::Key_F2);
    QVERIFY(desk.TextBox()->hasFocus());
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        QVector<QWidget*> seen;
        QWidget* const first = QApplication::focusWidget();
        do {
            seen.append(QApplication::focusWidget());
            desk.Key(key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
            QVERIFY2(QApplication::focusWidget() != seen.last(), qPrintable(seen.last()->objectName()));
        } while (QApplication::focusWidget() != first && seen.size() < 100);
        QVERIFY(seen.size() > 15 && seen.size() < 100);
        QVERIFY(desk.Editor()->IsTextEntryOpen());
    }
    desk.Tap("colorLabel");
    QVERIFY(TabTo(desk, "colorLabel"));
    desk.Key(Qt::Key_Tab);
    desk.Key(Qt::Key_Escape);
}

KIVO_TEST(TestWindowAccessibility)
#include "tst_window_accessibility.moc"
