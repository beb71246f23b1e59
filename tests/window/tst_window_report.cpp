#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>

#include "support/test_program.h"
#include "support/window_test_support.h"

using namespace kivo;
using namespace kivo::test;

// The tray's entry that saves a report for support, and what the report tells of this copy.
class TestWindowReport : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { SetUpProfile(); }
    void ReportTellsOfThisCopy();
    void ReportHasNothingPersonal();
    void FileThatCannotBeWrittenIsTold();
    void CancelledDialogSavesNothing();
    void DialogSuggestsAFile();
};

namespace {

enum class FileDialog { Answered, Own };

// A window whose file dialog is answered by the test.
struct ReportDesk : Desk {
    explicit ReportDesk(FileDialog dialog = FileDialog::Answered) {
        Close();
        window = std::make_unique<MainWindow>([this, dialog] {
            MainWindow::Parts parts{wire, nullptr, kBin};
            parts.locale = QLocale(QStringLiteral("en_US"));
            parts.hasTray = [] { return true; };
            parts.makeSensors = MakeNoSensors;
            if (dialog == FileDialog::Answered) {
                parts.chooseReportFile = [this] { return file; };
            }
            return parts;
        }());
    }
    ~ReportDesk() { Close(); }

    // By the tray's menu.
    void Save() const {
        const auto entries = Menu().actions();
        for (QAction* entry : entries) {
            if (entry->text() == QStringLiteral("Save report…")) {
                entry->trigger();
                return;
            }
        }
        QFAIL("The menu has no such entry.");
    }
    QMenu& Menu() const { return window->findChild<Tray*>()->Menu(); }
    QString Told() const { return window->findChild<Tray*>()->Told(); }

    QTemporaryDir folder;
    QString file = folder.filePath(QStringLiteral("report.txt"));
};

QString ContentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

}  // namespace

void TestWindowReport::initTestCase() {
    PrepareApplication();
    QCoreApplication::setApplicationVersion(QStringLiteral("4.5.6 (1a2b3c)"));
}

void TestWindowReport::ReportTellsOfThisCopy() {
    ReportDesk desk;
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > 3, 20000);
    desk.Save();
    const QString report = ContentOf(desk.file);
    for (const char* fact :
         {"version  4.5.6 (1a2b3c)\n", ", by the copy that runs\n", "platform offscreen\n",
          "kind                USB screen\n", "has taken           theme 0, landscape, ", "\nCPU Load ",
          " as in the factory's settings; 0 that this version does not know)\n"}) {
        QVERIFY2(report.contains(QString::fromUtf8(fact)), qPrintable(report));
    }
    QCOMPARE(desk.Told(),
             QStringLiteral("The report was saved to %1.").arg(QDir::toNativeSeparators(desk.file)));
}

void TestWindowReport::ReportHasNothingPersonal() {
    const QString picture = QDir::homePath() + QStringLiteral("/Holiday with Anna.PNG");
    {
        SettingsWriter settings;
        settings.SetInt(QStringLiteral("ImageList/Count"), 1);
        settings.SetText(QStringLiteral("ImageList/0"), picture);
        settings.SetText(QStringLiteral("H1/StringPixmap"), picture);
        settings.SetText(QStringLiteral("CUSTOM0/StringD1"), QStringLiteral("call Anna"));
    }
    ReportDesk desk;
    desk.Save();
    const QString report = ContentOf(desk.file);
    QVERIFY2(report.contains(QStringLiteral("H1/StringPixmap = <picture 1>.png\n")), qPrintable(report));
    QVERIFY2(report.contains(QStringLiteral("CUSTOM0/StringD1 = <9 characters>\n")), qPrintable(report));
    for (const QString& secret : {QDir::homePath(), QStringLiteral("Anna"), QStringLiteral("Holiday")}) {
        QVERIFY2(!report.contains(secret, Qt::CaseInsensitive),
                 qPrintable(secret + QStringLiteral(" in ") + report));
    }
}

void TestWindowReport::FileThatCannotBeWrittenIsTold() {
    ReportDesk desk;
    desk.file = desk.folder.filePath(QStringLiteral("no folder/report.txt"));
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("^The report cannot be saved to .*no folder")));
    desk.Save();
    QVERIFY2(desk.Told().startsWith(QStringLiteral("The report could not be saved: ")),
             qPrintable(desk.Told()));
}

void TestWindowReport::CancelledDialogSavesNothing() {
    ReportDesk desk;
    desk.file.clear();
    desk.Save();
    QCOMPARE(desk.Told(), QString());
}

void TestWindowReport::DialogSuggestsAFile() {
    ReportDesk desk(FileDialog::Own);
    QString suggested;
    OnNextDialog<QFileDialog>(desk.window.get(), [&](QFileDialog* dialog) {
        suggested = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
        dialog->reject();
    });
    desk.Save();
    QVERIFY2(
        suggested.contains(QRegularExpression(QStringLiteral("^kivo-screen-report-\\d{8}-\\d{4}\\.txt$"))),
        qPrintable(suggested));
    QCOMPARE(desk.Told(), QString());
}

KIVO_TEST(TestWindowReport)
#include "tst_window_report.moc"
