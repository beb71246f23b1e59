#include <QImageReader>
#include <QSignalSpy>
#include <QTest>

#include "compose/theme_catalogue.h"
#include "config/setting_keys.h"
#include "config/settings_file.h"
#include "picture_list_maker.h"
#include "resources/resources.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int kBuiltIns = 11;

QStringList AllPaths(const PictureList& list, int rows) {
    QStringList paths;
    for (int row = 0; row < rows; ++row) {
        paths.append(list.PathAt(row));
    }
    return paths;
}

}  // namespace

class TestPictureList : public QObject {
    Q_OBJECT

private:
    static int StoredCount() { return SettingsReader().Int(keys::kImageCount); }

private slots:
    void initTestCase() { InitResources(); }
    void init() { StartWithoutSettings(); }

    void WithNoUserPicturesTheListHoldsTwelveRowsAndSavingWritesNought() {
        ListInWindow made(0);
        QFile::remove(ConfigFilePath());
        made.List().LoadPictureList();
        QCOMPARE(made.View().count(), 12);
        QCOMPARE(made.List().UserPictureCount(), 0);
        QVERIFY(made.List().SavePictureList());
        QVERIFY(SettingsReader().Contains(QString(keys::kImageCount.name)));
        QCOMPARE(StoredCount(), 0);
    }

    void RowsFromTopToBottom() {
        ListInWindow made(2);
        const QStringList rows = {QStringLiteral("://skins/add.png"),
                                  UserPaths(2).at(0),
                                  UserPaths(2).at(1),
                                  QStringLiteral("://background/1.jpg"),
                                  QStringLiteral("://background/2.jpg"),
                                  QStringLiteral("://background/3.jpg"),
                                  QStringLiteral("://background/4.jpg"),
                                  QStringLiteral("://background/5.jpg"),
                                  QStringLiteral("://background/6.png"),
                                  QStringLiteral("://background/7.jpg"),
                                  QStringLiteral("://background/8.jpg"),
                                  QStringLiteral("://background/9.jpg"),
                                  QStringLiteral("://background/10.jpg"),
                                  QStringLiteral("://background/11.jpg")};
        QCOMPARE(AllPaths(made.List(), made.View().count()), rows);
        QCOMPARE(made.View().item(1)->data(Qt::UserRole).toString(), rows.at(1));
        QVERIFY(made.List().PathAt(-1).isEmpty());
        QVERIFY(made.List().PathAt(rows.size()).isEmpty());
    }

    void WhatRowsAreCalled() {
        ListInWindow made(1);
        QCOMPARE(made.View().item(0)->text(), QStringLiteral("选择图片文件夹"));
        QCOMPARE(made.View().item(1)->text(), QString());
        for (int row = 2; row < made.View().count(); ++row) {
            QCOMPARE(made.View().item(row)->text(), QStringLiteral("默认图片"));
        }
        made.List().AddPictureItem(QStringLiteral("://background/12.jpg"));  // none of the eleven
        QCOMPARE(made.View().item(made.View().count() - 1)->text(), QString());
    }

    void EveryRowCanBeReadAloud() {
        ListInWindow made(1);
        QCOMPARE(made.View().item(1)->data(Qt::AccessibleTextRole).toString(), QStringLiteral("user 0.jpg"));
        QVERIFY(!made.View().accessibleName().isEmpty());
    }

    void WhichRowsAreTheUsers_data() {
        QTest::addColumn<int>("userPictures");
        QTest::newRow("none") << 0;
        QTest::newRow("one") << 1;
        QTest::newRow("five") << 5;
    }
    void WhichRowsAreTheUsers() {
        QFETCH(int, userPictures);
        ListInWindow made(userPictures);
        const PictureList& list = made.List();
        const int count = made.View().count();
        QCOMPARE(count, 12 + userPictures);
        for (int row = -1; row <= count; ++row) {
            QCOMPARE(list.IsUserPicture(row), row >= 1 && row <= count - 12);
            QCOMPARE(list.IsBuiltIn(row), row >= count - kBuiltIns && row < count);
            // The cross that deletes stands on the same ones.
            QCOMPARE(ExitItemDelegate::CanDelete(row, count), list.IsUserPicture(row));
        }
        QCOMPARE(ExitItemDelegate::kFixedRows, 1 + BuiltInBackgrounds().size());
    }

