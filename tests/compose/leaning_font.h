#pragma once

// A font whose letters lean over the sides of their advances, which no stand-in of the panel's font does. It
// is made here out of straight strokes, so that the tests need no font of the system's.

#include <QByteArray>
#include <QFontDatabase>
#include <QPair>
#include <QPoint>
#include <QString>
#include <QVector>
#include <array>

namespace kivo::test {

constexpr const char* kLeaningFont = "Kivo Leaning";

// Writes a TrueType font, big endian, tables in the order of their tags.
class LeaningFontWriter {
public:
    QByteArray Write() const {
        QByteArray glyphs;
        QByteArray places;
        for (int glyph = 0; glyph < kGlyphs; ++glyph) {
            Long(places, glyphs.size());
            glyphs += Glyph(glyph);
        }
        Long(places, glyphs.size());
        return File({{"OS/2", Os2()},
                     {"cmap", CharacterMap()},
                     {"glyf", glyphs},
                     {"head", Head()},
                     {"hhea", HorizontalHeader()},
                     {"hmtx", Advances()},
                     {"loca", places},
                     {"maxp", MaximumProfile()},
                     {"name", Names()},
                     {"post", QByteArray::fromHex("00030000") + QByteArray(28, 0)}});
    }

private:
    // In units of 1/1000 em.
    static constexpr int kUnits = 1000;
    static constexpr int kAdvance = 560;
    static constexpr int kHeight = 720;
    static constexpr int kAscent = 880;
    static constexpr int kDescent = 220;
    static constexpr int kLean = 260;  // of the top over the foot
    static constexpr int kFirst = 0x20;
    static constexpr int kLast = 0x7E;
    static constexpr int kGlyphs = 1 + kLast - kFirst + 1;  // the first one stands for all that is missing

    static void Short(QByteArray& out, int value) {
        out.append(char(value >> 8 & 0xFF));
        out.append(char(value & 0xFF));
    }
    static void Long(QByteArray& out, quint32 value) {
        Short(out, int(value >> 16));
        Short(out, int(value & 0xFFFF));
    }
    static QByteArray Shorts(const QVector<int>& values) {
        QByteArray out;
        for (const int value : values) {
            Short(out, value);
        }
        return out;
    }

    // The strokes of a sign, as rectangles before they lean: a seven-segment digit, the two dots of a colon,
    // a box.
    static QVector<QPair<QPoint, QPoint>> Strokes(int sign) {
        constexpr int kLeft = 60;
        constexpr int kRight = 500;
        constexpr int kThick = 90;
        constexpr int kMiddle = kHeight / 2;
        const auto stroke = [](int left, int foot, int right, int top) {
            return qMakePair(QPoint(left, foot), QPoint(right, top));
        };
        if (sign == ' ') {
            return {};
        }
        if (sign == ':') {
            return {stroke(230, 100, 330, 200), stroke(230, 450, 330, 550)};
        }
        if (sign < '0' || sign > '9') {
            return {stroke(kLeft, 0, kRight, kHeight)};
        }
        // Top, upper left, upper right, middle, lower left, lower right, foot.
        const QVector<QPair<QPoint, QPoint>> segments{
            stroke(kLeft, kHeight - kThick, kRight, kHeight),
            stroke(kLeft, kMiddle, kLeft + kThick, kHeight),
            stroke(kRight - kThick, kMiddle, kRight, kHeight),
            stroke(kLeft, kMiddle - kThick / 2, kRight, kMiddle + kThick / 2),
            stroke(kLeft, 0, kLeft + kThick, kMiddle),
            stroke(kRight - kThick, 0, kRight, kMiddle),
            stroke(kLeft, 0, kRight, kThick)};
        constexpr std::array<int, 10> kLit{0x77, 0x24, 0x5D, 0x6D, 0x2E, 0x6B, 0x7B, 0x25, 0x7F, 0x6F};
        QVector<QPair<QPoint, QPoint>> strokes;
        for (int k = 0; k < segments.size(); ++k) {
            if ((kLit[size_t(sign - '0')] >> k & 1) != 0) {
                strokes.append(segments[k]);
            }
        }
        return strokes;
    }

