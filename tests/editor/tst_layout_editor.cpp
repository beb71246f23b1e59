#include "compose/theme_catalogue.h"
#include "config/settings_file.h"
#include "editor/trim_frame.h"
#include "layout_editor_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int E = kEmptySlot;
constexpr auto kLying = Orientation::Landscape;

QString Words() {
    return QStringLiteral("Hello");
}

QString Other() {
    return QStringLiteral("://background/7.jpg");
}

}  // namespace

class TestLayoutEditor : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    // What follows one another is one step, as the notches of a wheel are; each drag begins and ends one.
    void ADragOfASliderIsOneStep() {
        Hands hand;
        LayoutEditor& editor = hand.editor;
        for (const int percent : {10, 20, 30}) {
            QVERIFY(editor.SetDim(percent));
        }
        editor.EndRun();
        for (const int percent : {40, 50}) {
            QVERIFY(editor.SetDim(percent));
        }
        QVERIFY(editor.SetBlur(60));
        QVERIFY(editor.SetBlur(70));
        QCOMPARE(hand.Layout().dim, 50);
        QVERIFY(editor.Undo());
        QCOMPARE(hand.Layout().blur, 0);
        QVERIFY(editor.Undo());
        QCOMPARE(hand.Layout().dim, 30);
        QVERIFY(editor.Undo());
        QCOMPARE(hand.Layout().dim, 0);
        QVERIFY(!editor.CanUndo());
        QVERIFY(editor.Redo() && editor.Redo() && editor.Redo());
        QVERIFY(hand.Layout().dim == 50 && hand.Layout().blur == 70);
    }

    void ADragThatComesBackIsNoStep() {
        Hands hand;
        hand.editor.EndRun();
        hand.editor.SetBlur(10);
        hand.editor.SetBlur(0);
        hand.editor.EndRun();
        QVERIFY(!hand.editor.CanUndo());
    }

    void ThereIsNoMoreThanAllAndNoLessThanNothing() {
        Hands hand;
        for (const int percent : {-1, 101, 1000}) {
            QVERIFY(!hand.editor.SetDim(percent));
            QVERIFY(!hand.editor.SetBlur(percent));
        }
        QVERIFY(hand.Layout().dim == 0 && hand.Layout().blur == 0);
        QVERIFY(hand.editor.SetDim(100) && hand.editor.SetBlur(100));
    }

    void EachLayoutHasItsOwn() {
        Hands hand;
        hand.editor.SetDim(40);
        hand.ShowVariant(1);
        QCOMPARE(hand.Layout().dim, 0);
        hand.Change([](ThemeState& themes) { themes.mode = 0; });
        QCOMPARE(hand.Layout().dim, 0);
        hand.editor.SetBlur(20);
        hand.editor.SetAccentFromPicture(true);
        hand.editor.Turn(Orientation::Portrait);
        QVERIFY(hand.Layout().blur == 0 && !hand.Layout().accentFromPicture);
    }

    void OnlyAThemeWithAnAccentTakesOne() {
        Hands hand;
        QVERIFY(!hand.editor.SetAccentFromPicture(true));
        for (const Theme theme : {Theme::Default, Theme::Scene, Theme::Tdp, Theme::Time}) {
            hand.Change([theme](ThemeState& themes) {
                themes.mode = 0;
                themes.theme = int(theme);
            });
            QCOMPARE(hand.editor.SetAccentFromPicture(true), theme != Theme::Scene);
            QCOMPARE(hand.Layout().accentFromPicture, theme != Theme::Scene);
        }
        QVERIFY(hand.editor.Undo());
        QVERIFY(!hand.Layout().accentFromPicture);
    }

    // As the trim does: what is made of a picture belongs to it.
    void CancelTakesThemBackUnlessThePictureIsAnother() {
        Hands hand;
        hand.editor.SetDim(30);
        hand.editor.SetBlur(20);
        hand.editor.Revert();
        QVERIFY(hand.Layout().dim == 0 && hand.Layout().blur == 0);
        hand.editor.SetPicture(Other());
        hand.editor.SetDim(30);
        hand.editor.SetBlur(20);
        hand.editor.Revert();
        QVERIFY(hand.Layout().dim == 30 && hand.Layout().blur == 20);
    }

    void ACommitSavesThem() {
        Hands hand;
        hand.editor.SetDim(30);
        hand.editor.SetBlur(70);
        QVERIFY(hand.editor.Commit());
        QCOMPARE(Stored(QStringLiteral("CUSTOM0/Dim")).toInt(), 30);
        QCOMPARE(Stored(QStringLiteral("CUSTOM0/Blur")).toInt(), 70);
        hand.editor.SetDim(0);
        QVERIFY(hand.editor.Commit());
        QVERIFY(!Stored(QStringLiteral("CUSTOM0/Dim")).isValid());
        LayoutEditor again;
        again.Load();
        QVERIFY(again.Edited() == again.Saved());
        QCOMPARE(again.Layout().blur, 70);
    }

    void SavingWritesTenIntegers() {
        Hands hand(CustomThemes(), EmptySlotTable());
        hand.editor.SetItem(FanSpeed, true);
        hand.ShowVariant(1);
        hand.editor.SetItem(Time, true);
        QVERIFY(hand.editor.SaveSlots());
        QSettings file(ConfigFilePath(), QSettings::IniFormat);
        file.beginGroup(QStringLiteral("CustomShow"));
        const QStringList keys{QStringLiteral("0-0"), QStringLiteral("0-1"), QStringLiteral("0-2"),
                               QStringLiteral("0-3"), QStringLiteral("0-4"), QStringLiteral("1-0"),
                               QStringLiteral("1-1"), QStringLiteral("1-2"), QStringLiteral("1-3"),
                               QStringLiteral("1-4")};
        QCOMPARE(file.allKeys(), keys);
        QStringList values;
        for (const QString& key : keys) {
            values.append(file.value(key).toString());
        }
        QCOMPARE(values.join(QLatin1Char(' ')), QStringLiteral("6 -1 -1 -1 -1 -1 -1 3 -1 -1"));
        file.endGroup();
        QCOMPARE(file.childGroups(), QStringList{QStringLiteral("CustomShow")});
    }

    void LoadingReadsTheTableAndWhatIsNoNumberIsEmpty() {
        {
            QSettings file(ConfigFilePath(), QSettings::IniFormat);
            file.setValue(QStringLiteral("CustomShow/0-0"), 4);
            file.setValue(QStringLiteral("CustomShow/0-1"), QStringLiteral("none"));
            file.setValue(QStringLiteral("CustomShow/0-2"), 77);
            file.setValue(QStringLiteral("CustomShow/1-2"), 3);
        }
        const LogLines quiet;
        LayoutEditor editor;
        QCOMPARE(editor.Edited().slotTable[0], (SlotRow{{4, E, 77, E, E}}));
        QCOMPARE(editor.Edited().slotTable[1], (SlotRow{{E, E, 3, E, E}}));
        // A number that is no kind stays and matches nothing.
        editor.Show(CustomThemes());
        QVERIFY(editor.Layout().shown[CpuPower]);
        QVERIFY(editor.SaveSlots());
        QCOMPARE(Stored(QStringLiteral("CustomShow/0-2")).toInt(), 77);
    }

    // What stands in a slot is ticked, or it would not be shown.
    void WhatWasLoadedIsTickedWhereItStandsInASlot() {
        ThemeState themes = CustomThemes();
        themes.layouts[size_t(CustomLayoutIndex(0))].shown.fill(false);
        Hands hand(themes);
        QVERIFY(hand.Layout().shown[CpuPower]);
    }

    void ChosenSingleItemStandsInTheCentre() {
        Hands hand(CustomThemes(Orientation::Landscape, 1));
        hand.editor.SetItem(CpuUsage, true);
        hand.editor.SetItem(Date, true);
        QCOMPARE(hand.Row(1), (SlotRow{{E, E, Date, E, E}}));
        QVERIFY(hand.Layout().selected[Date] && !hand.Layout().selected[CpuUsage]);
        hand.editor.Commit();
        QCOMPARE(Stored(QStringLiteral("CustomShow/1-2")).toInt(), int(Date));
        hand.editor.SetItem(Date, false);
        QCOMPARE(hand.Row(1)[kCentreSlot], E);
        QVERIFY(!hand.Layout().selected[Date]);
    }

    void TheLimitIsAskedOfTheEditedFlags() {
        Hands hand;  // five items
        QVERIFY(hand.editor.MayTick(FanSpeed));
        hand.editor.SetItem(FanSpeed, true);
        QCOMPARE(hand.Row(), FactorySlotTable()[0]);
        QVERIFY(hand.editor.IsLeftOut(FanSpeed));
        QVERIFY(!hand.editor.MayTick(OtherText));
        QVERIFY(hand.editor.MayTick(Date));  // the time is there
        hand.editor.SetItem(Date, true);
        QVERIFY(!hand.editor.IsLeftOut(Date));
        hand.ShowVariant(1);
        QVERIFY(hand.editor.MayTick(FanSpeed));
    }

    void CommittingWritesTableAndRow() {
        Hands hand;
        hand.GiveText(Words());
        hand.Drag(SlotPoint(0), SlotPoint(4));
        hand.Drag(RowPoint(2), RowPoint(0));
        QCOMPARE(Stored(QStringLiteral("CustomShow/0-0")).toInt(), int(CpuTemperature));
        QVERIFY(hand.editor.Commit());
        QCOMPARE(Stored(QStringLiteral("CustomShow/0-0")).toInt(), int(CpuPower));
        QCOMPARE(LoadCurRectId(), 0);
        const LayoutEditor next;
        QCOMPARE(next.Edited().textRow, 0);
        QCOMPARE(next.Edited().slotTable, hand.editor.Edited().slotTable);
    }

    void TheRowIsStoredOnCommitOnly() {
        Hands hand;
        hand.GiveText(Words());
        hand.Drag(RowPoint(2), RowPoint(0));
        QCOMPARE(LoadCurRectId(), 2);
    }

    void CancellingPutsBackWhatWasSaved() {
        Hands hand;
        const EditState saved = hand.editor.Edited();
        hand.Drag(SlotPoint(0), SlotPoint(4));
        hand.editor.SetItem(CpuUsage, false);
        hand.GiveText(Words());
        hand.Drag(RowPoint(2), RowPoint(0));
        hand.editor.SetColor(2);
        hand.editor.Revert();
        QCOMPARE(hand.editor.Edited(), saved);
        QVERIFY(!hand.editor.Undo());
        QVERIFY(!hand.editor.Redo());
        QCOMPARE(hand.editor.Edited(), saved);
    }

    // Pictures are chosen outside of editing as well; trimming is part of it.
    void CancellingKeepsThePictureAndItsTrim() {
        Hands hand;
        const LayoutRecord saved = hand.Layout();
        const auto trim = [&hand] {
            hand.editor.SetTrim(QRectF(4, 2, 312, 165.75));
            return hand.Layout().xZoom;
        };
        QVERIFY(trim() > 0);
        hand.editor.Revert();
        QCOMPARE(hand.Layout(), saved);

        hand.editor.SetPicture(Other());
        const int inset = trim();
        hand.editor.SetColor(2);
        hand.editor.Revert();
        QCOMPARE(hand.Layout().picture, Other());
        QCOMPARE(hand.Layout().xZoom, inset);
        QCOMPARE(hand.Layout().colorIndex, 0);

        // The same picture, once as the default one and once by its name.
        hand.editor.SetPicture(DefaultBackground());
        QVERIFY(trim() > 0);
        hand.editor.Revert();
        QCOMPARE(hand.Layout().picture, DefaultBackground());
        QCOMPARE(hand.Layout().xZoom, 0);
    }

    void AReplacedPictureIsGoneEverywhere() {
        ThemeState themes = CustomThemes();
        for (LayoutRecord& layout : themes.layouts) {
            layout.picture = QStringLiteral("gone.png");
            layout.xZoom = 40;
        }
        themes.layouts[2].picture = DefaultBackground();
        const LogLines quiet;
        Hands hand(themes);
        hand.editor.SetPicture(Other());
        hand.editor.ReplacePicture(QStringLiteral("gone.png"), Other());
        for (int n = 0; n < kLayoutCount; ++n) {
            const LayoutRecord& layout = hand.editor.Edited().themes.layouts[size_t(n)];
            QCOMPARE(layout.picture, n == 2 ? DefaultBackground() : Other());
            QCOMPARE(layout.xZoom, n == 2 ? 40 : 0);
        }
        hand.editor.Undo();
        QCOMPARE(hand.Layout().picture, Other());
        // Nothing was written, so nothing else is saved; leaving the editing does not bring it back.
        QVERIFY(hand.editor.Saved().themes == themes);
        hand.editor.Revert();
        QCOMPARE(hand.Layout().picture, Other());
    }

    void WhatIsSavedIsKnown() {
        Hands hand;
        QCOMPARE(hand.editor.Saved(), hand.editor.Edited());
        hand.GiveText(Words());
        hand.Change([](ThemeState& themes) {
            themes.layouts[0].picture = Other();
            themes.theme = 2;
        });
        QVERIFY(hand.editor.Saved().themes.layouts[8].freeText.isEmpty());
        hand.editor.Commit();
        QCOMPARE(hand.editor.Saved().themes.layouts[8].freeText, Words());
        // The theme page's own are not committed with the custom layout.
        QVERIFY(hand.editor.Saved().themes.layouts[0].picture.isEmpty());
        QCOMPARE(hand.editor.Saved().themes.theme, 0);
        // Nor is the custom layout with a theme.
        hand.editor.SetColor(3);
        hand.Change([](ThemeState& themes) { themes.mode = 0; });
        QVERIFY(hand.editor.Commit());
        QCOMPARE(hand.editor.Saved().themes.layouts[0].picture, Other());
        QCOMPARE(hand.editor.Saved().themes.theme, 2);
        QCOMPARE(hand.editor.Saved().themes.layouts[8].colorIndex, 0);
    }

    void CancellingGoesBackToTheLastCommit() {
        Hands hand;
        hand.Drag(SlotPoint(0), SlotPoint(4));
        hand.GiveText(Words());
        hand.editor.Commit();
        const EditState committed = hand.editor.Edited();
        hand.Drag(SlotPoint(1), SlotPoint(3));
        hand.editor.Turn(Orientation::Portrait);
        hand.editor.Revert();
        QCOMPARE(hand.editor.Edited().slotTable, committed.slotTable);
        QCOMPARE(hand.Layout().freeText, Words());
        QCOMPARE(hand.editor.Edited().themes.orientation, Orientation::Portrait);
    }

    void ColoursAndSizesThatDoNotExistAreIgnored() {
        Hands hand;
        const EditState before = hand.editor.Edited();
        for (const int index : {-1, 6, 255}) {
            QVERIFY(!hand.editor.SetColor(index));
            QVERIFY(!hand.editor.SetSize(index));
        }
        QVERIFY(!hand.editor.SetSize(3));
        QCOMPARE(hand.editor.Edited(), before);
    }

    void ABackgroundIsTheLayoutsOwn() {
        Hands hand;
        hand.editor.SetPicture(Other());
        QCOMPARE(hand.Layout().picture, Other());
        hand.Change([](ThemeState& themes) { themes.mode = 0; });
        QVERIFY(hand.Layout().picture.isEmpty());
    }

    void WhatIsUntickedIsNotTickedByShowingItAgain() {
        Hands hand;
        hand.editor.SetItem(CpuPower, false);
        hand.editor.Show(hand.editor.Edited().themes);
        QVERIFY(!hand.Layout().shown[CpuPower]);
        QCOMPARE(hand.Row()[4], E);
    }

    void SettingsAreLoadedAsOneState() {
        ThemeState themes = CustomThemes(Orientation::Portrait);
        themes.layouts[size_t(CustomLayoutIndex(0))].freeText = Words();
        QVERIFY(SaveThemeState(themes));
        SaveSlotTable(FactorySlotTable());
        SaveCurRectId(1);
        LayoutEditor editor;
        editor.Load();
        QCOMPARE(editor.Edited().themes.orientation, Orientation::Portrait);
        QCOMPARE(editor.Edited().textRow, 1);
        QCOMPARE(editor.Edited().slotTable, FactorySlotTable());
        QVERIFY(LayoutInForce(editor.Edited()).shown[OtherText]);
        const EditState loaded = editor.Edited();
        editor.SetItem(CpuPower, false);
        editor.Revert();
        QCOMPARE(editor.Edited(), loaded);
    }

    void BlanksAndLinesAtTheEndAreNotKept() {
        Hands hand;
        hand.GiveText(QStringLiteral("  one\ntwo \n\n\t "));
        QCOMPARE(hand.Layout().freeText, QStringLiteral("  one\ntwo"));
        hand.GiveText(QStringLiteral(" \n "));
        QVERIFY(hand.Layout().freeText.isEmpty());
        QVERIFY(!hand.Layout().shown[OtherText]);
    }

    // In the second custom layout the text stands beside its one item.
    void ChoosingAnItemKeepsTheTextOfTheOneItemLayout() {
        Hands hand(CustomThemes(kLying, 1));
        hand.GiveText(Words());
        QVERIFY(hand.Layout().selected[CpuTemperature]);
        hand.editor.SetItem(FanSpeed, true);
        QVERIFY(hand.Layout().selected[FanSpeed]);
        QVERIFY(!hand.Layout().selected[CpuTemperature]);
        QVERIFY(hand.Layout().selected[OtherText]);
        hand.Drag(RowPoint(2), RowPoint(0));
        QCOMPARE(hand.editor.Edited().textRow, 0);
    }

    void ALoadedTextIsTicked() {
        ThemeState themes = CustomThemes();
        themes.layouts[size_t(CustomLayoutIndex(0))].freeText = Words();
        Hands hand(themes);
        QVERIFY(hand.Layout().shown[OtherText]);
    }
};

KIVO_TEST(TestLayoutEditor)
#include "tst_layout_editor.moc"
