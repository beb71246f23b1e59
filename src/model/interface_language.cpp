#include "model/interface_language.h"

#include <atomic>

namespace kivo {
namespace {

std::atomic<InterfaceLanguage> currentLanguage{InterfaceLanguage::Chinese};

}  // namespace

InterfaceLanguage LanguageForLocale(const QLocale& locale) {
    switch (locale.language()) {
        case QLocale::Chinese:
            return InterfaceLanguage::Chinese;
        case QLocale::Russian:
            return InterfaceLanguage::Russian;
        default:
            return InterfaceLanguage::English;
    }
}

void SetInterfaceLanguage(InterfaceLanguage language) {
    currentLanguage.store(language, std::memory_order_relaxed);
}

InterfaceLanguage CurrentInterfaceLanguage() {
    return currentLanguage.load(std::memory_order_relaxed);
}

}  // namespace kivo
