#include <QTextBlock>
#include <QTextLayout>
#include <QtTest>

#include "support/test_program.h"
#include "widgets/self_plain_text_edit.h"

using namespace kivo;

class TestSelfPlainTextEdit : public QObject {
    Q_OBJECT

private slots:
    void takesFortyCharactersAtFirst() {
        SelfPlainTextEdit box;
        QCOMPARE(box.MaxLength(), 40);
        box.setPlainText(QString(41, QLatin1Char('x')));
        QCOMPARE(box.toPlainText(), QString(40, QLatin1Char('x')));
    }

    void typingBeyondTheLimitIsCut() {
        SelfPlainTextEdit box;
        box.SetMaxLength(3);
        QTest::keyClicks(&box, QStringLiteral("abcd"));
        QCOMPARE(box.toPlainText(), QStringLiteral("abc"));
        QCOMPARE(box.textCursor().position(), 3);
    }

    void insertingInTheMiddleCutsTheEnd() {
        SelfPlainTextEdit box;
        box.SetMaxLength(3);
        box.setPlainText(QStringLiteral("abc"));
        box.moveCursor(QTextCursor::Start);
        QTest::keyClicks(&box, QStringLiteral("X"));
        QCOMPARE(box.toPlainText(), QStringLiteral("Xab"));
        QCOMPARE(box.textCursor().position(), 3);
    }

    void cutsAndMovesTheCursorToTheEnd_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("limit");
        QTest::addColumn<QString>("left");
        QTest::newRow("shorter") << QStringLiteral("ab") << 3 << QStringLiteral("ab");
        QTest::newRow("as long") << QStringLiteral("abc") << 3 << QStringLiteral("abc");
        QTest::newRow("longer") << QStringLiteral("abcde") << 3 << QStringLiteral("abc");
        QTest::newRow("line breaks count") << QStringLiteral("a\nb\nc") << 3 << QStringLiteral("a\nb");
        QTest::newRow("chinese") << QStringLiteral("一二三四") << 3 << QStringLiteral("一二三");
        QTest::newRow("whole pair fits") << QStringLiteral("a😀b") << 3 << QStringLiteral("a😀");
        QTest::newRow("no half pair") << QStringLiteral("ab😀") << 3 << QStringLiteral("ab");
        QTest::newRow("nothing") << QStringLiteral("ab") << 0 << QString();
    }
    void cutsAndMovesTheCursorToTheEnd() {
        QFETCH(QString, text);
        QFETCH(int, limit);
        QFETCH(QString, left);
        SelfPlainTextEdit box;
        box.setPlainText(text);
        box.SetMaxLength(limit);
        QCOMPARE(box.toPlainText(), text);
        box.EnforceMaxLength();
        QCOMPARE(box.toPlainText(), left);
        if (left != text) {
            QVERIFY(box.textCursor().atEnd());
        }
    }

    void aCompositionIsNotBrokenOff() {
        SelfPlainTextEdit box;
        box.SetMaxLength(2);
        box.setPlainText(QStringLiteral("ab"));
        box.moveCursor(QTextCursor::End);
        QInputMethodEvent commitAndGoOn(QStringLiteral("ni"), {});
        commitAndGoOn.setCommitString(QStringLiteral("好"));
        QApplication::sendEvent(&box, &commitAndGoOn);
        QCOMPARE(box.toPlainText(), QStringLiteral("ab好"));
        QCOMPARE(box.document()->firstBlock().layout()->preeditAreaText(), QStringLiteral("ni"));
        QInputMethodEvent last;
        last.setCommitString(QStringLiteral("你"));
        QApplication::sendEvent(&box, &last);
        QCOMPARE(box.toPlainText(), QStringLiteral("ab"));
    }

    void aCompositionEndsWithTheFocusOrTheBox_data() {
        QTest::addColumn<bool>("hides");
        QTest::newRow("focus") << false;
        QTest::newRow("box") << true;
    }
    void aCompositionEndsWithTheFocusOrTheBox() {
        QFETCH(bool, hides);
        SelfPlainTextEdit box;
        box.SetMaxLength(2);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QInputMethodEvent commitAndGoOn(QStringLiteral("ni"), {});
        commitAndGoOn.setCommitString(QStringLiteral("一二三"));
        QApplication::sendEvent(&box, &commitAndGoOn);
        QCOMPARE(box.toPlainText(), QStringLiteral("一二三"));
        if (hides) {
            box.hide();
        } else {
            QFocusEvent out(QEvent::FocusOut);
            QApplication::sendEvent(&box, &out);
        }
        QCOMPARE(box.toPlainText(), QStringLiteral("一二"));
        // The limit holds from now on, though nobody told of the composition's end.
        box.setPlainText(QStringLiteral("abc"));
        QCOMPARE(box.toPlainText(), QStringLiteral("ab"));
    }
};

KIVO_TEST(TestSelfPlainTextEdit)
#include "tst_self_plain_text_edit.moc"
