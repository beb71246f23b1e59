#pragma once

// A person at the window: input goes the way the system brings it, so that what lies on top gets it and a
// dialog keeps it away from everything else.

#include "config/settings_file.h"
#include "support/window_test_support.h"
#include "widgets/exit_message_box.h"
#include "window/nimb_process_dialog.h"

namespace kivo::test {

inline void ClickAt(QWidget* widget, const QPoint& at, Qt::MouseButton button = Qt::LeftButton) {
    QWidget* window = widget->window();
    QTest::mouseClick(window->windowHandle(), button, Qt::NoModifier, widget->mapTo(window, at));
}
inline void ClickOn(QWidget* widget) {
    ClickAt(widget, widget->rect().center());
}
inline void ClickOn(const Desk& desk, const char* name) {
    ClickOn(desk.Find(name));
}

inline QPoint RowCentre(QListWidget* list, int row) {
    list->scrollToItem(list->item(row));
    return list->visualItemRect(list->item(row)).center();
}
inline void ClickListRow(const Desk& desk, const char* name, int row,
                         Qt::MouseButton button = Qt::LeftButton) {
    auto* list = desk.Find<QListWidget>(name);
    ClickAt(list->viewport(), RowCentre(list, row), button);
    desk.WaitForPictures();
}

inline void PressKey(const Desk& desk, Qt::Key key) {
    desk.window->activateWindow();
    if (!QTest::qWaitForWindowActive(desk.window.get())) {
        qFatal("The window does not get the keys.");
    }
    QTest::keyClick(desk.window->windowHandle(), key);
    desk.WaitForPictures();
}

// False when the key does not get there.
inline bool TabTo(const Desk& desk, const char* name) {
    constexpr int kMoreThanThereAre = 60;
    QWidget* wanted = desk.Find(name);
    for (int step = 0; step < kMoreThanThereAre && QApplication::focusWidget() != wanted; ++step) {
        PressKey(desk, Qt::Key_Tab);
    }
    return QApplication::focusWidget() == wanted;
}

// A box that comes up while something else is done.
struct Box {
    int count = 0;
    QString text;
};
// Answers the next box with its OK or its other button.
inline std::shared_ptr<Box> AnswerNextBox(const Desk& desk, bool ok) {
    auto box = std::make_shared<Box>();
    OnNextDialog<ExitMessageBox>(desk.window.get(), [box, ok](ExitMessageBox* dialog) {
        ++box->count;
        box->text = dialog->Text();
        // The press that brought it up is let go before anything is clicked on it.
        for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton}) {
            if (QGuiApplication::mouseButtons().testFlag(button)) {
                QTest::mouseRelease(dialog->windowHandle(), button);
            }
        }
        ClickOn(dialog->findChild<QWidget*>(ok ? QStringLiteral("btnOk") : QStringLiteral("btnCancel")));
    });
    return box;
}

// Presses apply and comes back when the busy sign has gone; during is called once while it turns. False when
// no sign came or something is still open.
inline bool ApplyAndWait(const Desk& desk, const std::function<void(NimbProcessDialog&)>& during = {}) {
    const auto seen = std::make_shared<bool>(false);
    OnNextDialog<NimbProcessDialog>(desk.window.get(), [seen, during](NimbProcessDialog* dialog) {
        *seen = true;
        if (during) {
            during(*dialog);
        }
    });
    ClickOn(desk, "btnApply");
    return *seen && QApplication::activeModalWidget() == nullptr;
}

// The window's panel gets the loaded look at once, as one without a memory of its own.
inline void StartBlank(const Desk& /*desk*/) {
    PanelMemory().Forget();
}

// The look that the settings ask for.
inline ScreenState SavedLook(InterfaceLanguage language = InterfaceLanguage::English) {
    return MakeScreenState(LoadThemeState(language), LoadSlotTable(), LoadCurRectId(), language);
}

inline int PanelDiffersFrom(const Desk& desk, const ScreenState& look) {
    const QImage shown = desk.panel.State().UprightImage();
    return PixelsThatDiffer(shown, ExpectedPanel(look, desk.window->Session().ShownTexts()));
}

}  // namespace kivo::test

// Every pixel of the panel, upright, is what this look has with the values that it took. Asked again while
// values are on their way.
#define TRY_PANEL_SHOWS(desk, look) QTRY_COMPARE_WITH_TIMEOUT(PanelDiffersFrom(desk, look), 0, 20000)

// Values reach the panel, and whatever did so far was well formed.
#define TRY_VALUES_GO_ON(desk)                                                                \
    do {                                                                                      \
        const quint64 areasBefore = (desk).panel.State().counts.areas;                        \
        QTRY_VERIFY_WITH_TIMEOUT((desk).panel.State().counts.areas > areasBefore + 3, 20000); \
        QCOMPARE((desk).panel.State().counts.errors, quint64(0));                             \
    } while (false)
