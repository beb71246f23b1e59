#pragma once

// What lies behind the texts of the preview, composed at the pixels of the window and kept until something
// that decides it changes. Nothing is decoded before the first picture is asked for. GUI thread.

#include <QDateTime>
#include <QImage>
#include <QString>

#include "compose/frame_composer.h"
#include "compose/screen_state.h"

namespace kivo {

class PreviewBackground {
public:
    // The state's background in device pixels: exactly what the panel gets, magnified.
    const QImage& Composed(const ScreenState& state, QSize devicePixels);

    // The whole picture of the state as it is, scaled to that many device pixels.
    const QImage& WholePicture(const ScreenState& state, QSize devicePixels);

    // Size of the state's picture in its own pixels; empty where it cannot be read.
    QSize PictureSize(const ScreenState& state);

    // Whether the picture can be read. It is kept, so that showing it next costs nothing.
    bool Load(const QString& path);

    // Looks again whether the picture's file is still the same, when it is asked for next.
    void Recheck() { m_recheck = true; }

    // How often a background was composed and a picture decoded; tells tests what was not done again.
    int CompositionCount() const { return m_compositions; }
    int DecodeCount() const { return m_decodes; }

private:
    const QImage& Picture(const QString& path);
    void Keep(const QString& path, const QImage& picture);

    QString m_path;
    QDateTime m_modified;
    bool m_recheck = false;
    QImage m_picture;

    SkinCache m_skins;
    ScreenState m_state;  // of m_composed
    QImage m_composed;
    QImage m_whole;
    int m_compositions = 0;
    int m_decodes = 0;
};

}  // namespace kivo
