#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QtTest>

#include "compose/shared_layout.h"
#include "compose_test_support.h"
#include "config/settings_file.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// A layout as one file: what was written is what is read, and whatever else a file holds does no harm.
class TestSharedLayout : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void WhatWasWrittenIsRead();
    void FileCanBeRead();
    void WhatIsMissingIsTheFactorys();
    void WhatIsNotKnownIsPassedOver();
    void WhatIsSharedTellsNothingOfItsUser();
    void SlotsAreSettled();
    void BadFileIsRefused_data();
    void BadFileIsRefused();
    void BadValueIsRefused_data();
    void BadValueIsRefused();
    void GreatestValuesAreTaken();
    void NoFileMakesTrouble();
};

namespace {

constexpr int kLayouts = 200;
constexpr quint32 kLayoutSeed = 20181;
// KIVO_MUTATIONS in their place.
constexpr int kMutations = 4000;
constexpr quint32 kMutationSeed = 20182;

QRect DrawRect(QRandomGenerator& random, Orientation orientation) {
    if (random.bounded(3) == 0) {
        return {};
    }
    const QSize canvas = CanvasSize(orientation);
    return {random.bounded(canvas.width()), random.bounded(canvas.height()), random.bounded(1, 200),
            random.bounded(1, 200)};
}

QString DrawText(QRandomGenerator& random) {
    static const QStringList texts{QString(), QStringLiteral("Hi"), QStringLiteral("今天天气很好"),
                                   QStringLiteral("Two\nlines, \"quoted\" \\ and {braced}"),
                                   QStringLiteral("Привет 🙂")};
    return texts.at(random.bounded(texts.size()));
}

// Whatever settings may hold.
SharedLayout DrawShared(QRandomGenerator& random) {
    ScreenState state;
    state.custom = random.bounded(2) == 0;
    state.theme = Theme(random.bounded(kThemeCount));
    state.style = random.bounded(2);
    state.variant = random.bounded(kVariantCount);
    state.orientation = Orientation(random.bounded(2));
    state.textRow = random.bounded(kTextRowCount);
    for (int& item : state.slotItems) {
        item = random.bounded(-1, kLiveValueCount + 2);
    }
    LayoutRecord& layout = state.layout;
    layout.xPt = random.bounded(-65535, 65536);
    layout.yPt = random.bounded(-300, 300);
    layout.xZoom = random.bounded(-300, 300);
    layout.yZoom = random.bounded(-65535, 65536);
    layout.dim = random.bounded(101);
    layout.blur = random.bounded(101);
    layout.accentFromPicture = random.bounded(2) == 0;
    layout.highlight = random.bounded(kLiveValueCount);
    for (size_t item = 0; item < size_t(kLiveValueCount); ++item) {
        const Orientation turned = state.custom ? Orientation::Landscape : state.orientation;
        layout.shown[item] = random.bounded(2) == 0;
        layout.selected[item] = random.bounded(2) == 0;
        layout.tile[item] = DrawRect(random, turned);
        layout.textRect[item] = DrawRect(random, turned);
        layout.sample[item] = DrawText(random);
    }
    layout.freeText = DrawText(random);
    layout.sizeIndex = random.bounded(kTextSizeCount);
    layout.colorIndex = random.bounded(kTextColorCount);
    SharedLayout shared;
    const QStringList builtIn = BuiltInBackgrounds();
    if (random.bounded(3) == 0) {
        layout.picture = builtIn.at(random.bounded(builtIn.size()));
    } else {
        layout.picture = QStringLiteral("/home/somebody/lake.png");
        shared.pictureName = DrawText(random);
        shared.picture.resize(random.bounded(1, 3000));
        for (char& byte : shared.picture) {
            byte = char(random.bounded(256));
        }
    }
    shared.state = SharedStateOf(state);
    return shared;
}

bool operator==(const SharedLayout& a, const SharedLayout& b) {
    return a.state == b.state && a.picture == b.picture && a.pictureName == b.pictureName;
}

// A file with one value put in the place of another; path as in "trim/x".
QByteArray With(const char* path, const QJsonValue& value) {
    SharedLayout shared;
    shared.state = SharedStateOf(CustomScreen(FactorySlotTable()[0], Orientation::Landscape));
    shared.state.layout.picture.clear();
    shared.picture = "bytes";
    QJsonObject file = QJsonDocument::fromJson(WriteSharedLayout(shared)).object();
    const QStringList names = QString::fromLatin1(path).split(QLatin1Char('/'));
    if (names.size() == 1) {
        file.insert(names.first(), value);
    } else if (names.size() == 2) {
        QJsonObject group = file.value(names.first()).toObject();
        group.insert(names.last(), value);
        file.insert(names.first(), group);
    } else {
        QJsonArray list = file.value(names.first()).toArray();
        QJsonObject item = list.at(names.at(1).toInt()).toObject();
        item.insert(names.last(), value);
        list.replace(names.at(1).toInt(), item);
        file.insert(names.first(), list);
    }
    return QJsonDocument(file).toJson();
}

// One to four changes of the kinds that transport, editors and people with bad ideas make.
QByteArray Mutated(const QByteArray& original, QRandomGenerator& random) {
    static const QByteArrayList words{"-1",   "1e999", "99999999999", "null",  "true", "[]",   "{}",
                                      "\"\"", "0.5",   "\\u0000",     "\xFF",  ",",    "\"",   "[[[[[[[[",
                                      "-0",   "1E-5",  "\\ud800",     "NaN",   "../",  "five", "theme",
                                      "{\"",  "}",     "65536",       "-65536"};
    QByteArray bytes = original;
    const int changes = random.bounded(1, 5);
    for (int change = 0; change < changes && !bytes.isEmpty(); ++change) {
        const int at = random.bounded(bytes.size());
        switch (random.bounded(6)) {
            case 0:
                bytes[at] = char(random.bounded(256));
                break;
            case 1:
                bytes.remove(at, random.bounded(1, 40));
                break;
            case 2:
                bytes.insert(at, words.at(random.bounded(words.size())));
                break;
            case 3:
                bytes.insert(at, bytes.mid(random.bounded(bytes.size()), random.bounded(1, 60)));
                break;
            case 4: {
                // A value: what stands behind a colon.
                const int colon = bytes.indexOf(": ", at);
                const int end = colon < 0 ? -1 : bytes.indexOf('\n', colon);
                if (end > 0) {
                    bytes.replace(colon + 2, end - colon - 3, words.at(random.bounded(words.size())));
                }
                break;
            }
            default:
                bytes.truncate(at);
                break;
        }
    }
    return bytes;
}

// All that drawing and settings rely on.
bool IsInRange(const SharedLayout& shared) {
    const ScreenState& state = shared.state;
    const LayoutRecord& layout = state.layout;
    const auto isNear = [](int number) { return qAbs(number) <= 65535; };
    bool isGood = state.variant >= 0 && state.variant < kVariantCount && int(state.theme) >= 0 &&
                  int(state.theme) < kThemeCount && state.style >= 0 && state.style <= 1 &&
                  state.textRow >= 0 && state.textRow < kTextRowCount && layout.dim >= 0 &&
                  layout.dim <= 100 && layout.blur >= 0 && layout.blur <= 100 && layout.sizeIndex >= 0 &&
                  layout.sizeIndex < kTextSizeCount && layout.colorIndex >= 0 &&
                  layout.colorIndex < kTextColorCount && IsItem(layout.highlight) && isNear(layout.xPt) &&
                  isNear(layout.yPt) && isNear(layout.xZoom) && isNear(layout.yZoom) &&
                  layout.freeText.size() <= kLongestSettingText && !layout.freeText.contains(QChar(0)) &&
                  shared.picture.size() <= kLargestSharedPicture && shared.pictureName.size() <= 256;
    for (const int item : state.slotItems) {
        isGood = isGood && (item == kEmptySlot || HasLiveValue(item));
    }
    for (size_t item = 0; item < size_t(kLiveValueCount); ++item) {
        isGood = isGood && IsBelievable(layout.tile[item]) && IsBelievable(layout.textRect[item]);
    }
    const bool isBuiltIn = BuiltInBackgrounds().contains(layout.picture);
    return isGood && isBuiltIn == shared.picture.isEmpty() && (isBuiltIn || layout.picture.isEmpty()) &&
           layout.defaultPicture.isEmpty() && SharedStateOf(state).slotItems == state.slotItems;
}

}  // namespace

