#include <QAbstractSlider>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QSet>

#include "support/contrast.h"
#include "support/window_test_support.h"
#include "widgets/focus_ring.h"
#include "widgets/my_list_widget.h"
#include "widgets/nimb_push_button.h"
#include "widgets/window_colors.h"

using namespace kivo;
using namespace kivo::test;

// Every control of the window in every state that it can be in: no two of them look alike. KIVO_STATES_SHEET
// names a PNG file, which gets them all to look at.
class TestWindowControls : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void EveryStateOfAControlLooksDifferent_data();
    void EveryStateOfAControlLooksDifferent();
    void EveryStateOfARowLooksDifferent_data();
    void EveryStateOfARowLooksDifferent();

private:
    void Open(const QString& page);

    std::unique_ptr<Desk> m_desk;
    QString m_page;
};

namespace {

struct Shot {
    QString state;
    QImage picture;
};

struct SheetRow {
    QString name;
    QVector<Shot> shots;
};

// What is drawn around a control: its focus ring.
constexpr int kAround = 6;
// In grey, for whoever cannot tell the colours. Below that nobody sees that a pixel has changed.
constexpr int kSeen = 6;
// As many such pixels as a dot of a tick has.
constexpr int kFewestSeen = 12;

QVector<SheetRow>& Sheet() {
    static QVector<SheetRow> rows;
    return rows;
}

int DifferentPixels(const QImage& a, const QImage& b) {
    int different = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const int apart = qAbs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
            different += apart >= kSeen ? 1 : 0;
        }
    }
    return different;
}

QByteArray Alike(const QVector<Shot>& shots) {
    QByteArray alike;
    for (int one = 0; one < shots.size(); ++one) {
        for (int other = one + 1; other < shots.size(); ++other) {
            const int different = DifferentPixels(shots[one].picture, shots[other].picture);
            if (different < kFewestSeen) {
                alike += " " + shots[one].state.toUtf8() + "/" + shots[other].state.toUtf8() + ": " +
                         QByteArray::number(different) + " pixels;";
            }
        }
    }
    return alike;
}

// Where a control answers to the mouse: a check box does so on box and text only.
QPoint HandleOf(const QWidget& widget) {
    return {qMin(8, widget.width() / 2), widget.height() / 2};
}

// The pointer comes over a widget, or goes to where nothing answers to it.
void MoveMouse(const QWidget& widget, bool isOver) {
    const QWidget& window = *widget.window();
    QCursor::setPos(isOver ? widget.mapToGlobal(HandleOf(widget)) : window.mapToGlobal(QPoint(3, 300)));
    QVERIFY(QTest::qWaitFor([&] { return widget.underMouse() == isOver; }, 2000));
}

QImage Grab(const QWidget& widget) {
    QCoreApplication::processEvents();
    const QRect place = PlaceInWindow(widget).adjusted(-kAround, -kAround, kAround, kAround);
    QWidget* const window = widget.window();
    return CutOut(window->grab().toImage(), place & window->rect());
}

void FocusByKey(QWidget& widget) {
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Shift, Qt::NoModifier);  // told to the ring only
    QApplication::sendEvent(widget.window(), &key);
    // Whatever has the focus already would not be told of it again.
    if (QWidget* const before = QApplication::focusWidget()) {
        before->clearFocus();
    }
    widget.setFocus(Qt::TabFocusReason);
}

bool IsOn(const QWidget& control) {
    const auto* const button = qobject_cast<const QAbstractButton*>(&control);
    return button != nullptr && button->isChecked();
}

// One control in its states, which it is taken out of again. Nothing is told of them to the window.
class Poser {
public:
    explicit Poser(QWidget& control) : m_control(control) {}

    QVector<Shot> Shots() {
        Take(QStringLiteral("normal"));
        TakeHover();
        if (m_control.focusPolicy() != Qt::NoFocus) {
            FocusByKey(m_control);
            Take(QStringLiteral("focused"));
            m_control.clearFocus();
        }
        TakePressed();
        TakeSelected();
        TakeDisabled();
        return m_shots;
    }

private:
    void Take(const QString& state) { m_shots.append({state, Grab(m_control)}); }

