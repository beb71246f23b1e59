#include "random_states.h"

#include <QImage>

#include "../compose/compose_test_support.h"

namespace kivo::test {

namespace {

bool OneIn(QRandomGenerator& random, int chances) {
    return random.bounded(chances) == 0;
}

// A few pixels: decoded in no time, and still no two places of the panel alike.
QString SaveTinyPicture(const QString& path, QSize size, quint32 seed) {
    QRandomGenerator random(seed);
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixel(x, y, random.generate());
        }
    }
    if (!image.save(path)) {
        qFatal("%s cannot be written.", qUtf8Printable(path));
    }
    return path;
}

QString DrawFreeText(QRandomGenerator& random) {
    static const std::array<QString, 4> texts{
        QString(), QStringLiteral("Hi"), QStringLiteral("Привет, экран"),
        QStringLiteral("今天天气很好 and a text that is too long for its row, so that it ends somewhere")};
    return texts[size_t(random.bounded(int(texts.size())))];
}

ScreenState DrawTheme(QRandomGenerator& random, InterfaceLanguage language, Orientation orientation) {
    ScreenState state =
        ThemeScreen(kThemes[size_t(random.bounded(int(kThemes.size())))], orientation, language);
    state.style = random.bounded(2);
    if (OneIn(random, 4)) {
        state.layout.highlight = random.bounded(kLiveValueCount);
    }
    for (bool& isShown : state.layout.shown) {
        isShown = OneIn(random, 10) ? !isShown : isShown;
    }
    return state;
}

ScreenState DrawCustom(QRandomGenerator& random, InterfaceLanguage language, Orientation orientation) {
    const int variant = random.bounded(kVariantCount);
    SlotRow row{};
    for (int& item : row) {
        item = random.bounded(int(kEmptySlot), kLiveValueCount);
    }
    ScreenState state = CustomScreen(row, orientation, language, variant);
    for (std::array<bool, kLiveValueCount>* flags : {&state.layout.shown, &state.layout.selected}) {
        for (bool& isTicked : *flags) {
            isTicked = OneIn(random, 5) ? !isTicked : isTicked;
        }
    }
    state.layout.freeText = DrawFreeText(random);
    state.layout.sizeIndex = random.bounded(kTextSizeCount);
    state.layout.colorIndex = random.bounded(kTextColorCount);
    state.textRow = random.bounded(kTextRowCount);
    return state;
}

}  // namespace

RandomStates::RandomStates()
    : m_tinyPictures{SaveTinyPicture(m_folder.filePath(QStringLiteral("wide.png")), QSize(16, 9), 1),
                     SaveTinyPicture(m_folder.filePath(QStringLiteral("high.png")), QSize(5, 12), 2),
                     m_folder.filePath(QStringLiteral("missing.png"))} {}

ScreenState RandomStates::Draw(QRandomGenerator& random, InterfaceLanguage language) const {
    const Orientation orientation = kOrientations[size_t(random.bounded(int(kOrientations.size())))];
    ScreenState state = OneIn(random, 2) ? DrawTheme(random, language, orientation)
                                         : DrawCustom(random, language, orientation);
    state.layout.picture = DrawPicture(random);
    if (OneIn(random, 4)) {
        state.layout.xPt = random.bounded(100);
        state.layout.yPt = random.bounded(60);
        state.layout.xZoom = random.bounded(80);
    }
    if (OneIn(random, 4)) {
        state.layout.dim = random.bounded(101);
        state.layout.blur = random.bounded(101);
    }
    state.layout.accentFromPicture = OneIn(random, 4);
    return state;
}

QString RandomStates::DrawPicture(QRandomGenerator& random) const {
    if (OneIn(random, 15)) {
        const QStringList builtIn = BuiltInBackgrounds();
        return builtIn.at(random.bounded(builtIn.size()));
    }
    return m_tinyPictures[size_t(random.bounded(int(m_tinyPictures.size())))];
}

}  // namespace kivo::test
