#include <QtTest>
#include <functional>

#include "../compose/compose_test_support.h"
#include "compose/frame_composer.h"
#include "panel/panel_frame.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

using Change = std::function<void(ScreenState&)>;

struct NamedChange {
    QByteArray name;
    Change change;
    bool decidesThePicture = true;
};

// One change for each field, of each element of an array.
class Changes {
public:
    QVector<NamedChange> all;

    template <typename Pointer>
    void Number(const char* name, Pointer field) {
        Add(name, [field](ScreenState& state) { state.layout.*field += 1; });
    }
    template <typename Pointer>
    void Text(const char* name, Pointer field) {
        Add(name, [field](ScreenState& state) { state.layout.*field += QLatin1Char('x'); });
    }
    template <typename Pointer>
    void Flags(const char* name, Pointer field) {
        ForEachItem(name, [field](ScreenState& state, size_t item) {
            (state.layout.*field)[item] = !(state.layout.*field)[item];
        });
    }
    template <typename Pointer>
    void Rects(const char* name, Pointer field) {
        ForEachItem(name, [field](ScreenState& state, size_t item) {
            (state.layout.*field)[item].adjust(0, 0, 0, 1);
        });
    }
    void Add(const QByteArray& name, const Change& change) { all.append({name, change}); }
    void ForEachItem(const QByteArray& name, const std::function<void(ScreenState&, size_t)>& change) {
        for (size_t item = 0; item < kLiveValueCount; ++item) {
            Add(name + " " + QByteArray::number(int(item)),
                [change, item](ScreenState& state) { change(state, item); });
        }
    }
};

// A field more in a layout, and this does not compile any more: it needs a row of its own.
void AddChangesOf(const LayoutRecord& layout, Changes& changes) {
    const auto& [xPt, yPt, xZoom, yZoom, dim, blur, accentFromPicture, highlight, shown, selected, tile,
                 textRect, sample, picture, freeText, defaultPicture, sizeIndex, colorIndex] = layout;
    changes.Number("xPt", &LayoutRecord::xPt);
    changes.Number("yPt", &LayoutRecord::yPt);
    changes.Number("xZoom", &LayoutRecord::xZoom);
    changes.Number("yZoom", &LayoutRecord::yZoom);
    changes.Number("dim", &LayoutRecord::dim);
    changes.Number("blur", &LayoutRecord::blur);
    changes.Add("accentFromPicture",
                [](ScreenState& state) { state.layout.accentFromPicture = !state.layout.accentFromPicture; });
    changes.Number("highlight", &LayoutRecord::highlight);
    changes.Flags("shown", &LayoutRecord::shown);
    changes.Flags("selected", &LayoutRecord::selected);
    changes.Rects("tile", &LayoutRecord::tile);
    changes.Rects("textRect", &LayoutRecord::textRect);
    const int before = changes.all.size();
    changes.ForEachItem(
        "sample", [](ScreenState& state, size_t item) { state.layout.sample[item] += QLatin1Char('x'); });
    for (int k = before; k < changes.all.size(); ++k) {
        changes.all[k].decidesThePicture = false;  // the panel never shows them
    }
    changes.Text("picture", &LayoutRecord::picture);
    changes.Text("freeText", &LayoutRecord::freeText);
    changes.Text("defaultPicture", &LayoutRecord::defaultPicture);
    changes.Number("sizeIndex", &LayoutRecord::sizeIndex);
    changes.Number("colorIndex", &LayoutRecord::colorIndex);
    Q_UNUSED(xPt)
}

// The same for a state.
QVector<NamedChange> AllChanges(const ScreenState& state) {
    const auto& [custom, theme, style, variant, orientation, layout, slotItems, textRow, language, captions] =
        state;
    Q_UNUSED(custom)
    Changes changes;
    changes.Add("custom", [](ScreenState& changed) { changed.custom = !changed.custom; });
    changes.Add("theme", [](ScreenState& changed) { changed.theme = Theme::Time; });
    changes.Add("style", [](ScreenState& changed) { ++changed.style; });
    changes.Add("variant", [](ScreenState& changed) { ++changed.variant; });
    changes.Add("orientation", [](ScreenState& changed) { changed.orientation = Orientation::Portrait; });
    AddChangesOf(layout, changes);
    for (int slot = 0; slot < kSlotCount; ++slot) {
        changes.Add("slot " + QByteArray::number(slot),
                    [slot](ScreenState& changed) { ++changed.slotItems[size_t(slot)]; });
    }
    changes.Add("textRow", [](ScreenState& changed) { ++changed.textRow; });
    changes.Add("language", [](ScreenState& changed) { changed.language = InterfaceLanguage::Russian; });
    changes.ForEachItem(
        "caption", [](ScreenState& changed, size_t item) { changed.captions[item] += QLatin1Char('x'); });
    return changes.all;
}

ScreenState SomeState() {
    ScreenState state = ThemeScreen(Theme::Default, Orientation::Landscape);
    state.layout.freeText = QStringLiteral("a text");
    state.layout.picture = QStringLiteral("a picture");
    return state;
}

QByteArray IdOf(const ScreenState& state) {
    return MakePanelFrame(state, {NoisyCanvas(Orientation::Landscape)})->id;
}

}  // namespace

