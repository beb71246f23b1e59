#include "window/custom_page.h"

#include <algorithm>

#include "compose/theme_state.h"
#include "editor/edit_bar.h"
#include "editor/zoom_widget.h"
#include "ui_main_window.h"
#include "window/edit_hint.h"

namespace kivo {

QCheckBox* TickBoxOf(const ::Ui::MainWindow& ui, int item) {
    return ui.centralwidget->findChild<QCheckBox*>(QStringLiteral("check%1").arg(item + 1));
}

CustomPage::CustomPage(::Ui::MainWindow& ui, EditBar& editBar, QObject* parent)
    : QObject(parent), m_ui(ui), m_editBar(editBar) {
    const ItemTexts names = ItemCaptions();
    for (int kind = 0; kind < kLiveValueCount; ++kind) {
        QCheckBox* const box = TickBoxOf(ui, kind);
        m_boxes[size_t(kind)] = box;
        if (HasLiveValue(kind)) {
            box->setText(names[size_t(kind)]);
        }
        connect(box, &QCheckBox::clicked, this, &CustomPage::checkbox_clicked);
        m_usualTips.append(box->toolTip());
    }
}

void CustomPage::SetVisible(bool visible) {
    for (QCheckBox* box : m_boxes) {
        // Deliberate, fixed: those of the free texts have no size.
        box->setVisible(visible && !box->size().isEmpty());
    }
}

void CustomPage::Show() {
    const ScreenState state = m_ui.zoomwidget->Shown();
    for (int kind = 0; kind < kLiveValueCount; ++kind) {
        // Of the one-item layout the slot tells: a flag may outlive the choice.
        const bool ticked = state.variant == 1 && HasLiveValue(kind) ? state.slotItems[kCentreSlot] == kind
                                                                     : IsShown(state, kind);
        m_boxes[size_t(kind)]->setChecked(ticked);
        TellWhyNot(kind, ticked);
    }
}

// Before somebody tries, and for whoever cannot see the line that says it then.
void CustomPage::TellWhyNot(int kind, bool ticked) {
    const LayoutEditor& editor = m_ui.zoomwidget->Layouts();
    const bool hasNoSlot =
        editor.HasSlots() && (ticked ? editor.IsLeftOut(kind) : !editor.WouldBeShown(kind));
    const QString usual = m_usualTips[kind];
    m_boxes[size_t(kind)]->setToolTip(hasNoSlot ? usual + QLatin1Char('\n') + NothingIsFreeText() : usual);
}

void CustomPage::checkbox_clicked() {
    const auto box = std::find(m_boxes.begin(), m_boxes.end(), sender());
    if (box == m_boxes.end()) {
        return;
    }
    const int kind = int(box - m_boxes.begin());
    if (m_ui.zoomwidget->Shown().variant == 1) {
        HandleOneItem(kind, (*box)->isChecked());
    } else {
        HandleFiveItems(kind, (*box)->isChecked());
    }
}

void CustomPage::HandleOneItem(int kind, bool on) {
    ZoomWidget* editor = m_ui.zoomwidget;
    // Its own box leaves a free text that is being typed alone; every other one ends it.
    const bool isText = kind == int(OtherText);
    if (on != isText) {
        editor->solteditingFinished();
    }
    if (on || isText) {
        m_editBar.HideColourChoices();
    }
    editor->SetItemEnabled(kind, on);
    Show();
    m_editBar.SetEditPressed(false);
}

void CustomPage::HandleFiveItems(int kind, bool on) {
    ZoomWidget* editor = m_ui.zoomwidget;
    if (on && !editor->Layouts().MayTick(kind)) {
        Show();
        Q_EMIT nothingFree();
        return;
    }
    editor->SetItemEnabled(kind, on);
    if (on && editor->Layouts().IsLeftOut(kind)) {
        Q_EMIT nothingFree();
    }
    if (!on && kind == int(OtherText)) {
        m_editBar.HideColourChoices();
    }
    editor->solteditingFinished();
    Show();
    m_editBar.SetEditPressed(false);
}

}  // namespace kivo
