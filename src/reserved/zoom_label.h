#pragma once

// A label that neither shows anything nor lets the mouse through: it keeps a text and two flags for its
// owner. GUI thread.

#include <QLabel>

namespace kivo {

class ZoomLabel : public QLabel {
    Q_OBJECT

public:
    explicit ZoomLabel(QWidget* parent = nullptr);

    void SetHeldText(const QString& text) { m_heldText = text; }
    QString HeldText() const { return m_heldText; }
    void SetShownFlag(quint8 flag) { m_shownFlag = flag; }
    quint8 ShownFlag() const { return m_shownFlag; }
    void SetSelectedFlag(quint8 flag) { m_selectedFlag = flag; }
    quint8 SelectedFlag() const { return m_selectedFlag; }

protected:
    // Deliberate: empty, so that the events end here.
    void mousePressEvent(QMouseEvent* /*event*/) override {}
    void mouseReleaseEvent(QMouseEvent* /*event*/) override {}
    void mouseMoveEvent(QMouseEvent* /*event*/) override {}
    void paintEvent(QPaintEvent* /*event*/) override {}

private:
    QString m_heldText;
    quint8 m_shownFlag = 0;
    quint8 m_selectedFlag = 0;
};

}  // namespace kivo
