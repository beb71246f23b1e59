#include <QSignalSpy>
#include <QtTest>

#include "support/test_program.h"
#include "widgets/press_label.h"

using namespace kivo;

namespace {

class WatchingParent : public QWidget {
public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent* /*event*/) override { ++presses; }
};

}  // namespace

class TestPressLabel : public QObject {
    Q_OBJECT

private slots:
    void tellsOfALeftPressAndPassesItOn() {
        WatchingParent parent;
        PressLabel label(&parent);
        int pressesAtClick = -1;
        connect(&label, &PressLabel::clicked, &parent, [&] { pressesAtClick = parent.presses; });
        QTest::mousePress(&label, Qt::LeftButton);
        QCOMPARE(pressesAtClick, 0);
        QCOMPARE(parent.presses, 1);  // a plain label lets a press through
    }

    void otherButtonsEmitNothing_data() {
        QTest::addColumn<int>("button");
        QTest::newRow("right") << int(Qt::RightButton);
        QTest::newRow("middle") << int(Qt::MiddleButton);
    }
    void otherButtonsEmitNothing() {
        QFETCH(int, button);
        WatchingParent parent;
        PressLabel label(&parent);
        QSignalSpy clicked(&label, &PressLabel::clicked);
        QTest::mousePress(&label, Qt::MouseButton(button));
        QCOMPARE(clicked.count(), 0);
        QCOMPARE(parent.presses, 1);
    }

    void answersTheKeyboard() {
        PressLabel label;
        QSignalSpy clicked(&label, &PressLabel::clicked);
        QTest::keyClick(&label, Qt::Key_Space);
        QTest::keyClick(&label, Qt::Key_Return);
        QTest::keyClick(&label, Qt::Key_A);
        QCOMPARE(clicked.count(), 2);
    }
};

KIVO_TEST(TestPressLabel)
#include "tst_press_label.moc"
