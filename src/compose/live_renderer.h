#pragma once

// A live update: which rectangles of the panel change when one item gets a new text, and their pixels. Pure;
// the refresh thread calls it.

#include <QByteArray>
#include <QRect>
#include <QString>
#include <QVector>

#include "compose/item_drawing.h"
#include "compose/panel_background.h"
#include "compose/screen_state.h"

namespace kivo {

// A rectangle of the canvas with its pixels in wire order.
struct Cut {
    QRect canvasRect;
    QByteArray pixels;
};

// The layout's part of whether an item's update is sent (IsTextOwed has the record's): the layout has to show
// it, and its text to have changed. An unchanged time goes out always, an unchanged date unless it stands in
// the centre slot; of the other slots every text, which the record stops where it is unchanged.
bool IsUpdateSent(const ScreenState& state, int item, bool changed);

// The rectangles an update of the item sends, in canvas pixels, each small enough for one report. runs is the
// layout with the new texts. A time that was there before moves only its digits; one that was never drawn
// (firstTime) needs its whole rectangle. None where the item has no place.
QVector<QRect> SendRects(const ScreenState& state, const QVector<TextRun>& runs, int item, bool firstTime);

struct LiveUpdate {
    QVector<Cut> cuts;
    quint32 drawnItems = 0;  // bit n: the text of item n is on the cuts
};

// Draws the item's part of the panel over background and cuts it out.
// texts are the texts of all items, the item's new one among them; firstTime: it is not known what the panel
// shows of the item, so all of its room is cut. No cuts for an item that has no place. Equal arguments give
// equal cuts, whatever the texts of items that are not drawn on them.
LiveUpdate RenderItem(const ScreenState& state, const PanelBackground& background, const ItemTexts& texts,
                      int item, bool firstTime);

}  // namespace kivo
