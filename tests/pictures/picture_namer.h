#pragma once

// A picture list whose rows are named by hand.

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QToolTip>

#include "picture_list_maker.h"

namespace kivo::test {

// A list that is seen, with a place beside it for the focus.
class Names {
public:
    explicit Names(int userPictures, PictureSource::Readers readers = ListInWindow::RedReaders())
        : made(userPictures, std::move(readers)), beside(&made.Window()) {
        beside.setObjectName(QStringLiteral("beside"));
        made.Window().show();
        made.Window().activateWindow();
        if (!QTest::qWaitForWindowActive(&made.Window())) {
            qFatal("The window does not get the keys.");
        }
        made.View().setFocus();
    }

    // Null where no line is open.
    QLineEdit* Line() {
        for (auto* const line : made.View().findChildren<QLineEdit*>()) {
            if (line->isVisible()) {
                return line;
            }
        }
        return nullptr;
    }
    QLineEdit* Open(int row) {
        made.View().setCurrentRow(row);
        QTest::keyClick(&made.View(), Qt::Key_F2);
        return Line();
    }
    void Rename(int row, const QString& name) {
        QLineEdit* const line = Open(row);
        QVERIFY(line != nullptr);
        line->clear();
        QTest::keyClicks(line, name);
        QTest::keyClick(line, Qt::Key_Return);
        QTRY_VERIFY(Line() == nullptr);
    }

    QRect NameOf(int row) {
        const QRect item = made.View().visualItemRect(made.View().item(row));
        return {item.left(), item.top() + 60, item.width(), 20};
    }
    QImage PaintedName(int row) { return made.View().viewport()->grab(NameOf(row)).toImage(); }
    void ClickTwice(const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(made.View().viewport(), button, Qt::NoModifier, at);
        QTest::mouseDClick(made.View().viewport(), button, Qt::NoModifier, at);
    }

    QString ToolTip(int row) {
        QHelpEvent help(QEvent::ToolTip, made.CentreOf(row),
                        made.View().viewport()->mapToGlobal(made.CentreOf(row)));
        QCoreApplication::sendEvent(made.View().viewport(), &help);
        const QString text = QToolTip::text();
        QToolTip::hideText();
        return text;
    }
    QString Spoken(int row) { return made.View().item(row)->data(Qt::AccessibleTextRole).toString(); }
    void PressMenuKey() {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1));
        QCoreApplication::sendEvent(&made.View(), &event);
    }
    QMenu* Menu() { return made.View().findChild<QMenu*>(QStringLiteral("pictureMenu")); }

    ListInWindow made;
    QLineEdit beside;
};

inline QString Sea() {
    return QStringLiteral("Sea side");
}

}  // namespace kivo::test
