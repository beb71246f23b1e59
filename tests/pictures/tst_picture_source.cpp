#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include <chrono>
#include <future>
#include <vector>

#include "../config/log_catcher.h"
#include "picture_files.h"
#include "picture_share.h"
#include "pictures/layout_picture.h"
#include "pictures/picture_reader.h"
#include "pictures/picture_source.h"
#include "pictures/picture_work.h"
#include "resources/resources.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// For threads that only have to be given time, and for files that hang on purpose.
constexpr PictureWorkers::Patience kAmple{std::chrono::minutes(1), std::chrono::minutes(1)};
constexpr PictureWorkers::Patience kSoon{std::chrono::milliseconds(60), std::chrono::minutes(1)};

const QString kA = QStringLiteral("/share/a.png");
const QString kB = QStringLiteral("/share/b.png");

QColor ColorOf(const std::optional<Picture>& picture) {
    return picture && !picture->image.isNull() ? picture->image.pixelColor(3, 3) : QColor();
}
PictureFailure FailureOf(const std::optional<Picture>& picture) {
    return picture ? picture->failure : PictureFailure::Stopped;
}

ScreenState StateWith(const QString& picture, const QString& defaultPicture) {
    ScreenState state;
    state.layout.picture = picture;
    state.layout.defaultPicture = defaultPicture;
    return state;
}

}  // namespace

