#include <QtTest>

#include "support/report_bytes.h"
#include "support/test_program.h"
#include "virtualscreen/panel_decoder.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// Reports written out by hand, from the protocol's tables.

QByteArray Command(const char* hex) {
    return Padded(QByteArray("\0", 1) + QByteArray::fromHex(hex), 4097);
}

// One row of `count` red pixels at the place that the header names.
QByteArray Area(const char* headerHex, int count, int size = 4096) {
    return Padded(QByteArray::fromHex(headerHex) + QByteArray::fromHex("f800").repeated(count), size);
}

QByteArray Chunk(int number) {
    QByteArray report = QByteArray::fromHex("0055a3");
    report += number == 1 ? '\xf0' : number == 27 ? '\xf2' : '\xf1';
    report += static_cast<char>(number);
    report += '\0';
    report += static_cast<char>(((number - 1) * 16) & 0xFF);
    report += '\0';
    report += number == 27 ? '\x09' : '\x10';
    report += QByteArray::fromHex("07e0").repeated(number == 27 ? 1152 : 2048);
    return Padded(report, 4105);
}

QByteArray Changed(QByteArray report, int at, int value) {
    report[at] = static_cast<char>(value);
    return report;
}

PanelReport Feed(PanelDecoder& panel, const QByteArray& report) {
    return panel.Decode(reinterpret_cast<const quint8*>(report.constData()),
                        static_cast<std::size_t>(report.size()));
}

void FeedChunks(PanelDecoder& panel, int from, int to) {
    for (int number = from; number <= to; ++number) {
        QVERIFY(Feed(panel, Chunk(number)).kind == PanelReportKind::Chunk);
    }
}

QImage Plain(quint16 pixel) {
    QImage image(320, 170, QImage::Format_RGB16);
    image.fill(pixel);
    return image;
}

// The line that an error gives.
void ExpectLine(PanelError error) {
    const QString start = QStringLiteral("Report refused, ") + PanelErrorName(error) + QStringLiteral(": ");
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(start)));
}

}  // namespace

Q_DECLARE_METATYPE(kivo::PanelError)

class TestPanelDecoder : public QObject {
    Q_OBJECT

private slots:
    void startsBlackAndUntold() {
        const PanelDecoder panel;
        QCOMPARE(panel.State().image, Plain(0));
        QVERIFY(!panel.State().clock);
        QVERIFY(!panel.State().shownTime);
        QVERIFY(!panel.State().orientation);
        QCOMPARE(panel.State().counts.reports, quint64{0});
    }

    void everyErrorHasANameOfItsOwn() {
        QSet<QString> names;
        for (int i = 0; i < kPanelErrorKinds; ++i) {
            names.insert(PanelErrorName(static_cast<PanelError>(i)));
        }
        QCOMPARE(names.size(), kPanelErrorKinds);
        QVERIFY(!names.contains(QString()));
        QCOMPARE(PanelErrorName(PanelError::Interface), QStringLiteral("interface"));
    }

    void takesTimes() {
        PanelDecoder panel;
        const PanelReport sync = Feed(panel, Command("55a1f2122e05"));
        QVERIFY(sync.kind == PanelReportKind::TimeSync);
        QCOMPARE(panel.State().clock, std::optional<QTime>(QTime(18, 46, 5)));
        QVERIFY(!panel.State().shownTime);
        QVERIFY(Feed(panel, Command("55a1f3173b3b")).kind == PanelReportKind::TimeShow);
        QCOMPARE(panel.State().shownTime, std::optional<QTime>(QTime(23, 59, 59)));
        QCOMPARE(panel.State().counts.commands, quint64{2});
    }

    void takesOrientations() {
        PanelDecoder panel;
        QVERIFY(Feed(panel, Command("55a1f101")).kind == PanelReportKind::Orientation);
        QCOMPARE(panel.State().orientation, std::optional<int>(1));
        Feed(panel, Command("55a1f102"));
        QCOMPARE(panel.State().orientation, std::optional<int>(2));
    }

