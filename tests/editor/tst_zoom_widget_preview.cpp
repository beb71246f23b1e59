#include "compose/frame_composer.h"
#include "editor_test_support.h"
#include "pictures/picture_reader.h"
#include "pictures/picture_work.h"
#include "support/test_program.h"
#include "widgets/window_colors.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;

struct NamedThemes {
    QByteArray name;
    ThemeState themes;
    SlotTable slotTable = FactorySlotTable();
};

// Every theme, both custom layouts and the slot that time and date share.
QVector<NamedThemes> AllPages() {
    QVector<NamedThemes> pages;
    for (const InterfaceLanguage language : kLanguages) {
        for (const Orientation orientation : kOrientations) {
            const QByteArray end = ", " + NameOf(orientation) + ", " + NameOf(language);
            ThemeState themes = FactoryThemeState(language);
            themes.orientation = orientation;
            for (const Theme theme : kThemes) {
                themes.theme = int(theme);
                pages.append({NameOf(theme) + end, themes});
            }
            themes.mode = 1;
            pages.append({"five items" + end, themes});
            ThemeState text = themes;
            text.layouts[size_t(CustomLayoutIndex(0))].freeText =
                QStringLiteral("A free text of several words");
            pages.append({"five items and a text" + end, text});
            ThemeState single = themes;
            single.customStyle = 1;
            pages.append({"one item" + end, single});
            NamedThemes shared{"time and date in one slot" + end, themes};
            shared.themes.layouts[size_t(CustomLayoutIndex(0))].shown[Date] = true;
            pages.append(shared);
        }
    }
    return pages;
}

}  // namespace

Q_DECLARE_METATYPE(kivo::ThemeState)
Q_DECLARE_METATYPE(kivo::SlotTable)