class TestPictureSource : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { InitResources(); }

    void APictureIsReadOnceAndKept() {
        Share share;
        share.Put(kA, Qt::red);
        PictureSource source(share.Readers(), nullptr, kAmple);
        QSignalSpy answered(&source, &PictureSource::answered);
        QVERIFY(!source.Known(kA));
        share.Hang(kA);
        source.Want(kA);  // would never return if it waited
        QVERIFY(!source.Known(kA));
        share.LetGo();
        QTRY_COMPARE(answered.count(), 1);
        QCOMPARE(answered.constFirst().constFirst().toString(), kA);
        QCOMPARE(ColorOf(source.Known(kA)), QColor(Qt::red));
        source.Want(kA);
        QCOMPARE(source.Known(kA)->image.cacheKey(), source.Known(kA)->image.cacheKey());
        QCoreApplication::processEvents();
        QCOMPARE(share.Looks(), 1);
        QVERIFY(!share.WasAskedByTheWindow());
    }

    void NothingIsReadBeforeItIsAskedFor() {
        Share share;
        {
            PictureSource source(share.Readers());
            QVERIFY(!source.IsBusy());
        }
        QCOMPARE(share.Looks(), 0);
    }

    void AChangedFileIsReadAgainAndTold() {
        Share share;
        share.Put(kA, Qt::red);
        PictureSource source(share.Readers(), nullptr, kAmple);
        QSignalSpy answered(&source, &PictureSource::answered);
        source.Want(kA);
        QTRY_COMPARE(answered.count(), 1);
        share.Put(kA, Qt::blue);
        QCOMPARE(ColorOf(source.Known(kA)), QColor(Qt::red));
        share.Hang(kA);
        source.Check(kA);
        QCOMPARE(ColorOf(source.Known(kA)), QColor(Qt::red));  // what is shown stays meanwhile
        share.LetGo();
        QTRY_COMPARE(answered.count(), 2);
        QCOMPARE(ColorOf(source.Known(kA)), QColor(Qt::blue));
        QCOMPARE(source.ReadCount(), 2);
    }

    void AnUnchangedFileIsTheSameImage() {
        Share share;
        share.Put(kA, Qt::red);
        PictureSource source(share.Readers(), nullptr, kAmple);
        QSignalSpy answered(&source, &PictureSource::answered);
        source.Want(kA);
        QTRY_COMPARE(answered.count(), 1);
        const qint64 image = source.Known(kA)->image.cacheKey();
        source.Check(kA);
        QTRY_COMPARE(answered.count(), 2);
        QCOMPARE(source.Known(kA)->image.cacheKey(), image);
        QCOMPARE(source.ReadCount(), 1);
    }

    void AFileThatGoesAndComesBack() {
        Share share;
        share.Put(kA, Qt::red);
        PictureSource source(share.Readers(), nullptr, kAmple);
        const LogCatcher log;
        source.Want(kA);
        QTRY_VERIFY(!source.IsBusy());
        share.Remove(kA);
        for (int time = 0; time < 3; ++time) {
            source.Check(kA);
            QTRY_VERIFY(!source.IsBusy());
            QCOMPARE(FailureOf(source.Known(kA)), PictureFailure::Missing);
        }
        // Said once, not at every look.
        QCOMPARE(log.lines().filter(kA).size(), 1);
        share.Put(kA, Qt::green);
        source.Check(kA);
        QTRY_VERIFY(!source.IsBusy());
        QCOMPARE(ColorOf(source.Known(kA)), QColor(Qt::green));
    }

    // Also while it is being read: that reading may have begun before the change.
    void AQuestionIsAnsweredByAReadingThatBeganAfterIt() {
        Share share;
        share.Put(kA, Qt::red);
        share.Hang(kA);
        PictureSource source(share.Readers(), nullptr, kAmple);
        source.Want(kA);
        QTRY_COMPARE(share.Looks(), 1);
        source.Check(kA);
        share.LetGo();
        QTRY_VERIFY(!source.IsBusy());
        QCOMPARE(share.Looks(), 2);
    }

    void TheSamePictureHoweverItsPathIsWritten() {
        Share share;
        share.Put(kA, Qt::red);
        PictureSource source(share.Readers(), nullptr, kAmple);
        source.Want(kA);
        QTRY_VERIFY(!source.IsBusy());
        const QString other = QStringLiteral("/share//./a.png");
        QCOMPARE(ColorOf(source.Known(other)), QColor(Qt::red));
        source.Want(other);
        QVERIFY(!source.IsBusy());
    }

    void WhoeverAwaitsGetsTheImageThatIsShown() {
        Share share;
        share.Put(kA, Qt::red);
        PictureSource source(share.Readers(), nullptr, kAmple);
        source.Want(kA);
        QTRY_VERIFY(!source.IsBusy());
        auto awaited = std::async(std::launch::async, [&source] { return source.Await(kA); });
        const std::optional<Picture> picture = awaited.get();
        QCOMPARE(picture->image.cacheKey(), source.Known(kA)->image.cacheKey());
    }

    void WhoeverAwaitsAChangedFileGetsTheNewImageAndSoDoesThePreview() {
        Share share;
        share.Put(kA, Qt::red);
        PictureSource source(share.Readers(), nullptr, kAmple);
        source.Want(kA);
        QTRY_VERIFY(!source.IsBusy());
        share.Put(kA, Qt::blue);
        QSignalSpy answered(&source, &PictureSource::answered);
        auto awaited = std::async(std::launch::async, [&source] { return source.Await(kA); });
        const std::optional<Picture> picture = awaited.get();
        QCOMPARE(ColorOf(picture), QColor(Qt::blue));
        QCOMPARE(picture->image.cacheKey(), source.Known(kA)->image.cacheKey());
        QTRY_COMPARE(answered.count(), 1);
    }

    void AFileThatHangsIsNotWaitedForAndSaysSo() {
        Share share;
        share.Put(kA, Qt::red);
        share.Hang(kA);
        PictureSource source(share.Readers(), nullptr, kSoon);
        const LogCatcher log;
        auto awaited = std::async(std::launch::async, [&source] { return source.Await(kA); });
        QTRY_COMPARE(awaited.wait_for(std::chrono::seconds(0)), std::future_status::ready);
        QCOMPARE(FailureOf(awaited.get()), PictureFailure::NoAnswer);
        QCOMPARE(FailureOf(source.Known(kA)), PictureFailure::NoAnswer);
        // It is not waited for a second time either.
        auto again = std::async(std::launch::async, [&source] { return source.Await(kA); });
        QCOMPARE(FailureOf(again.get()), PictureFailure::NoAnswer);
        // And once it answers, it is shown.
        QSignalSpy answered(&source, &PictureSource::answered);
        share.LetGo();
        QTRY_COMPARE(ColorOf(source.Known(kA)), QColor(Qt::red));
        QTRY_VERIFY(answered.count() > 0);
    }

    void AFileThatBeginsToHangKeepsItsPicture() {
        Share share;
        share.Put(kA, Qt::red);
        PictureSource source(share.Readers(), nullptr, kSoon);
        source.Want(kA);
        QTRY_VERIFY(!source.IsBusy());
        share.Hang(kA);
        auto awaited = std::async(std::launch::async, [&source] { return source.Await(kA); });
        QTRY_COMPARE(awaited.wait_for(std::chrono::seconds(0)), std::future_status::ready);
        QCOMPARE(ColorOf(awaited.get()), QColor(Qt::red));
        QCOMPARE(ColorOf(source.Known(kA)), QColor(Qt::red));
        share.LetGo();
    }

    void AListOnADeadShareHoldsNoChosenPictureUp() {
        Share share;
        share.Put(kB, Qt::blue);
        share.Hang(QStringLiteral("dead"));
        PictureSource source(share.Readers(), nullptr, kSoon);
        QStringList dead;
        for (int n = 0; n < 1000; ++n) {
            dead.append(QStringLiteral("/dead/%1.png").arg(n));
        }
        source.WantThumbnails(dead, QSize(77, 54));
        // As many threads hang as may hang in the list's pictures; one may have begun before that was known.
        QTRY_VERIFY(share.Looks() >= 6);
        source.Want(kB);
        QTRY_COMPARE(ColorOf(source.Known(kB)), QColor(Qt::blue));
        // And where chosen pictures hang as well, the program's own can still be had.
        for (int n = 0; n < 20; ++n) {
            source.Want(dead.at(n));
        }
        QTRY_COMPARE(FailureOf(source.Known(dead.at(19))), PictureFailure::NoAnswer);
        QTRY_COMPARE(FailureOf(source.Known(dead.at(0))), PictureFailure::NoAnswer);
        share.Put(QStringLiteral("://own.png"), Qt::green);
        source.Want(QStringLiteral("://own.png"));
        QTRY_COMPARE(ColorOf(source.Known(QStringLiteral("://own.png"))), QColor(Qt::green));
        QVERIFY(!share.WasAskedByTheWindow());
        // Of more than a thousand.
        QVERIFY(share.Asked().filter(QStringLiteral("dead")).size() <= 10);
        share.LetGo();
    }

    void WhatIsChosenComesBeforeTheList() {
        Share share;
        share.Put(kB, Qt::blue);
        share.Hang(QStringLiteral("/many/"));
        PictureSource source(share.Readers(), nullptr, kAmple);
        QSignalSpy answered(&source, &PictureSource::answered);
        QSignalSpy ready(&source, &PictureSource::thumbnailReady);
        QStringList many;
        for (int n = 0; n < 100; ++n) {
            many.append(QStringLiteral("/many/%1.png").arg(n));
        }
        source.WantThumbnails(many, QSize(77, 54));
        QTRY_COMPARE(share.Looks(), 2);
        source.Want(kB);
        // One of the two threads has time for another picture.
        share.LetGoOf(share.Asked().constFirst());
        QTRY_COMPARE(answered.count(), 1);
        QCOMPARE(share.Asked().indexOf(kB), 2);
        share.LetGo();
        QTRY_COMPARE(ready.count(), 100);
    }

    // No question is lost between those of others.
    void EverybodyWhoAsksAtOnceIsAnswered() {
        constexpr int kThreads = 4;
        constexpr int kPaths = 150;
        Share share;
        for (int n = 0; n < kPaths; ++n) {
            share.Put(QString::number(n), Qt::red);
        }
        PictureSource source(share.Readers());
        std::vector<std::future<int>> askers;
        for (int thread = 0; thread < kThreads; ++thread) {
            askers.push_back(std::async(std::launch::async, [&source, thread] {
                int answered = 0;
                for (int n = 0; n < kPaths; ++n) {
                    const auto picture = source.Await(QString::number((n * 7 + thread) % kPaths));
                    answered += picture && picture->failure == PictureFailure::None ? 1 : 0;
                }
                return answered;
            }));
        }
        for (int n = 0; n < kPaths; ++n) {
            source.Check(QString::number(n));
            source.WantThumbnails({QString::number(n), QString::number(n + 1)}, QSize(77, 54));
            QCoreApplication::processEvents();
        }
        for (std::future<int>& asker : askers) {
            QTRY_COMPARE(asker.wait_for(std::chrono::seconds(0)), std::future_status::ready);
            QCOMPARE(asker.get(), kPaths);
        }
        QTRY_VERIFY(!source.IsBusy());
    }

    void TheEndWakesWhoeverAwaits() {
        Share share;
        share.Hang(kA);
        PictureSource source(share.Readers(), nullptr, kAmple);
        auto awaited = std::async(std::launch::async, [&source] { return source.Await(kA); });
        QTRY_COMPARE(share.Looks(), 1);
        source.Stop();
        QVERIFY(!awaited.get());
        share.LetGo();
    }

    void WhatIsKeptStaysWithinItsBound() {
        PictureSource source({[](const QString&, const Picture*, const PictureWork&) {
                                  return Picture{Filled(QSize(1920, 1080), Qt::red)};
                              },
                              {}},
                             nullptr, kAmple);
        for (int n = 0; n < 12; ++n) {
            source.Want(QString::number(n));
            QTRY_VERIFY(!source.IsBusy());
            QVERIFY(source.Known(QString::number(n)).has_value());
            QVERIFY(source.KeptBytes() <= PictureSource::kMostKeptBytes);
        }
        QCOMPARE(source.KeptBytes(), 4 * 1920LL * 1080 * 4);
        QVERIFY(!source.Known(QStringLiteral("0")));
        // The largest picture that is ever kept leaves room for another one.
        QVERIFY(2 * kMostPicturePixels * 4 <= PictureSource::kMostKeptBytes);
    }

    void AnotherPictureStandsInForOneThatIsGone_data() {
        QTest::addColumn<bool>("hasPicture");
        QTest::addColumn<bool>("hasDefault");
        QTest::addColumn<QColor>("color");  // invalid: the program's own
        QTest::newRow("all there") << true << true << QColor(Qt::red);
        QTest::newRow("the picture is gone") << false << true << QColor(Qt::blue);
        QTest::newRow("both are gone") << false << false << QColor();
    }
    void AnotherPictureStandsInForOneThatIsGone() {
        QFETCH(bool, hasPicture);
        QFETCH(bool, hasDefault);
        QFETCH(QColor, color);
        Share share;
        PictureSource::Readers readers = share.Readers();
        readers.picture = [own = readers.picture](const QString& path, const Picture* former,
                                                  const PictureWork& work) {
            return path.startsWith(QLatin1Char(':')) ? ReadPicture(path, former, work)
                                                     : own(path, former, work);
        };
        if (hasPicture) {
            share.Put(kA, Qt::red);
        }
        if (hasDefault) {
            share.Put(kB, Qt::blue);
        }
        PictureSource source(readers, nullptr, kAmple);
        const LogCatcher log;
        const ScreenState state = StateWith(kA, kB);
        QTRY_VERIFY(KnownLayoutPicture(source, state).has_value());
        const LayoutPicture shown = *KnownLayoutPicture(source, state);
        QCOMPARE(shown.failure, hasPicture ? PictureFailure::None : PictureFailure::Missing);
        if (color.isValid()) {
            QCOMPARE(shown.image.pixelColor(3, 3), color);
        } else {
            QCOMPARE(shown.image, LoadPicture(DefaultBackground()));
        }
        // Preview and panel get the very same image.
        auto awaited = std::async(std::launch::async,
                                  [&] { return AwaitLayoutPicture(source, state)->image.cacheKey(); });
        QCOMPARE(awaited.get(), shown.image.cacheKey());
    }

    void WhatIsLetGoOfIsReadAgainOnceItIsWanted() {
        Share share;
        share.Put(kA, Qt::red);
        PictureSource source(share.Readers(), nullptr, kAmple);
        const LogCatcher log;
        source.Want(kA);
        source.Want(kB);
        QTRY_VERIFY(source.Known(kA) && source.Known(kB) && !source.IsBusy());
        source.LetGoOfImages();
        QCOMPARE(source.KeptBytes(), 0);
        QVERIFY(!source.Known(kA));
        QCOMPARE(FailureOf(source.Known(kB)), PictureFailure::Missing);
        QSignalSpy answered(&source, &PictureSource::answered);
        source.Want(kA);
        QTRY_COMPARE(answered.count(), 1);
        QCOMPARE(ColorOf(source.Known(kA)), QColor(Qt::red));
        source.LetGoOfImages();
        auto awaited = std::async(std::launch::async, [&] { return ColorOf(source.Await(kA)); });
        QCOMPARE(awaited.get(), QColor(Qt::red));
    }

    // Whoever is told of a picture finds it.
    void AnAnswerThatIsNotToldYetIsKept() {
        Share share;
        share.Put(kA, Qt::red);
        share.Put(kB, Qt::blue);
        PictureSource source(share.Readers(), nullptr, kAmple);
        source.Want(kB);
        QTRY_VERIFY(source.Known(kB) && !source.IsBusy());
        QColor found;
        connect(&source, &PictureSource::answered, this,
                [&](const QString& path) { found = ColorOf(source.Known(path)); });
        auto awaited = std::async(std::launch::async, [&] { return ColorOf(source.Await(kA)); });
        QCOMPARE(awaited.get(), QColor(Qt::red));
        source.LetGoOfImages();
        QVERIFY(!source.Known(kB));
        QTRY_COMPARE(found, QColor(Qt::red));
    }

    // It would show some part of the other picture, for which nobody has chosen it.
    void ATrimFrameDoesNotHoldForAStandIn() {
        ScreenState state = StateWith(kA, kB);
        state.layout.xZoom = 100;
        state.layout.xPt = 20;
        QCOMPARE(DrawnState(state, LayoutPicture{QImage(), PictureFailure::None}.IsStandIn()), state);
        const ScreenState drawn =
            DrawnState(state, LayoutPicture{QImage(), PictureFailure::Missing}.IsStandIn());
        QCOMPARE(drawn.layout.xZoom, 0);
        QCOMPARE(drawn.layout.xPt, 0);
        QCOMPARE(drawn.layout.picture, kA);
    }
};

KIVO_GUILESS_TEST(TestPictureSource)
#include "tst_picture_source.moc"
