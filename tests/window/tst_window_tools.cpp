#include "support/custom_page_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// The tools of the custom page: colour, size, trim and the way back.
class TestWindowTools : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void ToolsAreThereWhileEditing();
    void WiresOfTheToolBar();
    void WiresOfTheColorStrip();
    void WiresOfTheEditor();
    void PickingAColorShowsItAndClosesTheStrip();
    void PickingAColorByKeyboardLeavesTheText();
    void ClosingTheStripByKeyboardLeavesTheText();
    void IndicatorEndsTrimAndOpensText();
    void SizeByHandIsTaken();
    void SizeByProgramIsNotEchoed();
    void UndoGoesBackStepByStep();
    void BackEndsTrimThenUndoes();
    void TrimFrameIsMovedByMouse_data();
    void TrimFrameIsMovedByMouse();
    void TrimFrameIsSizedByItsCorners_data();
    void TrimFrameIsSizedByItsCorners();
    void TrimByWheelAndKeys();
    void TrimByKeysWhereverTheFocusIs();
    void RemoteResetsTheTrim();
};

void TestWindowTools::initTestCase() {
    PrepareApplication();
}

void TestWindowTools::init() {
    SetUpFactoryLayouts();
}

void TestWindowTools::ToolsAreThereWhileEditing() {
    const CustomDesk desk;
    QCOMPARE(desk.Tools()->pos(), QPoint(48, 58));
    QCOMPARE(desk.Tools()->size(), QSize(433, 40));
    QCOMPARE(desk.Colors()->pos(), QPoint(60, 82));
    QVERIFY(!desk.Tools()->isVisible());
    QVERIFY(!desk.Colors()->isVisible());
    desk.Tap("btnEdit");
    QVERIFY(desk.Tools()->isVisible());
    QVERIFY(!desk.Colors()->isVisible());
    for (const char* leave : {"btnEdit_cancel", "btnTheme", "btnApply"}) {
        desk.Tap("btnImage");
        if (!desk.Editor()->IsEditing()) {
            desk.Tap("btnEdit");
        }
        desk.Tap("colorLabel");
        QVERIFY(desk.Colors()->isVisible());
        desk.Tap(leave);
        QVERIFY2(!desk.Tools()->isVisible(), leave);
        QVERIFY2(!desk.Colors()->isVisible(), leave);
        QVERIFY2(!desk.Editor()->IsEditing(), leave);
    }
}

void TestWindowTools::WiresOfTheToolBar() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    EditBar* tools = desk.Tools();
    Q_EMIT tools->SendEdit(1);
    QVERIFY(desk.Editor()->IsTrimMode());
    QVERIFY(desk.Find("btnRemote")->isVisible());
    Q_EMIT tools->SendEdit(0);
    QVERIFY(!desk.Editor()->IsTrimMode());
    QVERIFY(!desk.Find("btnRemote")->isVisible());

    Q_EMIT tools->SendFontSize(2);
    QCOMPARE(desk.Layout().sizeIndex, 2);
    Q_EMIT tools->SendImageReset();
    QCOMPARE(desk.Layout().sizeIndex, 0);

    Q_EMIT tools->ShowColorbarSignal(1);
    QVERIFY(desk.Colors()->isVisible());
    QVERIFY(desk.TextBox()->isVisible());
    Q_EMIT tools->SizeClicked();
    QVERIFY(!desk.Colors()->isVisible());
    QVERIFY(desk.TextBox()->isVisible());
    Q_EMIT tools->ShowColorbarSignal(1);
    Q_EMIT tools->ShowColorbarSignal(0);
    QVERIFY(!desk.Colors()->isVisible());
    QVERIFY(!desk.TextBox()->isVisible());

    // Colours reach the editor through the strip only.
    Q_EMIT tools->SendFontColor(4);
    QCOMPARE(desk.Layout().colorIndex, 0);
}

void TestWindowTools::WiresOfTheColorStrip() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    for (int color = kTextColorCount - 1; color >= 0; --color) {
        Q_EMIT desk.Colors()->SendFontColor(quint8(color));
        QCOMPARE(desk.Tools()->IndicatorColor(), color);
        QCOMPARE(desk.Layout().colorIndex, color);
    }
}