class TestZoomWidgetPreview : public QObject {
    Q_OBJECT

private:
    static void AddPages() {
        QTest::addColumn<ThemeState>("themes");
        QTest::addColumn<SlotTable>("slotTable");
        QTest::addColumn<int>("language");
        const QVector<NamedThemes> pages = AllPages();
        for (int k = 0; k < pages.size(); ++k) {
            QTest::newRow(pages[k].name)
                << pages[k].themes << pages[k].slotTable << k / (pages.size() / int(kLanguages.size()));
        }
    }

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }
    void cleanup() { SetInterfaceLanguage(InterfaceLanguage::Chinese); }

    // The same state composed both ways: the preview and the frame for the panel.
    void TextsStandWhereThePanelHasThem_data() { AddPages(); }
    void TextsStandWhereThePanelHasThem() {
        QFETCH(ThemeState, themes);
        QFETCH(SlotTable, slotTable);
        QFETCH(int, language);
        SetInterfaceLanguage(InterfaceLanguage(language));
        Editor editor(themes, slotTable);
        editor.SetEditing(false);
        const ScreenState state = editor.Shown();
        const QImage background = BlackCanvas(state.orientation);
        const ScreenMapping map = MappingFor(state.orientation, editor.size());

        ItemTexts texts = LiveTexts(state.language)[1];
        editor.SetLiveTexts(texts);
        const QImage preview = editor.grab().toImage();
        const QImage frame = ComposeFrame(state, {background}, texts);
        int compared = 0;
        for (int item = 0; item < kLiveValueCount; ++item) {
            if (texts[size_t(item)].isEmpty() || !HasPlace(state, item)) {
                continue;
            }
            // What another text of the item changes is where the item stands.
            ItemTexts other = texts;
            other[size_t(item)] = LiveTexts(state.language)[3][size_t(item)];
            editor.SetLiveTexts(other);
            const QRect inPreview = DifferentRect(preview, editor.grab().toImage());
            const QRect inFrame = ChangedRect(frame, ComposeFrame(state, {background}, other));
            editor.SetLiveTexts(texts);
            QVERIFY2(!inPreview.isNull() && !inFrame.isNull(), QByteArray::number(item).constData());
            const QRectF expected(map.Mapped(QPointF(inFrame.topLeft())), QSizeF(inFrame.size()) * map.scale);
            // A pixel of the panel, and one of the window for its soft edge.
            const double tolerance = map.scale + 1;
            QVERIFY2(qAbs(inPreview.left() - expected.left()) <= tolerance &&
                         qAbs(inPreview.top() - expected.top()) <= tolerance &&
                         qAbs(inPreview.right() + 1 - expected.right()) <= tolerance &&
                         qAbs(inPreview.bottom() + 1 - expected.bottom()) <= tolerance,
                     ("item " + QByteArray::number(item) + ": " + Describe(inPreview) + ", expected " +
                      Describe(expected.toRect()))
                         .constData());
            ++compared;
        }
        QVERIFY(compared > 0);
    }

    // All of the preview, reduced to the panel's pixels, is the panel's frame.
    void ThePreviewIsThePanelsFrame_data() { AddPages(); }
    void ThePreviewIsThePanelsFrame() {
        QFETCH(ThemeState, themes);
        QFETCH(SlotTable, slotTable);
        QFETCH(int, language);
        SetInterfaceLanguage(InterfaceLanguage(language));
        Editor editor(themes, slotTable);
        editor.SetEditing(false);
        const ItemTexts texts = LiveTexts(InterfaceLanguage(language))[2];
        editor.SetLiveTexts(texts);
        const ScreenState state = editor.Shown();
        SkinCache skins;
        const QImage frame =
            ComposeFrame(state, ComposeBackground(state, LoadPicture(PicturePath(state)), skins), texts)
                .convertToFormat(QImage::Format_RGB32);
        const ScreenMapping map = MappingFor(state.orientation, editor.size());
        const QSize canvas = CanvasSize(state.orientation);
        const QRect screen(QPoint(map.left, map.top), (QSizeF(canvas) * map.scale).toSize());
        const QImage reduced = editor.grab().toImage().copy(screen).scaled(canvas, Qt::IgnoreAspectRatio,
                                                                           Qt::SmoothTransformation);
        // The edges of letters that are drawn at another size differ; seen from a little further away,
        // nothing may.
        const QSize coarse(canvas.width() / 10, canvas.height() / 10);
        const auto blurred = [&coarse](const QImage& image) {
            return image.scaled(coarse, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        };
        const QImage fromPanel = blurred(frame);
        const QImage fromPreview = blurred(reduced);
        for (int y = 1; y < coarse.height() - 1; ++y) {  // without the round corners
            for (int x = 1; x < coarse.width() - 1; ++x) {
                const int difference = qAbs(qGray(fromPanel.pixel(x, y)) - qGray(fromPreview.pixel(x, y)));
                QVERIFY2(difference <= 20, (QByteArray::number(difference) + " about " +
                                            QByteArray::number(x * 10) + "," + QByteArray::number(y * 10))
                                               .constData());
            }
        }
    }

    void UntilALiveValueArrivesTheSampleIsShown() {
        Editor editor;
        const QImage samples = editor.grab().toImage();
        ItemTexts texts;
        editor.SetLiveTexts(texts);
        QCOMPARE(editor.grab().toImage(), samples);
        texts[CpuPower] = QStringLiteral("99w");
        editor.SetLiveTexts(texts);
        const QRect changed = DifferentRect(samples, editor.grab().toImage());
        const QRect slot = MappingFor(kLying, editor.size()).Mapped(SlotRect(4, kLying));
        QVERIFY(!changed.isNull() && slot.contains(changed));
        // An empty one does not take it away again.
        const QImage live = editor.grab().toImage();
        texts[CpuPower].clear();
        editor.SetLiveTexts(texts);
        QCOMPARE(editor.grab().toImage(), live);
    }

    void TheScreenStandsInItsWell_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QRect>("screen");
        QTest::newRow("landscape") << kLying << QRect(1, 41, 432, 230);
        QTest::newRow("portrait") << kStanding << QRect(127, 1, 170, 320);
    }
    void TheScreenStandsInItsWell() {
        QFETCH(Orientation, orientation);
        QFETCH(QRect, screen);
        ThemeState themes = CustomThemes(orientation);
        Editor editor(themes);
        editor.SetEditing(false);
        QVERIFY(editor.SetBackground(QStringLiteral("://background/4.jpg")));
        const QImage bright = editor.grab().toImage();
        QVERIFY(editor.SetBackground(QStringLiteral("://background/11.jpg")));
        const QRect changed = DifferentRect(bright, editor.grab().toImage(), 4);
        QVERIFY2(screen.contains(changed) && changed.contains(screen.adjusted(3, 3, -3, -3)),
                 Describe(changed).constData());
        const QPoint inWell = orientation == kLying ? QPoint(200, 20) : QPoint(50, 160);
        QCOMPARE(QColor(bright.pixel(inWell)), window_colors::kWell);
    }

    void OnScaledScreensItIsComposedAtTheirPixels() {
        PictureSource pictures({ReadPicture, {}});
        PreviewBackground background;
        background.SetSource(pictures);
        const ScreenState state = ThemeScreen(Theme::Time, kLying);
        QCOMPARE(background.Composed(state, QSize(864, 459)).image.size(), QSize(864, 459));
        QCOMPARE(background.Composed(state, QSize(432, 230)).image.size(), QSize(432, 230));
        QCOMPARE(background.CompositionCount(), 2);
        QTRY_VERIFY(!pictures.IsBusy());
        QCOMPARE(pictures.ReadCount(), 1);
    }

    void FetchedItIsComposedTheSame() {
        PictureSource pictures({ReadPicture, {}});
        const QSize size(432, 230);
        ScreenState accented = ThemeScreen(Theme::Default, kLying);
        accented.layout.accentFromPicture = true;
        const QVector<ScreenState> states{ThemeScreen(Theme::Time, kLying),
                                          ThemeScreen(Theme::Default, kLying), accented,
                                          CustomScreen({0, 1, 2, 3, 4}, kLying)};
        for (const ScreenState& fetched : states) {
            for (const ScreenState& state : states) {
                PreviewBackground background;
                background.SetSource(pictures);
                background.Fetch(fetched, size);
                static_cast<void>(background.Composed(state, size));
                QTRY_VERIFY(!pictures.IsBusy());
                PreviewBackground straight;
                straight.SetSource(pictures);
                QTRY_VERIFY(!straight.PictureSize(state).isEmpty());
                QCOMPARE(background.Composed(state, size).image, straight.Composed(state, size).image);
            }
        }
    }

    // Neither before the first picture, nor where there is no source at all.
    void UntilAPictureIsThereTheGroundIsNotBlack() {
        PreviewBackground background;
        const QImage ground = background.Composed(ThemeScreen(Theme::Time, kLying), QSize(320, 170)).image;
        QVERIFY(qGray(ground.pixel(160, 85)) > 8);
        QVERIFY(background.PictureSize(ThemeScreen(Theme::Time, kLying)).isEmpty());
    }

    void WhileAPictureIsReadTheFormerOneStands() {
        std::atomic<bool> isHeld{false};
        PictureSource pictures({[&isHeld](const QString& path, const Picture*, const PictureWork& work) {
                                    while (isHeld && !work.IsStopped()) {
                                        QThread::msleep(1);
                                    }
                                    QImage image(320, 170, QImage::Format_RGB32);
                                    image.fill(path == QStringLiteral("red") ? Qt::red : Qt::blue);
                                    return Picture{image};
                                },
                                {}});
        PreviewBackground background;
        background.SetSource(pictures);
        ScreenState state = ThemeScreen(Theme::Scene, kLying);
        state.layout.picture = QStringLiteral("red");
        const auto color = [&] {
            return background.Composed(state, QSize(320, 170)).image.pixelColor(160, 100);
        };
        QTRY_VERIFY(color().red() > color().blue());
        isHeld = true;
        state.layout.picture = QStringLiteral("blue");
        QVERIFY(color().red() > color().blue());
        isHeld = false;
        QTRY_VERIFY(color().blue() > color().red());
    }

    void AfterItHasLetGoWhatWasComposedStandsUntilThePictureIsBack() {
        std::atomic<bool> isHeld{false};
        PictureSource pictures(
            {[&isHeld](const QString& path, const Picture* former, const PictureWork& work) {
                 while (isHeld && !work.IsStopped()) {
                     QThread::msleep(1);
                 }
                 return ReadPicture(path, former, work);
             },
             {}});
        PreviewBackground background;
        background.SetSource(pictures);
        const ScreenState state = ThemeScreen(Theme::Time, kLying);
        const QSize size(432, 230);
        const auto image = [&] { return background.Composed(state, size).image; };
        static_cast<void>(image());
        QTRY_VERIFY(!pictures.IsBusy());
        const QImage before = image();
        const QSize pictureSize = background.PictureSize(state);
        QVERIFY(background.HeldBytes() > before.sizeInBytes());

        isHeld = true;
        background.LetGo();
        pictures.LetGoOfImages();
        QCOMPARE(background.HeldBytes(), 0);
        QCOMPARE(image().cacheKey(), before.cacheKey());
        QCOMPARE(background.PictureSize(state), pictureSize);
        // Another theme is not composed over a plain ground meanwhile.
        QCOMPARE(background.Composed(ThemeScreen(Theme::Default, kLying), size).image.cacheKey(),
                 before.cacheKey());
        background.LetGo();
        QCOMPARE(image().cacheKey(), before.cacheKey());

        isHeld = false;
        QTRY_VERIFY(!pictures.IsBusy());
        QVERIFY(image().cacheKey() != before.cacheKey());
        QCOMPARE(image(), before);
    }

    void APictureThatIsGoneIsNeverBlack() {
        const LogLines quiet;
        ThemeState themes = CustomThemes();
        LayoutRecord& layout = themes.layouts[size_t(CustomLayoutIndex(0))];
        layout.picture = QStringLiteral("/nowhere.png");
        layout.xZoom = 100;
        Editor gone(themes);
        layout.picture.clear();
        layout.xZoom = 0;
        Editor whole(themes);
        QCOMPARE(gone.grab().toImage(), whole.grab().toImage());
        QCOMPARE(gone.Layout().picture, QStringLiteral("/nowhere.png"));
    }

    void SlotsAreOutlinedWhileEditingOnly() {
        Editor editor;
        const QImage editing = editor.grab().toImage();
        editor.SetEditing(false);
        const QImage plain = editor.grab().toImage();
        const QRect outlines = DifferentRect(editing, plain, 10);
        const ScreenMapping map = MappingFor(kLying, editor.size());
        for (int slot = 0; slot < kSlotCount; ++slot) {
            QVERIFY(outlines.contains(map.Mapped(SlotRect(slot, kLying))));
        }
    }

    // A theme offers nothing to drag.
    void AThemeHasNoOutlines() {
        ThemeState themes = CustomThemes();
        themes.mode = 0;
        Editor editor(themes);
        const QImage editing = editor.grab().toImage();
        editor.SetEditing(false);
        QVERIFY(DifferentRect(editing, editor.grab().toImage(), 4).isNull());
    }

    void TrimModeDarkensWhatIsLeftOut() {
        Editor editor;
        QVERIFY(editor.SetBackground(QStringLiteral("://background/4.jpg")));
        editor.SetTrimMode(1);
        const QPoint nearCorner(30, 255);  // bright sand
        const int whole = qGray(editor.grab().toImage().pixel(nearCorner));
        editor.Wheel(120 * 10, QPoint(217, 155));
        const int leftOut = qGray(editor.grab().toImage().pixel(nearCorner));
        QVERIFY(whole > 150);
        QVERIFY(leftOut < whole * 0.6);
    }

    void AVerySmallEditorDoesNoHarm() {
        Editor editor;
        for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(20, 500), QSize(2000, 5)}) {
            editor.resize(size);
            editor.SetTrimMode(0);
            editor.grab();
            editor.SetTrimMode(1);
            editor.grab();
            editor.Wheel(120, QPoint(0, 0));
            editor.Drag(QPoint(0, 0), QPoint(3, 3));
        }
    }
};

KIVO_TEST(TestZoomWidgetPreview)
#include "tst_zoom_widget_preview.moc"
