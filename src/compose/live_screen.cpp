#include "compose/live_screen.h"

#include "compose/background_picture.h"
#include "compose/rgb565.h"
#include "device/transfers.h"

namespace kivo {

std::atomic<LiveItemRenderer*> liveItemRenderer{nullptr};

namespace {

constexpr quint8 kReportId = 0;  // the panel's reports are not numbered

const quint8* Bytes(const QByteArray& bytes) {
    return reinterpret_cast<const quint8*>(bytes.constData());
}

}  // namespace

const ItemTexts& PlaceholderTexts() {
    // Deliberate: the memory's placeholder has the form of a date.
    static const ItemTexts texts{
        QStringLiteral("00℃"),   QStringLiteral("00%"),  QStringLiteral("0000.00.00"),
        QStringLiteral("00:00"), QStringLiteral("0000"), QStringLiteral("0000.00.00"),
        QStringLiteral("0000"),  QLatin1String(""),      QLatin1String("")};
    return texts;
}

LiveScreen::LiveScreen(Transfers& transfers, BackgroundStore& backgrounds, ValueText valueText)
    : m_transfers(transfers),
      m_backgrounds(backgrounds),
      m_valueText(std::move(valueText)),
      m_applied(std::make_shared<ScreenState>()) {
    liveItemRenderer = this;
}

LiveScreen::~LiveScreen() {
    LiveItemRenderer* self = this;
    liveItemRenderer.compare_exchange_strong(self, nullptr);
}

void LiveScreen::SetLoaded(const ScreenState& state) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_chosen = state;
    m_applied = std::make_shared<const ScreenState>(state);
}

void LiveScreen::SetChosen(const ScreenState& state) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_chosen = state;
}

ScreenState LiveScreen::Chosen() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_chosen;
}

ScreenState LiveScreen::Applied() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return *m_applied;
}

ItemTexts LiveScreen::ShownTexts() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    ItemTexts texts = m_shown;
    for (int item = 0; item < kLiveValueCount; ++item) {
        if (!HasPlace(*m_applied, item)) {
            texts[size_t(item)].clear();
        }
    }
    return texts;
}

QImage LiveScreen::MakeBackground(const ScreenState& state) {
    return ComposeBackground(state, LoadPicture(PicturePath(state)), m_skins);
}

bool LiveScreen::ComposeWholeFrame() {
    const std::lock_guard<std::mutex> one(m_composeMutex);
    ScreenState state;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_composing = true;
        state = m_chosen;
    }
    KeepAppliedBackground();
    const QImage background = MakeBackground(state);
    m_backgrounds.Save(background);
    ItemTexts texts;
    for (int item = 0; item < kLiveValueCount; ++item) {
        texts[size_t(item)] = m_valueText(item);
    }
    const QImage frame = ComposeFrame(state, background, texts);
    const QByteArray pixels = WirePixels(frame, frame.rect(), state.orientation);
    if (!m_transfers.SendWholeImage(Bytes(pixels), kReportId)) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_keptBackground = m_appliedBackground;
        m_composing = false;
        return false;
    }
    ApplyComposedState(state, background, texts);
    m_transfers.SendOrientation(int(state.orientation));
    return true;
}

// After a start the applied background is only in the file that the next frame's is about to replace.
void LiveScreen::KeepAppliedBackground() {
    Orientation orientation = Orientation::Landscape;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_appliedBackground.isNull()) {
            return;
        }
        orientation = m_applied->orientation;
    }
    if (!m_backgrounds.Exists()) {
        return;
    }
    const QImage background = m_backgrounds.Load(orientation);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_appliedBackground = background;
}

void LiveScreen::ApplyComposedState(const ScreenState& state, const QImage& background,
                                    const ItemTexts& texts) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_applied = std::make_shared<const ScreenState>(state);
    m_appliedBackground = background;
    m_keptBackground = QImage();
    m_texts = texts;
    m_shown = texts;
    m_previous = PlaceholderTexts();
    m_composing = false;
}

void LiveScreen::RestoreBackground() {
    const std::lock_guard<std::mutex> one(m_composeMutex);
    if (!m_backgrounds.Exists()) {
        m_backgrounds.Save(MakeBackground(Applied()));
    }
}

void LiveScreen::RenderLiveItem(const QString& text, int item) {
    if (text.isEmpty() || item < 0 || item >= kLiveValueCount) {
        return;
    }
    DrawnUpdate asked;
    QString former;
    QImage background;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_composing) {
            return;
        }
        asked.state = m_applied;
        background = m_keptBackground;
        former = m_previous[size_t(item)];
        m_texts[size_t(item)] = text;
        m_previous[size_t(item)] = text;
        asked.texts = m_texts;
    }
    // What is not sent leaves what was drawn last as it is.
    const ScreenState& state = *asked.state;
    if (!IsUpdateSent(state, item, text != former)) {
        return;
    }
    if (background.isNull()) {
        background = m_backgrounds.Load(state.orientation);
    }
    asked.background = background.cacheKey();
    asked.firstTime = former.isNull();
    QVector<Cut> cuts;
    {
        const std::lock_guard<std::mutex> lock(m_drawnMutex);
        DrawnUpdate& drawn = m_drawn[size_t(item)];
        if (!StillHolds(drawn, asked)) {
            asked.update = RenderItem(state, background, asked.texts, item, former);
            drawn = asked;
        }
        cuts = drawn.update.cuts;
    }
    bool taken = !cuts.isEmpty();
    for (const Cut& cut : qAsConst(cuts)) {
        const QRect wire = WireRect(cut.canvasRect, state.orientation);
        taken = m_transfers.SendAreaImageWithPos(Bytes(cut.pixels), wire.x(), wire.y(), wire.width(),
                                                 wire.height()) &&
                taken;
    }
    if (taken) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_shown[size_t(item)] = text;
    }
}

bool LiveScreen::StillHolds(const DrawnUpdate& drawn, const DrawnUpdate& asked) {
    if (drawn.state != asked.state || drawn.background != asked.background ||
        drawn.firstTime != asked.firstTime) {
        return false;
    }
    for (int item = 0; item < kLiveValueCount; ++item) {
        const bool isOnIt = (drawn.update.drawnItems >> item & 1U) != 0;
        if (isOnIt && drawn.texts[size_t(item)] != asked.texts[size_t(item)]) {
            return false;
        }
    }
    return true;
}

void LiveScreen::ForgetDrawnTexts() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_previous.fill(QString());
}

}  // namespace kivo
