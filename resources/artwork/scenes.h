#pragma once

#include <QImage>

// The eleven backgrounds, 1280 x 680. The subject lies in the middle third and the upper half: portrait shows
// only the middle 28 % of the width, the scene theme covers the lower part.

namespace kivo::artwork {

QImage DrawDawn();
QImage DrawAurora();
QImage DrawDunes();
QImage DrawShore();
QImage DrawHarbour();
QImage DrawPaperHills();
QImage DrawNebula();
QImage DrawMorningFirs();
QImage DrawSilk();
QImage DrawContours();
QImage DrawPlanet();

}  // namespace kivo::artwork
