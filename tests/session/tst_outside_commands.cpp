#include <QtTest>

#include "outside_caller.h"
#include "session/outside_commands.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

Q_DECLARE_METATYPE(kivo::OutsideMessage::State)

// Commands as values, and the message that carries them.
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
};

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

    OutsideCommands file = Asked(OutsideKind::Apply);
    file[size_t(OutsideKind::Apply)] = QDir::tempPath() + QStringLiteral("/图 a.kivolayout");
    file[size_t(OutsideKind::Blank)] = QStringLiteral("off");
    QVERIFY(ReadOutsideRequest(LookAtOutsideMessage(OutsideRequest(file)).body) == file);
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
    QTest::newRow("a relative layout") << QByteArray("apply\0a.kivolayout\0", 19);
    QTest::newRow("a layout and a theme") << QByteArray("theme\0001\0apply\0/a.kivolayout\0", 28);
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

KIVO_GUILESS_TEST(TestOutsideCommands)
#include "tst_outside_commands.moc"
