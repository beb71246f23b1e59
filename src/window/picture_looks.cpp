#include "window/picture_looks.h"

#include <QHBoxLayout>
#include <QLabel>

#include "compose/layout_record.h"
#include "widgets/percent_slider.h"
#include "widgets/window_colors.h"
#include "window/window_text.h"

namespace kivo {

namespace {

constexpr QRect kPlace(640, 262, 266, 22);  // ends with the pictures' last column
constexpr int kWordGap = 6;
constexpr int kSliderGap = 16;

QString WordStyle() {
    return QStringLiteral("QLabel{color:%1;font-size:12px}QLabel:disabled{color:%2}")
        .arg(window_colors::kTextMid.name(), window_colors::kButtonTextOff.name());
}

}  // namespace

PictureLooks::PictureLooks(QWidget* parent) : QWidget(parent) {
    setGeometry(kPlace);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    m_dim = AddSlider(WindowText(QT_TRANSLATE_NOOP("MainWindow", "变暗")),
                      WindowText(QT_TRANSLATE_NOOP("MainWindow", "让背景图片变暗")));
    row->addSpacing(kSliderGap);
    m_blur = AddSlider(WindowText(QT_TRANSLATE_NOOP("MainWindow", "模糊")),
                       WindowText(QT_TRANSLATE_NOOP("MainWindow", "让背景图片模糊")));
    m_dim->setObjectName(QStringLiteral("dimSlider"));
    m_blur->setObjectName(QStringLiteral("blurSlider"));
    connect(m_dim, &PercentSlider::chosen, this, &PictureLooks::dimChosen);
    connect(m_blur, &PercentSlider::chosen, this, &PictureLooks::blurChosen);
}

PercentSlider* PictureLooks::AddSlider(const QString& name, const QString& toolTip) {
    auto* const word = new QLabel(name, this);
    word->setStyleSheet(WordStyle());
    auto* const slider = new PercentSlider(this);
    slider->setAccessibleName(name);
    slider->setToolTip(toolTip);
    connect(slider, &PercentSlider::runBegun, this, &PictureLooks::runChanged);
    connect(slider, &PercentSlider::runEnded, this, &PictureLooks::runChanged);
    auto* const row = static_cast<QHBoxLayout*>(layout());
    row->addWidget(word);
    row->addSpacing(kWordGap);
    row->addWidget(slider, 1);
    return slider;
}

void PictureLooks::Show(const LayoutRecord& layout, bool isSeen) {
    setEnabled(isSeen);
    m_dim->Show(layout.dim);
    m_blur->Show(layout.blur);
}

QWidget* PictureLooks::First() const {
    return m_dim;
}

QWidget* PictureLooks::Last() const {
    return m_blur;
}

}  // namespace kivo
