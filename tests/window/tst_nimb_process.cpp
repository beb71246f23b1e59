#include <QDialog>
#include <QLabel>
#include <QMetaMethod>
#include <QMovie>
#include <QtTest>

#include "../config/log_catcher.h"
#include "../panel/upload_bench.h"
#include "resources/resources.h"
#include "support/test_program.h"
#include "window/nimb_process_dialog.h"

using namespace kivo;
using kivo::test::LogCatcher;
using kivo::test::UploadBench;

// The busy dialog before an upload.
class TestNimbProcess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void DialogIsCentredOverTheWindow_data();
    void DialogIsCentredOverTheWindow();
    void DialogIsASmallFramelessWindow();
    void DialogTakesItsShapeFromTheMask();
    void DialogClosesWithTheReport_data();
    void DialogClosesWithTheReport();
    void DialogIgnoresEscapeAndCloseUntilThen();
    void DialogStaysOpenWhenTheThreadWasStoppedBeforeItsStart();
    void TimerDoneCountsToAHundred();
    void SlotsHaveTheirOrder();
};

namespace {

constexpr int kPatienceMs = 20000;

}  // namespace

void TestNimbProcess::initTestCase() {
    InitResources();
    InstallFontSubstitutes();
    QLoggingCategory::setFilterRules(QStringLiteral("kivo.*.debug=false"));
}

void TestNimbProcess::DialogIsCentredOverTheWindow_data() {
    QTest::addColumn<QRect>("window");
    QTest::addColumn<QPoint>("corner");
    QTest::newRow("main window") << QRect(100, 50, 960, 588) << QPoint(516, 280);
    QTest::newRow("odd size") << QRect(10, 20, 301, 203) << QPoint(96, 57);
    QTest::newRow("smaller than the dialog") << QRect(200, 200, 101, 61) << QPoint(186, 166);
    QTest::newRow("left of the first screen") << QRect(-1000, 30, 960, 588) << QPoint(-584, 260);
}

void TestNimbProcess::DialogIsCentredOverTheWindow() {
    QFETCH(QRect, window);
    QFETCH(QPoint, corner);
    QWidget main(nullptr, Qt::FramelessWindowHint);
    main.setGeometry(window);
    const NimbProcessDialog dialog(&main);
    QCOMPARE(dialog.pos(), corner);
    QCOMPARE(dialog.size(), QSize(128, 128));
}

void TestNimbProcess::DialogIsASmallFramelessWindow() {
    const NimbProcessDialog dialog(nullptr);
    QCOMPARE(dialog.minimumSize(), QSize(128, 128));
    QCOMPARE(dialog.maximumSize(), QSize(128, 128));
    QVERIFY(dialog.windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(dialog.testAttribute(Qt::WA_TranslucentBackground));
    const auto* label = dialog.findChild<QLabel*>();
    QCOMPARE(label->geometry(), QRect(0, 0, 128, 128));
    const auto* movie = dialog.findChild<QMovie*>();
    QCOMPARE(movie->state() == QMovie::Running, QFile::exists(QStringLiteral("://skins/loading.gif")));
}

void TestNimbProcess::DialogTakesItsShapeFromTheMask() {
    const QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/skin/process.png");
    QVERIFY(!QFile::exists(path));
    QVERIFY(NimbProcessDialog(nullptr).mask().isEmpty());

    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QImage shape(128, 128, QImage::Format_ARGB32);
    shape.fill(Qt::transparent);
    for (int y = 32; y < 96; ++y) {
        for (int x = 16; x < 112; ++x) {
            shape.setPixelColor(x, y, Qt::white);
        }
    }
    QVERIFY(shape.save(path));
    const QRegion mask = NimbProcessDialog(nullptr).mask();
    QVERIFY(QDir(QFileInfo(path).path()).removeRecursively());
    QCOMPARE(mask, QRegion(16, 32, 96, 64));
}

void TestNimbProcess::DialogClosesWithTheReport_data() {
    QTest::addColumn<bool>("hasScreen");
    QTest::newRow("taken") << true;
    QTest::newRow("no screen") << false;
}

void TestNimbProcess::DialogClosesWithTheReport() {
    QFETCH(bool, hasScreen);
    UploadBench bench;
    if (!hasScreen) {
        bench.panel.Unplug();
    }
    const auto upload = bench.Upload();
    NimbProcessDialog dialog(nullptr);
    connect(upload.get(), &NimbProcessThread::DoProcessDlg, &dialog, &NimbProcessDialog::slotProcessDlg);
    upload->start(QThread::InheritPriority);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
    QCOMPARE(upload->Succeeded(), hasScreen);
}

void TestNimbProcess::DialogIgnoresEscapeAndCloseUntilThen() {
    NimbProcessDialog dialog(nullptr);
    QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.open();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(!dialog.close());
    dialog.reject();
    QVERIFY(dialog.isVisible());
    QCOMPARE(finished.count(), 0);
    dialog.slotProcessDlg();
    QVERIFY(dialog.isVisible());  // closes from its own event loop
    QVERIFY(finished.wait(kPatienceMs));
    QCOMPARE(finished.first().first().toInt(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
}

void TestNimbProcess::DialogStaysOpenWhenTheThreadWasStoppedBeforeItsStart() {
    UploadBench bench;
    const auto upload = bench.Upload();
    NimbProcessDialog dialog(nullptr);
    connect(upload.get(), &NimbProcessThread::DoProcessDlg, &dialog, &NimbProcessDialog::slotProcessDlg);
    dialog.open();
    const LogCatcher log;
    upload->stop();
    upload->start(QThread::InheritPriority);
    upload->wait();
    QCoreApplication::processEvents();
    QVERIFY(dialog.isVisible());
}

void TestNimbProcess::TimerDoneCountsToAHundred() {
    NimbProcessDialog dialog(nullptr);
    NimbProcessDialog another(nullptr);
    const LogCatcher log;
    for (int k = 0; k < 50; ++k) {
        dialog.timerDone();
        another.timerDone();  // the counter is the process's
    }
    dialog.timerDone();
    QStringList expected;
    for (int number = 1; number <= 100; ++number) {
        expected.append(QString::number(number));
    }
    expected.append(QStringLiteral("1"));
    QCOMPARE(log.lines(), expected);
}

void TestNimbProcess::SlotsHaveTheirOrder() {
    const QMetaObject& meta = NimbProcessDialog::staticMetaObject;
    QStringList slotNames;
    for (int k = meta.methodOffset(); k < meta.methodCount(); ++k) {
        slotNames.append(QString::fromLatin1(meta.method(k).methodSignature()));
    }
    QCOMPARE(slotNames, (QStringList{QStringLiteral("slotProcessDlg()"), QStringLiteral("updateProgress()"),
                                     QStringLiteral("timerDone()")}));
}

KIVO_TEST(TestNimbProcess)
#include "tst_nimb_process.moc"
