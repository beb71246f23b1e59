#pragma once

// What lies behind the texts of the preview, composed at the pixels of the window and kept until something
// that decides it changes. Nothing is asked for before the first background is. GUI thread.

#include <QImage>
#include <QSize>
#include <QString>

#include <future>
#include <optional>

#include "compose/frame_composer.h"
#include "compose/screen_state.h"
#include "pictures/layout_picture.h"

namespace kivo {

class PictureSource;

class PreviewBackground {
public:
    // Where the pictures come from; outlives this object. Until then there is none.
    void SetSource(PictureSource& source) { m_source = &source; }

    // The state's background in device pixels: exactly what the panel gets, magnified. While its picture is
    // being read the former one stands; before the first one, a plain ground. bare: items without a chip.
    const PanelBackground& Composed(const ScreenState& state, QSize devicePixels, const ItemFlags& bare = {});

    // The whole picture of the state as it is, scaled to that many device pixels.
    const QImage& WholePicture(const ScreenState& state, QSize devicePixels);

    // Size of the picture that is shown in its own pixels; empty before the first one.
    QSize PictureSize(const ScreenState& state);

    // Has the picture's file looked at again, when it is asked for next. So is another picture than the last
    // one, each time.
    void Recheck() { m_path.clear(); }

    // Nobody looks at the preview for the time being: lets go of the picture and of the skins. What was
    // composed last stands until the picture has been read again.
    void LetGo();
    // Bytes of the picture and the skins that are held.
    qint64 HeldBytes() const { return m_picture.image.sizeInBytes() + m_skins.HeldBytes(); }

    // The preview is about to be shown, with this state and size: has what it takes made ready beside the GUI
    // thread.
    void Fetch(const ScreenState& state, QSize devicePixels);

    // How often a background was composed; tells tests what was not done again.
    int CompositionCount() const { return m_compositions; }

private:
    // Brings m_picture up to date with what the source knows.
    void Update(const ScreenState& state);

    PictureSource* m_source = nullptr;
    QString m_path;           // whose file was looked at last
    LayoutPicture m_picture;  // the one that is shown
    QSize m_pictureSize;
    bool m_hasLetGo = false;  // of the picture that m_composed was made of

    SkinCache m_skins;
    std::future<SkinCache> m_comingSkins;  // from Fetch to the first composing
    ScreenState m_state;                   // of m_composed
    ItemFlags m_bare{};                    // of m_composed
    PanelBackground m_composed;
    QImage m_whole;
    int m_compositions = 0;
};

}  // namespace kivo
