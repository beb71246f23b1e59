#include "model/item_table.h"

#include <QCoreApplication>

namespace kivo {

namespace {

template <typename TextOf>
ItemTexts Column(const TextOf& textOf) {
    ItemTexts texts;
    for (const ItemFacts& facts : kItemTable) {
        texts[size_t(facts.item)] = textOf(facts);
    }
    return texts;
}

}  // namespace

QString TextIn(const LanguageText& text, InterfaceLanguage language) {
    const bool isOther = language == InterfaceLanguage::Russian && text.russian != nullptr;
    return QString::fromUtf8(isOther ? text.russian : text.usual);
}

ItemTexts SampleTexts(InterfaceLanguage language) {
    return Column([language](const ItemFacts& facts) { return TextIn(facts.sample, language); });
}

ItemTexts StartTexts(InterfaceLanguage language) {
    return Column([language](const ItemFacts& facts) { return TextIn(facts.startText, language); });
}

const ItemTexts& PlaceholderTexts() {
    static const ItemTexts texts =
        Column([](const ItemFacts& facts) { return QString::fromUtf8(facts.placeholder); });
    return texts;
}

ItemTexts ItemCaptions() {
    return Column(
        [](const ItemFacts& facts) { return QCoreApplication::translate(kCaptionContext, facts.caption); });
}

QString SampleOverride(int item, InterfaceLanguage language) {
    if (language != InterfaceLanguage::Russian || !IsItem(item)) {
        return QString();
    }
    return QString::fromUtf8(FactsOf(item).sample.russian);
}

}  // namespace kivo