void TestWindowTools::WiresOfTheEditor() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    ZoomWidget* editor = desk.Editor();
    Q_EMIT editor->UndoColorSignal(5);
    QCOMPARE(desk.Tools()->IndicatorColor(), 5);
    QSignalSpy sizes(desk.Tools(), &EditBar::SendFontSize);
    Q_EMIT editor->UndoTextSize(2);
    QCOMPARE(desk.SizeBox()->currentIndex(), 2);
    QCOMPARE(sizes.count(), 0);
    QCOMPARE(desk.Layout().colorIndex, 0);
    QCOMPARE(desk.Layout().sizeIndex, 0);

    desk.Tap("colorLabel");
    Q_EMIT editor->HideColorWin(0);
    QVERIFY(!desk.Colors()->isVisible());

    QWidget* remote = desk.Find("btnRemote");
    Q_EMIT editor->HideRemote(0);
    QVERIFY(!remote->isVisible());  // in trim mode only
    desk.Tap("trimButton");
    QVERIFY(remote->isVisible());
    Q_EMIT editor->HideRemote(1);
    QVERIFY(!remote->isVisible());
    Q_EMIT editor->HideRemote(0);
    QVERIFY(remote->isVisible());
}

void TestWindowTools::PickingAColorShowsItAndClosesTheStrip() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    for (int color = 0; color < kTextColorCount; ++color) {
        desk.PickColor(color);
        QVERIFY(!desk.Colors()->isVisible());
        QCOMPARE(desk.Tools()->IndicatorColor(), color);
        QCOMPARE(desk.Layout().colorIndex, color);
        const QColor shown = FreeTextColor(color);
        QVERIFY(desk.TextBox()->styleSheet().contains(QStringLiteral("color:rgba(%1,%2,%3,255)")
                                                          .arg(shown.red())
                                                          .arg(shown.green())
                                                          .arg(shown.blue())));
        // Typing goes on where it was.
        QVERIFY(desk.Editor()->IsTextEntryOpen());
        desk.Type(QString::number(color));
    }
    desk.Key(Qt::Key_Return);
    QCOMPARE(desk.Layout().freeText, QStringLiteral("012345"));
    QCOMPARE(desk.Layout().colorIndex, kTextColorCount - 1);
}

void TestWindowTools::PickingAColorByKeyboardLeavesTheText() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("colorLabel");
    desk.Colors()->Buttons()[3]->setFocus(Qt::TabFocusReason);
    desk.Key(Qt::Key_Space);
    QVERIFY(!desk.Colors()->isVisible());
    QCOMPARE(desk.Layout().colorIndex, 3);
    desk.Type(QStringLiteral("on"));
    desk.Key(Qt::Key_Return);
    QCOMPARE(desk.Layout().freeText, QStringLiteral("on"));
    QVERIFY(desk.Editor()->Shown().custom);
}

void TestWindowTools::ClosingTheStripByKeyboardLeavesTheText() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("colorLabel");
    desk.Colors()->Buttons()[3]->setFocus(Qt::TabFocusReason);
    desk.Key(Qt::Key_Escape);
    QVERIFY(!desk.Colors()->isVisible());
    desk.Type(QStringLiteral("on"));
    desk.Key(Qt::Key_Return);
    QCOMPARE(desk.Layout().freeText, QStringLiteral("on"));
    QVERIFY(desk.Editor()->Shown().custom);
}

void TestWindowTools::IndicatorEndsTrimAndOpensText() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("trimButton");
    QVERIFY(desk.Editor()->IsTrimMode());
    desk.Tap("colorLabel");
    QVERIFY(!desk.Editor()->IsTrimMode());
    QVERIFY(!desk.Find<NimbPushButton>("trimButton")->IsPressed());
    QVERIFY(desk.Colors()->isVisible());
    QVERIFY(desk.Editor()->IsTextEntryOpen());
    QVERIFY(!desk.Find("btnRemote")->isVisible());
    // And the other way round.
    desk.Tap("trimButton");
    QVERIFY(!desk.Colors()->isVisible());
    QVERIFY(!desk.Editor()->IsTextEntryOpen());
    QVERIFY(desk.Find("btnRemote")->isVisible());
}

