#include "editor/zoom_widget.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>

#include "config/settings_file.h"
#include "editor/custom_layout_rules.h"
#include "pictures/picture_path.h"
#include "pictures/picture_source.h"
#include "telemetry/interface_language.h"
#include "widgets/self_plain_text_edit.h"

namespace kivo {

namespace {

QString PictureOf(const LayoutRecord& layout) {
    ScreenState state;
    state.layout = layout;
    return PicturePath(state);
}

}  // namespace

ZoomWidget::ZoomWidget(QWidget* parent) : QWidget(parent), m_editText(new SelfPlainTextEdit(this)) {
    m_edited.themes = FactoryThemeState(CurrentInterfaceLanguage());
    m_edited.textRow = LoadCurRectId();
    m_saved = m_edited;
    LoadCustomShow();

    // Not mouse tracking: that belongs to the trim mode.
    setAttribute(Qt::WA_Hover);
    m_editText->hide();
    m_editText->setTabChangesFocus(true);
    m_editText->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_editText->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_editText->document()->setDocumentMargin(0);
    m_editText->installEventFilter(this);
    connect(m_editText, &QPlainTextEdit::textChanged, this, &ZoomWidget::PlaceTextBox);
    RetranslateTexts();
    StyleTextBox();
}

ZoomWidget::~ZoomWidget() = default;

QSize ZoomWidget::sizeHint() const {
    return QSize(435, 312);
}

ScreenState ZoomWidget::Shown() const {
    return MakeScreenState(m_edited, CurrentInterfaceLanguage());
}

void ZoomWidget::Load() {
    EndDrag();
    m_edited = LoadEditState(CurrentInterfaceLanguage());
    m_saved = m_edited;
    m_loaded = true;
    m_history.Start(m_edited);
    RetranslateTexts();
    StyleTextBox();
    update();
}

void ZoomWidget::LoadCustomShow() {
    m_edited.slotTable = LoadSlotTable();
    m_saved.slotTable = m_edited.slotTable;
    for (EditState* state : {&m_edited, &m_saved}) {
        SettleFlags(*state);
    }
    m_history.Start(m_edited);
    update();
}

bool ZoomWidget::SaveCustomShow() {
    return SaveSlotTable(m_edited.slotTable);
}

void ZoomWidget::ShowTheme(const ThemeState& state, bool reloadPictures) {
    ThemeState shown = state;
    if (m_textEntryOpen) {
        const auto index = size_t(LayoutIndexInForce(m_edited.themes));
        solteditingFinished();
        // state may have been copied while the text was still in the box.
        const LayoutRecord& ended = m_edited.themes.layouts[index];
        shown.layouts[index].freeText = ended.freeText;
        shown.layouts[index].shown[OtherText] = ended.shown[OtherText];
        shown.layouts[index].selected[OtherText] = ended.selected[OtherText];
    }
    EndDrag();
    m_edited.themes = shown;
    if (!m_loaded) {
        m_loaded = true;
        SettleFlags(m_edited);
        m_saved = m_edited;
        m_history.Start(m_edited);
    }
    m_history.Append(m_edited);
    if (reloadPictures) {
        m_background.Recheck();
    }
    RetranslateTexts();
    StyleTextBox();
    update();
}

void ZoomWidget::SetOrientation(int orientation) {
    solteditingFinished();
    EndDrag();
    m_edited.themes.orientation = orientation == 0 ? Orientation::Landscape : Orientation::Portrait;
    m_history.Append(m_edited);
    StyleTextBox();
    if (CurrentOrientation() == Orientation::Portrait) {
        m_editText->EnforceMaxLength();
    }
    update();
}

void ZoomWidget::SetPictures(PictureSource& pictures) {
    m_background.SetSource(pictures);
    connect(&pictures, &PictureSource::answered, this, [this](const QString& path) {
        const QStringList paths = PicturePaths(Shown());
        if (std::any_of(paths.begin(), paths.end(),
                        [&path](const QString& own) { return IsSamePicture(own, path); })) {
            update();
        }
    });
    update();
}

void ZoomWidget::CheckPicture() {
    m_background.Recheck();
    update();
}

void ZoomWidget::SetBackground(const QString& path) {
    EndDrag();
    LayoutRecord& layout = LayoutInForce(m_edited);
    if (!IsSamePicture(PicturePath(Shown()), path)) {
        ClearTrim(layout);
    }
    layout.picture = path;
    NoteEdit(By::Caller);
}

void ZoomWidget::ReplacePicture(const QString& old, const QString& by) {
    EndDrag();
    for (EditState* state : {&m_edited, &m_saved}) {
        for (LayoutRecord& layout : state->themes.layouts) {
            kivo::ReplacePicture(layout, old, by);
        }
    }
    m_history.ReplacePicture(old, by);
    update();
}

void ZoomWidget::SetItemEnabled(int kind, bool on) {
    const int variant = VariantInForce(m_edited);
    LayoutRecord& layout = m_edited.themes.layouts[size_t(CustomLayoutIndex(variant))];
    ItemFlags& flags = CustomFlags(layout, variant);
    if (variant == 0) {
        SetFiveSlotItem(kind, on, Slots(), flags);
    } else {
        SetSingleItem(kind, on, Slots(), flags);
        if (!on && kind >= 0 && kind < kLiveValueCount) {
            flags[size_t(kind)] = false;  // as its tick box shows it
        }
        // The free text stands beside the single item and is no choice against it.
        if (kind != OtherText) {
            SettleTextFlag(layout, variant);
        }
    }
    NoteEdit(By::Caller);
}

void ZoomWidget::SetFontColor(int color) {
    if (!ShowsCustom() || color < 0 || color >= kTextColorCount) {
        return;
    }
    LayoutInForce(m_edited).colorIndex = color;
    StyleTextBox();
    KeepTyping();
    NoteEdit(By::Caller);
}

void ZoomWidget::SetFontSize(int size) {
    if (!ShowsCustom() || size < 0 || size >= kTextSizeCount) {
        return;
    }
    LayoutInForce(m_edited).sizeIndex = size;
    StyleTextBox();
    KeepTyping();
    NoteEdit(By::Caller);
}

void ZoomWidget::SetLiveTexts(const ItemTexts& texts) {
    bool changed = false;
    for (size_t item = 0; item < texts.size(); ++item) {
        if (!texts[item].isEmpty() && texts[item] != m_liveTexts[item]) {
            m_liveTexts[item] = texts[item];
            changed = true;
        }
    }
    if (changed) {
        update();
    }
}

void ZoomWidget::SetEditing(bool on) {
    if (on == m_editing) {
        return;
    }
    solteditingFinished();
    EndDrag();
    if (!on) {
        SetTrimMode(0);
    }
    m_editing = on;
    m_pickedSlot = kEmptySlot;
    SetHover(kEmptySlot, false);
    // There is nothing to do here with the keyboard unless something is edited.
    setFocusPolicy(on ? Qt::StrongFocus : Qt::NoFocus);
    if (!on && hasFocus()) {
        clearFocus();
    }
    RetranslateTexts();
    update();
    Q_EMIT trimmingChanged();
}

void ZoomWidget::SetFramed(bool on) {
    m_framed = on;
    update();
}

void ZoomWidget::Undo() {
    solteditingFinished();
    EndDrag();
    const int formerSize = Layout().sizeIndex;
    if (!m_history.StepBack(m_edited)) {
        return;
    }
    StyleTextBox();
    update();
    Q_EMIT UndoColorSignal(Layout().colorIndex);
    // A size chooser that is told the size it has already would swallow the next change a person makes.
    if (Layout().sizeIndex != formerSize) {
        Q_EMIT UndoTextSize(Layout().sizeIndex);
    }
    Q_EMIT layoutChanged();
}

bool ZoomWidget::CommitLayout() {
    solteditingFinished();
    EndDrag();
    const ThemeState before = m_saved.themes;
    m_saved = m_edited;
    // What is made of the theme page's layouts is not asked for here.
    m_saved.themes.theme = before.theme;
    std::copy_n(before.layouts.begin(), kFirstCustomLayout, m_saved.themes.layouts.begin());
    const bool isTableSaved = SaveCustomShow();
    return SaveCurRectId(m_edited.textRow) && isTableSaved;
}

void ZoomWidget::RevertLayout() {
    solteditingFinished();
    EndDrag();
    m_edited.slotTable = m_saved.slotTable;
    m_edited.textRow = m_saved.textRow;
    for (int variant = 0; variant < kVariantCount; ++variant) {
        const auto index = size_t(CustomLayoutIndex(variant));
        const LayoutRecord before = m_edited.themes.layouts[index];
        LayoutRecord& layout = m_edited.themes.layouts[index];
        layout = m_saved.themes.layouts[index];
        layout.picture = before.picture;
        if (PictureOf(layout) != PictureOf(m_saved.themes.layouts[index])) {
            layout.xPt = before.xPt;
            layout.yPt = before.yPt;
            layout.xZoom = before.xZoom;
            layout.yZoom = before.yZoom;
        }
    }
    m_history.Start(m_edited);
    StyleTextBox();
    update();
    Q_EMIT layoutChanged();
}

void ZoomWidget::NoteEdit(By by, EditHistory::Kind kind) {
    m_history.Append(m_edited, kind);
    update();
    if (by == By::Person) {
        Q_EMIT layoutChanged();
    }
}

ItemTexts ZoomWidget::PreviewTexts() const {
    ItemTexts texts = Layout().sample;
    for (size_t item = 0; item < texts.size(); ++item) {
        if (!m_liveTexts[item].isEmpty()) {
            texts[item] = m_liveTexts[item];
        }
    }
    return texts;
}

void ZoomWidget::RetranslateTexts() {
    const auto text = [](const char* source) { return QCoreApplication::translate("ZoomWidget", source); };
    setAccessibleName(text(QT_TRANSLATE_NOOP("ZoomWidget", "屏幕预览")));
    if (IsTrimming()) {
        setToolTip(text(QT_TRANSLATE_NOOP("ZoomWidget", "拖动边框修剪图片，滚轮缩放")));
    } else if (m_editing && VariantInForce(m_edited) != 0) {
        setToolTip(text(QT_TRANSLATE_NOOP("ZoomWidget", "双击可输入文字，文字可拖动")));
    } else if (m_editing) {
        setToolTip(text(QT_TRANSLATE_NOOP("ZoomWidget", "拖动可交换位置，双击可输入文字")));
    } else {
        setToolTip(accessibleName());
    }
    setAccessibleDescription(toolTip());
    m_editText->setPlaceholderText(text(QT_TRANSLATE_NOOP("ZoomWidget", "双击进行输入")));
    m_editText->setAccessibleName(text(QT_TRANSLATE_NOOP("ZoomWidget", "自由文字")));
}

void ZoomWidget::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange) {
        RetranslateTexts();
        update();
    }
    QWidget::changeEvent(event);
}

void ZoomWidget::hideEvent(QHideEvent* event) {
    solteditingFinished();
    EndDrag();
    QWidget::hideEvent(event);
}

void ZoomWidget::resizeEvent(QResizeEvent* event) {
    StyleTextBox();
    QWidget::resizeEvent(event);
}

}  // namespace kivo
