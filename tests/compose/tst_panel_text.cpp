#include <QFontInfo>
#include <QFontMetrics>
#include <QTest>

#include "compose_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const QStringList kValues{QStringLiteral("45℃"),   QStringLiteral("20%"),   QStringLiteral("1000"),
                          QStringLiteral("12:00"), QStringLiteral("125Вт"), QStringLiteral("15w"),
                          QStringLiteral("100℃"),  QStringLiteral("1"),     QStringLiteral("2019.12.31")};

constexpr QRect kRoomy(40, 40, 220, 60);

QRect Ink(const QString& text, int pixelSize, const QRect& rect, TextAlign align) {
    return InkOf({CpuPower, TextRole::Value, text, rect, pixelSize, align}, Orientation::Landscape);
}

// The text where fitting puts it, without the clipping that keeps even the oddest sign in its rectangle.
QImage DrawnUnclipped(const TextRun& run, Orientation orientation) {
    QImage image(CanvasSize(orientation) + QSize(2 * kMargin, 2 * kMargin), QImage::Format_RGB16);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.translate(kMargin, kMargin);
    painter.setPen(Qt::white);
    const FittedLine line = FitRun(run);
    painter.setFont(PanelFont(line.pixelSize));
    painter.drawText(line.baseLine, line.text);
    return image;
}

// Qt 6 places letters between pixels: a stroke's soft edge may begin a pixel earlier with some fonts.
constexpr int kSoftEdge = QT_VERSION_MAJOR > 5 ? 1 : 0;

}  // namespace