    // What is chosen already does not answer to the mouse: a press changes nothing.
    void TakeHover() {
        if (qobject_cast<NimbPushButton*>(&m_control) != nullptr && IsOn(m_control)) {
            return;
        }
        MoveMouse(m_control, true);
        Take(QStringLiteral("hover"));
        MoveMouse(m_control, false);
    }

    void TakePressed() {
        auto* const button = qobject_cast<QAbstractButton*>(&m_control);
        auto* const own = qobject_cast<NimbPushButton*>(&m_control);
        if (button == nullptr || (own != nullptr && own->isCheckable())) {
            return;  // a toggle is on as soon as it is pressed
        }
        const QSignalBlocker quiet(button);
        MoveMouse(m_control, true);
        QTest::mousePress(button, Qt::LeftButton, Qt::NoModifier, HandleOf(m_control));
        Take(QStringLiteral("pressed"));
        QTest::mouseMove(button, QPoint(-100, -100));
        QTest::mouseRelease(button, Qt::LeftButton, Qt::NoModifier, QPoint(-100, -100));
        if (own != nullptr) {
            own->SetPressed(false);
        }
        button->setDown(false);
        MoveMouse(m_control, false);
    }

    void TakeSelected() {
        if (auto* const own = qobject_cast<NimbPushButton*>(&m_control)) {
            if (own->isCheckable()) {
                const bool was = own->IsPressed();
                own->SetPressed(!was);
                Take(was ? QStringLiteral("not selected") : QStringLiteral("selected"));
                own->SetPressed(was);
            }
            return;
        }
        auto* const button = qobject_cast<QAbstractButton*>(&m_control);
        if (button != nullptr && button->isCheckable()) {
            const QSignalBlocker quiet(button);
            button->toggle();
            Take(button->isChecked() ? QStringLiteral("selected") : QStringLiteral("not selected"));
            button->toggle();
        }
    }

    void TakeDisabled() {
        auto* const own = qobject_cast<NimbPushButton*>(&m_control);
        if (own != nullptr) {
            own->SetButtonEnabled(false);
        } else {
            m_control.setEnabled(false);
        }
        Take(QStringLiteral("disabled"));
        if (own != nullptr) {
            const bool was = own->IsPressed();
            own->SetButtonEnabled(true);
            own->SetPressed(was);
        } else {
            m_control.setEnabled(true);
        }
    }

    QWidget& m_control;
    QVector<Shot> m_shots;
};

bool IsControl(const QWidget& widget) {
    const bool isOne = qobject_cast<const QAbstractButton*>(&widget) != nullptr ||
                       qobject_cast<const QComboBox*>(&widget) != nullptr ||
                       qobject_cast<const QLineEdit*>(&widget) != nullptr ||
                       qobject_cast<const QAbstractSlider*>(&widget) != nullptr;
    return isOne && qobject_cast<const QScrollBar*>(&widget) == nullptr && widget.isVisible() &&
           widget.isEnabled() && !widget.visibleRegion().isEmpty();
}

}  // namespace

void TestWindowControls::initTestCase() {
    PrepareApplication();
    SetUpProfile();
    m_desk = std::make_unique<Desk>();
    m_desk->Show();
    m_desk->window->activateWindow();
}

void TestWindowControls::cleanupTestCase() {
    m_desk.reset();
    const QString file = qEnvironmentVariable("KIVO_STATES_SHEET");
    if (file.isEmpty() || Sheet().isEmpty()) {
        return;
    }
    constexpr int kName = 210;
    constexpr int kTitle = 18;
    QSize size(kName, 0);
    for (const SheetRow& row : Sheet()) {
        int width = kName;
        int height = 0;
        for (const Shot& shot : row.shots) {
            width += shot.picture.width() + kAround;
            height = qMax(height, shot.picture.height() + kTitle);
        }
        size = {qMax(size.width(), width), size.height() + height + kAround};
    }
    QImage sheet(size, QImage::Format_RGB32);
    sheet.fill(window_colors::kCard);
    QPainter painter(&sheet);
    painter.setPen(Qt::white);
    int y = 0;
    for (const SheetRow& row : std::as_const(Sheet())) {
        painter.drawText(QRect(4, y, kName - 8, 40), row.name);
        int x = kName;
        int height = 0;
        for (const Shot& shot : row.shots) {
            painter.drawText(QRect(x, y, qMax(80, shot.picture.width()), kTitle), shot.state);
            painter.drawImage(x, y + kTitle, shot.picture);
            x += shot.picture.width() + kAround;
            height = qMax(height, shot.picture.height() + kTitle);
        }
        y += height + kAround;
    }
    painter.end();
    QVERIFY(sheet.save(file));
}

