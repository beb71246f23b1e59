#include "window/away_menu.h"

#include <QActionGroup>

#include "window/night_dialog.h"
#include "window/window_text.h"

namespace kivo {

namespace {

struct Tick {
    const char* name;
    const char* text;
    bool AwayRules::*rule;
};
constexpr Tick kTicks[] = {
    {"darkAtLock", QT_TRANSLATE_NOOP("MainWindow", "锁定时"), &AwayRules::darkAtLock},
    {"darkAtSleep", QT_TRANSLATE_NOOP("MainWindow", "睡眠时"), &AwayRules::darkAtSleep},
    {"darkAtScreenSaver", QT_TRANSLATE_NOOP("MainWindow", "屏幕保护时"), &AwayRules::darkAtScreenSaver},
    {"darkAtExit", QT_TRANSLATE_NOOP("MainWindow", "退出程序后"), &AwayRules::darkAtExit},
};

struct Night {
    const char* name;
    PlacedText text;
    NightLight light;
};
constexpr Night kNights[] = {
    {"nightUsual", QT_TRANSLATE_NOOP3("MainWindow", "照常", "the screen at night"), NightLight::Usual},
    {"nightDimmed", QT_TRANSLATE_NOOP3("MainWindow", "调暗", "the screen at night"), NightLight::Dimmed},
    {"nightBlack", QT_TRANSLATE_NOOP3("MainWindow", "全黑", "the screen at night"), NightLight::Black},
};

}  // namespace

AwayMenu::AwayMenu() : m_night(new QMenu(this)), m_nightLights(new QActionGroup(this)) {
    setTitle(WindowText(QT_TRANSLATE_NOOP("MainWindow", "自动熄屏")));
    for (const Tick& tick : kTicks) {
        AddTick(tick.name, WindowText(tick.text), tick.rule);
    }
    addSeparator();
    m_night->setTitle(WindowText(QT_TRANSLATE_NOOP("MainWindow", "夜间")));
    addMenu(m_night);
    for (const Night& night : kNights) {
        AddNight(night.name, WindowText(night.text), night.light);
    }
    m_night->addSeparator();
    m_nightTimes = m_night->addAction(QString());
    m_nightTimes->setObjectName(QStringLiteral("nightTimes"));
    connect(m_nightTimes, &QAction::triggered, this, &AwayMenu::nightTimesRequested);
    ShowRules(m_shown);
}

void AwayMenu::AddTick(const char* name, const QString& text, bool AwayRules::*rule) {
    QAction* const action = addAction(text);
    action->setObjectName(QLatin1String(name));
    action->setCheckable(true);
    connect(action, &QAction::triggered, this, [this, rule](bool isOn) {
        AwayRules rules = m_shown;
        rules.*rule = isOn;
        Q_EMIT chosen(rules);
    });
    m_ticks.push_back({action, rule});
}

void AwayMenu::AddNight(const char* name, const QString& text, NightLight light) {
    QAction* const action = m_nightLights->addAction(m_night->addAction(text));
    action->setObjectName(QLatin1String(name));
    action->setCheckable(true);
    action->setData(static_cast<int>(light));
    connect(action, &QAction::triggered, this, [this, light] {
        AwayRules rules = m_shown;
        rules.night = light;
        Q_EMIT chosen(rules);
    });
}

void AwayMenu::ShowRules(const AwayRules& rules) {
    m_shown = rules;
    for (const auto& [action, rule] : m_ticks) {
        action->setChecked(rules.*rule);
    }
    const QList<QAction*> nights = m_nightLights->actions();
    for (QAction* night : nights) {
        night->setChecked(night->data().toInt() == static_cast<int>(rules.night));
    }
    m_nightTimes->setText(
        QStringLiteral("%1 – %2…").arg(ClockText(rules.nightFrom), ClockText(rules.nightTo)));
}

}  // namespace kivo
