#include "support/custom_page_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// The free text of the custom page: how it is typed, ends and moves.
class TestWindowText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void TextIsTypedInPlace_data();
    void TextIsTypedInPlace();
    void TextEntryEndsAndKeepsItsText_data();
    void TextEntryEndsAndKeepsItsText();
    void TextIsNoLongerThanItsLimit();
    void EmptyTextIsNone();
    void TextIsDraggedToARow_data();
    void TextIsDraggedToARow();
    void UndoBeforeTheTextForgetsItsTick();
};

void TestWindowText::initTestCase() {
    PrepareApplication();
}

void TestWindowText::init() {
    SetUpFactoryLayouts();
}

void TestWindowText::TextIsTypedInPlace_data() {
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("variant");
    QTest::newRow("lying, five items") << 0 << 0;
    QTest::newRow("lying, one item") << 0 << 1;
    QTest::newRow("standing, five items") << 1 << 0;
    QTest::newRow("standing, one item") << 1 << 1;
}

void TestWindowText::TextIsTypedInPlace() {
    QFETCH(int, orientation);
    QFETCH(int, variant);
    SetUpFactoryLayouts(orientation, variant);
    const CustomDesk desk;
    desk.DoubleTap(desk.TextZone().center());
    QVERIFY(!desk.Editor()->IsTextEntryOpen());  // nothing is edited yet
    const QVector<int> ticked = desk.Boxes();
    desk.Tap("btnEdit");
    desk.DoubleTap(desk.TextZone().center());
    QVERIFY(desk.TextBox()->isVisible());
    const QRect row = TextBoxRect(2, Orientation(orientation), desk.Editor()->size());
    QVERIFY(desk.TextBox()->geometry().intersects(row));
    QCOMPARE(desk.TextBox()->geometry().left(), row.left());
    QCOMPARE(desk.TextBox()->geometry().right(), row.right());
    QCOMPARE(desk.TextBox()->placeholderText(), QStringLiteral("Type here"));
    QCOMPARE(desk.Boxes(), ticked + QVector<int>{8});
    desk.Type(QStringLiteral("Hello"));
    QSignalSpy changes(desk.TextBox(), &QPlainTextEdit::textChanged);
    desk.Key(Qt::Key_Return);
    QCOMPARE(changes.count(), 0);  // the key ends the entry and no more
    QVERIFY(!desk.TextBox()->isVisible());
    QCOMPARE(desk.Layout().freeText, QStringLiteral("Hello"));
    // The tool bar's way in finds it; Enter works as Return does.
    desk.Tap("colorLabel");
    QCOMPARE(desk.TextBox()->toPlainText(), QStringLiteral("Hello"));
    desk.Type(QStringLiteral("!"));
    desk.Key(Qt::Key_Enter);
    QCOMPARE(desk.Layout().freeText, QStringLiteral("Hello!"));
    QCOMPARE(desk.Boxes(), ticked + QVector<int>{8});
}

void TestWindowText::TextEntryEndsAndKeepsItsText_data() {
    QTest::addColumn<QByteArray>("how");
    for (const char* how : {"btnApply", "btnTheme", "btnPortrait", "choiceSecond", "trimButton", "backButton",
                            "hide", "close", "btnMini", "press", "check3", "escape"}) {
        QTest::newRow(how) << QByteArray(how);
    }
}

void TestWindowText::TextEntryEndsAndKeepsItsText() {
    QFETCH(QByteArray, how);
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.Tap("colorLabel");
    desk.Type(QStringLiteral("kept"));
    if (how == "hide") {
        desk.window->hide();
    } else if (how == "close") {
        desk.window->close();
    } else if (how == "press") {
        desk.Tap(desk.Editor(), QPoint(3, 3));
    } else if (how == "check3") {
        desk.Tick(3);
    } else if (how == "escape") {
        desk.Key(Qt::Key_Escape);
    } else {
        desk.Tap(how.constData());
    }
    QVERIFY(!desk.Editor()->IsTextEntryOpen());
    QVERIFY(!desk.TextBox()->isVisible());
    QVERIFY(!desk.Colors()->isVisible());
    const LayoutRecord& layout = desk.Editor()->Edited().themes.layouts[size_t(CustomLayoutIndex(0))];
    // The way back has the text as its newest step.
    const QString kept = how == "backButton" ? QString() : QStringLiteral("kept");
    QCOMPARE(layout.freeText, kept);
    QCOMPARE(layout.shown[OtherText], !kept.isEmpty());
}

void TestWindowText::TextIsNoLongerThanItsLimit() {
    const CustomDesk desk;
    desk.WriteText(QString(50, QLatin1Char('x')));
    QCOMPARE(desk.Layout().freeText, QString(40, QLatin1Char('x')));
}

void TestWindowText::EmptyTextIsNone() {
    const CustomDesk desk;
    const QVector<int> ticked = desk.Boxes();
    for (const QString& text : {QStringLiteral("text"), QString(), QStringLiteral("  ")}) {
        desk.WriteText(text);
        const bool isText = text == QLatin1String("text");
        QCOMPARE(desk.Layout().freeText, isText ? text : QString());
        QCOMPARE(desk.Boxes(), isText ? ticked + QVector<int>{8} : ticked);
    }
}

void TestWindowText::TextIsDraggedToARow_data() {
    QTest::addColumn<int>("orientation");
    QTest::newRow("lying") << 0;
    QTest::newRow("standing") << 1;
}

void TestWindowText::TextIsDraggedToARow() {
    QFETCH(int, orientation);
    SetUpEmptyLayouts(orientation);
    const CustomDesk desk;
    desk.WriteText(QStringLiteral("to and fro"));
    int row = 2;
    for (int to : {0, 1, 2, 1, 0, 2}) {
        desk.Drag(desk.RowPlace(row), desk.RowPlace(to));
        QCOMPARE(desk.Editor()->Edited().textRow, to);
        row = to;
    }
    desk.Drag(desk.RowPlace(row), QPoint(2, 2));
    QCOMPARE(desk.Editor()->Edited().textRow, row);
    // Only the press that hits it moves it.
    desk.Drag(desk.RowPlace(0), desk.RowPlace(1));
    QCOMPARE(desk.Editor()->Edited().textRow, row);
    // Kept on commit, not before.
    QCOMPARE(LoadCurRectId(), 2);
    desk.Drag(desk.RowPlace(row), desk.RowPlace(0));
    QCOMPARE(LoadCurRectId(), 2);
    desk.Tap("btnApply");
    QCOMPARE(LoadCurRectId(), 0);
}

void TestWindowText::UndoBeforeTheTextForgetsItsTick() {
    SetUpEmptyLayouts();
    const CustomDesk desk;
    desk.Tap("btnEdit");
    desk.PickColor(2);
    desk.Type(QStringLiteral("text"));
    desk.Key(Qt::Key_Return);
    desk.Tap("backButton");
    QCOMPARE(desk.Layout().freeText, QString());
    QCOMPARE(desk.Layout().colorIndex, 2);
    // A tick without a text would count against the items.
    QCOMPARE(desk.Boxes(), QVector<int>());
    for (int number : {1, 2, 3, 4, 5, 7}) {
        desk.Tick(number);
    }
    QCOMPARE(desk.Boxes(), (QVector<int>{1, 2, 3, 4, 5, 7}));
}

KIVO_TEST(TestWindowText)
#include "tst_window_text.moc"
