#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "compose/background_store.h"
#include "compose_test_support.h"
#include "config/folders.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;

// Every RGB565 value there is, as far as the canvas goes.
QImage AllColors(Orientation orientation) {
    QImage image(CanvasSize(orientation), QImage::Format_RGB16);
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<quint16*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            row[x] = quint16((y * image.width() + x) * 41);
        }
    }
    return image;
}

}  // namespace

class TestBackgroundStore : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString Path() const { return m_folder->filePath(QStringLiteral("whole.png")); }

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void LiesInTheWorkingFolder() {
        QCOMPARE(BackgroundStore::DefaultPath(), WorkingFolder() + QStringLiteral("/whole.png"));
    }

    void WhatIsSavedComesBackToThePixel() {
        for (const Orientation orientation : kOrientations) {
            const QImage saved = AllColors(orientation);
            QVERIFY(BackgroundStore(Path()).Save(saved));
            // Another store has to read the file.
            BackgroundStore other(Path());
            QVERIFY(other.Exists());
            const QImage loaded = other.Load(orientation);
            QCOMPARE(loaded.format(), QImage::Format_RGB16);
            QCOMPARE(loaded.size(), CanvasSize(orientation));
            QVERIFY(ChangedRect(loaded, saved).isNull());
        }
    }

    void TheFileIsAPng() {
        QVERIFY(BackgroundStore(Path()).Save(AllColors(kLying)));
        const QImage file(Path(), "PNG");
        QCOMPARE(file.size(), CanvasSize(kLying));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 1);
    }

    void AMissingFileIsBlack() {
        for (const Orientation orientation : kOrientations) {
            BackgroundStore store(Path());
            QVERIFY(!store.Exists());
            const QImage loaded = store.Load(orientation);
            QCOMPARE(loaded.format(), QImage::Format_RGB16);
            QCOMPARE(loaded.size(), CanvasSize(orientation));
            QVERIFY(ChangedRect(loaded, BlackCanvas(orientation)).isNull());
        }
    }

    void WhatCannotBeReadIsBlack() {
        QFile file(Path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("no picture");
        file.close();
        const LogLines log;
        BackgroundStore store(Path());
        QVERIFY(ChangedRect(store.Load(kLying), BlackCanvas(kLying)).isNull());
        // Twice a second would fill the log.
        QVERIFY(ChangedRect(store.Load(kLying), BlackCanvas(kLying)).isNull());
        QCOMPARE(LogLines::Lines().size(), 1);
    }

    void AFolderInItsPlaceIsBlackAndCannotBeSavedOver() {
        QVERIFY(QDir().mkpath(Path()));
        const LogLines log;
        BackgroundStore store(Path());
        QVERIFY(!store.Exists());
        QVERIFY(ChangedRect(store.Load(kLying), BlackCanvas(kLying)).isNull());
        QVERIFY(LogLines::Lines().isEmpty());
        QVERIFY(!store.Save(AllColors(kLying)));
        QCOMPARE(LogLines::Lines().size(), 1);
        QVERIFY(QFileInfo(Path()).isDir());
        QVERIFY(ChangedRect(store.Load(kLying), AllColors(kLying)).isNull());
    }

    void AForeignSizeIsScaledToTheCanvas() {
        QImage image(1000, 1000, QImage::Format_RGB32);
        image.fill(Qt::red);
        QPainter(&image).fillRect(500, 0, 500, 1000, Qt::blue);
        QVERIFY(image.save(Path()));
        for (const Orientation orientation : kOrientations) {
            BackgroundStore store(Path());
            const QImage loaded = store.Load(orientation);
            QCOMPARE(loaded.size(), CanvasSize(orientation));
            QCOMPARE(loaded.format(), QImage::Format_RGB16);
            const int width = loaded.width();
            const int foot = loaded.height() - 1;
            QCOMPARE(loaded.pixelColor(0, 0), QColor(Qt::red));
            QCOMPARE(loaded.pixelColor(width / 2 - 4, foot), QColor(Qt::red));
            QCOMPARE(loaded.pixelColor(width / 2 + 4, foot), QColor(Qt::blue));
            QCOMPARE(loaded.pixelColor(width - 1, 0), QColor(Qt::blue));
        }
    }

    void TheOtherOrientationIsScaledToo() {
        BackgroundStore store(Path());
        QVERIFY(store.Save(AllColors(kLying)));
        QCOMPARE(store.Load(kStanding).size(), CanvasSize(kStanding));
        // The kept picture is not the scaled one.
        QVERIFY(ChangedRect(store.Load(kLying), AllColors(kLying)).isNull());
    }

    void AReplacedFileIsSeenAtTheNextLoad() {
        BackgroundStore store(Path());
        QVERIFY(store.Save(AllColors(kLying)));
        QVERIFY(ChangedRect(store.Load(kLying), AllColors(kLying)).isNull());
        QImage other(CanvasSize(kLying), QImage::Format_RGB16);
        other.fill(Qt::green);
        QVERIFY(other.save(Path()));
        QVERIFY(ChangedRect(store.Load(kLying), other).isNull());
    }

    void ARemovedFileIsSeenAtTheNextLoad() {
        BackgroundStore store(Path());
        QVERIFY(store.Save(AllColors(kLying)));
        QVERIFY(QFile::remove(Path()));
        QVERIFY(!store.Exists());
        QVERIFY(ChangedRect(store.Load(kLying), BlackCanvas(kLying)).isNull());
    }

    void SavingReplacesTheFormerPicture() {
        BackgroundStore store(Path());
        QVERIFY(store.Save(AllColors(kLying)));
        QVERIFY(store.Save(NoisyCanvas(kStanding)));
        QVERIFY(ChangedRect(store.Load(kStanding), NoisyCanvas(kStanding)).isNull());
        QVERIFY(ChangedRect(BackgroundStore(Path()).Load(kStanding), NoisyCanvas(kStanding)).isNull());
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 1);
    }

    void WhatCannotBeSavedStaysInMemory() {
        const QString path = m_folder->filePath(QStringLiteral("no such folder/whole.png"));
        const LogLines log;
        BackgroundStore store(path);
        QVERIFY(!store.Save(AllColors(kStanding)));
        QCOMPARE(LogLines::Lines().size(), 1);
        QVERIFY(LogLines::Lines().first().contains(path));
        QVERIFY(ChangedRect(store.Load(kStanding), AllColors(kStanding)).isNull());
        QVERIFY(!store.Exists());
        // A later save that goes well is the one that counts.
        QVERIFY(QDir().mkpath(m_folder->filePath(QStringLiteral("no such folder"))));
        QVERIFY(store.Save(NoisyCanvas(kStanding)));
        QVERIFY(ChangedRect(store.Load(kStanding), NoisyCanvas(kStanding)).isNull());
    }

    void NothingToSaveIsAFailure() {
        const LogLines log;
        BackgroundStore store(Path());
        QVERIFY(!store.Save(QImage()));
        QVERIFY(!QFile::exists(Path()));
        QVERIFY(ChangedRect(store.Load(kLying), BlackCanvas(kLying)).isNull());
    }
};

KIVO_GUILESS_TEST(TestBackgroundStore)
#include "tst_background_store.moc"
