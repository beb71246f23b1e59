#include <QAbstractItemView>
#include <QComboBox>
#include <QFileDialog>
#include <QListWidget>
#include <QMenu>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTimeEdit>
#include <QToolTip>
#include <QtTest>
#include <cmath>
#include <memory>

#include "support/test_program.h"
#include "widgets/my_list_widget.h"
#include "widgets/press_combobox.h"
#include "widgets/window_colors.h"
#include "widgets/window_style.h"

using namespace kivo;

namespace {

double Light(const QColor& color) {
    const auto linear = [](double share) {
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
    const double lighter = qMax(Light(a), Light(b));
    const double darker = qMin(Light(a), Light(b));
    return (lighter + 0.05) / (darker + 0.05);
}

int warnings = 0;

void CountWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*text*/) {
    if (type == QtWarningMsg) {
        ++warnings;
    }
}

}  // namespace

class TestWindowStyle : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { ApplyWindowStyle(*qApp); }

    void theSheetIsUnderstood() {
        warnings = 0;
        const QtMessageHandler before = qInstallMessageHandler(CountWarnings);
        QListWidget list;
        list.setStyleSheet(WindowStyleSheet());
        list.grab();
        qInstallMessageHandler(before);
        QCOMPARE(warnings, 0);
        QVERIFY(!WindowStyleSheet().contains(QLatin1Char('%')));
    }

    // Whatever the desktop has: the style of Windows draws white fields under white texts, and its menus
    // and lists have other fonts.
    void styleAndFontsAreTheProgramsOwn() {
        QApplication::setStyle(QStringLiteral("Windows"));
        ApplyWindowStyle(*qApp);
        QApplication::setFont(QFont(QStringLiteral("DejaVu Serif")), "QMenu");
        QTimeEdit edit;
        const std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
        QCOMPARE(edit.style()->pixelMetric(QStyle::PM_SpinBoxFrameWidth, nullptr, &edit),
                 fusion->pixelMetric(QStyle::PM_SpinBoxFrameWidth));
        QMenu menu;
        menu.ensurePolished();
        QCOMPARE(menu.font().family(), QApplication::font().family());
        QApplication::setFont(QFont(QStringLiteral("DejaVu Serif")), "QAbstractItemView");
        PressCombobox box;
        box.view()->ensurePolished();
        QCOMPARE(box.view()->font().family(), QApplication::font().family());
        QApplication::setFont(QApplication::font());
    }

    void scrollBarsAreNarrow() {
        MyListWidget list;
        for (int row = 0; row < 100; ++row) {
            list.addItem(QString::number(row));
        }
        list.resize(100, 100);
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        QCOMPARE(list.verticalScrollBar()->width(), 6);
        QCOMPARE(list.frameWidth(), 0);
        const QImage image = list.grab().toImage();
        const int x = image.width() - 3;
        QVERIFY(image.pixelColor(x, 5) != window_colors::kThumb);
        QCOMPARE(image.pixelColor(x, 8), window_colors::kThumb);
        QCOMPARE(image.pixelColor(x, 91), window_colors::kTrack);
        QVERIFY(image.pixelColor(x, 94) != window_colors::kTrack);
    }

    void textsAreReadable_data() {
        QTest::addColumn<QColor>("ink");
        QTest::addColumn<QColor>("ground");
        const QPalette palette = WindowPalette();
        const auto row = [&palette](const char* name, QPalette::ColorRole ink, QPalette::ColorRole ground) {
            QTest::newRow(name) << palette.color(ink) << palette.color(ground);
        };
        row("window", QPalette::WindowText, QPalette::Window);
        row("lists and boxes", QPalette::Text, QPalette::Base);
        row("every other row", QPalette::Text, QPalette::AlternateBase);
        row("buttons", QPalette::ButtonText, QPalette::Button);
        row("selection", QPalette::HighlightedText, QPalette::Highlight);
        row("tool tips", QPalette::ToolTipText, QPalette::ToolTipBase);
        row("hints", QPalette::PlaceholderText, QPalette::Base);
        QTest::newRow("names of pictures") << window_colors::kTextLow << window_colors::kCard;
        QTest::newRow("menus") << window_colors::kTextMid << window_colors::kRaised;
        QTest::newRow("primary button") << QColor(Qt::white) << window_colors::kAccentDeepHover;
        QTest::newRow("quiet button") << window_colors::kButtonText << window_colors::kButton;
        QTest::newRow("message") << window_colors::kTextBody << window_colors::kMessagePanel;
    }
    void textsAreReadable() {
        QFETCH(QColor, ink);
        QFETCH(QColor, ground);
        const double contrast = Contrast(ink, ground);
        QVERIFY2(contrast >= 4.5, qPrintable(QString::number(contrast)));
    }

    void qtsOwnFileDialogKeepsItsChoosers() {
        QFileDialog dialog;
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.ensurePolished();
        for (const QComboBox* box : dialog.findChildren<QComboBox*>()) {
            QVERIFY(box->styleSheet().isEmpty());
        }
        QVERIFY(!WindowStyleSheet().contains(QLatin1String("QComboBox")));
        QVERIFY(Contrast(dialog.palette().color(QPalette::WindowText),
                         dialog.palette().color(QPalette::Window)) >= 4.5);
    }

    void aToolTipOfOneLineIsFlat() {
        QWidget window;
        window.resize(300, 200);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QToolTip::showText(window.mapToGlobal(QPoint(20, 20)), QStringLiteral("Send this to the screen"),
                           &window);
        const QWidget* tip = nullptr;
        for (const QWidget* widget : QApplication::topLevelWidgets()) {
            tip = widget->inherits("QTipLabel") ? widget : tip;
        }
        QVERIFY(tip != nullptr);
        QVERIFY2(qAbs(tip->height() - 27) <= 2, qPrintable(QString::number(tip->height())));
        QToolTip::hideText();
    }

    // A see-through corner is black where no desktop blends windows.
    void cornersAreRoundWhereTheyCanBe() {
        for (const bool blends : {true, false}) {
            ApplyWindowStyle(*qApp, [blends] { return blends; });
            QMenu menu;
            menu.addAction(QStringLiteral("a"));
            PressCombobox combo;
            combo.addItem(QStringLiteral("a"));
            menu.ensurePolished();
            QCOMPARE(menu.grab().toImage().pixelColor(0, 0).alpha() == 255, !blends);
            combo.show();
            combo.showPopup();
            QCOMPARE(combo.view()->window()->grab().toImage().pixelColor(0, 0).alpha() == 255, !blends);
            combo.hidePopup();
        }
        ApplyWindowStyle(*qApp);
    }

    void cornersOfMenusAreLetThrough() {
        QMenu menu;
        menu.addAction(QStringLiteral("a"));
        menu.ensurePolished();
        QVERIFY(menu.testAttribute(Qt::WA_TranslucentBackground));
    }
};

KIVO_TEST(TestWindowStyle)
#include "tst_window_style.moc"
