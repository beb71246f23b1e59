#include <QLineEdit>

#include "editor/preview_items.h"
#include "editor_test_support.h"
#include "free_text_test_support.h"
#include "support/pressed_by_program.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

QAccessibleInterface* ToldOf(QWidget& widget) {
    return QAccessible::queryAccessibleInterface(&widget);
}

QVector<QAccessibleInterface*> Children(QWidget& widget) {
    QVector<QAccessibleInterface*> children;
    for (int index = 0; index < ToldOf(widget)->childCount(); ++index) {
        children.append(ToldOf(widget)->child(index));
    }
    return children;
}

QString NameOf(QAccessibleInterface* told) {
    return told->text(QAccessible::Name);
}

QStringList NamesIn(QWidget& widget) {
    QStringList names;
    for (QAccessibleInterface* child : Children(widget)) {
        names.append(NameOf(child));
    }
    return names;
}

// What is told of the preview's items while this lives: their names, in order.
class Told {
public:
    explicit Told(ZoomWidget& preview) {
        QObject::connect(&preview, &ZoomWidget::itemTold, &m_context,
                         [this](const PreviewChange& change) { m_changes.append(change); });
    }
    QStringList Names(PreviewChange::What what) const {
        QStringList names;
        for (const PreviewChange& change : m_changes) {
            if (change.what == what) {
                names.append(change.item.name);
            }
        }
        return names;
    }
    QString Last(PreviewChange::What what) const {
        const QStringList names = Names(what);
        return names.isEmpty() ? QString() : names.last();
    }

private:
    QObject m_context;
    QVector<PreviewChange> m_changes;
};

using What = PreviewChange::What;

constexpr int kFreeText = kSlotCount;  // behind the slots

}  // namespace

