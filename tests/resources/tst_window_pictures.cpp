#include <QBitmap>
#include <QDir>
#include <QIcon>
#include <QImage>
#include <QImageReader>
#include <QMovie>
#include <QPixmap>
#include <QtTest>
#include <cmath>

#include "resources/resources.h"
#include "support/built_paths.h"
#include "support/test_program.h"

namespace {

struct Picture {
    const char* name;
    QSize size;
};

// Every picture of the window that comes at one and at two device pixels a window pixel.
const QVector<Picture>& Pictures() {
    static const QVector<Picture> pictures = {
        {"Union", {163, 48}},         {"add", {77, 54}},
        {"black", {20, 22}},          {"blue", {20, 22}},
        {"close_h", {16, 16}},        {"close_n", {16, 16}},
        {"close_s", {16, 16}},        {"cut1", {84, 28}},
        {"cut2", {84, 28}},           {"delete", {18, 18}},
        {"drag", {32, 32}},           {"drag2", {32, 32}},
        {"edit_bk", {433, 40}},       {"five_n", {18, 12}},
        {"five_s", {18, 12}},         {"font_black", {20, 20}},
        {"font_blue", {20, 20}},      {"font_green", {20, 20}},
        {"font_orange", {20, 20}},    {"font_white", {20, 20}},
        {"font_yellow", {20, 20}},    {"green", {20, 22}},
        {"icon_back_n", {16, 16}},    {"icon_back_s", {16, 16}},
        {"icon_trim_n", {16, 16}},    {"icon_trim_s", {16, 16}},
        {"icon_type_w", {20, 20}},    {"logo_mark", {21, 21}},
        {"mini_h", {16, 16}},         {"mini_n", {16, 16}},
        {"mini_s", {16, 16}},         {"one_n", {18, 12}},
        {"one_s", {18, 12}},          {"orient_h_n", {18, 18}},
        {"orient_h_s", {18, 18}},     {"orient_v_n", {18, 18}},
        {"orient_v_s", {18, 18}},     {"red", {20, 22}},
        {"remote_h", {24, 24}},       {"remote_n", {24, 24}},
        {"ret1", {84, 28}},           {"ret2", {84, 28}},
        {"seting_bt_02_n", {16, 16}}, {"seting_bt_02_s", {16, 16}},
        {"waring_icon", {40, 40}},    {"white", {20, 22}},
        {"yellow", {20, 22}},
    };
    return pictures;
}

QString Path(const char* name, const char* ending = ".png") {
    return QStringLiteral(":/skins/") + QLatin1String(name) + QLatin1String(ending);
}

QRgb At(const char* name, int x, int y) {
    return QImage(Path(name)).pixel(x, y);
}

}  // namespace

