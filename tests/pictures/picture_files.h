#pragma once

// Pictures of the tests' own making, whole and broken ones.

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QString>
#include <QTemporaryDir>
#include <QtEndian>

namespace kivo::test {

inline QImage Filled(QSize size, const QColor& color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

// The left third red, the right third blue, green between them.
inline QImage Striped(QSize size) {
    QImage image = Filled(size, Qt::green);
    QPainter painter(&image);
    const int third = size.width() / 3;
    painter.fillRect(0, 0, third, size.height(), Qt::red);
    painter.fillRect(size.width() - third, 0, third, size.height(), Qt::blue);
    return image;
}

inline QByteArray Encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format, 95)) {
        qFatal("A %s cannot be written.", format);
    }
    return bytes;
}

// A JPEG with an orientation mark (1 to 8, as cameras write it).
inline QByteArray MarkedJpeg(const QImage& image, quint8 orientation) {
    constexpr int kAfterStart = 2;
    constexpr int kMarkAt = 29;
    QByteArray mark(
        "\xFF\xE1\x00\x22"
        "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0",
        36);
    mark[kMarkAt] = char(orientation);
    return Encoded(image, "JPEG").insert(kAfterStart, mark);
}

// The four bytes of a number, lowest first, as bitmaps have them.
inline QByteArray LittleEndianBytes(qint32 number) {
    const auto bits = static_cast<quint32>(number);
    QByteArray bytes;
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.append(static_cast<char>((bits >> shift) & 0xFF));
    }
    return bytes;
}

// A bitmap whose header claims another size than its pixels have; it has no check sum that would tell.
inline QByteArray BitmapThatClaims(qint32 width, qint32 height) {
    constexpr int kWidthAt = 18;
    QByteArray bitmap = Encoded(Filled(QSize(1, 1), Qt::red), "BMP");
    return bitmap.replace(kWidthAt, 8, LittleEndianBytes(width) + LittleEndianBytes(height));
}

// A JPEG whose header claims another size.
inline QByteArray JpegThatClaims(quint16 width, quint16 height, bool progressive = false) {
    QByteArray jpeg = Encoded(Filled(QSize(8, 8), Qt::red), "JPEG");
    const int frame = jpeg.indexOf(QByteArray("\xFF\xC0", 2));
    if (progressive) {
        jpeg[frame + 1] = char(0xC2);
    }
    qToBigEndian(height, jpeg.data() + frame + 5);
    qToBigEndian(width, jpeg.data() + frame + 7);
    return jpeg;
}

inline bool IsNearly(const QColor& a, const QColor& b) {
    constexpr int kNearly = 24;  // JPEG and smooth scaling change colours a little
    return qAbs(a.red() - b.red()) <= kNearly && qAbs(a.green() - b.green()) <= kNearly &&
           qAbs(a.blue() - b.blue()) <= kNearly;
}

// The name, without the characters that some systems allow in no file's name where this is one of them.
inline QString PossibleName(QString name) {
    if (!QFile(QTemporaryDir().filePath(name)).open(QIODevice::WriteOnly)) {
        name.remove(QRegularExpression(QStringLiteral("[\"\\\\]")));
    }
    return name;
}

// A folder that goes with the test.
class PictureFolder {
public:
    QString Path(const QString& name = QString()) const { return m_folder.filePath(name); }

    QString Write(const QString& name, const QByteArray& content) const {
        QFile file(Path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("The test cannot write its file.");
        }
        return file.fileName();
    }

private:
    QTemporaryDir m_folder;
};

}  // namespace kivo::test
