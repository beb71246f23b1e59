#include <QBuffer>
#include <QDir>
#include <QImageReader>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include "pictures/picture_copy.h"
#include "pictures/picture_name.h"
#include "support/test_program.h"

using namespace kivo;

// Pictures on their way to somebody else and from there.
class TestPictureCopy : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void PixelsAreHandedOn_data();
    void PixelsAreHandedOn();
    void NothingButPixelsIsHandedOn();
    void PictureIsKnownByItsBytes_data();
    void PictureIsKnownByItsBytes();
    void TitleIsPlain_data();
    void TitleIsPlain();
    void CopyIsKeptUnderAFreeName();
    void SameBytesAreFoundAgain();
    void NothingIsWrittenOver();
    void WhereItFailsNothingIsLeft();
};

namespace {

QImage Painted(QImage::Format format) {
    QImage image(40, 24, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgba(6 * x, 10 * y, 3 * (x + y), x < 20 ? 255 : 5 * x));
        }
    }
    return image.convertToFormat(format);
}

QByteArray Bytes(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// A PNG that claims to be larger than anything that is shown.
QByteArray Huge() {
    QByteArray bytes = Bytes(Painted(QImage::Format_RGB32), "PNG");
    constexpr int kWidthAt = 16;
    qToBigEndian<quint32>(60000, bytes.data() + kWidthAt);
    qToBigEndian<quint32>(60000, bytes.data() + kWidthAt + 4);
    return bytes;
}

QStringList Files(const QString& folder) {
    return QDir(folder).entryList(QDir::Files | QDir::System | QDir::Hidden, QDir::Name);
}

QByteArray Content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

void TestPictureCopy::PixelsAreHandedOn_data() {
    QTest::addColumn<QImage>("image");
    QTest::newRow("plain") << Painted(QImage::Format_RGB32);
    QTest::newRow("translucent") << Painted(QImage::Format_ARGB32);
    QTest::newRow("premultiplied") << Painted(QImage::Format_ARGB32_Premultiplied);
    QTest::newRow("of a palette") << Painted(QImage::Format_Indexed8);
    QTest::newRow("grey") << Painted(QImage::Format_Grayscale8);
    QTest::newRow("black and white") << Painted(QImage::Format_Mono);
}

void TestPictureCopy::PixelsAreHandedOn() {
    QFETCH(QImage, image);
    const QByteArray bytes = PictureToHandOn(image);
    QCOMPARE(SuffixOfPicture(bytes), QStringLiteral("png"));
    const QImage arrived = QImage::fromData(bytes);
    QCOMPARE(arrived.convertToFormat(QImage::Format_ARGB32), image.convertToFormat(QImage::Format_ARGB32));
    QCOMPARE(PictureToHandOn(arrived), bytes);
}

void TestPictureCopy::NothingButPixelsIsHandedOn() {
    QImage image = Painted(QImage::Format_RGB32);
    image.setText(QStringLiteral("Comment"), QStringLiteral("at 48.2 N, 16.4 E"));
    QVERIFY(Bytes(image, "PNG").contains("48.2"));
    QVERIFY(!PictureToHandOn(image).contains("48.2"));
    QCOMPARE(PictureToHandOn(QImage()), QByteArray());
}

void TestPictureCopy::PictureIsKnownByItsBytes_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("suffix");
    const QImage image = Painted(QImage::Format_RGB32);
    const QByteArray png = Bytes(image, "PNG");
    QTest::newRow("PNG") << png << QStringLiteral("png");
    QTest::newRow("JPEG") << Bytes(image, "JPG") << QStringLiteral("jpg");
    QTest::newRow("BMP") << Bytes(image, "BMP") << QString();
    QTest::newRow("a PNG of nothing else than its mark") << png.left(8) << QString();
    QTest::newRow("a PNG that claims to be huge") << Huge() << QString();
    QTest::newRow("a drawing") << QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\"/>") << QString();
    QTest::newRow("nothing") << QByteArray() << QString();
}

