#include <QAbstractItemView>
#include <QSignalSpy>
#include <QWindow>
#include <QtTest>
#include <memory>

#include "editor/edit_bar.h"
#include "support/test_program.h"
#include "widgets/nimb_push_button.h"
#include "widgets/press_combobox.h"
#include "widgets/press_label.h"

using namespace kivo;

namespace {

// Stands for the window, which would be dragged by what reaches it.
class PressCounter : public QWidget {
public:
    int count = 0;

protected:
    void mousePressEvent(QMouseEvent* /*event*/) override { ++count; }
};

}  // namespace

class TestEditBar : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_bar = std::make_unique<EditBar>();
        m_log.clear();
        const auto note = [this](const char* what) {
            return [this, what](quint8 value) {
                m_log << QStringLiteral("%1 %2").arg(QLatin1String(what)).arg(value);
            };
        };
        connect(m_bar.get(), &EditBar::SendEdit, this, note("edit"));
        connect(m_bar.get(), &EditBar::SendFontSize, this, note("size"));
        connect(m_bar.get(), &EditBar::SendFontColor, this, note("color"));
        connect(m_bar.get(), &EditBar::ShowColorbarSignal, this, note("strip"));
        connect(m_bar.get(), &EditBar::SendImageReset, this, [this] { m_log << QStringLiteral("back"); });
        connect(m_bar.get(), &EditBar::SizeClicked, this,
                [this] { m_log << QStringLiteral("size clicked"); });
        m_bar->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_bar.get()));
    }

    void showsWhatItHas() {
        QCOMPARE(m_bar->size(), QSize(433, 40));
        QCOMPARE(Sizes()->count(), 3);
        QCOMPARE(Sizes()->itemText(0), QStringLiteral("大"));
        QCOMPARE(Sizes()->itemText(1), QStringLiteral("中"));
        QCOMPARE(Sizes()->itemText(2), QStringLiteral("小"));
        QCOMPARE(Trim()->text(), QStringLiteral("修剪"));
        QCOMPARE(Back()->text(), QStringLiteral("返回"));
        QCOMPARE(m_bar->IndicatorColor(), 0);
        QCOMPARE(Trim()->font().family(), QStringLiteral("Microsoft YaHei"));
    }

    void theColourButtonsOfItsOwnStayHidden() {
        int hidden = 0;
        for (const NimbPushButton* button : m_bar->findChildren<NimbPushButton*>()) {
            if (button->isHidden()) {
                ++hidden;
            }
        }
        QCOMPARE(hidden, 6);
        Choices().first()->show();
        m_bar->HideColourChoices(1);
        QVERIFY(Choices().first()->isHidden());
    }

    void aHiddenColourButtonStillSendsItsColour() {
        Choices().at(3)->click();
        QCOMPARE(m_log, QStringList{QStringLiteral("color 3")});
        QCOMPARE(m_bar->IndicatorColor(), 3);
    }

    void trimTellsItsState() {
        QTest::mouseClick(Trim(), Qt::LeftButton);
        QVERIFY(Trim()->IsPressed());
        QTest::mouseClick(Trim(), Qt::LeftButton);
        QVERIFY(!Trim()->IsPressed());
        QCOMPARE(m_log, Words("edit 1,edit 0"));
    }

    void trimTellsItsStateWhenTheMouseIsLetGoElsewhere() {
        QTest::mousePress(Trim(), Qt::LeftButton);
        QTest::mouseRelease(Trim(), Qt::LeftButton, Qt::NoModifier, QPoint(-20, -20));
        QVERIFY(Trim()->IsPressed());
        QCOMPARE(m_log, Words("edit 1"));
    }

    void trimWorksByKey() {
        QTest::keyClick(Trim(), Qt::Key_Space);
        QVERIFY(Trim()->IsPressed());
        QCOMPARE(m_log, Words("edit 1"));
    }

    void backFirstEndsTrimming() {
        QTest::mouseClick(Trim(), Qt::LeftButton);
        m_log.clear();
        QTest::mouseClick(Back(), Qt::LeftButton);
        QCOMPARE(m_log, Words("edit 0,back"));
        QVERIFY(!Trim()->IsPressed());
    }

    void redoFirstEndsTrimmingToo() {
        QSignalSpy redo(m_bar.get(), &EditBar::SendRedo);
        QTest::mouseClick(Trim(), Qt::LeftButton);
        m_log.clear();
        QTest::mouseClick(Redo(), Qt::LeftButton);
        QCOMPARE(m_log, Words("edit 0"));
        QCOMPARE(redo.size(), 1);
        QVERIFY(!Trim()->IsPressed());
    }

    void withoutAStepThereIsNothingToPress() {
        QSignalSpy redo(m_bar.get(), &EditBar::SendRedo);
        m_bar->SetWays(false, false);
        QTest::mouseClick(Back(), Qt::LeftButton);
        QTest::mouseClick(Redo(), Qt::LeftButton);
        QCOMPARE(m_log, QStringList());
        m_bar->SetWays(true, false);
        QTest::mouseClick(Back(), Qt::LeftButton);
        QCOMPARE(m_log, Words("edit 0,back"));
        m_bar->SetWays(false, true);
        QTest::mouseClick(Redo(), Qt::LeftButton);
        QCOMPARE(redo.size(), 1);
    }

    void theIndicatorAsksForTheStrip() {
        m_bar->SetEditPressed(true);
        QTest::mouseClick(Indicator(), Qt::LeftButton);
        QCOMPARE(m_log, Words("strip 1,edit 0"));
        QVERIFY(!Trim()->IsPressed());
        m_log.clear();
        QTest::mouseClick(Indicator(), Qt::RightButton);
        QCOMPARE(m_log, QStringList());
    }

    void theChooserTellsAndEndsTrimming() {
        m_bar->SetEditPressed(true);
        QTest::mousePress(Sizes(), Qt::LeftButton);
        QCOMPARE(m_log, Words("size clicked,edit 0"));
        QVERIFY(!Trim()->IsPressed());
        QVERIFY(Sizes()->view()->isVisible());
    }

    void setEditPressed() {
        m_bar->SetEditPressed(true);
        QVERIFY(Trim()->IsPressed());
        QCOMPARE(m_log, QStringList());
        m_bar->SetEditPressed(false);
        QVERIFY(!Trim()->IsPressed());
        QCOMPARE(m_log, Words("edit 0"));
    }

    void aPersonsSizeIsTold() {
        QTest::ignoreMessage(QtDebugMsg, "slotFontsizeCurIndex = 1 \n");
        QTest::keyClick(Sizes(), Qt::Key_Down);
        QCOMPARE(m_log, Words("size 1"));
    }

    void aSizeFromTheProgramIsNotTold() {
        m_bar->slotSetFontSize(2);
        QCOMPARE(Sizes()->currentIndex(), 2);
        QCOMPARE(m_log, QStringList());
        QTest::keyClick(Sizes(), Qt::Key_Up);
        QCOMPARE(m_log, Words("size 1"));
    }

    void aSizeThatIsSetAlreadySwallowsNothing_data() {
        QTest::addColumn<int>("index");
        QTest::newRow("the same") << 0;
        QTest::newRow("below the list") << -1;
        QTest::newRow("beyond the list") << 3;
    }
    void aSizeThatIsSetAlreadySwallowsNothing() {
        QFETCH(int, index);
        m_bar->slotSetFontSize(index);
        QCOMPARE(Sizes()->currentIndex(), 0);
        QTest::keyClick(Sizes(), Qt::Key_Down);
        QCOMPARE(m_log, Words("size 1"));
    }

    void aRestoredSizeIsToldWhenItIsAChange() {
        m_bar->SetFontSizeIndex(1);
        QCOMPARE(Sizes()->currentIndex(), 1);
        QCOMPARE(m_log, Words("size 1"));
        m_bar->SetFontSizeIndex(1);
        QCOMPARE(m_log.count(), 1);
        m_bar->SetFontSizeIndex(7);
        QCOMPARE(Sizes()->currentIndex(), 1);
    }

    void theIndicatorShowsTheColour_data() {
        QTest::addColumn<int>("color");
        QTest::addColumn<int>("shown");
        for (int color = 0; color < kTextColorCount; ++color) {
            QTest::addRow("colour %d", color) << color << color;
        }
        QTest::newRow("none such") << 6 << 5;
        QTest::newRow("far out") << 255 << 5;
    }
    void theIndicatorShowsTheColour() {
        QFETCH(int, color);
        QFETCH(int, shown);
        m_bar->ControlLabelColor(5);
        m_bar->ControlLabelColor(quint8(color));
        QCOMPARE(m_bar->IndicatorColor(), shown);
        QCOMPARE(Indicator()->grab().toImage().pixelColor(10, 10).rgb(), FreeTextColor(shown).rgb());
        QCOMPARE(m_log, QStringList());
    }

    void theChooserCanBeSwitchedOff() {
        m_bar->SetSizeEnabled(false);
        QVERIFY(!Sizes()->isEnabled());
        m_bar->SetSizeEnabled(true);
        QVERIFY(Sizes()->isEnabled());
    }

    void everythingHasANameAndComesWithTheTabKey() {
        const QList<QWidget*> stops{Sizes(), Indicator(), Trim(), Back()};
        for (const QWidget* stop : stops) {
            QVERIFY(stop->focusPolicy() & Qt::TabFocus);
            QVERIFY(!stop->toolTip().isEmpty());
        }
        QVERIFY(!Sizes()->accessibleName().isEmpty());
        QVERIFY(!Indicator()->accessibleName().isEmpty());
    }

    void strangersDoNothing() {
        m_bar->btn_clicked();
        m_bar->label_clicked();
        m_bar->combo_clicked();
        QCOMPARE(m_log, QStringList());
    }

    void aPressBesideTheToolsEndsHere_data() {
        QTest::addColumn<QPoint>("place");
        QTest::newRow("ground") << QPoint(200, 35);
        QTest::newRow("colour dot") << QPoint(130, 20);
        QTest::newRow("tool that is off") << QPoint(290, 20);
    }
    void aPressBesideTheToolsEndsHere() {
        QFETCH(QPoint, place);
        PressCounter window;
        auto* const bar = new EditBar(&window);
        bar->findChild<NimbPushButton*>(QStringLiteral("trimButton"))->SetButtonEnabled(false);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
        QCOMPARE(window.count, 0);
    }

private:
    static QStringList Words(const char* commaSeparated) {
        return QString::fromLatin1(commaSeparated).split(QLatin1Char(','));
    }

    PressCombobox* Sizes() const { return m_bar->findChild<PressCombobox*>(); }
    PressLabel* Indicator() const { return m_bar->findChild<PressLabel*>(); }
    NimbPushButton* Trim() const { return m_bar->findChild<NimbPushButton*>(QStringLiteral("trimButton")); }
    NimbPushButton* Back() const { return m_bar->findChild<NimbPushButton*>(QStringLiteral("backButton")); }
    NimbPushButton* Redo() const { return m_bar->findChild<NimbPushButton*>(QStringLiteral("redoButton")); }
    QList<NimbPushButton*> Choices() const {
        return m_bar->findChildren<NimbPushButton*>(QStringLiteral("colourChoice"));
    }

    std::unique_ptr<EditBar> m_bar;
    QStringList m_log;
};

KIVO_TEST(TestEditBar)
#include "tst_edit_bar.moc"
