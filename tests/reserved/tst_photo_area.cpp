#include <QtTest>

#include "reserved/photo_area.h"
#include "support/test_program.h"

using namespace kivo;

class TestPhotoArea : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aPhotoAreaIsFoundByItsType() {
        QWidget window;
        PhotoArea area(&window);
        QWidget other(&window);
        QCOMPARE(window.findChildren<PhotoArea*>(), QList<PhotoArea*>{&area});
    }
};

KIVO_TEST(TestPhotoArea)
#include "tst_photo_area.moc"
