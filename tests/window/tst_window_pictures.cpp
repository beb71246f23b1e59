#include <QDragEnterEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

#include <atomic>

#include "pictures/picture_reader.h"
#include "pictures/picture_work.h"
#include "support/picture_hands.h"

using namespace kivo;
using namespace kivo::test;

// Pictures that change, vanish, come back or hang under the window: what it shows is what it sends.
class TestWindowPictures : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void PictureMovedAwayBeforeApplyIsReplacedAndSaid();
    void PictureThatComesBackIsShownAgain();
    void StandInCannotBeTrimmed();
    void NoticeAndHintShareTheirLine();
    void PictureOverwrittenBeforeApplyIsShownAndSent();
    void PictureGoneAtAStartIsTheDefaultOneInBoth();
    void PictureThatHangsFreezesNothing();
    void PictureChosenRightBeforeApplyIsSent();
    void PictureChosenBelongsToItsLayout();
    void SeveralPicturesFromTheDialog();
    void PicturesDroppedFromAFileManager();
    void OnlyPictureFilesCanBeDropped();
    void ADoubledSlashDoesNotOutliveTheDeletion();
    void FileDialogOpensInAFolderThatIsThere();

private:
    QString Write(const char* name, const QColor& color) const {
        return m_folder->Write(QLatin1String(name), Encoded(Filled(QSize(640, 340), color), "PNG"));
    }
    std::unique_ptr<PictureFolder> m_folder;
};

namespace {

// What the panel shows on the whole.
QColor PanelColour(const Desk& desk) {
    return desk.panel.State()
        .image.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .pixelColor(0, 0);
}
bool IsMostlyBlue(const QColor& colour) {
    return colour.blue() > 2 * colour.red() && colour.blue() > 2 * colour.green();
}

bool IsNoticeSeen(const Desk& desk) {
    return desk.Find("pictureNotice")->isVisible();
}
QString Notice(const Desk& desk) {
    return desk.Find<QLabel>("pictureNoticeText")->text();
}
PictureFailure CardFailure(const Desk& desk, int row) {
    return static_cast<PictureFailure>(List(desk)->item(row)->data(PictureList::kFailureRole).toInt());
}

// A custom layout with that picture, while it is edited.
void EditOver(Desk& desk, const QString& path) {
    desk.Show();
    ClickOn(desk, "btnImage");
    AddByHand(desk, path);
    desk.WaitForPictures();
    ClickOn(desk, "btnEdit");
}

// The state as the panel has to show it, with the default picture in the place of its own.
ScreenState WithDefaultPicture(ScreenState state) {
    state = DrawnState(state, true);
    state.layout.picture.clear();
    return state;
}

// Reads files, but those of a share that hangs until it is let go.
class HangingShare {
public:
    PictureSource::Readers Readers() {
        const PictureSource::Readers files = FileReaders();
        return {[this, files](const QString& path, const Picture* former, const PictureWork& work) {
                    Hang(path, work);
                    return files.picture(path, former, work);
                },
                [this, files](const QString& path, QSize pixels, const PictureWork& work) {
                    Hang(path, work);
                    return files.thumbnail(path, pixels, work);
                }};
    }
    void LetGo() { m_hangs = false; }

private:
    void Hang(const QString& path, const PictureWork& work) {
        const PictureWork::FileAccess access(work);
        while (m_hangs && !work.IsStopped() && path.contains(QLatin1String("slow"))) {
            QThread::msleep(1);
        }
    }
    std::atomic<bool> m_hangs{true};
};

bool DragOnto(QWidget* widget, const QMimeData& data, bool drop) {
    QDragEnterEvent enter(QPoint(50, 100), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                          Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &enter);
    if (!drop || !enter.isAccepted()) {
        return enter.isAccepted();
    }
    QDropEvent dropped(QPoint(50, 100), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                       Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &dropped);
    return dropped.isAccepted() && dropped.dropAction() == Qt::CopyAction;
}

}  // namespace

void TestWindowPictures::initTestCase() {
    PrepareApplication();
}

void TestWindowPictures::init() {
    SetUpProfile();
    m_folder = std::make_unique<PictureFolder>();
}

