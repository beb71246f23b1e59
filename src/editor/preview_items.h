#pragma once

// What can be told apart in the preview, in words and places: for whoever cannot see it. Pure.

#include <QRect>
#include <QSize>
#include <QString>
#include <QVector>

#include "compose/screen_state.h"

namespace kivo {

struct PreviewItem {
    enum class Kind {
        Slot,     // of the five-item layout; its number is the slot
        Value,    // what stands still; its number is the item
        FreeText  // of a custom layout
    };
    Kind kind = Kind::Value;
    int number = 0;
    QString name;   // caption and value, in the interface language
    QString place;  // in words; empty for a value
    QRect rect;     // widget pixels

    // What the editor knows of it.
    bool canPress = false;
    bool isPicked = false;
    bool hasKeys = false;  // the keys go to it

    // Tells it from all others, for as long as the preview lives.
    int Key() const { return int(kind) * 100 + number; }
};

// In reading order. Empty slots and an empty free text are there to be filled, so they are left out unless
// the layout is edited. texts are what the values show.
enum class WithEmpty { No, Yes };
QVector<PreviewItem> MakePreviewItems(const ScreenState& state, const ItemTexts& texts, QSize widget,
                                      WithEmpty withEmpty);

// What is worth telling of an item, and what it is now.
struct PreviewChange {
    enum class What { Name, Place, PickedUp, PutDown, GotKeys };
    What what = What::Name;
    PreviewItem item;
};
QVector<PreviewChange> ChangesBetween(const QVector<PreviewItem>& before, const QVector<PreviewItem>& now);

}  // namespace kivo
