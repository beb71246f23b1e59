#include <QCheckBox>
#include <QSignalSpy>
#include <QtTest>

#include "support/pressed_by_program.h"
#include "support/test_program.h"
#include "widgets/choice_group.h"
#include "widgets/kit_accessibility.h"
#include "widgets/nimb_push_button.h"
#include "widgets/press_label.h"

using namespace kivo;
using namespace kivo::test;

namespace {

QAccessibleInterface* ToldOf(QWidget& widget) {
    return QAccessible::queryAccessibleInterface(&widget);
}

}  // namespace

class TestKitAccessibility : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { InstallKitAccessibility(); }

    void aButtonIsNamedByItsTextOrItsName() {
        NimbPushButton button(QStringLiteral("Apply"));
        QCOMPARE(ToldOf(button)->role(), QAccessible::Button);
        QCOMPARE(ToldOf(button)->text(QAccessible::Name), QStringLiteral("Apply"));
        button.setAccessibleName(QStringLiteral("Send it"));
        QCOMPARE(ToldOf(button)->text(QAccessible::Name), QStringLiteral("Send it"));
        button.setToolTip(QStringLiteral("to the screen"));
        QCOMPARE(ToldOf(button)->text(QAccessible::Description), QStringLiteral("to the screen"));
    }

    void oneOfSeveralIsARadioButton() {
        NimbPushButton button;
        button.SetToggleMode(true);
        QCOMPARE(ToldOf(button)->role(), QAccessible::CheckBox);
        button.SetExclusive(true);
        QCOMPARE(ToldOf(button)->role(), QAccessible::RadioButton);
        button.SetPressed(true);
        QVERIFY(ToldOf(button)->state().checked);
    }

    void aPressIsAClick_data() {
        QTest::addColumn<QString>("action");
        QTest::newRow("press") << QAccessibleActionInterface::pressAction();
        QTest::newRow("toggle") << QAccessibleActionInterface::toggleAction();
    }
    void aPressIsAClick() {
        QFETCH(QString, action);
        NimbPushButton button;
        QCheckBox box;
        PressLabel label;
        QSignalSpy buttonClicked(&button, &QAbstractButton::clicked);
        QSignalSpy boxClicked(&box, &QAbstractButton::clicked);
        QSignalSpy labelClicked(&label, &PressLabel::clicked);
        for (QWidget* widget : std::initializer_list<QWidget*>{&button, &box, &label}) {
            widget->resize(40, 20);
            widget->show();
            ToldOf(*widget)->actionInterface()->doAction(action);
        }
        QCOMPARE(buttonClicked.size(), 1);
        QCOMPARE(boxClicked.size(), 1);
        QVERIFY(box.isChecked() && ToldOf(box)->state().checked);
        QCOMPARE(labelClicked.size(), action == QAccessibleActionInterface::pressAction() ? 1 : 0);
    }

    void whatNobodyCanPressOffersNothing_data() {
        QTest::addColumn<bool>("shown");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QSize>("size");
        QTest::newRow("hidden") << false << true << QSize(40, 20);
        QTest::newRow("off") << true << false << QSize(40, 20);
        QTest::newRow("of no size") << true << true << QSize(0, 0);
    }
    void whatNobodyCanPressOffersNothing() {
        QFETCH(bool, shown);
        QFETCH(bool, enabled);
        QFETCH(QSize, size);
        QWidget window;
        window.show();
        auto* const button = new NimbPushButton(&window);
        auto* const box = new QCheckBox(&window);
        auto* const label = new PressLabel(&window);
        label->setFocusPolicy(Qt::TabFocus);
        QSignalSpy buttonClicked(button, &QAbstractButton::clicked);
        QSignalSpy boxClicked(box, &QAbstractButton::clicked);
        QSignalSpy labelClicked(label, &PressLabel::clicked);
        for (QWidget* widget : std::initializer_list<QWidget*>{button, box, label}) {
            widget->resize(40, 20);
            widget->show();
            QVERIFY(OffersPress(ToldOf(*widget)));
            widget->setFixedSize(size);
            widget->setVisible(shown);
            widget->setEnabled(enabled);
            QAccessibleActionInterface* const actions = ToldOf(*widget)->actionInterface();
            QCOMPARE(actions->actionNames(), QStringList());
            actions->doAction(QAccessibleActionInterface::pressAction());
            actions->doAction(QAccessibleActionInterface::toggleAction());
        }
        QCOMPARE(buttonClicked.size() + boxClicked.size() + labelClicked.size(), 0);
    }

    void theKeysCanBeGivenToAButton() {
        NimbPushButton button;
        button.show();
        button.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&button));
        button.clearFocus();
        ToldOf(button)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        QTRY_VERIFY(button.hasFocus());
    }

    void aLabelThatOpensSomethingSaysWhetherItIsOpen() {
        PressLabel label;
        QCOMPARE(ToldOf(label)->role(), QAccessible::Button);
        QVERIFY(!ToldOf(label)->state().expandable);
        label.SetOpens(PressLabel::Opens::Closed);
        QVERIFY(ToldOf(label)->state().expandable && ToldOf(label)->state().collapsed);
        label.SetOpens(PressLabel::Opens::Open);
        QVERIFY(ToldOf(label)->state().expanded && !ToldOf(label)->state().collapsed);
    }

    void aGroupHoldsItsChoices() {
        ChoiceGroup group;
        group.setAccessibleName(QStringLiteral("Orientation"));
        const NimbPushButton lying(&group);
        const NimbPushButton standing(&group);
        QCOMPARE(ToldOf(group)->role(), QAccessible::Grouping);
        QCOMPARE(ToldOf(group)->text(QAccessible::Name), QStringLiteral("Orientation"));
        QCOMPARE(ToldOf(group)->childCount(), 2);
        QVERIFY(!OffersPress(ToldOf(group)));
    }
};

KIVO_TEST(TestKitAccessibility)
#include "tst_kit_accessibility.moc"