void TestWindowTools::SizeByHandIsTaken() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("colorLabel");
    QSignalSpy sizes(desk.Tools(), &EditBar::SendFontSize);
    for (int size : {2, 1, 0, 1}) {
        desk.PickSize(size);
        QCOMPARE(sizes.count(), 1);
        QCOMPARE(sizes.takeFirst().at(0).toInt(), size);
        QCOMPARE(desk.Layout().sizeIndex, size);
        QCOMPARE(desk.TextBox()->font().pixelSize(), TextBoxPixelSize(size, Orientation::Landscape));
        // The strip gives way to the list; the text that is being typed stays, with the keyboard.
        QVERIFY(!desk.Colors()->isVisible());
        QVERIFY(desk.Editor()->IsTextEntryOpen());
        desk.Type(QString::number(size));
    }
    QCOMPARE(desk.TextBox()->toPlainText(), QStringLiteral("2101"));
}

void TestWindowTools::SizeByProgramIsNotEchoed() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.PickSize(2);
    desk.PickColor(1);
    QSignalSpy sizes(desk.Tools(), &EditBar::SendFontSize);
    desk.Tap("backButton");  // the colour: the size stays what it is
    QCOMPARE(desk.SizeBox()->currentIndex(), 2);
    desk.Tap("backButton");  // the size
    QCOMPARE(desk.SizeBox()->currentIndex(), 0);
    QCOMPARE(desk.Layout().sizeIndex, 0);
    QCOMPARE(sizes.count(), 0);
    // Cancelling and turning set it too.
    desk.Tap("btnPortrait");
    desk.Tap("btnEdit_cancel");
    desk.Tap("btnEdit");
    desk.Tap("btnLandscape");
    QCOMPARE(sizes.count(), 0);
    // None of it swallows what a person does next.
    desk.PickSize(1);
    QCOMPARE(sizes.count(), 1);
    QCOMPARE(desk.Layout().sizeIndex, 1);
}

void TestWindowTools::UndoGoesBackStepByStep() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    const EditState loaded = desk.Editor()->Edited();
    QVector<EditState> steps{loaded};
    const auto done = [&] { steps.append(desk.Editor()->Edited()); };
    desk.Tick(1);
    done();
    desk.Drag(desk.SlotPlace(1), desk.SlotPlace(4));
    done();
    desk.WriteText(QStringLiteral("step"));
    done();
    desk.PickColor(2);
    desk.Key(Qt::Key_Return);
    done();
    desk.PickSize(1);
    done();
    desk.Drag(desk.RowPlace(2), desk.RowPlace(0));
    done();
    desk.ClickRow("pictureList", 4);
    done();
    desk.Tap("trimButton");
    desk.Wheel(desk.Editor()->rect().center(), 1);
    desk.Wheel(desk.Editor()->rect().center(), 2);  // one gesture
    done();
    for (int step = steps.size() - 1; step > 0; --step) {
        QVERIFY(steps[step] != steps[step - 1]);
        QVERIFY2(desk.Editor()->Edited() == steps[step], qPrintable(QString::number(step)));
        desk.Tap("backButton");
        const LayoutRecord& layout = desk.Layout();
        QCOMPARE(desk.Tools()->IndicatorColor(), layout.colorIndex);
        QCOMPARE(desk.SizeBox()->currentIndex(), layout.sizeIndex);
    }
    QVERIFY(desk.Editor()->Edited() == loaded);
    desk.Tap("backButton");
    QVERIFY(desk.Editor()->Edited() == loaded);
    QCOMPARE(desk.Boxes(), (QVector<int>{1, 2, 3, 4, 5}));
}

