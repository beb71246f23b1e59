// The window's inside: what is pressed, ticked and picked becomes the editor's state, and that state is shown
// on every widget.

#include <QKeyEvent>

#include "config/default_profile.h"
#include "config/folders.h"
#include "config/kept_settings.h"
#include "window/away_light.h"
#include "window/main_window.h"
#include "window/press_elsewhere.h"
#include "window/window_parts.h"

namespace kivo {

namespace {

constexpr QPoint kEditBarCorner(48, 58);
constexpr QPoint kColorBarCorner(60, 82);
constexpr QPoint kRestoreOfferCorner(48, 66);  // where the tool bar stands while a layout is edited
constexpr QSize kVariantIcon(18, 12);
constexpr int kChoicePixels = 13;
constexpr int kLargeDatePixels = 15;
constexpr int kSmallDatePixels = 12;

// A name that is set is told as a new one, the same or not.
void Rename(QWidget& widget, const QString& name) {
    if (widget.accessibleName() != name) {
        widget.setAccessibleName(name);
    }
}

}  // namespace

void MainWindow::WirePages() {
    m_editBar = new EditBar(m_ui->centralwidget);
    m_colorBar = new ColorBar(m_ui->centralwidget);
    m_themePage = new ThemePage(*m_ui, m_language, this);
    m_customPage = new CustomPage(*m_ui, *m_editBar, this);
    m_tabs = new TwoWayChoice(*m_ui->btnTheme, *m_ui->btnImage, this);
    m_orientation = new TwoWayChoice(*m_ui->btnLandscape, *m_ui->btnPortrait, this);
    m_pageChoice = new TwoWayChoice(*m_ui->choiceFirst, *m_ui->choiceSecond, this);

    connect(m_tabs, &TwoWayChoice::chosen, this, [this](int page) {
        FinishEditing();
        OpenEditing(false);
        ChangeThemes([page](ThemeState& themes) { themes.mode = page; });
    });
    connect(m_orientation, &TwoWayChoice::chosen, this, [this](int orientation) {
        FinishEditing();
        m_choice->Settle();
        m_ui->zoomwidget->SetOrientation(orientation);
        ShowState();
    });
    connect(m_pageChoice, &TwoWayChoice::chosen, this, [this](int style) {
        FinishEditing();
        ChangeThemes([style](ThemeState& themes) { SetStyleInForce(themes, style); });
    });
    connect(m_themePage, &ThemePage::themeChosen, this,
            [this](int theme) { ChangeThemes([theme](ThemeState& themes) { themes.theme = theme; }); });
    connect(m_themePage, &ThemePage::accentFromPictureChosen, m_ui->zoomwidget,
            &ZoomWidget::SetAccentFromPicture);
    connect(m_ui->btnEdit, &QAbstractButton::clicked, this, [this] { OpenEditing(true); });
    connect(m_ui->btnEdit_cancel, &QAbstractButton::clicked, this, [this] {
        FinishEditing();
        m_ui->zoomwidget->RevertLayout();
        OpenEditing(false);
        m_ui->btnEdit->setFocus(Qt::OtherFocusReason);  // else the next button would have it: apply
    });
    connect(m_ui->btnRemote, &QAbstractButton::clicked, m_ui->zoomwidget, &ZoomWidget::ResetTrim);
    connect(m_ui->zoomwidget, &ZoomWidget::layoutChanged, this, &MainWindow::ShowState);
    connect(m_ui->zoomwidget, &ZoomWidget::editingWanted, this, [this] { OpenEditing(true); });
}

void MainWindow::WireTools() {
    m_editBar->move(kEditBarCorner);
    m_colorBar->move(kColorBarCorner);
    m_editBar->hide();
    m_colorBar->hide();
    QWidget* before = m_ui->pictureList;
    // Not what stands in them: the chooser's list is a window of its own.
    const auto tools = m_editBar->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly) +
                       m_colorBar->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* tool : tools) {
        // The drop-down list of the sizes is a window of its own.
        if (tool->focusPolicy() != Qt::NoFocus && tool->window() == this) {
            setTabOrder(before, tool);
            before = tool;
        }
    }
    setTabOrder(before, m_ui->zoomwidget);
    m_ui->btnRemote->setFocusPolicy(Qt::TabFocus);  // the keyboard stays with the trim frame

    ZoomWidget* editor = m_ui->zoomwidget;
    connect(m_editBar, &EditBar::SendEdit, this, &MainWindow::slotEdit);
    connect(m_editBar, &EditBar::SendImageReset, this, &MainWindow::slotReset);
    connect(m_editBar, &EditBar::SendFontSize, this, &MainWindow::slotFontSize);
    connect(m_colorBar, &ColorBar::SendFontColor, m_editBar, &EditBar::ControlLabelColor);
    connect(m_colorBar, &ColorBar::SendFontColor, this, &MainWindow::slotFontColor);
    connect(m_colorBar, &ColorBar::dismissed, this, &MainWindow::GoOnTyping);
    connect(m_colorBar, &ColorBar::shownChanged, m_editBar, &EditBar::TellColorsShown);
    connect(m_editBar, &EditBar::ShowColorbarSignal, this, &MainWindow::slotShowColorbar);
    connect(m_editBar, &EditBar::SizeClicked, this, &MainWindow::slotSizeClick);
    connect(editor, &ZoomWidget::HideColorWin, this, [this](int show) { slotShowColorbar(quint8(show)); });
    connect(editor, &ZoomWidget::UndoColorSignal, m_editBar,
            [this](int color) { m_editBar->ControlLabelColor(quint8(color)); });
    connect(editor, &ZoomWidget::UndoTextSize, m_editBar, &EditBar::slotSetFontSize);
    connect(editor, &ZoomWidget::HideRemote, this, [this](int hide) { SetRemoteHide(quint8(hide)); });
    connect(m_editBar, &EditBar::SendRedo, editor, &ZoomWidget::Redo);
    connect(editor, &ZoomWidget::editStateChanged, this, &MainWindow::ShowWays);
    connect(editor, &ZoomWidget::trimmingChanged, this, &MainWindow::FollowTrimMode);

    m_hint = new EditHint(*editor, *m_pictureNotice, m_ui->centralwidget);
    connect(m_customPage, &CustomPage::nothingFree, m_hint, &EditHint::TellNothingIsFree);
    // A press anywhere else in the window ends the typing; the tools belong to it.
    auto* const elsewhere = new PressElsewhere(*this, {editor, m_editBar, m_colorBar});
    connect(elsewhere, &PressElsewhere::pressed, this, [this] { slotShowColorbar(0); });
}

