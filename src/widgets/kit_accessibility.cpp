#include "widgets/kit_accessibility.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleWidget>

#include "widgets/choice_group.h"
#include "widgets/nimb_push_button.h"
#include "widgets/press_label.h"

namespace kivo {

namespace {

// What is hidden, off or of no size is no button to anybody.
bool CanBePressed(const QWidget& widget) {
    return widget.isVisible() && widget.isEnabled() && !widget.size().isEmpty();
}

// A button, a check box, or one of several choices. Qt's own interface turns a check box without a click,
// which is what the program listens to.
class ButtonInterface final : public QAccessibleWidget {
public:
    explicit ButtonInterface(QAbstractButton* button) : QAccessibleWidget(button, QAccessible::Button) {}

    QAccessible::Role role() const override {
        const auto* const own = qobject_cast<const NimbPushButton*>(&Button());
        if (own != nullptr && own->IsExclusive()) {
            return QAccessible::RadioButton;
        }
        return Button().isCheckable() ? QAccessible::CheckBox : QAccessible::Button;
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = Button().isCheckable();
        state.checked = Button().isChecked();
        state.pressed = Button().isDown();
        return state;
    }

    QString text(QAccessible::Text kind) const override {
        const bool isNamedByText = kind == QAccessible::Name && widget()->accessibleName().isEmpty();
        return isNamedByText ? Button().text() : QAccessibleWidget::text(kind);
    }

    QStringList actionNames() const override {
        if (!CanBePressed(Button())) {
            return {};
        }
        return QStringList(Button().isCheckable() ? toggleAction() : pressAction()) +
               QAccessibleWidget::actionNames();
    }

    void doAction(const QString& name) override {
        if (!CanBePressed(Button())) {
            return;
        }
        if (name == pressAction() || name == toggleAction()) {
            Button().click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    QAbstractButton& Button() const { return *static_cast<QAbstractButton*>(object()); }
};

// A label that is pressed: a button, which may open something.
class PressLabelInterface final : public QAccessibleWidget {
public:
    explicit PressLabelInterface(PressLabel* label) : QAccessibleWidget(label, QAccessible::Button) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const PressLabel::Opens opens = Label().WhatItOpens();
        state.expandable = opens != PressLabel::Opens::Nothing;
        state.expanded = opens == PressLabel::Opens::Open;
        state.collapsed = opens == PressLabel::Opens::Closed;
        return state;
    }

    QStringList actionNames() const override {
        return CanBePressed(Label()) ? QStringList(pressAction()) + QAccessibleWidget::actionNames()
                                     : QStringList();
    }

    void doAction(const QString& name) override {
        if (!CanBePressed(Label())) {
            return;
        }
        if (name == pressAction()) {
            Label().Press();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    PressLabel& Label() const { return *static_cast<PressLabel*>(object()); }
};

QAccessibleInterface* MakeInterface(const QString& className, QObject* object) {
    if (className == QLatin1String("kivo::NimbPushButton") || className == QLatin1String("QCheckBox")) {
        return new ButtonInterface(qobject_cast<QAbstractButton*>(object));
    }
    if (className == QLatin1String("kivo::PressLabel")) {
        return new PressLabelInterface(qobject_cast<PressLabel*>(object));
    }
    if (className == QLatin1String("kivo::ChoiceGroup")) {
        return new QAccessibleWidget(qobject_cast<ChoiceGroup*>(object), QAccessible::Grouping);
    }
    return nullptr;
}

}  // namespace

void InstallKitAccessibility() {
    QAccessible::installFactory(MakeInterface);
}

}  // namespace kivo
