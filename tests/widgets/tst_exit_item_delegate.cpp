#include <QPainter>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "resources/resources.h"
#include "support/test_program.h"
#include "widgets/exit_item_delegate.h"
#include "widgets/my_list_widget.h"
#include "widgets/window_colors.h"

using namespace kivo;

namespace {

// Gives access to what the list calls.
class OpenDelegate : public ExitItemDelegate {
public:
    using ExitItemDelegate::editorEvent;
};

}  // namespace

class TestExitItemDelegate : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { InitResources(); }
    void init() { MakeList(14); }

    void whichRowsCanBeDeleted_data() {
        QTest::addColumn<int>("count");
        QTest::addColumn<QVector<int>>("rows");
        QTest::newRow("one row") << 1 << QVector<int>{};
        QTest::newRow("twelve rows show no cross") << 12 << QVector<int>{};
        QTest::newRow("of thirteen only row 1") << 13 << QVector<int>{1};
        QTest::newRow("fifteen") << 15 << QVector<int>{1, 2, 3};
    }
    void whichRowsCanBeDeleted() {
        QFETCH(int, count);
        QFETCH(QVector<int>, rows);
        MakeList(count);
        QVector<int> withCross;
        for (int row = 0; row < count; ++row) {
            const QImage image = DrawRow(row);
            // The list's pictures are plain red, so anything else in the corner is the cross.
            if (image.pixelColor(89 - 12, 11) != QColor(Qt::red)) {
                withCross.append(row);
            }
        }
        QCOMPARE(withCross, rows);
    }

    void theCrossStandsAtTheRightTop() {
        QCOMPARE(ExitItemDelegate::CrossRect(QRect(100, 200, 89, 80)), QRect(168, 202, 18, 18));
    }

    void theSquareThatIsHit_data() {
        QTest::addColumn<QPointF>("position");
        QTest::addColumn<bool>("isHit");
        QTest::newRow("first corner") << QPointF(68, 2) << true;
        QTest::newRow("last corner") << QPointF(85, 19) << true;
        QTest::newRow("rounded into it") << QPointF(67.5, 1.5) << true;
        QTest::newRow("rounded out of it at the foot") << QPointF(80, 19.5) << false;
        QTest::newRow("left of it") << QPointF(67.4, 10) << false;
        QTest::newRow("right of it") << QPointF(86, 10) << false;
        QTest::newRow("above it") << QPointF(80, 1) << false;
        QTest::newRow("below it") << QPointF(80, 20) << false;
    }
    void theSquareThatIsHit() {
        QFETCH(QPointF, position);
        QFETCH(bool, isHit);
        QSignalSpy asked(m_delegate, &ExitItemDelegate::handleDeleteClick);
        QCOMPARE(Send(QEvent::MouseButtonPress, 2, position), isHit);
        QCOMPARE(asked.count(), isHit ? 1 : 0);
        if (isHit) {
            QCOMPARE(asked.first().first().toInt(), 2);
        }
    }

    void otherRowsAndButtonsDoNotAsk_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("button");
        QTest::newRow("add entry") << 0 << int(Qt::LeftButton);
        QTest::newRow("first built-in picture") << 3 << int(Qt::LeftButton);
        QTest::newRow("last built-in picture") << 13 << int(Qt::LeftButton);
        QTest::newRow("right button") << 1 << int(Qt::RightButton);
    }
    void otherRowsAndButtonsDoNotAsk() {
        QFETCH(int, row);
        QFETCH(int, button);
        QSignalSpy asked(m_delegate, &ExitItemDelegate::handleDeleteClick);
        QVERIFY(!Send(QEvent::MouseButtonPress, row, QPointF(75, 10), Qt::MouseButton(button)));
        QCOMPARE(asked.count(), 0);
    }

    void aReleaseAloneAsksToo() {
        QSignalSpy asked(m_delegate, &ExitItemDelegate::handleDeleteClick);
        QVERIFY(Send(QEvent::MouseButtonRelease, 1, QPointF(75, 10)));
        QCOMPARE(asked.count(), 1);
    }

    void aClickInTheListAsksOnceAndDoesNotSelect() {
        QSignalSpy asked(m_delegate, &ExitItemDelegate::handleDeleteClick);
        const QPoint cross = ExitItemDelegate::CrossRect(m_list->visualItemRect(m_list->item(2))).center();
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, cross);
        QCOMPARE(asked.count(), 1);
        QCOMPARE(m_list->currentRow(), 5);
    }

    void aDoubleClickAsksOnce() {
        QSignalSpy asked(m_delegate, &ExitItemDelegate::handleDeleteClick);
        const QPoint cross = ExitItemDelegate::CrossRect(m_list->visualItemRect(m_list->item(2))).center();
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, cross);
        QTest::mouseDClick(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, cross);
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, cross);
        QCOMPARE(asked.count(), 1);
    }

    void aDragThatEndsOnTheCrossDoesNotAsk() {
        QSignalSpy asked(m_delegate, &ExitItemDelegate::handleDeleteClick);
        const QRect item = m_list->visualItemRect(m_list->item(2));
        QTest::mousePress(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, item.center());
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, Qt::NoModifier,
                            ExitItemDelegate::CrossRect(item).center());
        QCOMPARE(asked.count(), 0);
    }

    void theRowMayGoWhileItIsAskedFor() {
        connect(m_delegate, &ExitItemDelegate::handleDeleteClick, m_list.get(),
                [this](int row) { delete m_list->takeItem(row); });
        const QPoint cross = ExitItemDelegate::CrossRect(m_list->visualItemRect(m_list->item(1))).center();
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, cross);
        QCOMPARE(m_list->count(), 13);
    }

    void aClickBelongsToThePlaceOfItsPress() {
        const QRect item = m_list->visualItemRect(m_list->item(2));
        const QPoint cross = ExitItemDelegate::CrossRect(item).center();
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, item.center());
        QVERIFY(!m_delegate->IsClickOnCross());
        QTest::mousePress(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, cross);
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, item.center());
        QVERIFY(m_delegate->IsClickOnCross());
        QTest::mousePress(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, item.center());
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, Qt::NoModifier, cross);
        QVERIFY(!m_delegate->IsClickOnCross());
    }

    void theChosenRowHasTheFrame() {
        const QColor frame(0x4F, 0xE0, 0xC0);
        const QImage chosen = m_list->viewport()->grab().toImage();
        const QRect item = m_list->visualItemRect(m_list->item(5));
        QCOMPARE(chosen.pixelColor(item.left(), item.center().y()), frame);
        QCOMPARE(chosen.pixelColor(item.left() + 1, item.center().y()), frame);
        QVERIFY(chosen.pixelColor(item.left() + 2, item.center().y()) != frame);
        QVERIFY(chosen.pixelColor(item.left() - 1, item.center().y()) != frame);
        QCOMPARE(chosen.pixelColor(item.right(), item.center().y()), frame);
        QCOMPARE(chosen.pixelColor(item.center().x(), item.bottom()), frame);
        const QRect other = m_list->visualItemRect(m_list->item(6));
        QVERIFY(chosen.pixelColor(other.left(), other.center().y()) != frame);
    }

    void namesStayInTheirItem() {
        m_list->item(1)->setText(QStringLiteral("a name that is far too long for its item"));
        const QImage image = DrawRow(1);
        for (int y = 61; y < 80; ++y) {
            QCOMPARE(image.pixelColor(0, y), QColor(Qt::black));
            QCOMPARE(image.pixelColor(88, y), QColor(Qt::black));
        }
        bool hasInk = false;
        for (int x = 0; x < 89; ++x) {
            hasInk = hasInk || image.pixelColor(x, 70) != QColor(Qt::black);
        }
        QVERIFY(hasInk);
    }

