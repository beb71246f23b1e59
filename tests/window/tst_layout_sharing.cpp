#include <sys/stat.h>
#include <QTemporaryDir>
#include <QtTest>

#include "compose/shared_layout.h"
#include "compose/theme_catalogue.h"
#include "pictures/picture_reader.h"
#include "resources/resources.h"
#include "support/full_disk.h"
#include "support/test_program.h"
#include "window/layout_sharing.h"

using namespace kivo;
using namespace kivo::test;
using Trouble = LayoutSharing::Trouble;
using Outcome = LayoutSharing::Outcome;

// Layouts as files, read and written beside the window.
class TestLayoutSharing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { InitResources(); }
    void init();
    void cleanup() { m_home.reset(); }
    void LayoutArrivesWithItsPicture();
    void BuiltInPictureNeedsNoCopy();
    void LaterImportFindsTheSameCopy();
    void BadFileIsTold_data();
    void BadFileIsTold();
    void PictureThatIsMissingIsTold();
    void FullDiskLeavesAllAsItWas();
    void TargetThatCannotBeWrittenStays();
    void NobodyWaitsForever();
    void EveryJobIsAnsweredOnce();

private:
    QString File(const char* name) const { return m_home->filePath(QString::fromLatin1(name)); }
    QString Folder() const { return File("Pictures"); }
    Outcome Import(const QString& file) const;
    Outcome Export(const ScreenState& shown, const QString& file) const;
    // A layout whose picture is one of the user's own.
    ScreenState WithPicture() const;
    QStringList Kept() const { return QDir(Folder()).entryList(QDir::Files | QDir::Hidden); }

    std::unique_ptr<QTemporaryDir> m_home;
};

namespace {

;

Outcome Await(const std::function<void(LayoutSharing::Done)>& begin) {
    std::optional<Outcome> told;
    begin([&told](const Outcome& outcome) { told = outcome; });
    if (!QTest::qWaitFor([&told] { return told.has_value(); }, 60000)) {
        qFatal("Nothing is told.");
    }
    return *told;
}

bool Write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray Content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

void TestLayoutSharing::init() {
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(m_home->isValid());
}

Outcome TestLayoutSharing::Import(const QString& file) const {
    LayoutSharing sharing(Folder());
    return Await([&](const LayoutSharing::Done& done) { sharing.Import(file, done); });
}

Outcome TestLayoutSharing::Export(const ScreenState& shown, const QString& file) const {
    LayoutSharing sharing(Folder());
    return Await([&](const LayoutSharing::Done& done) { sharing.Export(shown, QString(), file, done); });
}

ScreenState TestLayoutSharing::WithPicture() const {
    QImage image(1900, 1300, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgb(x / 8, y / 6, (x * y) & 0xFF));
        }
    }
    if (!image.save(File("my lake.jpg"), "JPG")) {
        qFatal("The picture cannot be written.");
    }
    ScreenState state;
    state.layout = FactoryThemeLayout(Theme::Default, Orientation::Landscape, state.language);
    state.layout.picture = File("my lake.jpg");
    state.layout.xPt = 12;
    state.layout.xZoom = 40;
    return state;
}

// To the pixel: also of a photograph that is larger than anything that the panel needs.
void TestLayoutSharing::LayoutArrivesWithItsPicture() {
    const ScreenState shown = WithPicture();
    QCOMPARE(Export(shown, File("a.kivolayout")).reason, QString());
    const Outcome outcome = Import(File("a.kivolayout"));
    QVERIFY2(outcome.layout, qPrintable(outcome.reason));
    QCOMPARE(outcome.layout->layout.picture, Folder() + QStringLiteral("/my lake.png"));
    QCOMPARE(outcome.newPicture, outcome.layout->layout.picture);
    ScreenState expected = SharedStateOf(shown);
    expected.layout.picture = outcome.newPicture;
    QVERIFY(*outcome.layout == expected);
    QCOMPARE(LoadPicture(outcome.newPicture).convertToFormat(QImage::Format_RGB32),
             LoadPicture(shown.layout.picture).convertToFormat(QImage::Format_RGB32));
    QCOMPARE(Kept(), QStringList{QStringLiteral("my lake.png")});
    LayoutSharing::Forget(outcome);
    QVERIFY(Kept().isEmpty());
}

void TestLayoutSharing::BuiltInPictureNeedsNoCopy() {
    ScreenState shown = WithPicture();
    shown.layout.picture = BuiltInBackgrounds().at(6);
    QCOMPARE(Export(shown, File("a.kivolayout")).reason, QString());
    const Outcome outcome = Import(File("a.kivolayout"));
    QVERIFY(outcome.layout);
    QCOMPARE(outcome.layout->layout.picture, shown.layout.picture);
    QVERIFY(outcome.newPicture.isEmpty());
    QVERIFY(!QFileInfo::exists(Folder()));
}

void TestLayoutSharing::LaterImportFindsTheSameCopy() {
    QCOMPARE(Export(WithPicture(), File("a.kivolayout")).reason, QString());
    const Outcome first = Import(File("a.kivolayout"));
    const Outcome second = Import(File("a.kivolayout"));
    QVERIFY(first.layout && second.layout);
    QVERIFY(*first.layout == *second.layout);
    QVERIFY(second.newPicture.isEmpty());
    LayoutSharing::Forget(second);
    QCOMPARE(Kept().size(), 1);
}

