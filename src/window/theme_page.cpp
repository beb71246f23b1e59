#include "window/theme_page.h"

#include <QIcon>
#include <QListWidgetItem>

#include "compose/theme_catalogue.h"
#include "ui_main_window.h"
#include "widgets/nimb_item_delegate.h"
#include "window/window_text.h"

namespace kivo {

namespace {

constexpr QSize kLargestItem(97, 110);
constexpr QSize kMargins(12, 12);
constexpr QSize kPictureSize(85, 98);

}  // namespace

ThemePage::ThemePage(::Ui::MainWindow& ui, InterfaceLanguage language, QObject* parent)
    : QObject(parent), m_ui(ui), m_language(language) {
    MyListWidget* list = ui.themeList;
    list->setItemDelegate(new NimbItemDelegate(list));
    // All beside one another, however many they are.
    const QSize cell(qMin(kLargestItem.width(), (list->width() - 1) / kThemeCount), kLargestItem.height());
    list->ShowAsGrid(kPictureSize.scaled(cell - kMargins, Qt::KeepAspectRatio), cell);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (const ThemeFacts& theme : kThemeTable) {
        const QString name = WindowText(theme.name);
        auto* item = new QListWidgetItem(list);
        item->setToolTip(name);
        item->setData(Qt::AccessibleTextRole, name);
    }
    // The keyboard moves the current row; the mouse clicks one.
    connect(list, &QListWidget::currentRowChanged, this, &ThemePage::ChooseRow);
    connect(ui.accentFromPicture, &QCheckBox::clicked, this, &ThemePage::accentFromPictureChosen);
    // Not even a click with the control key leaves none chosen.
    connect(list, &QListWidget::itemSelectionChanged, list, [list] {
        if (list->selectedItems().isEmpty() && list->currentItem() != nullptr) {
            list->currentItem()->setSelected(true);
        }
    });
}

void ThemePage::SetVisible(bool visible) {
    m_ui.themeList->setVisible(visible);
    m_ui.accentFromPicture->setVisible(visible && m_hasAccent);
}

void ThemePage::Show(const ThemeState& state) {
    const QSignalBlocker quiet(m_ui.themeList);
    const QStringList pictures = OverviewPictures(state.orientation, m_language);
    if (pictures != m_pictures) {
        m_pictures = pictures;
        for (int row = 0; row < m_ui.themeList->count(); ++row) {
            m_ui.themeList->item(row)->setIcon(QIcon(pictures.value(row)));
        }
    }
    m_ui.themeList->setCurrentRow(state.theme);
    // The choice of a theme without an accent has this place for itself.
    m_hasAccent = HasAccent(ThemeOf(state));
    m_ui.accentFromPicture->setVisible(m_hasAccent && !IsCustom(state));
    m_ui.accentFromPicture->setChecked(state.layouts[size_t(LayoutIndexInForce(state))].accentFromPicture);
}

void ThemePage::ChooseRow(int row) {
    if (row >= 0) {
        Q_EMIT themeChosen(row);
    }
}

}  // namespace kivo
