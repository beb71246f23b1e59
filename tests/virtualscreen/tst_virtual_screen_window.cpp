#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>
#include <memory>
#include <thread>

#include "device/transfers.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_screen_window.h"

using namespace kivo;

class TestVirtualScreenWindow : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_screen = std::make_unique<VirtualHidApi>();
        m_session = std::make_unique<ScreenSession>(*m_screen);
        m_session->InitDeviceTable();
        m_session->EnumerateScreens();
        m_transfers = std::make_unique<Transfers>(*m_session);
        m_window = std::make_unique<VirtualScreenWindow>(*m_screen);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void cleanup() { m_window.reset(); }

    void showsThePanelTwiceAsLarge() {
        QCOMPARE(View()->size(), QSize(640, 340));
        const std::vector<quint8> red = Pixels(0xF8, 0x00);
        QCOMPARE(m_transfers->SendAreaImageWithPos(red.data(), 100, 50, 1, 1), TransferResult::Taken);
        QTRY_COMPARE(ViewPixel(200, 100), qRgb(255, 0, 0));
        QCOMPARE(ViewPixel(201, 101), qRgb(255, 0, 0));
        QCOMPARE(ViewPixel(202, 100), qRgb(0, 0, 0));
        QCOMPARE(ViewPixel(199, 100), qRgb(0, 0, 0));
    }

    void showsPortraitUpright() {
        const std::vector<quint8> red = Pixels(0xF8, 0x00);
        QCOMPARE(m_transfers->SendAreaImageWithPos(red.data(), 0, 169, 1, 1), TransferResult::Taken);
        QCOMPARE(m_transfers->SendOrientation(1), TransferResult::Taken);
        QTRY_COMPARE(View()->size(), QSize(340, 640));
        QTRY_COMPARE(ViewPixel(0, 0), qRgb(255, 0, 0));
        QCOMPARE(m_transfers->SendOrientation(0), TransferResult::Taken);
        QTRY_COMPARE(View()->size(), QSize(640, 340));
        QTRY_COMPARE(ViewPixel(0, 338), qRgb(255, 0, 0));
    }

    void theButtonsPullAndPlug() {
        QPushButton* const unplug = Button(QStringLiteral("拔出"));
        QPushButton* const plug = Button(QStringLiteral("插入"));
        QVERIFY(unplug->isEnabled());
        QVERIFY(!plug->isEnabled());
        QTest::mouseClick(unplug, Qt::LeftButton);
        QVERIFY(!m_screen->IsPlugged());
        QTRY_VERIFY(plug->isEnabled());
        QVERIFY(!unplug->isEnabled());
        QTest::mouseClick(plug, Qt::LeftButton);
        QVERIFY(m_screen->IsPlugged());
        QTRY_VERIFY(unplug->isEnabled());
    }

    void theButtonsFollowAScreenThatVanishes() {
        m_screen->VanishAtReport(1);
        QCOMPARE(m_transfers->SendTimeSync(), TransferResult::Refused);
        QTRY_VERIFY(Button(QStringLiteral("插入"))->isEnabled());
    }

    void thePictureComesBackWithTheScreen() {
        const std::vector<quint8> red = Pixels(0xF8, 0x00);
        QCOMPARE(m_transfers->SendAreaImageWithPos(red.data(), 0, 0, 1, 1), TransferResult::Taken);
        QTRY_COMPARE(ViewPixel(0, 0), qRgb(255, 0, 0));
        m_screen->Unplug();
        QTRY_VERIFY(ViewPixel(0, 0) != qRgb(255, 0, 0));
        m_screen->Plug();
        QTRY_COMPARE(ViewPixel(0, 0), qRgb(255, 0, 0));
    }

    void saysHowMuchIsSentAndRests() {
        auto* const label = m_window->findChild<QLabel*>();
        QCOMPARE(label->text(), QStringLiteral("0 报告/秒   0 字节/秒"));
        QCOMPARE(m_transfers->SendTimeSync(), TransferResult::Taken);
        QTRY_VERIFY(!label->text().startsWith(QLatin1String("0 ")));
        QTRY_COMPARE(label->text(), QStringLiteral("0 报告/秒   0 字节/秒"));
        // Nothing is polled when nothing happens.
        const auto timers = m_window->findChildren<QTimer*>();
        for (const QTimer* timer : timers) {
            QTRY_VERIFY(!timer->isActive());
        }
        QVERIFY(!timers.isEmpty());
    }

    void reportsOfAnotherThreadAreShown() {
        std::thread sender([this] {
            const std::vector<quint8> red = Pixels(0xF8, 0x00);
            for (int i = 0; i < 200; ++i) {
                m_transfers->SendAreaImageWithPos(red.data(), i, 0, 1, 1);
            }
        });
        QTRY_COMPARE(ViewPixel(398, 0), qRgb(255, 0, 0));
        sender.join();
    }

    void theWindowMayGoWhileReportsArrive() {
        std::atomic<bool> stop{false};
        std::thread sender([this, &stop] {
            while (!stop) {
                m_transfers->SendTimeSync();
            }
        });
        QTest::qWait(50);
        m_window.reset();
        stop = true;
        sender.join();
        QCOMPARE(m_screen->State().counts.errors, quint64{0});
    }

private:
    static std::vector<quint8> Pixels(quint8 high, quint8 low) { return {high, low}; }

    // The one child that is neither a button nor a label.
    QWidget* View() const {
        for (QWidget* child : m_window->findChildren<QWidget*>()) {
            if (qobject_cast<QPushButton*>(child) == nullptr && qobject_cast<QLabel*>(child) == nullptr) {
                return child;
            }
        }
        return nullptr;
    }

    QRgb ViewPixel(int x, int y) const { return View()->grab().toImage().pixel(x, y); }

    QPushButton* Button(const QString& text) const {
        for (QPushButton* button : m_window->findChildren<QPushButton*>()) {
            if (button->text() == text) {
                return button;
            }
        }
        return nullptr;
    }

    std::unique_ptr<VirtualHidApi> m_screen;
    std::unique_ptr<ScreenSession> m_session;
    std::unique_ptr<Transfers> m_transfers;
    std::unique_ptr<VirtualScreenWindow> m_window;
};

KIVO_TEST(TestVirtualScreenWindow)
#include "tst_virtual_screen_window.moc"
