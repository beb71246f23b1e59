#include <QAccessible>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>

#include "picture_namer.h"
#include "resources/resources.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// The names that people give to their own pictures.
class TestPictureNames : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { InitResources(); }
    void init() { StartWithoutSettings(); }

    void WithoutANameTheFilesStandsThere() {
        Names names(2);
        QVERIFY(names.PaintedName(1) != names.PaintedName(2));
        const QImage before = names.PaintedName(1);
        names.Rename(1, QStringLiteral("user 1"));
        names.made.View().setCurrentRow(-1);
        // Now both are called "user 1".
        QCOMPARE(names.PaintedName(1), names.PaintedName(2));
        QVERIFY(names.PaintedName(1) != before);
    }

    // By its end it differs from the others of its camera.
    void ALongNameIsElidedInTheMiddle() {
        Names names(0);
        const QString folder = QStringLiteral("/p/");
        const QString start = QString(40, QLatin1Char('i'));
        WriteStoredPictures(
            {folder + start + QStringLiteral("AAA.jpg"), folder + start + QStringLiteral("WWW.jpg")}, {});
        names.made.List().LoadPictureList();
        QVERIFY(names.PaintedName(1) != names.PaintedName(2));
    }

    void NothingGivesTheFilesNameBack_data() {
        QTest::addColumn<QString>("typed");
        QTest::newRow("nothing") << QString();
        QTest::newRow("blanks") << QStringLiteral("   ");
        QTest::newRow("the file's name") << QStringLiteral("user 0");
    }
    void NothingGivesTheFilesNameBack() {
        QFETCH(QString, typed);
        Names names(1);
        names.made.View().setCurrentRow(-1);
        const QImage before = names.PaintedName(1);
        names.Rename(1, Sea());
        names.made.View().setCurrentRow(-1);
        QVERIFY(names.PaintedName(1) != before);
        names.Rename(1, typed);
        names.made.View().setCurrentRow(-1);
        QCOMPARE(names.made.List().NameAt(1), QString());
        QCOMPARE(names.PaintedName(1), before);
        QCOMPARE(names.Spoken(1), QStringLiteral("user 0.jpg"));
        QVERIFY(names.made.List().SavePictureList());
        QVERIFY(ReadPictureNames(UserPaths(1)).isEmpty());
    }

    void ControlCharactersAreRemoved() {
        Names names(1);
        QLineEdit* const line = names.Open(1);
        line->setText(QStringLiteral("Sea\n \tside\x01"));
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_COMPARE(names.made.List().NameAt(1), Sea());
    }

    void TheTextOfARowStaysEmpty() {
        Names names(1);
        names.Rename(1, Sea());
        QCOMPARE(names.made.View().item(1)->text(), QString());
        // Nor can it be written from outside.
        QVERIFY(!names.made.View().item(1)->flags().testFlag(Qt::ItemIsEditable));
        names.Open(1);
        QVERIFY(!names.made.View().item(1)->flags().testFlag(Qt::ItemIsEditable));
    }

    void ANameIsReadAloudAndStandsInTheToolTip() {
        Names names(2);
        const QString path = QDir::toNativeSeparators(UserPaths(1).constFirst());
        QCOMPARE(names.Spoken(1), QStringLiteral("user 0.jpg"));
        QCOMPARE(names.ToolTip(1), path);
        names.Rename(1, Sea());
        QCOMPARE(names.Spoken(1), Sea());
        QCOMPARE(names.ToolTip(1), Sea() + QLatin1Char('\n') + path);
        QCOMPARE(names.Spoken(2), QStringLiteral("user 1.jpg"));
    }

    void ANameThatLooksLikeMarkupIsShownAsItIs() {
        Names names(1);
        names.Rename(1, QStringLiteral("<b>a</b>"));
        QTextDocument shown;
        shown.setHtml(names.ToolTip(1));
        QCOMPARE(shown.toPlainText(),
                 QStringLiteral("<b>a</b>\n") + QDir::toNativeSeparators(UserPaths(1).constFirst()));
    }

    void AMissingPictureKeepsItsName() {
        PictureSource::Readers readers = ListInWindow::RedReaders();
        readers.thumbnail = [](const QString& path, QSize pixels, const PictureWork&) {
            return path.startsWith(QLatin1Char(':'))
                       ? Picture{Filled(pixels, Qt::red)}
                       : NoPicture(PictureFailure::Missing, QStringLiteral("is not a file"));
        };
        Names names(1, readers);
        QTRY_VERIFY(names.made.View().item(1)->data(PictureList::kFailureRole).isValid());
        const QString missing = PictureList::FailureText(PictureFailure::Missing);
        names.Rename(1, Sea());
        QCOMPARE(names.Spoken(1), Sea() + QStringLiteral(", ") + missing);
        QCOMPARE(names.ToolTip(1),
                 QStringList({Sea(), missing, QDir::toNativeSeparators(UserPaths(1).constFirst())})
                     .join(QLatin1Char('\n')));
        QVERIFY(names.made.List().SavePictureList());
        names.made.List().LoadPictureList();
        QCOMPARE(names.made.List().NameAt(1), Sea());
    }

    void AssistiveProgramsHaveTheNewName() {
        Names names(2);
        QLineEdit* const line = names.Open(2);
        QVERIFY(!QAccessible::queryAccessibleInterface(line)->text(QAccessible::Name).isEmpty());
        QAccessibleInterface* const row = QAccessible::queryAccessibleInterface(&names.made.View())->child(2);
        QCOMPARE(row->text(QAccessible::Name), QStringLiteral("user 1.jpg"));
        QTest::keyClicks(line, Sea());
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_COMPARE(row->text(QAccessible::Name), Sea());
    }

    void ANameStaysWithItsPicture() {
        Names names(3);
        names.Rename(1, QStringLiteral("one"));
        names.Rename(3, QStringLiteral("three"));
        QVERIFY(names.made.List().SavePictureList());
        names.made.List().RemoveUserPicture(1);
        QVERIFY(names.made.List().SavePictureList());
        names.made.List().LoadPictureList();
        QCOMPARE(names.made.List().NameAt(1), QString());
        QCOMPARE(names.made.List().NameAt(2), QStringLiteral("three"));
        // Added again, it is a new picture.
        const int row = names.made.List().InsertUserPictures({UserPaths(1).constFirst()}).lastRow;
        QCOMPARE(names.made.List().NameAt(row), QString());
        QVERIFY(names.made.List().SavePictureList());
        names.made.List().LoadPictureList();
        QCOMPARE(names.made.List().NameAt(row), QString());
    }

    void APictureThatStandsInTheListTwiceHasOneName() {
        Names names(0);
        WriteStoredPictures({QStringLiteral("/a/b.png"), QStringLiteral("/a/../a/b.png")}, {});
        names.made.List().LoadPictureList();
        names.Rename(2, Sea());
        QCOMPARE(names.made.List().NameAt(1), Sea());
        QVERIFY(names.made.List().SavePictureList());
        names.made.List().LoadPictureList();
        QCOMPARE(names.made.List().NameAt(1), Sea());
        QCOMPARE(names.made.List().NameAt(2), Sea());
    }

    // It could not be read again, and nothing of the settings would be left at the next start.
    void ANameBeyondWhatCanBeStoredIsRefused() {
        Names names(0);
        QStringList paths;
        PictureNames stored;
        while (CanNamesBeStored(stored)) {
            paths.append(QStringLiteral("/p/%1.jpg").arg(paths.size()));
            stored.insert(paths.last(), QString(24, QLatin1Char('n')));
        }
        stored.remove(paths.last());
        WriteStoredPictures(paths, stored);
        names.made.List().LoadPictureList();
        QSignalSpy refused(&names.made.List(), &PictureList::nameRefused);
        QSignalSpy renamed(&names.made.List(), &PictureList::renamed);
        names.Rename(paths.size(), QString(24, QLatin1Char('n')));
        QCOMPARE(refused.count(), 1);
        QCOMPARE(renamed.count(), 0);
        QCOMPARE(names.made.List().NameAt(paths.size()), QString());
        // Room is made by names that go.
        names.Rename(1, QString());
        names.Rename(paths.size(), QString(24, QLatin1Char('n')));
        QCOMPARE(refused.count(), 1);
        QCOMPARE(renamed.count(), 2);
    }
};

KIVO_TEST(TestPictureNames)
#include "tst_picture_names.moc"
