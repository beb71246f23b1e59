#pragma once

// The part of the tray menu that says when the screen is dark by itself. Shows rules and tells of the ones a
// person chooses; keeps none. GUI thread.

#include <QMenu>
#include <utility>
#include <vector>

#include "config/away_rules.h"

class QActionGroup;

namespace kivo {

class AwayMenu : public QMenu {
    Q_OBJECT

public:
    // Its texts are in the language of the translator that is installed.
    AwayMenu();

    void ShowRules(const AwayRules& rules);

Q_SIGNALS:
    void chosen(const kivo::AwayRules& rules);
    void nightTimesRequested();

private:
    void AddTick(const char* name, const QString& text, bool AwayRules::*rule);
    void AddNight(const char* name, const QString& text, NightLight light);

    AwayRules m_shown;
    std::vector<std::pair<QAction*, bool AwayRules::*>> m_ticks;
    QMenu* const m_night;
    QActionGroup* const m_nightLights;
    QAction* m_nightTimes = nullptr;
};

}  // namespace kivo