void TestWindowPictures::PictureMovedAwayBeforeApplyIsReplacedAndSaid() {
    const QString path = Write("mine.png", Qt::red);
    Desk desk;
    desk.Show();
    const QColor plain = PreviewColour(desk);
    AddByHand(desk, path);
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
    QVERIFY(!IsNoticeSeen(desk));
    QTRY_VERIFY(!List(desk)->item(1)->icon().isNull());
    QVERIFY(QFile::remove(path));
    QVERIFY(ApplyAndWait(desk));
    // The path is kept, the default picture is shown in both.
    QCOMPARE(PicturePath(SavedLook()), path);
    TRY_PANEL_SHOWS(desk, WithDefaultPicture(SavedLook()));
    QCOMPARE(PreviewColour(desk), plain);
    QVERIFY(IsNoticeSeen(desk));
    QVERIFY(Notice(desk).contains(QStringLiteral("mine.png")));
    QVERIFY(!Notice(desk).contains(QStringLiteral("图片")));
    QTRY_COMPARE(CardFailure(desk, 1), PictureFailure::Missing);
    QVERIFY(List(desk)->item(1)->icon().isNull());
    QVERIFY(List(desk)
                ->item(1)
                ->data(Qt::AccessibleTextRole)
                .toString()
                .startsWith(QStringLiteral("mine.png, ")));
    QCOMPARE(List(desk)->item(1)->text(), QString());
    QCOMPARE(SelectedPath(desk), path);
    // Another layout has nothing to say.
    ClickListRow(desk, "themeList", 2);
    QVERIFY(!IsNoticeSeen(desk));
}

void TestWindowPictures::PictureThatComesBackIsShownAgain() {
    const QString path = Write("mine.png", Qt::red);
    Desk desk;
    desk.Show();
    AddByHand(desk, path);
    QVERIFY(QFile::remove(path));
    QVERIFY(ApplyAndWait(desk));
    desk.WaitForPictures();
    QVERIFY(IsNoticeSeen(desk));
    Write("mine.png", Qt::red);
    desk.Editor()->CheckPicture();
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
    QVERIFY(!IsNoticeSeen(desk));
    QTRY_COMPARE(CardFailure(desk, 1), PictureFailure::None);
    QTRY_VERIFY(!List(desk)->item(1)->icon().isNull());
    QVERIFY(ApplyAndWait(desk));
    TRY_PANEL_SHOWS(desk, SavedLook());
    QVERIFY(IsMostlyRed(PanelColour(desk)));
}

// What is trimmed over it would hold for the picture that is not there.
void TestWindowPictures::StandInCannotBeTrimmed() {
    const QString path = Write("mine.png", Qt::red);
    Desk desk;
    EditOver(desk, path);
    ClickOn(desk, "trimButton");
    QVERIFY(desk.Editor()->IsTrimming());
    QVERIFY(QFile::remove(path));
    desk.Editor()->CheckPicture();
    desk.WaitForPictures();
    QTRY_VERIFY(!desk.Find("trimButton")->isEnabled());
    QVERIFY(!desk.Editor()->IsTrimming());
    Write("mine.png", Qt::red);
    desk.Editor()->CheckPicture();
    desk.WaitForPictures();
    QTRY_VERIFY(desk.Find("trimButton")->isEnabled());
    QVERIFY(!desk.Editor()->IsTrimming());
    ClickOn(desk, "trimButton");
    QVERIFY(desk.Editor()->IsTrimming());
}

void TestWindowPictures::NoticeAndHintShareTheirLine() {
    const QString path = Write("mine.png", Qt::red);
    Desk desk;
    EditOver(desk, path);
    const QWidget* hint = desk.Find("editHint");
    QCheckBox* fan = desk.Find<QCheckBox>("check7");
    QVERIFY(hint->isVisible());
    QVERIFY(QFile::remove(path));
    desk.Editor()->CheckPicture();
    desk.WaitForPictures();
    QTRY_VERIFY(IsNoticeSeen(desk));
    QVERIFY(!hint->isVisible());
    // What was just asked for and did not come out is said first.
    fan->click();
    QVERIFY(hint->isVisible());
    QVERIFY(!IsNoticeSeen(desk));
    fan->click();
    QVERIFY(!hint->isVisible());
    QVERIFY(IsNoticeSeen(desk));
    ClickOn(desk, "btnEdit_cancel");
    QVERIFY(!hint->isVisible());
    QVERIFY(IsNoticeSeen(desk));
}

