#include "pictures/layout_picture.h"

#include "pictures/picture_source.h"

namespace kivo {

namespace {

// The first of the layout's pictures that can be shown. ask gives what is known of one, or nothing.
template <typename Ask>
std::optional<LayoutPicture> FirstShown(const ScreenState& state, Ask ask) {
    LayoutPicture shown;
    const QStringList paths = PicturePaths(state);
    for (const QString& path : paths) {
        const std::optional<Picture> picture = ask(path);
        if (!picture) {
            return std::nullopt;
        }
        if (picture->failure == PictureFailure::None) {
            shown.image = picture->image;
            return shown;
        }
        if (shown.failure == PictureFailure::None) {
            shown.failure = picture->failure;
        }
    }
    return shown;
}

}  // namespace

std::optional<LayoutPicture> KnownLayoutPicture(PictureSource& source, const ScreenState& state) {
    return FirstShown(state, [&source](const QString& path) {
        std::optional<Picture> picture = source.Known(path);
        if (!picture) {
            source.Want(path);
        }
        return picture;
    });
}

std::optional<LayoutPicture> AwaitLayoutPicture(PictureSource& source, const ScreenState& state) {
    return FirstShown(state, [&source](const QString& path) { return source.Await(path); });
}

}  // namespace kivo
