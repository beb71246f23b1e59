#pragma once

// The tool bar of the free text and of trimming: size chooser, colour indicator, trim, back, redo. It only
// tells what was chosen. GUI thread.

#include <QWidget>
#include <array>

#include "compose/custom_layout.h"
#include "widgets/sharp_picture.h"

namespace kivo {

class NimbPushButton;
class PressCombobox;
class PressLabel;

class EditBar : public QWidget {
    Q_OBJECT

public:
    explicit EditBar(QWidget* parent = nullptr);

    // On: shows the trim button pressed, without a signal. Off: releases it and emits SendEdit(0).
    void SetEditPressed(bool on);
    bool IsEditPressed() const;

    // Whether there is something to undo and to redo.
    void SetWays(bool undo, bool redo);

    // Takes away the colour buttons of its own. The argument changes nothing.
    void HideColourChoices(int which = 0);

    void SetSizeEnabled(bool on);

    // The step 0..2. Tells SendFontSize when that is a change.
    void SetFontSizeIndex(int index);
    // Off, the trim button is also let go.
    void SetTrimEnabled(bool on);

    // Whether the strip of the colours is open, which the indicator opens: for assistive programs.
    void TellColorsShown(bool shown);

    // The indicator's colour index.
    int IndicatorColor() const { return m_color; }

Q_SIGNALS:
    void SendFontSize(quint8 size);
    void SendFontColor(quint8 color);
    void SendEdit(quint8 iEdit);
    void SendImageReset();
    void SendRedo();
    void ShowColorbarSignal(quint8 iShow);
    void SizeClicked();

public Q_SLOTS:
    // Shows a size that the program has chosen, without telling it back.
    void slotSetFontSize(int iIndex);
    // Shows a colour index 0..5; others are ignored.
    void ControlLabelColor(quint8 iColor);
    void slotFontsizeCurIndex(int iIndex);
    // Of the trim, back and colour buttons, of the indicator, of the chooser: each of its sender.
    void btn_clicked();
    void label_clicked();
    void combo_clicked();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    // Empty, so that a press beside the buttons ends here: the window below would be dragged by it.
    void mousePressEvent(QMouseEvent* /*event*/) override {}

private:
    void MakeColourChoices();
    void ShowIndicator();
    void Translate();

    SharpPicture m_ground;
    SharpPicture m_typeIcon;
    PressCombobox* m_sizeBox;
    PressLabel* m_colorLabel;
    NimbPushButton* m_trimButton;
    NimbPushButton* m_backButton;
    NimbPushButton* m_redoButton;
    QWidget* m_choiceGround;
    std::array<NimbPushButton*, kTextColorCount> m_choices{};
    quint8 m_color = 0;
    bool m_sizeChangeArmed = true;  // the next change of the chooser is told
};

}  // namespace kivo
