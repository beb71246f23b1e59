#pragma once

// The quiet line beside the window's name: what state the screen is in. GUI thread.

#include <QLabel>
#include <QTimer>
#include <QWidget>

#include "panel/panel_light.h"
#include "panel/panel_status.h"

namespace kivo {

class NimbPushButton;

// What the program saves at one time, and tries again at the next occasion of its own.
enum class SettingsPart { Layout = 1, Pictures = 2, Away = 4 };
Q_DECLARE_FLAGS(SettingsParts, SettingsPart)
Q_DECLARE_OPERATORS_FOR_FLAGS(SettingsParts)

class StateLine : public QWidget {
    Q_OBJECT

public:
    // Its own room, in pixels. It stands on the baseline of the window's name if its top is at y 30 there.
    static constexpr QSize kSize{380, 24};

    // Shows that there is no screen, until it is told more.
    explicit StateLine(QWidget* parent);

    void Show(const PanelStatus& status);
    // Why the panel is not as bright as usual. Told while nothing is the matter with it.
    void ShowDark(DarkReasons reasons);
    // That settings could not be saved stands before everything else, until those very parts are saved.
    void NoteSaved(SettingsParts parts, bool areSaved);
    SettingsParts Unsaved() const { return m_unsaved; }

    // The state in words.
    const QString& Phrase() const { return m_phrase; }

Q_SIGNALS:
    void phraseChanged(const QString& phrase);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Refresh();
    QString PhraseOfPanel() const;
    void ShowPhrase();
    void ShowLink();
    void CopyCommands();

    PanelStatus m_status;
    DarkReasons m_dark;
    SettingsParts m_unsaved;
    QString m_phrase;
    bool m_isAmber = false;
    QLabel* const m_text;
    NimbPushButton* const m_copy;  // seen where the commands help
    QTimer m_copied;               // runs while the button says that they were copied
};

}  // namespace kivo
