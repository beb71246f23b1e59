#include <QSignalSpy>
#include <QtTest>

#include "support/test_program.h"
#include "widgets/exit_item_delegate.h"
#include "widgets/my_list_widget.h"
#include "widgets/nimb_item_delegate.h"
#include "widgets/window_style.h"

using namespace kivo;

class TestMyListWidget : public QObject {
    Q_OBJECT

private slots:
    void aRightPressIsTakenInFirst() {
        MyListWidget list;
        list.addItems({QStringLiteral("a"), QStringLiteral("b")});
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        int rowAtSignal = -1;
        connect(&list, &MyListWidget::rightClick, &list, [&] { rowAtSignal = list.currentRow(); });
        QTest::mousePress(list.viewport(), Qt::RightButton, Qt::NoModifier,
                          list.visualItemRect(list.item(1)).center());
        QCOMPARE(rowAtSignal, 1);
    }

    void aPressBesideEveryRowIsOnNone() {
        MyListWidget list;
        list.addItems({QStringLiteral("a"), QStringLiteral("b")});
        list.resize(200, 200);
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        const QPoint second = list.visualItemRect(list.item(1)).center();
        QCOMPARE(list.PressedRow(), -1);
        QTest::mousePress(list.viewport(), Qt::RightButton, Qt::NoModifier, second);
        QCOMPARE(list.PressedRow(), 1);
        QTest::mousePress(list.viewport(), Qt::RightButton, Qt::NoModifier, QPoint(second.x(), 190));
        QCOMPARE(list.PressedRow(), -1);
        QCOMPARE(list.currentRow(), 1);
    }

    void aLeftPressOnlySelects() {
        MyListWidget list;
        list.addItems({QStringLiteral("a"), QStringLiteral("b")});
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        QSignalSpy rightClick(&list, &MyListWidget::rightClick);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier,
                          list.visualItemRect(list.item(1)).center());
        QCOMPARE(rightClick.count(), 0);
        QCOMPARE(list.currentRow(), 1);
    }

    void picturesStandFourInARow_data() {
        QTest::addColumn<bool>("ownPictures");
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QSize>("cell");
        QTest::addColumn<QRect>("sixth");
        QTest::newRow("pictures") << true << QSize(77, 54) << QSize(97, 80) << QRect(101, 80, 89, 80);
        QTest::newRow("overviews") << false << QSize(85, 98) << QSize(97, 110) << QRect(97, 110, 97, 110);
    }
    void picturesStandFourInARow() {
        QFETCH(bool, ownPictures);
        QFETCH(QSize, picture);
        QFETCH(QSize, cell);
        QFETCH(QRect, sixth);
        MyListWidget list;
        list.setStyleSheet(WindowStyleSheet());
        list.ShowAsGrid(picture, cell);
        list.resize(390, 240);
        if (ownPictures) {
            list.setItemDelegate(new ExitItemDelegate(&list));
            list.resize(390 + 6, 240);  // its scroll bar stands beside the pictures
        } else {
            list.setItemDelegate(new NimbItemDelegate(&list));
            list.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        }
        for (int row = 0; row < 8; ++row) {
            list.addItem(new QListWidgetItem);
        }
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        QCOMPARE(list.visualItemRect(list.item(5)), sixth);
    }
};

KIVO_TEST(TestMyListWidget)
#include "tst_my_list_widget.moc"
