#include <QtTest>

#include "reserved/zoom_label.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

class WatchingParent : public QWidget {
public:
    int events = 0;

protected:
    void mousePressEvent(QMouseEvent* /*event*/) override { ++events; }
    void mouseReleaseEvent(QMouseEvent* /*event*/) override { ++events; }
    void mouseMoveEvent(QMouseEvent* /*event*/) override { ++events; }
};

}  // namespace

class TestZoomLabel : public QObject {
    Q_OBJECT

private slots:
    void keepsTheMouseToItself() {
        WatchingParent parent;
        ZoomLabel label(&parent);
        label.setMouseTracking(true);
        label.resize(40, 20);
        parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&parent));
        QTest::mousePress(&label, Qt::LeftButton);
        QTest::mouseMove(&label, QPoint(3, 3));
        QTest::mouseRelease(&label, Qt::LeftButton);
        QCOMPARE(parent.events, 0);
    }

    void showsNothing() {
        ZoomLabel label;
        label.resize(60, 20);
        const QImage empty = label.grab().toImage();
        label.setText(QStringLiteral("text"));
        QCOMPARE(label.grab().toImage(), empty);
    }

    void keepsWhatItIsGiven() {
        ZoomLabel label;
        label.SetHeldText(QStringLiteral("45"));
        label.SetShownFlag(1);
        label.SetSelectedFlag(2);
        QCOMPARE(label.HeldText(), QStringLiteral("45"));
        QCOMPARE(label.ShownFlag(), quint8{1});
        QCOMPARE(label.SelectedFlag(), quint8{2});
        QCOMPARE(label.text(), QString());
    }
};

KIVO_TEST(TestZoomLabel)
#include "tst_zoom_label.moc"