void TestSharedLayout::WhatWasWrittenIsRead() {
    QRandomGenerator random(kLayoutSeed);
    for (int number = 0; number < kLayouts; ++number) {
        const SharedLayout shared = DrawShared(random);
        const QByteArray file = WriteSharedLayout(shared);
        const SharedLayoutReading reading = ReadSharedLayout(file);
        QVERIFY2(reading.layout, qPrintable(reading.reason));
        QVERIFY(*reading.layout == shared);
        QCOMPARE(WriteSharedLayout(*reading.layout), file);
    }
}

// By a person, and by whoever looks at a file's first bytes only.
void TestSharedLayout::FileCanBeRead() {
    SharedLayout shared;
    shared.state = SharedStateOf(ThemeScreen(Theme::Time, Orientation::Portrait));
    const QByteArray file = WriteSharedLayout(shared);
    QVERIFY2(file.startsWith("{\n    \"Kivo Screen layout\": 1,\n"), file.constData());
    for (const char* line : {"\"shows\": \"theme\"", "\"theme\": 3", "\"orientation\": \"portrait\""}) {
        QVERIFY2(file.contains(line), line);
    }
}

void TestSharedLayout::WhatIsMissingIsTheFactorys() {
    const SharedLayoutReading five = ReadSharedLayout("{\"Kivo Screen layout\": 1}");
    QVERIFY(five.layout);
    ScreenState expected;
    expected.custom = true;
    expected.layout = FactoryCustomLayout(0, InterfaceLanguage::Chinese);
    expected.slotItems = FactorySlotTable()[0];
    QVERIFY(five.layout->state == SharedStateOf(expected));
    QCOMPARE(five.layout->state.layout.picture, DefaultBackground());

    const SharedLayoutReading theme = ReadSharedLayout(
        "{\"Kivo Screen layout\": 1, \"shows\": \"theme\", \"theme\": 2, \"picture\": {\"builtIn\": 4}}");
    QVERIFY(theme.layout);
    ScreenState tdp;
    tdp.theme = Theme::Tdp;
    tdp.layout = FactoryThemeLayout(Theme::Tdp, Orientation::Landscape, InterfaceLanguage::Chinese);
    tdp.layout.picture = BuiltInBackgrounds().at(3);
    QVERIFY(theme.layout->state == SharedStateOf(tdp));
}

