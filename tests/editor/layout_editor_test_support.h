#pragma once

// An editor without a window, and hands on its tools: positions are pixels of a preview that nobody shows.

#include <QFile>
#include <QSettings>

#include "compose/compose_test_support.h"
#include "config/folders.h"
#include "editor/drag_tool.h"
#include "editor/layout_editor.h"
#include "editor/screen_mapping.h"

namespace kivo::test {

inline void ForgetSettings() {
    QFile::remove(ConfigFilePath());
}

inline QVariant Stored(const QString& key) {
    return QSettings(ConfigFilePath(), QSettings::IniFormat).value(key);
}

// Five items (temperature, load, time, memory, power) on the custom page.
inline ThemeState CustomThemes(Orientation orientation = Orientation::Landscape, int variant = 0) {
    ThemeState themes = FactoryThemeState(InterfaceLanguage::Chinese);
    themes.mode = 1;
    themes.customStyle = variant;
    themes.orientation = orientation;
    return themes;
}

inline QSize EditorSize(Orientation orientation) {
    return orientation == Orientation::Landscape ? QSize(435, 312) : QSize(425, 322);
}

inline bool IsTrimmed(const LayoutRecord& layout) {
    return layout.xPt != 0 || layout.yPt != 0 || layout.xZoom != 0 || layout.yZoom != 0;
}

// The middle of a slot and of a text row, in widget pixels.
inline QPoint SlotPoint(int slot, Orientation orientation = Orientation::Landscape) {
    return MappingFor(orientation, EditorSize(orientation)).Mapped(SlotRect(slot, orientation)).center();
}
inline QPoint RowPoint(int row, Orientation orientation = Orientation::Landscape) {
    return MappingFor(orientation, EditorSize(orientation)).Mapped(TextRowRect(row, orientation)).center();
}

// Each call of a hand is what mouse and keys make of it in the window.
struct Hands {
    explicit Hands(const ThemeState& themes = CustomThemes(),
                   const SlotTable& slotTable = FactorySlotTable()) {
        SaveSlotTable(slotTable);
        editor.LoadSlots();
        editor.Show(themes);
        drag.SetWidgetSize(EditorSize(themes.orientation));
    }

    void Drag(QPoint from, QPoint to) {
        drag.Press(from);
        drag.Move((from + to) / 2);
        drag.Move(to);
        drag.Release(to);
    }
    void GiveText(const QString& text) {
        editor.BeginText();
        editor.EndText(text);
    }
    // From any row below it.
    void MoveUpTo(int row) {
        while (editor.TextRow() > row) {
            drag.Key(Qt::Key_PageUp);
        }
    }
    // Another page or layout comes into force.
    void Change(const std::function<void(ThemeState&)>& change) {
        ThemeState themes = editor.Edited().themes;
        change(themes);
        editor.Show(themes);
    }
    void ShowVariant(int variant) {
        Change([variant](ThemeState& themes) { themes.customStyle = variant; });
    }

    const LayoutRecord& Layout() const { return editor.Layout(); }
    const SlotRow& Row(int variant = 0) const { return editor.Edited().slotTable[size_t(variant)]; }

    LayoutEditor editor;
    DragTool drag{editor};
};

}  // namespace kivo::test