    void APictureThatIsAddedGoesInBeforeTheBuiltInOnes() {
        ListInWindow made(2);
        const QString added = QStringLiteral("/pictures/new.png");
        QCOMPARE(made.List().InsertUserPictures({added}).lastRow, 3);
        QCOMPARE(made.List().PathAt(3), added);
        QCOMPARE(made.List().PathAt(4), FirstBuiltIn());
        QCOMPARE(made.View().count(), 15);
        QVERIFY(made.List().IsUserPicture(3));
        made.List().SelectPicture(added);
        QCOMPARE(made.View().currentRow(), 3);
        QVERIFY(made.View().item(3)->isSelected());
        // And it is there the next time.
        QVERIFY(made.List().SavePictureList());
        made.List().LoadPictureList();
        QCOMPARE(made.List().PathAt(3), added);
        QCOMPARE(made.View().count(), 15);
    }

    void APictureThatIsThereAlreadyStaysWhereItIs() {
        ListInWindow made(3);
        QCOMPARE(made.List().InsertUserPictures({UserPaths(3).at(1)}).lastRow, 2);
        QCOMPARE(made.List().InsertUserPictures({QStringLiteral("/pictures/../pictures/user 1.jpg")}).lastRow,
                 2);
        QCOMPARE(made.List().InsertUserPictures({FirstBuiltIn()}).lastRow, 4);
        QCOMPARE(made.View().count(), 15);
    }

    void WhatIsNoPictureOfTheUsersIsNotAdded() {
        ListInWindow made(1);
        QCOMPARE(made.List().InsertUserPictures({QString()}).lastRow, -1);
        QCOMPARE(made.List().InsertUserPictures({QStringLiteral("://skins/add.png")}).lastRow, -1);
        QCOMPARE(made.List().InsertUserPictures({QStringLiteral(":/skins/add.png")}).lastRow, -1);
        QCOMPARE(made.View().count(), 13);
    }

    void TheAddEntrysPathInTheSettingsIsNoPicture_data() {
        QTest::addColumn<QString>("path");
        QTest::newRow("as it is") << QStringLiteral("://skins/add.png");
        QTest::newRow("written with one slash") << QStringLiteral(":/skins/add.png");
        QTest::newRow("written with a detour") << QStringLiteral(":/skins/../skins/add.png");
    }
    void TheAddEntrysPathInTheSettingsIsNoPicture() {
        QFETCH(QString, path);
        ListInWindow made(0);
        WriteStoredPictures({path, UserPaths(1).constFirst()}, {});
        made.List().LoadPictureList();
        QCOMPARE(made.View().count(), 13);
        QCOMPARE(made.List().PathAt(1), UserPaths(1).constFirst());
        QVERIFY(made.List().SavePictureList());
        QCOMPARE(ReadStoredPictures(), UserPaths(1));
    }

    // It could not be read again, and nothing of the list would be left at the next start.
    void AListThatHasBecomeTooLongTakesNoMore() {
        ListInWindow made(0);
        QStringList stored;
        while (CanBeStored(stored + UserPaths(1))) {
            stored.append(QStringLiteral("/%1/%2").arg(stored.size()).arg(QString(30000, QLatin1Char('x'))));
        }
        stored.removeLast();
        WriteStoredPictures(stored, {});
        made.List().LoadPictureList();
        QCOMPARE(made.List().UserPictureCount(), stored.size());
        const QString another = QLatin1Char('/') + QString(30000, QLatin1Char('y'));
        QCOMPARE(made.List().InsertUserPictures({another}).lastRow, -1);
        QCOMPARE(made.List().UserPictureCount(), stored.size());
    }

