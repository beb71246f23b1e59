#include <QTest>

#include "picture_files.h"
#include "pictures/picture_shelf.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr qint64 kEach = 100LL * 100 * 4;

Picture Large(const QColor& color = Qt::red) {
    return {Filled(QSize(100, 100), color)};
}

}  // namespace

class TestPictureShelf : public QObject {
    Q_OBJECT

private slots:
    void WhatIsPutThereIsFound() {
        PictureShelf shelf(10 * kEach);
        QCOMPARE(shelf.Find(QStringLiteral("a")), nullptr);
        const Picture picture = Large();
        shelf.Put(QStringLiteral("a"), picture);
        QCOMPARE(shelf.Find(QStringLiteral("a"))->image.cacheKey(), picture.image.cacheKey());
        QCOMPARE(shelf.Bytes(), kEach);
    }

    void TheNewerTakesThePlaceOfTheOlder() {
        PictureShelf shelf(10 * kEach);
        shelf.Put(QStringLiteral("a"), Large());
        shelf.Put(QStringLiteral("a"), Large(Qt::blue));
        QCOMPARE(shelf.Bytes(), kEach);
        QCOMPARE(shelf.Find(QStringLiteral("a"))->image.pixelColor(1, 1), QColor(Qt::blue));
        shelf.Put(QStringLiteral("a"), NoPicture(PictureFailure::Missing, QString()));
        QCOMPARE(shelf.Bytes(), 0);
        QCOMPARE(shelf.Find(QStringLiteral("a"))->failure, PictureFailure::Missing);
    }

    void TheLongestUnusedGoesFirst() {
        PictureShelf shelf(3 * kEach);
        for (const char* path : {"a", "b", "c"}) {
            shelf.Put(QLatin1String(path), Large());
        }
        QVERIFY(shelf.Use(QStringLiteral("a")) != nullptr);
        shelf.Put(QStringLiteral("d"), Large());
        QVERIFY(shelf.Find(QStringLiteral("a")) != nullptr);
        QVERIFY(shelf.Find(QStringLiteral("b")) == nullptr);
        QVERIFY(shelf.Find(QStringLiteral("c")) != nullptr);
        QCOMPARE(shelf.Bytes(), 3 * kEach);
    }

    void TheBoundHoldsWhateverComes() {
        PictureShelf shelf(3 * kEach);
        for (int n = 0; n < 200; ++n) {
            const QSize size(10 + n * 37 % 91, 10 + n * 53 % 91);
            shelf.Put(QString::number(n % 17), Picture{Filled(size, Qt::red)});
            QVERIFY(shelf.Bytes() <= 3 * kEach);
            QVERIFY(shelf.Find(QString::number(n % 17)) != nullptr);
        }
    }

    void ImagesAreLetGoOfAndFailuresStay() {
        PictureShelf shelf(10 * kEach);
        shelf.Put(QStringLiteral("a"), Large());
        shelf.Put(QStringLiteral("b"), Large());
        shelf.Put(QStringLiteral("gone"), NoPicture(PictureFailure::Missing, QString()));
        shelf.RemoveImages({QStringLiteral("b")});
        QVERIFY(shelf.Find(QStringLiteral("a")) == nullptr);
        QVERIFY(shelf.Find(QStringLiteral("b")) != nullptr);
        QCOMPARE(shelf.Bytes(), kEach);
        shelf.RemoveImages({});
        QCOMPARE(shelf.Bytes(), 0);
        QCOMPARE(shelf.Count(), 1);
        QCOMPARE(shelf.Find(QStringLiteral("gone"))->failure, PictureFailure::Missing);
    }

    void FailuresAreNotCollectedForEver() {
        PictureShelf shelf(3 * kEach);
        for (int n = 0; n < 1000; ++n) {
            shelf.Put(QString::number(n), NoPicture(PictureFailure::Missing, QString()));
        }
        QVERIFY(shelf.Count() <= 64);
        QCOMPARE(shelf.Bytes(), 0);
    }
};

KIVO_GUILESS_TEST(TestPictureShelf)
#include "tst_picture_shelf.moc"
