#pragma once

// An editor on the screen, and the words in which its tests speak.

#include <QSignalSpy>
#include <QTest>

#include "editor/zoom_widget.h"
#include "layout_editor_test_support.h"
#include "pictures/picture_reader.h"
#include "pictures/picture_source.h"
#include "widgets/self_plain_text_edit.h"

namespace kivo::test {

class Editor : public ZoomWidget {
public:
    // Shows the state, with editing open.
    explicit Editor(const ThemeState& themes = CustomThemes(),
                    const SlotTable& slotTable = FactorySlotTable()) {
        SetPictures(m_pictures);
        SaveSlotTable(slotTable);
        LoadCustomShow();
        resize(EditorSize(themes.orientation));
        ShowTheme(themes, true);
        SetEditing(true);
        show();
        if (!QTest::qWaitForWindowExposed(this)) {
            qFatal("The editor does not show up.");
        }
        WaitForPicture();
    }

    // Until the preview shows the picture it is to show: it is read beside it.
    void WaitForPicture() {
        for (int time = 0; time < 2; ++time) {
            grab();  // asks for what it shows, then for what stands in for it
            if (!QTest::qWaitFor([this] { return !m_pictures.IsBusy(); }, 20000)) {
                qFatal("The editor's picture does not come.");
            }
        }
    }
    PictureSource& Pictures() { return m_pictures; }

    // True where the picture is shown.
    bool SetBackground(const QString& path) {
        ZoomWidget::SetBackground(path);
        WaitForPicture();
        const std::optional<Picture> known = m_pictures.Known(path);
        return known && known->failure == PictureFailure::None;
    }

    void Press(QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(this, button, Qt::NoModifier, at);
    }
    void Release(QPoint at) { QTest::mouseRelease(this, Qt::LeftButton, Qt::NoModifier, at); }
    void DoubleClick(QPoint at) { QTest::mouseDClick(this, Qt::LeftButton, Qt::NoModifier, at); }
    // While a button is held, as the mouse does it.
    void MoveTo(QPoint at, Qt::MouseButtons buttons = Qt::LeftButton) {
        QMouseEvent move(QEvent::MouseMove, at, mapToGlobal(at), Qt::NoButton, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(this, &move);
    }
    void Drag(QPoint from, QPoint to) {
        Press(from);
        MoveTo((from + to) / 2);
        MoveTo(to);
        Release(to);
    }
    void Wheel(int angle, QPoint at) {
        QWheelEvent wheel(at, mapToGlobal(at), QPoint(), QPoint(0, angle), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(this, &wheel);
    }

    // By the keyboard, from any row below it.
    void MoveTextUpTo(int row) {
        while (Edited().textRow > row) {
            QTest::keyClick(this, Qt::Key_PageUp);
        }
    }

    void GiveText(const QString& text) {
        slotShowEdt();
        TextBox().setPlainText(text);
        solteditingFinished();
    }

    SelfPlainTextEdit& TextBox() { return *findChild<SelfPlainTextEdit*>(); }
    const LayoutRecord& Layout() const { return LayoutInForce(Edited()); }
    const SlotRow& Row(int variant = 0) const { return Edited().slotTable[size_t(variant)]; }

private:
    PictureSource m_pictures{{ReadPicture, {}}};
};

// The smallest rectangle that holds all pixels in which two pictures of one size differ by more than a
// shade; null for none.
inline QRect DifferentRect(const QImage& a, const QImage& b, int shade = 24) {
    QRect all;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (qAbs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > shade) {
                all |= QRect(x, y, 1, 1);
            }
        }
    }
    return all;
}

}  // namespace kivo::test
