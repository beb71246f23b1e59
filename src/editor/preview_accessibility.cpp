#include "editor/preview_accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>
#include <QPointer>
#include <algorithm>
#include <optional>

#include "editor/zoom_widget.h"

namespace kivo {

namespace {

// One item. The preview may lose it, to get it back later: meanwhile the interface is not valid.
class ItemInterface final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    ItemInterface(ZoomWidget* preview, int key) : m_preview(preview), m_key(key) {}

    int Key() const { return m_key; }

    bool isValid() const override { return Item().has_value(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_preview ? m_preview->window()->windowHandle() : nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_preview); }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    QString text(QAccessible::Text kind) const override {
        const std::optional<PreviewItem> item = Item();
        if (!item) {
            return {};
        }
        switch (kind) {
            case QAccessible::Name:
                return item->name;
            case QAccessible::Description:
                return item->place;
            default:
                return {};
        }
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    QRect rect() const override {
        const std::optional<PreviewItem> item = Item();
        return item ? QRect(m_preview->mapToGlobal(item->rect.topLeft()), item->rect.size()) : QRect();
    }

    QAccessible::Role role() const override {
        const std::optional<PreviewItem> item = Item();
        switch (item ? item->kind : PreviewItem::Kind::Value) {
            case PreviewItem::Kind::Slot:
                return QAccessible::ListItem;
            case PreviewItem::Kind::FreeText:
                return QAccessible::Button;
            default:
                return QAccessible::StaticText;
        }
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        const std::optional<PreviewItem> item = Item();
        if (!item) {
            state.invalid = true;
            return state;
        }
        const bool isSlot = item->kind == PreviewItem::Kind::Slot;
        state.invisible = !m_preview->isVisible();
        state.readOnly = item->kind == PreviewItem::Kind::Value;
        state.focusable = isSlot && m_preview->IsEditing();
        state.focused = item->hasKeys;
        state.selectable = isSlot && m_preview->IsEditing();
        state.selected = item->isPicked;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override {
        const std::optional<PreviewItem> item = Item();
        QStringList names;
        if (item && item->canPress) {
            names << pressAction();
        }
        if (state().focusable) {
            names << setFocusAction();
        }
        return names;
    }
    void doAction(const QString& name) override {
        const std::optional<PreviewItem> item = Item();
        if (!item || !actionNames().contains(name)) {
            return;
        }
        if (name == pressAction()) {
            m_preview->PressItem(*item);
        } else {
            m_preview->StandOn(*item);
        }
    }
    QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    std::optional<PreviewItem> Item() const {
        if (!m_preview) {
            return std::nullopt;
        }
        const QVector<PreviewItem> items = m_preview->Items();
        const auto found = std::find_if(items.begin(), items.end(),
                                        [this](const PreviewItem& item) { return item.Key() == m_key; });
        return found == items.end() ? std::nullopt : std::make_optional(*found);
    }

    const QPointer<ZoomWidget> m_preview;
    const int m_key;
};

class PreviewInterface final : public QAccessibleWidget {
public:
    explicit PreviewInterface(ZoomWidget* preview) : QAccessibleWidget(preview, QAccessible::Grouping) {}
    ~PreviewInterface() override {
        for (const QAccessible::Id id : qAsConst(m_ids)) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }
    Q_DISABLE_COPY_MOVE(PreviewInterface)

    QAccessible::Role role() const override {
        return Preview().Layouts().HasSlots() ? QAccessible::List : QAccessible::Grouping;
    }

    int childCount() const override {
        return Preview().Items().size() + (Preview().OpenTextBox() == nullptr ? 0 : 1);
    }
    QAccessibleInterface* child(int index) const override {
        const QVector<PreviewItem> items = Preview().Items();
        if (index >= 0 && index < items.size()) {
            return ChildFor(items[index].Key());
        }
        QWidget* const box = Preview().OpenTextBox();
        return index == items.size() && box != nullptr ? QAccessible::queryAccessibleInterface(box) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int index = 0; index < childCount(); ++index) {
            if (this->child(index) == child) {
                return index;
            }
        }
        return -1;
    }
    QAccessibleInterface* focusChild() const override {
        const QVector<PreviewItem> items = Preview().Items();
        const auto found =
            std::find_if(items.begin(), items.end(), [](const PreviewItem& item) { return item.hasKeys; });
        return found == items.end() ? QAccessibleWidget::focusChild() : ChildFor(found->Key());
    }

    // Of the item with that key; made when it is first asked for.
    QAccessibleInterface* ChildFor(int key) const {
        const auto known = m_ids.constFind(key);
        if (known != m_ids.constEnd()) {
            return QAccessible::accessibleInterface(*known);
        }
        auto* const made = new ItemInterface(&Preview(), key);
        m_ids.insert(key, QAccessible::registerAccessibleInterface(made));
        return made;
    }

private:
    ZoomWidget& Preview() const { return *static_cast<ZoomWidget*>(object()); }

    mutable QHash<int, QAccessible::Id> m_ids;  // Qt's own store has the interfaces
};

QAccessibleInterface* MakeInterface(const QString& className, QObject* object) {
    auto* const preview =
        className == QLatin1String("kivo::ZoomWidget") ? qobject_cast<ZoomWidget*>(object) : nullptr;
    return preview == nullptr ? nullptr : new PreviewInterface(preview);
}

void TellEvent(QAccessibleInterface* item, QAccessible::Event type) {
    QAccessibleEvent event(item, type);
    QAccessible::updateAccessibility(&event);
}

void TellSelected(QAccessibleInterface* item, QAccessible::Event type) {
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(item, changed);
    QAccessible::updateAccessibility(&event);
    TellEvent(item, type);
}

}  // namespace

void InstallPreviewAccessibility() {
    QAccessible::installFactory(MakeInterface);
}

void TellPreviewChange(ZoomWidget& preview, const PreviewChange& change) {
    const auto* const told = dynamic_cast<PreviewInterface*>(QAccessible::queryAccessibleInterface(&preview));
    if (told == nullptr) {
        return;
    }
    QAccessibleInterface* const child = told->ChildFor(change.item.Key());
    switch (change.what) {
        case PreviewChange::What::Name:
            TellEvent(child, QAccessible::NameChanged);
            break;
        case PreviewChange::What::Place:
            TellEvent(child, QAccessible::DescriptionChanged);
            break;
        case PreviewChange::What::PickedUp:
            TellSelected(child, QAccessible::SelectionAdd);
            break;
        case PreviewChange::What::PutDown:
            TellSelected(child, QAccessible::SelectionRemove);
            break;
        case PreviewChange::What::GotKeys:
            TellEvent(child, QAccessible::Focus);
            break;
    }
}

}  // namespace kivo
