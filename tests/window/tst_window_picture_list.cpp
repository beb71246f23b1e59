#include <QImageReader>

#include "support/picture_hands.h"

using namespace kivo;
using namespace kivo::test;

// The picture list as a person uses it, down to the settings and the panel.
class TestWindowPictureList : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void WithNoUserPicturesThereAreTwelveRows();
    void AddedPictureIsShownSelectedAndStored_data();
    void AddedPictureIsShownSelectedAndStored();
    void AddedPictureIsOnThePanelOnceApplied();
    void CancelledFileDialogChangesNothing();
    void PictureThatCannotBeLoadedIsTold_data();
    void PictureThatCannotBeLoadedIsTold();
    void SamePictureTwiceStandsOnce();
    void BuiltInPictureIsOnThePanelOnceApplied();
    void DeletingDropsTheCountAndRenumbers_data();
    void DeletingDropsTheCountAndRenumbers();
    void DeletingThatIsRejectedKeeps_data();
    void DeletingThatIsRejectedKeeps();
    void DeletingTheFirstBuiltInIsRefused_data();
    void DeletingTheFirstBuiltInIsRefused();
    void RightPressBesideEveryRowAsksNothing();
    void DeletingTheShownPictureShowsTheNext();
    void DeletingTheShownPictureWithNoneToFollowShowsABuiltIn_data();
    void DeletingTheShownPictureWithNoneToFollowShowsABuiltIn();
    void ListOutlivesTheProgramAndItsFiles();
    void ThousandPicturesThatAreNotThere();
    void EachThemeAndOrientationKeepsItsPicture();
    void KeyboardAloneAddsPicksAndDeletes();

private:
    // Stored as an earlier run left them; the first one is red, the others are blue.
    QStringList StorePictures(int count) const;

    std::unique_ptr<PictureFolder> m_folder;
};

namespace {

void AddDeleteRows() {
    QTest::addColumn<DeleteBy>("by");
    QTest::newRow("cross") << DeleteBy::Cross;
    QTest::newRow("delete key") << DeleteBy::Key;
    QTest::newRow("right press") << DeleteBy::RightPress;
}

}  // namespace

Q_DECLARE_METATYPE(DeleteBy)

void TestWindowPictureList::initTestCase() {
    PrepareApplication();
}

void TestWindowPictureList::init() {
    SetUpProfile();
    m_folder = std::make_unique<PictureFolder>();
}

QStringList TestWindowPictureList::StorePictures(int count) const {
    QStringList paths;
    QSettings settings(ConfigFilePath(), QSettings::IniFormat);
    settings.setValue(QStringLiteral("ImageList/Count"), count);
    for (int n = 0; n < count; ++n) {
        const QColor colour = n == 0 ? Qt::red : Qt::blue;
        paths.append(m_folder->Write(QStringLiteral("picture %1.png").arg(n),
                                     Encoded(Filled(QSize(640, 340), colour), "PNG")));
        settings.setValue(QStringLiteral("ImageList/%1").arg(n), paths.last());
    }
    return paths;
}

void TestWindowPictureList::WithNoUserPicturesThereAreTwelveRows() {
    Desk desk;
    desk.Show();
    QCOMPARE(List(desk)->count(), 12);
    QCOMPARE(PathOfRow(desk, 0), QStringLiteral("://skins/add.png"));
    for (int row = 1; row < 12; ++row) {
        QCOMPARE(PathOfRow(desk, row), BuiltInBackgrounds().at(row - 1));
    }
    QVERIFY(List(desk)->currentRow() > 0);
    QCOMPARE(SelectedPath(desk), Background(desk));
    // Saving writes that there is none.
    AddByHand(desk, m_folder->Write(QStringLiteral("a.png"), Encoded(Filled(QSize(8, 8), Qt::red), "PNG")));
    QCOMPARE(List(desk)->count(), 13);
    const auto box = AnswerNextBox(desk, true);
    DeleteRow(desk, 1, DeleteBy::Cross);
    QCOMPARE(box->count, 1);
    QCOMPARE(List(desk)->count(), 12);
    QCOMPARE(StoredCount(), 0);
    QVERIFY(QSettings(ConfigFilePath(), QSettings::IniFormat).contains(QStringLiteral("ImageList/Count")));
    QCOMPARE(StoredPaths(), QStringList());
}