    void DeletingTheFirstBuiltInIsRefused() {
        ListInWindow made(2);
        const int first = made.View().count() - kBuiltIns;
        QCOMPARE(made.List().PathAt(first), FirstBuiltIn());
        QVERIFY(made.List().RemoveUserPicture(first).isEmpty());
        QVERIFY(made.List().IsBuiltIn(first));
        for (const int row : {-1, 0, made.View().count() - 1, made.View().count(), 1000}) {
            QVERIFY(made.List().RemoveUserPicture(row).isEmpty());
        }
        QCOMPARE(made.View().count(), 14);
    }

    void AfterDeletingTheCountDropsByOneAndTheRestIsRenumbered() {
        ListInWindow made(4);
        QVERIFY(made.List().SavePictureList());
        QCOMPARE(StoredCount(), 4);
        QCOMPARE(made.List().RemoveUserPicture(2), UserPaths(4).at(1));
        QVERIFY(made.List().SavePictureList());
        const SettingsReader reader;
        QCOMPARE(reader.Int(keys::kImageCount), 3);
        QCOMPARE(reader.Text(ImageKey(0)), UserPaths(4).at(0));
        QCOMPARE(reader.Text(ImageKey(1)), UserPaths(4).at(2));
        QCOMPARE(reader.Text(ImageKey(2)), UserPaths(4).at(3));
        QVERIFY(!reader.Contains(ImageKey(3)));
    }

    void DeletingChangesTheBackgroundOnlyIfItWasTheDeletedOne_data() {
        QTest::addColumn<int>("deletedRow");
        QTest::addColumn<QString>("background");
        QTest::addColumn<QString>("expected");
        const QStringList paths = UserPaths(3);
        QTest::newRow("another of the user's") << 1 << paths.at(2) << paths.at(2);
        QTest::newRow("a built-in one") << 1 << SecondBuiltIn() << SecondBuiltIn();
        QTest::newRow("one that is not in the list")
            << 1 << QStringLiteral("/gone.png") << QStringLiteral("/gone.png");
        QTest::newRow("none") << 1 << QString() << QString();
        QTest::newRow("the first one: the next takes its place") << 1 << paths.at(0) << paths.at(1);
        QTest::newRow("the middle one") << 2 << paths.at(1) << paths.at(2);
        QTest::newRow("the last one: the first built-in") << 3 << paths.at(2) << FirstBuiltIn();
    }
    void DeletingChangesTheBackgroundOnlyIfItWasTheDeletedOne() {
        QFETCH(int, deletedRow);
        QFETCH(QString, background);
        QFETCH(QString, expected);
        ListInWindow made(3);
        const QString removed = made.List().RemoveUserPicture(deletedRow);
        QCOMPARE(made.List().BackgroundAfterRemoval(background, removed, deletedRow), expected);
    }

    void WithoutANextRowTheFirstBuiltInTakesItsPlace() {
        ListInWindow made(1);
        const QString removed = made.List().RemoveUserPicture(1);
        QCOMPARE(made.List().BackgroundAfterRemoval(removed, removed, 500), FirstBuiltIn());
        // The add entry is never a background.
        QCOMPARE(made.List().BackgroundAfterRemoval(removed, removed, 0), FirstBuiltIn());
    }

    void APictureThatStandsInTheListTwiceStaysTheBackground() {
        ListInWindow made(0);
        WriteStoredPictures({QStringLiteral("/a.png"), QStringLiteral("/a.png")}, {});
        made.List().LoadPictureList();
        const QString removed = made.List().RemoveUserPicture(1);
        QCOMPARE(made.List().BackgroundAfterRemoval(removed, removed, 1), QStringLiteral("/a.png"));
        QCOMPARE(made.View().count(), 13);
    }

