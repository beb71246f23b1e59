#include <QDir>
#include <QTest>

#include "config/portable_folder.h"
#include "pictures/thumbnail_cache.h"
#include "support/test_program.h"

using namespace kivo;

// Where thumbnails are kept on Linux, after the XDG Base Directory Specification.
class TestThumbnailFolder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void FollowsTheUsersCacheFolder() {
        qputenv("XDG_CACHE_HOME", "/somewhere/else");
        QCOMPARE(ThumbnailCache::DefaultFolder(), QStringLiteral("/somewhere/else/Kivo Tool/thumbnails"));
        qunsetenv("XDG_CACHE_HOME");
        QCOMPARE(ThumbnailCache::DefaultFolder(),
                 QDir::homePath() + QStringLiteral("/.cache/Kivo Tool/thumbnails"));
    }

    void LiesInThePortableFolder() {
        SetPortableFolder(QStringLiteral("/stick/data"));
        QCOMPARE(ThumbnailCache::DefaultFolder(), QStringLiteral("/stick/data/thumbnails"));
        SetPortableFolder(QString());
    }
};

KIVO_GUILESS_TEST(TestThumbnailFolder)
#include "tst_thumbnail_folder.moc"
