#include <QPointer>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <memory>

#include "picture_namer.h"
#include "resources/resources.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// The line in which a picture's name is typed: how it comes, what it takes, how it goes.
class TestPictureNameEdit : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { InitResources(); }
    void init() { StartWithoutSettings(); }

    void ANameIsTypedAndTaken_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("return") << int(Qt::Key_Return);
        QTest::newRow("enter") << int(Qt::Key_Enter);
    }
    void ANameIsTypedAndTaken() {
        QFETCH(int, key);
        Names names(2);
        QSignalSpy renamed(&names.made.List(), &PictureList::renamed);
        QSignalSpy picked(&names.made.List(), &PictureList::picked);
        QLineEdit* const line = names.Open(2);
        QVERIFY(line != nullptr && line->hasFocus());
        QCOMPARE(line->text(), QStringLiteral("user 1"));
        QCOMPARE(line->selectedText(), line->text());
        QTest::keyClicks(line, Sea());
        QTest::keyClick(line, Qt::Key(key));
        QTRY_VERIFY(names.Line() == nullptr);
        QCOMPARE(names.made.List().NameAt(2), Sea());
        QCOMPARE(renamed.count(), 1);
        QVERIFY(names.made.View().hasFocus());
        QCOMPARE(names.made.View().currentRow(), 2);
        // The list does not take the key for its own.
        QCOMPARE(picked.count(), 0);
        // And it is there the next time.
        QVERIFY(names.made.List().SavePictureList());
        names.made.List().LoadPictureList();
        QCOMPARE(names.made.List().NameAt(2), Sea());
        QCOMPARE(names.made.List().NameAt(1), QString());
        QCOMPARE(names.Open(2)->text(), Sea());
    }

    void EscapeLeavesTheName() {
        Names names(1);
        names.Rename(1, Sea());
        QSignalSpy renamed(&names.made.List(), &PictureList::renamed);
        QLineEdit* const line = names.Open(1);
        QTest::keyClicks(line, QStringLiteral("Lake"));
        QTest::keyClick(line, Qt::Key_Escape);
        QTRY_VERIFY(names.Line() == nullptr);
        QCOMPARE(names.made.List().NameAt(1), Sea());
        QCOMPARE(renamed.count(), 0);
        QVERIFY(names.made.View().hasFocus());
    }

    void FocusThatGoesElsewhereTakesTheName_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("a press") << 0;
        QTest::newRow("tab") << int(Qt::Key_Tab);
        QTest::newRow("tab, backwards") << int(Qt::Key_Backtab);
    }
    void FocusThatGoesElsewhereTakesTheName() {
        QFETCH(int, key);
        Names names(2);
        QLineEdit* const line = names.Open(1);
        QTest::keyClicks(line, Sea());
        if (key == 0) {
            names.beside.setFocus(Qt::MouseFocusReason);
        } else {
            QTest::keyClick(line, Qt::Key(key));
        }
        QTRY_VERIFY(names.Line() == nullptr);
        QCOMPARE(names.made.List().NameAt(1), Sea());
        // The row that would come next is not walked to.
        QCOMPARE(names.made.View().currentRow(), 1);
        QCOMPARE(names.beside.hasFocus(), key != Qt::Key_Backtab);
    }

    void APressOnAnotherRowTakesTheName() {
        Names names(3);
        QLineEdit* const line = names.Open(1);
        QTest::keyClicks(line, Sea());
        QTest::mouseClick(names.made.View().viewport(), Qt::LeftButton, Qt::NoModifier,
                          names.made.CentreOf(3));
        QTRY_VERIFY(names.Line() == nullptr);
        QCOMPARE(names.made.List().NameAt(1), Sea());
        QCOMPARE(names.made.View().currentRow(), 3);
    }

    void ANameHas24CharactersAtMost() {
        Names names(1);
        QLineEdit* const line = names.Open(1);
        QTest::keyClicks(line, QString(30, QLatin1Char('x')));
        QCOMPARE(line->text(), QString(24, QLatin1Char('x')));
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_COMPARE(names.made.List().NameAt(1), QString(24, QLatin1Char('x')));
    }

    // Return on a line that was only looked at.
    void AFilesNameThatIsTooLongForALineIsNoName() {
        Names names(0);
        const QString path =
            QStringLiteral("/pictures/") + QString(60, QLatin1Char('n')) + QStringLiteral(".jpg");
        WriteStoredPictures({path}, {});
        names.made.List().LoadPictureList();
        QSignalSpy renamed(&names.made.List(), &PictureList::renamed);
        QTest::keyClick(names.Open(1), Qt::Key_Return);
        QTRY_VERIFY(names.Line() == nullptr);
        QCOMPARE(names.made.List().NameAt(1), QString());
        QCOMPARE(renamed.count(), 0);
    }

    void OnlyTheUsersOwnAreNamed() {
        Names names(1);
        const int last = names.made.View().count() - 1;
        for (const int row : {-1, 0, 2, last}) {
            QVERIFY(names.Open(row) == nullptr);
            names.made.List().EditName(row);
            QVERIFY(names.Line() == nullptr);
        }
        names.made.List().EditName(last + 1);
        names.ClickTwice(names.NameOf(2).center());
        QVERIFY(names.Line() == nullptr);
        // Nor what settings written by hand have of the program among them.
        WriteStoredPictures({FirstBuiltIn()}, {});
        names.made.List().LoadPictureList();
        QVERIFY(names.made.List().IsUserPicture(1));
        QVERIFY(names.Open(1) == nullptr);
    }

    void ADoubleClickOnTheNameOpensTheLine() {
        Names names(2);
        QSignalSpy picked(&names.made.List(), &PictureList::picked);
        names.ClickTwice(names.NameOf(2).center());
        QLineEdit* const line = names.Line();
        QVERIFY(line != nullptr && line->hasFocus());
        QCOMPARE(line->text(), QStringLiteral("user 1"));
        // The first click picks, as any click does; the second one does not do so again.
        QCOMPARE(picked.count(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(names.Line(), line);
    }

    void ADoubleClickElsewhereDoesNot() {
        Names names(2);
        QSignalSpy asked(names.made.List().Delegate(), &ExitItemDelegate::handleDeleteClick);
        names.ClickTwice(names.made.CentreOf(1));
        QVERIFY(names.Line() == nullptr);
        names.ClickTwice(names.made.CrossOf(1));
        QVERIFY(names.Line() == nullptr);
        QCOMPARE(asked.count(), 1);
        names.ClickTwice(names.NameOf(1).center(), Qt::RightButton);
        QVERIFY(names.Line() == nullptr);
    }

    void TheMenuKeyOffersToRenameAndToDelete() {
        Names names(2);
        names.made.View().setCurrentRow(2);
        QSignalSpy asked(names.made.List().Delegate(), &ExitItemDelegate::handleDeleteClick);
        names.PressMenuKey();
        QVERIFY(names.Menu() != nullptr);
        QCOMPARE(names.Menu()->actions().size(), 2);
        QCOMPARE(asked.count(), 0);
        names.Menu()->actions().first()->trigger();
        names.Menu()->close();
        QVERIFY(names.Line() != nullptr);
        QCOMPARE(names.Line()->text(), QStringLiteral("user 1"));
        QTest::keyClick(names.Line(), Qt::Key_Escape);
        QTRY_VERIFY(names.Menu() == nullptr && names.Line() == nullptr);
        names.PressMenuKey();
        names.Menu()->actions().last()->trigger();
        names.Menu()->close();
        QCOMPARE(asked.count(), 1);
        QCOMPARE(asked.constFirst().constFirst().toInt(), 2);
        // A built-in picture has one answer: why it stays.
        QTRY_VERIFY(names.Menu() == nullptr);
        names.made.View().setCurrentRow(3);
        names.PressMenuKey();
        QVERIFY(names.Menu() == nullptr);
        QCOMPARE(asked.count(), 2);
    }

    void KeysOfALineStayInIt() {
        Names names(3);
        QSignalSpy picked(&names.made.List(), &PictureList::picked);
        QSignalSpy asked(names.made.List().Delegate(), &ExitItemDelegate::handleDeleteClick);
        QLineEdit* const line = names.Open(2);
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_F2, Qt::Key_Space,
                                  Qt::Key_Home, Qt::Key_Delete}) {
            QTest::keyClick(line, key);
        }
        QContextMenuEvent menu(QContextMenuEvent::Keyboard, QPoint(1, 1));
        QCoreApplication::sendEvent(line, &menu);
        QCOMPARE(names.Line(), line);
        QVERIFY(names.Menu() == nullptr);
        QCOMPARE(names.made.View().currentRow(), 2);
        QCOMPARE(picked.count() + asked.count(), 0);
    }

    // A thumbnail that comes, or a file that is found to be gone, changes the row.
    void WhatHappensToTheRowLeavesWhatIsTyped() {
        Names names(2);
        QLineEdit* const line = names.Open(1);
        QTest::keyClicks(line, Sea());
        QListWidgetItem* const item = names.made.View().item(1);
        item->setIcon(QIcon());
        item->setData(PictureList::kFailureRole, int(PictureFailure::Missing));
        QCOMPARE(names.Line(), line);
        QCOMPARE(line->text(), Sea());
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_COMPARE(names.made.List().NameAt(1), Sea());
    }

    void TheLineGoesWithItsRow() {
        Names names(2);
        QPointer<QLineEdit> line = names.Open(1);
        names.made.List().RemoveUserPicture(1);
        QTRY_VERIFY(line.isNull());
        QCOMPARE(names.made.List().NameAt(1), QString());
        line = names.Open(1);
        names.made.List().LoadPictureList();
        QTRY_VERIFY(line.isNull());
    }

    void TheViewMayGoFirstWhileANameIsTyped() {
        QWidget window;
        auto view = std::make_unique<MyListWidget>(&window);
        PictureSource source(ListInWindow::RedReaders());
        PictureList list(view.get(), source);
        WriteStoredPictures(UserPaths(1), {});
        list.LoadPictureList();
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        list.EditName(1);
        QVERIFY(view->findChild<QLineEdit*>()->hasFocus());
        QTest::keyClicks(view->findChild<QLineEdit*>(), Sea());
        view.reset();
        QCOMPARE(list.parent(), nullptr);  // it is there and has touched nothing that is not
    }

    void TheLineFollowsItsRowAndIsOpenedInView() {
        Names names(40);
        QScrollBar* const bar = names.made.View().verticalScrollBar();
        names.made.View().setCurrentRow(1);
        bar->setValue(bar->maximum());
        QTest::keyClick(&names.made.View(), Qt::Key_F2);
        QLineEdit* const line = names.Line();
        QVERIFY(line != nullptr);
        QVERIFY(names.made.View().viewport()->rect().contains(line->geometry()));
        QVERIFY(names.NameOf(1).contains(line->geometry()));
        bar->setValue(30);
        QVERIFY(names.NameOf(1).contains(line->geometry()));
    }
};

KIVO_TEST(TestPictureNameEdit)
#include "tst_picture_name_edit.moc"
