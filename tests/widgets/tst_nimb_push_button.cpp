#include <QAccessible>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "support/test_program.h"
#include "widgets/nimb_push_button.h"
#include "widgets/window_colors.h"

using namespace kivo;

namespace {

using Look = NimbPushButton::Look;

void Come(QWidget& widget) {
    QEnterEvent event(QPointF(1, 1), QPointF(1, 1), QPointF(1, 1));
    QApplication::sendEvent(&widget, &event);
}

void Go(QWidget& widget) {
    QEvent event(QEvent::Leave);
    QApplication::sendEvent(&widget, &event);
}

void Press(QWidget& widget, Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(&widget, button);
}

}  // namespace

class TestNimbPushButton : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_button = std::make_unique<NimbPushButton>();
        // Not under the pointer, which stands at 0,0: with Qt 6 it would enter.
        m_button->setGeometry(200, 200, 100, 40);
        m_log.clear();
        NimbPushButton& button = *m_button;
        connect(&button, &NimbPushButton::mousePressSignal, this, [this](QMouseEvent* event) {
            m_log << (event->button() == Qt::LeftButton ? QStringLiteral("press") : QStringLiteral("other"));
        });
        connect(&button, &NimbPushButton::EnterSignal, this, [this](NimbPushButton* sender) {
            m_log << QStringLiteral("enter %1").arg(int(sender->IsPressed()));
        });
        connect(&button, &NimbPushButton::OverSignal, this, [this](NimbPushButton* sender, bool isOver) {
            QCOMPARE(sender, m_button.get());
            m_log << QStringLiteral("over %1").arg(int(isOver));
        });
        connect(&button, &QPushButton::pressed, this, [this] { m_log << QStringLiteral("base press"); });
        connect(&button, &QPushButton::clicked, this, [this] { m_log << QStringLiteral("click"); });
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
    }

    void startsAtRest() {
        QCOMPARE(m_button->PaintState(), 0);
        QCOMPARE(m_button->TextPixelSize(), 15);
        QVERIFY(!m_button->IsPressed());
        QVERIFY(!m_button->isCheckable());
        QVERIFY(m_button->isEnabled());
    }

    void aPressTellsInOrderAndReachesTheBaseClass() {
        Press(*m_button);
        QCOMPARE(m_log, Words("press,enter 1,base press"));
        QCOMPARE(m_button->PaintState(), 2);
        QVERIFY(m_button->isDown());
        QTest::mouseRelease(m_button.get(), Qt::LeftButton);
        QCOMPARE(m_log.last(), QStringLiteral("click"));
        QVERIFY(!m_button->isDown());
        QCOMPARE(m_button->PaintState(), 2);
    }

    void theMouseComesAndGoes() {
        Come(*m_button);
        QCOMPARE(m_button->PaintState(), 1);
        Go(*m_button);
        QCOMPARE(m_button->PaintState(), 0);
        QCOMPARE(m_log, Words("over 1,over 0"));
    }

    void aLeaveAfterAPressIsNotTold() {
        Come(*m_button);
        Press(*m_button);
        m_log.clear();
        Go(*m_button);
        QCOMPARE(m_log, QStringList());
        QCOMPARE(m_button->PaintState(), 0);
        Go(*m_button);
        QCOMPARE(m_log, Words("over 0"));
    }

    void aDisabledButtonIgnoresThePress() {
        m_button->SetButtonEnabled(false);
        QCOMPARE(m_button->PaintState(), 3);
        QVERIFY(!m_button->isEnabled());
        Press(*m_button);
        QCOMPARE(m_log, QStringList());
        // Also when the widget itself would take it.
        m_button->setEnabled(true);
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QApplication::sendEvent(m_button.get(), &press);
        QVERIFY(!press.isAccepted());
        QCOMPARE(m_log, QStringList());
        QVERIFY(!m_button->isDown());
        QCOMPARE(m_button->PaintState(), 3);
    }

    void aDisabledButtonKeepsItsStateUnderTheMouse() {
        m_button->SetButtonEnabled(false);
        Come(*m_button);
        QCOMPARE(m_button->PaintState(), 3);
        Go(*m_button);
        QCOMPARE(m_button->PaintState(), 3);
        m_button->SetButtonEnabled(true);
        QCOMPARE(m_button->PaintState(), 0);
        QVERIFY(m_button->isEnabled());
    }

    void aReleaseReachesTheBaseClassOnlyWhileEnabled() {
        Press(*m_button);
        m_button->SetButtonEnabled(false);
        m_button->setEnabled(true);
        m_log.clear();
        QMouseEvent release(QEvent::MouseButtonRelease, QPointF(5, 5), Qt::LeftButton, Qt::NoButton,
                            Qt::NoModifier);
        QApplication::sendEvent(m_button.get(), &release);
        QCOMPARE(m_log, QStringList());
    }

    void aToggleAlternatesBetweenPressedAndNormal() {
        m_button->SetToggleMode(true);
        const int states[] = {2, 0, 2, 0};
        for (int state : states) {
            QTest::mouseClick(m_button.get(), Qt::LeftButton);
            QCOMPARE(m_button->PaintState(), state);
            QCOMPARE(m_button->IsPressed(), state == 2);
        }
    }

    void aToggleKeepsItsStateWhenTheMouseComesAndGoes() {
        m_button->SetToggleMode(true);
        Come(*m_button);
        QCOMPARE(m_button->PaintState(), 0);
        m_button->SetPressed(true);
        Come(*m_button);
        QCOMPARE(m_button->PaintState(), 2);
        Go(*m_button);
        QCOMPARE(m_button->PaintState(), 2);
        m_button->SetPressed(false);
        Go(*m_button);
        QCOMPARE(m_button->PaintState(), 0);
    }

    void otherButtonsChangeNothing() {
        Press(*m_button, Qt::RightButton);
        QCOMPARE(m_log, QStringList());
        QCOMPARE(m_button->PaintState(), 0);
    }

    void setPressedTellsNothing() {
        m_button->SetPressed(true);
        QCOMPARE(m_button->PaintState(), 2);
        QVERIFY(m_button->IsPressed());
        m_button->SetPressed(false);
        QCOMPARE(m_button->PaintState(), 0);
        QCOMPARE(m_log, QStringList());
    }

    void aToggleThatIsOnGetsTheHoverStateWithItsUse_data() {
        QTest::addColumn<bool>("enabled");
        QTest::newRow("taken away") << false;
        QTest::newRow("given") << true;
    }
    void aToggleThatIsOnGetsTheHoverStateWithItsUse() {
        QFETCH(bool, enabled);
        m_button->SetToggleMode(true);
        m_button->SetPressed(true);
        m_button->SetButtonEnabled(enabled);
        QCOMPARE(m_button->PaintState(), 1);
        QCOMPARE(m_button->isEnabled(), enabled);
    }

    void keysWorkLikeAClick_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("space") << int(Qt::Key_Space);
        QTest::newRow("return") << int(Qt::Key_Return);
        QTest::newRow("enter") << int(Qt::Key_Enter);
    }
    void keysWorkLikeAClick() {
        QFETCH(int, key);
        QTest::keyClick(m_button.get(), Qt::Key(key));
        QCOMPARE(m_log.count(QStringLiteral("press")), 1);
        QCOMPARE(m_log.count(QStringLiteral("enter 1")), 1);
        QCOMPARE(m_log.last(), QStringLiteral("click"));
        QCOMPARE(m_button->PaintState(), 0);

        m_button->SetPressed(false);
        m_button->SetToggleMode(true);
        QTest::keyClick(m_button.get(), Qt::Key(key));
        QVERIFY(m_button->IsPressed());
        QCOMPARE(m_button->PaintState(), 2);
        QTest::keyClick(m_button.get(), Qt::Key(key));
        QVERIFY(!m_button->IsPressed());
        QCOMPARE(m_button->PaintState(), 0);
    }

    void clickingFromTheProgramTogglesToo() {
        m_button->SetToggleMode(true);
        m_button->click();
        QVERIFY(m_button->IsPressed());
        m_button->SetButtonEnabled(false);
        m_button->click();
        QVERIFY(m_button->IsPressed());
    }

    void comingBackWithTheButtonHeldIsNoNewPress() {
        m_button->SetToggleMode(true);
        Press(*m_button);
        const auto moveTo = [this](const QPoint& point) {
            QMouseEvent move(QEvent::MouseMove, point, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(m_button.get(), &move);
        };
        moveTo(QPoint(-50, -50));
        QVERIFY(!m_button->isDown());
        moveTo(QPoint(5, 5));
        QVERIFY(m_button->isDown());
        QVERIFY(m_button->IsPressed());
        QCOMPARE(m_log.count(QStringLiteral("press")), 1);
    }

    void theButtonMayGoInItsOwnPress() {
        connect(m_button.get(), &QPushButton::clicked, this, [this] { m_button.reset(); });
        QTest::mousePress(m_button.get(), Qt::LeftButton);
        QMouseEvent release(QEvent::MouseButtonRelease, QPointF(5, 5), Qt::LeftButton, Qt::NoButton,
                            Qt::NoModifier);
        QApplication::sendEvent(m_button.get(), &release);
        QVERIFY(m_button == nullptr);
    }

    void theButtonMayGoWheneverItTells_data() {
        QTest::addColumn<QString>("when");
        QTest::addColumn<bool>("byKey");
        for (const char* when : {"mousePressSignal", "EnterSignal", "pressed"}) {
            QTest::addRow("%s, mouse", when) << QString::fromLatin1(when) << false;
            QTest::addRow("%s, key", when) << QString::fromLatin1(when) << true;
        }
        QTest::newRow("OverSignal, come") << QStringLiteral("come") << false;
        QTest::newRow("OverSignal, go") << QStringLiteral("go") << false;
    }
    void theButtonMayGoWheneverItTells() {
        QFETCH(QString, when);
        QFETCH(bool, byKey);
        const auto go = [this] { m_button.reset(); };
        if (when == QLatin1String("mousePressSignal")) {
            connect(m_button.get(), &NimbPushButton::mousePressSignal, this, go);
        } else if (when == QLatin1String("EnterSignal")) {
            connect(m_button.get(), &NimbPushButton::EnterSignal, this, go);
        } else if (when == QLatin1String("pressed")) {
            connect(m_button.get(), &QPushButton::pressed, this, go);
        } else {
            connect(m_button.get(), &NimbPushButton::OverSignal, this,
                    [this, when](NimbPushButton*, bool over) {
                        if (over == (when == QLatin1String("come"))) {
                            m_button.reset();
                        }
                    });
        }
        if (when == QLatin1String("come") || when == QLatin1String("go")) {
            Come(*m_button);
            if (m_button) {
                Go(*m_button);
            }
        } else if (byKey) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
            QApplication::sendEvent(m_button.get(), &press);
        } else {
            QMouseEvent press(QEvent::MouseButtonPress, QPointF(5, 5), Qt::LeftButton, Qt::LeftButton,
                              Qt::NoModifier);
            QApplication::sendEvent(m_button.get(), &press);
        }
        QVERIFY(m_button == nullptr);
    }

    void assistiveProgramsAreToldWhetherAToggleIsOn() {
        QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(m_button.get());
        QVERIFY(told != nullptr);
        QTest::mouseClick(m_button.get(), Qt::LeftButton);
        QVERIFY(!told->state().checkable && !told->state().checked);  // a plain button is never on
        m_button->SetPressed(false);
        m_button->SetToggleMode(true);
        QVERIFY(told->state().checkable && !told->state().checked);
        QSignalSpy toggled(m_button.get(), &QPushButton::toggled);
        for (const bool on : {true, false}) {
            QTest::mouseClick(m_button.get(), Qt::LeftButton);
            QCOMPARE(bool(told->state().checked), on);
            m_button->SetPressed(!on);
            QCOMPARE(bool(told->state().checked), !on);
            m_button->SetPressed(on);
        }
        QCOMPARE(toggled.count(), 0);
    }

    void assistiveProgramsTurnAToggleLikeAClick() {
        m_button->SetToggleMode(true);
        QAccessibleActionInterface* const actions =
            QAccessible::queryAccessibleInterface(m_button.get())->actionInterface();
        actions->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(m_button->IsPressed() && m_button->isChecked());
        QCOMPARE(m_log, Words("press,enter 1,base press,click"));
        m_log.clear();
        actions->doAction(QAccessibleActionInterface::toggleAction());
        QVERIFY(!m_button->IsPressed() && !m_button->isChecked());
        QCOMPARE(m_log.last(), QStringLiteral("click"));
        m_log.clear();
        m_button->SetButtonEnabled(false);
        m_button->toggle();
        QVERIFY(!m_button->IsPressed() && !m_button->isChecked());
        QCOMPARE(m_log, QStringList());
    }

    void curIndexIsAProperty() {
        QVERIFY(m_button->setProperty("curIndex", 7));
        QCOMPARE(m_button->CurIndex(), 7);
        QCOMPARE(m_button->property("curIndex").toInt(), 7);
    }

    void statesLookDifferent_data() {
        QTest::addColumn<int>("look");
        QTest::newRow("quiet") << int(Look::Quiet);
        QTest::newRow("primary") << int(Look::Primary);
        QTest::newRow("delete") << int(Look::Delete);
        QTest::newRow("tab") << int(Look::Tab);
        QTest::newRow("choice") << int(Look::Choice);
        QTest::newRow("bare") << int(Look::Bare);
    }
    void statesLookDifferent() {
        QFETCH(int, look);
        m_button->SetLook(Look(look));
        m_button->setText(QStringLiteral("Text"));
        QVector<QImage> seen;
        const auto look4 = [this, &seen] {
            const QImage image = m_button->grab().toImage();
            QVERIFY(!seen.contains(image));
            seen.append(image);
        };
        look4();
        Come(*m_button);
        look4();
        m_button->SetPressed(true);
        look4();
        m_button->SetButtonEnabled(false);
        look4();
    }

    void aToggleThatIsOffLightsUpUnderTheMouse() {
        m_button->SetLook(Look::Tab);
        m_button->setText(QStringLiteral("Text"));
        m_button->SetToggleMode(true);
        const QImage atRest = m_button->grab().toImage();
        m_button->setAttribute(Qt::WA_UnderMouse);
        Come(*m_button);
        QVERIFY(m_button->grab().toImage() != atRest);
        QCOMPARE(m_button->PaintState(), 0);
    }

    void aButtonUnderADisabledParentLooksDisabled() {
        QWidget parent;
        NimbPushButton child(&parent);
        child.SetLook(Look::Primary);
        child.resize(100, 40);
        const QImage enabled = child.grab().toImage();
        parent.setEnabled(false);
        const QImage off = child.grab().toImage();
        QVERIFY(off != enabled);
        parent.setEnabled(true);
        child.SetButtonEnabled(false);
        QCOMPARE(child.grab().toImage(), off);
    }

    void bareFillsWithTheColourOfTheState() {
        m_button->SetBackColors({Qt::red, Qt::green, Qt::blue, Qt::yellow});
        QCOMPARE(Pixel(1, 1), QColor(Qt::red));
        Come(*m_button);
        QCOMPARE(Pixel(1, 1), QColor(Qt::green));
        m_button->SetPressed(true);
        QCOMPARE(Pixel(1, 1), QColor(Qt::blue));
        m_button->SetEllipse(true);
        QVERIFY(Pixel(1, 1) != QColor(Qt::blue));
        QCOMPARE(Pixel(50, 20), QColor(Qt::blue));
        m_button->SetButtonEnabled(false);
        QCOMPARE(Pixel(50, 20), QColor(Qt::yellow));
    }

    void picturesFollowTheState() {
        QTemporaryDir folder;
        const auto picture = [&folder](const QString& name, Qt::GlobalColor color) {
            QImage image(4, 4, QImage::Format_RGB32);
            image.fill(color);
            const QString path = folder.filePath(name);
            return image.save(path) ? path : QString();
        };
        m_button->SetPictures(
            picture(QStringLiteral("n.png"), Qt::red), picture(QStringLiteral("h.png"), Qt::green),
            picture(QStringLiteral("p.png"), Qt::blue), picture(QStringLiteral("d.png"), Qt::yellow));
        QCOMPARE(Pixel(99, 39), QColor(Qt::red));
        Come(*m_button);
        QCOMPARE(Pixel(0, 0), QColor(Qt::green));
        m_button->SetPressed(true);
        QCOMPARE(Pixel(50, 20), QColor(Qt::blue));
        m_button->SetButtonEnabled(false);
        QCOMPARE(Pixel(50, 20), QColor(Qt::yellow));
    }

    void missingPicturesDoNoHarm() {
        const QString none = QStringLiteral("://skins/there_is_none.png");
        m_button->SetPictures(none, none, none, none);
        m_button->SetIcons(none, none, QSize(16, 16));
        m_button->SetLook(Look::Quiet);
        QCOMPARE(Pixel(50, 20), window_colors::kButton);
    }

    void theIconStandsEightPixelsBeforeTheText() {
        m_button->setText(QStringLiteral("||||"));
        QRectF iconRect;
        m_button->SetIconDrawing([&iconRect](QPainter&, const QRectF& rect, const QColor&,
                                             NimbPushButton::State) { iconRect = rect; },
                                 QSize(16, 16));
        const QImage image = m_button->grab().toImage();
        QCOMPARE(iconRect.size(), QSizeF(16, 16));
        QCOMPARE(iconRect.center().y(), 20.0);
        int firstInk = 0;
        while (firstInk < 100 && image.pixelColor(firstInk, 20) == image.pixelColor(0, 0)) {
            ++firstInk;
        }
        QVERIFY2(qAbs(firstInk - (iconRect.right() + 8)) <= 3, qPrintable(QString::number(firstInk)));
    }

    void theChosenHalfWearsTheAccentOnce_data() {
        QTest::addColumn<bool>("hasIcon");
        QTest::addColumn<QColor>("ink");
        QTest::newRow("text alone") << false << window_colors::kAccentBright;
        QTest::newRow("beside an icon") << true << window_colors::kTextHigh;
    }
    void theChosenHalfWearsTheAccentOnce() {
        QFETCH(bool, hasIcon);
        QFETCH(QColor, ink);
        m_button->SetLook(Look::Choice);
        m_button->SetToggleMode(true);
        m_button->setText(QStringLiteral("\u2588\u2588"));  // full blocks
        QColor icon = window_colors::kAccentBright;
        if (hasIcon) {
            m_button->SetIconDrawing([&icon](QPainter&, const QRectF&, const QColor& color,
                                             NimbPushButton::State) { icon = color; },
                                     QSize(18, 12));
        }
        m_button->SetPressed(true);
        const QImage image = m_button->grab().toImage();
        bool hasInk = false;
        for (int x = 0; x < image.width(); ++x) {
            hasInk = hasInk || image.pixelColor(x, 20) == ink;
        }
        QVERIFY(hasInk);
        QCOMPARE(icon, window_colors::kAccentBright);
    }

    void longTextsStayInside_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("smaller") << QStringLiteral("Применить всё");
        QTest::newRow("elided") << QStringLiteral("Применить всё и ещё намного больше");
    }
    void longTextsStayInside() {
        QFETCH(QString, text);
        m_button->setText(text);
        const QImage image = m_button->grab().toImage();
        const QColor ground = image.pixelColor(0, 0);
        for (int y = 0; y < 40; ++y) {
            QCOMPARE(image.pixelColor(2, y), ground);
            QCOMPARE(image.pixelColor(97, y), ground);
        }
    }

private:
    static QStringList Words(const char* commaSeparated) {
        return QString::fromLatin1(commaSeparated).split(QLatin1Char(','));
    }

    QColor Pixel(int x, int y) const { return m_button->grab().toImage().pixelColor(x, y); }

    std::unique_ptr<NimbPushButton> m_button;
    QStringList m_log;
};

KIVO_TEST(TestNimbPushButton)
#include "tst_nimb_push_button.moc"
