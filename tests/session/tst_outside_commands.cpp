#include <QtTest>

#include "session/outside_commands.h"
#include "support/test_program.h"
#include "window/outside_change.h"

using namespace kivo;

Q_DECLARE_METATYPE(kivo::OutsideMessage::State)
Q_DECLARE_METATYPE(kivo::OutsideCommands)

// Commands as values: the message that carries them, and what they make of the saved state.
class TestOutsideCommands : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void MessageCarriesEveryCommand();
    void PartOfAMessageIsPartial();
    void WhatIsNoMessageIsGarbage_data();
    void WhatIsNoMessageIsGarbage();
    void BodyThatNobodySendsIsRefused_data();
    void BodyThatNobodySendsIsRefused();
    void AnswerIsReadBack();
    void CommandsChangeTheirOwn_data();
    void CommandsChangeTheirOwn();
    void PictureGoesToWhatIsShownThen();
    void AnotherPictureIsUntrimmed();
    void ThemeHasNoText();
    void EmptyTextUnticksIt();
};

namespace {

OutsideCommands Asked(OutsideKind kind, const char* value = "") {
    OutsideCommands commands;
    commands[size_t(kind)] = QString::fromUtf8(value);
    return commands;
}

OutsideCommands Both(const OutsideCommands& a, const OutsideCommands& b) {
    OutsideCommands commands = a;
    for (size_t kind = 0; kind < b.size(); ++kind) {
        commands[kind] = b[kind] ? b[kind] : commands[kind];
    }
    return commands;
}

EditState Factory() {
    EditState state;
    state.themes = FactoryThemeState(InterfaceLanguage::English);
    return state;
}

EditState FactoryLayout() {
    EditState state = Factory();
    state.themes.mode = 1;
    return state;
}

std::optional<EditState> Changed(const EditState& saved, const OutsideCommands& commands) {
    QString trouble;
    const std::optional<EditState> next = ChangedFromOutside(saved, commands, trouble);
    return trouble.isEmpty() == next.has_value() ? next : std::nullopt;
}

}  // namespace

void TestOutsideCommands::MessageCarriesEveryCommand() {
    OutsideCommands commands = Asked(OutsideKind::Layout, "one");
    commands[size_t(OutsideKind::Orientation)] = QStringLiteral("portrait");
    commands[size_t(OutsideKind::Picture)] = QDir::tempPath() + QStringLiteral("/图 a.png");
    commands[size_t(OutsideKind::Text)] = QStringLiteral("two\nlines");
    commands[size_t(OutsideKind::Blank)] = QStringLiteral("off");
    commands[size_t(OutsideKind::Show)] = QString();
    const OutsideMessage message = LookAtOutsideMessage(OutsideRequest(commands));
    QVERIFY(message.state == OutsideMessage::State::Whole);
    QVERIFY(ReadOutsideRequest(message.body) == commands);
}

void TestOutsideCommands::PartOfAMessageIsPartial() {
    const QByteArray whole = OutsideRequest(Asked(OutsideKind::Theme, "2"));
    for (int length = 0; length < whole.size(); ++length) {
        QVERIFY(LookAtOutsideMessage(whole.left(length)).state == OutsideMessage::State::Partial);
    }
}

void TestOutsideCommands::WhatIsNoMessageIsGarbage_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("another language") << QByteArray("GET / HTTP/1.1\r\n");
    QTest::newRow("first byte") << QByteArray("k");
    QTest::newRow("another version") << QByteArray("KIVO\2", 5);
    QTest::newRow("too long") << QByteArray("KIVO\1\1\x40\0", 8);
    QTest::newRow("as long as it can be said") << QByteArray("KIVO\1\xff\xff\xff", 8);
    QTest::newRow("more than it says") << OutsideRequest(Asked(OutsideKind::Show)) + 'x';
}

void TestOutsideCommands::WhatIsNoMessageIsGarbage() {
    QFETCH(QByteArray, bytes);
    QVERIFY(LookAtOutsideMessage(bytes).state == OutsideMessage::State::Garbage);
}

void TestOutsideCommands::BodyThatNobodySendsIsRefused_data() {
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("not closed") << QByteArray("theme\0002", 7);
    QTest::newRow("a name alone") << QByteArray("theme\0", 6);
    QTest::newRow("an unknown name") << QByteArray("quit\0\0", 6);
    QTest::newRow("an unknown value") << QByteArray("theme\0007\0", 8);
    QTest::newRow("twice") << QByteArray("theme\0001\0theme\0001\0", 16);
    QTest::newRow("a relative picture") << QByteArray("picture\0a.png\0", 14);
    QTest::newRow("a picture of the program's own") << QByteArray("picture\0:/skins/a.png\0", 22);
    QTest::newRow("a long text") << "text" + QByteArray(1, '\0') + QByteArray(41, 'x') + QByteArray(1, '\0');
    QTest::newRow("zero bytes") << QByteArray(100, '\0');
}

void TestOutsideCommands::BodyThatNobodySendsIsRefused() {
    QFETCH(QByteArray, body);
    QVERIFY(!ReadOutsideRequest(body));
}

