#include "window/outside_change.h"

namespace kivo {

std::optional<EditState> ChangedFromOutside(const EditState& saved, const OutsideCommands& commands,
                                            QString& trouble) {
    EditState next = saved;
    ThemeState& themes = next.themes;
    if (const std::optional<int> theme = WordOf(commands, OutsideKind::Theme)) {
        themes.mode = 0;
        themes.theme = *theme;
    }
    if (const std::optional<int> variant = WordOf(commands, OutsideKind::Layout)) {
        themes.mode = IsCustom(themes) ? themes.mode : 1;
        themes.customStyle = *variant;
    }
    if (const std::optional<int> orientation = WordOf(commands, OutsideKind::Orientation)) {
        themes.orientation = *orientation == 0 ? Orientation::Landscape : Orientation::Portrait;
    }
    LayoutRecord& layout = LayoutInForce(next);
    if (const std::optional<QString>& picture = ValueOf(commands, OutsideKind::Picture)) {
        SetPicture(layout, *picture);
    }
    if (const std::optional<QString>& text = ValueOf(commands, OutsideKind::Text)) {
        if (!IsCustom(themes)) {
            trouble = QStringLiteral("The screen shows a theme, which has no free text.");
            return std::nullopt;
        }
        SetFreeText(layout, VariantInForce(next), *text);
    }
    return next;
}

}  // namespace kivo