void TestSharedLayout::WhatIsNotKnownIsPassedOver() {
    // The same name in another group is another one.
    QVERIFY(ReadSharedLayout("{\"Kivo Screen layout\": 1, \"x\": {\"x\": [{\"x\": 1}, {\"x\": \"\\\"x\"}]}}")
                .layout);
    const SharedLayoutReading plain = ReadSharedLayout(With("dim", 30));
    QJsonObject file = QJsonDocument::fromJson(With("dim", 30)).object();
    file.insert(QStringLiteral("sound"), QJsonArray{1, QJsonObject{{QStringLiteral("a"), 2}}});
    const SharedLayoutReading reading = ReadSharedLayout(QJsonDocument(file).toJson());
    QVERIFY(reading.layout && plain.layout);
    QVERIFY(*reading.layout == *plain.layout);
}

void TestSharedLayout::WhatIsSharedTellsNothingOfItsUser() {
    ScreenState state = CustomScreen(FactorySlotTable()[0], Orientation::Landscape);
    state.layout.picture = QStringLiteral("/home/anna/holidays/lake.png");
    state.layout.defaultPicture = QStringLiteral("/home/anna/other.png");
    SharedLayout shared;
    shared.state = SharedStateOf(state);
    shared.picture = "bytes";
    shared.pictureName = QStringLiteral("lake");
    const QByteArray file = WriteSharedLayout(shared);
    QVERIFY(!file.contains("anna"));
    QVERIFY(!file.contains("home"));
    QCOMPARE(shared.state.captions, ItemTexts());
}