    static QByteArray Glyph(int glyph) {
        const QVector<QPair<QPoint, QPoint>> strokes = Strokes(glyph == 0 ? 'x' : kFirst + glyph - 1);
        if (strokes.isEmpty()) {
            return {};
        }
        QVector<int> ends;
        QVector<QPoint> points;
        for (const auto& [foot, top] : strokes) {
            for (const QPoint corner : {foot, QPoint(foot.x(), top.y()), top, QPoint(top.x(), foot.y())}) {
                points.append(QPoint(corner.x() + corner.y() * kLean / kHeight, corner.y()));
            }
            ends.append(points.size() - 1);
        }
        QByteArray xs;
        QByteArray ys;
        QPoint former;
        for (const QPoint point : points) {
            Short(xs, point.x() - former.x());
            Short(ys, point.y() - former.y());
            former = point;
        }
        QByteArray out = Shorts({int(strokes.size()), 0, 0, kAdvance + kLean, kHeight}) + Shorts(ends);
        Short(out, 0);                             // no instructions
        out += QByteArray(points.size(), '\x01');  // every point on the curve, both steps in two bytes
        out += xs + ys;
        return out.size() % 4 == 0 ? out : out + QByteArray(4 - out.size() % 4, 0);
    }

    static QByteArray CharacterMap() {
        // Format 4 with one range and the closing one.
        const QByteArray ranges =
            Shorts({4, 32, 0, 4, 4, 1, 0, kLast, 0xFFFF, 0, kFirst, 0xFFFF, 1 - kFirst, 1, 0, 0});
        QByteArray out = Shorts({0, 1, 3, 1});
        Long(out, 12);
        return out + ranges;
    }

    static QByteArray Head() {
        QByteArray out = QByteArray::fromHex("0001000000010000000000005F0F3CF5");
        out += Shorts({0x000B, kUnits}) + QByteArray(16, 0);
        return out + Shorts({0, 0, kAdvance + kLean, kHeight, 0, 8, 2, 1, 0});
    }

    static QByteArray HorizontalHeader() {
        return QByteArray::fromHex("00010000") + Shorts({kAscent, -kDescent, 0, kAdvance, 0, -kLean,
                                                         kAdvance + kLean, 1, 0, 0, 0, 0, 0, 0, 0, kGlyphs});
    }

    static QByteArray Advances() {
        QByteArray out;
        for (int glyph = 0; glyph < kGlyphs; ++glyph) {
            out += Shorts({kAdvance, 0});
        }
        return out;
    }

    static QByteArray MaximumProfile() {
        return QByteArray::fromHex("00010000") + Shorts({kGlyphs, 32, 8, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0});
    }

    static QByteArray Names() {
        const QString family = QString::fromLatin1(kLeaningFont);
        const QVector<QPair<int, QString>> names{{1, family},
                                                 {2, QStringLiteral("Regular")},
                                                 {3, family},
                                                 {4, family},
                                                 {6, QStringLiteral("KivoLeaning")}};
        const int count = int(names.size());
        QByteArray out = Shorts({0, count, 6 + 12 * count});
        QByteArray texts;
        for (const auto& [number, text] : names) {
            out += Shorts({3, 1, 0x409, number, int(text.size()) * 2, int(texts.size())});
            for (const QChar sign : text) {
                Short(texts, sign.unicode());
            }
        }
        return out + texts;
    }

    static QByteArray Os2() {
        QByteArray out = Shorts({3, kAdvance, 400, 5, 0, 650, 600, 0, 75, 650, 600, 0, 350, 50, 300, 0});
        out += QByteArray(10, 0) + QByteArray::fromHex("00000001000000000000000000000000") +
               QByteArrayLiteral("KIVO");
        out += Shorts({0x40, kFirst, kLast, kAscent, -kDescent, 0, kAscent, kDescent});
        out += QByteArray::fromHex("0000000100000000");
        return out + Shorts({500, kHeight, 0, 0x20, 1});
    }

    static quint32 Sum(QByteArray table) {
        table += QByteArray((4 - table.size() % 4) % 4, 0);
        quint32 sum = 0;
        for (int k = 0; k < table.size(); k += 4) {
            sum += quint32(quint8(table[k])) << 24 | quint32(quint8(table[k + 1])) << 16 |
                   quint32(quint8(table[k + 2])) << 8 | quint32(quint8(table[k + 3]));
        }
        return sum;
    }

    static QByteArray File(const QVector<QPair<QByteArray, QByteArray>>& tables) {
        QByteArray out = QByteArray::fromHex("00010000") +
                         Shorts({int(tables.size()), 128, 3, int(tables.size()) * 16 - 128});
        quint32 place = quint32(12 + 16 * tables.size());
        QByteArray bodies;
        for (const auto& [tag, table] : tables) {
            out += tag;
            Long(out, Sum(table));
            Long(out, place + quint32(bodies.size()));
            Long(out, quint32(table.size()));
            bodies += table + QByteArray((4 - table.size() % 4) % 4, 0);
        }
        return out + bodies;
    }
};

inline void AddLeaningFont() {
    const int id = QFontDatabase::addApplicationFontFromData(LeaningFontWriter().Write());
    if (id < 0 || !QFontDatabase::applicationFontFamilies(id).contains(QLatin1String(kLeaningFont))) {
        qFatal("The leaning font was refused.");
    }
}

}  // namespace kivo::test
