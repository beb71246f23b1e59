#pragma once

// How long the steps of a slope are on the panel: what a person would see as bands.

#include <QImage>
#include <QVector>
#include <algorithm>

namespace kivo::test {

// The longest run of equal pixels in each row from top to bottom, bottom excluded; of those the median.
// within: a mask of the image's size, beside whose opaque pixels no run goes on; null: everywhere.
inline int MedianRun(const QImage& image, int top, int bottom, const QImage& within = QImage()) {
    QVector<int> longest;
    for (int y = top; y < bottom; ++y) {
        int run = 1;
        int best = 1;
        for (int x = 1; x < image.width(); ++x) {
            const bool isCounted = within.isNull() || qAlpha(within.pixel(x, y)) == 255;
            run = isCounted && image.pixel(x, y) == image.pixel(x - 1, y) ? run + 1 : 1;
            best = qMax(best, run);
        }
        longest.append(best);
    }
    std::sort(longest.begin(), longest.end());
    return longest[longest.size() / 2];
}

}  // namespace kivo::test
