#include <QTemporaryDir>

#include "config/settings_file.h"
#include "editor/custom_layout_rules.h"
#include "editor_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int E = kEmptySlot;

QString Words() {
    return QStringLiteral("Hello");
}

QString Other() {
    return QStringLiteral("://background/7.jpg");
}

}  // namespace

class TestZoomWidgetState : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    void AFreshInstallationHasNothingInItsSlots() {
        ZoomWidget editor;
        QCOMPARE(editor.Edited().slotTable, EmptySlotTable());
        ThemeState themes = CustomThemes();
        for (LayoutRecord& layout : themes.layouts) {
            layout.shown.fill(false);
            layout.selected.fill(false);
        }
        editor.resize(435, 312);
        for (const int variant : {0, 1}) {
            themes.style = variant;
            editor.ShowTheme(themes, true);
            const ScreenState state = editor.Shown();
            QVERIFY(LayOutTexts(state, SampleTexts(state.language)).isEmpty());
            // Not even a placeholder: live values change nothing that is seen.
            const QImage before = editor.grab().toImage();
            editor.SetLiveTexts(LiveTexts(state.language)[variant]);
            QCOMPARE(editor.grab().toImage(), before);
        }
    }

    void SavingWritesTenIntegers() {
        ZoomWidget editor;
        editor.ShowTheme(CustomThemes(), true);
        editor.SetItemEnabled(FanSpeed, true);
        ThemeState single = editor.Edited().themes;
        single.style = 1;
        editor.ShowTheme(single, true);
        editor.SetItemEnabled(Time, true);
        QVERIFY(editor.SaveCustomShow());
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
        ZoomWidget editor;
        QCOMPARE(editor.Edited().slotTable[0], (SlotRow{{4, E, 77, E, E}}));
        QCOMPARE(editor.Edited().slotTable[1], (SlotRow{{E, E, 3, E, E}}));
        // A number that is no kind stays, matches nothing and hurts nobody.
        editor.ShowTheme(CustomThemes(), true);
        editor.resize(435, 312);
        editor.grab();
        QVERIFY(LayoutInForce(editor.Edited()).shown[CpuPower]);
        QVERIFY(editor.SaveCustomShow());
        QCOMPARE(Stored(QStringLiteral("CustomShow/0-2")).toInt(), 77);
    }

    // What stands in a slot is ticked, or it would not be shown.
    void WhatWasLoadedIsTickedWhereItStandsInASlot() {
        ThemeState themes = CustomThemes();
        themes.layouts[size_t(CustomLayoutIndex(0))].shown.fill(false);
        Editor editor(themes);
        QVERIFY(editor.Layout().shown[CpuPower]);
    }

    void ChosenSingleItemStandsInTheCentre() {
        Editor editor(CustomThemes(Orientation::Landscape, 1));
        editor.SetItemEnabled(CpuUsage, true);
        editor.SetItemEnabled(Date, true);
        QCOMPARE(editor.Row(1), (SlotRow{{E, E, Date, E, E}}));
        QVERIFY(editor.Layout().selected[Date] && !editor.Layout().selected[CpuUsage]);
        editor.CommitLayout();
        QCOMPARE(Stored(QStringLiteral("CustomShow/1-2")).toInt(), int(Date));
        editor.SetItemEnabled(Date, false);
        QCOMPARE(editor.Row(1)[kCentreSlot], E);
        QVERIFY(!editor.Layout().selected[Date]);
    }

    void TheLimitIsAskedOfTheEditedFlags() {
        Editor editor;  // five items
        QVERIFY(MayTick(FanSpeed, editor.Layout().shown));
        editor.SetItemEnabled(FanSpeed, true);
        QCOMPARE(editor.Row(), FactorySlotTable()[0]);
        QVERIFY(!MayTick(OtherText, editor.Layout().shown));
        QVERIFY(MayTick(Date, editor.Layout().shown));  // the time is there
    }

    void CallersAreNotToldOfTheirOwnEdits() {
        Editor editor;
        QSignalSpy changed(&editor, &ZoomWidget::layoutChanged);
        editor.SetItemEnabled(FanSpeed, true);
        editor.SetFontColor(2);
        editor.SetFontSize(1);
        editor.SetBackground(Other());
        editor.SetOrientation(1);
        QCOMPARE(changed.size(), 0);
    }

    void CommittingWritesTableAndRow() {
        Editor editor;
        editor.GiveText(Words());
        editor.Drag(SlotPoint(0), SlotPoint(4));
        editor.Drag(RowPoint(2), RowPoint(0));
        QCOMPARE(Stored(QStringLiteral("CustomShow/0-0")).toInt(), int(CpuTemperature));
        QVERIFY(editor.CommitLayout());
        QCOMPARE(Stored(QStringLiteral("CustomShow/0-0")).toInt(), int(CpuPower));
        QCOMPARE(LoadCurRectId(), 0);
        ZoomWidget next;
        QCOMPARE(next.Edited().textRow, 0);
        QCOMPARE(next.Edited().slotTable, editor.Edited().slotTable);
    }

    void TheRowIsStoredOnCommitOnly() {
        Editor editor;
        editor.GiveText(Words());
        editor.Drag(RowPoint(2), RowPoint(0));
        QCOMPARE(LoadCurRectId(), 2);
    }

    void CommittingKeepsTheShownValues() {
        Editor editor;
        editor.SetLiveTexts(LiveTexts(InterfaceLanguage::Chinese)[2]);
        const QImage before = editor.grab().toImage();
        editor.CommitLayout();
        QCOMPARE(editor.grab().toImage(), before);
    }

    void CancellingPutsBackWhatWasSaved() {
        Editor editor;
        const EditState saved = editor.Edited();
        QSignalSpy changed(&editor, &ZoomWidget::layoutChanged);
        editor.Drag(SlotPoint(0), SlotPoint(4));
        editor.SetItemEnabled(CpuUsage, false);
        editor.GiveText(Words());
        editor.Drag(RowPoint(2), RowPoint(0));
        editor.SetFontColor(2);
        changed.clear();
        editor.RevertLayout();
        QCOMPARE(editor.Edited(), saved);
        QCOMPARE(changed.size(), 1);
        editor.Undo();
        QCOMPARE(editor.Edited(), saved);
    }

    // Pictures are chosen outside of editing as well; trimming is part of it.
    void CancellingKeepsThePictureAndItsTrim() {
        Editor editor;
        const LayoutRecord saved = editor.Layout();
        const auto trim = [&editor] {
            editor.SetTrimMode(1);
            editor.Wheel(120, QPoint(217, 155));
            editor.SetTrimMode(0);
            return editor.Layout().xZoom;
        };
        QVERIFY(trim() > 0);
        editor.RevertLayout();
        QCOMPARE(editor.Layout(), saved);

        editor.SetBackground(Other());
        const int inset = trim();
        editor.SetFontColor(2);
        editor.RevertLayout();
        QCOMPARE(editor.Layout().picture, Other());
        QCOMPARE(editor.Layout().xZoom, inset);
        QCOMPARE(editor.Layout().colorIndex, 0);

        // The same picture, once as the default one and once by its name.
        editor.SetBackground(DefaultBackground());
        QVERIFY(trim() > 0);
        editor.RevertLayout();
        QCOMPARE(editor.Layout().picture, DefaultBackground());
        QCOMPARE(editor.Layout().xZoom, 0);
    }

    void AReplacedPictureIsGoneEverywhere() {
        ThemeState themes = CustomThemes();
        for (LayoutRecord& layout : themes.layouts) {
            layout.picture = QStringLiteral("gone.png");
            layout.xZoom = 40;
        }
        themes.layouts[2].picture = DefaultBackground();
        const LogLines quiet;
        Editor editor(themes);
        editor.SetBackground(Other());
        QSignalSpy changed(&editor, &ZoomWidget::layoutChanged);
        // However its path was written.
        editor.ReplacePicture(QStringLiteral("./gone.png"), Other());
        QCOMPARE(changed.size(), 0);
        for (const EditState* state : {&editor.Edited(), &editor.Saved()}) {
            for (int n = 0; n < kLayoutCount; ++n) {
                const LayoutRecord& layout = state->themes.layouts[size_t(n)];
                QCOMPARE(layout.picture, n == 2 ? DefaultBackground() : Other());
                QCOMPARE(layout.xZoom, n == 2 ? 40 : 0);
            }
        }
        editor.Undo();
        QCOMPARE(editor.Layout().picture, Other());
    }

    void WhatIsSavedIsKnown() {
        Editor editor;
        QCOMPARE(editor.Saved(), editor.Edited());
        editor.GiveText(Words());
        ThemeState theme = editor.Edited().themes;
        theme.layouts[0].picture = Other();
        theme.theme = 2;
        editor.ShowTheme(theme, false);
        QVERIFY(editor.Saved().themes.layouts[8].freeText.isEmpty());
        editor.CommitLayout();
        QCOMPARE(editor.Saved().themes.layouts[8].freeText, Words());
        // The theme page's own are not committed with the custom layout.
        QVERIFY(editor.Saved().themes.layouts[0].picture.isEmpty());
        QCOMPARE(editor.Saved().themes.theme, 0);
        editor.SetSavedThemes(editor.Edited().themes);
        QCOMPARE(editor.Saved(), editor.Edited());
    }

    void CancellingAnOpenEntryForgetsItsText() {
        Editor editor;
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        editor.RevertLayout();
        QVERIFY(!editor.IsTextEntryOpen());
        QVERIFY(editor.Layout().freeText.isEmpty());
        QVERIFY(!editor.Layout().shown[OtherText]);
    }

    void CancellingGoesBackToTheLastCommit() {
        Editor editor;
        editor.Drag(SlotPoint(0), SlotPoint(4));
        editor.GiveText(Words());
        editor.CommitLayout();
        const EditState committed = editor.Edited();
        editor.Drag(SlotPoint(1), SlotPoint(3));
        editor.SetOrientation(1);
        editor.RevertLayout();
        QCOMPARE(editor.Edited().slotTable, committed.slotTable);
        QCOMPARE(editor.Layout().freeText, Words());
        QCOMPARE(editor.Edited().themes.orientation, Orientation::Portrait);
    }

    void UndoGoesBackToTheLoadedStateAndNoFurther() {
        Editor editor;
        const EditState loaded = editor.Edited();
        editor.SetFontColor(3);
        editor.Drag(SlotPoint(0), SlotPoint(4));
        editor.SetFontSize(2);
        editor.GiveText(Words());
        editor.SetBackground(Other());
        QSignalSpy color(&editor, &ZoomWidget::UndoColorSignal);
        QSignalSpy changed(&editor, &ZoomWidget::layoutChanged);
        for (int step = 0; step < 5; ++step) {
            QVERIFY(editor.Edited() != loaded);
            editor.Undo();
        }
        QCOMPARE(editor.Edited(), loaded);
        QCOMPARE(color.size(), 5);
        QCOMPARE(changed.size(), 5);
        editor.Undo();
        QCOMPARE(editor.Edited(), loaded);
        QCOMPARE(color.size(), 5);
        QCOMPARE(changed.size(), 5);
    }

    void UndoTellsColourAndSize() {
        Editor editor;
        editor.SetFontColor(3);
        editor.SetFontSize(2);
        editor.SetFontColor(5);
        QSignalSpy color(&editor, &ZoomWidget::UndoColorSignal);
        QSignalSpy size(&editor, &ZoomWidget::UndoTextSize);
        editor.Undo();
        QCOMPARE(color.takeFirst()[0].toInt(), 3);
        QCOMPARE(size.size(), 0);  // the same as before: telling it would swallow the next change
        editor.Undo();
        QCOMPARE(color.takeFirst()[0].toInt(), 3);
        QCOMPARE(size.takeFirst()[0].toInt(), 0);
        QCOMPARE(editor.TextBox().font().pixelSize(), 22);
    }

    void CtrlZUndoes() {
        Editor editor;
        editor.Drag(SlotPoint(0), SlotPoint(4));
        QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(editor.Row(), FactorySlotTable()[0]);
    }

    void AnotherLayoutHasItsOwnWayBack() {
        Editor editor;
        editor.SetFontColor(3);
        ThemeState single = editor.Edited().themes;
        single.style = 1;
        editor.ShowTheme(single, true);
        editor.Undo();
        QCOMPARE(editor.Edited().themes.layouts[size_t(CustomLayoutIndex(0))].colorIndex, 3);
    }

    void ColoursAndSizesThatDoNotExistAreIgnored() {
        Editor editor;
        const EditState before = editor.Edited();
        for (const int index : {-1, 6, 255}) {
            editor.SetFontColor(index);
            editor.SetFontSize(index);
        }
        editor.SetFontSize(3);
        QCOMPARE(editor.Edited(), before);
    }

    void ABackgroundIsTheLayoutsOwn() {
        Editor editor;
        QVERIFY(editor.SetBackground(Other()));
        QCOMPARE(editor.Layout().picture, Other());
        ThemeState theme = editor.Edited().themes;
        theme.mode = 0;
        editor.ShowTheme(theme, true);
        QVERIFY(editor.Layout().picture.isEmpty());
    }

    void NothingIsReadUnlessItIsSeen() {
        SaveSlotTable(FactorySlotTable());
        PictureSource pictures({ReadPicture, {}});
        ZoomWidget editor;
        editor.SetPictures(pictures);
        editor.resize(435, 312);
        editor.ShowTheme(CustomThemes(), true);
        editor.SetOrientation(1);
        editor.SetItemEnabled(FanSpeed, true);
        editor.SetLiveTexts(LiveTexts(InterfaceLanguage::Chinese)[0]);
        QVERIFY(!pictures.IsBusy());
        QCOMPARE(pictures.ReadCount(), 0);
        editor.grab();
        QTRY_COMPARE(pictures.ReadCount(), 1);
    }

    void APictureIsReadAgainOnlyWhenItIsAnother() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("picture.png"));
        QImage picture(640, 340, QImage::Format_RGB32);
        picture.fill(Qt::darkRed);
        QVERIFY(picture.save(path));
        Editor editor;
        QVERIFY(editor.SetBackground(path));
        const int read = editor.Pictures().ReadCount();
        ThemeState themes = editor.Edited().themes;
        editor.ShowTheme(themes, true);
        editor.WaitForPicture();
        themes.orientation = Orientation::Portrait;
        editor.ShowTheme(themes, true);
        editor.WaitForPicture();
        QCOMPARE(editor.Pictures().ReadCount(), read);
        const QImage red = editor.grab().toImage();
        // The same name, another picture.
        picture.fill(Qt::darkBlue);
        QVERIFY(picture.save(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(
            file.setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime));
        file.close();
        editor.ShowTheme(themes, false);
        editor.WaitForPicture();
        QCOMPARE(editor.Pictures().ReadCount(), read);
        editor.ShowTheme(themes, true);
        editor.WaitForPicture();
        QCOMPARE(editor.Pictures().ReadCount(), read + 1);
        QVERIFY(editor.grab().toImage() != red);
    }

    void DraggingAndTypingDoNotComposeAgain() {
        Editor editor;
        editor.grab();
        const int composed = editor.Background().CompositionCount();
        editor.Press(SlotPoint(0));
        editor.MoveTo(SlotPoint(2));
        editor.grab();
        editor.Release(SlotPoint(0));
        editor.slotShowEdt();
        editor.grab();
        const int withBox = editor.Background().CompositionCount();
        for (const char letter : {'a', 'b', 'c'}) {
            QTest::keyClick(&editor.TextBox(), letter);
            editor.grab();
        }
        editor.SetLiveTexts(LiveTexts(InterfaceLanguage::Chinese)[3]);
        editor.grab();
        QCOMPARE(editor.Background().CompositionCount(), withBox);
        QVERIFY(withBox <= composed + 1);  // the flag of the text that is to come is part of the state
    }

    void ShowingItsOwnStateIsHarmless() {
        Editor editor;
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        editor.ShowTheme(editor.Edited().themes, true);
        QCOMPARE(editor.Layout().freeText, Words());
    }

    void WhatIsUntickedIsNotTickedByShowingItAgain() {
        Editor editor;
        editor.SetItemEnabled(CpuPower, false);
        editor.ShowTheme(editor.Edited().themes, true);
        QVERIFY(!editor.Layout().shown[CpuPower]);
        QCOMPARE(editor.Row()[4], E);
    }

    void SettingsAreLoadedAsOneState() {
        ThemeState themes = CustomThemes(Orientation::Portrait);
        themes.layouts[size_t(CustomLayoutIndex(0))].freeText = Words();
        QVERIFY(SaveThemeState(themes));
        SaveSlotTable(FactorySlotTable());
        SaveCurRectId(1);
        ZoomWidget editor;
        editor.Load();
        QCOMPARE(editor.Edited().themes.orientation, Orientation::Portrait);
        QCOMPARE(editor.Edited().textRow, 1);
        QCOMPARE(editor.Edited().slotTable, FactorySlotTable());
        QVERIFY(LayoutInForce(editor.Edited()).shown[OtherText]);
        const EditState loaded = editor.Edited();
        editor.SetItemEnabled(CpuPower, false);
        editor.RevertLayout();
        QCOMPARE(editor.Edited(), loaded);
    }

    // The window connects these by name.
    void FixedNames_data() {
        QTest::addColumn<QByteArray>("signature");
        for (const char* signature :
             {"HideColorWin(int)", "UndoColorSignal(int)", "UndoTextSize(int)", "HideRemote(int)",
              "layoutChanged()", "solteditingFinished()", "slotShowEdt()"}) {
            QTest::newRow(signature) << QByteArray(signature);
        }
    }
    void FixedNames() {
        QFETCH(QByteArray, signature);
        QVERIFY(ZoomWidget::staticMetaObject.indexOfMethod(signature.constData()) >= 0);
    }
};

KIVO_TEST(TestZoomWidgetState)
#include "tst_zoom_widget_state.moc"
