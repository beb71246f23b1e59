#include <QDateTime>
#include <QDir>
#include <QSysInfo>
#include <QTest>

#include "picture_files.h"
#include "pictures/picture_reader.h"
#include "pictures/picture_work.h"
#include "pictures/thumbnail_cache.h"
#include "pictures/thumbnail_picture.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr QSize kPixels = kThumbnailSize;
const QColor kOther(10, 120, 200);

}  // namespace

class TestThumbnailCache : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<PictureFolder> m_folder;
    QString m_picture;
    QString m_cacheFolder;

    QImage Thumbnail(ThumbnailCache& cache, QSize pixels = kPixels) const {
        const std::atomic<bool> stop{false};
        return CachedThumbnail(cache, m_picture, pixels, PictureWork(stop)).image;
    }

    QImage Thumbnail() const {
        ThumbnailCache cache(m_cacheFolder);
        return Thumbnail(cache);
    }

    QString Key() const {
        const std::atomic<bool> stop{false};
        return ThumbnailCache::Key(m_picture, LookUpPicture(m_picture, PictureWork(stop)).version, kPixels);
    }

    QStringList CachedFiles() const {
        QStringList paths;
        for (const QFileInfo& file : QDir(m_cacheFolder).entryInfoList(QDir::Files)) {
            paths.append(file.filePath());
        }
        return paths;
    }

    // What the cache gives tells it apart from what the picture gives.
    void PutOtherThumbnail() const {
        ThumbnailCache cache(m_cacheFolder);
        cache.Store(Key(), Filled(kPixels, kOther));
    }

    bool IsFromCache(const QImage& thumbnail) const { return IsNearly(thumbnail.pixelColor(38, 27), kOther); }
    bool IsFromPicture(const QImage& thumbnail) const {
        return thumbnail.size() == kPixels && IsNearly(thumbnail.pixelColor(38, 27), Qt::red);
    }