void TestWindowPictureList::AddedPictureIsShownSelectedAndStored_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");  // empty: the GIF
    QTest::newRow("png") << QStringLiteral("a.png") << QByteArray("PNG");
    QTest::newRow("jpg") << QStringLiteral("a.JPG") << QByteArray("JPEG");
    QTest::newRow("jpeg") << QStringLiteral("a.jpeg") << QByteArray("JPEG");
    QTest::newRow("jfif") << QStringLiteral("a.jfif") << QByteArray("JPEG");
    QTest::newRow("bmp") << QStringLiteral("a.bmp") << QByteArray("BMP");
    QTest::newRow("gif") << QStringLiteral("a.gif") << QByteArray();
    // A plugin of its own, which a machine may lack.
    if (QImageReader::supportedImageFormats().contains("webp")) {
        QTest::newRow("webp") << QStringLiteral("a.webp") << QByteArray("WEBP");
    }
    QTest::newRow("jpeg that calls itself png") << QStringLiteral("b.png") << QByteArray("JPEG");
    QTest::newRow("odd name") << PossibleName(QStringLiteral("Ünter; den=\"背景\" %20,\\x.png"))
                              << QByteArray("PNG");
}

void TestWindowPictureList::AddedPictureIsShownSelectedAndStored() {
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    const QByteArray content =
        format.isEmpty() ? kRedGif : Encoded(Filled(QSize(640, 340), Qt::red), format.constData());
    const QString path = m_folder->Write(name, content);
    StorePictures(2);
    Desk desk;
    desk.Show();
    QVERIFY(!IsMostlyRed(PreviewColour(desk)));
    AddByHand(desk, path);
    QCOMPARE(List(desk)->count(), 15);
    QCOMPARE(List(desk)->currentRow(), 3);
    QCOMPARE(SelectedPath(desk), path);
    QCOMPARE(List(desk)->item(3)->text(), QString());
    QCOMPARE(Background(desk), path);
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
    QTRY_VERIFY(!List(desk)->item(3)->icon().isNull());
    QCOMPARE(StoredCount(), 3);
    QCOMPARE(StoredPaths().value(2), path);
    // Nothing has been applied yet.
    QCOMPARE(PicturePath(SavedLook()), DefaultBackground());
}

void TestWindowPictureList::AddedPictureIsOnThePanelOnceApplied() {
    const QString path =
        m_folder->Write(QStringLiteral("a.png"), Encoded(Filled(QSize(300, 900), Qt::red), "PNG"));
    Desk desk;
    desk.Show();
    AddByHand(desk, path);
    QVERIFY(ApplyAndWait(desk));
    const ScreenState look = SavedLook();
    QCOMPARE(PicturePath(look), path);
    const QImage shown = desk.panel.State().image.scaled(1, 1, {}, Qt::SmoothTransformation);
    QVERIFY(IsMostlyRed(shown.pixelColor(0, 0)));
    TRY_VALUES_GO_ON(desk);
    TRY_PANEL_SHOWS(desk, look);
}