class TestPanelText : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    void FontIsTheFamilyOrOneOfItsStandIns() {
        const QFont font = PanelFont(24);
        QCOMPARE(font.family(), QStringLiteral("Microsoft YaHei"));
        QCOMPARE(font.pixelSize(), 24);
        QVERIFY(!font.bold());
        QVERIFY(!font.italic());
        // What Chinese, Cyrillic and the degree sign need; without it the panel would show boxes.
        const QFontMetrics metrics(font);
        for (const QChar sign : QStringLiteral("0℃%:年月日温度使用率内存功耗风扇转速ВтТемпЗагрМощCPU")) {
            QVERIFY2(metrics.inFont(sign), qPrintable(QString(sign)));
        }
        const QStringList standIns = QFont::substitutes(QStringLiteral("Microsoft YaHei"));
        QVERIFY(standIns.contains(QStringLiteral("Noto Sans CJK SC"), Qt::CaseInsensitive));
    }

    void TextIsDrawnInGreys() {
        QImage image(200, 60, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        DrawTexts(painter, {{CpuTemperature, TextRole::Value, QStringLiteral("45℃ 08%"), image.rect(), 24}},
                  image.rect());
        painter.end();
        bool white = false;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb pixel = image.pixel(x, y);
                QCOMPARE(qRed(pixel), qGreen(pixel));
                QCOMPARE(qGreen(pixel), qBlue(pixel));
                white = white || qRed(pixel) > 240;
            }
        }
        QVERIFY(white);
    }

    void MeasuresAreThoseOfTheFont() {
        for (const int size : {10, 12, 13, 15, 17, 18, 21, 26, 27, 36}) {
            const QFontMetrics metrics(PanelFont(size));
            const QFontMetricsF exact(PanelFont(size));
            const LineMetrics line = MetricsOf(size);
            QCOMPARE(line.ascent, qCeil(exact.ascent()));
            QCOMPARE(line.height, line.ascent + qCeil(exact.descent()));
            QCOMPARE(line.lineSpacing, line.height + qRound(exact.leading()));
            QVERIFY(line.digitHeight > size / 2 && line.digitHeight <= size);
            QVERIFY(line.inkAbove >= line.digitHeight);
            QVERIFY(line.inkBelow >= 0);
            for (const QChar digit : QStringLiteral("0123456789")) {
                QVERIFY(line.digitWidth >= metrics.horizontalAdvance(digit));
            }
        }
    }

    void AllTextsOfASizeShareOneLine_data() {
        QTest::addColumn<int>("pixelSize");
        QTest::addColumn<TextAlign>("align");
        for (const int size : {10, 13, 15, 18, 26}) {
            QTest::addRow("%d pixels, centred", size) << size << TextAlign::Centre;
            QTest::addRow("%d pixels, from the top", size) << size << TextAlign::Top;
        }
    }
    void AllTextsOfASizeShareOneLine() {
        QFETCH(int, pixelSize);
        QFETCH(TextAlign, align);
        const int line = FitLine(QStringLiteral("0"), pixelSize, kRoomy, align).baseLine.y();
        for (const QString& text : kValues) {
            const FittedLine fitted = FitLine(text, pixelSize, kRoomy, align);
            QCOMPARE(fitted.baseLine.y(), line);
            QCOMPARE(fitted.pixelSize, pixelSize);
            QCOMPARE(fitted.text, text);
        }
    }

    void DigitsStandInTheMiddle() {
        for (const int size : {10, 13, 15, 18, 21, 26, 27, 36}) {
            for (const int height : {60, 61}) {
                const QRect rect(40, 40, 120, height);
                const QRect ink = Ink(QStringLiteral("1000"), size, rect, TextAlign::Centre);
                QVERIFY2(qAbs((ink.top() - rect.top()) - (rect.bottom() - ink.bottom())) <= 2, Describe(ink));
            }
        }
    }

    void TextIsCentredByItsWidth() {
        for (const TextAlign align : {TextAlign::Centre, TextAlign::Top}) {
            for (const QString& text : kValues) {
                const FittedLine line = FitLine(text, 18, kRoomy, align);
                QCOMPARE(line.width, QFontMetrics(PanelFont(18)).horizontalAdvance(text));
                const int left = line.baseLine.x() - kRoomy.left();
                const int right = kRoomy.right() + 1 - (line.baseLine.x() + line.width);
                QVERIFY(qAbs(left - right) <= 1);
            }
        }
    }

    void FromTheTopLeavesTheFontsAscent() {
        const LineMetrics metrics = MetricsOf(18);
        const FittedLine middle = FitLine(QStringLiteral("CPU"), 18, kRoomy, TextAlign::Top);
        QCOMPARE(middle.baseLine.y(), kRoomy.top() + metrics.ascent);
        const FittedLine left = FitLine(QStringLiteral("CPU"), 18, kRoomy, TextAlign::TopLeft);
        QCOMPARE(left.baseLine, QPoint(kRoomy.left(), kRoomy.top() + metrics.ascent));
    }

    void FromTheTopWithoutRoomForTheLineIsCentred() {
        const int height = MetricsOf(10).height - 1;
        const QRect low(0, 44, 136, height);
        const QString date = QStringLiteral("2019.12.31");
        QCOMPARE(FitLine(date, 10, low, TextAlign::Top).baseLine,
                 FitLine(date, 10, low, TextAlign::Centre).baseLine);
        const QRect enough(0, 44, 136, height + 1);
        QCOMPARE(FitLine(date, 10, enough, TextAlign::Top).baseLine.y(), 44 + MetricsOf(10).ascent);
    }

    void TooWideIsDrawnSmaller() {
        const QFontMetrics metrics(PanelFont(18));
        const QString text = QStringLiteral("0000.00.00");
        const int width = metrics.horizontalAdvance(text) - 1;
        const FittedLine line = FitLine(text, 18, QRect(0, 0, width, 40), TextAlign::Centre);
        QCOMPARE(line.text, text);
        QVERIFY(line.pixelSize < 18 && line.pixelSize >= 16);
        QVERIFY(line.width <= width);
        const FittedLine whole = FitLine(text, 18, QRect(0, 0, width + 1, 40), TextAlign::Centre);
        QCOMPARE(whole.pixelSize, 18);
    }

    void MuchTooWideIsElided() {
        const QString text = QStringLiteral("a text that no slot of the panel can ever hold in one line");
        for (const TextAlign align : {TextAlign::Centre, TextAlign::Top, TextAlign::TopLeft}) {
            const QRect rect(20, 20, 82, 30);
            const FittedLine line = FitLine(text, 18, rect, align);
            QVERIFY(line.text != text);
            QVERIFY(line.text.size() < text.size());
            QVERIFY(text.startsWith(line.text.left(4)));
            QVERIFY(line.pixelSize >= 8);
            QVERIFY(line.width <= rect.width());
            QVERIFY(line.baseLine.x() >= rect.left());
        }
    }

    void ATimesSizeDoesNotHangOnItsDigits() {
        for (int height = 8; height <= 30; ++height) {
            const QRect rect(10, 10, 80, height);
            const FittedLine zeros = FitLine(QStringLiteral("00:00"), 18, rect, TextAlign::Centre);
            for (const QString& time :
                 {QStringLiteral("11:11"), QStringLiteral("17:47"), QStringLiteral("23:58")}) {
                const FittedLine line = FitLine(time, 18, rect, TextAlign::Centre);
                QCOMPARE(line.pixelSize, zeros.pixelSize);
                QCOMPARE(line.baseLine.y(), zeros.baseLine.y());
                // Where the digits reach over each other or differ in width, the whole time is sent.
                QVERIFY(!MetricsOf(line.pixelSize).separateDigits || line.baseLine.x() == zeros.baseLine.x());
            }
        }
    }

    void NoTextIsDrawnLargerThanAsked() {
        for (const int size : {1, 5, 8, 10, 18}) {
            QCOMPARE(FitLine(QStringLiteral("1"), size, kRoomy, TextAlign::Centre).pixelSize, size);
        }
    }

    void HopelessRectanglesEndInSomething() {
        for (const QRect& rect :
             {QRect(5, 5, 0, 0), QRect(5, 5, 1, 1), QRect(5, 5, 200, 1), QRect(5, 5, 1, 200)}) {
            for (const TextAlign align : {TextAlign::Centre, TextAlign::Top, TextAlign::TopLeft}) {
                const FittedLine line = FitLine(QStringLiteral("2019年12月31日"), 18, rect, align);
                QVERIFY(line.pixelSize >= 8);
                QCOMPARE(FitLine(QString(), 18, rect, align).text, QString());
            }
        }
    }

    void InkStaysInItsRectangle_data() {
        QTest::addColumn<ScreenState>("state");
        for (const NamedScreen& screen : AllScreens()) {
            QTest::newRow(screen.name) << screen.state;
        }
    }
    void InkStaysInItsRectangle() {
        QFETCH(ScreenState, state);
        for (const ItemTexts& texts : AllTexts(state.language)) {
            QVERIFY(!LayOutTexts(state, texts).isEmpty());
            for (const TextRun& run : LayOutTexts(state, texts)) {
                const QRect ink = InkOf(DrawnUnclipped(run, state.orientation));
                QVERIFY2(!ink.isNull(), Describe(run));
                QVERIFY2(run.rect.adjusted(-kSoftEdge, 0, 0, 0).contains(ink),
                         Describe(run) + " paints " + Describe(ink));
                QCOMPARE(InkOf(run, state.orientation), ink & run.rect);
            }
        }
    }

    void InkOfAnyTextStaysInItsRectangle_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("descenders and overhangs") << QStringLiteral("jfgyÄŷ|_");
        QTest::newRow("stacked accents") << QStringLiteral("Ǻ̃̂ệṩ̣");
        QTest::newRow("Cyrillic descenders") << QStringLiteral("ДЩЦфуру");
        QTest::newRow("full width") << QStringLiteral("１２３％");
        QTest::newRow("long") << QStringLiteral("a text that no slot can hold");
        QTest::newRow("emoji") << QStringLiteral("😀🎉");
    }
    void InkOfAnyTextStaysInItsRectangle() {
        QFETCH(QString, text);
        for (const NamedScreen& screen : AllScreens()) {
            if (screen.state.language != InterfaceLanguage::Chinese) {
                continue;
            }
            ItemTexts texts;
            texts.fill(text);
            for (const TextRun& run : LayOutTexts(screen.state, texts)) {
                const QRect ink = InkOf(run, screen.state.orientation);
                QVERIFY2(ink.isNull() || run.rect.contains(ink),
                         screen.name + ": " + Describe(run) + " paints " + Describe(ink));
            }
        }
    }
};

KIVO_TEST(TestPanelText)
#include "tst_panel_text.moc"
