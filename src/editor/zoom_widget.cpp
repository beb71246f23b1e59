#include "editor/zoom_widget.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>

#include "editor/preview_accessibility.h"
#include "editor/text_box.h"
#include "model/interface_language.h"
#include "pictures/picture_path.h"
#include "pictures/picture_source.h"

namespace kivo {

ZoomWidget::ZoomWidget(QWidget* parent)
    : QWidget(parent),
      m_editText(new TextBox(
          [this] { return Typed(); },
          [this](QPointF point) { return Mapping().OnCanvas(point + QPointF(m_editText->pos())); }, this)) {
    InstallPreviewAccessibility();
    // Not mouse tracking: that belongs to the trim mode.
    setAttribute(Qt::WA_Hover);
    setProperty("focusRadius", kWellRadius);
    m_editText->hide();
    m_editText->installEventFilter(this);
    connect(m_editText, &TextBox::inputChanged, this, [this] {
        PlaceTextBox();
        update();
        Q_EMIT editStateChanged();
    });
    connect(m_editText, &TextBox::caretBlinked, this, qOverload<>(&QWidget::update));
    RetranslateTexts();
    StyleTextBox();
}

// The box loses the focus when the view is taken down, and what it would tell then has no view to tell.
ZoomWidget::~ZoomWidget() {
    m_editText->disconnect(this);
}

QSize ZoomWidget::sizeHint() const {
    return QSize(435, 312);
}

void ZoomWidget::Load() {
    EndDrag();
    m_editor.Load();
    RetranslateTexts();
    StyleTextBox();
    NoteEdit(By::Caller);
}

void ZoomWidget::LoadCustomShow() {
    m_editor.LoadSlots();
    NoteEdit(By::Caller);
}

void ZoomWidget::ShowTheme(const ThemeState& state, bool reloadPictures) {
    ThemeState shown = state;
    if (m_textEntryOpen) {
        const auto index = size_t(LayoutIndexInForce(Edited().themes));
        solteditingFinished();
        // state may have been copied while the text was still in the box.
        const LayoutRecord& ended = Edited().themes.layouts[index];
        shown.layouts[index].freeText = ended.freeText;
        shown.layouts[index].shown[OtherText] = ended.shown[OtherText];
        shown.layouts[index].selected[OtherText] = ended.selected[OtherText];
    }
    EndDrag();
    m_editor.Show(shown);
    if (reloadPictures) {
        m_background.Recheck();
    }
    RetranslateTexts();
    StyleTextBox();
    NoteEdit(By::Caller);
}

void ZoomWidget::SetOrientation(int orientation) {
    solteditingFinished();
    EndDrag();
    m_editor.Turn(orientation == 0 ? Orientation::Landscape : Orientation::Portrait);
    StyleTextBox();
    if (m_editor.Lying() == Orientation::Portrait) {
        m_editText->EnforceMaxLength();
    }
    NoteEdit(By::Caller);
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
    m_editor.SetPicture(path);
    NoteEdit(By::Caller);
}

void ZoomWidget::ReplacePicture(const QString& old, const QString& by) {
    EndDrag();
    m_editor.ReplacePicture(old, by);
    NoteEdit(By::Caller);
}

void ZoomWidget::SetItemEnabled(int kind, bool on) {
    m_editor.SetItem(kind, on);
    NoteEdit(By::Caller);
}

void ZoomWidget::SetFontColor(int color) {
    if (m_editor.SetColor(color)) {
        StyleTextBox();
        KeepTyping();
        NoteEdit(By::Caller);
    }
}

void ZoomWidget::SetFontSize(int size) {
    if (m_editor.SetSize(size)) {
        StyleTextBox();
        KeepTyping();
        NoteEdit(By::Caller);
    }
}

void ZoomWidget::ResetTrim() {
    EndDrag();
    m_editor.ClearTrim();
    NoteEdit(By::Caller);
}

void ZoomWidget::SetDim(int percent) {
    SetShare(&LayoutEditor::SetDim, percent);
}

void ZoomWidget::SetBlur(int percent) {
    SetShare(&LayoutEditor::SetBlur, percent);
}

void ZoomWidget::SetShare(bool (LayoutEditor::*set)(int), int percent) {
    solteditingFinished();
    EndDrag();
    if ((m_editor.*set)(percent)) {
        NoteEdit(By::Caller);
    }
}

void ZoomWidget::SetAccentFromPicture(bool on) {
    EndDrag();
    if (m_editor.SetAccentFromPicture(on)) {
        NoteEdit(By::Caller);
    }
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
    const bool isByDrag = on && m_drag.IsDrag();
    if (!isByDrag) {
        EndDrag();
    }
    if (!on) {
        SetTrimMode(0);
    }
    m_editing = on;
    m_drag.DropPicked();
    m_drag.LeaveHover();
    // There is nothing to do here with the keyboard unless something is edited.
    setFocusPolicy(on ? Qt::StrongFocus : Qt::NoFocus);
    if (!on && hasFocus()) {
        clearFocus();
    }
    RetranslateTexts();
    update();
    Q_EMIT trimmingChanged();
}

void ZoomWidget::SetTrimMode(quint8 on) {
    // The tool bar lets its trim button go at every other choice, also right after text entry was opened.
    if (m_trimMode == (on != 0)) {
        return;
    }
    solteditingFinished();
    EndDrag();
    m_trimMode = on != 0;
    m_trim.Leave();
    m_drag.DropPicked();
    m_drag.LeaveHover();
    setMouseTracking(m_trimMode);
    RetranslateTexts();
    update();
    Q_EMIT trimmingChanged();
}

void ZoomWidget::SetFramed(bool on) {
    m_framed = on;
    update();
}

bool ZoomWidget::CanUndo() const {
    const bool hasTyped = m_textEntryOpen && m_editor.WouldChangeText(m_editText->toPlainText());
    return hasTyped || m_editor.CanUndo();
}

bool ZoomWidget::CanRedo() const {
    const bool hasTyped = m_textEntryOpen && m_editor.WouldChangeText(m_editText->toPlainText());
    return !hasTyped && m_editor.CanRedo();
}

void ZoomWidget::Undo() {
    StepThrough(&LayoutEditor::Undo);
}

void ZoomWidget::Redo() {
    StepThrough(&LayoutEditor::Redo);
}

void ZoomWidget::StepThrough(bool (LayoutEditor::*step)()) {
    solteditingFinished();
    EndDrag();
    const int formerSize = m_editor.Layout().sizeIndex;
    if (!(m_editor.*step)()) {
        return;
    }
    const LayoutRecord& layout = m_editor.Layout();
    StyleTextBox();
    Q_EMIT UndoColorSignal(layout.colorIndex);
    // A size chooser that is told the size it has already would swallow the next change a person makes.
    if (layout.sizeIndex != formerSize) {
        Q_EMIT UndoTextSize(layout.sizeIndex);
    }
    NoteEdit(By::Person);
}

bool ZoomWidget::CommitLayout() {
    solteditingFinished();
    EndDrag();
    return m_editor.Commit();
}

bool ZoomWidget::ReplaceSaved(const EditState& next, bool mayFollow) {
    const EditState former = Edited();
    if (!m_editor.ReplaceSaved(next, mayFollow && !m_editing)) {
        return false;
    }
    if (Edited() != former) {
        EndDrag();
        RetranslateTexts();
        StyleTextBox();
        NoteEdit(By::Caller);
    }
    return true;
}

bool ZoomWidget::TakeLayout(const ScreenState& layout) {
    solteditingFinished();
    EndDrag();
    if (!m_editor.TakeLayout(layout)) {
        return false;
    }
    RetranslateTexts();
    StyleTextBox();
    NoteEdit(By::Person);
    return true;
}

void ZoomWidget::RevertLayout() {
    solteditingFinished();
    EndDrag();
    m_editor.Revert();
    StyleTextBox();
    NoteEdit(By::Person);
}

void ZoomWidget::NoteEdit(By by) {
    update();
    TellItems();
    Q_EMIT editStateChanged();
    if (by == By::Person) {
        Q_EMIT layoutChanged();
    }
}

void ZoomWidget::RetranslateTexts() {
    const auto text = [](const char* source) { return QCoreApplication::translate("ZoomWidget", source); };
    setAccessibleName(text(QT_TRANSLATE_NOOP("ZoomWidget", "屏幕预览")));
    if (IsTrimming()) {
        setToolTip(text(
            QT_TRANSLATE_NOOP("ZoomWidget", "拖动边框修剪图片，滚轮缩放\n方向键移动，加减键缩放，Esc 退出")));
    } else if (m_editing && m_editor.Variant() != 0) {
        setToolTip(
            text(QT_TRANSLATE_NOOP("ZoomWidget", "双击可输入文字，文字可拖动\n回车键输入，翻页键移动文字")));
    } else if (m_editing) {
        setToolTip(text(QT_TRANSLATE_NOOP(
            "ZoomWidget", "拖动可交换位置，双击可输入文字\n方向键选择，空格键拿起和放下，回车键输入")));
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
    m_drag.SetWidgetSize(size());
    StyleTextBox();
    QWidget::resizeEvent(event);
}

}  // namespace kivo
