#include <QSignalSpy>
#include <QWindow>
#include <QtTest>

#include "editor/color_bar.h"
#include "editor/edit_bar.h"
#include "support/test_program.h"
#include "widgets/nimb_push_button.h"

using namespace kivo;

namespace {

// Stands for the window, which would be dragged by what reaches it.
class PressCounter : public QWidget {
public:
    int count = 0;

protected:
    void mousePressEvent(QMouseEvent* /*event*/) override { ++count; }
};

}  // namespace

class TestColorBar : public QObject {
    Q_OBJECT

private slots:
    void buttonsStandInIndexOrder() {
        const ColorBar bar;
        QCOMPARE(bar.size(), QSize(163, 48));
        int x = 14;
        for (const NimbPushButton* button : bar.Buttons()) {
            QCOMPARE(button->geometry(), QRect(x, 17, 20, 22));
            x += 23;
        }
    }

    void aPickIsToldAndClosesTheStrip_data() {
        QTest::addColumn<int>("color");
        for (int color = 0; color < kTextColorCount; ++color) {
            QTest::addRow("colour %d", color) << color;
        }
    }
    void aPickIsToldAndClosesTheStrip() {
        QFETCH(int, color);
        ColorBar bar;
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QSignalSpy sent(&bar, &ColorBar::SendFontColor);
        QTest::mouseClick(bar.Buttons().at(size_t(color)), Qt::LeftButton);
        QCOMPARE(sent.count(), 1);
        QCOMPARE(sent.first().first().toInt(), color);
        QVERIFY(bar.isHidden());
    }

    void aPressBesideTheButtonsEndsHere() {
        PressCounter window;
        ColorBar bar(&window);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 40));
        QCOMPARE(window.childAt(5, 40), &bar);
        QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 40));
        QCOMPARE(window.count, 0);
    }

    void aPickShowsInTheToolBar() {
        ColorBar strip;
        EditBar bar;
        connect(&strip, &ColorBar::SendFontColor, &bar, &EditBar::ControlLabelColor);
        strip.show();
        QVERIFY(QTest::qWaitForWindowExposed(&strip));
        QTest::mouseClick(strip.Buttons()[4], Qt::LeftButton);
        QCOMPARE(bar.IndicatorColor(), 4);
        QVERIFY(strip.isHidden());
    }

    void theKeyboardPicksAndCloses() {
        ColorBar bar;
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QSignalSpy sent(&bar, &ColorBar::SendFontColor);
        QTest::keyClick(bar.Buttons()[2], Qt::Key_Space);
        QCOMPARE(sent.count(), 1);
        QVERIFY(bar.isHidden());
        bar.show();
        QTest::keyClick(bar.Buttons()[2], Qt::Key_Escape);
        QVERIFY(bar.isHidden());
        QCOMPARE(sent.count(), 1);
    }

    // A check in ink that stands off its colour, on that colour alone.
    void theColourInUseBearsACheck() {
        ColorBar bar;
        for (int current = 0; current < kTextColorCount; ++current) {
            bar.SetCurrentColor(current);
            for (NimbPushButton* button : bar.Buttons()) {
                const QImage drawn = button->grab().toImage();
                const bool isCurrent = button->CurIndex() == current;
                int inked = 0;
                for (int x = 6; x <= 14; ++x) {
                    for (int y = 7; y <= 15; ++y) {
                        const int away =
                            qGray(drawn.pixel(x, y)) - qGray(FreeTextColor(button->CurIndex()).rgb());
                        inked += qAbs(away) > 60 ? 1 : 0;
                    }
                }
                QCOMPARE(inked >= 5, isCurrent);
                QCOMPARE(!button->accessibleDescription().isEmpty(), isCurrent);
            }
        }
    }

    void aStrangerSendsNoColour() {
        ColorBar bar;
        QSignalSpy sent(&bar, &ColorBar::SendFontColor);
        bar.btn_clicked();
        QCOMPARE(sent.count(), 0);
    }

    void everyButtonHasItsColour() {
        ColorBar bar;
        QStringList names;
        for (NimbPushButton* button : bar.Buttons()) {
            const QColor middle = button->grab().toImage().pixelColor(10, 11);
            QCOMPARE(middle.rgb(), FreeTextColor(button->CurIndex()).rgb());
            QVERIFY(!names.contains(button->accessibleName()));
            names << button->accessibleName();
        }
        QCOMPARE(names.first(), QStringLiteral("白色"));
        // The orange one comes from the picture that is called red.
        QCOMPARE(ColorButtonPicture(2), QStringLiteral("://skins/red.png"));
        QCOMPARE(names.at(2), QStringLiteral("橙色"));
    }
};

KIVO_TEST(TestColorBar)
#include "tst_color_bar.moc"
