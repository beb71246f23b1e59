#include <QLineEdit>

#include "support/picture_hands.h"
#include "support/test_program.h"
#include "window/state_line.h"

using namespace kivo;
using namespace kivo::test;

// Names of one's own pictures as a person gives them in the window, down to the settings.
class TestWindowPictureNames : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void init();
    void ANameIsStoredAtOnceAndOutlivesTheProgram();
    void ANameOutlivesThatItsFileIsGone();
    void ADoubleClickNamesThePicture();
    void TheRowThatIsNamedStaysTheCurrentOne();
    void TheFrameGoesBackOnceTheLineIsLeft();
    void ANameThatIsTypedWhenTheWindowGoesIsKept();
    void TheQuestionBeforeDeletingSaysTheName_data();
    void TheQuestionBeforeDeletingSaysTheName();
    void ANameThatCannotBeSavedIsTold();
    void ANameThatIsRefusedIsTold();
    void SettingsWithoutNamesHaveNone();

private:
    // Stored as an earlier run left them.
    QStringList StorePictures(int count) const;

    std::unique_ptr<PictureFolder> m_folder;
};

namespace {

QString Sea() {
    return QStringLiteral("Sea side");
}

// Null where no line is open.
QLineEdit* Line(const Desk& desk) {
    for (auto* const line : List(desk)->findChildren<QLineEdit*>()) {
        if (line->isVisible()) {
            return line;
        }
    }
    return nullptr;
}

// By the keys, without choosing the row.
void OpenLine(const Desk& desk, int row) {
    QVERIFY(TabTo(desk, "pictureList"));
    PressKey(desk, Qt::Key_Home);
    for (int step = 0; step < row; ++step) {
        PressKey(desk, Qt::Key_Right);
    }
    QCOMPARE(List(desk)->currentRow(), row);
    PressKey(desk, Qt::Key_F2);
    QVERIFY(Line(desk) != nullptr);
}

void Rename(const Desk& desk, int row, const QString& name) {
    OpenLine(desk, row);
    Line(desk)->clear();
    QTest::keyClicks(Line(desk), name);
    PressKey(desk, Qt::Key_Return);
    QTRY_VERIFY(Line(desk) == nullptr);
}

// As it stands in the file, with nothing of the program in between.
QString StoredName(const QString& path) {
    return QSettings(ConfigFilePath(), QSettings::IniFormat)
        .value(QStringLiteral("ImageNames/") + path)
        .toString();
}

QString Spoken(const Desk& desk, int row) {
    return List(desk)->item(row)->data(Qt::AccessibleTextRole).toString();
}

}  // namespace

void TestWindowPictureNames::init() {
    SetUpProfile();
    m_folder = std::make_unique<PictureFolder>();
}

QStringList TestWindowPictureNames::StorePictures(int count) const {
    QStringList paths;
    QSettings settings(ConfigFilePath(), QSettings::IniFormat);
    settings.setValue(QStringLiteral("ImageList/Count"), count);
    for (int n = 0; n < count; ++n) {
        paths.append(m_folder->Write(QStringLiteral("picture %1.png").arg(n),
                                     Encoded(Filled(QSize(64, 34), Qt::red), "PNG")));
        settings.setValue(QStringLiteral("ImageList/%1").arg(n), paths.last());
    }
    return paths;
}

void TestWindowPictureNames::ANameIsStoredAtOnceAndOutlivesTheProgram() {
    const QStringList paths = StorePictures(3);
    Desk desk;
    desk.Show();
    Rename(desk, 2, Sea());
    QCOMPARE(StoredName(paths.at(1)), Sea());
    QCOMPARE(StoredPaths(), paths);
    const auto box = AnswerNextBox(desk, true);
    DeleteRow(desk, 1, DeleteBy::Cross);
    QCOMPARE(box->count, 1);
    desk.Restart();
    desk.Show();
    QCOMPARE(Spoken(desk, 1), Sea());
    QCOMPARE(Spoken(desk, 2), QStringLiteral("picture 2.png"));
    AnswerNextBox(desk, true);
    DeleteRow(desk, 1, DeleteBy::Cross);
    QCOMPARE(StoredName(paths.at(1)), QString());
}

void TestWindowPictureNames::ANameOutlivesThatItsFileIsGone() {
    const QStringList paths = StorePictures(1);
    Desk desk;
    desk.Show();
    Rename(desk, 1, Sea());
    QTRY_VERIFY(QFile::remove(paths.first()) || !QFile::exists(paths.first()));
    desk.Restart();
    desk.Show();
    QTRY_COMPARE(Spoken(desk, 1),
                 Sea() + QStringLiteral(", ") + PictureList::FailureText(PictureFailure::Missing));
    // Something else is stored meanwhile.
    AddByHand(desk, m_folder->Write(QStringLiteral("a.png"), Encoded(Filled(QSize(8, 8), Qt::red), "PNG")));
    QCOMPARE(StoredCount(), 2);
    QCOMPARE(StoredName(paths.first()), Sea());
}

void TestWindowPictureNames::ADoubleClickNamesThePicture() {
    const QStringList paths = StorePictures(2);
    Desk desk;
    desk.Show();
    QVERIFY(QTest::qWaitForWindowActive(desk.window.get()));
    QListWidget* const list = List(desk);
    const QRect item = list->visualItemRect(list->item(2));
    const QPoint name(item.center().x(), item.bottom() - 8);
    ClickAt(list->viewport(), name);
    QTest::mouseDClick(desk.window->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                       list->viewport()->mapTo(desk.window.get(), name));
    desk.WaitForPictures();
    QVERIFY(Line(desk) != nullptr);
    QCOMPARE(Background(desk), paths.at(1));
    QTest::keyClicks(Line(desk), Sea());
    PressKey(desk, Qt::Key_Return);
    QTRY_COMPARE(StoredName(paths.at(1)), Sea());
    QCOMPARE(SelectedPath(desk), paths.at(1));
}

