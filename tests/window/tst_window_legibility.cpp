#include <QLabel>
#include <QStyleOptionButton>

#include "support/contrast.h"
#include "support/custom_page_test_support.h"
#include "support/test_program.h"
#include "widgets/exit_message_box.h"

using namespace kivo;
using namespace kivo::test;

// Nothing in the window is cut off and everything can be read, in every language. Run once more for each
// scale of the screen: QT_SCALE_FACTOR has to be there before the program is.
class TestWindowLegibility : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void TextsFitTheirWidgets_data() { AddPages(); }
    void TextsFitTheirWidgets();
    void TextsStandOffTheirGround_data() { AddPages(); }
    void TextsStandOffTheirGround();
    void MessagesAreShownWhole_data();
    void MessagesAreShownWhole();

private:
    static void AddPages();
};

namespace {

enum class Page { Theme, Custom, Editing, OneItem };

std::unique_ptr<Desk> DeskAt(Page page, const QString& locale) {
    SetUpProfile();
    auto desk = std::make_unique<Desk>(QLocale(locale));
    desk->Show();
    // The scene is the theme whose date has sizes to choose from.
    desk->ClickRow("themeList", 1);
    if (page != Page::Theme) {
        desk->Click("btnImage");
    }
    if (page == Page::OneItem) {
        desk->Click("choiceSecond");
    }
    if (page == Page::Editing) {
        desk->Click("btnEdit");
    }
    return desk;
}

// Room that a button has for icon and text, and what it needs at the size it was given.
bool ButtonFits(const NimbPushButton& button) {
    constexpr int kSideRoom = 6;
    QFont font = button.font();
    font.setPixelSize(button.TextPixelSize());
    const QFontMetricsF metrics(font);
    // The hint has a margin of its own around icon and text.
    NimbPushButton bare;
    bare.SetTextPixelSize(button.TextPixelSize());
    const double around = bare.sizeHint().width();
    const double needed = button.sizeHint().width() - around;
    return needed <= button.width() - 2 * kSideRoom + 0.5 && metrics.height() <= button.height() + 0.5;
}

bool TextFits(const QWidget& widget) {
    const QFontMetrics metrics(widget.font(), &widget);
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        const int indent = label->styleSheet().contains(QLatin1String("padding-left:16px")) ? 16 : 0;
        return label->sizeHint().width() <= label->width() &&
               metrics.horizontalAdvance(label->text()) + indent <= label->width();
    }
    if (const auto* box = qobject_cast<const QCheckBox*>(&widget)) {
        return box->sizeHint().width() <= box->width() && metrics.height() <= box->height();
    }
    if (const auto* button = qobject_cast<const NimbPushButton*>(&widget)) {
        return ButtonFits(*button);
    }
    if (const auto* combo = qobject_cast<const PressCombobox*>(&widget)) {
        bool fits = true;
        for (int row = 0; row < combo->count(); ++row) {
            fits = fits && metrics.horizontalAdvance(combo->itemText(row)) <= combo->TextRect().width();
        }
        return fits;
    }
    return true;
}

QString TextOf(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        return label->text();
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return button->text();
    }
    if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
        return combo->currentText();
    }
    return {};
}

// All that is seen and has a text.
QVector<QWidget*> TextWidgets(const Desk& desk) {
    QVector<QWidget*> found;
    for (QWidget* widget : desk.window->findChildren<QWidget*>()) {
        if (widget->window() == desk.window.get() && widget->isVisible() && !widget->size().isEmpty() &&
            !TextOf(*widget).isEmpty()) {
            found.append(widget);
        }
    }
    return found;
}

QByteArray Told(const QWidget& widget) {
    return widget.objectName().toUtf8() + " \"" + TextOf(widget).toUtf8() + '"';
}

}  // namespace

