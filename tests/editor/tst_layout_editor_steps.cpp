#include <QRandomGenerator>

#include "layout_editor_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

QString Words() {
    return QStringLiteral("Hello");
}

QString Other() {
    return QStringLiteral("://background/7.jpg");
}

}  // namespace

// Undo and redo.
class TestLayoutEditorSteps : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    void UndoGoesBackToTheLoadedStateAndNoFurther() {
        Hands hand;
        const EditState loaded = hand.editor.Edited();
        hand.editor.SetColor(3);
        hand.Drag(SlotPoint(0), SlotPoint(4));
        hand.editor.SetSize(2);
        hand.GiveText(Words());
        hand.editor.SetPicture(Other());
        for (int step = 0; step < 5; ++step) {
            QVERIFY(hand.editor.Edited() != loaded);
            QVERIFY(hand.editor.Undo());
        }
        QCOMPARE(hand.editor.Edited(), loaded);
        QVERIFY(!hand.editor.CanUndo());
        QVERIFY(!hand.editor.Undo());
        QCOMPARE(hand.editor.Edited(), loaded);
    }

    void AnotherLayoutHasItsOwnWayBack() {
        Hands hand;
        hand.editor.SetColor(3);
        hand.ShowVariant(1);
        QVERIFY(!hand.editor.Undo());
        QCOMPARE(hand.editor.Edited().themes.layouts[size_t(CustomLayoutIndex(0))].colorIndex, 3);
    }

    void TypingAloneIsNoStep() {
        Hands hand;
        hand.editor.BeginText();
        QVERIFY(hand.Layout().shown[OtherText]);
        QVERIFY(hand.editor.WouldChangeText(Words()));
        QVERIFY(!hand.editor.WouldChangeText(QStringLiteral(" \n")));
        hand.editor.EndText(QString());
        QVERIFY(!hand.Layout().shown[OtherText]);
        QVERIFY(!hand.editor.CanUndo());
    }

    void WhatIsUndoneCanBeRedone() {
        Hands hand;
        hand.editor.SetColor(3);
        hand.GiveText(Words());
        hand.editor.SetTextRow(1);
        const EditState end = hand.editor.Edited();
        while (hand.editor.Undo()) {
        }
        QVERIFY(hand.editor.CanRedo());
        while (hand.editor.Redo()) {
        }
        QCOMPARE(hand.editor.Edited(), end);
        QVERIFY(!hand.editor.CanRedo());
    }

    void ANewEditEndsWhatCouldBeRedone() {
        Hands hand;
        hand.editor.SetColor(3);
        hand.editor.Undo();
        hand.editor.SetSize(2);
        QVERIFY(!hand.editor.CanRedo());
        QVERIFY(!hand.editor.Redo());
        QCOMPARE(hand.Layout().colorIndex, 0);
    }

    void LookingAtAnotherPageKeepsWhatCanBeRedone() {
        Hands hand;
        hand.editor.SetColor(3);
        hand.editor.Undo();
        hand.ShowVariant(1);
        hand.ShowVariant(0);
        hand.editor.Turn(Orientation::Portrait);
        QVERIFY(hand.editor.Redo());
        QCOMPARE(hand.Layout().colorIndex, 3);
    }

    // The row is one for both layouts.
    void UndoInOneLayoutLeavesTheRowThatTheOtherMoved() {
        Hands hand;
        hand.editor.SetColor(3);
        hand.ShowVariant(1);
        hand.GiveText(Words());
        hand.editor.SetTextRow(0);
        hand.ShowVariant(0);
        QVERIFY(hand.editor.Undo());
        QCOMPARE(hand.Layout().colorIndex, 0);
        QCOMPARE(hand.editor.TextRow(), 0);
        QVERIFY(hand.editor.Redo());
        QCOMPARE(hand.editor.TextRow(), 0);
        // The layout in which it was moved puts it back.
        hand.ShowVariant(1);
        QVERIFY(hand.editor.Undo());
        QCOMPARE(hand.editor.TextRow(), 2);
        QVERIFY(hand.editor.Redo());
        QCOMPARE(hand.editor.TextRow(), 0);
    }

    void ARowThatBothMovedBelongsToTheLastOne() {
        Hands hand;
        hand.GiveText(Words());
        hand.editor.SetTextRow(1);
        hand.ShowVariant(1);
        hand.GiveText(Words());
        hand.editor.SetTextRow(0);
        hand.ShowVariant(0);
        while (hand.editor.Undo()) {
            QCOMPARE(hand.editor.TextRow(), 0);
        }
        while (hand.editor.Redo()) {
            QCOMPARE(hand.editor.TextRow(), 0);
        }
        QCOMPARE(hand.Layout().freeText, Words());
    }

    void Monkey_data() {
        QTest::addColumn<quint32>("seed");
        for (const quint32 seed : {1U, 22U, 333U, 4444U}) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }
    // Edits without a plan in both layouts; then everything undone and redone gives the same states.
    void Monkey() {
        QFETCH(quint32, seed);
        QRandomGenerator dice(seed);
        Hands hand;
        const auto point = [&dice] { return QPoint(dice.bounded(-10, 445), dice.bounded(-10, 325)); };
        const int events = qEnvironmentVariableIntValue("KIVO_MONKEY_EVENTS") > 0
                               ? qEnvironmentVariableIntValue("KIVO_MONKEY_EVENTS")
                               : 500;
        for (int event = 0; event < events; ++event) {
            switch (dice.bounded(14)) {
                case 0:
                    hand.editor.SetColor(dice.bounded(-1, 8));
                    break;
                case 1:
                    hand.editor.SetSize(dice.bounded(-1, 5));
                    break;
                case 2:
                    hand.GiveText(QString(dice.bounded(30), QLatin1Char('x')));
                    break;
                case 3:
                    hand.editor.SetTrim(QRectF(dice.bounded(40), dice.bounded(20), 280, 148.75),
                                        EditHistory::Kind::Zoom);
                    break;
                case 4:
                    hand.editor.ClearTrim();
                    break;
                case 5:
                    hand.editor.SetPicture(QStringLiteral("://background/%1.jpg").arg(dice.bounded(1, 5)));
                    break;
                case 6:
                    hand.ShowVariant(dice.bounded(2));
                    break;
                case 7:
                    hand.editor.Turn(Orientation(dice.bounded(2)));
                    hand.drag.SetWidgetSize(EditorSize(hand.editor.Lying()));
                    break;
                case 8:
                    hand.editor.Undo();
                    break;
                case 9:
                    hand.editor.Redo();
                    break;
                case 10: {
                    const int kind = kLiveItems[size_t(dice.bounded(int(kLiveItems.size())))];
                    const bool isOn = hand.editor.Variant() == 0 ? hand.Layout().shown[size_t(kind)]
                                                                 : hand.editor.Slots()[kCentreSlot] == kind;
                    if (isOn || hand.editor.MayTick(kind)) {
                        hand.editor.SetItem(kind, !isOn);
                    }
                    break;
                }
                case 11:
                    hand.drag.Key(dice.bounded(2) == 0 ? Qt::Key_PageUp : Qt::Key_PageDown);
                    break;
                default:
                    hand.Drag(point(), point());
            }
            CheckSense(hand.editor);
            if (QTest::currentTestFailed()) {
                qWarning("After event %d.", event);
                return;
            }
        }
        for (const int variant : {0, 1, 0}) {
            hand.ShowVariant(variant);
            while (hand.editor.Redo()) {
            }
            QVector<EditState> way{hand.editor.Edited()};
            while (hand.editor.Undo()) {
                QVERIFY(hand.editor.Edited() != way.last());
                QCOMPARE(hand.Row(1 - variant), way.last().slotTable[size_t(1 - variant)]);
                way.append(hand.editor.Edited());
            }
            for (int step = way.size() - 2; step >= 0; --step) {
                QVERIFY(hand.editor.Redo());
                QVERIFY2(hand.editor.Edited() == way.at(step), QByteArray::number(step));
            }
            QVERIFY(!hand.editor.CanRedo());
        }
    }

private:
    // What holds whatever was done.
    static void CheckSense(const LayoutEditor& editor) {
        for (int variant = 0; variant < kVariantCount; ++variant) {
            const LayoutRecord& layout = editor.Edited().themes.layouts[size_t(CustomLayoutIndex(variant))];
            const auto& flags = variant == 0 ? layout.shown : layout.selected;
            QCOMPARE(flags[OtherText], !layout.freeText.isEmpty());
            const SlotRow& row = editor.Edited().slotTable[size_t(variant)];
            for (const int item : row) {
                QVERIFY(item == kEmptySlot || HasLiveValue(item));
                QVERIFY(item == kEmptySlot ||
                        (flags[size_t(item)] && std::count(row.begin(), row.end(), item) == 1));
            }
        }
        QVERIFY(editor.TextRow() >= 0 && editor.TextRow() < kTextRowCount);
    }
};

KIVO_TEST(TestLayoutEditorSteps)
#include "tst_layout_editor_steps.moc"
