#pragma once

// What is made of the background picture as a whole, beside the heading of the pictures: two sliders, one to
// dim it and one to blur it. Shows the layout in force and asks for changes. GUI thread.

#include <QWidget>

namespace kivo {

struct LayoutRecord;
class PercentSlider;

class PictureLooks : public QWidget {
    Q_OBJECT

public:
    explicit PictureLooks(QWidget* parent);

    // Makes the sliders follow the layout. isSeen: the preview shows the picture as it will be; where it
    // shows the whole picture for trimming, nobody would see what a slider does.
    void Show(const LayoutRecord& layout, bool isSeen);

    // For the order of the tab key.
    QWidget* First() const;
    QWidget* Last() const;

Q_SIGNALS:
    void dimChosen(int percent);
    void blurChosen(int percent);
    // The mouse takes or lets go of a knob.
    void runChanged();

private:
    PercentSlider* AddSlider(const QString& name, const QString& toolTip);

    PercentSlider* m_dim = nullptr;
    PercentSlider* m_blur = nullptr;
};

}  // namespace kivo
