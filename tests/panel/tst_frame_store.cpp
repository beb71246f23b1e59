#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>

#include "../compose/compose_test_support.h"
#include "config/folders.h"
#include "panel/frame_store.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;

ScreenState StateOf(Orientation orientation, Theme theme = Theme::Default) {
    return ThemeScreen(theme, orientation);
}

// Every RGB565 value there is, as far as the canvas goes.
QImage AllColors(Orientation orientation) {
    QImage image(CanvasSize(orientation), QImage::Format_RGB16);
    for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<quint16*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            row[x] = quint16((y * image.width() + x) * 41);
        }
    }
    return image;
}

SharedFrame FrameOf(Orientation orientation, Theme theme = Theme::Default) {
    return MakePanelFrame(StateOf(orientation, theme), {AllColors(orientation)});
}

}  // namespace

// whole.png between the runs: believed when it is whole and for this very frame, kept while the program runs.
class TestFrameStore : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString Path() const { return m_folder->filePath(QStringLiteral("whole.png")); }
    QByteArray Content() const {
        QFile file(Path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void Put(const QByteArray& content) const { PutAt(Path(), content); }
    static void PutAt(const QString& path, const QByteArray& content) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }
    // What another process would find.
    SharedFrame LoadAfresh(const ScreenState& state) const { return FrameStore(Path()).Load(state); }

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void LiesInTheWorkingFolder() {
        QCOMPARE(FrameStore::DefaultPath(), WorkingFolder() + QStringLiteral("/whole.png"));
    }

    void WhatIsSavedComesBackToThePixel() {
        for (const Orientation orientation : kOrientations) {
            const SharedFrame saved = FrameOf(orientation);
            QVERIFY(FrameStore(Path()).Save(saved));
            const SharedFrame loaded = LoadAfresh(saved->state);
            QVERIFY(loaded);
            QCOMPARE(loaded->id, saved->id);
            QVERIFY(loaded->state == saved->state);
            QCOMPARE(loaded->background.image.format(), QImage::Format_RGB16);
            QCOMPARE(loaded->background.image.size(), CanvasSize(orientation));
            QVERIFY(ChangedRect(loaded->background.image, saved->background.image).isNull());
        }
    }

    // Found anew, it might be another one than that of the ticks that a panel shows already.
    void TheAccentOfThePictureComesBack() {
        const SharedFrame own = FrameOf(kLying);
        const SharedFrame saved = MakePanelFrame(own->state, {own->background.image, 0xFF8FC710});
        QVERIFY(FrameStore(Path()).Save(saved));
        const SharedFrame loaded = LoadAfresh(saved->state);
        QVERIFY(loaded);
        QCOMPARE(loaded->id, saved->id);
        QVERIFY(loaded->background.accent == 0xFF8FC710);
        QVERIFY(FrameStore(Path()).Save(own));
        QVERIFY(!LoadAfresh(own->state)->background.accent);
    }

    void AFileWithAnotherAccentIsNotBelieved() {
        const SharedFrame own = FrameOf(kLying);
        QVERIFY(FrameStore(Path()).Save(MakePanelFrame(own->state, {own->background.image, 0xFF8FC710})));
        QImage file(Path(), "PNG");
        file.setText(QStringLiteral("kivo-accent"), QStringLiteral("#8fc711"));
        QVERIFY(file.save(Path(), "PNG"));
        QVERIFY(!LoadAfresh(own->state));
        file.setText(QStringLiteral("kivo-accent"), QStringLiteral("no colour at all"));
        QVERIFY(file.save(Path(), "PNG"));
        QVERIFY(!LoadAfresh(own->state));
    }

    void TheFileIsAPng() {
        QVERIFY(FrameStore(Path()).Save(FrameOf(kLying)));
        const QImage file(Path(), "PNG");
        QCOMPARE(file.size(), CanvasSize(kLying));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 1);
    }

    void SavingReplacesTheFormerFrame() {
        FrameStore store(Path());
        QVERIFY(store.Save(FrameOf(kLying)));
        QVERIFY(store.Save(FrameOf(kStanding)));
        QVERIFY(!LoadAfresh(StateOf(kLying)));
        QVERIFY(LoadAfresh(StateOf(kStanding)));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 1);
    }

    void AMissingFileIsNoFrame() {
        const LogLines log;
        QVERIFY(!LoadAfresh(StateOf(kLying)));
        QVERIFY(LogLines::Lines().isEmpty());
    }

    void AFileOfAnotherStateIsNotBelieved_data() {
        QTest::addColumn<ScreenState>("state");
        QTest::newRow("another theme") << StateOf(kLying, Theme::Time);
        QTest::newRow("the other orientation") << StateOf(kStanding);
        ScreenState state = StateOf(kLying);
        state.layout.freeText = QStringLiteral("x");
        QTest::newRow("another free text, which the picture does not hold") << state;
        state = StateOf(kLying);
        state.captions[Time] += QLatin1Char('x');
        QTest::newRow("another caption, which the picture does not hold") << state;
    }
    void AFileOfAnotherStateIsNotBelieved() {
        QFETCH(ScreenState, state);
        QVERIFY(FrameStore(Path()).Save(FrameOf(kLying)));
        QVERIFY(!LoadAfresh(state));
        QVERIFY(LoadAfresh(StateOf(kLying)));
    }

    // An update may draw the same state otherwise than the preview of before: it composes it anew.
    void AFileOfAnotherDrawingIsNotBelieved() {
        const SharedFrame frame = FrameOf(kLying);
        const SharedFrame former = MakePanelFrame(frame->state, frame->background, kFrameDrawing - 1);
        QVERIFY(former->id != frame->id);
        QVERIFY(FrameStore(Path()).Save(former));
        QVERIFY(!LoadAfresh(StateOf(kLying)));
    }

    void AFileWithOtherSamplesIsBelieved() {
        QVERIFY(FrameStore(Path()).Save(FrameOf(kLying)));
        ScreenState state = StateOf(kLying);
        state.layout.sample.fill(QStringLiteral("another"));
        QVERIFY(LoadAfresh(state));
    }

    void AForeignPictureIsNotBelieved_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QByteArray>("format");
        QTest::newRow("the canvas size, without a mark") << CanvasSize(kLying) << QByteArray("PNG");
        QTest::newRow("another size") << QSize(1000, 1000) << QByteArray("PNG");
        QTest::newRow("the other canvas") << CanvasSize(kStanding) << QByteArray("PNG");
        QTest::newRow("another format") << CanvasSize(kLying) << QByteArray("BMP");
    }
    void AForeignPictureIsNotBelieved() {
        QFETCH(QSize, size);
        QFETCH(QByteArray, format);
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(Path(), format.constData()));
        const LogLines log;
        QVERIFY(!LoadAfresh(StateOf(kLying)));
        QVERIFY(LogLines::Lines().isEmpty());
    }

    void ABorrowedMarkIsNotBelieved_data() {
        QTest::addColumn<QRect>("painted");
        QTest::newRow("first pixel") << QRect(0, 0, 1, 1);
        QTest::newRow("last pixel") << QRect(319, 169, 1, 1);
        QTest::newRow("all of it") << QRect(0, 0, 320, 170);
    }
    // As a picture program leaves it that keeps the text fields.
    void ABorrowedMarkIsNotBelieved() {
        QFETCH(QRect, painted);
        const SharedFrame frame = FrameOf(kLying);
        QVERIFY(FrameStore(Path()).Save(frame));
        QImage image(Path(), "PNG");
        QVERIFY(image.textKeys().contains(QStringLiteral("kivo-frame")));
        QVERIFY(image.save(Path(), "PNG"));
        QVERIFY(LoadAfresh(frame->state));
        QPainter(&image).fillRect(painted, QColor(1, 254, 1));
        QVERIFY(image.save(Path(), "PNG"));
        QVERIFY(!LoadAfresh(frame->state));
    }

    void ADamagedFileIsNotBelieved_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no picture") << QByteArray("no picture");
        QTest::newRow("zeros, as a power cut leaves them") << QByteArray(100000, '\0');
        QTest::newRow("huge") << QByteArray(50 * 1024 * 1024, 'x');
    }
    void ADamagedFileIsNotBelieved() {
        QFETCH(QByteArray, content);
        Put(content);
        const LogLines log;
        QVERIFY(!LoadAfresh(StateOf(kLying)));
    }

    void AFileThatWasCutOffIsNotBelieved() {
        const SharedFrame frame = FrameOf(kLying);
        QVERIFY(FrameStore(Path()).Save(frame));
        const QByteArray whole = Content();
        const LogLines log;
        // The last bytes are the end mark of the format, without which the picture is still whole.
        for (int size = 0; size < whole.size() - 16; size += whole.size() / 97) {
            Put(whole.left(size));
            QVERIFY2(!LoadAfresh(frame->state), QByteArray::number(size));
        }
    }

    void AFolderInItsPlaceIsNoFrameAndCannotBeSavedOver() {
        QVERIFY(QDir().mkpath(Path()));
        const LogLines log;
        FrameStore store(Path());
        QVERIFY(!store.Load(StateOf(kLying)));
        QVERIFY(LogLines::Lines().isEmpty());
        QVERIFY(!store.Save(FrameOf(kLying)));
        QCOMPARE(LogLines::Lines().size(), 1);
        QVERIFY(LogLines::Lines().first().contains(Path()));
        QVERIFY(QFileInfo(Path()).isDir());
    }

    void NothingToSaveIsAFailure() {
        const LogLines log;
        QVERIFY(!FrameStore(Path()).Save(MakePanelFrame(StateOf(kLying), {})));
        QVERIFY(!QFile::exists(Path()));
    }

    void KeepingNothingWritesNothing() {
        FrameStore store(Path());
        store.KeepSaved(milliseconds(0));
        QVERIFY(!store.Load(StateOf(kLying)));
        store.KeepSaved(minutes(10));
        QVERIFY(!QFile::exists(Path()));
    }

    void AFileAsItWasIsLeftAlone() {
        FrameStore saving(Path());
        QVERIFY(saving.Save(FrameOf(kLying)));
        FrameStore loading(Path());
        QVERIFY(loading.Load(StateOf(kLying)));
        // A file that took its place would not have the second name.
        const auto file = std::filesystem::path(Path().toStdU16String());
        const auto secondName = file.parent_path() / "second name";
        std::filesystem::create_hard_link(file, secondName);
        for (FrameStore* store : {&saving, &loading}) {
            store->KeepSaved(milliseconds(0));
            store->KeepSaved(minutes(10));
            QVERIFY(std::filesystem::equivalent(file, secondName));
        }
    }

    void WhatVanishedOrChangedIsWrittenAgain_data() {
        QTest::addColumn<bool>("loaded");
        QTest::addColumn<QByteArray>("content");
        for (const bool loaded : {false, true}) {
            const QByteArray from = loaded ? "loaded: " : "saved: ";
            QTest::newRow(from + "vanished") << loaded << QByteArray();
            QTest::newRow(from + "changed") << loaded << QByteArray("something else");
        }
    }
    void WhatVanishedOrChangedIsWrittenAgain() {
        QFETCH(bool, loaded);
        QFETCH(QByteArray, content);
        FrameStore saving(Path());
        QVERIFY(saving.Save(FrameOf(kLying)));
        FrameStore loading(Path());
        QVERIFY(loading.Load(StateOf(kLying)));
        FrameStore& store = loaded ? loading : saving;
        for (int round = 1; round <= 2; ++round) {
            if (content.isEmpty()) {
                QVERIFY(QFile::remove(Path()));
            } else {
                Put(content);
            }
            store.KeepSaved(seconds(2 * round));
            QVERIFY(LoadAfresh(StateOf(kLying)));
        }
    }

    // Its time alone tells of it.
    void AChangedFileOfTheSameLengthIsWrittenAgain() {
        FrameStore store(Path());
        QVERIFY(store.Save(FrameOf(kLying)));
        Put(QByteArray(Content().size(), 'x'));
        // Two writes may fall into one tick of the file system's clock.
        const auto file = std::filesystem::path(Path().toStdU16String());
        std::filesystem::last_write_time(file, std::filesystem::last_write_time(file) + seconds(3));
        store.KeepSaved(milliseconds(0));
        QVERIFY(LoadAfresh(StateOf(kLying)));
    }

    void AVanishedFolderIsMadeAgain() {
        const QString folder = m_folder->filePath(QStringLiteral("outer/inner"));
        const QString path = folder + QStringLiteral("/whole.png");
        FrameStore store(path);
        QVERIFY(store.Save(FrameOf(kLying)));
        QVERIFY(QDir(m_folder->filePath(QStringLiteral("outer"))).removeRecursively());
        store.KeepSaved(seconds(0));
        QVERIFY(FrameStore(path).Load(StateOf(kLying)));
        QVERIFY(QFile::remove(path));
        store.KeepSaved(milliseconds(1999));
        QVERIFY(!QFile::exists(path));
        store.KeepSaved(seconds(2));
        QVERIFY(FrameStore(path).Load(StateOf(kLying)));
    }

    void AFolderThatCannotBeMadeIsTriedOnceAMinute() {
        const QString folder = m_folder->filePath(QStringLiteral("inner"));
        const QString path = folder + QStringLiteral("/whole.png");
        FrameStore store(path);
        QVERIFY(store.Save(FrameOf(kLying)));
        QVERIFY(QDir(folder).removeRecursively());
        PutAt(folder, "in its place");
        const LogLines log;
        const milliseconds start = minutes(7);
        for (milliseconds now = start; now < start + minutes(2); now += milliseconds(500)) {
            store.KeepSaved(now);
        }
        QCOMPARE(LogLines::Lines().size(), 2);
        QVERIFY(QFile::remove(folder));
        store.KeepSaved(start + minutes(2) - milliseconds(1));
        QVERIFY(!QFile::exists(path));
        store.KeepSaved(start + minutes(2));
        QVERIFY(FrameStore(path).Load(StateOf(kLying)));
        QCOMPARE(LogLines::Lines().size(), 2);
    }

    void WhatCouldNotBeSavedIsTriedAgain() {
        const QString folder = m_folder->filePath(QStringLiteral("no such folder"));
        const QString path = folder + QStringLiteral("/whole.png");
        PutAt(folder, "in its place");
        const LogLines log;
        FrameStore store(path);
        QVERIFY(!store.Save(FrameOf(kStanding)));
        QCOMPARE(LogLines::Lines().size(), 1);
        QVERIFY(LogLines::Lines().first().contains(path));
        QVERIFY(QFile::remove(folder));
        store.KeepSaved(milliseconds(0));
        QVERIFY(FrameStore(path).Load(StateOf(kStanding)));
    }

    // The file of the former frame is there, whole and unchanged: it is still not what the file is to hold.
    void AFrameThatCouldNotTakeTheFormersPlaceIsTriedAgain() {
        FrameStore store(Path());
        QVERIFY(store.Save(FrameOf(kLying)));
        const LogLines log;
        QVERIFY(!store.Save(MakePanelFrame(StateOf(kLying), {})));
        store.KeepSaved(milliseconds(0));
        QCOMPARE(LogLines::Lines().size(), 2);
    }
};

KIVO_GUILESS_TEST(TestFrameStore)
#include "tst_frame_store.moc"
