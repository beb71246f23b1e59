#include <QApplication>
#include <QHelpEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QToolTip>

#include <atomic>
#include <memory>
#include <mutex>

#include "compose/theme_catalogue.h"
#include "picture_list_maker.h"
#include "resources/resources.h"
#include "support/test_program.h"
#include "widgets/toolkit_defaults.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// Remembers what was asked for, and answers when it is let.
class Asked {
public:
    PictureSource::Readers Readers() {
        PictureSource::Readers readers = ListInWindow::RedReaders();
        readers.thumbnail = [this](const QString& path, QSize pixels, const PictureWork& work) {
            {
                const std::lock_guard lock(m_mutex);
                m_paths.append(path);
            }
            while (m_isHeld && !work.IsStopped()) {
                QThread::msleep(1);
            }
            return Picture{Filled(pixels, Qt::red)};
        };
        return readers;
    }
    void Hold() { m_isHeld = true; }
    void LetGo() { m_isHeld = false; }
    QStringList Paths() const {
        const std::lock_guard lock(m_mutex);
        return m_paths;
    }
    void Forget() {
        const std::lock_guard lock(m_mutex);
        m_paths.clear();
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_paths;
    std::atomic<bool> m_isHeld{false};
};

bool HasIcon(MyListWidget& view, int row) {
    return !view.item(row)->icon().isNull();
}

void Show(ListInWindow& made) {
    made.Window().show();
    QVERIFY(QTest::qWaitForWindowExposed(&made.Window()));
}

void Click(ListInWindow& made, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mouseClick(made.View().viewport(), button, Qt::NoModifier, at);
}

}  // namespace

class TestPictureListView : public QObject {
    Q_OBJECT

public:
    static void initMain() {
        ScaleAsTheDisplay();  // as the program does
    }

private slots:
    void initTestCase() { InitResources(); }
    void init() { StartWithoutSettings(); }

    void FourColumnsAndThreeWholeRows() {
        ListInWindow made(3);
        Show(made);
        MyListWidget& view = made.View();
        for (int row = 0; row < view.count(); ++row) {
            const QRect item = view.visualItemRect(view.item(row));
            QCOMPARE(item.size(), QSize(89, 80));
            QCOMPARE(item.left(), 4 + row % 4 * 97);
            QCOMPARE(item.top(), row / 4 * 80);
        }
        QCOMPARE(view.iconSize(), QSize(77, 54));
    }

    void TheScrollBarStandsOutsideAndOnlyWhereItIsNeeded() {
        ListInWindow made(0);
        QScrollBar* bar = made.List().CreateScrollBar(&made.Window());
        bar->setGeometry(914, 292, 6, 228);
        Show(made);
        QVERIFY(!bar->isVisible());  // twelve rows
        QVERIFY(!made.View().verticalScrollBar()->isVisible());
        made.List().InsertUserPictures({QStringLiteral("/a.png")});
        QTRY_VERIFY(bar->isVisible());
        QVERIFY(!made.View().verticalScrollBar()->isVisible());
        QCOMPARE(bar->maximum(), 80);
        bar->setValue(80);
        QCOMPARE(made.View().visualItemRect(made.View().item(0)).top(), -80);
        made.View().verticalScrollBar()->setValue(40);
        QCOMPARE(bar->value(), 40);
        made.List().RemoveUserPicture(1);
        QTRY_VERIFY(!bar->isVisible());
    }

