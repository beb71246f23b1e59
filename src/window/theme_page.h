#pragma once

// The page of the ready-made themes: their overview pictures to choose from, and whether the theme's accent
// is taken from its picture. Edits nothing itself. GUI thread.

#include <QObject>
#include <QVector>

#include "compose/theme_state.h"

namespace Ui {
class MainWindow;
}

namespace kivo {

class ThemePage : public QObject {
    Q_OBJECT

public:
    // ui outlives the page.
    ThemePage(::Ui::MainWindow& ui, InterfaceLanguage language, QObject* parent = nullptr);

    // Shows or hides what belongs to this page alone.
    void SetVisible(bool visible);

    // Makes pictures and selection follow the state.
    void Show(const ThemeState& state);

Q_SIGNALS:
    void themeChosen(int theme);
    void accentFromPictureChosen(bool on);

private:
    void ChooseRow(int row);

    ::Ui::MainWindow& m_ui;
    const InterfaceLanguage m_language;
    QStringList m_pictures;   // that the rows show
    bool m_hasAccent = true;  // of the theme that is chosen
};

}  // namespace kivo
