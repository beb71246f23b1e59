#include "sheet.h"

#include "noise.h"
#include "picture.h"
#include "skins.h"

#include <QFont>
#include <QPainter>
#include <QTextStream>

#include <algorithm>
#include <cmath>
#include <vector>

namespace kivo::artwork {

namespace {

constexpr int kZoom = 3;
constexpr int kGap = 6;

struct Text {
    Theme theme;
    Orientation orientation;
    QRect rect;  // the value's place
    int pixelSize;
    const char* sample;
};

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;
// Where the program writes its values.
const std::initializer_list<Text> kTexts = {
    {Theme::Default, kLying, QRect(158, 38, 47, 24), 18, "45\u2103"},
    {Theme::Default, kLying, QRect(245, 119, 47, 24), 18, "65%"},
    {Theme::Default, kLying, QRect(245, 38, 47, 24), 18, "20%"},
    {Theme::Default, kLying, QRect(28, 16, 80, 24), 18, "18:46"},
    {Theme::Default, kLying, QRect(35, 100, 70, 22), 21, "15w"},
    {Theme::Default, kLying, QRect(0, 44, 136, 13), 10, "2019.12.31"},
    {Theme::Default, kLying, QRect(158, 119, 47, 24), 18, "1000"},
    {Theme::Scene, kLying, QRect(89, 85, 146, 50), 36, "18:46"},
    {Theme::Scene, kLying, QRect(69, 138, 186, 32), 20, "2019.12.31"},
    {Theme::Tdp, kLying, QRect(11, 54, 60, 20), 18, "45\u2103"},
    {Theme::Tdp, kLying, QRect(11, 108, 60, 20), 18, "65%"},
    {Theme::Tdp, kLying, QRect(249, 108, 60, 20), 18, "20%"},
    {Theme::Tdp, kLying, QRect(128, 111, 66, 30), 18, "18:46"},
    {Theme::Tdp, kLying, QRect(106, 74, 114, 30), 26, "15w"},
    {Theme::Tdp, kLying, QRect(122, 142, 80, 20), 10, "2019.12.31"},
    {Theme::Tdp, kLying, QRect(249, 54, 60, 20), 18, "1000"},
    {Theme::Time, kLying, QRect(12, 13, 47, 15), 18, "45\u2103"},
    {Theme::Time, kLying, QRect(12, 113, 47, 15), 18, "65%"},
    {Theme::Time, kLying, QRect(261, 113, 47, 15), 18, "20%"},
    {Theme::Time, kLying, QRect(100, 60, 120, 30), 27, "18:46"},
    {Theme::Time, kLying, QRect(261, 13, 47, 15), 18, "15w"},
    {Theme::Time, kLying, QRect(100, 103, 120, 30), 15, "2019.12.31"},
    {Theme::Default, kStanding, QRect(23, 191, 46, 24), 18, "45\u2103"},
    {Theme::Default, kStanding, QRect(107, 272, 46, 24), 18, "65%"},
    {Theme::Default, kStanding, QRect(107, 191, 46, 24), 18, "20%"},
    {Theme::Default, kStanding, QRect(45, 8, 80, 24), 18, "18:46"},
    {Theme::Default, kStanding, QRect(52, 88, 68, 22), 23, "15w"},
    {Theme::Default, kStanding, QRect(29, 33, 111, 13), 10, "2019.12.31"},
    {Theme::Default, kStanding, QRect(23, 272, 46, 24), 18, "1000"},
    {Theme::Scene, kStanding, QRect(12, 223, 146, 50), 36, "18:46"},
    {Theme::Scene, kStanding, QRect(0, 283, 170, 18), 20, "2019.12.31"},
    {Theme::Tdp, kStanding, QRect(25, 46, 60, 20), 18, "45\u2103"},
    {Theme::Tdp, kStanding, QRect(25, 272, 60, 20), 18, "65%"},
    {Theme::Tdp, kStanding, QRect(88, 46, 60, 20), 18, "20%"},
    {Theme::Tdp, kStanding, QRect(56, 194, 66, 20), 18, "18:46"},
    {Theme::Tdp, kStanding, QRect(30, 141, 114, 30), 26, "15w"},
    {Theme::Tdp, kStanding, QRect(46, 215, 80, 20), 10, "2019.12.31"},
    {Theme::Tdp, kStanding, QRect(88, 272, 60, 20), 18, "1000"},
    {Theme::Time, kStanding, QRect(11, 18, 47, 15), 18, "45\u2103"},
    {Theme::Time, kStanding, QRect(11, 271, 47, 15), 18, "65%"},
    {Theme::Time, kStanding, QRect(111, 271, 47, 15), 18, "20%"},
    {Theme::Time, kStanding, QRect(29, 136, 112, 30), 27, "18:46"},
    {Theme::Time, kStanding, QRect(111, 18, 47, 15), 18, "15w"},
    {Theme::Time, kStanding, QRect(30, 177, 103, 14), 13, "2019.12.31"},
};

SkinLayers Load(const QDir& folder, Theme theme, Orientation orientation) {
    const auto load = [&](const char* layer) {
        const QString name = NameOf(theme) + QLatin1String("_") + QLatin1String(layer) +
                             QLatin1String(orientation == kLying ? "_01.png" : "_02.png");
        return QImage(folder.filePath(name));
    };
    return {load("background"), load("ornaments"), load("frame"), load("icons")};
}

QImage LoadIcon(const QDir& folder, Theme theme) {
    return QImage(folder.filePath(NameOf(theme) + QLatin1String("_icon.png")));
}

// The band that the digits cover: centred, as wide as the text is at about .56 of its size a letter.
QRect DigitsOf(const Text& text) {
    const int letters = static_cast<int>(QString::fromUtf8(text.sample).size());
    const int width = std::min(text.rect.width(), static_cast<int>(letters * text.pixelSize * 0.56));
    QRect band(0, 0, width, static_cast<int>(std::lround(text.pixelSize * 0.74)));
    band.moveCenter(text.rect.center());
    return band;
}

double ContrastOfWhite(QRgb ground) {
    return 1.05 / (Luminance(FromRgb(ground)) + 0.05);
}

// Text ground without the ornaments: a tick that passes under a digit is not what the digit is read against.
double LeastContrast(const QImage& panel, Theme theme, Orientation orientation) {
    double least = 21;
    for (const Text& text : kTexts) {
        if (text.theme != theme || text.orientation != orientation) {
            continue;
        }
        const QRect band = DigitsOf(text).intersected(panel.rect());
        for (int y = band.top(); y <= band.bottom(); ++y) {
            for (int x = band.left(); x <= band.right(); ++x) {
                least = std::min(least, ContrastOfWhite(panel.pixel(x, y)));
            }
        }
    }
    return least;
}

void DrawTexts(QImage& panel, Theme theme, Orientation orientation) {
    panel = panel.convertToFormat(QImage::Format_RGB32);
    QPainter painter(&panel);
    painter.setPen(Qt::white);
    QFont font(QStringLiteral("Noto Sans CJK SC"));
    for (const Text& text : kTexts) {
        if (text.theme == theme && text.orientation == orientation) {
            font.setPixelSize(text.pixelSize);
            painter.setFont(font);
            painter.drawText(text.rect, Qt::AlignCenter | Qt::TextDontClip, QString::fromUtf8(text.sample));
        }
    }
}

// How a picture's upper sixth behaves at panel size in RGB565: deviation between neighbours (green, in
// 8-bit levels) and, over the rows, the median of each row's longest run of one colour.
void PrintBanding(QTextStream& out, const QImage& picture) {
    const QImage canvas = picture.scaled(433, 230, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                              .convertToFormat(QImage::Format_RGB16);
    const QImage panel = canvas.scaled(320, 170, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                             .convertToFormat(QImage::Format_RGB16);
    std::vector<int> longest;
    double squares = 0;
    int pairs = 0;
    for (int y = 2; y < 28; ++y) {
        int run = 1;
        int best = 1;
        for (int x = 1; x < panel.width(); ++x) {
            const QRgb here = panel.pixel(x, y);
            const QRgb before = panel.pixel(x - 1, y);
            run = here == before ? run + 1 : 1;
            best = std::max(best, run);
            const double step = qGreen(here) - qGreen(before);
            squares += step * step;
            ++pairs;
        }
        longest.push_back(best);
    }
    std::nth_element(longest.begin(), longest.begin() + longest.size() / 2, longest.end());
    out << "sky: deviation between neighbours " << std::sqrt(squares / pairs) << ", median longest run "
        << longest[longest.size() / 2] << '\n';
}

// The frame as the panel shows it, without any text: picture, skin layers, icon. 320 x 170 or 170 x 320,
// put together the way the program does it (landscape at 433 x 230, then reduced), in RGB565.
QImage ComposePanel(Theme theme, Orientation orientation, const SkinLayers& layers, const QImage& icon,
                    const QImage& background) {
    const QSize size = SkinSize(orientation);
    const QSizeF panel = PanelSize(orientation);
    QImage canvas(size, QImage::Format_RGB16);
    canvas.fill(Qt::black);
    QPainter painter(&canvas);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QImage picture = background.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    painter.drawImage((size.width() - picture.width()) / 2, (size.height() - picture.height()) / 2, picture);
    for (const QImage* layer : {&layers.glass, &layers.ornaments, &layers.frame, &layers.icons}) {
        painter.drawImage(0, 0, *layer);
    }
    const QRectF rect = IconRect(theme, orientation);
    const double toX = size.width() / panel.width();
    const double toY = size.height() / panel.height();
    if (!icon.isNull()) {
        painter.drawImage(QRectF(rect.x() * toX, rect.y() * toY, rect.width() * toX, rect.height() * toY),
                          icon);
    }
    painter.end();
    return canvas.scaled(PanelSize(orientation), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB16);
}

}  // namespace

bool MakeSheet(const QDir& folder, const QString& picturePath, const QString& sheetPath) {
    QTextStream out(stdout);
    const QImage picture(picturePath);
    if (picture.isNull()) {
        out << "cannot read " << picturePath << '\n';
        return false;
    }
    QImage white(picture.size(), QImage::Format_RGB32);
    white.fill(Qt::white);

    const int lyingRows = 2 * (170 * kZoom + kGap);
    QImage sheet(4 * 170 * kZoom + 3 * kGap, lyingRows + 320 * kZoom, QImage::Format_RGB32);
    sheet.fill(QColor(0x22, 0x22, 0x26));
    QPainter painter(&sheet);
    for (const Orientation orientation : {kLying, kStanding}) {
        for (const Theme theme : kThemes) {
            SkinLayers layers = Load(folder, theme, orientation);
            if (layers.glass.isNull() || layers.ornaments.isNull()) {
                out << "no skin " << NameOf(theme) << " in " << folder.path() << '\n';
                return false;
            }
            const QImage icon = LoadIcon(folder, theme);
            QImage panel = ComposePanel(theme, orientation, layers, icon, picture);
            DrawTexts(panel, theme, orientation);
            const int index = static_cast<int>(theme);
            const QPoint at = orientation == kLying
                                  ? QPoint(index % 2 * (320 * kZoom + kGap), index / 2 * (170 * kZoom + kGap))
                                  : QPoint(index * (170 * kZoom + kGap), lyingRows);
            painter.drawImage(at, panel.scaled(panel.size() * kZoom));
            layers.ornaments = QImage();
            layers.icons = QImage();
            const QImage bare = ComposePanel(theme, orientation, layers, QImage(), white);
            out << NameOf(theme) << (orientation == kLying ? " landscape" : " portrait")
                << ": least contrast of white text over white " << LeastContrast(bare, theme, orientation)
                << '\n';
        }
    }
    painter.end();
    PrintBanding(out, picture);
    if (!sheet.save(sheetPath)) {
        out << "cannot write " << sheetPath << '\n';
        return false;
    }
    return true;
}

}  // namespace kivo::artwork