void TestWindowTools::BackEndsTrimThenUndoes() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("trimButton");
    desk.Wheel(desk.Editor()->rect().center(), 3);
    QVERIFY(IsTrimmed(desk.Layout()));
    QStringList order;
    connect(desk.Tools(), &EditBar::SendEdit, desk.Tools(), [&](quint8 on) {
        order.append(QStringLiteral("edit %1 %2").arg(on).arg(IsTrimmed(desk.Layout())));
    });
    connect(desk.Tools(), &EditBar::SendImageReset, desk.Tools(), [&] {
        order.append(QStringLiteral("reset"));
        QVERIFY(!desk.Editor()->IsTrimMode());
    });
    desk.Tap("backButton");
    QCOMPARE(order, (QStringList{QStringLiteral("edit 0 1"), QStringLiteral("reset")}));
    QVERIFY(!IsTrimmed(desk.Layout()));
    QVERIFY(!desk.Editor()->IsTrimMode());
    QVERIFY(!desk.Find<NimbPushButton>("trimButton")->IsPressed());
}

void TestWindowTools::TrimFrameIsMovedByMouse_data() {
    QTest::addColumn<int>("orientation");
    QTest::newRow("lying") << 0;
    QTest::newRow("standing") << 1;
}

void TestWindowTools::TrimFrameIsMovedByMouse() {
    QFETCH(int, orientation);
    SetUpFactoryLayouts(orientation);
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("trimButton");
    desk.Wheel(desk.Editor()->rect().center(), 6);
    const QRectF before = desk.TrimPlace();
    const LayoutRecord start = desk.Layout();
    QWidget* remote = desk.Find("btnRemote");
    QVERIFY(remote->isVisible());
    // Away from the button that lies over the editor.
    const QPoint from = before.topLeft().toPoint() + QPoint(30, 30);
    desk.Press(desk.Editor(), from);
    QVERIFY(!remote->isVisible());
    desk.Move(desk.Editor(), from + QPoint(9, 4));
    QVERIFY(!remote->isVisible());
    QVERIFY(desk.Layout() == start);  // not before it is let go
    desk.Release(desk.Editor(), from + QPoint(9, 4));
    QVERIFY(remote->isVisible());
    const QRectF after = desk.TrimPlace();
    QVERIFY(qAbs(after.left() - before.left() - 9) <= 1.5);
    QVERIFY(qAbs(after.top() - before.top() - 4) <= 1.5);
    QCOMPARE(desk.Layout().xZoom, start.xZoom);
    // Never off the picture.
    desk.Drag(desk.TrimPlace().center().toPoint(), QPoint(1, 1));
    desk.Drag(desk.TrimPlace().topLeft().toPoint() + QPoint(30, 30), QPoint(1, 1));
    const QRectF kept = desk.TrimPlace();
    QVERIFY(kept.left() >= -1 && kept.top() >= -1);
}

void TestWindowTools::TrimFrameIsSizedByItsCorners_data() {
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("corner");
    for (int corner = 0; corner < 4; ++corner) {
        QTest::addRow("lying, corner %d", corner) << 0 << corner;
        QTest::addRow("standing, corner %d", corner) << 1 << corner;
    }
}

void TestWindowTools::TrimFrameIsSizedByItsCorners() {
    QFETCH(int, orientation);
    QFETCH(int, corner);
    SetUpFactoryLayouts(orientation);
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("trimButton");
    desk.Wheel(desk.Editor()->rect().center(), 6);
    const QRectF before = desk.TrimPlace();
    const std::array<QPointF, 4> corners{before.topLeft(), before.topRight(), before.bottomLeft(),
                                         before.bottomRight()};
    const int inwards = corner < 2 ? 10 : -10;
    const QPoint from = corners.at(size_t(corner)).toPoint();
    desk.Drag(from, from + QPoint(0, inwards));
    const QRectF after = desk.TrimPlace();
    QVERIFY(qAbs(before.height() - after.height() - 10) <= 2);
    // The opposite corner stays, and so does the shape.
    const QPointF moved = corner == 0   ? after.bottomRight() - before.bottomRight()
                          : corner == 1 ? after.bottomLeft() - before.bottomLeft()
                          : corner == 2 ? after.topRight() - before.topRight()
                                        : after.topLeft() - before.topLeft();
    QVERIFY(qAbs(moved.x()) <= 2 && qAbs(moved.y()) <= 2);
    const QSizeF panel = CanvasSize(Orientation(orientation));
    QVERIFY(qAbs(after.width() / after.height() - panel.width() / panel.height()) < 0.02);
}

