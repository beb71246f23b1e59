#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "picture_files.h"
#include "pictures/picture_source.h"
#include "pictures/picture_work.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr QSize kPixels(77, 54);
// For the end: no thread that only has to be given time may be left behind.
constexpr PictureWorkers::Patience kPatience{std::chrono::seconds(2), std::chrono::minutes(1)};

// A maker that answers when it is let, and remembers what it was asked for.
class SlowMaker {
public:
    QImage operator()(const QString& path, const PictureWork& work) {
        Begin(path);
        {
            const PictureWork::FileAccess access(work);
            std::unique_lock lock(m_mutex);
            m_change.wait(lock, [this, &path] { return !m_hanging.contains(path); });
        }
        std::unique_lock lock(m_mutex);
        m_mostDecoding = qMax(m_mostDecoding, ++m_decoding);
        m_change.wait(lock, [this] { return m_open; });
        --m_decoding;
        --m_inside;
        m_change.notify_all();
        return Filled(kPixels, Qt::red);
    }

    void Open() {
        Change([this] { m_open = true; });
    }
    void Hang(const QStringList& paths) {
        Change([this, &paths] { m_hanging = paths; });
    }

    int MostDecoding() const {
        const std::lock_guard lock(m_mutex);
        return m_mostDecoding;
    }
    QStringList Asked() const {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }
    void WaitForInside(int count) {
        std::unique_lock lock(m_mutex);
        m_change.wait(lock, [this, count] { return m_inside == count; });
    }

private:
    void Begin(const QString& path) {
        Change([this, &path] {
            m_asked.append(path);
            ++m_inside;
        });
    }

    template <typename Action>
    void Change(Action action) {
        const std::lock_guard lock(m_mutex);
        action();
        m_change.notify_all();
    }

    mutable std::mutex m_mutex;
    std::condition_variable m_change;
    QStringList m_asked;
    QStringList m_hanging;
    int m_inside = 0;
    int m_decoding = 0;
    int m_mostDecoding = 0;
    bool m_open = false;
};

PictureSource::Readers ReadersOf(const std::shared_ptr<SlowMaker>& maker) {
    return {{}, [maker](const QString& path, QSize, const PictureWork& work) {
                return Picture{(*maker)(path, work)};
            }};
}

QStringList Paths(int count) {
    QStringList paths;
    for (int n = 0; n < count; ++n) {
        paths.append(QStringLiteral("picture %1").arg(n));
    }
    return paths;
}

QStringList ReadyPaths(const QSignalSpy& spy) {
    QStringList paths;
    for (const QList<QVariant>& arguments : spy) {
        paths.append(arguments.constFirst().toString());
    }
    return paths;
}

}  // namespace

Q_DECLARE_METATYPE(kivo::Picture)

