#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>

#include "compose_test_support.h"
#include "support/built_paths.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// Every picture that is named is there, and every picture that is there is named.

namespace {

QStringList FilesOf(const QString& folder) {
    QStringList files = QDir(folder).entryList(QDir::Files);
    files.sort();
    return files;
}

QString FileName(const QString& path) {
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString Doubled(QString name) {
    return name.replace(QLatin1Char('.'), QLatin1String("@2x."));
}

// All sources of the program.
QString SourceText() {
    QString text;
    QDirIterator files(InSourceFolder("src"),
                       {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.ui")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly)) {
            text += QString::fromUtf8(file.readAll());
        }
    }
    return text;
}

// Names of window pictures in the sources: whole paths, names given to SkinPath, and the tool bar's names,
// which are put together from two parts.
QStringList NamedWindowPictures(const QString& sources) {
    QStringList names;
    const auto collect = [&](const char* pattern, const QString& ending) {
        auto found = QRegularExpression(QLatin1String(pattern)).globalMatch(sources);
        while (found.hasNext()) {
            names.append(found.next().captured(1) + ending);
        }
    };
    collect(R"re(://?skins/([\w@]+\.\w+))re", QString());
    collect(R"re(SkinPath\("(\w+)"\))re", QStringLiteral(".png"));
    for (const char* tool : {"cut", "ret"}) {
        if (sources.contains(QStringLiteral("QStringLiteral(\"%1\")").arg(QLatin1String(tool)))) {
            names << QLatin1String(tool) + QStringLiteral("1.png")
                  << QLatin1String(tool) + QStringLiteral("2.png");
        }
    }
    for (const char* icon : {"trim", "back"}) {
        if (sources.contains(QStringLiteral("QStringLiteral(\"%1\")").arg(QLatin1String(icon)))) {
            names << QStringLiteral("icon_%1_n.png").arg(QLatin1String(icon))
                  << QStringLiteral("icon_%1_s.png").arg(QLatin1String(icon));
        }
    }
    names.removeDuplicates();
    names.sort();
    return names;
}

}  // namespace

class TestResourceUse : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpDrawing(); }

    void ThePanelsPicturesAreThoseOfTheCatalogue() {
        QStringList named;
        const auto add = [&](const QString& path, bool twice) {
            named << FileName(path);
            if (twice) {
                named << Doubled(FileName(path));
            }
        };
        for (const QString& path : BuiltInBackgrounds()) {
            add(path, false);
        }
        for (const Theme theme : kThemes) {
            for (const Orientation orientation : kOrientations) {
                for (const SkinLayer& layer : SkinLayers(theme, orientation)) {
                    add(layer.path, true);
                }
            }
        }
        for (const InterfaceLanguage language : kLanguages) {
            for (const Orientation orientation : kOrientations) {
                for (const QString& path : OverviewPictures(orientation, language)) {
                    add(path, true);
                }
            }
        }
        named.removeDuplicates();
        named.sort();
        QCOMPARE(FilesOf(QStringLiteral(":/background")), named);
    }

    void TheWindowsPicturesAreThoseOfTheSources() {
        const QStringList named = NamedWindowPictures(SourceText());
        QVERIFY(named.size() > 40);
        QStringList expected;
        for (const QString& name : named) {
            // The ground has twice the pixels itself, and the icon holds all its sizes.
            expected << name;
            if (name == QLatin1String("background_01.png")) {
                expected << QStringLiteral("background_01_small.png");
            } else if (name != QLatin1String("logo.ico")) {
                expected << Doubled(name);
            }
        }
        expected.sort();
        QCOMPARE(FilesOf(QStringLiteral(":/skins")), expected);
    }

    void EveryPictureCanBeRead() {
        for (const char* folder : {":/background", ":/skins"}) {
            for (const QString& name : FilesOf(QLatin1String(folder))) {
                const QImage image(QLatin1String(folder) + QLatin1Char('/') + name);
                QVERIFY2(!image.isNull(), qPrintable(name));
            }
        }
    }

    // A layer in twice the pixels is the same drawing: reduced, it has the plain one's ink.
    void DoubledSkinsAreTheSameDrawing() {
        for (const Theme theme : kThemes) {
            for (const Orientation orientation : kOrientations) {
                for (const SkinLayer& layer : SkinLayers(theme, orientation)) {
                    const QImage once(layer.path);
                    QImage twice(Doubled(layer.path));
                    twice.setDevicePixelRatio(1);
                    QCOMPARE(twice.size(), once.size() * 2);
                    const auto ink = [](const QImage& image) {
                        double sum = 0;
                        for (int y = 0; y < image.height(); ++y) {
                            for (int x = 0; x < image.width(); ++x) {
                                sum += qAlpha(image.pixel(x, y));
                            }
                        }
                        return sum / 255 / (image.width() * image.height());
                    };
                    QVERIFY2(qAbs(ink(once) - ink(twice)) < 0.01, qPrintable(layer.path));
                }
            }
        }
    }

    // The program is to stay under 12 MB without Qt; its code takes about 2 of them.
    void AllPicturesTogetherAreSmall() {
        qint64 bytes = 0;
        for (const char* folder : {":/background", ":/skins"}) {
            for (const QString& name : FilesOf(QLatin1String(folder))) {
                bytes += QFileInfo(QLatin1String(folder) + QLatin1Char('/') + name).size();
            }
        }
        QVERIFY(bytes > 1000000);
        QVERIFY2(bytes < 8000000, QByteArray::number(bytes));
    }
};

KIVO_TEST(TestResourceUse)

#include "tst_resource_use.moc"
