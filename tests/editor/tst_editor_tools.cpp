// The editor with its tool bar and colour strip, wired as the window wires them.

#include <QComboBox>

#include "editor/color_bar.h"
#include "editor/edit_bar.h"
#include "editor_test_support.h"
#include "support/test_program.h"
#include "widgets/nimb_push_button.h"

using namespace kivo;
using namespace kivo::test;

namespace {

struct Tools {
    Editor editor;
    EditBar bar;
    ColorBar strip;
    QWidget keeper;  // of the connections

    Tools() {
        strip.hide();
        bar.show();
        const auto showStrip = [this](int show) {
            strip.setVisible(show != 0);
            if (show != 0) {
                editor.slotShowEdt();
            } else {
                editor.solteditingFinished();
            }
        };
        QObject::connect(&bar, &EditBar::SendEdit, &editor, &ZoomWidget::SetTrimMode);
        QObject::connect(&bar, &EditBar::SendImageReset, &editor, &ZoomWidget::Undo);
        QObject::connect(&bar, &EditBar::SendFontSize, &editor, &ZoomWidget::SetFontSize);
        QObject::connect(&strip, &ColorBar::SendFontColor, &bar, &EditBar::ControlLabelColor);
        QObject::connect(&strip, &ColorBar::SendFontColor, &editor, &ZoomWidget::SetFontColor);
        QObject::connect(&bar, &EditBar::ShowColorbarSignal, &keeper, showStrip);
        QObject::connect(&editor, &ZoomWidget::HideColorWin, &keeper, showStrip);
        QObject::connect(&editor, &ZoomWidget::UndoColorSignal, &keeper,
                         [this](int color) { bar.ControlLabelColor(quint8(color)); });
        QObject::connect(&editor, &ZoomWidget::UndoTextSize, &bar, &EditBar::slotSetFontSize);
    }

    QWidget& Part(const char* name) { return *bar.findChild<QWidget*>(QLatin1String(name)); }
    QComboBox& SizeBox() { return *bar.findChild<QComboBox*>(QStringLiteral("sizeBox")); }
    void Click(QWidget& part) { QTest::mouseClick(&part, Qt::LeftButton); }
};

}  // namespace

class TestEditorTools : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    void TheColourIndicatorOpensTextEntryAndTheStrip_data() {
        QTest::addColumn<bool>("trimming");
        QTest::newRow("from the layout") << false;
        QTest::newRow("from trim mode") << true;
    }
    void TheColourIndicatorOpensTextEntryAndTheStrip() {
        QFETCH(bool, trimming);
        Tools tools;
        if (trimming) {
            tools.Click(tools.Part("trimButton"));
            QVERIFY(tools.editor.IsTrimMode());
        }
        // The bar lets its trim button go right after it has asked for the strip.
        tools.Click(tools.Part("colorLabel"));
        QVERIFY(tools.editor.IsTextEntryOpen());
        QVERIFY(tools.strip.isVisible());
        QVERIFY(!tools.editor.IsTrimMode());
    }

    void PickingAColourShowsItEverywhereAndClosesTheStrip() {
        Tools tools;
        tools.Click(tools.Part("colorLabel"));
        tools.Click(*tools.strip.Buttons()[2]);
        QCOMPARE(tools.bar.IndicatorColor(), 2);
        QVERIFY(tools.editor.TextBox().styleSheet().contains(QStringLiteral("color:rgba(255,100,34,255)")));
        QVERIFY(!tools.strip.isVisible());
        QVERIFY(tools.editor.IsTextEntryOpen());  // to go on typing
    }

    void EndingTheEntryClosesTheStrip() {
        Tools tools;
        tools.Click(tools.Part("colorLabel"));
        QTest::keyClick(&tools.editor.TextBox(), Qt::Key_Return);
        QVERIFY(!tools.strip.isVisible());
    }

    void ASizeThatUndoSetsIsNotToldBack() {
        Tools tools;
        tools.SizeBox().setCurrentIndex(1);
        QCOMPARE(tools.editor.Layout().sizeIndex, 1);
        tools.SizeBox().setCurrentIndex(2);
        QSignalSpy size(&tools.bar, &EditBar::SendFontSize);
        tools.Click(tools.Part("backButton"));
        QCOMPARE(tools.editor.Layout().sizeIndex, 1);
        QCOMPARE(tools.SizeBox().currentIndex(), 1);
        QCOMPARE(size.size(), 0);
    }

    void AfterAnUndoOfTheColourTheNextSizeIsNotSwallowed() {
        Tools tools;
        tools.SizeBox().setCurrentIndex(1);
        tools.Click(*tools.strip.Buttons()[4]);
        tools.Click(tools.Part("backButton"));
        QCOMPARE(tools.bar.IndicatorColor(), 0);
        tools.SizeBox().setCurrentIndex(2);
        QCOMPARE(tools.editor.Layout().sizeIndex, 2);
    }

    void BackEndsTrimModeAndThenUndoes() {
        Tools tools;
        tools.Click(tools.Part("trimButton"));
        tools.editor.Wheel(480, QPoint(217, 155));
        QVERIFY(IsTrimmed(tools.editor.Layout()));
        QSignalSpy edit(&tools.bar, &EditBar::SendEdit);
        tools.Click(tools.Part("backButton"));
        QCOMPARE(edit.size(), 1);
        QCOMPARE(edit[0][0].toInt(), 0);
        QVERIFY(!tools.editor.IsTrimMode());
        QVERIFY(!IsTrimmed(tools.editor.Layout()));
    }

    void BackWhileTypingTakesTheTextAway() {
        Tools tools;
        tools.Click(tools.Part("colorLabel"));
        QTest::keyClicks(&tools.editor.TextBox(), QStringLiteral("Hello"));
        tools.Click(tools.Part("backButton"));
        QVERIFY(!tools.editor.IsTextEntryOpen());
        QVERIFY(tools.editor.Layout().freeText.isEmpty());
        QVERIFY(!tools.editor.Layout().shown[OtherText]);
    }
};

KIVO_TEST(TestEditorTools)
#include "tst_editor_tools.moc"