class TestPictureThreads : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<Picture>("kivo::Picture"); }

    void EachWantedPathIsAnsweredOnceOnTheOwnersThread() {
        auto maker = std::make_shared<SlowMaker>();
        maker->Open();
        PictureSource source(ReadersOf(maker), nullptr, kPatience);
        QSignalSpy ready(&source, &PictureSource::thumbnailReady);
        bool onOwnThread = true;
        connect(
            &source, &PictureSource::thumbnailReady, this,
            [this, &onOwnThread] { onOwnThread &= QThread::currentThread() == thread(); },
            Qt::DirectConnection);
        source.WantThumbnails(Paths(20), kPixels);
        QTRY_COMPARE(ready.count(), 20);
        QStringList answered = ReadyPaths(ready);
        answered.sort();
        QStringList wanted = Paths(20);
        wanted.sort();
        QCOMPARE(answered, wanted);
        QVERIFY(onOwnThread);
        QCOMPARE(ready.constFirst().at(1).toSize(), kPixels);
        QCOMPARE(ready.constFirst().at(2).value<Picture>().image.size(), kPixels);
    }

    void AskingNeverWaits() {
        auto maker = std::make_shared<SlowMaker>();
        PictureSource source(ReadersOf(maker), nullptr, kPatience);
        QSignalSpy ready(&source, &PictureSource::thumbnailReady);
        source.WantThumbnails(Paths(1000), kPixels);  // would never return if it made one itself
        QCOMPARE(ready.count(), 0);
        maker->Open();
    }

    void TheMostWantedComeFirst() {
        auto maker = std::make_shared<SlowMaker>();
        PictureSource source(ReadersOf(maker), nullptr, kPatience);
        source.WantThumbnails(Paths(40), kPixels);
        maker->WaitForInside(2);
        QStringList begun = maker->Asked();
        begun.sort();
        QCOMPARE(begun, Paths(2));
        maker->Open();
    }

    void WhatIsNoLongerWantedIsForgotten() {
        auto maker = std::make_shared<SlowMaker>();
        PictureSource source(ReadersOf(maker), nullptr, kPatience);
        QSignalSpy ready(&source, &PictureSource::thumbnailReady);
        source.WantThumbnails(Paths(1000), kPixels);
        maker->WaitForInside(2);
        source.WantThumbnails({QStringLiteral("the one")}, kPixels);
        maker->Open();
        QTRY_COMPARE(ready.count(), 3);
        QVERIFY(maker->Asked().contains(QStringLiteral("the one")));
        QCOMPARE(maker->Asked().size(), 3);
    }

    void WhatIsBeingMadeIsNotMadeTwice() {
        auto maker = std::make_shared<SlowMaker>();
        PictureSource source(ReadersOf(maker), nullptr, kPatience);
        QSignalSpy ready(&source, &PictureSource::thumbnailReady);
        source.WantThumbnails(Paths(2), kPixels);
        maker->WaitForInside(2);
        source.WantThumbnails(Paths(3), kPixels);
        maker->Open();
        QTRY_COMPARE(ready.count(), 3);
        QCOMPARE(maker->Asked().size(), 3);
    }

    // The list asks again at each paint, and a paint may come between a thumbnail and its telling.
    void WhatIsMadeAndNotToldYetIsNotMadeAgain() {
        auto maker = std::make_shared<SlowMaker>();
        maker->Open();
        PictureSource source(ReadersOf(maker), nullptr, kPatience);
        QSignalSpy ready(&source, &PictureSource::thumbnailReady);
        source.WantThumbnails(Paths(1), kPixels);
        while (!source.IsBusy()) {  // no event is handled, so nothing is told
            QThread::msleep(1);
        }
        source.WantThumbnails(Paths(2), kPixels);
        QTRY_COMPARE(ready.count(), 2);
        QCOMPARE(maker->Asked(), Paths(2));
    }

    // What was seen before a new look at the files says nothing of it.
    void WhatIsBeingMadeIsMadeAgainForANewRound() {
        auto maker = std::make_shared<SlowMaker>();
        PictureSource source(ReadersOf(maker), nullptr, kPatience);
        QSignalSpy ready(&source, &PictureSource::thumbnailReady);
        source.WantThumbnails(Paths(1), kPixels, 1);
        maker->WaitForInside(1);
        source.WantThumbnails(Paths(1), kPixels, 2);
        maker->WaitForInside(2);
        maker->Open();
        QTRY_COMPARE(ready.count(), 1);
        maker->WaitForInside(0);
        QCoreApplication::processEvents();
        QCOMPARE(ready.count(), 1);
        QCOMPARE(maker->Asked(), Paths(1) + Paths(1));
    }

    void AFileThatHangsHoldsNoOtherUp() {
        auto maker = std::make_shared<SlowMaker>();
        const QStringList stuck = {QStringLiteral("//gone/a.jpg"), QStringLiteral("//gone/b.jpg"),
                                   QStringLiteral("//gone/c.jpg")};
        maker->Hang(stuck);
        maker->Open();
        PictureSource source(ReadersOf(maker), nullptr, kPatience);
        QSignalSpy ready(&source, &PictureSource::thumbnailReady);
        source.WantThumbnails(stuck + Paths(5), kPixels);
        QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 5, 60000);
        QCOMPARE(maker->Asked().size(), 8);
        maker->Hang({});
        QTRY_COMPARE(ready.count(), 8);
        QVERIFY(maker->MostDecoding() <= 2);
    }

    // However many files hung before: each of them would take the memory of a picture.
    void FilesThatAreLetGoAreDecodedTwoAtATime() {
        auto maker = std::make_shared<SlowMaker>();
        maker->Hang(Paths(4));
        PictureSource source(ReadersOf(maker), nullptr, kPatience);
        QSignalSpy ready(&source, &PictureSource::thumbnailReady);
        source.WantThumbnails(Paths(8), kPixels);
        // Four hang, two decode in their place.
        QTRY_COMPARE_WITH_TIMEOUT(maker->Asked().size(), 6, 60000);
        maker->Hang({});
        maker->Open();
        QTRY_COMPARE(ready.count(), 8);
        QCOMPARE(maker->MostDecoding(), 2);
    }

    // Longer than a file may hang before its thread is replaced.
    void ASlowDecodeIsNotTakenForAFileThatHangs() {
        auto maker = std::make_shared<SlowMaker>();
        PictureSource source(ReadersOf(maker), nullptr, kPatience);
        QSignalSpy ready(&source, &PictureSource::thumbnailReady);
        source.WantThumbnails(Paths(5), kPixels);
        QTest::qWait(3500);
        QCOMPARE(maker->Asked().size(), 2);
        maker->Open();
        QTRY_COMPARE(ready.count(), 5);
    }

    void TheEndStopsADecodeUnderWay() {
        std::atomic<int> stopped{0};
        std::atomic<int> begun{0};
        {
            PictureSource source({{},
                                  [&](const QString&, QSize, const PictureWork& work) {
                                      ++begun;
                                      while (!work.IsStopped()) {
                                          QThread::msleep(1);
                                      }
                                      ++stopped;
                                      return Picture();
                                  }},
                                 nullptr, kPatience);
            source.WantThumbnails(Paths(10), kPixels);
            while (begun < 2) {
                QThread::msleep(1);
            }
        }
        // Both have left before the object has, and none of the others was begun.
        QCOMPARE(stopped.load(), 2);
        QCOMPARE(begun.load(), 2);
    }

    void NothingIsDeliveredAfterTheEnd() {
        auto maker = std::make_shared<SlowMaker>();
        maker->Open();
        int delivered = 0;
        {
            PictureSource source(ReadersOf(maker), nullptr, kPatience);
            connect(&source, &PictureSource::thumbnailReady, this, [&delivered] { ++delivered; });
            source.WantThumbnails(Paths(50), kPixels);
        }
        QCoreApplication::processEvents();
        QCOMPARE(delivered, 0);
    }

    void NobodyAsksAndNothingStarts() {
        auto maker = std::make_shared<SlowMaker>();
        {
            PictureSource source(ReadersOf(maker), nullptr, kPatience);
            source.WantThumbnails({}, kPixels);
        }
        QVERIFY(maker->Asked().isEmpty());
    }

    // The last one: what has been left behind stays so.
    void TheEndDoesNotWaitForAFileThatHangs() {
        auto maker = std::make_shared<SlowMaker>();
        QVERIFY(PictureWorkers::EverythingEnded());
        {
            PictureSource source(ReadersOf(maker));
            source.WantThumbnails(Paths(10), kPixels);
            maker->WaitForInside(2);
        }
        // Gone, though both threads are still inside. What they bring now is nobody's any more.
        QCOMPARE(maker->Asked().size(), 2);
        QVERIFY(!PictureWorkers::EverythingEnded());
        maker->Open();
        maker->WaitForInside(0);
    }
};

KIVO_GUILESS_TEST(TestPictureThreads)
#include "tst_picture_threads.moc"
