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
            themes.customStyle = variant;
            editor.ShowTheme(themes, true);
            const ScreenState state = editor.Shown();
            QVERIFY(LayOutTexts(state, SampleTexts(state.language)).isEmpty());
            // Not even a placeholder: live values change nothing that is seen.
            const QImage before = editor.grab().toImage();
            editor.SetLiveTexts(LiveTexts(state.language)[variant]);
            QCOMPARE(editor.grab().toImage(), before);
        }
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

    void CommittingKeepsTheShownValues() {
        Editor editor;
        editor.SetLiveTexts(LiveTexts(InterfaceLanguage::Chinese)[2]);
        const QImage before = editor.grab().toImage();
        editor.CommitLayout();
        QCOMPARE(editor.grab().toImage(), before);
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

    void KeysUndoAndRedo() {
        Editor editor;
        editor.Drag(SlotPoint(0), SlotPoint(4));
        const SlotRow dragged = editor.Row();
        QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(editor.Row(), FactorySlotTable()[0]);
        QTest::keyClick(&editor, Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(editor.Row(), dragged);
        QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
        QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(editor.Row(), dragged);
        editor.SetEditing(false);
        QTest::keyClick(&editor, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(editor.Row(), dragged);
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

    // A letter may want another pill, which is part of the background; nothing else composes it again.
    void OnlyWhatIsTypedComposesAgain() {
        Editor editor;
        editor.grab();
        const int composed = editor.Background().CompositionCount();
        editor.Press(SlotPoint(0));
        editor.MoveTo(SlotPoint(2));
        editor.grab();
        editor.Release(SlotPoint(0));
        QCOMPARE(editor.Background().CompositionCount(), composed);
        editor.slotShowEdt();
        editor.grab();
        const int withBox = editor.Background().CompositionCount();
        for (const char letter : {'a', 'b', 'c'}) {
            QTest::keyClick(&editor.TextBox(), letter);
            editor.grab();
            editor.grab();
        }
        editor.SetLiveTexts(LiveTexts(InterfaceLanguage::Chinese)[3]);
        editor.grab();
        QCOMPARE(editor.Background().CompositionCount(), withBox + 3);
        QVERIFY(withBox <= composed + 1);  // the flag of the text that is to come is part of the state
    }

    void ShowingItsOwnStateIsHarmless() {
        Editor editor;
        editor.slotShowEdt();
        QTest::keyClicks(&editor.TextBox(), Words());
        editor.ShowTheme(editor.Edited().themes, true);
        QCOMPARE(editor.Layout().freeText, Words());
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