void TestWindowPictures::PictureOverwrittenBeforeApplyIsShownAndSent() {
    const QString path = Write("mine.png", Qt::red);
    Desk desk;
    desk.Show();
    AddByHand(desk, path);
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
    m_folder->Write(QStringLiteral("mine.png"), Encoded(Filled(QSize(650, 340), Qt::blue), "PNG"));
    QVERIFY(ApplyAndWait(desk));
    QVERIFY(IsMostlyBlue(PreviewColour(desk)));
    TRY_PANEL_SHOWS(desk, SavedLook());
    QVERIFY(IsMostlyBlue(PanelColour(desk)));
    QVERIFY(!IsNoticeSeen(desk));
}

void TestWindowPictures::PictureGoneAtAStartIsTheDefaultOneInBoth() {
    const QString path = Write("mine.png", Qt::red);
    {
        Desk desk;
        desk.Show();
        AddByHand(desk, path);
        QVERIFY(ApplyAndWait(desk));
    }
    QVERIFY(QFile::remove(path));
    // The background has to be composed again, and the panel has nothing.
    QVERIFY(QFile::remove(FrameStore::DefaultPath()));
    QFile::remove(WorkingFolder() + QStringLiteral("/whole.state"));
    Desk desk;
    desk.Show();
    QCOMPARE(Background(desk), path);
    TRY_PANEL_SHOWS(desk, WithDefaultPicture(SavedLook()));
    const QImage saved(FrameStore::DefaultPath());
    QVERIFY(qGray(saved.scaled(1, 1, {}, Qt::SmoothTransformation).pixel(0, 0)) > 8);
    const QColor shown = PreviewColour(desk);
    QVERIFY(IsNoticeSeen(desk));
    ClickListRow(desk, "pictureList", 3);  // the second built-in one, which is the default
    QCOMPARE(Background(desk), DefaultBackground());
    QCOMPARE(PreviewColour(desk), shown);
}

void TestWindowPictures::PictureThatHangsFreezesNothing() {
    HangingShare share;
    const QString slow = Write("slow.png", Qt::red);
    const QString quick = Write("quick.png", Qt::blue);
    Desk desk;
    desk.pictureReaders = share.Readers();
    desk.Restart();
    desk.Show();
    AddByHand(desk, quick);
    QVERIFY(IsMostlyBlue(PreviewColour(desk)));
    // Chosen, and the window goes on: the former picture stands, the card says what is to come.
    desk.pictureToChoose = slow;
    ClickAt(List(desk)->viewport(), RowCentre(List(desk), 0));
    QCOMPARE(SelectedPath(desk), slow);
    QCOMPARE(Background(desk), quick);
    // It is applied as it was chosen; what stands in for it is shown by both.
    QVERIFY(ApplyAndWait(desk));
    QCOMPARE(PicturePath(SavedLook()), slow);
    TRY_PANEL_SHOWS(desk, WithDefaultPicture(SavedLook()));
    QTRY_VERIFY(IsNoticeSeen(desk));
    QVERIFY(Notice(desk).contains(QStringLiteral("slow.png")));
    QTRY_COMPARE(CardFailure(desk, 2), PictureFailure::NoAnswer);
    share.LetGo();
    QTRY_VERIFY(!IsNoticeSeen(desk));
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
    QVERIFY(ApplyAndWait(desk));
    TRY_PANEL_SHOWS(desk, SavedLook());
    QVERIFY(IsMostlyRed(PanelColour(desk)));
}

// A large one is still being read then.
void TestWindowPictures::PictureChosenRightBeforeApplyIsSent() {
    const QString path = Write("mine.png", Qt::red);
    Desk desk;
    desk.Show();
    desk.pictureToChoose = path;
    ClickAt(List(desk)->viewport(), RowCentre(List(desk), 0));
    QVERIFY(ApplyAndWait(desk));
    QCOMPARE(PicturePath(SavedLook()), path);
    TRY_PANEL_SHOWS(desk, SavedLook());
    QVERIFY(IsMostlyRed(PanelColour(desk)));
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
}