void TestSharedLayout::SlotsAreSettled() {
    const SharedLayoutReading reading =
        ReadSharedLayout(With("slots", QJsonArray{Time, Time, OtherText, CpuUsage, kEmptySlot}));
    QVERIFY(reading.layout);
    QCOMPARE(reading.layout->state.slotItems, (SlotRow{Time, kEmptySlot, kEmptySlot, CpuUsage, kEmptySlot}));
}

void TestSharedLayout::BadFileIsRefused_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<int>("fault");
    const auto row = [](const char* name, const QByteArray& file,
                        SharedLayoutFault fault = SharedLayoutFault::NoLayout) {
        QTest::newRow(name) << file << int(fault);
    };
    const QByteArray good = With("dim", 1);
    row("nothing", {});
    row("a picture", QByteArray("\x89PNG\r\n\x1a\n", 8));
    row("another JSON", "{\"name\": 1}");
    row("a list", "[1]");
    row("cut off", good.left(good.size() / 2));
    row("its version is a text", "{\"Kivo Screen layout\": \"1\"}");
    row("its version is none", "{\"Kivo Screen layout\": 0}");
    row("its version is a part", "{\"Kivo Screen layout\": 1.5}");
    row("of a later version", "{\"Kivo Screen layout\": 2}", SharedLayoutFault::Newer);
    row("too large", good + QByteArray(int(kLargestSharedLayout), ' '));
    row("of too many parts",
        "{\"Kivo Screen layout\": 1, \"x\": [" + QByteArray("1,").repeated(60000) + "1]}");
    row("a name twice", "{\"Kivo Screen layout\": 1, \"trim\": {\"x\": 1}, \"trim\": {\"x\": 2}}");
    row("a name twice, far inside", "{\"Kivo Screen layout\": 1, \"a\": [[{\"b\": [1], \"b\" : [2]}]]}");
    row("a name in disguise", "{\"Kivo Screen layout\": 1, \"di\\u006D\": 4}");
    row("nested without end", "{\"Kivo Screen layout\": 1, \"x\": " + QByteArray(40000, '['));
}

void TestSharedLayout::BadFileIsRefused() {
    QFETCH(QByteArray, file);
    QFETCH(int, fault);
    const SharedLayoutReading reading = ReadSharedLayout(file);
    QVERIFY(!reading.layout);
    QCOMPARE(int(reading.fault), fault);
    QVERIFY(reading.reason.endsWith(QLatin1Char('.')));
    QVERIFY(!reading.reason.contains(QLatin1Char('\n')));
}