private:
    void MakeList(int count) {
        m_list = std::make_unique<MyListWidget>();
        m_list->ShowAsGrid(QSize(77, 54), QSize(97, 80));
        m_delegate = new OpenDelegate;
        m_delegate->setParent(m_list.get());
        m_list->setItemDelegate(m_delegate);
        QPixmap red(77, 54);
        red.fill(Qt::red);
        for (int row = 0; row < count; ++row) {
            m_list->addItem(new QListWidgetItem(QIcon(red), QString()));
        }
        m_list->setCurrentRow(5);
        m_list->resize(390, 340);
        m_list->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_list.get()));
    }

    static QStyleOptionViewItem Option() {
        QStyleOptionViewItem option;
        option.rect = QRect(0, 0, 89, 80);
        option.decorationSize = QSize(77, 54);
        return option;
    }

    QImage DrawRow(int row) const {
        QImage image(89, 80, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        m_delegate->paint(&painter, Option(), m_list->model()->index(row, 0));
        return image;
    }

    bool Send(QEvent::Type type, int row, const QPointF& position, Qt::MouseButton button = Qt::LeftButton) {
        QMouseEvent event(type, position, button, button, Qt::NoModifier);
        return m_delegate->editorEvent(&event, m_list->model(), Option(), m_list->model()->index(row, 0));
    }

    std::unique_ptr<MyListWidget> m_list;
    OpenDelegate* m_delegate = nullptr;
};

KIVO_TEST(TestExitItemDelegate)
#include "tst_exit_item_delegate.moc"