void MainWindow::LoadState() {
    SeedDefaultProfile(m_parts.applicationDir);
    m_restoreOffer = new RestoreOffer(m_ui->centralwidget);
    m_restoreOffer->move(kRestoreOfferCorner);
    connect(m_restoreOffer, &RestoreOffer::restoreWanted, this, &MainWindow::RestoreSettings);
    ReadState();
    m_session->SetLoaded(m_ui->zoomwidget->Shown());
}

void MainWindow::ReadState() {
    m_choice->Drop();
    m_pictures->LoadPictureList();
    m_ui->zoomwidget->Load();
    ShowState();
}

void MainWindow::RestoreSettings() {
    if (m_waitsForUpload) {
        return;
    }
    FinishEditing();
    OpenEditing(false);
    const bool isRestored = RestoreKeptSettings(DefaultConfigFile(m_parts.applicationDir));
    // What is restored is read anew as a whole; nothing else is left to save.
    m_stateLine->NoteSaved(isRestored ? SettingsPart::Layout | SettingsPart::Pictures | SettingsPart::Away
                                      : SettingsPart::Layout,
                           isRestored);
    if (!isRestored) {
        return;
    }
    StopRefresh();
    ReadState();
    m_away->LoadRules();
    UploadShown();
}

bool MainWindow::IsCustomPage() const {
    return IsCustom(m_ui->zoomwidget->Edited().themes);
}

