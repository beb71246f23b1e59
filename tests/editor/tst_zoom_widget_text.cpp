#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>

#include "editor_test_support.h"
#include "free_text_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

class TestZoomWidgetText : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }
    void cleanup() { wideFreeText = 0; }

    void OpeningTicksTheTextAndAnEmptyOneUnticksIt() {
        Editor editor;
        QSignalSpy changed(&editor, &ZoomWidget::layoutChanged);
        QVERIFY(!editor.Layout().shown[OtherText]);
        editor.slotShowEdt();
        QVERIFY(editor.IsTextEntryOpen());
        QVERIFY(editor.TextBox().isVisible());
        QVERIFY(editor.Layout().shown[OtherText]);
        QCOMPARE(changed.size(), 1);
        editor.solteditingFinished();
        QVERIFY(!editor.TextBox().isVisible());
        QVERIFY(!editor.Layout().shown[OtherText]);
        QCOMPARE(editor.Row(), FactorySlotTable()[0]);  // it needs no slot
    }

    void AnEndedEntryKeepsItsText() {
        Editor editor;
        QSignalSpy hide(&editor, &ZoomWidget::HideColorWin);
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        editor.solteditingFinished();
        QCOMPARE(editor.Layout().freeText, Words());
        QVERIFY(editor.Layout().shown[OtherText]);
        QCOMPARE(hide.size(), 1);
        QCOMPARE(hide[0][0].toInt(), 0);
    }

    void WithoutAnOpenEntryItsEndIsNothing() {
        Editor editor;
        editor.GiveText(Words());
        editor.TextBox().setPlainText(QStringLiteral("stale"));
        QSignalSpy hide(&editor, &ZoomWidget::HideColorWin);
        editor.solteditingFinished();
        QCOMPARE(editor.Layout().freeText, Words());
        QCOMPARE(hide.size(), 0);
    }

    // The window answers HideColorWin by asking for the end of the entry.
    void WhoIsToldOfTheEndMayAskForItAgain() {
        Editor editor;
        connect(&editor, &ZoomWidget::HideColorWin, &editor, &ZoomWidget::solteditingFinished);
        editor.GiveText(Words());
        QCOMPARE(editor.Layout().freeText, Words());
    }

    void ReturnEndsEntryAndDoesNotReachTheBox_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Enter") << int(Qt::Key_Enter);
        QTest::newRow("Escape") << int(Qt::Key_Escape);
    }
    void ReturnEndsEntryAndDoesNotReachTheBox() {
        QFETCH(int, key);
        Editor editor;
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        QTest::keyClick(&editor.TextBox(), Qt::Key(key));
        QVERIFY(!editor.IsTextEntryOpen());
        QCOMPARE(editor.Layout().freeText, Words());
        QCOMPARE(editor.TextBox().toPlainText(), Words());
    }

    // The text is drawn by the preview, so the mouse is taken to where it stands there.
    void TheMouseChoosesWhatItIsDraggedOver() {
        Editor editor;
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        QWidget& page = *editor.TextBox().viewport();
        const auto send = [&page](QEvent::Type type, const QPoint& at, Qt::MouseButtons held) {
            QMouseEvent event(type, at, page.mapToGlobal(at),
                              type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, held,
                              Qt::NoModifier);
            QApplication::sendEvent(&page, &event);
            QVERIFY(event.isAccepted());
        };
        send(QEvent::MouseButtonPress, QPoint(-500, page.height() / 2), Qt::LeftButton);
        send(QEvent::MouseMove, QPoint(900, page.height() / 2), Qt::NoButton);
        QVERIFY(!editor.TextBox().textCursor().hasSelection());
        send(QEvent::MouseMove, QPoint(900, page.height() / 2), Qt::LeftButton);
        QCOMPARE(editor.TextBox().textCursor().selectedText(), Words());
        send(QEvent::MouseButtonRelease, QPoint(900, page.height() / 2), Qt::NoButton);
        // What lies below is not scrolled meanwhile.
        QWheelEvent wheel(QPointF(1, 1), QPointF(1, 1), QPoint(), QPoint(0, 120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&page, &wheel);
        QVERIFY(wheel.isAccepted());
        QVERIFY(editor.IsTextEntryOpen());
    }

    void WhatAnInputMethodComposesIsSeen() {
        Editor editor;
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        const QImage before = editor.grab().toImage();
        QInputMethodEvent composing(QStringLiteral("你好"), {});
        QApplication::sendEvent(&editor.TextBox(), &composing);
        QVERIFY(editor.grab().toImage() != before);
        QCOMPARE(editor.TextBox().toPlainText(), Words());
        QInputMethodEvent done;
        done.setCommitString(QStringLiteral("你好"));
        QApplication::sendEvent(&editor.TextBox(), &done);
        QCOMPARE(editor.TextBox().toPlainText(), Words() + QStringLiteral("你好"));
    }

    void APressAnywhereEndsEntry_data() {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<int>("button");
        QTest::newRow("on a slot") << SlotPoint(0) << int(Qt::LeftButton);
        QTest::newRow("beside the screen") << QPoint(200, 5) << int(Qt::LeftButton);
        QTest::newRow("right button") << QPoint(200, 5) << int(Qt::RightButton);
    }
    void APressAnywhereEndsEntry() {
        QFETCH(QPoint, at);
        QFETCH(int, button);
        Editor editor;
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        editor.Press(at, Qt::MouseButton(button));
        QVERIFY(!editor.IsTextEntryOpen());
        QCOMPARE(editor.Layout().freeText, Words());
    }

    void EntryEndsWithItsTextKept_data() {
        QTest::addColumn<int>("by");
        QTest::newRow("apply") << 0;
        QTest::newRow("page change with a state copied before") << 1;
        QTest::newRow("orientation") << 2;
        QTest::newRow("hiding") << 3;
        QTest::newRow("trim mode") << 4;
        QTest::newRow("editing closed") << 5;
    }
    void EntryEndsWithItsTextKept() {
        QFETCH(int, by);
        Editor editor;
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        ThemeState other = editor.Edited().themes;
        other.mode = 0;
        switch (by) {
            case 0:
                editor.CommitLayout();
                break;
            case 1:
                editor.ShowTheme(other, true);
                break;
            case 2:
                editor.SetOrientation(1);
                break;
            case 3:
                editor.hide();
                break;
            case 4:
                editor.SetTrimMode(1);
                break;
            default:
                editor.SetEditing(false);
        }
        QVERIFY(!editor.IsTextEntryOpen());
        QVERIFY(editor.TextBox().isHidden());
        const LayoutRecord& custom = editor.Edited().themes.layouts[size_t(CustomLayoutIndex(0))];
        QCOMPARE(custom.freeText, Words());
        QVERIFY(custom.shown[OtherText]);
    }

    void OpenEntryAgainKeepsWhatIsTyped() {
        Editor editor;
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        editor.SetFontColor(3);
        editor.slotShowEdt();
        QCOMPARE(editor.TextBox().toPlainText(), Words());
    }

    void TheBoxOpensAtTheCurrentRow_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("row");
        for (const Orientation orientation : kOrientations) {
            for (int row = 0; row < kTextRowCount; ++row) {
                QTest::newRow(NameOf(orientation) + ", row " + QByteArray::number(row)) << orientation << row;
            }
        }
    }
    void TheBoxOpensAtTheCurrentRow() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        Editor editor(CustomThemes(orientation), Nothing());
        editor.GiveText(Words());
        editor.MoveTextUpTo(row);
        editor.slotShowEdt();
        const QRect box = editor.TextBox().geometry();
        const QRect place = TextBoxRect(row, orientation, editor.size());
        QCOMPARE(box.left(), place.left());
        QCOMPARE(box.width(), place.width());
        QVERIFY(box.contains(DrawnIn(editor, row)));
    }

    void NoEntryOpens_data() {
        QTest::addColumn<int>("why");
        QTest::newRow("over a theme") << 0;
        QTest::newRow("while nothing is edited") << 1;
        QTest::newRow("while trimming") << 2;
    }
    void NoEntryOpens() {
        QFETCH(int, why);
        ThemeState themes = CustomThemes();
        themes.mode = why == 0 ? 0 : 1;
        Editor editor(themes);
        editor.SetEditing(why != 1);
        editor.SetTrimMode(why == 2 ? 1 : 0);
        editor.DoubleClick(QPoint(200, 180));
        QVERIFY(!editor.IsTextEntryOpen());
        if (why != 2) {  // there the tool bar's call ends trimming
            editor.slotShowEdt();
            QVERIFY(!editor.IsTextEntryOpen());
        }
    }

    // The zone is scaled but not moved, so it lies above and left of where the row is seen; that counts too.
    void ADoubleClickInTheGivenZoneOpensEntry_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<bool>("opens");
        QTest::newRow("landscape, first pixel") << kLying << QPoint(13, 155) << true;
        QTest::newRow("landscape, last pixel") << kLying << QPoint(417, 213) << true;
        QTest::newRow("landscape, above") << kLying << QPoint(13, 154) << false;
        QTest::newRow("landscape, in the row but below the zone") << kLying << QPoint(200, 230) << true;
        QTest::newRow("landscape, below the row") << kLying << QPoint(200, 252) << false;
        QTest::newRow("portrait, in the zone") << kStanding << QPoint(12, 230) << true;
        QTest::newRow("portrait, where the row is seen, right of the zone")
            << kStanding << QPoint(200, 240) << true;
        QTest::newRow("portrait, right of the row") << kStanding << QPoint(300, 240) << false;
    }
    void ADoubleClickInTheGivenZoneOpensEntry() {
        QFETCH(Orientation, orientation);
        QFETCH(QPoint, at);
        Editor editor(CustomThemes(orientation), Nothing());
        editor.DoubleClick(at);
        QTEST(editor.IsTextEntryOpen(), "opens");
    }

    void ADoubleClickOnTheDrawnTextOpensEntry_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("row");
        for (const Orientation orientation : kOrientations) {
            for (int row = 0; row < kTextRowCount; ++row) {
                QTest::newRow(NameOf(orientation) + ", row " + QByteArray::number(row)) << orientation << row;
            }
        }
    }
    void ADoubleClickOnTheDrawnTextOpensEntry() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        Editor editor(CustomThemes(orientation), Nothing());
        editor.GiveText(Words());
        editor.MoveTextUpTo(row);
        editor.DoubleClick(DrawnText(editor));
        QVERIFY(editor.IsTextEntryOpen());
        QCOMPARE(editor.TextBox().toPlainText(), Words());
    }

    void F2AndReturnOpenEntry() {
        for (const Qt::Key key : {Qt::Key_F2, Qt::Key_Return, Qt::Key_Enter}) {
            Editor editor;
            QTest::keyClick(&editor, key);
            QVERIFY(editor.IsTextEntryOpen());
        }
    }

    void TheBoxLooksLikeTheText_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("pixels");
        QTest::newRow("landscape, large") << kLying << 0 << 22;
        QTest::newRow("landscape, medium") << kLying << 1 << 20;
        QTest::newRow("landscape, small") << kLying << 2 << 16;
        QTest::newRow("portrait, large") << kStanding << 0 << 17;
        QTest::newRow("portrait, small") << kStanding << 2 << 12;
    }
    void TheBoxLooksLikeTheText() {
        QFETCH(Orientation, orientation);
        QFETCH(int, size);
        QFETCH(int, pixels);
        Editor editor(CustomThemes(orientation));
        editor.SetFontSize(size);
        editor.SetFontColor(2);
        QCOMPARE(editor.TextBox().font().pixelSize(), pixels);
        QCOMPARE(editor.TextBox().font().family(), QStringLiteral("Microsoft YaHei"));
        QCOMPARE(editor.TextBox().styleSheet(),
                 QStringLiteral("color:rgba(255,100,34,255);background:transparent;border-width:1px;"
                                "border-color:rgba(255,100,34,255);border-style:outset"));
        QCOMPARE(editor.TextBox().verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
        QVERIFY(!editor.TextBox().placeholderText().isEmpty());
    }

    // What is typed looks at once as it will; the end of the entry takes its frame away and no more.
    void NothingJumpsAtTheEnd_data() { AddRowsAndTexts(); }
    void NothingJumpsAtTheEnd() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        QFETCH(QString, text);
        Editor editor(CustomThemes(orientation), Nothing());
        QVERIFY(editor.SetBackground(QStringLiteral("://background/6.png")));  // bright: the text has a pill
        editor.GiveText(Words());
        editor.MoveTextUpTo(row);
        editor.slotShowEdt();
        editor.TextBox().setPlainText(text);
        editor.TextBox().clearFocus();  // and with it the caret
        const QImage typed = editor.grab().toImage();
        editor.SetEditing(false);  // without marks
        constexpr int kFrame = 2;
        const QRect inside = DrawnIn(editor, row).adjusted(0, kFrame, 0, -kFrame);
        QVERIFY(!inside.isEmpty());
        QVERIFY(DifferentRect(typed.copy(inside), editor.grab().toImage().copy(inside)).isNull());
    }

    void TheBoxGrowsWithItsLines() {
        for (const Orientation orientation : kOrientations) {
            Editor editor(CustomThemes(orientation), Nothing());
            editor.slotShowEdt();
            editor.TextBox().setPlainText(Words());
            const QRect least = editor.TextBox().geometry();
            editor.TextBox().setPlainText(ThreeLines());
            QVERIFY(editor.TextBox().geometry().height() > least.height());
            editor.TextBox().setPlainText(Words());
            QCOMPARE(editor.TextBox().geometry(), least);
        }
    }

    void ABoxNeverLeavesTheScreen() {
        for (const Orientation orientation : kOrientations) {
            Editor editor(CustomThemes(orientation), Nothing());
            editor.slotShowEdt();
            editor.TextBox().setPlainText(QString(40, QLatin1Char('\n')));
            const QRect canvas(QPoint(0, 0), CanvasSize(orientation));
            const QRect screen = MappingFor(orientation, editor.size()).Mapped(canvas);
            QVERIFY(screen.contains(editor.TextBox().geometry()));
        }
    }

    void TheTextIsLimited_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("wide");
        QTest::addColumn<int>("most");
        QTest::newRow("landscape") << kLying << 0 << 40;
        QTest::newRow("portrait") << kStanding << 0 << 40;
        QTest::newRow("landscape, wide") << kLying << 1 << 60;
        QTest::newRow("portrait, wide") << kStanding << 1 << 40;
    }
    void TheTextIsLimited() {
        QFETCH(Orientation, orientation);
        QFETCH(int, wide);
        QFETCH(int, most);
        wideFreeText = quint8(wide);
        Editor editor(CustomThemes(orientation));
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), QString(70, QLatin1Char('m')));
        QCOMPARE(editor.TextBox().toPlainText().size(), most);
    }

    void NothingShowsThroughTheBox_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("row");
        for (const Orientation orientation : kOrientations) {
            for (int row = 0; row < kTextRowCount; ++row) {
                QTest::newRow(NameOf(orientation) + ", row " + QByteArray::number(row)) << orientation << row;
            }
        }
    }
    // Values that change while somebody types change nothing in the box.
    void NothingShowsThroughTheBox() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        Editor editor(CustomThemes(orientation));
        editor.GiveText(Words());
        editor.MoveTextUpTo(row);
        editor.slotShowEdt();
        editor.TextBox().clearFocus();
        editor.SetLiveTexts(LiveTexts(InterfaceLanguage::Chinese)[1]);
        const QImage before = editor.grab().toImage();
        editor.SetLiveTexts(LiveTexts(InterfaceLanguage::Chinese)[3]);
        const QRect changed = DifferentRect(before, editor.grab().toImage(), 2);
        QVERIFY(!changed.isNull());  // others go on
        const QRect box = editor.TextBox().geometry();
        QVERIFY(DifferentRect(before.copy(box), editor.grab().toImage().copy(box), 2).isNull());
    }

    void ARightPressInTheBoxOpensAMenuAndKeepsTheEntry() {
        Editor editor;
        QGuiApplication::clipboard()->setText(QStringLiteral(" pasted"));
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        QWidget* const page = editor.TextBox().viewport();
        QTest::mousePress(page, Qt::RightButton, Qt::NoModifier, page->rect().center());
        QContextMenuEvent wanted(QContextMenuEvent::Mouse, page->rect().center(),
                                 page->mapToGlobal(page->rect().center()));
        QCoreApplication::sendEvent(page, &wanted);
        QVERIFY(editor.IsTextEntryOpen());
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        QCOMPARE(menu->actions().size(), 5);
        QTest::mouseRelease(page, Qt::RightButton, Qt::NoModifier, page->rect().center());
        menu->actions().at(2)->trigger();
        menu->close();
        QVERIFY(editor.IsTextEntryOpen());
        QCOMPARE(editor.TextBox().toPlainText(), Words() + QStringLiteral(" pasted"));
    }

    void AClickPutsTheCaretWhereItIs() {
        Editor editor;
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        const QRect drawn = editor.TextBox().geometry();
        QWidget* const page = editor.TextBox().viewport();
        QTest::mouseClick(page, Qt::LeftButton, Qt::NoModifier, QPoint(1, drawn.height() / 2));
        QCOMPARE(editor.TextBox().textCursor().position(), 0);
        QTest::mouseClick(page, Qt::LeftButton, Qt::NoModifier,
                          QPoint(page->width() - 2, drawn.height() / 2));
        QCOMPARE(editor.TextBox().textCursor().position(), Words().size());
        QTest::mouseDClick(page, Qt::LeftButton, Qt::NoModifier, page->rect().center());
        QCOMPARE(editor.TextBox().textCursor().selectedText(), Words());
        QTest::keyClick(&editor.TextBox(), Qt::Key_Home);
        QCOMPARE(editor.TextBox().textCursor().position(), 0);
        QTest::keyClick(&editor.TextBox(), Qt::Key_End, Qt::ShiftModifier);
        QCOMPARE(editor.TextBox().textCursor().selectedText(), Words());
    }

    void WhatIsTypedCanBeUndoneAtOnce() {
        Editor editor;
        QVERIFY(!editor.CanUndo());
        editor.slotShowEdt();
        QVERIFY(!editor.CanUndo());
        QSignalSpy told(&editor, &ZoomWidget::editStateChanged);
        QTest::keyClicks(&editor.TextBox(), Words());
        QVERIFY(told.size() > 0);
        QVERIFY(editor.CanUndo());
        editor.Undo();
        QVERIFY(!editor.IsTextEntryOpen());
        QVERIFY(editor.Layout().freeText.isEmpty());
        QVERIFY(!editor.CanUndo());
        QVERIFY(editor.CanRedo());
        editor.Redo();
        QCOMPARE(editor.Layout().freeText, Words());
    }
};

KIVO_TEST(TestZoomWidgetText)
#include "tst_zoom_widget_text.moc"
