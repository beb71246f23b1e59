#include <QtTest>

#include "support/test_program.h"
#include "window/window_place.h"

using namespace kivo;

namespace {

constexpr QSize kWindow(960, 588);
constexpr int kHead = 100;
const QRect kDesk(0, 0, 1920, 1040);

}  // namespace

class TestWindowPlace : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void CentredIn_data() {
        QTest::addColumn<QRect>("room");
        QTest::addColumn<QPoint>("corner");
        QTest::newRow("a desk") << kDesk << QPoint(480, 226);
        QTest::newRow("a desk beside another") << QRect(1920, -200, 1920, 1040) << QPoint(2400, 26);
        QTest::newRow("too low") << QRect(0, 30, 1920, 400) << QPoint(480, 30);
        QTest::newRow("too narrow") << QRect(10, 0, 800, 1040) << QPoint(10, 226);
    }
    void CentredIn() {
        QFETCH(QRect, room);
        QTEST(kivo::CentredIn(room, kWindow), "corner");
    }

    void BroughtInto_data() {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<QVector<QRect>>("rooms");
        QTest::addColumn<QPoint>("corner");
        const QRect right(1920, 0, 1280, 984);
        QTest::newRow("in sight") << QPoint(3, 7) << QVector<QRect>{kDesk} << QPoint(3, 7);
        QTest::newRow("a desk that shrank")
            << QPoint(900, 400) << QVector<QRect>{{0, 0, 1024, 728}} << QPoint(64, 140);
        QTest::newRow("left and above") << QPoint(-836, -30) << QVector<QRect>{kDesk} << QPoint(0, 0);
        QTest::newRow("over two desks, more on the first")
            << QPoint(1300, 50) << QVector<QRect>{kDesk, right} << QPoint(960, 50);
        QTest::newRow("over two desks, more on the second")
            << QPoint(1600, 50) << QVector<QRect>{kDesk, right} << QPoint(1920, 50);
        QTest::newRow("on none of two")
            << QPoint(4000, 300) << QVector<QRect>{kDesk, right} << QPoint(2240, 300);
        QTest::newRow("too small a room")
            << QPoint(500, 500) << QVector<QRect>{{100, 20, 800, 480}} << QPoint(100, 20);
        QTest::newRow("no room at all") << QPoint(5, 6) << QVector<QRect>{} << QPoint(5, 6);
    }
    void BroughtInto() {
        QFETCH(QPoint, at);
        QFETCH(QVector<QRect>, rooms);
        QTEST(kivo::BroughtInto(QRect(at, kWindow), rooms), "corner");
    }

    void IsHeadInSight_data() {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<bool>("isInSight");
        QTest::newRow("whole") << QPoint(100, 100) << true;
        QTest::newRow("half of it, to the right") << QPoint(1440, 100) << true;
        QTest::newRow("less than half") << QPoint(1441, 100) << false;
        QTest::newRow("124 pixels") << QPoint(1796, 100) << false;
        QTest::newRow("half of it, above") << QPoint(100, -50) << true;
        QTest::newRow("too high") << QPoint(100, -51) << false;
        QTest::newRow("its foot is out of sight") << QPoint(100, 980) << true;
        QTest::newRow("nothing") << QPoint(3000, 100) << false;
    }
    void IsHeadInSight() {
        QFETCH(QPoint, at);
        QTEST(kivo::IsHeadInSight(QRect(at, kWindow), kHead, {kDesk}), "isInSight");
    }
};

KIVO_GUILESS_TEST(TestWindowPlace)
#include "tst_window_place.moc"
