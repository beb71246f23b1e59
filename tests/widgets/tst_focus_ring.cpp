#include <QDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest>
#include <memory>

#include "support/test_program.h"
#include "widgets/focus_ring.h"
#include "widgets/window_colors.h"

using namespace kivo;

class TestFocusRing : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_window = std::make_unique<QWidget>();
        m_window->resize(300, 200);
        m_first = new QPushButton(m_window.get());
        m_first->setGeometry(20, 20, 80, 30);
        m_second = new QPushButton(m_window.get());
        m_second->setGeometry(20, 80, 80, 30);
        m_ring = new FocusRing(m_window.get());
        m_window->show();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        m_first->setFocus();
        QTest::mouseClick(m_first, Qt::LeftButton);
    }

    void theTabKeyBringsIt() {
        QVERIFY(m_ring->isHidden());
        QTest::keyClick(m_window.get(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_second);
        QCOMPARE(m_ring->RingedWidget(), m_second);
        QCOMPARE(m_ring->geometry(), m_second->geometry().adjusted(-4, -4, 4, 4));
        QTest::keyClick(m_window.get(), Qt::Key_Backtab);
        QCOMPARE(m_ring->RingedWidget(), m_first);
    }

    void theMouseTakesItAway() {
        QTest::keyClick(m_window.get(), Qt::Key_Tab);
        QVERIFY(m_ring->isVisible());
        QTest::mouseClick(m_first, Qt::LeftButton);
        QCOMPARE(QApplication::focusWidget(), m_first);
        QVERIFY(m_ring->isHidden());
    }

    void aClickThatHidesTheFocusWidgetBringsNone() {
        connect(m_first, &QPushButton::clicked, m_first, &QWidget::hide);
        QTest::mouseClick(m_first, Qt::LeftButton);
        QCOMPARE(QApplication::focusWidget(), m_second);
        QVERIFY(m_ring->isHidden());
    }

    void aKeyThatHidesTheFocusWidgetPassesItOn() {
        QTest::keyClick(m_window.get(), Qt::Key_Tab);
        connect(m_second, &QPushButton::clicked, m_second, &QWidget::hide);
        QTest::keyClick(m_second, Qt::Key_Space);
        QCOMPARE(m_ring->RingedWidget(), m_first);
    }

    void itFollowsItsWidget() {
        QTest::keyClick(m_window.get(), Qt::Key_Tab);
        m_second->setGeometry(100, 60, 50, 40);
        QCOMPARE(m_ring->geometry(), QRect(96, 56, 58, 48));
        m_second->move(0, 0);
        QCOMPARE(m_ring->geometry(), QRect(0, 0, 54, 44));  // not beyond the window
        m_second->hide();
        QVERIFY(m_ring->RingedWidget() != m_second);
    }

    void itLetsTheMouseThrough() {
        QTest::keyClick(m_window.get(), Qt::Key_Tab);
        QCOMPARE(m_window->childAt(m_second->geometry().center()), m_second);
        QCOMPARE(m_ring->focusPolicy(), Qt::NoFocus);
    }

    void itIsTwoPixelsOfAccentTwoPixelsOutside() {
        QTest::keyClick(m_window.get(), Qt::Key_Tab);
        const QImage image = m_window->grab().toImage();
        const QRect button = m_second->geometry();
        const int y = button.center().y();
        QCOMPARE(image.pixelColor(button.left() - 4, y), window_colors::kAccentBright);
        QCOMPARE(image.pixelColor(button.left() - 3, y), window_colors::kAccentBright);
        QVERIFY(image.pixelColor(button.left() - 2, y) != window_colors::kAccentBright);
        QVERIFY(image.pixelColor(button.left() - 5, y) != window_colors::kAccentBright);
    }

    void aWidgetMayRefuseIt() {
        m_second->setProperty("noFocusRing", true);
        QTest::keyClick(m_window.get(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_second);
        QVERIFY(m_ring->isHidden());
    }

    // A line that is opened over a list, and closed again.
    void aWidgetThatRefusesItHandsItBack_data() {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("by key") << true;
        QTest::newRow("by mouse") << false;
    }
    void aWidgetThatRefusesItHandsItBack() {
        QFETCH(bool, byKey);
        m_second->setProperty("noFocusRing", true);
        m_first->setFocus(Qt::TabFocusReason);
        if (byKey) {
            QTest::keyClick(m_window.get(), Qt::Key_Tab);
        } else {
            QTest::mouseClick(m_second, Qt::LeftButton);
        }
        QCOMPARE(QApplication::focusWidget(), m_second);
        m_first->setFocus(Qt::OtherFocusReason);
        QCOMPARE(m_ring->RingedWidget(), byKey ? m_first : nullptr);
    }

    void itWaitsWhileAnotherWindowHasTheKeyboard() {
        QTest::keyClick(m_window.get(), Qt::Key_Tab);
        QDialog dialog(m_window.get());
        QPushButton inside(&dialog);
        dialog.show();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTRY_VERIFY(m_ring->isHidden());
        dialog.hide();
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTRY_COMPARE(m_ring->RingedWidget(), m_second);
    }

    void theRingedWidgetMayGo() {
        QTest::keyClick(m_window.get(), Qt::Key_Tab);
        delete m_second;
        QVERIFY(m_ring->RingedWidget() == nullptr || m_ring->RingedWidget() == m_first);
        m_first->move(30, 30);
        m_window->grab();
    }

private:
    std::unique_ptr<QWidget> m_window;
    QPushButton* m_first = nullptr;
    QPushButton* m_second = nullptr;
    FocusRing* m_ring = nullptr;
};

KIVO_TEST(TestFocusRing)
#include "tst_focus_ring.moc"
