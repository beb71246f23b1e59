#include <QTemporaryDir>
#include <QtTest>

#include "config/portable_folder.h"
#include "config/stored_path.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

QString MakeFile(const QString& path) {
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly)) {
        qFatal("The test cannot write its file.");
    }
    return path;
}

}  // namespace

class TestStoredPath : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { SetPortableFolder(QString()); }

    void WithoutAPortableFolderPathsStayAsTheyAre() {
        for (const char* const path : {"", "/a/b.png", "C:/a/../b.png", "a.png", ":/background/1.png"}) {
            QCOMPARE(PathToStore(QString::fromLatin1(path)), QString::fromLatin1(path));
            QCOMPARE(PathFromStore(QString::fromLatin1(path)), QString::fromLatin1(path));
        }
    }

    void OnlyWhatLiesInTheProgramsFolderIsNamedFromThere_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("stored");
        const auto row = [](const char* name, const char* path, const char* stored) {
            QTest::newRow(name) << QString::fromLatin1(path) << QString::fromLatin1(stored);
        };
        row("a picture that came along", "/stick/Kivo/data/settings/Pictures/a b.png",
            "data/settings/Pictures/a b.png");
        row("beside the program", "/stick/Kivo/mine.jpg", "mine.jpg");
        row("written in another way", "/stick/Kivo/data/../../Kivo/./mine.jpg", "mine.jpg");
        row("a name with dots", "/stick/Kivo/..mine.jpg", "..mine.jpg");
        row("elsewhere on the stick", "/stick/mine.jpg", "/stick/mine.jpg");
        row("a folder of a similar name", "/stick/Kivo 2/mine.jpg", "/stick/Kivo 2/mine.jpg");
        row("elsewhere", "/home/a/mine.jpg", "/home/a/mine.jpg");
        row("a part of the program", "://background/1.png", "://background/1.png");
        row("none", "", "");
    }
    void OnlyWhatLiesInTheProgramsFolderIsNamedFromThere() {
        QFETCH(QString, path);
        QFETCH(QString, stored);
        SetPortableFolder(QStringLiteral("/stick/Kivo/data"));
        QCOMPARE(PathToStore(path), stored);
        const bool isPartOfTheProgram = path.startsWith(QLatin1Char(':'));
        QCOMPARE(PathFromStore(stored), isPartOfTheProgram ? path : QDir::cleanPath(path));
    }

    void AStickAtAnotherPlaceHasItsPictures() {
        SetPortableFolder(QStringLiteral("/media/a/STICK/Kivo/data"));
        const QString stored =
            PathToStore(QStringLiteral("/media/a/STICK/Kivo/data/settings/Pictures/a.png"));
        SetPortableFolder(QStringLiteral("/run/media/b/STICK/Kivo/data"));
        QCOMPARE(PathFromStore(stored),
                 QStringLiteral("/run/media/b/STICK/Kivo/data/settings/Pictures/a.png"));
    }

    // As files were written that had every path in full.
    void FullPathOfAnotherPlaceIsFoundInTheData_data() {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("isFound");
        const auto row = [](const char* name, const char* stored, bool isFound) {
            QTest::newRow(name) << QString::fromLatin1(stored) << isFound;
        };
        row("another drive", "E:/Kivo/data/settings/Pictures/a.png", true);
        row("another mount point", "/media/x/Kivo/data/settings/Pictures/a.png", true);
        row("a file that is not there", "E:/Kivo/data/settings/Pictures/b.png", false);
        row("another program's folder", "E:/Other/data/settings/Pictures/a.png", false);
        row("a picture of the user's", "C:/Users/x/Pictures/a.png", false);
    }
    void FullPathOfAnotherPlaceIsFoundInTheData() {
        QFETCH(QString, stored);
        QFETCH(bool, isFound);
        const QTemporaryDir stick;
        const QString file = MakeFile(stick.filePath(QStringLiteral("Kivo/data/settings/Pictures/a.png")));
        SetPortableFolder(stick.filePath(QStringLiteral("Kivo/data")));
        QCOMPARE(PathFromStore(stored), isFound ? file : stored);
    }

    // A path of another system stays what it was, however often it is read and written.
    void PathOfAnotherSystemIsKept() {
        SetPortableFolder(QStringLiteral("/stick/Kivo/data"));
        for (const char* const path : {"C:/Users/x/a.png", "/home/x/a.png"}) {
            const QString stored = QString::fromLatin1(path);
            QCOMPARE(PathToStore(PathFromStore(stored)), stored);
        }
    }
};

KIVO_GUILESS_TEST(TestStoredPath)
#include "tst_stored_path.moc"
