#include "editor/preview_items.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>

#include "compose/panel_layout.h"
#include "editor/screen_mapping.h"

namespace kivo {

namespace {

constexpr std::array<const char*, kSlotCount> kSlotPlaces{
    QT_TRANSLATE_NOOP("PreviewItem", "左上"), QT_TRANSLATE_NOOP("PreviewItem", "左下"),
    QT_TRANSLATE_NOOP("PreviewItem", "中央"), QT_TRANSLATE_NOOP("PreviewItem", "右下"),
    QT_TRANSLATE_NOOP("PreviewItem", "右上")};
constexpr std::array<const char*, kTextRowCount> kRowPlaces{QT_TRANSLATE_NOOP("PreviewItem", "上行"),
                                                            QT_TRANSLATE_NOOP("PreviewItem", "中行"),
                                                            QT_TRANSLATE_NOOP("PreviewItem", "下行")};

QString Words(const char* source) {
    return QCoreApplication::translate("PreviewItem", source);
}

QString NameOf(const QString& caption, const QString& value) {
    return value.isEmpty() ? caption : caption + QLatin1Char(' ') + value;
}

// The runs of values alone.
QVector<TextRun> ValuesOf(const PanelTexts& texts) {
    QVector<TextRun> values;
    for (const TextRun& run : texts.runs) {
        if (run.role == TextRole::Value) {
            values.append(run);
        }
    }
    return values;
}

QVector<PreviewItem> SlotItems(const ScreenState& state, const PanelTexts& texts, const ScreenMapping& map,
                               WithEmpty withEmpty) {
    const QVector<TextRun> values = ValuesOf(texts);
    QVector<PreviewItem> items;
    for (int slot = 0; slot < kSlotCount; ++slot) {
        QStringList names;
        for (const TextRun& run : values) {
            if (SlotOf(state, run.item) == slot) {
                names.append(NameOf(state.captions[size_t(run.item)], run.text));
            }
        }
        if (names.isEmpty() && withEmpty == WithEmpty::No) {
            continue;
        }
        PreviewItem item;
        item.kind = PreviewItem::Kind::Slot;
        item.number = slot;
        item.name = names.isEmpty() ? Words(QT_TRANSLATE_NOOP("PreviewItem", "空位"))
                                    : names.join(QStringLiteral(", "));
        item.place = Words(kSlotPlaces[size_t(slot)]);
        item.rect = map.Mapped(SlotRoom(texts, state, slot));
        items.append(item);
    }
    return items;
}

QVector<PreviewItem> ValueItems(const ScreenState& state, const QVector<TextRun>& values,
                                const ScreenMapping& map) {
    QVector<PreviewItem> items;
    for (const TextRun& run : values) {
        PreviewItem item;
        item.number = run.item;
        item.name = NameOf(state.captions[size_t(run.item)], run.text);
        item.rect = map.Mapped(run.rect);
        items.append(item);
    }
    return items;
}

PreviewItem FreeTextItem(const ScreenState& state, const FreeTextBlock& block, const ScreenMapping& map) {
    PreviewItem item;
    item.kind = PreviewItem::Kind::FreeText;
    const QString text = state.layout.freeText.simplified();
    item.name = NameOf(QCoreApplication::translate("ZoomWidget", "自由文字"),
                       text.isEmpty() ? QCoreApplication::translate("ZoomWidget", "双击进行输入") : text);
    item.place = Words(kRowPlaces[size_t(state.textRow)]);
    item.rect =
        map.Mapped(block.lines.isEmpty() ? TextRowRect(state.textRow, state.orientation) : block.bounds);
    return item;
}

}  // namespace

QVector<PreviewItem> MakePreviewItems(const ScreenState& state, const ItemTexts& texts, QSize widget,
                                      WithEmpty withEmpty) {
    const ScreenMapping map = MappingFor(state.orientation, widget);
    const PanelTexts laidOut = LayOutPanelTexts(state, texts);
    const bool hasSlots = state.custom && state.variant == 0;
    QVector<PreviewItem> items =
        hasSlots ? SlotItems(state, laidOut, map, withEmpty) : ValueItems(state, ValuesOf(laidOut), map);
    if (state.custom && (withEmpty == WithEmpty::Yes || !laidOut.freeText.lines.isEmpty())) {
        items.append(FreeTextItem(state, laidOut.freeText, map));
    }
    return items;
}

QVector<PreviewChange> ChangesBetween(const QVector<PreviewItem>& before, const QVector<PreviewItem>& now) {
    using What = PreviewChange::What;
    QVector<PreviewChange> changes;
    for (const PreviewItem& item : now) {
        const auto former = std::find_if(before.begin(), before.end(), [&item](const PreviewItem& other) {
            return other.Key() == item.Key();
        });
        // A new one has no former name.
        const bool isNew = former == before.end();
        const PreviewItem was = isNew ? PreviewItem() : *former;
        if (!isNew && item.name != was.name) {
            changes.append({What::Name, item});
        }
        if (!isNew && item.place != was.place) {
            changes.append({What::Place, item});
        }
        if (item.isPicked != was.isPicked) {
            changes.append({item.isPicked ? What::PickedUp : What::PutDown, item});
        }
        if (item.hasKeys && !was.hasKeys) {
            changes.append({What::GotKeys, item});
        }
    }
    return changes;
}

}  // namespace kivo