// What a screen reader has of the preview.
class TestPreviewAccessibility : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    void EachSlotIsAChildWithCaptionAndValue() {
        Editor editor;
        ItemTexts live;
        live[CpuTemperature] = QStringLiteral("47℃");
        live[Time] = QStringLiteral("18:46");
        editor.SetLiveTexts(live);
        QCOMPARE(Children(editor).size(), kSlotCount + 1);
        QCOMPARE(ToldOf(editor)->role(), QAccessible::List);
        for (int slot = 0; slot < kSlotCount; ++slot) {
            QAccessibleInterface* const told = Children(editor)[slot];
            const int item = editor.Row()[size_t(slot)];
            QVERIFY2(NameOf(told).startsWith(ItemCaptions()[size_t(item)] + QLatin1Char(' ')),
                     qPrintable(NameOf(told)));
            QCOMPARE(told->role(), QAccessible::ListItem);
            QCOMPARE(told->parent(), ToldOf(editor));
            QCOMPARE(ToldOf(editor)->indexOfChild(told), slot);
            QVERIFY(told->isValid());
        }
        const QStringList names = NamesIn(editor);
        QCOMPARE(names.filter(QStringLiteral("47℃")).size(), 1);
        QCOMPARE(names.filter(QStringLiteral("18:46")).size(), 1);
    }

    void AChildIsALeaf() {
        Editor editor;
        QAccessibleInterface* const told = Children(editor)[0];
        const QString name = NameOf(told);
        QCOMPARE(told->childCount(), 0);
        QVERIFY(told->child(0) == nullptr && told->childAt(10, 10) == nullptr);
        QCOMPARE(told->indexOfChild(ToldOf(editor)), -1);
        QCOMPARE(told->window(), editor.window()->windowHandle());
        QVERIFY(told->actionInterface()
                    ->keyBindingsForAction(QAccessibleActionInterface::pressAction())
                    .isEmpty());
        told->setText(QAccessible::Name, QStringLiteral("another"));
        QCOMPARE(NameOf(told), name);
    }

    void ChildrenLieWhereTheyAreSeen_data() {
        QTest::addColumn<Orientation>("orientation");
        for (const Orientation orientation : kOrientations) {
            QTest::newRow(NameOf(orientation)) << orientation;
        }
    }
    void ChildrenLieWhereTheyAreSeen() {
        QFETCH(Orientation, orientation);
        Editor editor(CustomThemes(orientation));
        editor.GiveText(Words());
        const QRect screen(editor.mapToGlobal(QPoint()), editor.size());
        for (int slot = 0; slot < kSlotCount; ++slot) {
            QAccessibleInterface* const told = Children(editor)[slot];
            const QPoint seen = editor.mapToGlobal(SlotPoint(slot, orientation));
            QVERIFY(screen.contains(told->rect()) && told->rect().contains(seen));
            QCOMPARE(ToldOf(editor)->childAt(seen.x(), seen.y()), told);
            // The words say the same.
            const QString place = told->text(QAccessible::Description);
            const QPoint middle = screen.center();
            QCOMPARE(place.contains(QChar(0x5DE6)), slot != kCentreSlot && seen.x() < middle.x());
            QCOMPARE(place.contains(QChar(0x53F3)), slot != kCentreSlot && seen.x() > middle.x());
            QCOMPARE(place.endsWith(QChar(0x4E0A)), slot != kCentreSlot && seen.y() < middle.y());
            QCOMPARE(place.endsWith(QChar(0x4E0B)), slot != kCentreSlot && seen.y() > middle.y());
        }
        const QPoint text = editor.mapToGlobal(DrawnText(editor));
        QVERIFY(Children(editor)[kFreeText]->rect().contains(text));
    }

    void AnEmptySlotIsThereOnlyToBeFilled() {
        SlotTable table = EmptySlotTable();
        table[0][1] = CpuUsage;
        Editor editor(CustomThemes(), table);
        QCOMPARE(Children(editor).size(), kSlotCount + 1);
        QVERIFY(!OffersPress(Children(editor)[0]) && OffersPress(Children(editor)[1]));
        editor.SetEditing(false);
        QCOMPARE(Children(editor).size(), 1);
        QCOMPARE(NamesIn(editor).constFirst().section(QLatin1Char(' '), 0, 0), ItemCaptions()[CpuUsage]);
    }

    void NothingCanBePressedUnlessItIsEdited() {
        Editor editor;
        editor.GiveText(Words());
        editor.SetEditing(false);
        QCOMPARE(Children(editor).size(), kSlotCount + 1);
        const SlotRow before = editor.Row();
        for (QAccessibleInterface* child : Children(editor)) {
            QVERIFY(child->actionInterface()->actionNames().isEmpty());
            QVERIFY(!child->state().focusable && !child->state().selectable);
            Press(child);
        }
        QCOMPARE(editor.Row(), before);
        QVERIFY(!editor.IsTextEntryOpen());
    }

    // Clock and values of a theme are read, no more.
    void AThemesValuesAreStillTexts() {
        ThemeState themes = CustomThemes();
        themes.mode = 0;
        Editor editor(themes);
        editor.SetEditing(false);
        QCOMPARE(ToldOf(editor)->role(), QAccessible::Grouping);
        const QStringList names = NamesIn(editor);
        QVERIFY(names.size() >= 5);
        QCOMPARE(names.filter(ItemCaptions()[Time]).size(), 1);
        for (QAccessibleInterface* child : Children(editor)) {
            QCOMPARE(child->role(), QAccessible::StaticText);
            QVERIFY(!child->rect().isEmpty() && !OffersPress(child));
        }
    }

    void OneItemIsAText() {
        Editor editor(CustomThemes(Orientation::Landscape, 1));
        const QVector<QAccessibleInterface*> children = Children(editor);
        QCOMPARE(children.size(), 2);
        QCOMPARE(children[0]->role(), QAccessible::StaticText);
        QCOMPARE(children[1]->role(), QAccessible::Button);
        QVERIFY(!OffersPress(children[0]) && OffersPress(children[1]));
    }

    void ArrowsTellTheSlotTheyLeadTo() {
        Editor editor;
        editor.setFocus();
        QTRY_VERIFY(editor.hasFocus());
        const Told told(editor);
        // From the centre.
        const QVector<QPair<Qt::Key, int>> steps{
            {Qt::Key_Left, 0}, {Qt::Key_Down, 1}, {Qt::Key_Right, 2}, {Qt::Key_Right, 4}, {Qt::Key_Down, 3}};
        for (const auto& step : steps) {
            QTest::keyClick(&editor, step.first);
            QAccessibleInterface* const slot = Children(editor)[step.second];
            QCOMPARE(told.Last(What::GotKeys), NameOf(slot));
            QVERIFY(slot->state().focused);
            QCOMPARE(ToldOf(editor)->focusChild(), slot);
        }
        QTest::keyClick(&editor, Qt::Key_Down);  // leads nowhere
        QCOMPARE(told.Names(What::GotKeys).size(), steps.size());
    }

    // Qt tells of the preview's own focus as well: the slot is told last.
    void WithTheFocusTheSlotIsTold() {
        Editor editor;
        QLineEdit other;
        other.show();
        QVERIFY(QTest::qWaitForWindowExposed(&other));
        other.activateWindow();
        other.setFocus();
        QTRY_VERIFY(other.hasFocus());
        const Told told(editor);
        editor.activateWindow();
        editor.setFocus(Qt::TabFocusReason);
        QTRY_COMPARE(told.Last(What::GotKeys), NameOf(Children(editor)[kCentreSlot]));
    }

    void WhatIsPickedUpIsSelected() {
        Editor editor;
        editor.setFocus();
        QTRY_VERIFY(editor.hasFocus());
        const Told told(editor);
        const QString name = NameOf(Children(editor)[kCentreSlot]);
        QTest::keyClick(&editor, Qt::Key_Space);
        QVERIFY(Children(editor)[kCentreSlot]->state().selected);
        QCOMPARE(told.Names(What::PickedUp), QStringList(name));
        QTest::keyClick(&editor, Qt::Key_Escape);
        QVERIFY(!Children(editor)[kCentreSlot]->state().selected);
        QCOMPARE(told.Names(What::PutDown), QStringList(name));
    }

    void APressPicksUpAndPutsDown() {
        Editor editor;
        const SlotRow before = editor.Row();
        const QString name = NameOf(Children(editor)[0]);
        Press(Children(editor)[0]);
        QVERIFY(Children(editor)[0]->state().selected);
        const Told told(editor);
        Press(Children(editor)[4]);
        QCOMPARE(editor.Row()[4], before[0]);
        QCOMPARE(editor.Row()[0], before[4]);
        QCOMPARE(NameOf(Children(editor)[4]), name);
        QVERIFY(told.Names(What::Name).contains(name));
        QVERIFY(!Children(editor)[0]->state().selected && !Children(editor)[4]->state().selected);
        QVERIFY(editor.CanUndo());
    }

    // The other way round than by press: the keys go to a slot.
    void TheKeysCanBeGivenToASlot() {
        Editor editor;
        const Told told(editor);
        QAccessibleInterface* const slot = Children(editor)[3];
        slot->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        QTRY_VERIFY(slot->state().focused);
        QCOMPARE(told.Last(What::GotKeys), NameOf(slot));
        QTest::keyClick(&editor, Qt::Key_Space);
        QVERIFY(slot->state().selected);
    }

    void TheFreeTextIsPressedToBeTyped() {
        Editor editor;
        editor.GiveText(QStringLiteral("Kivo\ndesk"));
        QAccessibleInterface* const text = Children(editor)[kFreeText];
        QVERIFY(NameOf(text).endsWith(QStringLiteral("Kivo desk")));
        QCOMPARE(text->role(), QAccessible::Button);
        Press(text);
        QVERIFY(editor.IsTextEntryOpen());
        QVERIFY(!text->isValid() && text->state().invalid);
        QCOMPARE(Children(editor).size(), kSlotCount + 1);
        QAccessibleInterface* const box = Children(editor)[kFreeText];
        QCOMPARE(box->role(), QAccessible::EditableText);
        QVERIFY(!NameOf(box).isEmpty() && box->state().editable);
        QCOMPARE(ToldOf(editor)->indexOfChild(box), kFreeText);
        QTest::keyClicks(&editor.TextBox(), QStringLiteral(" 2"));
        QCOMPARE(box->textInterface()->text(0, box->textInterface()->characterCount()),
                 QStringLiteral("Kivo\ndesk 2"));
        QTest::keyClick(&editor.TextBox(), Qt::Key_Return);
        QVERIFY(text->isValid());
        QVERIFY(NameOf(text).endsWith(QStringLiteral("Kivo desk 2")));
    }

    void ItsRowIsTold() {
        Editor editor;
        editor.GiveText(Words());
        const Told told(editor);
        editor.setFocus();
        QTRY_VERIFY(!told.Last(What::GotKeys).isEmpty());
        QStringList places;
        for (int row = 2; row >= 0; --row) {
            places.append(Children(editor)[kFreeText]->text(QAccessible::Description));
            const int before = told.Names(What::Place).size();
            QTest::keyClick(&editor, Qt::Key_PageUp);
            QCOMPARE(told.Names(What::Place).size() - before, row > 0 ? 1 : 0);
        }
        places.removeDuplicates();
        QCOMPARE(places.size(), kTextRowCount);
    }

    void TheTrimFrameHasNoItems() {
        Editor editor;
        editor.SetTrimMode(1);
        QCOMPARE(Children(editor).size(), 0);
        editor.SetTrimMode(0);
        QCOMPARE(Children(editor).size(), kSlotCount + 1);
    }

    // Whoever kept an item may ask it later.
    void AnItemOutlivesItsPlaceButNotThePreview() {
        auto editor = std::make_unique<Editor>();
        QAccessibleInterface* const slot = Children(*editor)[1];
        const QAccessible::Id id = QAccessible::uniqueId(slot);
        editor->SetTrimMode(1);
        QVERIFY(!slot->isValid());
        QVERIFY(slot->rect().isEmpty() && NameOf(slot).isEmpty() && !OffersPress(slot));
        editor->SetTrimMode(0);
        QVERIFY(slot->isValid());
        QCOMPARE(Children(*editor)[1], slot);
        editor.reset();
        QVERIFY(QAccessible::accessibleInterface(id) == nullptr);
    }
};

KIVO_TEST(TestPreviewAccessibility)
#include "tst_preview_accessibility.moc"