void TestPictureCopy::PictureIsKnownByItsBytes() {
    QFETCH(QByteArray, bytes);
    QFETCH(QString, suffix);
    QCOMPARE(SuffixOfPicture(bytes), suffix);
}

void TestPictureCopy::TitleIsPlain_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("title");
    const auto row = [](const char* name, const char* text, const char* title) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(title);
    };
    row("a name", "Lake at night", "Lake at night");
    row("a Chinese name", "湖", "湖");
    row("a path", "../../etc/passwd", "etcpasswd");
    row("a path of Windows", "C:\\Windows\\a", "CWindowsa");
    row("hidden", ".bashrc", "bashrc");
    row("empty", "", "picture");
    row("nothing but signs", "/\\:*?\"<>|.", "picture");
    row("line breaks", "a\nb\tc", "abc");
    row("a device", "CON", "picture");
    row("a device with a number", "lpt1", "picture");
    row("blanks", "  a  ", "a");
    row("a stream", "a::$DATA", "aDATA");
    row("too long", "abcdefghijklmnopqrstuvwxyz", "abcdefghijklmnopqrstuvwx");
}

void TestPictureCopy::TitleIsPlain() {
    QFETCH(QString, text);
    QFETCH(QString, title);
    QCOMPARE(PlainFileTitle(text), title);
    QVERIFY(PlainFileTitle(text).size() <= kLongestPictureName);
}

void TestPictureCopy::CopyIsKeptUnderAFreeName() {
    const QTemporaryDir home;
    const QString folder = home.filePath(QStringLiteral("deep/Pictures"));
    for (const char* name : {"lake.png", "lake 2.png", "lake 3.png"}) {
        const QByteArray bytes(name);
        const PictureCopy copy =
            KeepPictureCopy(bytes, QStringLiteral("lake"), QStringLiteral("png"), folder);
        QCOMPARE(copy.path, folder + QLatin1Char('/') + QLatin1String(name));
        QVERIFY(copy.isNew);
        QCOMPARE(Content(copy.path), bytes);
    }
    QCOMPARE(Files(folder).size(), 3);
}

void TestPictureCopy::SameBytesAreFoundAgain() {
    const QTemporaryDir home;
    const auto keep = [&home](const char* bytes) {
        return KeepPictureCopy(bytes, QStringLiteral("lake"), QStringLiteral("png"), home.path());
    };
    const QString first = keep("one").path;
    const QString second = keep("two").path;
    QCOMPARE(keep("two").path, second);
    QVERIFY(!keep("two").isNew);
    QCOMPARE(keep("one").path, first);
    QCOMPARE(Files(home.path()).size(), 2);
}

// Also not what a link leads to, or what is no file.
void TestPictureCopy::NothingIsWrittenOver() {
    const QTemporaryDir home;
    const QDir dir(home.path());
    const QString victim = dir.filePath(QStringLiteral("victim"));
    QVERIFY(QFile::link(victim, dir.filePath(QStringLiteral("lake.png"))));
    QVERIFY(dir.mkdir(QStringLiteral("lake 2.png")));
    const PictureCopy copy =
        KeepPictureCopy("bytes", QStringLiteral("lake"), QStringLiteral("png"), home.path());
    QCOMPARE(copy.path, dir.filePath(QStringLiteral("lake 3.png")));
    QVERIFY(!QFile::exists(victim));
}

void TestPictureCopy::WhereItFailsNothingIsLeft() {
    const QTemporaryDir home;
    const QString file = home.filePath(QStringLiteral("file"));
    QFile blocking(file);
    QVERIFY(blocking.open(QIODevice::WriteOnly));
    const PictureCopy copy = KeepPictureCopy("bytes", QStringLiteral("lake"), QStringLiteral("png"), file);
    QVERIFY(copy.path.isEmpty());
    QVERIFY(!copy.isNew);
    QVERIFY(!copy.trouble.isEmpty());
    QCOMPARE(Files(home.path()), QStringList{QStringLiteral("file")});
}

KIVO_GUILESS_TEST(TestPictureCopy)
#include "tst_picture_copy.moc"
