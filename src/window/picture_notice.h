#pragma once

// The quiet line below the buttons: the picture that was chosen is not shown, and why. GUI thread.

#include <QString>
#include <QWidget>

#include "pictures/picture.h"

class QLabel;

namespace kivo {

class PictureNotice : public QWidget {
    Q_OBJECT

public:
    // Its own room, in pixels.
    static constexpr QSize kSize{437, 20};

    // Hidden until there is something to say.
    explicit PictureNotice(QWidget* parent);

    // None: nothing to say. A long name of the file loses its middle.
    void Show(const QString& path, PictureFailure failure);
    bool HasSomethingToSay() const { return m_hasSomethingToSay; }

    // What stands on the same line and matters more.
    void SetCovered(bool on);

Q_SIGNALS:
    // HasSomethingToSay() may have changed.
    void changed();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Say(const QString& path, PictureFailure failure);

    QLabel* const m_text;
    bool m_hasSomethingToSay = false;
    bool m_isCovered = false;
};

}  // namespace kivo
