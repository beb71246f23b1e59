#include <QTemporaryDir>
#include <QtTest>

#include "config/settings_file.h"
#include "config/settings_report.h"
#include "file_maker.h"
#include "support/test_program.h"

using namespace kivo;

class TestSettingsReport : public QObject, private kivo::test::FileMaker {
    Q_OBJECT

private Q_SLOTS:
    void OnlyWhatDiffersFromTheFactoryIsTold();
    void WithoutAFactoryEverythingIsTold();
    void PicturesAreNumbers();
    void TextsAreLengths();
    void UnknownKeysAreCounted();
    void FileThatIsMissingTellsNothing();
    void LookingMakesNoFile();
};

namespace {

QString Counted(int alike, int unknown) {
    return QStringLiteral("(%1 as in the factory's settings; %2 that this version does not know)")
        .arg(alike)
        .arg(unknown);
}

}  // namespace

void TestSettingsReport::OnlyWhatDiffersFromTheFactoryIsTold() {
    const QString factory = NewPath();
    const QString file = NewPath();
    for (const QString& path : {factory, file}) {
        SettingsWriter settings(path);
        settings.SetInt(QStringLiteral("Config/Mode"), 0);
        settings.SetInt(QStringLiteral("Config/Hor"), path == file ? 1 : 0);
        settings.SetRect(QStringLiteral("H1/ShowRect_0"), QRect(1, 2, path == file ? 30 : 29, 40));
        settings.SetRect(QStringLiteral("H1/ShowRect_1"), QRect(1, 2, 3, 4));
    }
    const SettingsSummary summary = DescribeSettings(file, factory);
    QCOMPARE(summary.lines, (QStringList{QStringLiteral("Config/Hor = 1"),
                                         QStringLiteral("H1/ShowRect_0 = 1,2 30x40"), Counted(2, 0)}));
    QVERIFY(summary.pictures.isEmpty());
}

void TestSettingsReport::WithoutAFactoryEverythingIsTold() {
    const QString file = NewPath();
    SettingsWriter(file).SetInt(QStringLiteral("Config/Mode"), 0);
    QCOMPARE(DescribeSettings(file, NewPath()).lines,
             (QStringList{QStringLiteral("Config/Mode = 0"), Counted(0, 0)}));
}

void TestSettingsReport::PicturesAreNumbers() {
    const QString file = NewPath();
    const QString beach = QStringLiteral("/home/anna/beach.PNG");
    const QString child = QStringLiteral("D:/Anna's child");
    {
        SettingsWriter settings(file);
        settings.SetInt(QStringLiteral("ImageList/Count"), 2);
        settings.SetText(QStringLiteral("ImageList/0"), beach);
        settings.SetText(QStringLiteral("ImageList/1"), QStringLiteral("://background/3.jpg"));
        settings.SetText(QStringLiteral("H1/StringPixmap"), child);
        settings.SetText(QStringLiteral("H2/StringPixmap"), beach);
        settings.SetText(QStringLiteral("H3/StringPixmap"), QString());
        settings.SetText(ImageNameKey(beach), QStringLiteral("Us"));
    }
    const SettingsSummary summary = DescribeSettings(file, NewPath());
    QCOMPARE(summary.pictures, (QStringList{beach, child}));
    const QString text = summary.lines.join(QLatin1Char('\n'));
    for (const char* line : {"ImageList/0 = <picture 1>.png", "ImageList/1 = ://background/3.jpg",
                             "H1/StringPixmap = <picture 2>", "H2/StringPixmap = <picture 1>.png",
                             "H3/StringPixmap = ", "ImageNames/<picture 1>.png = <2 characters>"}) {
        QVERIFY2(summary.lines.contains(QLatin1String(line)), qPrintable(text));
    }
    QVERIFY2(!text.contains(QLatin1String("anna"), Qt::CaseInsensitive), qPrintable(text));
    QVERIFY2(!text.contains(QLatin1String("beach")), qPrintable(text));
}

void TestSettingsReport::TextsAreLengths() {
    const QString file = NewPath();
    {
        SettingsWriter settings(file);
        settings.SetText(QStringLiteral("CUSTOM0/StringD1"), QStringLiteral("secret"));
        settings.SetText(QStringLiteral("CUSTOM0/Color"), QStringLiteral("hidden here"));
    }
    QCOMPARE(DescribeSettings(file, NewPath()).lines,
             (QStringList{QStringLiteral("CUSTOM0/Color = <11 characters>"),
                          QStringLiteral("CUSTOM0/StringD1 = <6 characters>"), Counted(0, 0)}));
}

void TestSettingsReport::UnknownKeysAreCounted() {
    const QString file = NewPath();
    {
        SettingsWriter settings(file);
        settings.SetText(QStringLiteral("anna/diary"), QStringLiteral("secret"));
        settings.SetText(QStringLiteral("ImageList/anna"), QStringLiteral("secret"));
    }
    QCOMPARE(DescribeSettings(file, NewPath()).lines, QStringList{Counted(0, 2)});
}

void TestSettingsReport::FileThatIsMissingTellsNothing() {
    QCOMPARE(DescribeSettings(NewPath(), NewPath()).lines, QStringList{Counted(0, 0)});
}

void TestSettingsReport::LookingMakesNoFile() {
    const QString file = NewPath();
    DescribeSettings(file, NewPath());
    QVERIFY(!QFileInfo::exists(file));
}

KIVO_GUILESS_TEST(TestSettingsReport)
#include "tst_settings_report.moc"
