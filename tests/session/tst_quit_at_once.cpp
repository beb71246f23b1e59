#include <QEvent>
#include <QGuiApplication>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "session/quit_at_once.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

// As the main window, which goes to the tray instead.
class StubbornWindow : public QWindow {
public:
    int asked = 0;

protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::Close) {
            ++asked;
            event->ignore();
            return true;
        }
        return QWindow::event(event);
    }
};

}  // namespace

class TestQuitAtOnce : public QObject {
    Q_OBJECT

private slots:
    void noWindowIsAsked_data() {
        QTest::addColumn<bool>("isShown");
        QTest::addColumn<bool>("bySystem");
        QTest::newRow("shown, by the program") << true << false;
        QTest::newRow("shown, by the system") << true << true;
        QTest::newRow("put away, by the program") << false << false;
        QTest::newRow("put away, by the system") << false << true;
    }
    void noWindowIsAsked() {
        QFETCH(bool, isShown);
        QFETCH(bool, bySystem);
        const QuitAtOnce quitAtOnce;
        StubbornWindow window;
        window.create();
        window.setVisible(isShown);
        constexpr int kStillRunning = 7;
        QTimer::singleShot(5000, &window, [] { QCoreApplication::exit(kStillRunning); });
        QTimer::singleShot(0, &window, [bySystem] {
            if (bySystem) {
                QCoreApplication::postEvent(qApp, new QEvent(QEvent::Quit));
            } else {
                QCoreApplication::quit();
            }
        });
        QCOMPARE(QGuiApplication::exec(), 0);
        QCOMPARE(window.asked, 0);
    }
};

KIVO_TEST(TestQuitAtOnce)
#include "tst_quit_at_once.moc"