void TestWindowPictureList::CancelledFileDialogChangesNothing() {
    const QStringList paths = StorePictures(2);
    Desk desk;
    desk.Show();
    ClickListRow(desk, "pictureList", 2);
    AddByHand(desk, QString());
    QCOMPARE(List(desk)->count(), 14);
    QCOMPARE(List(desk)->currentRow(), 2);
    QCOMPARE(Background(desk), paths.at(1));
    QCOMPARE(StoredPaths(), paths);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void TestWindowPictureList::PictureThatCannotBeLoadedIsTold_data() {
    QTest::addColumn<QByteArray>("content");
    const QByteArray png = Encoded(Striped(QSize(640, 340)), "PNG");
    QTest::newRow("no picture") << QByteArray("This is a letter to a friend.");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("its end is missing") << png.left(60);
    QTest::newRow("absurdly large by its header") << BitmapThatClaims(30000, 30000);
    QTest::newRow("absurdly wide by its header") << JpegThatClaims(65000, 8);
    QTest::newRow("not there") << QByteArray("-");
    QTest::newRow("folder") << QByteArray("/");
}

void TestWindowPictureList::PictureThatCannotBeLoadedIsTold() {
    QFETCH(QByteArray, content);
    QString path = m_folder->Path(QStringLiteral("a.png"));
    if (content == "/") {
        path = m_folder->Path(QStringLiteral("."));
    } else if (content != "-") {
        m_folder->Write(QStringLiteral("a.png"), content);
    }
    Desk desk;
    desk.Show();
    ClickListRow(desk, "pictureList", 4);
    const QString before = Background(desk);
    const QColor colour = PreviewColour(desk);
    const auto box = AnswerNextBox(desk, true);
    AddByHand(desk, path);
    QCOMPARE(box->count, 1);
    QCOMPARE(box->text, MainText("无法打开此图片。"));
    QVERIFY(box->text != QStringLiteral("无法打开此图片。"));
    QCOMPARE(List(desk)->count(), 13);
    QCOMPARE(PathOfRow(desk, 1), path);
    QVERIFY(List(desk)->item(1)->icon().isNull());
    QCOMPARE(Background(desk), before);
    QCOMPARE(PreviewColour(desk), colour);
    QCOMPARE(SelectedPath(desk), before);
    QCOMPARE(StoredPaths(), QStringList(path));
    // It is no better the second time, and can be taken out.
    const auto again = AnswerNextBox(desk, true);
    ClickListRow(desk, "pictureList", 1);
    QCOMPARE(again->count, 1);
    QCOMPARE(SelectedPath(desk), before);
    const auto question = AnswerNextBox(desk, true);
    DeleteRow(desk, 1, DeleteBy::Cross);
    QCOMPARE(question->text, MainText("是否删除此图片？"));
    QCOMPARE(StoredCount(), 0);
    QCOMPARE(Background(desk), before);
}

void TestWindowPictureList::SamePictureTwiceStandsOnce() {
    const QStringList paths = StorePictures(3);
    Desk desk;
    desk.Show();
    AddByHand(desk, paths.at(1));
    QCOMPARE(List(desk)->count(), 15);
    QCOMPARE(List(desk)->currentRow(), 2);
    QCOMPARE(Background(desk), paths.at(1));
    QCOMPARE(StoredPaths(), paths);
}

void TestWindowPictureList::BuiltInPictureIsOnThePanelOnceApplied() {
    Desk desk;
    desk.Show();
    for (int row = 1; row <= 11; ++row) {
        ClickListRow(desk, "pictureList", row);
        QCOMPARE(Background(desk), BuiltInBackgrounds().at(row - 1));
        QCOMPARE(List(desk)->currentRow(), row);
    }
    QVERIFY(ApplyAndWait(desk));
    QCOMPARE(PicturePath(SavedLook()), BuiltInBackgrounds().last());
    TRY_PANEL_SHOWS(desk, SavedLook());
}

void TestWindowPictureList::DeletingDropsTheCountAndRenumbers_data() {
    AddDeleteRows();
}

void TestWindowPictureList::DeletingDropsTheCountAndRenumbers() {
    QFETCH(DeleteBy, by);
    QStringList paths = StorePictures(4);
    Desk desk;
    desk.Show();
    ClickListRow(desk, "pictureList", 8);
    // The key needs its row to be the current one, and a click on it shows its picture.
    const QString shown = by == DeleteBy::Key ? paths.at(2) : Background(desk);
    const auto box = AnswerNextBox(desk, true);
    DeleteRow(desk, 2, by);
    QCOMPARE(box->count, 1);
    QCOMPARE(box->text, MainText("是否删除此图片？"));
    paths.removeAt(1);
    QCOMPARE(List(desk)->count(), 15);
    QCOMPARE(StoredCount(), 3);
    QCOMPARE(StoredPaths(), paths);
    QCOMPARE(Background(desk), shown == paths.at(1) ? paths.at(1) : shown);
    QCOMPARE(SelectedPath(desk), Background(desk));
    QVERIFY(QFile::exists(paths.at(0)));
}

void TestWindowPictureList::DeletingThatIsRejectedKeeps_data() {
    AddDeleteRows();
}

void TestWindowPictureList::DeletingThatIsRejectedKeeps() {
    QFETCH(DeleteBy, by);
    const QStringList paths = StorePictures(2);
    Desk desk;
    desk.Show();
    const auto box = AnswerNextBox(desk, false);
    DeleteRow(desk, 1, by);
    QCOMPARE(box->count, 1);
    QCOMPARE(List(desk)->count(), 14);
    QCOMPARE(StoredPaths(), paths);
    QCOMPARE(SelectedPath(desk), Background(desk));
}

void TestWindowPictureList::DeletingTheFirstBuiltInIsRefused_data() {
    QTest::addColumn<int>("userPictures");
    QTest::newRow("no user pictures") << 0;
    QTest::newRow("some") << 2;
}

void TestWindowPictureList::DeletingTheFirstBuiltInIsRefused() {
    QFETCH(int, userPictures);
    StorePictures(userPictures);
    Desk desk;
    desk.Show();
    const QString before = Background(desk);
    const auto box = AnswerNextBox(desk, true);
    DeleteRow(desk, List(desk)->count() - 11, DeleteBy::RightPress);
    QCOMPARE(box->count, 1);
    QCOMPARE(box->text, MainText("默认图片不能删除。"));
    QVERIFY(box->text != QStringLiteral("默认图片不能删除。"));
    QCOMPARE(List(desk)->count(), 12 + userPictures);
    QCOMPARE(StoredCount(), userPictures);
    QCOMPARE(Background(desk), before);
    QCOMPARE(SelectedPath(desk), before);
    // It has no cross either: a click where that would be picks the picture.
    DeleteRow(desk, List(desk)->count() - 11, DeleteBy::Cross);
    QCOMPARE(Background(desk), BuiltInBackgrounds().first());
    QCOMPARE(List(desk)->count(), 12 + userPictures);
}

void TestWindowPictureList::RightPressBesideEveryRowAsksNothing() {
    StorePictures(1);
    Desk desk;
    desk.Show();
    ClickListRow(desk, "pictureList", 1);
    QListWidget* list = List(desk);
    // Thirteen rows in lines of four: the last line has room behind its only picture.
    const QPoint last = RowCentre(list, 12);
    const QPoint beside = last + QPoint(2 * list->visualItemRect(list->item(12)).width(), 0);
    QVERIFY(list->itemAt(beside) == nullptr && list->viewport()->rect().contains(beside));
    const auto box = AnswerNextBox(desk, false);
    ClickAt(list->viewport(), beside, Qt::RightButton);
    QCOMPARE(box->count, 0);
    QCOMPARE(list->currentRow(), 1);
    // The add entry asks nothing either.
    ClickListRow(desk, "pictureList", 0, Qt::RightButton);
    QCOMPARE(box->count, 0);
    QCOMPARE(list->currentRow(), 1);
}

void TestWindowPictureList::DeletingTheShownPictureShowsTheNext() {
    const QStringList paths = StorePictures(3);
    Desk desk;
    desk.Show();
    ClickListRow(desk, "pictureList", 1);
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
    AnswerNextBox(desk, true);
    DeleteRow(desk, 1, DeleteBy::Cross);
    QCOMPARE(Background(desk), paths.at(1));
    QCOMPARE(List(desk)->currentRow(), 1);
    QVERIFY(!IsMostlyRed(PreviewColour(desk)));
    QCOMPARE(StoredPaths(), paths.mid(1));
}

void TestWindowPictureList::DeletingTheShownPictureWithNoneToFollowShowsABuiltIn_data() {
    QTest::addColumn<int>("userPictures");
    QTest::newRow("it was the last one") << 1;
    QTest::newRow("the next one is not there any more") << 2;
}

void TestWindowPictureList::DeletingTheShownPictureWithNoneToFollowShowsABuiltIn() {
    QFETCH(int, userPictures);
    const QStringList paths = StorePictures(userPictures);
    Desk desk;
    desk.Show();
    ClickListRow(desk, "pictureList", 1);
    QTRY_VERIFY(userPictures == 1 || QFile::remove(paths.last()) || !QFile::exists(paths.last()));
    AnswerNextBox(desk, true);
    DeleteRow(desk, 1, DeleteBy::RightPress);
    QCOMPARE(Background(desk), BuiltInBackgrounds().first());
    QCOMPARE(SelectedPath(desk), BuiltInBackgrounds().first());
    QCOMPARE(StoredPaths(), paths.mid(1));
}

void TestWindowPictureList::ListOutlivesTheProgramAndItsFiles() {
    QStringList paths;
    Desk desk;
    desk.Show();
    for (const char* name : {"b.png", "a.png", "c.png"}) {
        paths.append(
            m_folder->Write(QString::fromLatin1(name), Encoded(Filled(QSize(9, 9), Qt::red), "PNG")));
        AddByHand(desk, paths.last());
    }
    QVERIFY(QFile::remove(paths.at(1)));
    desk.Restart();
    desk.Show();
    QCOMPARE(List(desk)->count(), 15);
    for (int row = 1; row <= 3; ++row) {
        QCOMPARE(PathOfRow(desk, row), paths.at(row - 1));
    }
    QTRY_VERIFY(!List(desk)->item(1)->icon().isNull() && !List(desk)->item(3)->icon().isNull());
    QVERIFY(List(desk)->item(2)->icon().isNull());
    const QString before = Background(desk);
    const auto box = AnswerNextBox(desk, true);
    ClickListRow(desk, "pictureList", 2);
    QCOMPARE(box->text, MainText("无法打开此图片。"));
    QCOMPARE(Background(desk), before);
    QCOMPARE(StoredPaths(), paths);
    // The file comes back, and with the next look at the list its picture.
    m_folder->Write(QStringLiteral("a.png"), Encoded(Filled(QSize(9, 9), Qt::red), "PNG"));
    desk.window->hide();
    desk.window->show();
    QTRY_VERIFY(!List(desk)->item(2)->icon().isNull());
    ClickListRow(desk, "pictureList", 2);
    QCOMPARE(Background(desk), paths.at(1));
}

void TestWindowPictureList::ThousandPicturesThatAreNotThere() {
    constexpr int kCount = 1000;
    {
        QSettings settings(ConfigFilePath(), QSettings::IniFormat);
        settings.setValue(QStringLiteral("ImageList/Count"), kCount);
        for (int n = 0; n < kCount; ++n) {
            settings.setValue(QStringLiteral("ImageList/%1").arg(n),
                              QStringLiteral("/nowhere/%1.png").arg(n));
        }
    }
    Desk desk;
    StartBlank(desk);
    desk.Show();
    QCOMPARE(List(desk)->count(), kCount + 12);
    QTRY_COMPARE_WITH_TIMEOUT(desk.panel.State().counts.frames, quint64(1), 20000);
    // The end is within reach.
    ClickListRow(desk, "pictureList", kCount + 11);
    QCOMPARE(Background(desk), BuiltInBackgrounds().last());
    QTRY_VERIFY(!List(desk)->item(kCount + 11)->icon().isNull());
    const auto box = AnswerNextBox(desk, true);
    DeleteRow(desk, 500, DeleteBy::Cross);
    QCOMPARE(box->count, 1);
    const QStringList stored = StoredPaths();
    QCOMPARE(stored.size(), kCount - 1);
    QCOMPARE(stored.at(498), QStringLiteral("/nowhere/498.png"));
    QCOMPARE(stored.at(499), QStringLiteral("/nowhere/500.png"));
    TRY_VALUES_GO_ON(desk);
}

void TestWindowPictureList::EachThemeAndOrientationKeepsItsPicture() {
    const QStringList paths = StorePictures(2);
    Desk desk;
    desk.Show();
    const auto pick = [&desk](int theme, const char* orientation, int row) {
        ClickListRow(desk, "themeList", theme);
        ClickOn(desk, orientation);
        ClickListRow(desk, "pictureList", row);
    };
    pick(0, "btnLandscape", 1);
    pick(0, "btnPortrait", 2);
    pick(2, "btnPortrait", 5);
    ClickOn(desk, "btnImage");
    ClickListRow(desk, "pictureList", 7);
    ClickOn(desk, "btnTheme");
    QVERIFY(ApplyAndWait(desk));
    QVERIFY(PicturePath(SavedLook()) == BuiltInBackgrounds().at(2));
    for (const bool restarted : {false, true}) {
        if (restarted) {
            desk.Restart();
            desk.Show();
        }
        QCOMPARE(List(desk)->currentRow(), 5);
        ClickListRow(desk, "themeList", 0);
        QCOMPARE(Background(desk), paths.at(1));
        QCOMPARE(List(desk)->currentRow(), 2);
        ClickOn(desk, "btnLandscape");
        QCOMPARE(Background(desk), paths.at(0));
        QCOMPARE(List(desk)->currentRow(), 1);
        QVERIFY(IsMostlyRed(PreviewColour(desk)));
        ClickListRow(desk, "themeList", 2);
        QCOMPARE(Background(desk), DefaultBackground());
        ClickOn(desk, "btnImage");
        // Custom layouts are stored when they are applied.
        QCOMPARE(Background(desk), restarted ? DefaultBackground() : BuiltInBackgrounds().at(4));
        ClickOn(desk, "btnTheme");
        ClickOn(desk, "btnPortrait");
    }
}

void TestWindowPictureList::KeyboardAloneAddsPicksAndDeletes() {
    const QStringList paths = StorePictures(2);
    Desk desk;
    desk.Show();
    QVERIFY(QTest::qWaitForWindowActive(desk.window.get()));
    QVERIFY(TabTo(desk, "pictureList"));
    PressKey(desk, Qt::Key_Home);
    const QString added =
        m_folder->Write(QStringLiteral("new.png"), Encoded(Filled(QSize(9, 9), Qt::red), "PNG"));
    desk.pictureToChoose = added;
    PressKey(desk, Qt::Key_Return);
    QCOMPARE(Background(desk), added);
    QCOMPARE(List(desk)->currentRow(), 3);
    PressKey(desk, Qt::Key_Left);
    QCOMPARE(Background(desk), added);
    PressKey(desk, Qt::Key_Space);
    QCOMPARE(Background(desk), paths.at(1));
    const auto box = std::make_shared<int>(0);
    OnNextDialog<ExitMessageBox>(desk.window.get(), [box](ExitMessageBox* dialog) {
        ++*box;
        QTest::keyClick(dialog->windowHandle(), Qt::Key_Return);
    });
    PressKey(desk, Qt::Key_Delete);
    QCOMPARE(*box, 1);
    QCOMPARE(Background(desk), added);
    QCOMPARE(StoredPaths(), QStringList({paths.at(0), added}));
}

KIVO_TEST(TestWindowPictureList)
#include "tst_window_picture_list.moc"
