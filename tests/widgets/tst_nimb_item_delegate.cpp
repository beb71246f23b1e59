#include <QPainter>
#include <QStandardItemModel>
#include <QtTest>

#include "support/test_program.h"
#include "widgets/nimb_item_delegate.h"

using namespace kivo;

class TestNimbItemDelegate : public QObject {
    Q_OBJECT

private slots:
    void frameForTheChosenAndForTheOneUnderTheMouse_data() {
        QTest::addColumn<int>("state");
        QTest::addColumn<QColor>("frame");
        QTest::addColumn<bool>("hasCheck");
        const QColor chosen(0x4F, 0xE0, 0xC0);
        QTest::newRow("plain") << int(QStyle::State_Enabled) << QColor(Qt::black) << false;
        QTest::newRow("chosen") << int(QStyle::State_Enabled | QStyle::State_Selected) << chosen << true;
        QTest::newRow("under the mouse")
            << int(QStyle::State_Enabled | QStyle::State_MouseOver) << QColor(0x46, 0x56, 0x64) << false;
        QTest::newRow("chosen, under the mouse")
            << int(QStyle::State_Enabled | QStyle::State_Selected | QStyle::State_MouseOver) << chosen
            << true;
    }
    void frameForTheChosenAndForTheOneUnderTheMouse() {
        QFETCH(int, state);
        QFETCH(QColor, frame);
        QFETCH(bool, hasCheck);
        const QImage image = Draw(QStyle::State(state), 1.0);
        QCOMPARE(image.pixelColor(10, 65), frame);
        QCOMPARE(image.pixelColor(106, 65), frame);
        QCOMPARE(image.pixelColor(50, 10), frame);
        QCOMPARE(image.pixelColor(50, 119), frame);
        // Card between it and the picture.
        QCOMPARE(image.pixelColor(12, 65), QColor(Qt::black));
        QCOMPARE(image.pixelColor(15, 65), QColor(Qt::black));
        QCOMPARE(image.pixelColor(16, 65), QColor(Qt::green));
        // The disc, beside its check.
        QCOMPARE(image.pixelColor(93, 98), hasCheck ? frame : QColor(Qt::green));
    }

    // What an item has painted outside of these pixels would stay there after it has changed.
    void frameKeepsToPixelsThatAreTheItemsAlone_data() {
        QTest::addColumn<qreal>("ratio");
        QTest::addColumn<QPoint>("corner");
        for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
            for (const QPoint corner : {QPoint(10, 10), QPoint(11, 13), QPoint(7, 5)}) {
                QTest::addRow("%g times at %d, %d", ratio, corner.x(), corner.y()) << ratio << corner;
            }
        }
    }
    void frameKeepsToPixelsThatAreTheItemsAlone() {
        QFETCH(qreal, ratio);
        QFETCH(QPoint, corner);
        for (const QStyle::StateFlag state : {QStyle::State_Selected, QStyle::State_MouseOver}) {
            const QImage image = Draw(QStyle::State_Enabled | state, ratio, corner);
            const QRectF item(QPointF(corner) * ratio, QSizeF(kItem) * ratio);
            QVERIFY(image.pixelColor(qCeil(item.left()), qRound(item.center().y())) != QColor(Qt::black));
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    if (!item.contains(QRectF(x, y, 1, 1))) {
                        QVERIFY2(image.pixelColor(x, y) == QColor(Qt::black),
                                 qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
                    }
                }
            }
        }
    }

    void thePictureHasItsPlaceAndSize() {
        const QImage image = Draw(QStyle::State_Enabled, 1.0);
        QCOMPARE(image.pixelColor(10 + 6, 10 + 55), QColor(Qt::green));
        QCOMPARE(image.pixelColor(10 + 6 + 84, 10 + 55), QColor(Qt::green));
        QCOMPARE(image.pixelColor(10 + 6 + 85, 10 + 55), QColor(Qt::black));
        QCOMPARE(image.pixelColor(10 + 48, 10 + 6 + 97), QColor(Qt::green));
        QCOMPARE(image.pixelColor(10 + 48, 10 + 6 + 98), QColor(Qt::black));
        QCOMPARE(image.pixelColor(10 + 6, 10 + 6), QColor(Qt::black));  // a round corner
    }

    void picturesAreSharpOnScaledScreens() {
        // Columns of one device pixel, black and white in turn: any scaling would mix them.
        const QImage image = Draw(QStyle::State_Enabled, 2.0);
        for (int x = 40; x < 60; ++x) {
            const int grey = image.pixelColor(x, 130).green();
            QVERIFY2(grey == 0 || grey == 255, qPrintable(QString::number(grey)));
            QVERIFY(image.pixelColor(x, 130) != image.pixelColor(x + 1, 130));
        }
    }

    // The view paints all its items with one painter.
    void thePainterIsLeftAsItWas() {
        for (const QStyle::StateFlag state : {QStyle::State_Selected, QStyle::State_MouseOver}) {
            QStandardItemModel model(1, 1);
            QStyleOptionViewItem option;
            option.rect = QRect(QPoint(10, 10), kItem);
            option.decorationSize = QSize(85, 98);
            option.state = QStyle::State_Enabled | state;
            QImage image(QSize(120, 130), QImage::Format_RGB32);
            image.fill(Qt::black);
            QPainter painter(&image);
            painter.setPen(QPen(Qt::red, 3));
            painter.setBrush(Qt::blue);
            NimbItemDelegate().paint(&painter, option, model.index(0, 0));
            QCOMPARE(painter.pen(), QPen(Qt::red, 3));
            QCOMPARE(painter.brush(), QBrush(Qt::blue));
            QVERIFY(!painter.testRenderHint(QPainter::Antialiasing));
        }
    }

    void sizesOfTheItems() {
        const NimbItemDelegate delegate;
        QStandardItemModel model(2, 1);
        model.setData(model.index(1, 0), QStringLiteral("name"));
        QStyleOptionViewItem option;
        option.decorationSize = QSize(85, 98);
        QCOMPARE(delegate.sizeHint(option, model.index(0, 0)), QSize(97, 110));
        option.decorationSize = QSize(77, 54);
        QCOMPARE(delegate.sizeHint(option, model.index(1, 0)), QSize(89, 80));
    }

private:
    static constexpr QSize kItem{97, 110};

    static QImage Draw(QStyle::State state, qreal ratio, QPoint corner = {10, 10}) {
        QPixmap picture(QSize(85, 98) * ratio);
        picture.fill(Qt::green);
        if (ratio > 1) {
            QPainter stripes(&picture);
            for (int x = 0; x < picture.width(); ++x) {
                stripes.fillRect(x, 0, 1, picture.height(), x % 2 == 0 ? Qt::black : Qt::white);
            }
            stripes.end();
            picture.setDevicePixelRatio(ratio);
        }
        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), QIcon(picture), Qt::DecorationRole);
        QStyleOptionViewItem option;
        option.rect = QRect(corner, kItem);
        option.decorationSize = QSize(85, 98);
        option.state = state;
        QImage image(QSize(120, 130) * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::black);
        QPainter painter(&image);
        NimbItemDelegate().paint(&painter, option, model.index(0, 0));
        painter.end();
        return image;
    }
};

KIVO_TEST(TestNimbItemDelegate)
#include "tst_nimb_item_delegate.moc"
