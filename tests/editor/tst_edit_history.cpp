#include <QTest>

#include "editor/edit_history.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

EditState CustomState() {
    EditState state;
    state.themes.mode = 1;
    return state;
}

}  // namespace

class TestEditHistory : public QObject {
    Q_OBJECT

private slots:
    void TheFirstEntryIsWhereTheWayBackEnds() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        const EditState loaded = state;
        QVERIFY(!history.CanStepBack(state));
        QVERIFY(!history.StepBack(state));

        LayoutInForce(state).colorIndex = 3;
        history.Append(state);
        QVERIFY(history.StepBack(state));
        QCOMPARE(state, loaded);
        QVERIFY(!history.StepBack(state));
        QVERIFY(!history.StepBack(state));
        QCOMPARE(state, loaded);
    }

    void EveryEditGoesBackByItself() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        LayoutInForce(state).colorIndex = 1;
        history.Append(state);
        state.slotTable[0][2] = FanSpeed;
        history.Append(state);
        state.textRow = 0;
        history.Append(state);
        QVERIFY(history.StepBack(state));
        QCOMPARE(state.textRow, 2);
        QCOMPARE(state.slotTable[0][2], int(FanSpeed));
        QVERIFY(history.StepBack(state));
        QCOMPARE(state.slotTable[0][2], kEmptySlot);
        QCOMPARE(LayoutInForce(state).colorIndex, 1);
        QVERIFY(history.StepBack(state));
        QCOMPARE(LayoutInForce(state).colorIndex, 0);
    }

    void StepsGoForthAsTheyWentBack() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        QVERIFY(!history.CanStepForth(state));
        for (int color = 1; color <= 3; ++color) {
            LayoutInForce(state).colorIndex = color;
            history.Append(state);
        }
        for (int color = 2; color >= 0; --color) {
            QVERIFY(history.StepBack(state));
            QCOMPARE(LayoutInForce(state).colorIndex, color);
        }
        for (int color = 1; color <= 3; ++color) {
            QVERIFY(history.CanStepForth(state));
            QVERIFY(history.StepForth(state));
            QCOMPARE(LayoutInForce(state).colorIndex, color);
        }
        QVERIFY(!history.StepForth(state));
    }

    void AnEditEndsTheWayForth() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        LayoutInForce(state).colorIndex = 3;
        history.Append(state);
        history.StepBack(state);
        history.Append(state);  // nothing was edited
        QVERIFY(history.CanStepForth(state));
        LayoutInForce(state).sizeIndex = 1;
        history.Append(state);
        QVERIFY(!history.CanStepForth(state));
        QVERIFY(history.StepBack(state));
        QCOMPARE(LayoutInForce(state).sizeIndex, 0);
    }

    // A notch of the wheel after an undo is no part of the step that was undone, nor of the one before.
    void AfterAnUndoNothingJoins() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        for (const int inset : {8, 16}) {
            LayoutInForce(state).xZoom = inset;
            history.Append(state, EditHistory::Kind::Zoom);
            history.Append(state);  // something else
        }
        QVERIFY(history.StepBack(state));
        LayoutInForce(state).xZoom = 24;
        history.Append(state, EditHistory::Kind::Zoom);
        QVERIFY(history.StepBack(state));
        QCOMPARE(LayoutInForce(state).xZoom, 8);
    }

    // A picture chosen for a theme must not undo the custom page's slots.
    void AThemesStepsLeaveTheSlotsAlone() {
        EditState state;
        EditHistory history;
        history.Start(state);
        LayoutInForce(state).picture = QStringLiteral("one.png");
        history.Append(state);
        state.slotTable[0][1] = FanSpeed;
        QVERIFY(history.StepBack(state));
        QCOMPARE(state.slotTable[0][1], int(FanSpeed));
    }

    void WhatChangedNothingIsNoStep() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        history.Append(state);
        QVERIFY(!history.CanStepBack(state));
    }

    void NotchesOfTheWheelGoBackAsOne() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        for (int notch = 1; notch <= 3; ++notch) {
            LayoutInForce(state).xZoom = notch * 8;
            history.Append(state, EditHistory::Kind::Zoom);
        }
        LayoutInForce(state).xPt = 5;
        history.Append(state, EditHistory::Kind::Move);
        QVERIFY(history.StepBack(state));
        QCOMPARE(LayoutInForce(state).xZoom, 24);
        QVERIFY(history.StepBack(state));
        QCOMPARE(LayoutInForce(state).xZoom, 0);
        QVERIFY(!history.CanStepBack(state));
    }

    void ThereAndBackAgainIsNoStep() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        LayoutInForce(state).xZoom = 8;
        history.Append(state, EditHistory::Kind::Zoom);
        LayoutInForce(state).xZoom = 0;
        history.Append(state, EditHistory::Kind::Zoom);
        QVERIFY(!history.CanStepBack(state));
    }

    // Scrolling there and back behind a colour must not make the next notch part of the colour's step.
    void ThereAndBackAgainLeavesTheStepBeforeAlone() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        LayoutInForce(state).colorIndex = 3;
        history.Append(state);
        for (const int inset : {8, 0, 8}) {
            LayoutInForce(state).xZoom = inset;
            history.Append(state, EditHistory::Kind::Zoom);
        }
        QVERIFY(history.StepBack(state));
        QCOMPARE(LayoutInForce(state).xZoom, 0);
        QCOMPARE(LayoutInForce(state).colorIndex, 3);
        QVERIFY(history.StepBack(state));
        QCOMPARE(LayoutInForce(state).colorIndex, 0);
        QVERIFY(!history.CanStepBack(state));
    }

    void EveryLayoutKeepsItsWayBack() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        LayoutInForce(state).colorIndex = 3;
        history.Append(state);
        state.themes.customStyle = 1;
        history.Append(state);
        QVERIFY(!history.CanStepBack(state));
        LayoutInForce(state).sizeIndex = 2;
        history.Append(state);
        state.themes.customStyle = 0;
        history.Append(state);
        QVERIFY(history.StepBack(state));
        QCOMPARE(LayoutInForce(state).colorIndex, 0);
        QVERIFY(!history.StepBack(state));
        state.themes.customStyle = 1;
        QCOMPARE(LayoutInForce(state).sizeIndex, 2);
        QVERIFY(history.StepBack(state));
        QCOMPARE(LayoutInForce(state).sizeIndex, 0);
    }

    void AReplacedPictureDoesNotComeBack() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        const QString gone = QStringLiteral("gone.png");
        const QString other = QStringLiteral("other.png");
        LayoutInForce(state).picture = gone;
        history.Append(state);
        LayoutInForce(state).xZoom = 40;  // a step of the picture that goes
        history.Append(state);
        LayoutInForce(state).picture = other;
        LayoutInForce(state).xZoom = 0;
        history.Append(state);
        history.ReplacePicture(gone, other);
        // All that was left of the steps is the choice of a picture.
        QVERIFY(history.StepBack(state));
        QVERIFY(LayoutInForce(state).picture.isEmpty());
        QVERIFY(!history.CanStepBack(state));
    }

    void ThePageAndTheOrientationStay() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        LayoutInForce(state).sizeIndex = 2;
        history.Append(state);
        state.themes.orientation = Orientation::Portrait;
        QVERIFY(history.StepBack(state));
        QCOMPARE(state.themes.orientation, Orientation::Portrait);
        QCOMPARE(LayoutInForce(state).sizeIndex, 0);
    }

    void AVeryLongWayStillEndsAtTheFirstEntry() {
        EditState state = CustomState();
        EditHistory history;
        history.Start(state);
        for (int k = 1; k <= 1000; ++k) {
            LayoutInForce(state).xPt = k;
            history.Append(state);
        }
        while (history.StepBack(state)) {
        }
        QCOMPARE(LayoutInForce(state).xPt, 0);
    }
};

KIVO_APPLESS_TEST(TestEditHistory)
#include "tst_edit_history.moc"