    void AClickPicksTheRow() {
        ListInWindow made(2);
        Show(made);
        QSignalSpy picked(&made.List(), &PictureList::picked);
        Click(made, made.CentreOf(5));
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked.constFirst().constFirst().toModelIndex().row(), 5);
        QCOMPARE(made.View().currentRow(), 5);
    }

    void AClickBesideEveryRowPicksNothing() {
        ListInWindow made(2);
        Show(made);
        QSignalSpy picked(&made.List(), &PictureList::picked);
        Click(made, QPoint(389, 235));
        QCOMPARE(picked.count(), 0);
    }

    void AClickOnTheAddEntryLeavesItAgain() {
        ListInWindow made(2);
        Show(made);
        made.List().SelectPicture(SecondBuiltIn());
        QSignalSpy picked(&made.List(), &PictureList::picked);
        Click(made, made.CentreOf(0));
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked.constFirst().constFirst().toModelIndex().row(), 0);
        QCOMPARE(made.List().PathAt(made.View().currentRow()), SecondBuiltIn());
    }

    void APressOnTheAddEntryThatIsLetGoElsewhereLeavesIt() {
        ListInWindow made(2);
        Show(made);
        made.List().SelectPicture(SecondBuiltIn());
        QTest::mousePress(made.View().viewport(), Qt::LeftButton, Qt::NoModifier, made.CentreOf(0));
        QTest::mouseRelease(made.View().viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(389, 235));
        QTRY_COMPARE(made.List().PathAt(made.View().currentRow()), SecondBuiltIn());
    }

    void ARightPressOnTheAddEntryLeavesIt() {
        ListInWindow made(2);
        Show(made);
        made.List().SelectPicture(SecondBuiltIn());
        QSignalSpy picked(&made.List(), &PictureList::picked);
        QSignalSpy rightClick(&made.View(), &MyListWidget::rightClick);
        Click(made, made.CentreOf(0), Qt::RightButton);
        QCOMPARE(rightClick.count(), 1);
        QCOMPARE(picked.count(), 0);
        QCOMPARE(made.List().PathAt(made.View().currentRow()), SecondBuiltIn());
    }

    void TheSelectionThatIsGoneBackToMayHaveMovedOrGone() {
        ListInWindow made(3);
        Show(made);
        made.View().setCurrentRow(3);
        made.View().setCurrentRow(0);
        made.List().RemoveUserPicture(1);
        Click(made, made.CentreOf(0), Qt::RightButton);
        QCOMPARE(made.View().currentRow(), 2);
        made.View().setCurrentRow(0);
        made.List().RemoveUserPicture(2);
        Click(made, made.CentreOf(0), Qt::RightButton);
        QVERIFY(made.View().currentRow() != 0);
    }

    void TheAddEntryIsLeftForNoneWhenThePictureIsNotInTheList() {
        ListInWindow made(2);
        Show(made);
        made.List().SelectPicture(SecondBuiltIn());
        made.List().SelectPicture(QStringLiteral("/gone.png"));
        Click(made, made.CentreOf(0));
        QCOMPARE(made.View().currentRow(), -1);
        QVERIFY(made.View().selectedItems().isEmpty());
    }

    void ARightPressOnAPictureMakesItTheCurrentOne() {
        ListInWindow made(2);
        Show(made);
        Click(made, made.CentreOf(1), Qt::RightButton);
        QCOMPARE(made.View().currentRow(), 1);
    }

    void AClickOnTheCrossAsksOnceAndPicksNothing() {
        ListInWindow made(2);
        Show(made);
        QSignalSpy picked(&made.List(), &PictureList::picked);
        QSignalSpy asked(made.List().Delegate(), &ExitItemDelegate::handleDeleteClick);
        Click(made, made.CrossOf(2));
        QCOMPARE(asked.count(), 1);
        QCOMPARE(asked.constFirst().constFirst().toInt(), 2);
        QCOMPARE(picked.count(), 0);
    }

    void WhereABuiltInOneHasNoCrossAClickPicks() {
        ListInWindow made(2);
        Show(made);
        QSignalSpy picked(&made.List(), &PictureList::picked);
        QSignalSpy asked(made.List().Delegate(), &ExitItemDelegate::handleDeleteClick);
        Click(made, made.CrossOf(3));
        QCOMPARE(asked.count(), 0);
        QCOMPARE(picked.count(), 1);
    }

    void ARowThatIsTakenOutWhileItsCrossIsClickedDoesNoHarm() {
        ListInWindow made(2);
        Show(made);
        connect(made.List().Delegate(), &ExitItemDelegate::handleDeleteClick, &made.List(),
                [&made](int row) { made.List().RemoveUserPicture(row); });
        QSignalSpy picked(&made.List(), &PictureList::picked);
        Click(made, made.CrossOf(1));
        QCOMPARE(made.View().count(), 13);
        QCOMPARE(picked.count(), 0);
    }

    void TheKeysWalkAndPick_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("return") << int(Qt::Key_Return);
        QTest::newRow("enter") << int(Qt::Key_Enter);
        QTest::newRow("space") << int(Qt::Key_Space);
    }
    void TheKeysWalkAndPick() {
        QFETCH(int, key);
        ListInWindow made(2);
        Show(made);
        made.View().setFocus();
        made.List().SelectPicture(FirstBuiltIn());  // row 3, the end of the first line
        QSignalSpy picked(&made.List(), &PictureList::picked);
        QTest::keyClick(&made.View(), Qt::Key_Down);
        QCOMPARE(made.View().currentRow(), 7);
        QTest::keyClick(&made.View(), Qt::Key_Left);
        QCOMPARE(made.View().currentRow(), 6);
        QCOMPARE(picked.count(), 0);
        QTest::keyClick(&made.View(), Qt::Key(key));
        QCOMPARE(picked.count(), 1);
        QCOMPARE(picked.constFirst().constFirst().toModelIndex().row(), 6);
    }

    void TheAddEntryIsReachedByKeysAndLeftWithTheFocus() {
        ListInWindow made(0);
        QWidget other(&made.Window());
        other.setFocusPolicy(Qt::StrongFocus);
        Show(made);
        made.Window().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&made.Window()));
        made.View().setFocus();
        made.List().SelectPicture(FirstBuiltIn());
        QTest::keyClick(&made.View(), Qt::Key_Left);
        QCOMPARE(made.View().currentRow(), 0);
        QSignalSpy picked(&made.List(), &PictureList::picked);
        QTest::keyClick(&made.View(), Qt::Key_Return);
        QCOMPARE(picked.count(), 1);
        other.setFocus();
        QCOMPARE(made.View().currentRow(), 1);
    }

    void TheDeleteKeyAsksForEveryPicture_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("count");
        QTest::newRow("the user's") << 1 << 1;
        QTest::newRow("first built-in") << 2 << 1;
        QTest::newRow("last built-in") << 12 << 1;
        QTest::newRow("add entry") << 0 << 0;
        QTest::newRow("none") << -1 << 0;
    }
    void TheDeleteKeyAsksForEveryPicture() {
        QFETCH(int, row);
        QFETCH(int, count);
        ListInWindow made(1);
        Show(made);
        made.View().setFocus();
        QSignalSpy asked(made.List().Delegate(), &ExitItemDelegate::handleDeleteClick);
        made.View().setCurrentRow(row);
        // Once, whether the platform gives the key a character or not.
        for (const QString& character : {QString(), QStringLiteral("\x7f")}) {
            asked.clear();
            QKeyEvent key(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, character);
            QCoreApplication::sendEvent(&made.View(), &key);
            QCOMPARE(asked.count(), count);
            if (count > 0) {
                QCOMPARE(asked.constFirst().constFirst().toInt(), row);
            }
        }
    }

    void AClickBelongsToThePlaceOfItsPress() {
        ListInWindow made(2);
        Show(made);
        QSignalSpy picked(&made.List(), &PictureList::picked);
        QSignalSpy asked(made.List().Delegate(), &ExitItemDelegate::handleDeleteClick);
        QWidget* const port = made.View().viewport();
        QTest::mousePress(port, Qt::LeftButton, Qt::NoModifier, made.CrossOf(2));
        QTest::mouseRelease(port, Qt::LeftButton, Qt::NoModifier, made.CentreOf(2));
        QCOMPARE(asked.count(), 1);
        QCOMPARE(picked.count(), 0);
        QTest::mousePress(port, Qt::LeftButton, Qt::NoModifier, made.CentreOf(2));
        QTest::mouseRelease(port, Qt::LeftButton, Qt::NoModifier, made.CrossOf(2));
        QCOMPARE(asked.count(), 1);
        QCOMPARE(picked.count(), 1);
    }

    void TheToolTipSaysWhereAPictureLies() {
        ListInWindow made(1);
        Show(made);
        for (const int row : {0, 1, 2}) {
            QToolTip::hideText();
            QHelpEvent help(QEvent::ToolTip, made.CentreOf(row),
                            made.View().viewport()->mapToGlobal(made.CentreOf(row)));
            QCoreApplication::sendEvent(made.View().viewport(), &help);
            if (row == 1) {
                QCOMPARE(QToolTip::text(), QDir::toNativeSeparators(UserPaths(1).constFirst()));
            } else {
                QVERIFY(!QToolTip::text().contains(QLatin1Char(':')));
            }
        }
    }

    void NothingIsAskedForBeforeTheListIsSeen() {
        Asked asked;
        ListInWindow made(20, asked.Readers());
        QCoreApplication::processEvents();
        QVERIFY(asked.Paths().isEmpty());
        Show(made);
        QTRY_VERIFY(HasIcon(made.View(), 0));
    }

    void RowsInViewComeFirst() {
        Asked asked;
        ListInWindow made(1000, asked.Readers());
        made.View().setCurrentRow(500);  // the list opens there, between others
        asked.Hold();
        Show(made);
        QTRY_COMPARE(asked.Paths().size(), 2);  // all that is begun at a time
        int first = 0;
        while (made.View().visualItemRect(made.View().item(first)).bottom() < 0) {
            ++first;
        }
        QVERIFY(first > 400);
        QVERIFY(asked.Paths().contains(made.List().PathAt(first)));
        QVERIFY(asked.Paths().contains(made.List().PathAt(first + 1)));
        asked.LetGo();
    }

    void APageAheadIsMadeReadyAndNoMore() {
        Asked asked;
        ListInWindow made(1000, asked.Readers());
        Show(made);
        for (int row = 0; row < 24; ++row) {
            QTRY_VERIFY(HasIcon(made.View(), row));
        }
        QTest::qWait(50);
        QCOMPARE(asked.Paths().size(), 24);
        QVERIFY(!HasIcon(made.View(), 24));
    }

    void ScrollingAsksForWhatComesIntoView() {
        Asked asked;
        ListInWindow made(1000, asked.Readers());
        Show(made);
        QTRY_COMPARE(asked.Paths().size(), 24);
        asked.Forget();
        made.View().verticalScrollBar()->setValue(80 * 100);
        for (int row = 388; row < 424; ++row) {
            QTRY_VERIFY(HasIcon(made.View(), row));
        }
        QVERIFY(!HasIcon(made.View(), 387) && !HasIcon(made.View(), 424));
        QVERIFY(asked.Paths().contains(made.List().PathAt(405)));
        QVERIFY(!asked.Paths().contains(made.List().PathAt(5)));
    }

    void IconsFarFromTheViewAreForgotten() {
        ListInWindow made(1000);
        Show(made);
        QScrollBar* bar = made.View().verticalScrollBar();
        const auto icons = [&made] {
            int count = 0;
            for (int row = 0; row < made.View().count(); ++row) {
                count += HasIcon(made.View(), row) ? 1 : 0;
            }
            return count;
        };
        for (int line = 0; line <= bar->maximum() / 80; line += 3) {
            bar->setValue(line * 80);
            QTRY_VERIFY(HasIcon(made.View(), line * 4));
            QVERIFY(icons() <= 340);
        }
        bar->setValue(0);
        QTRY_VERIFY(HasIcon(made.View(), 0));
    }

    void AListThatNobodyLooksAtKeepsTheIconsInView() {
        ListInWindow made(1000);
        Show(made);
        for (int row = 0; row < 24; ++row) {
            QTRY_VERIFY(HasIcon(made.View(), row));
        }
        made.Window().hide();
        made.List().LetGoOfIcons();
        for (int row = 0; row < 24; ++row) {
            QCOMPARE(HasIcon(made.View(), row), row < 12);
        }
        made.Window().show();
        QTRY_VERIFY(HasIcon(made.View(), 23));
    }

    void APictureThatIsAddedGetsItsIcon() {
        ListInWindow made(0);
        Show(made);
        QTRY_VERIFY(HasIcon(made.View(), 11));
        const int row = made.List().InsertUserPictures({QStringLiteral("/new.png")}).lastRow;
        QTRY_VERIFY(HasIcon(made.View(), row));
        // Taken out and put back: a new row for a picture that is known.
        made.List().RemoveUserPicture(row);
        QTRY_COMPARE(made.List().InsertUserPictures({QStringLiteral("/new.png")}).lastRow, row);
        QTRY_VERIFY(HasIcon(made.View(), row));
        made.List().LoadPictureList();
        QTRY_VERIFY(HasIcon(made.View(), 0));
        QTRY_VERIFY(HasIcon(made.View(), 11));
    }

    void EachTimeTheListIsShownFilesAreLookedAtAnew() {
        Asked asked;
        ListInWindow made(1, asked.Readers());
        Show(made);
        for (int row = 0; row < 13; ++row) {
            QTRY_VERIFY(HasIcon(made.View(), row));
        }
        made.Window().hide();
        asked.Forget();
        made.Window().show();
        QTRY_COMPARE(asked.Paths(), UserPaths(1));  // what is built in does not change
    }

    void TheViewMayGoFirstEvenWithTheFocus() {
        QWidget window;
        auto view = std::make_unique<MyListWidget>(&window);
        PictureSource source(ListInWindow::RedReaders());
        PictureList list(view.get(), source);
        list.LoadPictureList();
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        view->setFocus();
        QVERIFY(view->hasFocus());
        view->setCurrentRow(0);
        view.reset();
        QCOMPARE(list.parent(), nullptr);  // it is there and has touched nothing that is not
    }

    void TheEndWithDecodesUnderWayIsClean() {
        Asked asked;
        for (int n = 0; n < 5; ++n) {
            ListInWindow made(100, asked.Readers());
            Show(made);
            QCoreApplication::processEvents();
        }
    }
};

KIVO_TEST(TestPictureListView)
#include "tst_picture_list_view.moc"
