#pragma once

// The strip with the six colours a free text can have. It comes up over the editor and goes when one has been
// picked. GUI thread.

#include <QWidget>
#include <array>

#include "compose/custom_layout.h"
#include "widgets/nimb_push_button.h"
#include "widgets/sharp_picture.h"

namespace kivo {

// The picture of a colour's button, by the index of FreeTextColor.
QString ColorButtonPicture(int color);

// The colour's name in the interface language.
QString ColorName(int color);

class ColorBar : public QWidget {
    Q_OBJECT

public:
    explicit ColorBar(QWidget* parent = nullptr);

    // In index order.
    const std::array<NimbPushButton*, kTextColorCount>& Buttons() const { return m_buttons; }

    // The colour in use, which bears a check.
    void SetCurrentColor(int color);

Q_SIGNALS:
    void SendFontColor(quint8 color);
    // Left by keyboard; it hides next, and gives the focus to anybody unless somebody takes it now.
    void dismissed();
    // It came up or went.
    void shownChanged(bool shown);

public Q_SLOTS:
    // Of a colour button, its sender.
    void btn_clicked();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    // Empty, so that a press beside the buttons ends here: the window below would be dragged by it.
    void mousePressEvent(QMouseEvent* /*event*/) override {}

private:
    void Translate();
    void DrawState(QPainter& painter, const QRectF& rect, int color, NimbPushButton::State state) const;

    SharpPicture m_ground;
    std::array<NimbPushButton*, kTextColorCount> m_buttons{};
    int m_current = -1;  // none yet
};

}  // namespace kivo
