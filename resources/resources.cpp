#include "resources/resources.h"

#include <QtGlobal>

// The macro declares a function of the global namespace, so it cannot stand inside ours.
static void InitAll() {
    Q_INIT_RESOURCE(background);
    Q_INIT_RESOURCE(skins);
}

namespace kivo {

void InitResources() {
    InitAll();
}

}  // namespace kivo
