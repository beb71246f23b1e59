// Whether one folder's pictures are another's: the same files, and in each the same pixels but for what
// another version of an encoder or of a font rasteriser may change.
//   kivo-compare-pictures RENDERED COMMITTED

#include <QDir>
#include <QGuiApplication>
#include <QImageReader>
#include <QTextStream>

#include <cmath>

namespace {

// Of 255. A JPEG's single pixels move by more than a PNG's.
constexpr double kMeanTolerance = 0.6;
constexpr int kMostTolerance = 40;

struct Difference {
    double mean = 0;
    int most = 0;
    bool comparable = true;
};

Difference Compare(const QImage& a, const QImage& b) {
    Difference difference;
    if (a.size() != b.size()) {
        difference.comparable = false;
        return difference;
    }
    const QImage left = a.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QImage right = b.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    double sum = 0;
    for (int y = 0; y < left.height(); ++y) {
        const uchar* one = left.constScanLine(y);
        const uchar* other = right.constScanLine(y);
        for (int x = 0; x < 4 * left.width(); ++x) {
            const int away = std::abs(one[x] - other[x]);
            sum += away;
            difference.most = qMax(difference.most, away);
        }
    }
    difference.mean = sum / (4.0 * left.width() * left.height());
    return difference;
}

// Every picture of both files: icons and animations hold several.
bool SamePictures(const QString& rendered, const QString& committed, QTextStream& out) {
    QImageReader one(rendered);
    QImageReader other(committed);
    if (one.imageCount() != other.imageCount()) {
        out << committed << ": " << other.imageCount() << " pictures, rendered " << one.imageCount() << '\n';
        return false;
    }
    for (int picture = 0; picture < qMax(1, one.imageCount()); ++picture) {
        if (one.imageCount() > 1 && one.format() == "ico") {
            one.jumpToImage(picture);
            other.jumpToImage(picture);
        }
        const QImage left = one.read();
        const QImage right = other.read();
        const Difference difference = Compare(left, right);
        if (left.isNull() || right.isNull() || !difference.comparable || difference.mean > kMeanTolerance ||
            difference.most > kMostTolerance) {
            out << committed << ": picture " << picture << " differs, mean " << difference.mean << ", most "
                << difference.most << '\n';
            return false;
        }
    }
    return true;
}

bool SameBytes(const QString& rendered, const QString& committed, QTextStream& out) {
    QFile one(rendered);
    QFile other(committed);
    const bool same =
        one.open(QIODevice::ReadOnly) && other.open(QIODevice::ReadOnly) && one.readAll() == other.readAll();
    if (!same) {
        out << committed << ": differs\n";
    }
    return same;
}

QStringList FilesIn(const QDir& root) {
    QStringList files;
    for (const char* folder : {"background", "skins", "skin", "defaults"}) {
        const QDir here(root.filePath(QLatin1String(folder)));
        const QStringList names = here.entryList(QDir::Files, QDir::Name);
        for (const QString& name : names) {
            files.append(QLatin1String(folder) + QLatin1Char('/') + name);
        }
    }
    return files;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QTextStream out(stdout);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        out << "Usage: kivo-compare-pictures RENDERED COMMITTED\n";
        return 2;
    }
    const QDir rendered(arguments[1]);
    const QDir committed(arguments[2]);
    const QStringList files = FilesIn(rendered);
    if (files.isEmpty() || files != FilesIn(committed)) {
        out << "The folders do not hold the same files.\n";
        return 1;
    }
    bool good = true;
    for (const QString& name : files) {
        const bool picture = !QImageReader::imageFormat(rendered.filePath(name)).isEmpty();
        good = (picture ? SamePictures(rendered.filePath(name), committed.filePath(name), out)
                        : SameBytes(rendered.filePath(name), committed.filePath(name), out)) &&
               good;
    }
    if (good) {
        out << files.size() << " files are what the sources give.\n";
    }
    return good ? 0 : 1;
}
