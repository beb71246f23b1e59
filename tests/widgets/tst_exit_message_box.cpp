#include <QScreen>
#include <QSignalSpy>
#include <QTimer>
#include <QtTest>
#include <memory>

#include "support/test_program.h"
#include "widgets/exit_message_box.h"
#include "widgets/nimb_push_button.h"
#include "widgets/window_colors.h"

using namespace kivo;

namespace {

const QString kQuestion = QStringLiteral("退出软件PC端屏幕内容显示信息将不准，\n确定退出？");
const ExitMessageBox::Question kAsked{QStringLiteral("Exit?"), kQuestion, QStringLiteral("Exit")};

NimbPushButton* OkOf(const ExitMessageBox& box) {
    return box.findChild<NimbPushButton*>(QStringLiteral("btnOk"));
}

NimbPushButton* CancelOf(const ExitMessageBox& box) {
    return box.findChild<NimbPushButton*>(QStringLiteral("btnCancel"));
}

// Runs on the box that comes up next.
void Answer(const std::function<void(ExitMessageBox&)>& answer) {
    QTimer::singleShot(0, qApp, [answer] {
        auto* const box = qobject_cast<ExitMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box != nullptr);
        answer(*box);
    });
}

}  // namespace

class TestExitMessageBox : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
        m_window->setGeometry(100, 80, 960, 588);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void asksAndAnswers_data() {
        QTest::addColumn<QString>("way");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("OK") << QStringLiteral("ok") << true;
        QTest::newRow("Cancel") << QStringLiteral("cancel") << false;
        QTest::newRow("Escape") << QStringLiteral("escape") << false;
        QTest::newRow("Enter takes the default") << QStringLiteral("enter") << true;
        QTest::newRow("Enter takes the focused button") << QStringLiteral("tab enter") << false;
        QTest::newRow("closed from outside") << QStringLiteral("close") << false;
    }
    void asksAndAnswers() {
        QFETCH(QString, way);
        QFETCH(bool, accepted);
        Answer([way](ExitMessageBox& box) {
            if (way == QLatin1String("ok")) {
                QTest::mouseClick(OkOf(box), Qt::LeftButton);
            } else if (way == QLatin1String("cancel")) {
                QTest::mouseClick(CancelOf(box), Qt::LeftButton);
            } else if (way == QLatin1String("escape")) {
                QTest::keyClick(&box, Qt::Key_Escape);
            } else if (way == QLatin1String("enter")) {
                QTest::keyClick(&box, Qt::Key_Return);
            } else if (way == QLatin1String("tab enter")) {
                QTest::keyClick(CancelOf(box), Qt::Key_Return);
            } else {
                box.close();
            }
        });
        QCOMPARE(ExitMessageBox::Ask(m_window.get(), kAsked), accepted);
    }

    void tellsWithOneButton() {
        bool hadCancel = true;
        Answer([&hadCancel](ExitMessageBox& box) {
            hadCancel = CancelOf(box)->isVisible();
            QTest::mouseClick(OkOf(box), Qt::LeftButton);
        });
        ExitMessageBox::Tell(m_window.get(), QStringLiteral("默认图片不能删除。"));
        QVERIFY(!hadCancel);
    }

    void hasItsWords() {
        const ExitMessageBox box(kQuestion, m_window.get());
        QCOMPARE(box.windowTitle(), QStringLiteral("温馨提示"));
        QCOMPARE(OkOf(box)->text(), QStringLiteral("确定"));
        QCOMPARE(CancelOf(box)->text(), QStringLiteral("取消"));
        QCOMPARE(box.Text(), kQuestion);
        QCOMPARE(box.accessibleDescription(), kQuestion);
        QVERIFY(box.windowFlags().testFlag(Qt::FramelessWindowHint));
    }

    void aQuestionHasWordsOfItsOwn() {
        const ExitMessageBox box(kAsked, m_window.get());
        QCOMPARE(box.windowTitle(), kAsked.title);
        QCOMPARE(box.accessibleName(), kAsked.title);
        QCOMPARE(OkOf(box)->text(), kAsked.yes);
        QCOMPARE(CancelOf(box)->text(), QStringLiteral("取消"));
        QCOMPARE(box.Text(), kQuestion);
    }

    void aDeletionIsAskedInItsColour() {
        for (const bool isDeletion : {false, true}) {
            ExitMessageBox box({kAsked.title, kAsked.text, QString(), isDeletion}, m_window.get());
            box.show();
            const QImage button = OkOf(box)->grab().toImage();
            const QColor middle = button.pixelColor(button.rect().center());
            QCOMPARE(middle == window_colors::kDeleteFill, isDeletion);
        }
    }

    void coversTheWindowAndStandsInItsMiddle() {
        ExitMessageBox box(kQuestion, m_window.get());
        box.show();
        QCOMPARE(box.geometry(), m_window->geometry());
        QCOMPARE(box.PanelRect(), QRect(290, 194, 380, 200));
        QCOMPARE(OkOf(box)->geometry(), QRect(546, 338, 100, 36));
        QCOMPARE(CancelOf(box)->geometry(), QRect(438, 338, 100, 36));
    }

    void theWindowIsSeenThroughTheVeil() {
        m_window->setStyleSheet(QStringLiteral("background: white"));
        ExitMessageBox box(kQuestion, m_window.get());
        box.show();
        const QColor veiled = box.grab().toImage().pixelColor(10, 10);
        // .62 of a dark colour over white.
        QVERIFY2(qAbs(veiled.red() - 101) <= 2, qPrintable(veiled.name()));
    }

    void movesWithTheWindow() {
        ExitMessageBox box(kQuestion, m_window.get());
        box.show();
        m_window->move(30, 40);
        QTRY_COMPARE(box.geometry(), m_window->geometry());
        m_window->resize(1000, 600);
        QTRY_COMPARE(box.geometry(), m_window->geometry());
        QCOMPARE(box.PanelRect().center().x(), 499);
    }

    void theWindowIsDraggedByIt() {
        ExitMessageBox box(kQuestion, m_window.get());
        box.show();
        const QPoint before = m_window->pos();
        const QPoint from = box.mapToGlobal(QPoint(20, 20));
        const auto send = [&box](QEvent::Type type, const QPoint& global, Qt::MouseButtons held) {
            QMouseEvent event(type, box.mapFromGlobal(global), global, Qt::LeftButton, held, Qt::NoModifier);
            QApplication::sendEvent(&box, &event);
        };
        send(QEvent::MouseButtonPress, from, Qt::LeftButton);
        send(QEvent::MouseMove, from + QPoint(15, -7), Qt::LeftButton);
        send(QEvent::MouseButtonRelease, from + QPoint(15, -7), Qt::NoButton);
        send(QEvent::MouseMove, from + QPoint(50, 50), Qt::NoButton);
        QCOMPARE(m_window->pos(), before + QPoint(15, -7));
        QTRY_COMPARE(box.geometry(), m_window->geometry());
    }

    void standsAloneWithoutAWindow_data() {
        QTest::addColumn<bool>("hasWindow");
        QTest::newRow("no window") << false;
        QTest::newRow("hidden window") << true;
    }
    void standsAloneWithoutAWindow() {
        QFETCH(bool, hasWindow);
        m_window->hide();
        ExitMessageBox box(kQuestion, hasWindow ? m_window.get() : nullptr);
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QCOMPARE(box.PanelRect().size(), QSize(380, 200));
        QVERIFY(box.rect().contains(box.PanelRect()));
        QVERIFY(box.width() < 500);
        QTest::mouseClick(CancelOf(box), Qt::LeftButton);
        QCOMPARE(box.result(), int(QDialog::Rejected));
    }

    void thePanelGrowsWithTheText_data() {
        QTest::addColumn<QString>("text");
        const QString sentence = QStringLiteral(
            "После выхода из программы сведения о компьютере на экране перестанут обновляться.");
        QTest::newRow("long") << sentence + QLatin1Char('\n') + sentence + sentence;
        QTest::newRow("one long word") << QString(200, QLatin1Char('W'));
    }
    void thePanelGrowsWithTheText() {
        QFETCH(QString, text);
        ExitMessageBox box(text, m_window.get());
        box.show();
        QVERIFY(box.PanelRect().height() > 200);
        QVERIFY(box.rect().contains(box.PanelRect()));
        // It widens as long as it is higher than two thirds of its width.
        QVERIFY2(
            box.PanelRect().height() * 3 <= box.PanelRect().width() * 2 || box.PanelRect().width() == 600,
            qPrintable(QStringLiteral("%1 x %2").arg(box.PanelRect().width()).arg(box.PanelRect().height())));
        // No letter reaches the button line or the panel's right margin.
        const QImage image = box.grab().toImage();
        const QRect panel = box.PanelRect();
        const QColor ground = image.pixelColor(panel.left() + 3, panel.center().y());
        for (int y = panel.top() + 64; y < OkOf(box)->geometry().top(); ++y) {
            QCOMPARE(image.pixelColor(panel.right() - 20, y), ground);
        }
        for (int x = panel.left() + 24; x < panel.right() - 24; ++x) {
            QCOMPARE(image.pixelColor(x, OkOf(box)->geometry().top() - 6), ground);
        }
    }

    // Wider first, then as high as there is room, and the rest is left out: the buttons are always there.
    void aVeryLongTextStaysInTheWindow_data() {
        QTest::addColumn<bool>("hasWindow");
        QTest::addColumn<QString>("text");
        const QString sentence = QStringLiteral("Сведения о компьютере перестанут обновляться. ");
        QTest::newRow("over a window") << true << sentence.repeated(200);
        QTest::newRow("line by line") << true << (sentence + QLatin1Char('\n')).repeated(200);
        QTest::newRow("one word") << true << QString(9000, QLatin1Char('W'));
        QTest::newRow("alone") << false << sentence.repeated(2000);
    }
    void aVeryLongTextStaysInTheWindow() {
        QFETCH(bool, hasWindow);
        QFETCH(QString, text);
        m_window->setVisible(hasWindow);
        ExitMessageBox box(text, m_window.get());
        box.show();
        const QRect room = hasWindow ? m_window->geometry() : QGuiApplication::primaryScreen()->geometry();
        const QRect panel = box.PanelRect().translated(box.pos());
        QCOMPARE(panel.width(), 600);
        QVERIFY(room.contains(panel));
        for (const NimbPushButton* button : {OkOf(box), CancelOf(box)}) {
            QVERIFY(button->isVisible());
            QVERIFY(box.PanelRect().contains(button->geometry()));
        }
        const QImage image = box.grab().toImage();
        const int line = OkOf(box)->geometry().top() - 6;
        const QColor ground = image.pixelColor(box.PanelRect().left() + 10, line);
        for (int x = box.PanelRect().left() + 24; x < box.PanelRect().right() - 24; ++x) {
            QCOMPARE(image.pixelColor(x, line), ground);
        }
        QCOMPARE(box.accessibleDescription(), text);
    }

    void aWindowThatAppearsLaterIsCovered_data() {
        QTest::addColumn<bool>("isMinimized");
        QTest::newRow("hidden at first") << false;
        QTest::newRow("minimized at first") << true;
    }
    void aWindowThatAppearsLaterIsCovered() {
        QFETCH(bool, isMinimized);
        m_window->setStyleSheet(QStringLiteral("background: white"));
        if (isMinimized) {
            m_window->showMinimized();
        } else {
            m_window->hide();
        }
        ExitMessageBox box(kQuestion, m_window.get());
        box.show();
        QVERIFY(box.width() < 500);
        m_window->showNormal();
        QTRY_COMPARE(box.geometry(), m_window->geometry());
        QVERIFY(box.mask().isEmpty());
        const QColor veiled = box.grab().toImage().pixelColor(10, 10);
        QVERIFY2(qAbs(veiled.red() - 101) <= 2, qPrintable(veiled.name()));
        // And stays what it is when the window goes again.
        m_window->hide();
        QCOMPARE(box.size(), QSize(960, 588));
        QCOMPARE(box.PanelRect(), QRect(290, 194, 380, 200));
        QCOMPARE(box.grab().toImage().pixelColor(10, 10), veiled);
    }

    // Where the desktop does not blend windows, everything outside of the panel would be black.
    void nothingIsThereButThePanelWhereItStandsAlone() {
        ExitMessageBox box(kQuestion, nullptr);
        box.show();
        QCOMPARE(box.size(), box.PanelRect().size());
        QVERIFY(!box.mask().isEmpty());
        QVERIFY(!box.mask().contains(QPoint(1, 1)));
        QVERIFY(!box.mask().contains(QPoint(378, 198)));
        QVERIFY(box.mask().contains(QPoint(190, 1)));
        QVERIFY(box.mask().contains(QPoint(1, 100)));
    }

    void theWindowMayGoWhileItAsks() {
        QWidget* const window = m_window.release();
        Answer([window](ExitMessageBox&) { delete window; });
        QVERIFY(!ExitMessageBox::Ask(window, kAsked));
    }

private:
    std::unique_ptr<QWidget> m_window;
};

KIVO_TEST(TestExitMessageBox)
#include "tst_exit_message_box.moc"
