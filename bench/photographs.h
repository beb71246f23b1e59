#pragma once

// A thousand photographs of twelve megapixels, for the benchmarks of the picture library.

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QStringList>
#include <QTemporaryDir>

namespace kivo::bench {

inline constexpr QSize kTwelveMegapixels(4000, 3000);
// Detail everywhere, as a photograph has it: about four megabytes.
inline QByteArray Photograph() {
    QImage image(kTwelveMegapixels, QImage::Format_RGB32);
    quint32 noise = 1;
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            noise = noise * 1664525 + 1013904223;
            const int grain = int(noise >> 28);
            line[x] = qRgb((x / 16 + grain) & 255, (y / 12 + grain) & 255, ((x + y) / 27 + grain) & 255);
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 85);
    return bytes;
}

// A thousand photographs, made once a run. Links, so that they need no four gigabytes: the program knows
// pictures by their paths and decodes each of them.
class Photographs {
public:
    Photographs() {
        const QByteArray photograph = Photograph();
        QFile file(m_folder.filePath(QStringLiteral("0.jpg")));
        file.open(QIODevice::WriteOnly);
        file.write(photograph);
        file.close();
        m_paths.append(file.fileName());
        for (int n = 1; n < 1000; ++n) {
            const QString path = m_folder.filePath(QStringLiteral("%1.jpg").arg(n));
            QFile::link(file.fileName(), path);
            m_paths.append(path);
        }
    }
    QStringList First(int count) const { return m_paths.mid(0, count); }

private:
    QTemporaryDir m_folder;
    QStringList m_paths;
};

inline const Photographs& AllPhotographs() {
    static const Photographs photographs;
    return photographs;
}

}  // namespace kivo::bench
