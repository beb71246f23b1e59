#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

#include <atomic>
#include <optional>

#include "picture_list_maker.h"
#include "pictures/picture_reader.h"
#include "pictures/thumbnail_cache.h"
#include "pictures/thumbnail_picture.h"
#include "resources/resources.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

bool HasIcon(MyListWidget& view, int row) {
    return !view.item(row)->icon().isNull();
}

void Show(ListInWindow& made) {
    made.Window().show();
    QVERIFY(QTest::qWaitForWindowExposed(&made.Window()));
}

QImage Card(ListInWindow& made, int row) {
    return made.View().viewport()->grab(made.View().visualItemRect(made.View().item(row))).toImage();
}

QString AccessibleText(ListInWindow& made, int row) {
    return made.View().item(row)->data(Qt::AccessibleTextRole).toString();
}

// One picture of the user's that is there or not; what is built in is red.
class Coming {
public:
    PictureSource::Readers Readers() {
        return {
            [this](const QString& path, const Picture*, const PictureWork&) {
                return Answer(path, QSize(320, 170));
            },
            [this](const QString& path, QSize pixels, const PictureWork&) { return Answer(path, pixels); }};
    }
    std::atomic<bool> isThere{false};

private:
    Picture Answer(const QString& path, QSize size) const {
        if (path.startsWith(QLatin1Char(':')) || isThere) {
            return {Filled(size, Qt::red)};
        }
        return NoPicture(PictureFailure::Missing, QStringLiteral("is not a file"));
    }
};

}  // namespace

// The rows of pictures that cannot be shown: seen, named and told.
class TestPictureCards : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { InitResources(); }
    void init() { StartWithoutSettings(); }

    void BrokenHugeAndMissingPicturesGetARowWithAnEmptyIcon() {
        const PictureFolder folder;
        const QString cacheFolder = folder.Path(QStringLiteral("cache"));
        const QStringList paths = {
            folder.Write(QStringLiteral("broken.png"), "This is no picture.\n"),
            folder.Write(QStringLiteral("huge.bmp"), BitmapThatClaims(30000, 30000)),
            folder.Write(QStringLiteral("huge.jpg"), JpegThatClaims(65000, 65000)),
            folder.Path(QStringLiteral("missing.png")),
            folder.Write(QStringLiteral("good.png"), Encoded(Striped(QSize(300, 200)), "PNG")),
        };
        ListInWindow made(
            0, {ReadPicture, [cacheFolder](const QString& path, QSize pixels, const PictureWork& work) {
                    ThumbnailCache cache(cacheFolder);
                    return CachedThumbnail(cache, path, pixels, work);
                }});
        WriteStoredPictures(paths, {});
        made.List().LoadPictureList();
        Show(made);
        const auto lastBuiltIn = made.View().count() - 1;
        for (int row = 5; row <= lastBuiltIn; ++row) {
            QTRY_VERIFY(HasIcon(made.View(), row));
        }
        for (int row = 1; row <= 4; ++row) {
            QVERIFY(!HasIcon(made.View(), row));
        }
        QCOMPARE(made.View().count(), 17);
        const QImage icon = made.View().item(5)->icon().pixmap(77, 54).toImage();
        QCOMPARE(icon.size(), QSize(77, 54));
        QVERIFY(IsNearly(icon.pixelColor(10, 27), Qt::red) && IsNearly(icon.pixelColor(66, 27), Qt::blue));
    }

    // Something stands there all the same: a hole could not be clicked.
    void ARowWithoutAPictureIsStillSeen() {
        PictureSource::Readers readers = ListInWindow::RedReaders();
        readers.thumbnail = [](const QString&, QSize, const PictureWork&) {
            return NoPicture(PictureFailure::Missing, QStringLiteral("is not a file"));
        };
        ListInWindow made(1, readers);
        Show(made);
        const QImage drawn = made.View().viewport()->grab().toImage();
        const QRect item = made.View().visualItemRect(made.View().item(1));
        QVERIFY(drawn.pixelColor(item.center()) != drawn.pixelColor(item.topLeft()));
    }

    void AMissingPictureIsNamedOnItsCardWithASymbol() {
        Coming coming;
        ListInWindow made(2, coming.Readers());
        Show(made);
        const QImage waiting = Card(made, 1);
        QTRY_VERIFY(made.View().item(1)->data(PictureList::kFailureRole).isValid());
        QTRY_VERIFY(made.View().item(2)->data(PictureList::kFailureRole).isValid());
        const QImage missing = Card(made, 1);
        // The symbol in the picture's place; below it the name stays, which is another one on the next card.
        const QRect picture(6, 6, 77, 54);
        const QRect name(0, 61, 89, 19);
        QVERIFY(missing.copy(picture) != waiting.copy(picture));
        QCOMPARE(missing.copy(name), waiting.copy(name));
        QCOMPARE(missing.copy(picture), Card(made, 2).copy(picture));
        QVERIFY(missing.copy(name) != Card(made, 2).copy(name));
        // The row has no text of its own all the same.
        QCOMPARE(made.View().item(1)->text(), QString());
        QCOMPARE(AccessibleText(made, 1),
                 QStringLiteral("user 0.jpg, ") + PictureList::FailureText(PictureFailure::Missing));
    }

    void ItsToolTipSaysWhatIsMissing() {
        Coming coming;
        ListInWindow made(1, coming.Readers());
        Show(made);
        QTRY_VERIFY(made.View().item(1)->data(PictureList::kFailureRole).isValid());
        QHelpEvent help(QEvent::ToolTip, made.CentreOf(1),
                        made.View().viewport()->mapToGlobal(made.CentreOf(1)));
        QCoreApplication::sendEvent(made.View().viewport(), &help);
        QVERIFY(QToolTip::text().contains(PictureList::FailureText(PictureFailure::Missing)));
        QVERIFY(QToolTip::text().contains(QStringLiteral("user 0.jpg")));
        QToolTip::hideText();
    }

    // What the preview finds out of a picture holds for its card, both ways.
    void TheCardFollowsWhatOthersFindOut() {
        Coming coming;
        coming.isThere = true;
        ListInWindow made(1, coming.Readers());
        Show(made);
        QTRY_VERIFY(HasIcon(made.View(), 1));
        coming.isThere = false;
        made.Source().Check(UserPaths(1).first());
        QTRY_VERIFY(made.View().item(1)->data(PictureList::kFailureRole).isValid());
        QVERIFY(!HasIcon(made.View(), 1));
        coming.isThere = true;
        made.Source().Check(UserPaths(1).first());
        QTRY_VERIFY(HasIcon(made.View(), 1));
        QVERIFY(!made.View().item(1)->data(PictureList::kFailureRole).isValid());
        QCOMPARE(AccessibleText(made, 1), QStringLiteral("user 0.jpg"));
    }

    void EveryFailureHasItsWords() {
        QStringList texts;
        for (const PictureFailure failure :
             {PictureFailure::Missing, PictureFailure::Unreadable, PictureFailure::NoAnswer}) {
            texts.append(PictureList::FailureText(failure));
            QVERIFY(!texts.last().isEmpty());
        }
        QCOMPARE(texts.removeDuplicates(), 0);
        QVERIFY(PictureList::FailureText(PictureFailure::None).isEmpty());
    }
};

KIVO_TEST(TestPictureCards)
#include "tst_picture_cards.moc"
