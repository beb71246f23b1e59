#pragma once

// Pictures to put behind a panel: the built-in ones, plain ones and pictures of chance.

#include <QColor>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QRandomGenerator>
#include <QVector>

#include "compose/theme_catalogue.h"
#include "pictures/picture_reader.h"

namespace kivo::test {

struct Ground {
    QByteArray name;
    QImage picture;
};

inline QImage Chequered(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixel(x, y, (x + y) % 2 == 0 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
        }
    }
    return image;
}

inline QColor RandomColor(QRandomGenerator& random) {
    // Bright ones more often than dark ones: they are what is hard to read on.
    const int least = random.bounded(2) == 0 ? 150 : 0;
    return QColor(random.bounded(least, 256), random.bounded(least, 256), random.bounded(least, 256));
}

// Fields, slopes, stripes, dots or grain in colours of chance.
inline QImage RandomPicture(quint32 seed) {
    QRandomGenerator random(seed);
    QImage image(random.bounded(200, 900), random.bounded(200, 600), QImage::Format_RGB32);
    image.fill(RandomColor(random));
    QPainter painter(&image);
    painter.setPen(Qt::NoPen);
    const auto place = [&] {
        return QRect(random.bounded(-50, image.width()), random.bounded(-50, image.height()),
                     random.bounded(10, image.width()), random.bounded(10, image.height()));
    };
    switch (seed % 5) {
        case 0:
            for (int k = 0; k < 30; ++k) {
                painter.fillRect(place(), RandomColor(random));
            }
            break;
        case 1: {
            QLinearGradient slope(place().topLeft(), place().bottomRight());
            for (int k = 0; k <= 4; ++k) {
                slope.setColorAt(k / 4.0, RandomColor(random));
            }
            painter.fillRect(image.rect(), slope);
            break;
        }
        case 2: {
            const int step = random.bounded(1, 24);
            const QColor color = RandomColor(random);
            for (int x = -image.height(); x < image.width(); x += 2 * step) {
                painter.fillRect(QRect(x, 0, step, image.height()), color);
            }
            break;
        }
        case 3:
            for (int k = 0; k < 400; ++k) {
                painter.setBrush(RandomColor(random));
                const int radius = random.bounded(1, 20);
                painter.drawEllipse(place().topLeft(), radius, radius);
            }
            break;
        default:
            painter.end();
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    image.setPixelColor(x, y, RandomColor(random));
                }
            }
            break;
    }
    return image;
}

inline QImage Plain(const QColor& color) {
    QImage image(320, 170, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

inline QVector<Ground> BuiltInGrounds() {
    QVector<Ground> all;
    const QStringList paths = BuiltInBackgrounds();
    for (int k = 0; k < paths.size(); ++k) {
        all.append({"background " + QByteArray::number(k + 1), LoadPicture(paths[k])});
    }
    return all;
}

inline QVector<Ground> RandomGrounds(int count) {
    QVector<Ground> all;
    for (int k = 0; k < count; ++k) {
        all.append({"random picture " + QByteArray::number(k), RandomPicture(quint32(k))});
    }
    return all;
}

}  // namespace kivo::test