    void takesAreas_data() {
        QTest::addColumn<QByteArray>("report");
        QTest::addColumn<QRect>("area");
        QTest::addColumn<bool>("fill");
        QTest::newRow("one pixel") << Area("0055a2000000000101", 1) << QRect(0, 0, 1, 1) << false;
        QTest::newRow("last pixel") << Area("0055a23f01a9000101", 1) << QRect(319, 169, 1, 1) << false;
        QTest::newRow("40 x 51") << Area("0055a2180177002833", 2040) << QRect(280, 119, 40, 51) << false;
        QTest::newRow("2043 pixels") << Area("0055a20000000009aa", 9 * 170) << QRect(0, 0, 9, 170) << false;
        QTest::newRow("a part of 2044 pixels") << Area(
                                                      "0055a20000000092"
                                                      "0e",
                                                      2044, 4097)
                                               << QRect(0, 0, 146, 14) << false;
        QTest::newRow("a fill") << Area("0055a2000000004020", 2048, 4105) << QRect(0, 0, 64, 32) << true;
    }

    void takesAreas() {
        QFETCH(QByteArray, report);
        QFETCH(QRect, area);
        QFETCH(bool, fill);
        PanelDecoder panel;
        const PanelReport result = Feed(panel, report);
        QVERIFY(result.kind == (fill ? PanelReportKind::Fill : PanelReportKind::Area));
        QVERIFY(result.changedPicture);
        QCOMPARE(result.area, area);
        for (int y = 0; y < 170; ++y) {
            for (int x = 0; x < 320; ++x) {
                const QRgb expected = area.contains(x, y) ? qRgb(255, 0, 0) : qRgb(0, 0, 0);
                QCOMPARE(panel.State().image.pixel(x, y), expected);
            }
        }
    }

    void areaRowsFollowEachOther() {
        PanelDecoder panel;
        // Red, green / blue, white.
        Feed(panel, Padded(QByteArray::fromHex("0055a20a0014000202"
                                               "f80007e0"
                                               "001fffff"),
                           4096));
        const QImage& image = panel.State().image;
        QCOMPARE(image.pixel(10, 20), qRgb(255, 0, 0));
        QCOMPARE(image.pixel(11, 20), qRgb(0, 255, 0));
        QCOMPARE(image.pixel(10, 21), qRgb(0, 0, 255));
        QCOMPARE(image.pixel(11, 21), qRgb(255, 255, 255));
        QCOMPARE(image.pixel(12, 20), qRgb(0, 0, 0));
    }

    void takesAFrame() {
        PanelDecoder panel;
        FeedChunks(panel, 1, 26);
        QVERIFY(panel.FrameInProgress());
        QCOMPARE(panel.State().image, Plain(0));
        QVERIFY(Feed(panel, Chunk(27)).changedPicture);
        QVERIFY(!panel.FrameInProgress());
        QCOMPARE(panel.State().image, Plain(0x07E0));
        QCOMPARE(panel.State().counts.frames, quint64{1});
        QCOMPARE(panel.State().counts.reports, quint64{27});
        QCOMPARE(panel.State().counts.bytes, quint64{27} * 4105);
        QCOMPARE(panel.State().counts.errors, quint64{0});
    }

    void takesCommandsBetweenChunks() {
        PanelDecoder panel;
        FeedChunks(panel, 1, 13);
        QVERIFY(Feed(panel, Command("55a1f2000000")).errors.empty());
        FeedChunks(panel, 14, 27);
        QCOMPARE(panel.State().counts.frames, quint64{1});
    }

    void aFrameGivenUpIsForgotten_data() {
        QTest::addColumn<bool>("told");
        QTest::newRow("the sender closed its handle") << true;
        QTest::newRow("the next frame just begins") << false;
    }

    void aFrameGivenUpIsForgotten() {
        QFETCH(bool, told);
        PanelDecoder panel;
        FeedChunks(panel, 1, 20);
        if (told) {
            panel.AbandonFrame();
            QVERIFY(!panel.FrameInProgress());
        }
        FeedChunks(panel, 1, 27);
        QCOMPARE(panel.State().counts.frames, quint64{1});
        QCOMPARE(panel.State().counts.errors, quint64{0});
    }

    void takesTheProbe() {
        PanelDecoder panel;
        const QByteArray probe = QByteArray::fromHex("0055a2010203040506");
        for (const int size : {9, 64, 4096}) {
            QVERIFY(Feed(panel, Padded(probe, size)).kind == PanelReportKind::Probe);
        }
        QCOMPARE(panel.State().counts.probes, quint64{3});
        QCOMPARE(panel.State().image, Plain(0));
    }