void TestOutsideCommands::AnswerIsReadBack() {
    for (const OutsideAnswer& answer :
         {OutsideAnswer{true, QString()}, OutsideAnswer{false, QStringLiteral("No, 不行.")}}) {
        const OutsideMessage message = LookAtOutsideMessage(OutsideAnswerMessage(answer));
        QVERIFY(message.state == OutsideMessage::State::Whole);
        const std::optional<OutsideAnswer> read = ReadOutsideAnswer(message.body);
        QVERIFY(read);
        QCOMPARE(read->isTaken, answer.isTaken);
        QCOMPARE(read->line, answer.line);
    }
    QVERIFY(!ReadOutsideAnswer(QByteArray()));
    QVERIFY(!ReadOutsideAnswer(QByteArray("2")));
    // One line for the person, whatever comes.
    QCOMPARE(ReadOutsideAnswer(QByteArray("\0a\nb", 4))->line, QStringLiteral("a b"));
}

void TestOutsideCommands::CommandsChangeTheirOwn_data() {
    QTest::addColumn<OutsideCommands>("commands");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("theme");
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("orientation");
    const OutsideCommands portrait = Asked(OutsideKind::Orientation, "portrait");
    QTest::newRow("a theme") << Asked(OutsideKind::Theme, "3") << 0 << 3 << 0 << 0;
    QTest::newRow("five items") << Asked(OutsideKind::Layout, "five") << 1 << 0 << 0 << 0;
    QTest::newRow("one item") << Asked(OutsideKind::Layout, "one") << 1 << 0 << 1 << 0;
    QTest::newRow("upright") << portrait << 0 << 0 << 0 << 1;
    QTest::newRow("an upright theme") << Both(Asked(OutsideKind::Theme, "2"), portrait) << 0 << 2 << 0 << 1;
    QTest::newRow("nothing of the kind") << Asked(OutsideKind::Show) << 0 << 0 << 0 << 0;
}

void TestOutsideCommands::CommandsChangeTheirOwn() {
    QFETCH(OutsideCommands, commands);
    const EditState before = Factory();
    const std::optional<EditState> next = Changed(before, commands);
    QVERIFY(next);
    QTEST(next->themes.mode, "mode");
    QTEST(next->themes.theme, "theme");
    QTEST(next->themes.customStyle, "style");
    QTEST(int(next->themes.orientation), "orientation");
    QVERIFY(next->themes.layouts == before.themes.layouts);
    // Once more changes nothing.
    QVERIFY(Changed(*next, commands) == next);
}

void TestOutsideCommands::PictureGoesToWhatIsShownThen() {
    const EditState before = Factory();
    const OutsideCommands commands =
        Both(Both(Asked(OutsideKind::Theme, "2"), Asked(OutsideKind::Orientation, "portrait")),
             Asked(OutsideKind::Picture, "/home/a.png"));
    const std::optional<EditState> next = Changed(before, commands);
    QVERIFY(next);
    for (size_t layout = 0; layout < next->themes.layouts.size(); ++layout) {
        const bool isShown = layout == size_t(ThemeLayoutIndex(Theme::Tdp, Orientation::Portrait));
        QCOMPARE(next->themes.layouts[layout].picture == QStringLiteral("/home/a.png"), isShown);
    }
}

void TestOutsideCommands::AnotherPictureIsUntrimmed() {
    EditState before = FactoryLayout();
    LayoutRecord& layout = LayoutInForce(before);
    layout.picture = QStringLiteral("/home/a.png");
    layout.xZoom = 40;
    layout.yZoom = 20;
    const std::optional<EditState> same = Changed(before, Asked(OutsideKind::Picture, "/home/./a.png"));
    QVERIFY(same);
    QCOMPARE(LayoutInForce(*same).xZoom, 40);
    const std::optional<EditState> other = Changed(before, Asked(OutsideKind::Picture, "/home/b.png"));
    QVERIFY(other);
    QCOMPARE(LayoutInForce(*other).xZoom, 0);
}

void TestOutsideCommands::ThemeHasNoText() {
    QVERIFY(!Changed(Factory(), Asked(OutsideKind::Text, "a")));
    const std::optional<EditState> next =
        Changed(Factory(), Both(Asked(OutsideKind::Layout, "one"), Asked(OutsideKind::Text, "a \n")));
    QVERIFY(next);
    QCOMPARE(LayoutInForce(*next).freeText, QStringLiteral("a"));
    QVERIFY(LayoutInForce(*next).selected[OtherText]);
}

void TestOutsideCommands::EmptyTextUnticksIt() {
    const std::optional<EditState> with = Changed(FactoryLayout(), Asked(OutsideKind::Text, "a"));
    QVERIFY(with);
    QVERIFY(LayoutInForce(*with).shown[OtherText]);
    const std::optional<EditState> without = Changed(*with, Asked(OutsideKind::Text, ""));
    QVERIFY(without);
    QVERIFY(!LayoutInForce(*without).shown[OtherText]);
}

KIVO_GUILESS_TEST(TestOutsideCommands)
#include "tst_outside_commands.moc"
