#include <QSignalSpy>
#include <QTest>

#include <atomic>

#include "pictures/picture_source.h"
#include "pictures/picture_work.h"
#include "support/test_program.h"
#include "window/picture_choice.h"

using namespace kivo;

namespace {

const QString kGood = QStringLiteral("/good.png");
const QString kBad = QStringLiteral("/bad.png");

// Pictures that are there but for the bad one, and none before they are let go.
struct Choosing {
    std::atomic<bool> isHeld{false};
    PictureSource source{{[this](const QString& path, const Picture*, const PictureWork& work) {
                              while (isHeld && !work.IsStopped()) {
                                  QThread::msleep(1);
                              }
                              return path == kBad ? NoPicture(PictureFailure::Missing, QString())
                                                  : Picture{QImage(8, 8, QImage::Format_RGB32)};
                          },
                          {}}};
    PictureChoice choice{source};
    QSignalSpy taken{&choice, &PictureChoice::taken};
    QSignalSpy refused{&choice, &PictureChoice::refused};

    void Wait() {
        isHeld = false;
        QTRY_VERIFY(!source.IsBusy());
    }
};

}  // namespace

class TestPictureChoice : public QObject {
    Q_OBJECT

private slots:
    void APictureIsTakenOnceItIsKnownThatItCanBeShown() {
        Choosing desk;
        desk.isHeld = true;
        desk.choice.Choose(kGood);
        QCOMPARE(desk.choice.Open(), kGood);
        QCOMPARE(desk.taken.count(), 0);
        desk.Wait();
        QCOMPARE(desk.taken.count(), 1);
        QCOMPARE(desk.taken.constFirst().at(0).toString(), kGood);
        QCOMPARE(desk.taken.constFirst().at(1).toString(), QString());
        QVERIFY(desk.choice.Open().isEmpty());
        QCOMPARE(desk.refused.count(), 0);
    }

    void OneThatCannotBeShownIsRefused() {
        Choosing desk;
        desk.choice.Choose(kBad, kGood);
        desk.Wait();
        QCOMPARE(desk.taken.count(), 0);
        QCOMPARE(desk.refused.count(), 1);
        QCOMPARE(desk.refused.constFirst().at(0).toString(), kBad);
        QCOMPARE(desk.refused.constFirst().at(1).toString(), kGood);
        QVERIFY(desk.choice.Open().isEmpty());
    }

    void APartOfTheProgramIsTakenAtOnce() {
        Choosing desk;
        desk.choice.Choose(QStringLiteral("://background/3.jpg"));
        QCOMPARE(desk.taken.count(), 1);
        QVERIFY(!desk.source.IsBusy());
    }

    void TheLastChoiceHolds() {
        Choosing desk;
        desk.isHeld = true;
        desk.choice.Choose(QStringLiteral("/first.png"));
        desk.choice.Choose(kGood);
        desk.Wait();
        QCOMPARE(desk.taken.count(), 1);
        QCOMPARE(desk.taken.constFirst().at(0).toString(), kGood);
    }

    void SettlingTakesAnOpenChoiceAsItIs() {
        Choosing desk;
        desk.isHeld = true;
        desk.choice.Choose(kBad);
        desk.choice.Settle();
        QCOMPARE(desk.taken.count(), 1);
        desk.Wait();
        desk.choice.Settle();
        QCOMPARE(desk.taken.count(), 1);
        QCOMPARE(desk.refused.count(), 0);
    }

    void AChoiceThatWasDroppedComesToNothing() {
        Choosing desk;
        desk.choice.Choose(kGood);
        desk.choice.Drop();
        desk.Wait();
        QCOMPARE(desk.taken.count() + desk.refused.count(), 0);
    }

    // The answer names the path as somebody else asked for it.
    void TheAnswerMayNameThePictureInAnotherWay() {
        Choosing desk;
        desk.isHeld = true;
        desk.choice.Choose(QStringLiteral("//good.png"));
        desk.source.Check(kGood);
        desk.Wait();
        QCOMPARE(desk.taken.count(), 1);
    }
};

KIVO_GUILESS_TEST(TestPictureChoice)
#include "tst_picture_choice.moc"