class WindowPictures : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { kivo::InitResources(); }

    void EveryPictureComesAtBothScales_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSize>("size");
        for (const Picture& picture : Pictures()) {
            QTest::newRow(picture.name) << QString::fromLatin1(picture.name) << picture.size;
        }
    }
    void EveryPictureComesAtBothScales() {
        QFETCH(QString, name);
        QFETCH(QSize, size);
        const QImage once(QStringLiteral(":/skins/%1.png").arg(name));
        const QImage twice(QStringLiteral(":/skins/%1@2x.png").arg(name));
        QCOMPARE(once.size(), size);
        QCOMPARE(twice.size(), size * 2);
        QVERIFY(once.hasAlphaChannel());
        // Qt goes by the file's name.
        QCOMPARE(twice.devicePixelRatio(), 2.0);
        // Both are one drawing: reduced, the larger one has about the smaller one's ink.
        const auto ink = [](const QImage& image) {
            double sum = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    sum += qAlpha(image.pixel(x, y));
                }
            }
            return sum / 255 / (image.width() * image.height());
        };
        QVERIFY2(ink(once) > 0.02, "nothing is drawn");
        QVERIFY(qAbs(ink(once) - ink(twice)) < 0.03);
    }

    void NothingElseIsCompiledIn() {
        QStringList expected = {QStringLiteral("background_01.png"),
                                QStringLiteral("background_01_small.png"), QStringLiteral("loading.gif"),
                                QStringLiteral("loading@2x.gif"), QStringLiteral("logo.ico")};
        for (const Picture& picture : Pictures()) {
            expected << QLatin1String(picture.name) + QStringLiteral(".png")
                     << QLatin1String(picture.name) + QStringLiteral("@2x.png");
        }
        QStringList there = QDir(QStringLiteral(":/skins")).entryList(QDir::Files);
        expected.sort();
        there.sort();
        QCOMPARE(there, expected);
    }

    void ASecondSlashNamesTheSamePicture() {
        QCOMPARE(QImage(QStringLiteral("://skins/add.png")), QImage(QStringLiteral(":/skins/add.png")));
        QVERIFY(!QImage(QStringLiteral("://skins/add.png")).isNull());
        QVERIFY(!QPixmap(QStringLiteral("://skins/logo.ico")).isNull());
    }

    void ColoursAreThePalettes_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("indicator");
        QTest::addColumn<QColor>("colour");
        const auto row = [](const char* button, const char* indicator, const QColor& colour) {
            QTest::newRow(indicator) << QString::fromLatin1(button) << QString::fromLatin1(indicator)
                                     << colour;
        };
        row("white", "font_white", QColor(255, 255, 255));
        row("black", "font_black", QColor(0, 0, 0));
        row("red", "font_orange", QColor(255, 100, 34));
        row("yellow", "font_yellow", QColor(245, 224, 33));
        row("blue", "font_blue", QColor(66, 131, 228));
        row("green", "font_green", QColor(58, 200, 163));
    }
    void ColoursAreThePalettes() {
        QFETCH(QString, button);
        QFETCH(QString, indicator);
        QFETCH(QColor, colour);
        QCOMPARE(QImage(QStringLiteral(":/skins/%1.png").arg(button)).pixelColor(10, 11), colour);
        QCOMPARE(QImage(QStringLiteral(":/skins/%1.png").arg(indicator)).pixelColor(10, 10), colour);
    }

    void EdgesAreSharpAtOnePixel() {
        // A stroke on whole pixels may lack a level of 255.
        const auto isNear = [](QRgb pixel, const QColor& color) {
            return qAlpha(pixel) >= 254 && qAbs(qRed(pixel) - color.red()) <= 1 &&
                   qAbs(qGreen(pixel) - color.green()) <= 1 && qAbs(qBlue(pixel) - color.blue()) <= 1;
        };
        QVERIFY(isNear(At("cut1", 0, 14), QColor(0x33, 0x41, 0x4E)));
        QVERIFY(isNear(At("cut1", 1, 14), QColor(0x12, 0x19, 0x20)));
        QVERIFY(isNear(At("ret2", 83, 14), QColor(0x4F, 0xE0, 0xC0)));
        QVERIFY(isNear(At("ret2", 82, 14), QColor(0x22, 0x30, 0x3C)));
        QVERIFY(isNear(At("edit_bk", 216, 39), QColor(0x32, 0x40, 0x4E)));
        QVERIFY(isNear(At("edit_bk", 216, 38), QColor(0x1E, 0x28, 0x32)));
        QVERIFY(isNear(At("Union", 40, 13), QColor(0x32, 0x40, 0x4E)));
        QCOMPARE(qAlpha(At("Union", 40, 12)), 0);
    }

    void TheBubblesTipStandsUnderTheDot() {
        const QImage bubble(Path("Union"));
        int first = -1;
        int last = -1;
        for (int x = 0; x < bubble.width(); ++x) {
            if (qAlpha(bubble.pixel(x, 10)) > 0) {
                first = first < 0 ? x : first;
                last = x;
            }
        }
        // Seen from the tool strip the dot's middle is at 120 + 10, the bubble lies 12 further right.
        QCOMPARE((first + last + 1) / 2, 120 + 10 - 12);
        QVERIFY(last - first < 20);
    }

    void CheckPicturesTellTheStates() {
        QCOMPARE(QColor(At("seting_bt_02_n", 8, 3)), QColor(0x0D, 0x13, 0x19));
        QCOMPARE(QColor(At("seting_bt_02_s", 8, 3)), QColor(0x4F, 0xE0, 0xC0));
        QVERIFY(At("seting_bt_02_s", 7, 11) != At("seting_bt_02_s", 8, 3));  // the check
    }

    // The style sheet shows the ground at half its size; lines of the cards must come out one pixel wide.
    void TheGroundHoldsCardsAndWell() {
        const QImage ground(Path("background_01"));
        QCOMPARE(ground.size(), QSize(1920, 1176));
        QVERIFY(!ground.hasAlphaChannel());
        const QImage shown = ground.scaled(960, 588, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const auto card = QColor(0x17, 0x1F, 0x28);
        const auto edge = QColor(0x2A, 0x36, 0x43);
        QCOMPARE(shown.pixelColor(32, 300), edge);
        QCOMPARE(shown.pixelColor(33, 300), card);
        QCOMPARE(shown.pixelColor(499, 300), edge);
        QCOMPARE(shown.pixelColor(508, 300), edge);
        QCOMPARE(shown.pixelColor(927, 300), edge);
        QCOMPARE(shown.pixelColor(700, 531), edge);
        QCOMPARE(shown.pixelColor(700, 530), card);
        QCOMPARE(shown.pixelColor(700, 75), QColor(0x0D, 0x13, 0x19));
        QCOMPARE(shown.pixelColor(0, 300), edge);
        QCOMPARE(shown.pixelColor(479, 550), QColor(0x4F, 0xE0, 0xC0));
    }

    // A step of a slow gradient is a line right across the window; dithered, no row is of one colour.
    void TheGroundHasNoBands() {
        const QImage ground(Path("background_01"));
        int plain = 0;
        for (int y = 1080; y < 1096; ++y) {
            int changes = 0;
            for (int x = 400; x < 600; ++x) {
                changes += ground.pixel(x, y) != ground.pixel(x - 1, y) ? 1 : 0;
            }
            plain += changes == 0 ? 1 : 0;
        }
        QVERIFY2(plain <= 4, qPrintable(QString::number(plain)));
    }

    void LoadingRunsFor24FramesOf40Milliseconds_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QSize>("size");
        QTest::newRow("once") << QStringLiteral("://skins/loading.gif") << QSize(128, 128);
        QTest::newRow("twice") << QStringLiteral("://skins/loading@2x.gif") << QSize(256, 256);
    }
    void LoadingRunsFor24FramesOf40Milliseconds() {
        QFETCH(QString, path);
        QFETCH(QSize, size);
        QMovie movie(path);
        QVERIFY(movie.isValid());
        QCOMPARE(movie.frameCount(), 24);
        QCOMPARE(movie.loopCount(), -1);
        movie.setCacheMode(QMovie::CacheAll);
        // The movie itself takes from a frame's time what decoding it cost.
        QImageReader timing(path);
        QVector<QImage> frames;
        for (int i = 0; i < 24; ++i) {
            QVERIFY(movie.jumpToFrame(i));
            timing.read();
            QCOMPARE(timing.nextImageDelay(), 40);
            frames << movie.currentImage().convertToFormat(QImage::Format_RGB32);
            QCOMPARE(frames.last().size(), size);
            // The mask cuts the corners off; whatever it leaves of them looks like the disc.
            QCOMPARE(frames.last().pixelColor(0, 0), QColor(0x10, 0x16, 0x1D));
        }
        const int unit = size.width() / 128;
        const auto at = [&](int frame, int x, int y) { return frames[frame].pixelColor(x * unit, y * unit); };
        // The head goes clockwise: top, right, foot, left.
        const QColor head(0x4F, 0xE0, 0xC0);
        QCOMPARE(at(0, 64, 20), head);
        QCOMPARE(at(6, 108, 64), head);
        QCOMPARE(at(12, 64, 108), head);
        QCOMPARE(at(18, 20, 64), head);
        QCOMPARE(at(12, 64, 20), QColor(0x2A, 0x36, 0x43));
    }

    void TheIconHasAllSizes() {
        QImageReader reader(QStringLiteral("://skins/logo.ico"));
        QList<QSize> sizes;
        for (int i = 0; i < reader.imageCount(); ++i) {
            QVERIFY(reader.jumpToImage(i));
            const QImage image = reader.read();
            sizes << image.size();
            QVERIFY(image.hasAlphaChannel());
            QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
            QCOMPARE(qAlpha(image.pixel(image.width() / 2, image.height() / 2)), 255);
        }
        const QList<QSize> expected = {{16, 16}, {20, 20}, {24, 24},   {32, 32},  {40, 40},
                                       {48, 48}, {64, 64}, {128, 128}, {256, 256}};
        QCOMPARE(sizes, expected);
        QCOMPARE(QIcon(QStringLiteral("://skins/logo.ico")).availableSizes().size(), expected.size());
    }

    // What belongs to the dialog is a disc of radius 63, cut hard: a region knows no half.
    void TheBusyDialogsShapeIsAHardDisc() {
        const QString path = kivo::test::ProgramFolder() + QStringLiteral("/skin/process.png");
        const QImage mask(path);
        QCOMPARE(mask.size(), QSize(128, 128));
        for (int y = 0; y < 128; ++y) {
            for (int x = 0; x < 128; ++x) {
                const double away = std::hypot(x + 0.5 - 64, y + 0.5 - 64);
                const int alpha = qAlpha(mask.pixel(x, y));
                QCOMPARE(alpha, away <= 63 ? 255 : 0);
            }
        }
        const QImage bits = QPixmap(path).mask().toImage();
        QCOMPARE(bits.size(), QSize(128, 128));
        QVERIFY(bits.pixel(64, 64) != bits.pixel(2, 2));
    }

    void OverviewsComeAtBothScalesAndInTheirForms() {
        QVector<QImage> all;
        for (const char* name :
             {"default_background_all",     "default_background_all_en", "default_background_all_ru",
              "scene_background_all",       "TDP_background_all",        "TDP_background_all_en",
              "TDP_background_all_ru",      "time_background_all",       "time_background_all_en",
              "time_background_all_ru",     "default_background_all3",   "default_background_all3_en",
              "default_background_all3_ru", "scene_background_all3",     "TDP_background_all3",
              "TDP_background_all3_en",     "TDP_background_all3_ru",    "time_background_all3",
              "time_background_all3_en",    "time_background_all3_ru"}) {
            const QString stem = QStringLiteral("://background/") + QLatin1String(name);
            const QImage once(stem + QStringLiteral(".png"));
            const QImage twice(stem + QStringLiteral("@2x.png"));
            QCOMPARE(once.size(), QSize(85, 98));
            QCOMPARE(twice.size(), QSize(170, 196));
            QCOMPARE(qAlpha(once.pixel(0, 0)), 0);  // round corners
            for (const QImage& other : qAsConst(all)) {
                QVERIFY2(once != other, name);  // the forms differ in their words, the themes in all
            }
            all << once;
        }
    }
};

KIVO_TEST(WindowPictures)

#include "tst_window_pictures.moc"