void TestWindowLegibility::AddPages() {
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("locale");
    constexpr std::array<const char*, 4> names{"themes", "custom layout", "editing", "one item"};
    for (const char* locale : {"zh_CN", "en_US", "ru_RU"}) {
        for (size_t page = 0; page < names.size(); ++page) {
            QTest::addRow("%s, %s", names[page], locale) << int(page) << QString::fromLatin1(locale);
        }
    }
}

void TestWindowLegibility::TextsFitTheirWidgets() {
    QFETCH(int, page);
    QFETCH(QString, locale);
    const auto desk = DeskAt(Page(page), locale);
    const QVector<QWidget*> widgets = TextWidgets(*desk);
    QVERIFY(widgets.size() >= 7);
    for (const QWidget* widget : widgets) {
        QVERIFY2(TextFits(*widget), Told(*widget));
        const QRect inWindow(widget->mapTo(desk->window.get(), QPoint()), widget->size());
        QVERIFY2(desk->window->rect().contains(inWindow), Told(*widget));
    }
    // The pictures' names stand in cells of 89 pixels.
    auto* list = desk->Find<QListWidget>("pictureList");
    QFont font = list->font();
    font.setPixelSize(11);
    for (int row = 0; row < list->count(); ++row) {
        const QString name =
            list->item(row)->data(row == 0 ? Qt::DisplayRole : Qt::AccessibleTextRole).toString();
        QVERIFY2(!name.isEmpty() && QFontMetrics(font).horizontalAdvance(name) <= 89, qPrintable(name));
    }
}

void TestWindowLegibility::TextsStandOffTheirGround() {
    QFETCH(int, page);
    QFETCH(QString, locale);
    const auto desk = DeskAt(Page(page), locale);
    const QImage window = desk->window->grab().toImage();
    for (const QWidget* widget : TextWidgets(*desk)) {
        if (!widget->isEnabled()) {
            continue;
        }
        QRect place(widget->mapTo(desk->window.get(), QPoint()), widget->size());
        if (qobject_cast<const QCheckBox*>(widget) != nullptr) {
            place.setLeft(place.left() + 22);  // the box itself is no text
        }
        const double contrast = ContrastIn(CutOut(window, place));
        // Thin strokes at this size come to about nine tenths of their colours' contrast.
        QVERIFY2(contrast >= 4.2, Told(*widget) + ": " + QByteArray::number(contrast));
    }
}

void TestWindowLegibility::MessagesAreShownWhole_data() {
    QTest::addColumn<QString>("locale");
    for (const char* locale : {"zh_CN", "en_US", "ru_RU"}) {
        QTest::newRow(locale) << QString::fromLatin1(locale);
    }
}

// The longest message of all: the panel has room for it and for its buttons, inside the window.
void TestWindowLegibility::MessagesAreShownWhole() {
    QFETCH(QString, locale);
    const auto desk = DeskAt(Page::Theme, locale);
    bool looked = false;
    OnNextDialog<ExitMessageBox>(desk->window.get(), [&](ExitMessageBox* box) {
        looked = true;
        const QRect panel = box->PanelRect();
        QVERIFY(box->rect().contains(panel));
        QFont font = box->font();
        font.setPixelSize(14);
        constexpr int kTextLeft = 80;
        constexpr int kSide = 24;
        const QRect text = QFontMetrics(font).boundingRect(
            QRect(0, 0, panel.width() - kTextLeft - kSide, 1000), Qt::TextWordWrap, box->Text());
        int buttonsTop = panel.bottom();
        for (const NimbPushButton* button : box->findChildren<NimbPushButton*>()) {
            QVERIFY(ButtonFits(*button));
            QVERIFY(panel.contains(QRect(button->mapTo(box, QPoint()), button->size())));
            buttonsTop = qMin(buttonsTop, button->mapTo(box, QPoint()).y());
        }
        constexpr int kTextTop = 64;
        QVERIFY(panel.top() + kTextTop + text.height() <= buttonsTop);
        box->reject();
    });
    desk->window->slotExit();
    QVERIFY(looked);
}

KIVO_TEST(TestWindowLegibility)

#include "tst_window_legibility.moc"