void TestWindowPictures::PictureChosenBelongsToItsLayout() {
    const QString path = Write("mine.png", Qt::red);
    Desk desk;
    desk.Show();
    desk.pictureToChoose = path;
    ClickAt(List(desk)->viewport(), RowCentre(List(desk), 0));
    ClickOn(desk, "btnPortrait");
    QCOMPARE(Background(desk), DefaultBackground());
    desk.WaitForPictures();
    QCOMPARE(Background(desk), DefaultBackground());
    ClickOn(desk, "btnLandscape");
    QCOMPARE(Background(desk), path);
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
}

void TestWindowPictures::SeveralPicturesFromTheDialog() {
    const QStringList paths = {Write("a.png", Qt::blue), Write("b.png", Qt::green), Write("c.png", Qt::red)};
    Desk desk;
    desk.Show();
    AddByHand(desk, paths.join(QLatin1Char('\n')));
    QCOMPARE(List(desk)->count(), 15);
    QCOMPARE(StoredPaths(), paths);
    QCOMPARE(Background(desk), paths.last());
    QCOMPARE(SelectedPath(desk), paths.last());
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
}

void TestWindowPictures::PicturesDroppedFromAFileManager() {
    const QStringList paths = {Write("a.png", Qt::blue), Write("b.JPG", Qt::red)};
    const QString letter = m_folder->Write(QStringLiteral("letter.txt"), "Dear friend,");
    Desk desk;
    desk.Show();
    QMimeData data;
    data.setUrls(
        {QUrl::fromLocalFile(paths.at(0)), QUrl::fromLocalFile(letter), QUrl::fromLocalFile(paths.at(1))});
    QVERIFY(DragOnto(List(desk)->viewport(), data, true));
    QTRY_COMPARE(StoredPaths(), paths);
    desk.WaitForPictures();
    QCOMPARE(Background(desk), paths.last());
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
    // Dropped once more they stand there once.
    QVERIFY(DragOnto(List(desk)->viewport(), data, true));
    QCoreApplication::processEvents();
    QCOMPARE(StoredPaths(), paths);
}

void TestWindowPictures::OnlyPictureFilesCanBeDropped() {
    Desk desk;
    desk.Show();
    QMimeData letter;
    letter.setUrls({QUrl::fromLocalFile(QStringLiteral("/home/letter.txt")),
                    QUrl(QStringLiteral("https://example.org/a.png"))});
    QMimeData text;
    text.setText(QStringLiteral("/home/a.png"));
    QVERIFY(!DragOnto(List(desk)->viewport(), letter, false));
    QVERIFY(!DragOnto(List(desk)->viewport(), text, false));
    QCOMPARE(StoredCount(), 0);
}

void TestWindowPictures::ADoubledSlashDoesNotOutliveTheDeletion() {
    const QString path = Write("mine.png", Qt::red);
    const QString doubled = m_folder->Path() + QStringLiteral("//mine.png");
    Desk desk;
    desk.Show();
    AddByHand(desk, path);
    // As settings written by hand have it.
    desk.Editor()->SetBackground(doubled);
    desk.WaitForPictures();
    QVERIFY(IsMostlyRed(PreviewColour(desk)));
    AnswerNextBox(desk, true);
    DeleteRow(desk, 1, DeleteBy::Cross);
    QCOMPARE(StoredCount(), 0);
    QCOMPARE(Background(desk), BuiltInBackgrounds().first());
    QVERIFY(!IsMostlyRed(PreviewColour(desk)));
    // Nor does it come back with another layout or a step back.
    desk.Editor()->Undo();
    QVERIFY(Background(desk) != doubled);
}

void TestWindowPictures::FileDialogOpensInAFolderThatIsThere() {
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    QDir(pictures).removeRecursively();
    Desk desk;
    desk.hasFileDialog = true;
    desk.Restart();
    desk.Show();
    QString typed = QStringLiteral("-");
    QString folder;
    bool severalAtOnce = false;
    OnNextDialog<QFileDialog>(desk.window.get(), [&](QFileDialog* dialog) {
        typed = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
        folder = dialog->directory().absolutePath();
        severalAtOnce = dialog->fileMode() == QFileDialog::ExistingFiles;
        dialog->reject();
    });
    ClickListRow(desk, "pictureList", 0);
    QCOMPARE(typed, QString());
    QVERIFY(QDir(folder).exists());
    QCOMPARE(folder, QDir::homePath());
    QVERIFY(severalAtOnce);
    QCOMPARE(List(desk)->count(), 12);
}

KIVO_TEST(TestWindowPictures)
#include "tst_window_pictures.moc"