    void TheRowOfTheLayoutsPictureIsSelected_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("row");
        QTest::newRow("the user's") << UserPaths(2).at(1) << 2;
        QTest::newRow("built in") << FirstBuiltIn() << 3;
        QTest::newRow("built in, written with one slash") << QStringLiteral(":/background/1.jpg") << 3;
        QTest::newRow("unknown: none") << QStringLiteral("/gone.png") << -1;
        QTest::newRow("nothing: none") << QString() << -1;
        QTest::newRow("the add entry is no picture") << QStringLiteral("://skins/add.png") << -1;
    }
    void TheRowOfTheLayoutsPictureIsSelected() {
        QFETCH(QString, path);
        QFETCH(int, row);
        ListInWindow made(2);
        made.View().setCurrentRow(6);
        made.List().SelectPicture(path);
        QCOMPARE(made.View().currentRow(), row);
        QCOMPARE(made.View().selectedItems().size(), row < 0 ? 0 : 1);
        if (row >= 0) {
            QVERIFY(made.View().item(row)->isSelected());
        }
    }

    void TheAddEntryNeverStaysTheCurrentRow() {
        ListInWindow made(2);
        made.View().setCurrentRow(5);
        made.View().setCurrentRow(0);
        made.List().SelectPicture(QStringLiteral("/gone.png"));
        QCOMPARE(made.View().currentRow(), -1);
        QVERIFY(made.View().selectedItems().isEmpty());
        QCOMPARE(made.List().RowOf(QStringLiteral("://skins/add.png")), -1);
    }

    void TheAddEntryIsLeftEvenIfNothingWasSelectedBefore() {
        ListInWindow made(0);
        made.View().setCurrentRow(0);
        made.List().SelectPicture(QString());
        QCOMPARE(made.View().currentRow(), -1);
        QVERIFY(made.View().selectedItems().isEmpty());
    }

    void LoadingAgainClearsFirst() {
        ListInWindow made(3);
        made.List().LoadPictureList();
        made.List().LoadPictureList();
        QCOMPARE(made.View().count(), 15);
    }

    void EntriesWhoseFilesHaveDisappearedAreKept() {
        ListInWindow made(3);  // none of them ever was
        QCOMPARE(made.List().UserPictureCount(), 3);
        QVERIFY(made.List().SavePictureList());
        QCOMPARE(ReadStoredPictures(), UserPaths(3));
    }

    void AThousandRows() {
        ListInWindow made(1000);
        QCOMPARE(made.View().count(), 1012);
        QCOMPARE(made.List().RowOf(UserPaths(1000).at(999)), 1000);
        QCOMPARE(made.List().InsertUserPictures({QStringLiteral("/one more.jpg")}).lastRow, 1001);
        QVERIFY(made.List().SavePictureList());
        QCOMPARE(StoredCount(), 1001);
        QCOMPARE(made.List().RemoveUserPicture(500), UserPaths(1000).at(499));
        QVERIFY(made.List().SavePictureList());
        QCOMPARE(ReadStoredPictures().size(), 1000);
        QCOMPARE(ReadStoredPictures().at(499), UserPaths(1000).at(500));
    }

    void SettingsThatCannotBeWrittenAreTold() {
        ListInWindow made(1);
        QFile::remove(ConfigFilePath());
        QVERIFY(QDir().mkpath(ConfigFilePath() + QStringLiteral(".lock/in the way")));
        const bool saved = made.List().SavePictureList();
        QDir(ConfigFilePath() + QStringLiteral(".lock")).removeRecursively();
        QVERIFY(!saved);
        QCOMPARE(made.View().count(), 13);
    }

    // Blanks between patterns: Qt's own dialog knows no other separator.
    void TheFileDialogsPatterns() {
        const QStringList filters = PictureList::PictureFileFilter().split(QStringLiteral(";;"));
        QCOMPARE(filters.size(), 2);
        QString patterns = QStringLiteral("*.webp *.jfif *.gif *.bmp *.jpg *.jpeg *.png");
        if (!QImageReader::supportedImageFormats().contains("webp")) {
            patterns.remove(QStringLiteral("*.webp "));
        }
        QCOMPARE(filters.at(0), patterns);
        QCOMPARE(filters.at(1), QStringLiteral("All Files(*)"));
    }
};

KIVO_TEST(TestPictureList)
#include "tst_picture_list.moc"