    void refuses_data() {
        QTest::addColumn<QByteArray>("report");
        QTest::addColumn<PanelError>("error");
        const QByteArray area = Area("0055a20a000a000402", 8);
        const QByteArray fill = Area("0055a20a000a000402", 8, 4105);
        const QByteArray sync = Command("55a1f2122e05");
        const QByteArray orientation = Command("55a1f101");
        const QByteArray chunk = Chunk(1);

        QTest::newRow("no bytes") << QByteArray() << PanelError::Size;
        QTest::newRow("two bytes") << QByteArray::fromHex("0055") << PanelError::Size;
        QTest::newRow("area, one byte less") << area.left(4095) << PanelError::Size;
        QTest::newRow("area of a probe's length") << area.left(64) << PanelError::Size;
        QTest::newRow("area of a header's length") << area.left(8) << PanelError::Size;
        QTest::newRow("area too long") << Padded(area, 4106) << PanelError::Size;
        QTest::newRow("command, message only") << sync.left(7) << PanelError::Size;
        QTest::newRow("command, one byte less") << sync.left(4096) << PanelError::Size;
        QTest::newRow("command, one byte more") << Padded(sync, 4098) << PanelError::Size;
        QTest::newRow("chunk, one byte less") << chunk.left(4104) << PanelError::Size;
        QTest::newRow("chunk, one byte more") << Padded(chunk, 4106) << PanelError::Size;

        QTest::newRow("area with a report id") << Changed(area, 0, 1) << PanelError::ReportId;
        QTest::newRow("command with a report id") << Changed(sync, 0, 0x55) << PanelError::ReportId;
        QTest::newRow("chunk with a report id") << Changed(chunk, 0, 2) << PanelError::ReportId;
        QTest::newRow("wrong marker") << Changed(area, 1, 0x54) << PanelError::Marker;
        QTest::newRow("marker missing") << area.mid(1) + QByteArray(1, '\0') << PanelError::ReportId;
        QTest::newRow("wrong command") << Changed(area, 2, 0xA4) << PanelError::Command;
        QTest::newRow("wrong sub-command") << Changed(sync, 3, 0xF4) << PanelError::SubCommand;
        QTest::newRow("sub-command 0") << Changed(sync, 3, 0) << PanelError::SubCommand;

        QTest::newRow("orientation 0") << Changed(orientation, 4, 0) << PanelError::Parameter;
        QTest::newRow("orientation 3") << Changed(orientation, 4, 3) << PanelError::Parameter;
        QTest::newRow("hour 24") << Changed(sync, 4, 24) << PanelError::Parameter;
        QTest::newRow("minute 60") << Changed(sync, 5, 60) << PanelError::Parameter;
        QTest::newRow("second 60") << Changed(sync, 6, 60) << PanelError::Parameter;

        QTest::newRow("orientation, first byte behind") << Changed(orientation, 5, 1) << PanelError::Padding;
        QTest::newRow("orientation, last byte") << Changed(orientation, 4096, 1) << PanelError::Padding;
        QTest::newRow("time, first byte behind") << Changed(sync, 7, 1) << PanelError::Padding;
        QTest::newRow("time, last byte") << Changed(sync, 4096, 0xFF) << PanelError::Padding;
        QTest::newRow("area, first byte behind") << Changed(area, 9 + 16, 1) << PanelError::Padding;
        QTest::newRow("area, last byte") << Changed(area, 4095, 1) << PanelError::Padding;
        QTest::newRow("fill, last byte") << Changed(fill, 4104, 1) << PanelError::Padding;

        QTest::newRow("area without width")
            << Padded(QByteArray::fromHex("0055a20a000a000002"), 4096) << PanelError::AreaEmpty;
        QTest::newRow("area without height")
            << Padded(QByteArray::fromHex("0055a20a000a000400"), 4096) << PanelError::AreaEmpty;
        QTest::newRow("one column over the edge") << Area(
                                                         "0055a23d01000004"
                                                         "01",
                                                         4)
                                                  << PanelError::AreaOutside;
        QTest::newRow("one row over the edge") << Area("0055a20000a9000102", 2) << PanelError::AreaOutside;
        QTest::newRow("far outside") << Area("0055a2ffffffff0101", 1) << PanelError::AreaOutside;
        QTest::newRow("2044 pixels in 4096 bytes") << Area(
                                                          "0055a20000000092"
                                                          "0e",
                                                          2043)
                                                   << PanelError::AreaTooLarge;
        QTest::newRow("2048 pixels in 4097 bytes")
            << Area("0055a2000000004020", 2044, 4097) << PanelError::AreaTooLarge;
        QTest::newRow("2050 pixels of a fill")
            << Area("0055a2000000002932", 2048, 4105) << PanelError::AreaTooLarge;
        QTest::newRow("fill, another first byte") << Changed(fill, 9 + 14, 0) << PanelError::FillNotUniform;
        QTest::newRow("fill, another last byte") << Changed(fill, 9 + 15, 1) << PanelError::FillNotUniform;
        QTest::newRow("probe with a byte behind")
            << Changed(Padded(QByteArray::fromHex("0055a2010203040506"), 64), 63, 1) << PanelError::Size;
        QTest::newRow("probe with a report id")
            << Padded(QByteArray::fromHex("0155a2010203040506"), 64) << PanelError::ReportId;

        QTest::newRow("first chunk, wrong phase") << Changed(chunk, 3, 0xF1) << PanelError::Phase;
        QTest::newRow("first chunk, no phase") << Changed(chunk, 3, 0x00) << PanelError::Phase;
        QTest::newRow("chunk 0") << Changed(chunk, 4, 0) << PanelError::ChunkNumber;
        QTest::newRow("chunk 2 first") << Chunk(2) << PanelError::ChunkNumber;
        QTest::newRow("last chunk first") << Chunk(27) << PanelError::ChunkNumber;
        QTest::newRow("chunk 28") << Changed(Chunk(27), 4, 28) << PanelError::ChunkNumber;
        QTest::newRow("first chunk, offset") << Changed(chunk, 6, 0x10) << PanelError::Offset;
        QTest::newRow("first chunk, offset's low byte") << Changed(chunk, 5, 1) << PanelError::Offset;
        QTest::newRow("first chunk, length") << Changed(chunk, 8, 0x09) << PanelError::PayloadLength;
        QTest::newRow("first chunk, length's low byte") << Changed(chunk, 7, 1) << PanelError::PayloadLength;
    }