// It need not be the one that is shown.
void TestWindowPictureNames::TheRowThatIsNamedStaysTheCurrentOne() {
    const QStringList paths = StorePictures(3);
    Desk desk;
    desk.Show();
    const QString before = Background(desk);
    OpenLine(desk, 2);
    QTest::qWait(0);
    QVERIFY(Line(desk) != nullptr && Line(desk)->hasFocus());
    QCOMPARE(List(desk)->currentRow(), 2);
    PressKey(desk, Qt::Key_Escape);
    QTRY_VERIFY(Line(desk) == nullptr);
    QVERIFY(List(desk)->hasFocus());
    QCOMPARE(List(desk)->currentRow(), 2);
    QCOMPARE(Background(desk), before);
}

void TestWindowPictureNames::TheFrameGoesBackOnceTheLineIsLeft() {
    const QStringList paths = StorePictures(3);
    Desk desk;
    desk.Show();
    OpenLine(desk, 2);
    QTest::keyClicks(Line(desk), Sea());
    PressKey(desk, Qt::Key_Tab);
    QTRY_VERIFY(Line(desk) == nullptr);
    QVERIFY(!List(desk)->hasFocus());
    QTRY_COMPARE(SelectedPath(desk), Background(desk));
    QVERIFY(Background(desk) != paths.at(1));
    QCOMPARE(StoredName(paths.at(1)), Sea());
}

void TestWindowPictureNames::ANameThatIsTypedWhenTheWindowGoesIsKept() {
    const QStringList paths = StorePictures(2);
    Desk desk;
    desk.Show();
    OpenLine(desk, 1);
    QTest::keyClicks(Line(desk), Sea());
    desk.window->hide();
    QTRY_COMPARE(StoredName(paths.at(0)), Sea());
    desk.Show();
    QVERIFY(Line(desk) == nullptr);
    // The program's end is one way to go.
    desk.Restart();
    desk.Show();
    OpenLine(desk, 2);
    QTest::keyClicks(Line(desk), QStringLiteral("Lake"));
    desk.Close();
    QCOMPARE(StoredName(paths.at(1)), QStringLiteral("Lake"));
}

void TestWindowPictureNames::TheQuestionBeforeDeletingSaysTheName_data() {
    QTest::addColumn<QString>("locale");
    for (const char* locale : {"zh_CN", "en_US", "ru_RU"}) {
        QTest::newRow(locale) << QString::fromLatin1(locale);
    }
}

void TestWindowPictureNames::TheQuestionBeforeDeletingSaysTheName() {
    QFETCH(QString, locale);
    StorePictures(2);
    Desk desk{QLocale(locale)};
    desk.Show();
    const QString name = QStringLiteral("Sea %1 %n");
    Rename(desk, 1, name);
    const auto named = AnswerNextBox(desk, false);
    DeleteRow(desk, 1, DeleteBy::Cross);
    QCOMPARE(named->count, 1);
    QCOMPARE(named->text, MainText("是否删除图片“%1”？").arg(name));
    QVERIFY(named->text.contains(name));
    const auto plain = AnswerNextBox(desk, false);
    DeleteRow(desk, 2, DeleteBy::Cross);
    QCOMPARE(plain->text, MainText("是否删除此图片？"));
}

void TestWindowPictureNames::ANameThatCannotBeSavedIsTold() {
    const QStringList paths = StorePictures(1);
    Desk desk;
    desk.Show();
    auto* const told = desk.Find<StateLine>("stateLine");
    const QString inTheWay = ConfigFilePath() + QStringLiteral(".lock");
    QVERIFY(QDir().mkpath(inTheWay + QStringLiteral("/in the way")));
    Rename(desk, 1, Sea());
    QVERIFY(QDir(inTheWay).removeRecursively());
    QVERIFY(told->Unsaved().testFlag(SettingsPart::Pictures));
    QCOMPARE(Spoken(desk, 1), Sea());
    // The next occasion saves it, as it does the list.
    QVERIFY(ApplyAndWait(desk));
    QVERIFY(!told->Unsaved().testFlag(SettingsPart::Pictures));
    QCOMPARE(StoredName(paths.first()), Sea());
}

void TestWindowPictureNames::ANameThatIsRefusedIsTold() {
    StorePictures(1);
    Desk desk;
    desk.Show();
    const auto box = AnswerNextBox(desk, true);
    Q_EMIT desk.window->findChild<PictureList*>()->nameRefused();
    QTRY_COMPARE(box->count, 1);
    QCOMPARE(box->text, MainText("名称太多，无法保存此名称。"));
}

void TestWindowPictureNames::SettingsWithoutNamesHaveNone() {
    const QStringList paths = StorePictures(2);
    Desk desk;
    desk.Show();
    QCOMPARE(Spoken(desk, 1), QStringLiteral("picture 0.png"));
    // A line that was only looked at names nothing.
    OpenLine(desk, 1);
    PressKey(desk, Qt::Key_Return);
    QTRY_VERIFY(Line(desk) == nullptr);
    AddByHand(desk, m_folder->Write(QStringLiteral("a.png"), Encoded(Filled(QSize(8, 8), Qt::red), "PNG")));
    QCOMPARE(StoredCount(), 3);
    QVERIFY(!QSettings(ConfigFilePath(), QSettings::IniFormat)
                 .childGroups()
                 .contains(QStringLiteral("ImageNames")));
}

KIVO_TEST(TestWindowPictureNames)
#include "tst_window_picture_names.moc"
