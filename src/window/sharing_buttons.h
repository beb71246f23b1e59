#pragma once

// The two small buttons at the preview's right edge: the layout as a file, out and in. The counterpart of the
// orientation switch at its left edge. GUI thread.

#include <QWidget>

namespace kivo {

class NimbPushButton;

class SharingButtons : public QWidget {
    Q_OBJECT

public:
    // Stands where it belongs in the window.
    explicit SharingButtons(QWidget* parent);

    // For the order of the keys.
    QWidget* First() const;
    QWidget* Last() const;

Q_SIGNALS:
    void exportWanted();
    void importWanted();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    NimbPushButton* const m_export;
    NimbPushButton* const m_import;
};

}  // namespace kivo
