#pragma once

// What the tests of typing the free text and of dragging it share.

#include "compose/free_text.h"
#include "layout_editor_test_support.h"

namespace kivo::test {

inline constexpr auto kLying = Orientation::Landscape;
inline constexpr auto kStanding = Orientation::Portrait;

inline QString Words() {
    return QStringLiteral("Hello");
}

// Where the free text is drawn, or would be in that row; widget pixels.
template <typename Editor>
QRect DrawnIn(const Editor& editor, int row) {
    ScreenState state = editor.Shown();
    state.textRow = row;
    return MappingFor(state.orientation, editor.size()).Mapped(LayOutFreeText(state).bounds);
}
template <typename Editor>
QPoint DrawnText(const Editor& editor) {
    return DrawnIn(editor, editor.Edited().textRow).center();
}

inline QString ThreeLines() {
    return QStringLiteral("one\ntwo and more\nthree");
}

inline void AddRowsAndTexts() {
    QTest::addColumn<Orientation>("orientation");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("text");
    for (const Orientation orientation : kOrientations) {
        for (int row = 0; row < kTextRowCount; ++row) {
            const QByteArray name = NameOf(orientation) + ", row " + QByteArray::number(row);
            QTest::newRow(name) << orientation << row << Words();
            QTest::newRow(name + ", three lines") << orientation << row << ThreeLines();
        }
    }
}

inline SlotTable Nothing() {
    return EmptySlotTable();
}

}  // namespace kivo::test