void MainWindow::ChangeThemes(const std::function<void(ThemeState&)>& change) {
    // A picture that was chosen belongs to the layout it was chosen for.
    m_choice->Settle();
    ThemeState themes = m_ui->zoomwidget->Edited().themes;
    change(themes);
    m_ui->zoomwidget->ShowTheme(themes, true);
    ShowState();
}

void MainWindow::ShowState() {
    const ThemeState& themes = m_ui->zoomwidget->Edited().themes;
    const bool custom = IsCustom(themes);
    const bool lying = themes.orientation == Orientation::Landscape;
    m_ui->zoomwidget->setGeometry(lying ? Corners(48, 118, 482, 429) : Corners(53, 113, 477, 434));
    m_tabs->SetChosen(custom);
    m_orientation->SetChosen(int(themes.orientation));

    m_themePage->SetVisible(!custom);
    m_customPage->SetVisible(custom);
    if (custom) {
        m_customPage->Show();
    } else {
        m_themePage->Show(themes);
    }
    ShowPageChoice(custom, themes);
    const bool editing = m_ui->zoomwidget->IsEditing();
    m_ui->btnEdit->setVisible(custom && !editing);
    m_ui->btnEdit_cancel->setVisible(custom && editing);
    ShowToolBar();
    ShowChosenPicture();
    ShowPictureNotice();
    ShowLooks();
}

// The custom page chooses between five items and one, the theme page between two sizes of the date.
void MainWindow::ShowPageChoice(bool custom, const ThemeState& themes) {
    NimbPushButton* first = m_ui->choiceFirst;
    NimbPushButton* second = m_ui->choiceSecond;
    if (custom) {
        first->setText(WindowText(QT_TRANSLATE_NOOP("MainWindow", "五项")));
        second->setText(WindowText(QT_TRANSLATE_NOOP("MainWindow", "一项")));
        first->SetIcons(SkinPath("five_n"), SkinPath("five_s"), kVariantIcon);
        second->SetIcons(SkinPath("one_n"), SkinPath("one_s"), kVariantIcon);
        first->setToolTip(WindowText(QT_TRANSLATE_NOOP("MainWindow", "最多五项")));
        second->setToolTip(WindowText(QT_TRANSLATE_NOOP("MainWindow", "只显示一项")));
    } else {
        const QString date =
            m_language == InterfaceLanguage::Russian ? QStringLiteral("31.12") : QStringLiteral("12.31");
        first->setText(date);
        second->setText(date);
        first->SetIcons({}, {}, {});
        second->SetIcons({}, {}, {});
        first->setToolTip(WindowText(QT_TRANSLATE_NOOP("MainWindow", "日期：大")));
        second->setToolTip(WindowText(QT_TRANSLATE_NOOP("MainWindow", "日期：小")));
    }
    first->SetTextPixelSize(custom ? kChoicePixels : kLargeDatePixels);
    second->SetTextPixelSize(custom ? kChoicePixels : kSmallDatePixels);
    Rename(*m_ui->pageChoice, custom ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "项目数量"))
                                     : WindowText(QT_TRANSLATE_NOOP("MainWindow", "日期大小")));
    for (NimbPushButton* button : {first, second}) {
        Rename(*button, button->toolTip());
    }
    // The other themes have one size of the date.
    const bool hasDateSizes = !custom && Has(ThemeOf(themes), kHourAlone);
    m_ui->pageChoice->setVisible(custom || hasDateSizes);
    m_ui->dateSizeLabel->setVisible(hasDateSizes);
    m_ui->label_5->setText(
        WindowText(custom ? PlacedText QT_TRANSLATE_NOOP3("MainWindow", "显示设计", "over the values")
                          : PlacedText QT_TRANSLATE_NOOP3("MainWindow", "显示设计", "over the themes")));
    m_pageChoice->SetChosen(StyleInForce(themes));
}

