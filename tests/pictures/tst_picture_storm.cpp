#include <QTest>
#include <QThread>

#include <atomic>
#include <random>
#include <thread>
#include <vector>

#include "picture_files.h"
#include "pictures/picture_source.h"
#include "pictures/picture_work.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

using std::chrono::milliseconds;

constexpr int kPictures = 5;
constexpr int kAskers = 3;
constexpr int kRounds = 20;

QString PathOf(std::mt19937::result_type number) {
    return QStringLiteral("/share/%1.png").arg(number % kPictures);
}

// Files that now and then take longer than a thread may before it hangs, looked at twice as real ones are.
Picture ReadSlowly(const QString& path, const PictureWork& work) {
    thread_local std::mt19937 chance{std::random_device()()};
    for (int look = 0; look < 2; ++look) {
        const PictureWork::FileAccess access(work);
        if (chance() % 4 == 0) {
            QThread::usleep(chance() % 8000);
        }
    }
    return {Filled(QSize(32, 17), QColor(path.size(), 0, 0)), PictureFailure::None, QString(), {1, 1}};
}

PictureSource::Readers SlowReaders() {
    return {
        [](const QString& path, const Picture*, const PictureWork& work) { return ReadSlowly(path, work); },
        [](const QString& path, QSize, const PictureWork& work) { return ReadSlowly(path, work); }};
}

}  // namespace

// Everybody asks for everything at once, of files that hang and come back.
class TestPictureStorm : public QObject {
    Q_OBJECT
private slots:
    void EveryQuestionIsAnsweredInTheEnd_data();
    void EveryQuestionIsAnsweredInTheEnd();
};

void TestPictureStorm::EveryQuestionIsAnsweredInTheEnd_data() {
    QTest::addColumn<int>("hangsAfterMs");
    QTest::newRow("some hang") << 4;
    QTest::newRow("none hangs") << 60000;
}

void TestPictureStorm::EveryQuestionIsAnsweredInTheEnd() {
    QFETCH(int, hangsAfterMs);
    std::mt19937 chance{std::random_device()()};
    for (int round = 0; round < kRounds; ++round) {
        PictureSource source(SlowReaders(), nullptr, {milliseconds(hangsAfterMs), milliseconds(60000)});
        std::vector<std::thread> askers;
        std::atomic<int> done{0};
        for (int asker = 0; asker < kAskers; ++asker) {
            askers.emplace_back([&source, &done, seed = chance()] {
                std::mt19937 own{seed};
                for (int time = 0; time < 5; ++time) {
                    source.Await(PathOf(own()));
                }
                ++done;
            });
        }
        for (int step = 0; step < 30; ++step) {
            switch (chance() % 4) {
                case 0:
                    source.Want(PathOf(chance()));
                    break;
                case 1:
                    source.Check(PathOf(chance()));
                    break;
                case 2:
                    source.WantThumbnails({PathOf(chance()), PathOf(chance())}, QSize(8, 8), step);
                    break;
                default:
                    QTest::qWait(int(chance() % 3));
            }
        }
        QTRY_COMPARE_WITH_TIMEOUT(done.load(), kAskers, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(!source.IsBusy(), 10000);
        source.Stop();
        for (std::thread& asker : askers) {
            asker.join();
        }
    }
}

KIVO_GUILESS_TEST(TestPictureStorm)

#include "tst_picture_storm.moc"
