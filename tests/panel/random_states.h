#pragma once

// Screens as people set them up, and as damaged settings hold them, drawn at random.

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <array>

#include "compose/screen_state.h"

namespace kivo::test {

class RandomStates {
public:
    RandomStates();

    // Of equal generators and languages the same.
    ScreenState Draw(QRandomGenerator& random, InterfaceLanguage language) const;

private:
    QString DrawPicture(QRandomGenerator& random) const;

    QTemporaryDir m_folder;
    std::array<QString, 3> m_tinyPictures;
};

}  // namespace kivo::test
