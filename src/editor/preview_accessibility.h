#pragma once

// The preview as assistive programs have it: what stands on the screen are its children, each with a name, a
// place, a state and, while the layout is edited, a press. GUI thread.

#include "editor/preview_items.h"

namespace kivo {

class ZoomWidget;

// Has Qt ask for this interface. More often does no harm.
void InstallPreviewAccessibility();

void TellPreviewChange(ZoomWidget& preview, const PreviewChange& change);

}  // namespace kivo