private slots:
    void init() {
        m_folder = std::make_unique<PictureFolder>();
        m_picture =
            m_folder->Write(QStringLiteral("red.png"), Encoded(Filled(QSize(300, 200), Qt::red), "PNG"));
        m_cacheFolder = m_folder->Path(QStringLiteral("deep/cache"));
    }

    void AMissDecodesAndKeeps() {
        QVERIFY(IsFromPicture(Thumbnail()));
        QCOMPARE(CachedFiles().size(), 1);
        QVERIFY(!ThumbnailCache(m_cacheFolder).Load(Key(), kPixels).isNull());
    }

    void AHitIsNotDecodedAgain() {
        PutOtherThumbnail();
        QVERIFY(IsFromCache(Thumbnail()));
    }

    void WhatIsKeptComesBackAsItWas() {
        QImage thumbnail(kPixels, QImage::Format_ARGB32_Premultiplied);
        thumbnail.fill(Qt::transparent);
        thumbnail.setPixelColor(3, 4, QColor(255, 0, 0, 255));
        ThumbnailCache cache(m_cacheFolder);
        cache.Store(Key(), thumbnail);
        QCOMPARE(cache.Load(Key(), kPixels), thumbnail);
    }

    void APictureChangedUnderTheSamePathIsDecodedAgain_data() {
        QTest::addColumn<bool>("sameLength");
        QTest::addColumn<int>("laterMs");
        QTest::newRow("other length, same time") << false << 0;
        QTest::newRow("same length, a moment later") << true << 40;
        QTest::newRow("same length, copied with an older time") << true << -100000;
    }
    void APictureChangedUnderTheSamePathIsDecodedAgain() {
        QFETCH(bool, sameLength);
        QFETCH(int, laterMs);
        PutOtherThumbnail();
        const QDateTime before = QFileInfo(m_picture).lastModified();
        QFile file(m_picture);
        QVERIFY(file.open(QIODevice::ReadWrite));
        if (!sameLength) {
            QVERIFY(file.seek(file.size()));
            file.write("x");  // after the end of the PNG, where nobody looks
            file.flush();
        }
        QVERIFY(file.setFileTime(before.addMSecs(laterMs), QFileDevice::FileModificationTime));
        file.close();
        QVERIFY(IsFromPicture(Thumbnail()));
    }

    void AnotherPictureIsNotMistakenForIt() {
        PutOtherThumbnail();
        const QString copy = m_folder->Path(QStringLiteral("copy.png"));
        QVERIFY(QFile::copy(m_picture, copy));
        m_picture = copy;
        QVERIFY(IsFromPicture(Thumbnail()));
    }

    void EachSizeIsKeptForItself() {
        PutOtherThumbnail();
        ThumbnailCache cache(m_cacheFolder);
        const QImage twice = Thumbnail(cache, kPixels * 2);
        QCOMPARE(twice.size(), kPixels * 2);
        QVERIFY(IsNearly(twice.pixelColor(77, 54), Qt::red));
        QVERIFY(IsFromCache(Thumbnail(cache)));
    }

    void ADamagedFileIsDecodedAgainAndReplaced_data() {
        QTest::addColumn<QByteArray>("damage");
        QTest::newRow("empty") << QByteArray("empty");
        QTest::newRow("cut") << QByteArray("cut");
        QTest::newRow("one bit") << QByteArray("bit");
        QTest::newRow("zeros") << QByteArray("zeros");
        QTest::newRow("another program's") << QByteArray("foreign");
        QTest::newRow("another size") << QByteArray("size");
    }
    void ADamagedFileIsDecodedAgainAndReplaced() {
        QFETCH(QByteArray, damage);
        PutOtherThumbnail();
        QFile file(CachedFiles().constFirst());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QByteArray content = file.readAll();
        file.close();
        if (damage == "empty") {
            content.clear();
        } else if (damage == "cut") {
            content.chop(content.size() / 3);
        } else if (damage == "bit") {
            content[content.size() - 40] = char(content[content.size() - 40] ^ 1);
        } else if (damage == "zeros") {
            content.fill('\0');
        } else if (damage == "foreign") {
            content = Encoded(Filled(kPixels, kOther), "PNG");
        }
        if (damage == "size") {
            ThumbnailCache(m_cacheFolder).Store(Key(), Filled(kPixels * 2, kOther));
        } else {
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
            file.close();
        }
        QVERIFY(IsFromPicture(Thumbnail()));
        QVERIFY(IsFromPicture(ThumbnailCache(m_cacheFolder).Load(Key(), kPixels)));
    }

    void WhatCannotBeShownIsNotKept() {
        m_picture = m_folder->Write(QStringLiteral("text.png"), "This is no picture.\n");
        QVERIFY(Thumbnail().isNull());
        QVERIFY(CachedFiles().isEmpty());
    }

    // In one run, and until it changes: what its decoder says about it would fill the log.
    void ABrokenPictureIsReadOnce() {
        m_picture = m_folder->Write(QStringLiteral("broken.jpg"),
                                    Encoded(Striped(QSize(400, 300)), "JPEG").left(100));
        ThumbnailCache cache(m_cacheFolder);
        const std::atomic<bool> stop{false};
        int accesses = 0;
        const PictureWork work(stop, [&accesses](bool inFile) { accesses += inFile ? 1 : 0; });
        QVERIFY(CachedThumbnail(cache, m_picture, kPixels, work).image.isNull());
        QVERIFY(accesses > 1);
        accesses = 0;
        QVERIFY(CachedThumbnail(cache, m_picture, kPixels, work).image.isNull());
        QCOMPARE(accesses, 1);  // whether it has changed
        m_folder->Write(QStringLiteral("broken.jpg"), Encoded(Filled(QSize(300, 200), Qt::red), "JPEG"));
        QVERIFY(!CachedThumbnail(cache, m_picture, kPixels, work).image.isNull());
    }

    void WhatCouldNotBeReadIsTriedAgain() {
        ThumbnailCache cache(m_cacheFolder);
        std::atomic<bool> stop{false};
        const PictureWork stopped(stop, [&stop](bool) { stop = true; });
        QVERIFY(CachedThumbnail(cache, m_picture, kPixels, stopped).image.isNull());
        QVERIFY(IsFromPicture(Thumbnail(cache)));
        const QString source = m_picture;
        m_picture = m_folder->Path(QStringLiteral("later.png"));
        QVERIFY(Thumbnail(cache).isNull());
        QVERIFY(QFile::copy(source, m_picture));
        QVERIFY(IsFromPicture(Thumbnail(cache)));
    }

    // A home on a share may hang as well as a picture's folder.
    void KeepingCountsAsBeingInAFile() {
        ThumbnailCache cache(m_cacheFolder);
        const std::atomic<bool> stop{false};
        int before = 0;
        int keptInAFile = 0;
        const PictureWork work(stop, [&](bool inFile) {
            const int kept = CachedFiles().size();
            keptInAFile += inFile ? 0 : kept - before;
            before = kept;
        });
        CachedThumbnail(cache, m_picture, kPixels, work);
        QCOMPARE(keptInAFile, 1);
    }

    void AStoppedDecodeIsNotKept() {
        ThumbnailCache cache(m_cacheFolder);
        const std::atomic<bool> stop{true};
        QVERIFY(CachedThumbnail(cache, m_picture, kPixels, PictureWork(stop)).image.isNull());
        QVERIFY(CachedFiles().isEmpty());
    }

    void TheProgramsOwnPicturesAreNotKept() {
        ThumbnailCache cache(m_cacheFolder);
        const std::atomic<bool> stop{false};
        CachedThumbnail(cache, QStringLiteral("://background/1.jpg"), kPixels, PictureWork(stop));
        QVERIFY(CachedFiles().isEmpty());
    }

    void WithoutAFolderPicturesAreStillShown_data() {
        QTest::addColumn<QString>("folder");
        PictureFolder other;
        QTest::newRow("none") << QString();
        QTest::newRow("cannot be made") << QStringLiteral("/dev/null/cache");
    }
    void WithoutAFolderPicturesAreStillShown() {
        QFETCH(QString, folder);
        ThumbnailCache cache(folder);
        QVERIFY(IsFromPicture(Thumbnail(cache)));
        QVERIFY(IsFromPicture(Thumbnail(cache)));
    }

    void TheFolderIsNobodyElsesBusiness() {
        Thumbnail();
        if (QSysInfo::kernelType() == QLatin1String("winnt")) {
            return;  // there the folder has the rights of the user's own ones above it
        }
        const QFile::Permissions others = QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther;
        QVERIFY((QFile::permissions(m_cacheFolder) & others) == 0);
    }

    void TheLongestUnusedAreThrownAway() {
        constexpr int kFiles = 12;
        {
            ThumbnailCache cache(m_cacheFolder);
            for (int n = 0; n < kFiles; ++n) {
                cache.Store(QStringLiteral("key%1").arg(n), Filled(kPixels, kOther));
                QFile file(m_cacheFolder + QStringLiteral("/key%1.thumb").arg(n));
                QVERIFY(file.open(QIODevice::ReadWrite));
                file.setFileTime(QDateTime::currentDateTime().addDays(-2LL * (kFiles - n)),
                                 QFileDevice::FileModificationTime);
            }
        }
        const QString foreign = m_cacheFolder + QStringLiteral("/notes.txt");
        QVERIFY(QFile::copy(m_picture, foreign));
        const qint64 each = QFileInfo(CachedFiles().constFirst()).size();
        ThumbnailCache small(m_cacheFolder, each * 8);
        // The oldest one has just been looked at, so it is not the longest unused.
        QVERIFY(!small.Load(QStringLiteral("key0"), kPixels).isNull());
        small.Prune();
        const auto isKept = [&small](int n) {
            return !small.Load(QStringLiteral("key%1").arg(n), kPixels).isNull();
        };
        QVERIFY(isKept(0));
        for (int n = 1; n < kFiles; ++n) {
            QCOMPARE(isKept(n), n >= kFiles - 5);
        }
        QVERIFY(QFileInfo::exists(foreign));
    }

    void StoringKeepsTheCacheWithinItsSize() {
        qint64 each = 0;
        {
            ThumbnailCache probe(m_cacheFolder);
            probe.Store(QStringLiteral("probe"), Filled(kPixels, kOther));
            each = QFileInfo(CachedFiles().constFirst()).size();
        }
        ThumbnailCache cache(m_cacheFolder, each * 10);
        for (int n = 0; n < 100; ++n) {
            cache.Store(QStringLiteral("key%1").arg(n), Filled(kPixels, kOther));
        }
        QVERIFY(CachedFiles().size() <= 11);
        QVERIFY(CachedFiles().size() >= 7);
    }
};

KIVO_GUILESS_TEST(TestThumbnailCache)
#include "tst_thumbnail_cache.moc"
