#include <QSignalSpy>
#include <QWheelEvent>
#include <QtTest>

#include "support/test_program.h"
#include "widgets/percent_slider.h"
#include "widgets/window_colors.h"

using namespace kivo;

namespace {

constexpr int kWidth = 112;  // a pixel a percent, and the knob
constexpr int kMiddle = 10;

struct Slider : PercentSlider {
    Slider() { resize(kWidth, 2 * kMiddle); }

    static QPoint At(int percent) { return {6 + percent, kMiddle}; }
    void Move(QPoint to) {
        QMouseEvent event(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(this, &event);
    }
    void Wheel(int eighths) {
        QWheelEvent event(At(50), mapToGlobal(At(50)), QPoint(), QPoint(0, eighths), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(this, &event);
    }
    QImage Picture() {
        QImage image(size(), QImage::Format_RGB32);
        image.fill(window_colors::kCard);
        render(&image);
        return image;
    }
};

}  // namespace

class TestPercentSlider : public QObject {
    Q_OBJECT

private slots:
    void aPressTakesTheKnobThere() {
        Slider slider;
        QSignalSpy chosen(&slider, &PercentSlider::chosen);
        QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, Slider::At(42));
        QCOMPARE(slider.value(), 40);
        slider.Move(Slider::At(58));
        QCOMPARE(slider.value(), 60);
        slider.Move(Slider::At(300));
        QCOMPARE(slider.value(), 100);
        slider.Move(Slider::At(-300));
        QCOMPARE(slider.value(), 0);
        QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, Slider::At(0));
        slider.Move(Slider::At(80));
        QCOMPARE(slider.value(), 0);
        QCOMPARE(chosen.count(), 4);
    }

    void aDragIsOneRun() {
        Slider slider;
        QSignalSpy begun(&slider, &PercentSlider::runBegun);
        QSignalSpy ended(&slider, &PercentSlider::runEnded);
        connect(&slider, &PercentSlider::chosen, &slider, [&] { QVERIFY(begun.count() > ended.count()); });
        for (int drag = 1; drag <= 2; ++drag) {
            QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, Slider::At(10 * drag));
            slider.Move(Slider::At(30 + 10 * drag));
            QCOMPARE(begun.count(), drag);
            QCOMPARE(ended.count(), drag - 1);
            QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, Slider::At(30 + 10 * drag));
            QCOMPARE(ended.count(), drag);
        }
    }

    void aDragEndsWithTheSlider() {
        for (const bool hides : {false, true}) {
            Slider slider;
            slider.show();
            QSignalSpy ended(&slider, &PercentSlider::runEnded);
            QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, Slider::At(50));
            hides ? slider.hide() : slider.setEnabled(false);
            QCOMPARE(ended.count(), 1);
            QVERIFY(!slider.isSliderDown());
        }
    }

    void otherButtonsDoNothing() {
        Slider slider;
        for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
            QTest::mouseClick(&slider, button, Qt::NoModifier, Slider::At(50));
            QCOMPARE(slider.value(), 0);
        }
    }

    void aNotchIsAStep() {
        Slider slider;
        QSignalSpy begun(&slider, &PercentSlider::runBegun);
        slider.Wheel(240);
        QCOMPARE(slider.value(), 20);
        slider.Wheel(-120);
        QCOMPARE(slider.value(), 10);
        for (int part = 0; part < 5; ++part) {
            slider.Wheel(40);  // as a touch pad sends it
        }
        QCOMPARE(slider.value(), 20);
        slider.Wheel(-120 * 9);
        QCOMPARE(slider.value(), 0);
        QCOMPARE(begun.count(), 0);
    }

    void answersTheKeyboard() {
        Slider slider;
        QCOMPARE(slider.focusPolicy(), Qt::StrongFocus);
        const QVector<QPair<Qt::Key, int>> keys{{Qt::Key_Right, 10}, {Qt::Key_Up, 20},   {Qt::Key_PageUp, 40},
                                                {Qt::Key_Left, 30},  {Qt::Key_Down, 20}, {Qt::Key_End, 100},
                                                {Qt::Key_Home, 0},   {Qt::Key_Left, 0}};
        QSignalSpy chosen(&slider, &PercentSlider::chosen);
        for (const auto& [key, value] : keys) {
            QTest::keyClick(&slider, key);
            QCOMPARE(slider.value(), value);
        }
        QCOMPARE(chosen.count(), 7);
    }

    void whatSomebodyElseDecidesIsNotTold() {
        Slider slider;
        QSignalSpy chosen(&slider, &PercentSlider::chosen);
        slider.Show(35);  // as a settings file may have it
        QCOMPARE(slider.value(), 35);
        slider.Show(1000);
        QCOMPARE(slider.value(), 100);
        QCOMPARE(chosen.count(), 0);
    }

    void switchedOffItDoesNothing() {
        Slider slider;
        slider.setEnabled(false);
        QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, Slider::At(50));
        slider.Wheel(120);
        QTest::keyClick(&slider, Qt::Key_Right);
        QCOMPARE(slider.value(), 0);
    }

    void itShowsItsValue() {
        Slider slider;
        slider.Show(50);
        const QImage half = slider.Picture();
        QCOMPARE(half.pixelColor(20, kMiddle), window_colors::kAccentBright);
        QCOMPARE(half.pixelColor(90, kMiddle), window_colors::kThumb);
        QCOMPARE(half.pixelColor(Slider::At(50)), window_colors::kButtonText);
        slider.Show(0);
        QCOMPARE(slider.Picture().pixelColor(20, kMiddle), window_colors::kThumb);
        slider.Show(100);
        QCOMPARE(slider.Picture().pixelColor(90, kMiddle), window_colors::kAccentBright);
        slider.setEnabled(false);
        QVERIFY(slider.Picture().pixelColor(20, kMiddle) != window_colors::kAccentBright);
    }

    void itIsSeenThatItIsHeld() {
        Slider slider;
        slider.Show(50);
        QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, Slider::At(50));
        QCOMPARE(slider.Picture().pixelColor(Slider::At(50)), window_colors::kAccentBright);
        QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, Slider::At(50));
        QVERIFY(slider.Picture().pixelColor(Slider::At(50)) != window_colors::kAccentBright);
    }
};

KIVO_TEST(TestPercentSlider)
#include "tst_percent_slider.moc"
