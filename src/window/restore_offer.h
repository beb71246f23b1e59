#pragma once

// The line that offers settings which gave way to the defaults (config/kept_settings.h): taken back, or not
// wanted. Hidden while there are none. GUI thread.

#include <QWidget>

namespace kivo {

class NimbPushButton;

class RestoreOffer : public QWidget {
    Q_OBJECT

public:
    // Its own room, in pixels.
    static constexpr QSize kSize{474, 24};

    explicit RestoreOffer(QWidget* parent);

    // Looks for kept settings. It gives way to what else needs its room.
    void Refresh(bool isRoomFree);

Q_SIGNALS:
    void restoreWanted();

private:
    NimbPushButton* AddLink(const char* name, int left, const QString& text);
    void Dismiss();

    bool m_hasKept = false;
};

}  // namespace kivo
