#include <QRandomGenerator>
#include <QtTest>

#include "device/reports.h"
#include "support/test_program.h"
#include "virtualscreen/panel_decoder.h"

using namespace kivo;

namespace {

// Pixels as random as their generator, the same in every run.
std::vector<quint8> Noise(int size, quint32 seed) {
    QRandomGenerator generator(seed);
    std::vector<quint8> bytes(static_cast<std::size_t>(size));
    for (quint8& byte : bytes) {
        byte = static_cast<quint8>(generator.bounded(256));
    }
    return bytes;
}

quint16 Word(const std::vector<quint8>& pixels, int index) {
    const auto at = static_cast<std::size_t>(index) * 2;
    return static_cast<quint16>(pixels[at] << 8 | pixels[at + 1]);
}

quint16 PanelPixel(const PanelDecoder& panel, int x, int y) {
    return reinterpret_cast<const quint16*>(panel.State().image.constScanLine(y))[x];
}

}  // namespace

// What one side builds, the other side reads.
class TestRoundTrip : public QObject {
    Q_OBJECT

private slots:
    void frame() {
        const std::vector<quint8> pixels = Noise(kFrameBytes, 1);
        PanelDecoder panel;
        for (int number = 1; number <= kChunkCount; ++number) {
            const ChunkReport report = BuildChunkReport(pixels.data(), number, 0);
            QVERIFY(panel.Decode(report.data(), report.size()).errors.empty());
        }
        QCOMPARE(panel.State().counts.frames, quint64{1});
        for (int i = 0; i < kPanelWidth * kPanelHeight; ++i) {
            QCOMPARE(PanelPixel(panel, i % kPanelWidth, i / kPanelWidth), Word(pixels, i));
        }
    }

    void areas() {
        QRandomGenerator generator(7);
        PanelDecoder panel;
        for (quint32 i = 0; i < 500; ++i) {
            const int width = generator.bounded(1, 256);
            const int height = generator.bounded(1, qMin(170, kMaxAreaPayload / 2 / width) + 1);
            const int x = generator.bounded(kPanelWidth - width + 1);
            const int y = generator.bounded(kPanelHeight - height + 1);
            const std::vector<quint8> pixels = Noise(width * height * 2, i);
            QVERIFY(FitsAreaReport(width, height));
            const AreaReport report = BuildAreaReport(pixels.data(), x, y, width, height);
            const PanelReport result = panel.Decode(report.data(), kAreaWriteBytes);
            QVERIFY(result.errors.empty());
            QCOMPARE(result.area, QRect(x, y, width, height));
            for (int p = 0; p < width * height; ++p) {
                QCOMPARE(PanelPixel(panel, x + p % width, y + p / width), Word(pixels, p));
            }
        }
    }

    void fills() {
        PanelDecoder panel;
        const FillReport report = BuildFillReport(5, 6, 64, 32, 0xAB, 0xCD, 0);
        QVERIFY(panel.Decode(report.data(), report.size()).kind == PanelReportKind::Fill);
        QCOMPARE(PanelPixel(panel, 5, 6), quint16{0xABCD});
        QCOMPARE(PanelPixel(panel, 68, 37), quint16{0xABCD});
        QCOMPARE(PanelPixel(panel, 69, 37), quint16{0});
    }

    void everySecondOfTheDay() {
        PanelDecoder panel;
        for (int second = 0; second < 86400; second += 61) {
            const QTime time = QTime(0, 0).addSecs(second);
            const auto sync = TimeSyncMessage(time);
            const CommandReport report = BuildCommandReport(sync.data(), static_cast<int>(sync.size()));
            QVERIFY(panel.Decode(report.data(), report.size()).errors.empty());
            QCOMPARE(panel.State().clock, std::optional<QTime>(time));
        }
    }

    void orientationsAndProbe() {
        PanelDecoder panel;
        for (const int flag : {0, 1}) {
            const auto message = OrientationMessage(flag);
            const CommandReport report = BuildCommandReport(message.data(), static_cast<int>(message.size()));
            QVERIFY(panel.Decode(report.data(), report.size()).errors.empty());
            QCOMPARE(panel.State().orientation, std::optional<int>(flag + 1));
        }
        const ProbeReport probe = BuildProbeReport(0);
        QVERIFY(panel.Decode(probe.data() + kProbeStart, 64).kind == PanelReportKind::Probe);
    }
};

KIVO_APPLESS_TEST(TestRoundTrip)
#include "tst_round_trip.moc"