    void refuses() {
        QFETCH(QByteArray, report);
        QFETCH(PanelError, error);
        PanelDecoder panel;
        ExpectLine(error);
        // The missing marker moves every byte, and gives a second line.
        if (report.size() == 4096 && report.at(0) == 0x55) {
            ExpectLine(PanelError::Marker);
        }
        const PanelReport result = Feed(panel, report);
        QVERIFY(result.kind == PanelReportKind::Invalid);
        QVERIFY(result.errors.at(0) == error);
        QVERIFY(!result.changedPicture);
        QCOMPARE(panel.State().counts.Errors(error), quint64{1});
        QCOMPARE(panel.State().counts.errors, static_cast<quint64>(result.errors.size()));
        QCOMPARE(panel.State().counts.reports, quint64{1});
        QCOMPARE(panel.State().counts.areas + panel.State().counts.commands + panel.State().counts.probes,
                 quint64{0});
        QCOMPARE(panel.State().image, Plain(0));
        QVERIFY(!panel.State().clock);
        QVERIFY(!panel.State().orientation);
    }

    void refusesAChunkInsideAFrame_data() {
        QTest::addColumn<int>("after");
        QTest::addColumn<QByteArray>("report");
        QTest::addColumn<PanelError>("error");
        QTest::newRow("twice") << 5 << Chunk(5) << PanelError::ChunkNumber;
        QTest::newRow("one left out") << 5 << Chunk(7) << PanelError::ChunkNumber;
        QTest::newRow("last one too early") << 25 << Chunk(27) << PanelError::ChunkNumber;
        QTest::newRow("middle as first") << 5 << Changed(Chunk(6), 3, 0xF0) << PanelError::Phase;
        QTest::newRow("middle as last") << 5 << Changed(Chunk(6), 3, 0xF2) << PanelError::Phase;
        QTest::newRow("last as middle") << 26 << Changed(Chunk(27), 3, 0xF1) << PanelError::Phase;
        QTest::newRow("17 with the offset's upper bits")
            << 16 << Changed(Chunk(17), 5, 1) << PanelError::Offset;
        QTest::newRow("17 with the former offset") << 16 << Changed(Chunk(17), 6, 0xF0) << PanelError::Offset;
        QTest::newRow("27 with another offset") << 26 << Changed(Chunk(27), 6, 0x90) << PanelError::Offset;
        QTest::newRow("27 with a full length")
            << 26 << Changed(Chunk(27), 8, 0x10) << PanelError::PayloadLength;
        QTest::newRow("26 with the last length")
            << 25 << Changed(Chunk(26), 8, 0x09) << PanelError::PayloadLength;
        QTest::newRow("27, first byte behind")
            << 26 << Changed(Chunk(27), 9 + 2304, 1) << PanelError::Padding;
        QTest::newRow("27, last byte") << 26 << Changed(Chunk(27), 4104, 1) << PanelError::Padding;
        QTest::newRow("an area") << 5 << Area("0055a2000000000101", 1) << PanelError::AreaInFrame;
    }

