#include <QPainter>
#include <QTemporaryDir>
#include <QtTest>

#include "support/test_program.h"
#include "widgets/sharp_picture.h"

using namespace kivo;

class TestSharpPicture : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        QVERIFY(m_folder.isValid());
        Save(QStringLiteral("both.png"), 10, Qt::red);
        Save(QStringLiteral("both@2x.png"), 20, Qt::blue);
        Save(QStringLiteral("one.png"), 10, Qt::red);
    }

    void theOneThatSuitsTheDeviceIsDrawn_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<qreal>("ratio");
        QTest::addColumn<QColor>("color");
        QTest::newRow("100 %") << QStringLiteral("both.png") << 1.0 << QColor(Qt::red);
        QTest::newRow("150 %") << QStringLiteral("both.png") << 1.5 << QColor(Qt::blue);
        QTest::newRow("200 %") << QStringLiteral("both.png") << 2.0 << QColor(Qt::blue);
        QTest::newRow("200 %, no double picture") << QStringLiteral("one.png") << 2.0 << QColor(Qt::red);
    }
    void theOneThatSuitsTheDeviceIsDrawn() {
        QFETCH(QString, name);
        QFETCH(qreal, ratio);
        QFETCH(QColor, color);
        const SharpPicture picture(m_folder.filePath(name));
        QVERIFY(!picture.IsNull());
        QImage image((QSizeF(30, 40) * ratio).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::black);
        QPainter painter(&image);
        picture.Draw(painter, QRectF(4, 4, 20, 30));
        painter.end();
        const auto at = [&image, ratio](qreal x, qreal y) {
            return image.pixelColor(int(x * ratio), int(y * ratio));
        };
        QCOMPARE(at(5, 5), color);
        QCOMPARE(at(23, 33), color);
        QCOMPARE(at(2, 2), QColor(Qt::black));
        QCOMPARE(at(25, 35), QColor(Qt::black));
    }

    // Most pictures of a window are those of states that nobody brings about.
    void nothingIsReadBeforeItIsDrawn() {
        const SharpPicture picture(m_folder.filePath(QStringLiteral("later.png")));
        Save(QStringLiteral("later.png"), 10, Qt::green);
        QImage image(10, 10, QImage::Format_RGB32);
        QPainter painter(&image);
        picture.Draw(painter, image.rect());
        painter.end();
        QCOMPARE(image.pixelColor(5, 5), QColor(Qt::green));
    }

    void aMissingPictureDrawsNothing() {
        const SharpPicture picture(QStringLiteral("://skins/there_is_none.png"));
        QVERIFY(picture.IsNull());
        QVERIFY(SharpPicture(QString()).IsNull());
        QImage image(10, 10, QImage::Format_RGB32);
        image.fill(Qt::black);
        const QImage before = image;
        QPainter painter(&image);
        picture.Draw(painter, image.rect());
        painter.end();
        QCOMPARE(image, before);
    }

    void fitsKeepTheShape() {
        const SharpPicture square(m_folder.filePath(QStringLiteral("both.png")));
        QCOMPARE(square.FittedSize(QSizeF(18, 30)), QSizeF(18, 18));
    }

private:
    void Save(const QString& name, int size, Qt::GlobalColor color) {
        QImage image(size, size, QImage::Format_RGB32);
        image.fill(color);
        QVERIFY(image.save(m_folder.filePath(name)));
    }

    QTemporaryDir m_folder;
};

KIVO_TEST(TestSharpPicture)
#include "tst_sharp_picture.moc"
