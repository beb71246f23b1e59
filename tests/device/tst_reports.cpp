#include <QtTest>
#include <limits>

#include "device/reports.h"
#include "support/report_bytes.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

template <std::size_t size>
QByteArray Bytes(const std::array<quint8, size>& report) {
    return QByteArray(reinterpret_cast<const char*>(report.data()), static_cast<int>(size));
}

// Bytes that differ from their neighbours, and from those a chunk further on.
std::vector<quint8> Pattern(int size) {
    std::vector<quint8> bytes(static_cast<std::size_t>(size));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<quint8>(i % 251 + 1);
    }
    return bytes;
}

QByteArray Slice(const std::vector<quint8>& bytes, int from, int count) {
    return QByteArray(reinterpret_cast<const char*>(bytes.data()) + from, count);
}

}  // namespace

class TestReports : public QObject {
    Q_OBJECT

private slots:
    void sizes() {
        QCOMPARE(kFrameBytes, 108800);
        QCOMPARE(kLastChunkPayload, 2304);
        QCOMPARE(kAreaBufferBytes, std::size_t{4097});
        QCOMPARE(kAreaWriteBytes, std::size_t{4096});
        QCOMPARE(kChunkReportBytes, std::size_t{4105});
        QCOMPARE(kCommandReportBytes, std::size_t{4097});
        QCOMPARE(kMaxAreaPayload, static_cast<int>(kAreaWriteBytes - kReportHeaderBytes));
        QCOMPARE(kAreaBufferPayload, static_cast<int>(kAreaBufferBytes - kReportHeaderBytes));
    }

    void areaHeader_data() {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<QByteArray>("header");
        QTest::newRow("origin, one pixel") << 0 << 0 << 1 << 1 << QByteArray::fromHex("0055a2000000000101");
        QTest::newRow("a live value") << 158 << 38 << 47 << 24 << QByteArray::fromHex("0055a29e0026002f18");
        QTest::newRow("x above a byte") << 319 << 169 << 1 << 1 << QByteArray::fromHex("0055a23f01a9000101");
        QTest::newRow("40 x 51 fits") << 280 << 119 << 40 << 51 << QByteArray::fromHex("0055a2180177002833");
        QTest::newRow("widest") << 0 << 0 << 255 << 8 << QByteArray::fromHex("0055a200000000ff08");
    }

    void areaHeader() {
        QFETCH(int, x);
        QFETCH(int, y);
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(QByteArray, header);
        const std::vector<quint8> pixels = Pattern(width * height * 2);
        const AreaReport report = BuildAreaReport(pixels.data(), x, y, width, height);
        QCOMPARE(Bytes(report), Padded(header + Slice(pixels, 0, width * height * 2), 4097));
    }