    void refusesAChunkInsideAFrame() {
        QFETCH(int, after);
        QFETCH(QByteArray, report);
        QFETCH(PanelError, error);
        PanelDecoder panel;
        FeedChunks(panel, 1, after);
        ExpectLine(error);
        QCOMPARE(Feed(panel, report).errors, std::vector<PanelError>{error});
        QCOMPARE(panel.State().counts.frames, quint64{0});
        QCOMPARE(panel.State().image, Plain(0));
    }

    void aSpoiledFrameIsOneErrorAndNotShown() {
        PanelDecoder panel;
        FeedChunks(panel, 1, 9);
        ExpectLine(PanelError::Offset);
        Feed(panel, Changed(Chunk(10), 6, 0));
        FeedChunks(panel, 11, 27);
        QCOMPARE(panel.State().counts.errors, quint64{1});
        QCOMPARE(panel.State().counts.frames, quint64{0});
        QCOMPARE(panel.State().image, Plain(0));
        FeedChunks(panel, 1, 27);
        QCOMPARE(panel.State().counts.frames, quint64{1});
    }

    void aLostChunkIsOneErrorAndTheFrameNotShown() {
        PanelDecoder panel;
        FeedChunks(panel, 1, 9);
        ExpectLine(PanelError::ChunkNumber);
        Feed(panel, Chunk(11));
        FeedChunks(panel, 12, 27);
        QCOMPARE(panel.State().counts.errors, quint64{1});
        QCOMPARE(panel.State().counts.frames, quint64{0});
    }

    void aChunkWithoutSuccessorBeginsNoFrame_data() {
        QTest::addColumn<int>("number");
        QTest::newRow("no chunk's number") << 0;
        QTest::newRow("the last one") << 27;
        QTest::newRow("past the last one") << 28;
    }
    void aChunkWithoutSuccessorBeginsNoFrame() {
        QFETCH(int, number);
        PanelDecoder panel;
        ExpectLine(PanelError::ChunkNumber);
        Feed(panel, Changed(Chunk(27), 4, number));
        QVERIFY(!panel.FrameInProgress());
        FeedChunks(panel, 1, 27);
        QCOMPARE(panel.State().counts.errors, quint64{1});
        QCOMPARE(panel.State().counts.frames, quint64{1});
    }

    void everyErrorOfAReportIsCounted() {
        PanelDecoder panel;
        ExpectLine(PanelError::ReportId);
        ExpectLine(PanelError::AreaOutside);
        ExpectLine(PanelError::Padding);
        const PanelReport result =
            Feed(panel, Changed(Changed(Area("0055a2400100000101", 1), 0, 7), 4000, 1));
        QCOMPARE(result.errors.size(), std::size_t{3});
        QCOMPARE(panel.State().counts.errors, quint64{3});
        QCOMPARE(panel.State().counts.reports, quint64{1});
    }

    void portraitIsShownUpright() {
        PanelDecoder panel;
        // Canvas (0, 0) of a portrait picture is wire (0, 169); canvas (169, 319) is wire (319, 0).
        Feed(panel, Area("0055a20000a9000101", 1));
        Feed(panel, Padded(QByteArray::fromHex("0055a23f01000001"
                                               "01"
                                               "001f"),
                           4096));
        QCOMPARE(panel.State().UprightImage(), panel.State().image);
        Feed(panel, Command("55a1f102"));
        const QImage upright = panel.State().UprightImage();
        QCOMPARE(upright.size(), QSize(170, 320));
        for (int y = 0; y < 170; ++y) {
            for (int x = 0; x < 320; ++x) {
                QCOMPARE(upright.pixel(169 - y, x), panel.State().image.pixel(x, y));
            }
        }
        QCOMPARE(upright.pixel(0, 0), qRgb(255, 0, 0));
        QCOMPARE(upright.pixel(169, 319), qRgb(0, 0, 255));
    }
};

KIVO_APPLESS_TEST(TestPanelDecoder)
#include "tst_panel_decoder.moc"
