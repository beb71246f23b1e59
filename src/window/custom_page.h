#pragma once

// The page of the custom layouts: a check box an item over the two variants. What is ticked is
// kept by the editor alone; the boxes only show it. GUI thread.

#include <QCheckBox>
#include <QObject>
#include <QStringList>
#include <array>

#include "model/item_table.h"

namespace Ui {
class MainWindow;
}

namespace kivo {

class EditBar;

// The tick box of an item, which the window owns.
QCheckBox* TickBoxOf(const ::Ui::MainWindow& ui, int item);

class CustomPage : public QObject {
    Q_OBJECT

public:
    // ui and editBar outlive the page.
    CustomPage(::Ui::MainWindow& ui, EditBar& editBar, QObject* parent = nullptr);

    // Shows or hides what belongs to this page alone.
    void SetVisible(bool visible);

    // Makes the boxes follow the editor.
    void Show();

Q_SIGNALS:
    // A box was ticked and its item has no slot: either the limit refused it, or it is ticked and not shown.
    void nothingFree();

public Q_SLOTS:
    // A box was ticked or unticked by hand.
    void checkbox_clicked();

private:
    void TellWhyNot(int kind, bool ticked);
    void HandleOneItem(int kind, bool on);
    void HandleFiveItems(int kind, bool on);

    ::Ui::MainWindow& m_ui;
    EditBar& m_editBar;
    std::array<QCheckBox*, kLiveValueCount> m_boxes{};  // by item, named "check1" and on
    QStringList m_usualTips;                            // of the boxes
};

}  // namespace kivo