void TestSharedLayout::BadValueIsRefused_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("named");
    const auto row = [](const char* path, const char* what, const QJsonValue& value) {
        const QString name = value.isObject() && !value.toObject().isEmpty()
                                 ? value.toObject().keys().constFirst()
                                 : QString::fromLatin1(path).section(QLatin1Char('/'), -1);
        QTest::newRow(qPrintable(QStringLiteral("%1 %2").arg(QLatin1String(path), QLatin1String(what))))
            << With(path, value) << name;
    };
    row("shows", "a word nobody knows", QStringLiteral("six"));
    row("shows", "a number", 1);
    row("orientation", "a word nobody knows", QStringLiteral("up"));
    row("dim", "too much", 101);
    row("dim", "negative", -1);
    row("dim", "a part", 0.5);
    row("dim", "a text", QStringLiteral("1"));
    row("dim", "nothing", QJsonValue());
    row("blur", "beyond every integer", 1e300);
    row("accentFromPicture", "a number", 1);
    row("highlight", "no item", kLiveValueCount);
    row("trim", "a number", 1);
    row("trim/x", "too far", 65536);
    row("trim/lower", "a list", QJsonArray());
    row("items", "a group", QJsonObject());
    QJsonArray tooMany;
    for (int number = 0; number <= kLiveValueCount; ++number) {
        tooMany.append(QJsonObject());
    }
    row("items", "too many", tooMany);
    row("items", "numbers", QJsonArray{1, 2});
    row("items/0/shown", "a number", 1);
    row("items/1/tile", "three sides", QJsonArray{1, 2, 3});
    row("items/1/tile", "five sides", QJsonArray{1, 2, 3, 4, 5});
    row("items/2/textRect", "a negative size", QJsonArray{1, 2, -3, 4});
    row("items/2/textRect", "off the screen", QJsonArray{400, 2, 10, 10});
    row("items/2/textRect", "beyond what is near", QJsonArray{0, 0, 65535, 70000});
    row("items/2/textRect", "texts", QJsonArray{QStringLiteral("0"), 0, 1, 1});
    row("slots", "six", QJsonArray{0, 1, 2, 3, 4, 5});
    row("slots", "no item", QJsonArray{kLiveValueCount});
    row("slots", "below the empty one", QJsonArray{-2});
    row("text", "a number", 5);
    row("text", "too long", QString(kLongestSettingText + 1, QLatin1Char('a')));
    row("text", "a zero", QString(QChar(0)));
    row("textSize", "none there is", kTextSizeCount);
    row("textColor", "none there is", kTextColorCount);
    row("textRow", "none there is", kTextRowCount);
    row("picture", "a text", QStringLiteral("/etc/passwd"));
    row("picture/data", "no Base64", QStringLiteral("a picture!"));
    row("picture/data", "empty", QString());
    row("picture/data", "too large",
        QString::fromLatin1(QByteArray(int(kLargestSharedPicture) + 1, 'a').toBase64()));
    row("picture", "none of the built-in ones", QJsonObject{{QStringLiteral("builtIn"), 12}});
    row("picture/name", "too long", QString(300, QLatin1Char('a')));
}

void TestSharedLayout::BadValueIsRefused() {
    QFETCH(QByteArray, file);
    QFETCH(QString, named);
    const SharedLayoutReading reading = ReadSharedLayout(file);
    QVERIFY(!reading.layout);
    QCOMPARE(int(reading.fault), int(SharedLayoutFault::BadValue));
    QVERIFY2(reading.reason.contains(QLatin1Char('\'') + named + QLatin1Char('\'')),
             qPrintable(reading.reason));
    QVERIFY(!reading.reason.contains(QLatin1Char('\n')));
}

// Any picture that is kept for the panel can be shared: no bound refuses what the program itself has written.
void TestSharedLayout::GreatestValuesAreTaken() {
    SharedLayout shared;
    shared.state = SharedStateOf(CustomScreen(FactorySlotTable()[0], Orientation::Landscape));
    shared.state.layout.picture.clear();
    shared.state.layout.freeText = QString(kLongestSettingText, QLatin1Char(','));
    shared.picture = QByteArray(int(kLargestSharedPicture), '\xFF');
    const QByteArray file = WriteSharedLayout(shared);
    QVERIFY(file.size() <= kLargestSharedLayout);
    const SharedLayoutReading reading = ReadSharedLayout(file);
    QVERIFY2(reading.layout, qPrintable(reading.reason));
    QVERIFY(*reading.layout == shared);
}

void TestSharedLayout::NoFileMakesTrouble() {
    const int wanted = qEnvironmentVariableIntValue("KIVO_MUTATIONS");
    const int count = wanted > 0 ? wanted : kMutations;
    QRandomGenerator random(kMutationSeed);
    int taken = 0;
    for (int number = 0; number < count; ++number) {
        SharedLayout shared = DrawShared(random);
        shared.picture.truncate(60);
        const SharedLayoutReading reading = ReadSharedLayout(Mutated(WriteSharedLayout(shared), random));
        QCOMPARE(reading.layout.has_value(), reading.fault == SharedLayoutFault::None);
        QCOMPARE(reading.layout.has_value(), reading.reason.isEmpty());
        if (reading.layout) {
            ++taken;
            QVERIFY2(IsInRange(*reading.layout), qPrintable(QString::number(number)));
        }
    }
    // Not all of them break the file, or the values would not be tried.
    QVERIFY2(taken > count / 50, qPrintable(QString::number(taken)));
    QVERIFY(taken < count);
}

KIVO_GUILESS_TEST(TestSharedLayout)
#include "tst_shared_layout.moc"
