#include "window/edit_hint.h"

#include "editor/zoom_widget.h"
#include "widgets/window_colors.h"
#include "window/picture_notice.h"
#include "window/window_text.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr QRect kPlace(40, 500, 452, 22);
constexpr int kTextPixels = 12;

QString HintOf(const ZoomWidget& editor) {
    if (editor.IsTrimming()) {
        return WindowText(QT_TRANSLATE_NOOP("MainWindow", "滚轮缩放，Esc 退出修剪"));
    }
    if (editor.IsTextEntryOpen()) {
        return WindowText(QT_TRANSLATE_NOOP("MainWindow", "按回车结束输入"));
    }
    return editor.Layouts().HasSlots()
               ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "拖动可交换位置，双击可输入文字"))
               : WindowText(QT_TRANSLATE_NOOP("MainWindow", "双击可输入文字"));
}

}  // namespace

QString NothingIsFreeText() {
    return WindowText(QT_TRANSLATE_NOOP("MainWindow", "五个位置已满：先取消一项，再勾选此项"));
}

EditHint::EditHint(ZoomWidget& editor, PictureNotice& notice, QWidget* parent)
    : QLabel(parent), m_editor(editor), m_notice(notice) {
    setObjectName(QStringLiteral("editHint"));
    setGeometry(kPlace);
    setAlignment(Qt::AlignCenter);
    setTextFormat(Qt::PlainText);
    QFont small = font();
    small.setPixelSize(kTextPixels);
    setFont(small);
    connect(&editor, &ZoomWidget::trimmingChanged, this, &EditHint::Follow);
    connect(&editor, &ZoomWidget::layoutChanged, this, &EditHint::Follow);
    connect(&editor, &ZoomWidget::editStateChanged, this, &EditHint::Follow);
    connect(&notice, &PictureNotice::changed, this, &EditHint::ShareLine);
    Follow();
}

void EditHint::Follow() {
    if (!m_editor.Layouts().ShowsCustom() || !m_editor.IsEditing()) {
        Tell(QString(), Tone::Quiet);
    } else if (!m_editor.IsTrimming() && m_editor.IsTextCut()) {
        Tell(WindowText(QT_TRANSLATE_NOOP("MainWindow", "文字太长，屏幕上显示不全")), Tone::Warning);
    } else {
        Tell(HintOf(m_editor), Tone::Quiet);
    }
}

void EditHint::TellNothingIsFree() {
    Tell(NothingIsFreeText(), Tone::Warning);
}

void EditHint::Tell(const QString& text, Tone tone) {
    QPalette ink = palette();
    ink.setColor(QPalette::WindowText, tone == Tone::Warning ? colors::kWarning : colors::kTextLow);
    setPalette(ink);
    setText(text);
    m_tone = tone;
    ShareLine();
}

void EditHint::ShareLine() {
    const bool isFirst = m_tone == Tone::Warning || !m_notice.HasSomethingToSay();
    setVisible(isFirst && !text().isEmpty());
    m_notice.SetCovered(isFirst && !text().isEmpty());
}

}  // namespace kivo