// A frame's id: equal ids put the same picture on a panel, other pictures have other ids.
class TestPanelFrame : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpDrawing(); }

    void HoldsWhatItWasMadeOf();
    void HasAnIdOfFortyDigits();
    void FieldsThatDecideAPictureAreInTheId_data();
    void FieldsThatDecideAPictureAreInTheId();
    void EveryPixelIsInTheId();
    void TheAccentIsInTheId();
    void WhatPadsARowIsNot();
    void EqualFramesHaveEqualIds();
    void EveryScreenHasAnIdOfItsOwn();
    void TextsThatMoveFromFieldToFieldAreToldApart();
};

void TestPanelFrame::HoldsWhatItWasMadeOf() {
    const ScreenState state = SomeState();
    const QImage background = NoisyCanvas(Orientation::Landscape);
    const SharedFrame frame = MakePanelFrame(state, {background});
    QVERIFY(frame->state == state);
    QVERIFY(ChangedRect(frame->background.image, background).isNull());
}

void TestPanelFrame::HasAnIdOfFortyDigits() {
    const QRegularExpression digits(QStringLiteral("\\A[0-9a-f]{40}\\z"));
    QVERIFY(digits.match(QString::fromLatin1(IdOf(SomeState()))).hasMatch());
}

void TestPanelFrame::FieldsThatDecideAPictureAreInTheId_data() {
    QTest::addColumn<ScreenState>("changed");
    QTest::addColumn<bool>("decidesThePicture");
    const QVector<NamedChange> changes = AllChanges(SomeState());
    for (const NamedChange& row : changes) {
        ScreenState changed = SomeState();
        row.change(changed);
        QTest::newRow(row.name) << changed << row.decidesThePicture;
    }
}

void TestPanelFrame::FieldsThatDecideAPictureAreInTheId() {
    QFETCH(ScreenState, changed);
    QFETCH(bool, decidesThePicture);
    QVERIFY(changed != SomeState());
    QCOMPARE(IdOf(changed) != IdOf(SomeState()), decidesThePicture);
}

void TestPanelFrame::EveryPixelIsInTheId() {
    for (const Orientation orientation : kOrientations) {
        ScreenState state = SomeState();
        state.orientation = orientation;
        const QImage background = NoisyCanvas(orientation);
        const QByteArray id = MakePanelFrame(state, {background})->id;
        const QPoint last(background.width() - 1, background.height() - 1);
        for (const QPoint pixel : {QPoint(0, 0), QPoint(last.x(), 0), QPoint(0, last.y()), last, last / 2}) {
            QImage changed = background;
            // The least change there is: one bit.
            reinterpret_cast<quint16*>(changed.scanLine(pixel.y()))[pixel.x()] ^= 1U;
            QVERIFY(MakePanelFrame(state, {changed})->id != id);
        }
    }
}

// The ticks have it, and no pixel of the background does.
void TestPanelFrame::TheAccentIsInTheId() {
    const QImage image = NoisyCanvas(Orientation::Landscape);
    const QByteArray own = MakePanelFrame(SomeState(), {image})->id;
    const QByteArray black = MakePanelFrame(SomeState(), {image, 0xFF000000})->id;
    const QByteArray blue = MakePanelFrame(SomeState(), {image, 0xFF0000FF})->id;
    QVERIFY(own != black && black != blue && own != blue);
    QCOMPARE(MakePanelFrame(SomeState(), {image, 0xFF0000FF})->id, blue);
}

void TestPanelFrame::WhatPadsARowIsNot() {
    // Three pixels a row: six bytes of eight.
    std::array<QByteArray, 2> ids;
    for (const int filling : {0, 255}) {
        QImage image(3, 4, QImage::Format_RGB16);
        QVERIFY(image.bytesPerLine() > 6);
        memset(image.bits(), filling, size_t(image.sizeInBytes()));
        for (int y = 0; y < image.height(); ++y) {
            memset(image.scanLine(y), 0x11, 6);
        }
        ids[filling == 0 ? 0 : 1] = MakePanelFrame(SomeState(), {image})->id;
    }
    QCOMPARE(ids[0], ids[1]);
}

void TestPanelFrame::EqualFramesHaveEqualIds() {
    // Another process's id: nothing in it hangs on addresses or on an order of its own.
    QCOMPARE(IdOf(SomeState()), IdOf(SomeState()));
    SkinCache skins;
    const ScreenState state = SomeState();
    const PanelBackground first = ComposeBackground(state, QImage(), skins);
    const PanelBackground second = ComposeBackground(state, QImage(), skins);
    QCOMPARE(MakePanelFrame(state, first)->id, MakePanelFrame(state, second)->id);
}

void TestPanelFrame::EveryScreenHasAnIdOfItsOwn() {
    QSet<QByteArray> ids;
    const QVector<NamedScreen> screens = AllScreens();
    for (const NamedScreen& screen : screens) {
        ids.insert(IdOf(screen.state));
    }
    QCOMPARE(ids.size(), screens.size());
}

void TestPanelFrame::TextsThatMoveFromFieldToFieldAreToldApart() {
    ScreenState one = SomeState();
    one.layout.freeText = QStringLiteral("ab");
    one.layout.defaultPicture = QStringLiteral("c");
    ScreenState other = one;
    other.layout.freeText = QStringLiteral("a");
    other.layout.defaultPicture = QStringLiteral("bc");
    QVERIFY(IdOf(one) != IdOf(other));
}

KIVO_TEST(TestPanelFrame)
#include "tst_panel_frame.moc"