void TestWindowControls::Open(const QString& page) {
    if (page == m_page) {
        return;
    }
    m_page = page;
    if (page == QStringLiteral("themes")) {
        m_desk->Click("btnTheme");
    } else if (page == QStringLiteral("custom")) {
        m_desk->Click("btnImage");
    } else if (page == QStringLiteral("editing")) {
        m_desk->Click("btnEdit");
    } else if (page == QStringLiteral("text")) {
        m_desk->window->slotShowColorbar(1);
    }
    m_desk->WaitForPictures();
}

void TestWindowControls::EveryStateOfAControlLooksDifferent_data() {
    QTest::addColumn<QString>("page");
    for (const char* page : {"themes", "custom", "editing", "text"}) {
        QTest::newRow(page) << QString::fromLatin1(page);
    }
}

void TestWindowControls::EveryStateOfAControlLooksDifferent() {
    QFETCH(QString, page);
    static QSet<const QWidget*> seen;
    Open(page);
    QByteArray alike;
    const auto widgets = m_desk->window->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (widget->window() != m_desk->window.get() || !IsControl(*widget) || seen.contains(widget)) {
            continue;
        }
        seen.insert(widget);
        const QString name = page + QLatin1Char(' ') + widget->objectName() + QLatin1Char(' ') +
                             QString::fromLatin1(widget->metaObject()->className());
        const QVector<Shot> shots = Poser(*widget).Shots();
        Sheet().append({name, shots});
        const QByteArray same = Alike(shots);
        if (!same.isEmpty()) {
            alike += "\n" + name.toUtf8() + ":" + same;
        }
    }
    QVERIFY2(alike.isEmpty(), alike.constData());
}

void TestWindowControls::EveryStateOfARowLooksDifferent_data() {
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("list");
    QTest::newRow("themes") << QStringLiteral("themes") << QStringLiteral("themeList");
    QTest::newRow("pictures") << QStringLiteral("themes") << QStringLiteral("pictureList");
}

void TestWindowControls::EveryStateOfARowLooksDifferent() {
    QFETCH(QString, page);
    QFETCH(QString, list);
    Open(page);
    auto* const view = m_desk->Find<QListWidget>(qPrintable(list));
    const int row = (view->currentRow() + 1) % view->count();
    QListWidgetItem* const item = view->item(row);
    view->scrollToItem(item);
    QWidget* const viewport = view->viewport();
    QVector<Shot> shots;
    const auto take = [&](const QString& state) {
        QCoreApplication::processEvents();
        const QRect place = view->visualItemRect(item).adjusted(-kAround, -kAround, kAround, kAround);
        const QPoint corner = viewport->mapTo(view->window(), QPoint());
        shots.append({state, CutOut(view->window()->grab().toImage(), place.translated(corner))});
    };
    take(QStringLiteral("normal"));
    QCursor::setPos(viewport->mapToGlobal(view->visualItemRect(item).center()));
    QVERIFY(QTest::qWaitFor([&] { return viewport->underMouse(); }, 2000));
    take(QStringLiteral("hover"));
    MoveMouse(*viewport, false);
    view->setCurrentRow(row);
    m_desk->WaitForPictures();
    take(QStringLiteral("selected"));
    FocusByKey(*view);
    take(QStringLiteral("focused"));
    view->clearFocus();
    Sheet().append({list, shots});
    const QByteArray alike = Alike(shots);
    QVERIFY2(alike.isEmpty(), alike.constData());
}

KIVO_TEST(TestWindowControls)
#include "tst_window_controls.moc"