void MainWindow::ShowToolBar() {
    const bool isEditing = m_ui->zoomwidget->IsEditing() && IsCustomPage();
    m_editBar->setVisible(isEditing);
    m_restoreOffer->Refresh(!isEditing);
    const LayoutRecord& layout = LayoutInForce(m_ui->zoomwidget->Edited());
    m_editBar->slotSetFontSize(layout.sizeIndex);
    m_editBar->ControlLabelColor(quint8(layout.colorIndex));
    m_ui->btnRemote->setVisible(m_ui->zoomwidget->IsTrimMode());
    ShowWays();
}

void MainWindow::ShowWays() {
    m_editBar->SetWays(m_ui->zoomwidget->CanUndo(), m_ui->zoomwidget->CanRedo());
}

// Trim mode ends by key too.
void MainWindow::FollowTrimMode() {
    if (!m_ui->zoomwidget->IsTrimMode() && m_editBar->IsEditPressed()) {
        m_editBar->SetEditPressed(false);
    }
    m_ui->btnRemote->setVisible(m_ui->zoomwidget->IsTrimMode());
    ShowLooks();
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    if (!m_ui->zoomwidget->TakeKey(*event)) {
        QMainWindow::keyPressEvent(event);
    }
}

void MainWindow::OpenEditing(bool open) {
    m_ui->zoomwidget->SetEditing(open);
    if (open) {
        // Before the button that was pressed goes, or the focus would pass through the next one.
        m_ui->zoomwidget->setFocus(Qt::OtherFocusReason);
    }
    ShowState();
}

void MainWindow::FinishEditing() {
    m_ui->zoomwidget->solteditingFinished();
    m_editBar->SetEditPressed(false);
}

void MainWindow::slotEdit(quint8 iEdit) {
    m_ui->zoomwidget->SetTrimMode(iEdit);
    if (m_ui->zoomwidget->IsTrimming()) {
        m_ui->zoomwidget->setFocus(Qt::OtherFocusReason);  // the arrows move its frame
    }
    m_ui->btnRemote->setVisible(m_ui->zoomwidget->IsTrimMode());
}

void MainWindow::slotFontColor(quint8 iColor) {
    m_ui->zoomwidget->SetFontColor(iColor);
    GoOnTyping();
}

// The strip goes, and with it the focus, where it was used by keyboard.
void MainWindow::GoOnTyping() {
    if (m_ui->zoomwidget->IsTextEntryOpen()) {
        m_ui->zoomwidget->slotShowEdt();
    }
}

void MainWindow::slotFontSize(quint8 iSize) {
    m_ui->zoomwidget->SetFontSize(iSize);
}

void MainWindow::slotShowColorbar(quint8 iShow) {
    if (iShow == 0) {
        m_colorBar->hide();
        m_ui->zoomwidget->solteditingFinished();
        return;
    }
    if (m_colorBar->isVisible()) {
        m_colorBar->hide();  // the dot was pressed again
        GoOnTyping();
        return;
    }
    m_editBar->SetEditPressed(false);  // text cannot be typed over the trim frame
    m_colorBar->SetCurrentColor(m_editBar->IndicatorColor());
    m_colorBar->show();
    m_colorBar->raise();
    m_ui->zoomwidget->slotShowEdt();
}

void MainWindow::slotReset() {
    m_ui->zoomwidget->Undo();
}

void MainWindow::slotSizeClick() {
    m_colorBar->hide();
}

void MainWindow::SetRemoteHide(quint8 iHide) {
    m_ui->btnRemote->setVisible(iHide == 0 && m_ui->zoomwidget->IsTrimMode());
}

}  // namespace kivo
