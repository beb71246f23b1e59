#include "resources/resources.h"

#include <QtGlobal>

// The macro declares a function of the global namespace, so it cannot stand inside ours.
static void InitBackground() {
    Q_INIT_RESOURCE(background);
}

namespace kivo {

void InitResources() {
    InitBackground();
}

}  // namespace kivo
