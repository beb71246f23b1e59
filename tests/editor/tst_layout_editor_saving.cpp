#include <QRandomGenerator>

#include "compose/theme_catalogue.h"
#include "config/settings_file.h"
#include "layout_editor_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

QString Other() {
    return QStringLiteral("://background/7.jpg");
}

// Counts what is saved, and fails as told.
struct Disk {
    LayoutEditor::Save Writer() {
        return [this](const EditState& state) {
            ++writes;
            written = state;
            return works;
        };
    }
    int writes = 0;
    bool works = true;
    EditState written;
};

}  // namespace

namespace {

// A layout of one item that somebody else has made.
ScreenState FromElsewhere() {
    ScreenState layout;
    layout.custom = true;
    layout.variant = 1;
    layout.orientation = Orientation::Portrait;
    layout.slotItems[kCentreSlot] = MemoryUsage;
    layout.layout.selected[MemoryUsage] = true;
    layout.layout.selected[OtherText] = true;
    layout.layout.freeText = QStringLiteral("Hello");
    layout.layout.dim = 30;
    layout.layout.picture = Other();
    layout.textRow = 1;
    return layout;
}

}  // namespace

// What a commit writes, and what the next start makes of it.
class TestLayoutEditorSaving : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    void ACommitIsOneWrite_data() {
        QTest::addColumn<int>("mode");
        QTest::newRow("theme page") << 0;
        QTest::newRow("custom page") << 1;
    }
    void ACommitIsOneWrite() {
        QFETCH(int, mode);
        Disk disk;
        LayoutEditor editor(disk.Writer());
        ThemeState themes = CustomThemes();
        themes.mode = mode;
        editor.Show(themes);
        editor.SetPicture(Other());
        QVERIFY(editor.Commit());
        QCOMPARE(disk.writes, 1);
        QCOMPARE(disk.written, editor.Edited());
        QCOMPARE(editor.Saved(), editor.Edited());
    }

    // Saved at once and one step; what else is edited waits, and the user's own samples stay.
    void ALayoutFromElsewhereIsTaken() {
        Disk disk;
        LayoutEditor editor(disk.Writer());
        editor.Show(CustomThemes());
        editor.SetDim(70);
        const EditState before = editor.Edited();
        const EditState saved = editor.Saved();
        QVERIFY(editor.TakeLayout(FromElsewhere()));
        QCOMPARE(disk.writes, 1);
        QCOMPARE(disk.written, editor.Saved());
        const size_t taken = size_t(CustomLayoutIndex(1));
        const LayoutRecord& record = editor.Edited().themes.layouts[taken];
        LayoutRecord expected = FromElsewhere().layout;
        expected.sample = before.themes.layouts[taken].sample;
        expected.defaultPicture = before.themes.layouts[taken].defaultPicture;
        QVERIFY(record == expected);
        QVERIFY(editor.Saved().themes.layouts[taken] == expected);
        QVERIFY(editor.Shown() == MakeScreenState(editor.Saved(), CurrentInterfaceLanguage()));
        QCOMPARE(editor.TextRow(), 1);
        // The edit of the other layout waits.
        QCOMPARE(editor.Edited().themes.layouts[size_t(CustomLayoutIndex(0))].dim, 70);
        QCOMPARE(editor.Saved().themes.layouts[size_t(CustomLayoutIndex(0))].dim, 0);
        QCOMPARE(editor.Saved().slotTable[0], saved.slotTable[0]);
        // One step back.
        QVERIFY(editor.Undo());
        QVERIFY(editor.Edited().themes.layouts == before.themes.layouts);
        QCOMPARE(editor.Edited().slotTable, before.slotTable);
        QCOMPARE(editor.TextRow(), before.textRow);
        QVERIFY(!editor.CanUndo());
    }

    void ALayoutThatCannotBeSavedIsNotTaken() {
        Disk disk;
        LayoutEditor editor(disk.Writer());
        editor.Show(CustomThemes());
        editor.SetDim(70);
        const EditState before = editor.Edited();
        const EditState saved = editor.Saved();
        disk.works = false;
        QVERIFY(!editor.TakeLayout(FromElsewhere()));
        QCOMPARE(editor.Edited(), before);
        QCOMPARE(editor.Saved(), saved);
    }

    void WhatCouldNotBeWrittenIsNotSaved() {
        Disk disk;
        LayoutEditor editor(disk.Writer());
        editor.Show(CustomThemes());
        editor.SetColor(3);
        disk.works = false;
        const EditState before = editor.Saved();
        const EditState edited = editor.Edited();
        QVERIFY(!editor.Commit());
        QCOMPARE(editor.Saved(), before);
        QCOMPARE(editor.Edited(), edited);
        // Nothing is lost: it can be undone, or saved later.
        QVERIFY(editor.CanUndo());
        disk.works = true;
        QVERIFY(editor.Commit());
        QCOMPARE(editor.Saved(), edited);
        editor.SetColor(5);
        editor.Revert();
        QCOMPARE(editor.Layout().colorIndex, 3);
    }

    void WhatIsWrittenIsWhatIsLoaded() {
        Hands hand;
        hand.GiveText(QStringLiteral("Hello"));
        hand.editor.SetColor(4);
        hand.editor.SetSize(1);
        hand.editor.SetTextRow(0);
        hand.editor.SwapSlots(0, 3);
        hand.editor.SetItem(FanSpeed, true);
        hand.editor.SetTrim(QRectF(16, 8, 288, 153));
        QVERIFY(hand.editor.Commit());
        LayoutEditor next;
        next.Load();
        QCOMPARE(next.Edited(), hand.editor.Edited());
    }

    // Else the panel would get its picture once more, for the sake of what the page in front does not show.
    void WhatIsShownAtACommitIsShownAfterARestart() {
        QRandomGenerator random(4);
        for (int run = 0; run < 200; ++run) {
            LayoutEditor editor;
            editor.Load();
            ThemeState themes = editor.Edited().themes;
            themes.mode = random.bounded(2);
            for (int edit = 0; edit < 6; ++edit) {
                switch (random.bounded(6)) {
                    case 0:
                        themes.mode = 1 - themes.mode;
                        break;
                    case 1:
                        themes.theme = random.bounded(kThemeCount);
                        break;
                    case 2:
                        SetStyleInForce(themes, random.bounded(2));
                        break;
                    case 3:
                        themes.orientation = Orientation(random.bounded(2));
                        break;
                    case 4:
                        editor.SetTextRow(random.bounded(kTextRowCount));
                        break;
                    default:
                        editor.SwapSlots(random.bounded(kSlotCount), random.bounded(kSlotCount));
                        break;
                }
                editor.Show(themes);
            }
            QVERIFY(editor.Commit());
            LayoutEditor next;
            next.Load();
            QVERIFY2(next.Shown() == editor.Shown(), QByteArray::number(run));
        }
    }

    // They belong to the custom page, and a file without them stays so.
    void AThemeIsSavedWithoutSlotsAndRow() {
        LayoutEditor editor;
        ThemeState themes = CustomThemes();
        themes.mode = 0;
        editor.Show(themes);
        QVERIFY(editor.Commit());
        QVERIFY(!Stored(QStringLiteral("CustomShow/0-0")).isValid());
        QVERIFY(!Stored(QStringLiteral("Config/CurRectID")).isValid());
    }
};

KIVO_TEST(TestLayoutEditorSaving)
#include "tst_layout_editor_saving.moc"
