// ZoomWidget for assistive programs: its items, and what a press on one of them does.

#include <QAccessible>
#include <QMetaMethod>

#include "editor/preview_accessibility.h"
#include "editor/text_box.h"
#include "editor/zoom_widget.h"

namespace kivo {

QVector<PreviewItem> ZoomWidget::Items() const {
    if (IsTrimming()) {
        return {};
    }
    QVector<PreviewItem> items =
        MakePreviewItems(Shown(), PreviewTexts(), size(), m_editing ? WithEmpty::Yes : WithEmpty::No);
    if (m_textEntryOpen && !items.isEmpty()) {
        items.removeLast();  // the box stands for it
    }
    for (PreviewItem& item : items) {
        if (item.kind == PreviewItem::Kind::Slot) {
            item.isPicked = m_editing && item.number == m_drag.PickedSlot();
            item.hasKeys = m_editing && hasFocus() && item.number == m_drag.KeySlot();
            const bool isFilled = m_editor.Slots()[size_t(item.number)] != kEmptySlot;
            item.canPress = m_editing && (isFilled || m_drag.PickedSlot() != kEmptySlot);
        } else {
            item.canPress = m_editing && item.kind == PreviewItem::Kind::FreeText;
        }
    }
    return items;
}

QWidget* ZoomWidget::OpenTextBox() const {
    return m_textEntryOpen ? m_editText : nullptr;
}

void ZoomWidget::StandOn(const PreviewItem& item) {
    if (item.kind == PreviewItem::Kind::Slot && m_editing) {
        solteditingFinished();
        m_drag.StandOn(item.number);
        setFocus(Qt::OtherFocusReason);
        m_focusByKeyboard = true;
        update();
        TellItems();
    }
}

void ZoomWidget::PressItem(const PreviewItem& item) {
    if (item.kind == PreviewItem::Kind::FreeText) {
        OpenTextEntry();
        return;
    }
    StandOn(item);
    HandleLayoutKey(Qt::Key_Space);
}

void ZoomWidget::TellItems() {
    if (!QAccessible::isActive() && !isSignalConnected(QMetaMethod::fromSignal(&ZoomWidget::itemTold))) {
        return;
    }
    const QVector<PreviewItem> now = Items();
    const QVector<PreviewChange> changes = ChangesBetween(m_toldItems, now);
    m_toldItems = now;
    for (const PreviewChange& change : changes) {
        TellPreviewChange(*this, change);
        Q_EMIT itemTold(change);
    }
}

}  // namespace kivo