void TestLayoutSharing::BadFileIsTold_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("trouble");
    const auto row = [](const char* name, const QByteArray& content, Trouble trouble) {
        QTest::newRow(name) << content << int(trouble);
    };
    row("empty", {}, Trouble::NoLayout);
    row("noise", "noise", Trouble::NoLayout);
    row("too large", QByteArray(int(kLargestSharedLayout) + 1, ' '), Trouble::NoLayout);
    row("a value that makes no sense", "{\"Kivo Screen layout\": 1, \"dim\": 1000}", Trouble::NoLayout);
    row("newer", "{\"Kivo Screen layout\": 7}", Trouble::Newer);
    row("a picture that is none", "{\"Kivo Screen layout\": 1, \"picture\": {\"data\": \"bm90aGluZw==\"}}",
        Trouble::BadPicture);
}

void TestLayoutSharing::BadFileIsTold() {
    QFETCH(QByteArray, content);
    QFETCH(int, trouble);
    QVERIFY(Write(File("a.kivolayout"), content));
    const Outcome outcome = Import(File("a.kivolayout"));
    QCOMPARE(int(outcome.trouble), trouble);
    QVERIFY(!outcome.layout);
    QVERIFY(outcome.reason.endsWith(QLatin1Char('.')));
    QVERIFY(!QFileInfo::exists(Folder()));
    // What is no file is not even opened: a pipe would never give an end.
    QCOMPARE(::mkfifo(qPrintable(File("pipe")), 0600), 0);
    for (const char* name : {"pipe", "missing", "."}) {
        QCOMPARE(int(Import(File(name)).trouble), int(Trouble::NoFile));
    }
}

void TestLayoutSharing::PictureThatIsMissingIsTold() {
    ScreenState shown = WithPicture();
    shown.layout.picture = File("missing.png");
    QCOMPARE(int(Export(shown, File("a.kivolayout")).trouble), int(Trouble::BadPicture));
    QVERIFY(!QFileInfo::exists(File("a.kivolayout")));
}

void TestLayoutSharing::FullDiskLeavesAllAsItWas() {
    QVERIFY(Write(File("old.kivolayout"), "old"));
    const ScreenState shown = WithPicture();
    QCOMPARE(Export(shown, File("a.kivolayout")).reason, QString());
    {
        const FullDisk disk(4096);
        const Outcome outcome = Import(File("a.kivolayout"));
        QCOMPARE(int(outcome.trouble), int(Trouble::CannotBeSaved));
        QVERIFY(!outcome.layout);
        QCOMPARE(int(Export(shown, File("old.kivolayout")).trouble), int(Trouble::CannotBeSaved));
    }
    {
        // So small that nothing of it is written before its end.
        ScreenState small = shown;
        small.layout.picture = BuiltInBackgrounds().constFirst();
        const FullDisk disk(100);
        QCOMPARE(int(Export(small, File("old.kivolayout")).trouble), int(Trouble::CannotBeSaved));
    }
    QVERIFY(Kept().isEmpty());
    QCOMPARE(Content(File("old.kivolayout")), QByteArray("old"));
}

void TestLayoutSharing::TargetThatCannotBeWrittenStays() {
    QCOMPARE(int(Export(WithPicture(), File("nowhere/a.kivolayout")).trouble), int(Trouble::CannotBeSaved));
    QVERIFY(QDir(m_home->path()).mkdir(QStringLiteral("folder")));
    QCOMPARE(int(Export(WithPicture(), File("folder")).trouble), int(Trouble::CannotBeSaved));
    QVERIFY(QFileInfo(File("folder")).isDir());
}

// What is given up leaves nothing behind when it ends after all.
void TestLayoutSharing::NobodyWaitsForever() {
    QCOMPARE(Export(WithPicture(), File("a.kivolayout")).reason, QString());
    LayoutSharing sharing(Folder(), nullptr, std::chrono::milliseconds(0));
    const Outcome outcome =
        Await([&](const LayoutSharing::Done& done) { sharing.Import(File("a.kivolayout"), done); });
    QCOMPARE(int(outcome.trouble), int(Trouble::NoAnswer));
    QTest::qWait(1500);
    QVERIFY(Kept().isEmpty());
}

void TestLayoutSharing::EveryJobIsAnsweredOnce() {
    QVERIFY(Write(File("a.kivolayout"), "{\"Kivo Screen layout\": 1, \"dim\": 5}"));
    LayoutSharing sharing(Folder());
    QVector<int> answers(20);
    for (int& answer : answers) {
        sharing.Import(File("a.kivolayout"),
                       [&answer](const Outcome& outcome) { answer += outcome.layout ? 1 : 100; });
    }
    QTRY_COMPARE_WITH_TIMEOUT(answers, QVector<int>(20, 1), 30000);
    // Nobody is told any more once it has gone.
    {
        LayoutSharing gone(Folder());
        gone.Import(File("a.kivolayout"), [&answers](const Outcome&) { ++answers.first(); });
    }
    QTest::qWait(100);
    QCOMPARE(answers, QVector<int>(20, 1));
}

KIVO_TEST(TestLayoutSharing)
#include "tst_layout_sharing.moc"