void TestWindowTools::TrimByWheelAndKeys() {
    const CustomDesk desk;
    const LayoutRecord untrimmed = desk.Layout();
    desk.Tap("btnEdit");
    desk.Wheel(desk.Editor()->rect().center(), 3);
    QVERIFY(desk.Layout() == untrimmed);  // in trim mode only
    desk.Tap("trimButton");
    desk.Wheel(desk.Editor()->rect().center(), 5);
    const LayoutRecord zoomed = desk.Layout();
    QCOMPARE(zoomed.xZoom, 40);
    // The keyboard is with the frame, though the mouse was on the tool bar.
    desk.Key(Qt::Key_Right);
    QCOMPARE(desk.Layout().xPt, zoomed.xPt + 1);
    desk.Key(Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(desk.Layout().yPt, zoomed.yPt + 10);
    desk.Key(Qt::Key_Left);
    desk.Key(Qt::Key_Up, Qt::ShiftModifier);
    QVERIFY(desk.Layout() == zoomed);
    desk.Key(Qt::Key_Plus);
    QCOMPARE(desk.Layout().xZoom, 44);
    desk.Key(Qt::Key_Minus);
    QCOMPARE(desk.Layout().xZoom, 40);
    desk.Wheel(desk.Editor()->rect().center(), -20);
    QCOMPARE(desk.Layout().xZoom, 0);
    desk.Wheel(desk.Editor()->rect().center(), 100);
    QCOMPARE(desk.Layout().xZoom, kLargestInset);
}

void TestWindowTools::TrimByKeysWhereverTheFocusIs() {
    const CustomDesk desk;
    desk.Tap("btnEdit");
    // By keyboard alone: the frame has the arrows as soon as it is there.
    desk.Find("trimButton")->setFocus(Qt::TabFocusReason);
    desk.Key(Qt::Key_Space);
    QVERIFY(desk.Editor()->IsTrimming());
    desk.Key(Qt::Key_Plus);
    const LayoutRecord zoomed = desk.Layout();
    QVERIFY(zoomed.xZoom > 0);
    desk.Key(Qt::Key_Right);
    QCOMPARE(desk.Layout().xPt, zoomed.xPt + 1);
    // A button takes no plus and no escape, so these reach the frame.
    desk.Find("btnApply")->setFocus(Qt::TabFocusReason);
    desk.Key(Qt::Key_Plus);
    QVERIFY(desk.Layout().xZoom > zoomed.xZoom);
    desk.Find("pictureList")->setFocus(Qt::TabFocusReason);
    desk.Key(Qt::Key_Escape);
    QVERIFY(!desk.Editor()->IsTrimming());
    QVERIFY(desk.Editor()->IsEditing());
}

void TestWindowTools::RemoteResetsTheTrim() {
    CustomDesk desk;
    QWidget* remote = desk.Find("btnRemote");
    QVERIFY(!remote->isVisible());
    desk.Tap("btnEdit");
    QVERIFY(!remote->isVisible());
    desk.Tap("trimButton");
    QVERIFY(remote->isVisible());
    desk.Wheel(desk.Editor()->rect().center(), 4);
    const LayoutRecord trimmed = desk.Layout();
    desk.Tap("btnRemote");
    QVERIFY(!IsTrimmed(desk.Layout()));
    QVERIFY(desk.Editor()->IsTrimMode());
    QVERIFY(remote->isVisible());
    // A step that can be taken back.
    desk.Tap("backButton");
    QVERIFY(desk.Layout() == trimmed);
    QVERIFY(!remote->isVisible());
    desk.ApplyAndCompare();
    QVERIFY(!remote->isVisible());
}

KIVO_TEST(TestWindowTools)
#include "tst_window_tools.moc"