    void areaNeverOverruns_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("copied");
        QTest::newRow("exactly the buffer") << 4 << 511 << 4088;
        QTest::newRow("one row too many") << 4 << 512 << 4088;
        QTest::newRow("a whole frame") << 320 << 170 << 4088;
        QTest::newRow("nothing") << 0 << 0 << 0;
        QTest::newRow("negative width") << -5 << 10 << 0;
        QTest::newRow("negative both") << -5 << -10 << 0;
    }

    void areaNeverOverruns() {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(int, copied);
        const std::vector<quint8> pixels = Pattern(kFrameBytes);
        const QByteArray report = Bytes(BuildAreaReport(pixels.data(), 0, 0, width, height));
        QCOMPARE(report.mid(9), Padded(Slice(pixels, 0, copied), 4088));
    }

    void hugeSidesDoNotOverflow() {
        constexpr int kHuge = std::numeric_limits<int>::max();
        const std::vector<quint8> pixels = Pattern(kFrameBytes);
        QCOMPARE(Bytes(BuildAreaReport(pixels.data(), 0, 0, kHuge, kHuge)).mid(9), Slice(pixels, 0, 4088));
        QCOMPARE(Bytes(BuildFillReport(0, 0, kHuge, kHuge, 1, 2, 0)).right(2), QByteArray("\1\2"));
    }

    void fits_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<bool>("fits");
        QTest::newRow("40 x 51") << 40 << 51 << true;
        QTest::newRow("2043 pixels") << 9 << 227 << true;
        QTest::newRow("2044 pixels, the last byte would be lost") << 14 << 146 << false;
        QTest::newRow("41 x 50") << 41 << 50 << false;
        QTest::newRow("255 wide") << 255 << 8 << true;
        QTest::newRow("256 wide") << 256 << 1 << false;
        QTest::newRow("255 high") << 8 << 255 << true;
        QTest::newRow("256 high") << 1 << 256 << false;
        QTest::newRow("no width") << 0 << 5 << false;
        QTest::newRow("no height") << 5 << 0 << false;
        QTest::newRow("negative") << -5 << -5 << false;
    }

    void fits() {
        QFETCH(int, width);
        QFETCH(int, height);
        QTEST(FitsAreaReport(width, height), "fits");
    }

    void chunks_data() {
        QTest::addColumn<int>("number");
        QTest::addColumn<QByteArray>("header");
        QTest::newRow("first") << 1 << QByteArray::fromHex("0055a3f00100000010");
        QTest::newRow("second") << 2 << QByteArray::fromHex("0055a3f10200100010");
        QTest::newRow("16, the last below 65536") << 16 << QByteArray::fromHex("0055a3f11000f00010");
        QTest::newRow("17, where the offset starts again") << 17 << QByteArray::fromHex("0055a3f11100000010");
        QTest::newRow("18") << 18 << QByteArray::fromHex("0055a3f11200100010");
        QTest::newRow("26") << 26 << QByteArray::fromHex("0055a3f11a00900010");
        QTest::newRow("last") << 27 << QByteArray::fromHex("0055a3f21b00a00009");
    }

    void chunks() {
        QFETCH(int, number);
        QFETCH(QByteArray, header);
        const std::vector<quint8> frame = Pattern(kFrameBytes);
        const QByteArray report = Bytes(BuildChunkReport(frame.data(), number, 0));
        const int length = number == 27 ? 2304 : 4096;
        QCOMPARE(report, Padded(header + Slice(frame, (number - 1) * 4096, length), 4105));
    }

    void chunksTogetherAreTheFrame() {
        const std::vector<quint8> frame = Pattern(kFrameBytes);
        QByteArray joined;
        for (int number = 1; number <= 27; ++number) {
            joined += Bytes(BuildChunkReport(frame.data(), number, 0)).mid(9, number == 27 ? 2304 : 4096);
        }
        QCOMPARE(joined, Slice(frame, 0, kFrameBytes));
    }

    void chunkCarriesTheReportId() {
        const std::vector<quint8> frame = Pattern(kFrameBytes);
        QCOMPARE(BuildChunkReport(frame.data(), 5, 0x7E).at(0), quint8{0x7E});
    }

    void commands_data() {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QByteArray>("start");
        const auto message = [](const auto& bytes) { return Bytes(bytes); };
        QTest::newRow("landscape") << message(OrientationMessage(0)) << QByteArray::fromHex("0055a1f101");
        QTest::newRow("portrait") << message(OrientationMessage(1)) << QByteArray::fromHex("0055a1f102");
        QTest::newRow("a flag that wraps")
            << message(OrientationMessage(255)) << QByteArray::fromHex("0055a1f100");
        QTest::newRow("the largest flag") << message(OrientationMessage(std::numeric_limits<int>::max()))
                                          << QByteArray::fromHex("0055a1f100");
        QTest::newRow("time sync") << message(TimeSyncMessage(QTime(18, 46, 5)))
                                   << QByteArray::fromHex("0055a1f2122e05");
        QTest::newRow("midnight") << message(TimeSyncMessage(QTime(0, 0, 0)))
                                  << QByteArray::fromHex("0055a1f2000000");
        QTest::newRow("last second") << message(TimeSyncMessage(QTime(23, 59, 59, 999)))
                                     << QByteArray::fromHex("0055a1f2173b3b");
        QTest::newRow("time show") << message(TimeShowMessage(QTime(7, 8, 9)))
                                   << QByteArray::fromHex("0055a1f3070809");
        QTest::newRow("empty message") << QByteArray() << QByteArray::fromHex("00");
    }

    void commands() {
        QFETCH(QByteArray, message);
        QFETCH(QByteArray, start);
        const auto* const bytes = reinterpret_cast<const quint8*>(message.constData());
        QCOMPARE(Bytes(BuildCommandReport(bytes, message.size())), Padded(start, 4097));
    }

    void commandNeverOverruns_data() {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("taken");
        QTest::newRow("negative") << -1 << 0;
        QTest::newRow("all there is room for") << 4096 << 4096;
        QTest::newRow("one more") << 4097 << 4096;
        QTest::newRow("far more") << 100000 << 4096;
    }

    void commandNeverOverruns() {
        QFETCH(int, length);
        QFETCH(int, taken);
        const std::vector<quint8> message = Pattern(kFrameBytes);
        QCOMPARE(Bytes(BuildCommandReport(message.data(), length)).mid(1),
                 Padded(Slice(message, 0, taken), 4096));
    }

    void fill() {
        const QByteArray report = Bytes(BuildFillReport(300, 100, 3, 2, 0xF8, 0x01, 4));
        QCOMPARE(report, Padded(QByteArray::fromHex("0455a22c0164000302f801f801f801f801f801f801"), 4105));
    }

    void fillNeverOverruns_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("pixels");
        QTest::newRow("2048 pixels fit") << 64 << 32 << 2048;
        QTest::newRow("2049 do not") << 683 << 3 << 2048;
        QTest::newRow("largest area") << 255 << 255 << 2048;
        QTest::newRow("nothing") << 0 << 10 << 0;
        QTest::newRow("negative") << 10 << -1 << 0;
    }

    void fillNeverOverruns() {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(int, pixels);
        const QByteArray report = Bytes(BuildFillReport(0, 0, width, height, 0xAB, 0xCD, 0));
        QCOMPARE(report.size(), 4105);
        QCOMPARE(report.mid(9), Padded(QByteArray::fromHex("abcd").repeated(pixels), 4096));
    }

    void probe() {
        QCOMPARE(Bytes(BuildProbeReport(0)), Padded(QByteArray::fromHex("000055a2010203040506"), 4097));
        QCOMPARE(Bytes(BuildProbeReport(9)), Padded(QByteArray::fromHex("000955a2010203040506"), 4097));
    }

    void imageParts_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<QVector<int>>("rows");
        QTest::newRow("no image") << 0 << 0 << QVector<int>{};
        QTest::newRow("no rows") << 10 << 0 << QVector<int>{};
        QTest::newRow("one report") << 40 << 51 << QVector<int>{51};
        QTest::newRow("exactly one report") << 4 << 511 << QVector<int>{511};
        QTest::newRow("two equal parts") << 40 << 102 << QVector<int>{51, 51};
        QTest::newRow("the last takes the rest") << 100 << 50 << QVector<int>{16, 16, 18};
        QTest::newRow("a rest too large is divided") << 200 << 39 << QVector<int>{9, 9, 9, 10, 2};
        QTest::newRow("widest row of a report") << 2044 << 2 << QVector<int>{1, 1};
        QTest::newRow("a row wider than a report") << 2045 << 2 << QVector<int>{1, 1};
        QTest::newRow("one very wide row") << 5000 << 1 << QVector<int>{1};
    }

    void imageParts() {
        QFETCH(int, width);
        QFETCH(int, height);
        const std::vector<int> parts = PlanImageParts(width, height);
        QTEST(QVector<int>(parts.begin(), parts.end()), "rows");
    }

    void imagePartsAlwaysAddUpAndFit() {
        for (int width = 1; width <= 400; ++width) {
            for (const int height : {1, 2, 7, 50, 99, 170, 320, 1000}) {
                int sum = 0;
                for (const int rows : PlanImageParts(width, height)) {
                    QVERIFY(rows > 0);
                    QVERIFY2(width * rows * 2 <= kAreaBufferPayload,
                             qPrintable(QStringLiteral("%1 x %2").arg(width).arg(height)));
                    sum += rows;
                }
                QCOMPARE(sum, height);
            }
        }
    }
};

KIVO_APPLESS_TEST(TestReports)
#include "tst_reports.moc"
