// Live updates against whole frames: every theme, orientation, slot, item and language. Run once for each
// font.

#include <QTest>

#include "compose/frame_composer.h"
#include "compose/live_renderer.h"
#include "compose/rgb565.h"
#include "compose_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// The panel: takes whole frames and cuts in wire order, like the screen does.
class Panel {
public:
    explicit Panel(const ScreenState& state) : m_orientation(state.orientation) {}

    void Show(const QImage& frame) { m_pixels = WirePixels(frame, frame.rect(), m_orientation); }

    void Take(const Cut& cut) {
        const QRect wire = WireRect(cut.canvasRect, m_orientation);
        for (int y = 0; y < wire.height(); ++y) {
            const int start = ((wire.top() + y) * kPanelWidth + wire.left()) * 2;
            m_pixels.replace(start, wire.width() * 2, cut.pixels.mid(y * wire.width() * 2, wire.width() * 2));
        }
    }

    // The first pixel at which the panel differs from this frame, in wire coordinates; empty for none.
    QByteArray DifferenceTo(const QImage& frame) const {
        const QByteArray other = WirePixels(frame, frame.rect(), m_orientation);
        if (other == m_pixels) {
            return QByteArray();
        }
        for (int k = 0; k < kFrameBytes; ++k) {
            if (other.at(k) != m_pixels.at(k)) {
                return "at wire pixel " + QByteArray::number(k / 2 % kPanelWidth) + "," +
                       QByteArray::number(k / 2 / kPanelWidth);
            }
        }
        return QByteArray();
    }

private:
    Orientation m_orientation;
    QByteArray m_pixels;
};

const QImage& Background(Orientation orientation) {
    static const std::array<QImage, 2> canvases{NoisyCanvas(Orientation::Landscape),
                                                NoisyCanvas(Orientation::Portrait)};
    return canvases[size_t(orientation)];
}

// What is known of the panel's texts when the refresh thread walks the items.
enum class Known {
    Nothing,  // after an arrival: each is drawn as for the first time
    Frame,    // after a whole frame: each counts as changed
    Texts,    // each was drawn by itself
};

// The items one after the other as the refresh thread walks them.
void Walk(Panel& panel, const ScreenState& state, const ItemTexts& before, const ItemTexts& after,
          Known known) {
    ItemTexts texts = before;
    for (const int item : kLiveItems) {
        const bool changed = known != Known::Texts || before[size_t(item)] != after[size_t(item)];
        texts[size_t(item)] = after[size_t(item)];
        if (!IsUpdateSent(state, item, changed)) {
            continue;
        }
        const LiveUpdate update =
            RenderItem(state, {Background(state.orientation)}, texts, item, known == Known::Nothing);
        for (const Cut& cut : update.cuts) {
            panel.Take(cut);
        }
    }
}

QVector<NamedScreen> ScreensWithFreeText() {
    QVector<NamedScreen> screens;
    const QVector<QPair<const char*, QString>> texts{
        {"words", QStringLiteral("free text over slots and captions, as long as it takes to reach them all")},
        {"signs taller than their line", QStringLiteral("Ệ̣̂̃ Ǻ̃̂ṩ̣ ก็ญู ཧྐྵྨླྺ เขื้")},
        {"descenders", QStringLiteral("jfgyqp|_ ДЩЦф\njfgyqp|_ ДЩЦф")}};
    for (const auto& text : texts) {
        for (const Orientation orientation : kOrientations) {
            for (int row = 0; row < kTextRowCount; ++row) {
                ScreenState state =
                    CustomScreen({CpuTemperature, CpuUsage, Time, MemoryUsage, CpuPower}, orientation);
                state.layout.freeText = text.second;
                state.layout.colorIndex = row + 1;
                state.layout.sizeIndex = row;
                state.textRow = row;
                screens.append({QByteArray("free text, ") + text.first + ", " + NameOf(orientation) +
                                    ", row " + QByteArray::number(row),
                                state});
            }
        }
    }
    return screens;
}

void AddScreens(const QVector<NamedScreen>& screens) {
    QTest::addColumn<ScreenState>("state");
    for (const NamedScreen& screen : screens) {
        QTest::newRow(screen.name) << screen.state;
    }
}

}  // namespace

class TestLiveCuts : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    void EveryCutFitsOneReport_data() { AddScreens(AllScreens()); }
    void EveryCutFitsOneReport() {
        QFETCH(ScreenState, state);
        const QRect canvas = CanvasRect(state.orientation);
        for (const ItemTexts& texts : AllTexts(state.language)) {
            for (const bool firstTime : {false, true}) {
                for (const int item : kLiveItems) {
                    // Before the check that refuses what is too large: nothing may get that far.
                    const QVector<QRect> rects = SendRects(state, LayOutTexts(state, texts), item, firstTime);
                    QVERIFY(rects.size() <= 4);
                    for (const QRect& rect : rects) {
                        QVERIFY2(!rect.isEmpty() && canvas.contains(rect), Describe(rect));
                        QVERIFY2(rect.width() * rect.height() * 2 <= 4087, Describe(rect));
                    }
                }
            }
        }
    }

    void CutsCarryTheirPixels_data() { AddScreens(AllScreens()); }
    void CutsCarryTheirPixels() {
        QFETCH(ScreenState, state);
        const ItemTexts texts = LiveTexts(state.language)[1];
        for (const int item : kLiveItems) {
            const QVector<Cut> cuts =
                RenderItem(state, {Background(state.orientation)}, texts, item, true).cuts;
            const bool sent = IsUpdateSent(state, item, true);
            QCOMPARE(!cuts.isEmpty(), sent);
            for (const Cut& cut : cuts) {
                QCOMPARE(cut.pixels.size(), cut.canvasRect.width() * cut.canvasRect.height() * 2);
            }
        }
    }

    // Cuts are kept and sent again while the texts on them stay the same.
    void CutsHangOnTheTextsTheyName_data() { AddScreens(AllScreens()); }
    void CutsHangOnTheTextsTheyName() {
        QFETCH(ScreenState, state);
        const ItemTexts texts = LiveTexts(state.language)[1];
        for (size_t k = 0; k < 2 * kLiveItems.size(); ++k) {
            const int item = kLiveItems[k / 2];
            const bool firstTime = k % 2 != 0;
            const LiveUpdate update =
                RenderItem(state, {Background(state.orientation)}, texts, item, firstTime);
            QVERIFY(update.cuts.isEmpty() || (update.drawnItems >> item & 1U) != 0);
            ItemTexts others = LiveTexts(state.language)[3];
            for (const int drawn : kLiveItems) {
                if ((update.drawnItems >> drawn & 1U) != 0) {
                    others[size_t(drawn)] = texts[size_t(drawn)];
                }
            }
            const LiveUpdate again =
                RenderItem(state, {Background(state.orientation)}, others, item, firstTime);
            QCOMPARE(again.drawnItems, update.drawnItems);
            QCOMPARE(again.cuts.size(), update.cuts.size());
            for (int cut = 0; cut < update.cuts.size(); ++cut) {
                QCOMPARE(again.cuts[cut].canvasRect, update.cuts[cut].canvasRect);
                QCOMPARE(again.cuts[cut].pixels, update.cuts[cut].pixels);
            }
        }
    }

    void EveryShownItemReachesThePanel_data() { AddScreens(AllScreens()); }
    void EveryShownItemReachesThePanel() {
        QFETCH(ScreenState, state);
        const QVector<TextRun> runs = LayOutTexts(state, LiveTexts(state.language)[1]);
        for (const TextRun& run : runs) {
            QVERIFY2(run.role == TextRole::Caption || !SendRects(state, runs, run.item, true).isEmpty(),
                     Describe(run));
        }
    }

    void SameTextsSamePixels_data() { AddScreens(AllScreens() + ScreensWithFreeText()); }
    void SameTextsSamePixels() {
        QFETCH(ScreenState, state);
        for (const ItemTexts& texts : AllTexts(state.language)) {
            const QImage frame = ComposeFrame(state, {Background(state.orientation)}, texts);
            for (const Known known : {Known::Nothing, Known::Frame}) {
                Panel panel(state);
                panel.Show(frame);
                Walk(panel, state, texts, texts, known);
                QCOMPARE(panel.DifferenceTo(frame), QByteArray());
            }
        }
    }

    void NothingIsLeftBehind_data() { AddScreens(AllScreens() + ScreensWithFreeText()); }
    void NothingIsLeftBehind() {
        QFETCH(ScreenState, state);
        const QVector<ItemTexts> texts = LiveTexts(state.language);
        for (int from = 0; from < texts.size(); ++from) {
            for (int step = 1; step <= 2; ++step) {
                const ItemTexts& before = texts[from];
                const ItemTexts& after = texts[(from + step) % texts.size()];
                const QImage wanted = ComposeFrame(state, {Background(state.orientation)}, after);
                Panel panel(state);
                panel.Show(ComposeFrame(state, {Background(state.orientation)}, before));
                Walk(panel, state, before, after, Known::Texts);
                QCOMPARE(panel.DifferenceTo(wanted), QByteArray());
            }
        }
    }

    // After an arrival the panel may hold anything; what was never drawn covers all of its place.
    void NeverDrawnItemsCoverWhateverWasThere_data() { AddScreens(AllScreens()); }
    void NeverDrawnItemsCoverWhateverWasThere() {
        QFETCH(ScreenState, state);
        const QVector<ItemTexts> all = AllTexts(state.language);
        const ItemTexts after = LiveTexts(state.language)[2];
        const QImage wanted = ComposeFrame(state, {Background(state.orientation)}, after);
        for (const ItemTexts& before : all) {
            Panel panel(state);
            panel.Show(ComposeFrame(state, {Background(state.orientation)}, before));
            Walk(panel, state, before, after, Known::Nothing);
            QCOMPARE(panel.DifferenceTo(wanted), QByteArray());
        }
    }

    void EveryDigitOfTheTime_data() {
        QVector<NamedScreen> screens;
        for (const Orientation orientation : kOrientations) {
            for (const Theme theme : kThemes) {
                screens.append({NameOf(theme) + ", " + NameOf(orientation), ThemeScreen(theme, orientation)});
            }
            for (int slot = 0; slot < kSlotCount; ++slot) {
                const QByteArray end = " slot " + QByteArray::number(slot) + ", " + NameOf(orientation);
                screens.append({"time in" + end, CustomScreen(OnlySlot(slot, Time), orientation)});
                screens.append({"time and date in" + end, SharedSlotScreen(slot, orientation)});
            }
        }
        AddScreens(screens);
    }
    void EveryDigitOfTheTime() {
        QFETCH(ScreenState, state);
        const QStringList times{QStringLiteral("00:00"), QStringLiteral("11:11"), QStringLiteral("22:22"),
                                QStringLiteral("03:33"), QStringLiteral("14:44"), QStringLiteral("05:55"),
                                QStringLiteral("16:06"), QStringLiteral("07:17"), QStringLiteral("18:28"),
                                QStringLiteral("09:39"), QStringLiteral("21:01"), QStringLiteral("23:59")};
        ItemTexts before = LiveTexts(state.language)[1];
        before[Time] = times.last();
        Panel panel(state);
        panel.Show(ComposeFrame(state, {Background(state.orientation)}, before));
        for (const QString& first : times) {
            for (const QString& second : {first, QStringLiteral("10:10"), QStringLiteral("20:48")}) {
                ItemTexts after = before;
                after[Time] = second;
                const LiveUpdate update =
                    RenderItem(state, {Background(state.orientation)}, after, Time, false);
                for (const Cut& cut : update.cuts) {
                    panel.Take(cut);
                }
                const QImage wanted = ComposeFrame(state, {Background(state.orientation)}, after);
                QCOMPARE(panel.DifferenceTo(wanted), QByteArray());
                before = after;
            }
        }
    }
};

KIVO_TEST(TestLiveCuts)
#include "tst_live_cuts.moc"
