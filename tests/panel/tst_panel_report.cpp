#include <QtTest>

#include "panel/panel_report.h"
#include "record_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;
using std::chrono::milliseconds;

class TestPanelReport : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void CompletePanelIsOwedNothing();
    void NewFrameIsOwed();
    void ArrivalMakesOwed();
    void DeniedNodeIsNamed();
    void EmptyRecordIsTold();
    void SerialNumbersStay();
    void BlankIsTold();
    void WhatIsRememberedIsTold();
};

namespace {

QString ValueOf(const PanelFacts& facts, const char* name) {
    for (const auto& [key, value] : facts) {
        if (key == QLatin1String(name)) {
            return value;
        }
    }
    return QStringLiteral("(no such fact)");
}

PanelFacts Facts(const PanelRecord& record) {
    return FactsOf(record, milliseconds(0));
}

}  // namespace

void TestPanelReport::CompletePanelIsOwedNothing() {
    const SharedFrame frame = FrameOf(Theme::Tdp, Orientation::Portrait);
    PanelRecord record = Complete(frame);
    record.frameTakenAt = QTime(18, 46, 5);
    const PanelFacts facts = Facts(record);
    const QString id = QString::fromLatin1(frame->id.left(12));
    QCOMPARE(ValueOf(facts, "state"), QStringLiteral("connected"));
    QCOMPARE(ValueOf(facts, "to show"), QStringLiteral("theme 2, portrait, ") + id);
    QCOMPARE(ValueOf(facts, "has taken"), QStringLiteral("theme 2, portrait, ") + id);
    QCOMPARE(ValueOf(facts, "owed"), QStringLiteral("nothing"));
    QCOMPARE(ValueOf(facts, "data node"), QStringLiteral("node"));
    QCOMPARE(ValueOf(facts, "last frame taken"), QStringLiteral("18:46:05"));
    QVERIFY(ValueOf(facts, "texts taken").contains(QStringLiteral("; power 15w; ")));
    QCOMPARE(ValueOf(facts, "darkened"), QStringLiteral("(no such fact)"));
}

void TestPanelReport::NewFrameIsOwed() {
    PanelRecord record = Complete(FrameOf(Theme::Tdp));
    SetDesired(record, FrameOf(Theme::Time));
    const PanelFacts facts = Facts(record);
    QVERIFY(ValueOf(facts, "to show").startsWith(QStringLiteral("theme 3, landscape, ")));
    QVERIFY(ValueOf(facts, "has taken").startsWith(QStringLiteral("theme 2, landscape, ")));
    QCOMPARE(ValueOf(facts, "owed"), QStringLiteral("frame"));
    QCOMPARE(ValueOf(facts, "state"), QStringLiteral("a frame is on its way"));
}

void TestPanelReport::ArrivalMakesOwed() {
    PanelRecord record = Complete(FrameOf(Theme::Tdp));
    NoteArrival(record);
    const PanelFacts facts = Facts(record);
    QCOMPARE(ValueOf(facts, "owed"), QStringLiteral("orientation, time show"));
    QCOMPARE(ValueOf(facts, "texts taken"), QStringLiteral("none"));
}

void TestPanelReport::DeniedNodeIsNamed() {
    PanelRecord record;
    NoteSighting(record, {ScreenPresence::Denied, {}, "/dev/hidraw4", {}});
    QCOMPARE(ValueOf(Facts(record), "data node"), QStringLiteral("/dev/hidraw4"));
    QVERIFY(ValueOf(Facts(record), "state").contains(QStringLiteral("no right")));
}

void TestPanelReport::EmptyRecordIsTold() {
    const PanelFacts facts = Facts({});
    QCOMPARE(ValueOf(facts, "state"), QStringLiteral("no screen"));
    QCOMPARE(ValueOf(facts, "data node"), QStringLiteral("none"));
    QCOMPARE(ValueOf(facts, "to show"), QStringLiteral("none known"));
    QCOMPARE(ValueOf(facts, "has taken"), QStringLiteral("none known"));
}

void TestPanelReport::SerialNumbersStay() {
    PanelRecord record;
    NoteSighting(record, Seen("S3CRET"));
    const auto all = [](const PanelFacts& facts) {
        QString text;
        for (const auto& [key, value] : facts) {
            text += key + QLatin1Char('=') + value + QLatin1Char('\n');
        }
        return text;
    };
    QVERIFY(!all(Facts(record)).contains(QLatin1String("S3CRET")));
    QCOMPARE(ValueOf(Facts(record), "tells itself apart"), QStringLiteral("yes"));
    QVERIFY(!all(FactsOf(RememberedPanel{"S3CRET", "ab"})).contains(QLatin1String("S3CRET")));
}

void TestPanelReport::BlankIsTold() {
    PanelRecord record = Complete(FrameOf(Theme::Tdp));
    SetLight(record, PanelLight::Black);
    QCOMPARE(ValueOf(Facts(record), "darkened"), QStringLiteral("black"));
    QVERIFY(ValueOf(Facts(record), "to show").startsWith(QStringLiteral("theme 2")));
}

void TestPanelReport::WhatIsRememberedIsTold() {
    QVERIFY(FactsOf(std::optional<RememberedPanel>()).isEmpty());
    const PanelFacts facts = FactsOf(RememberedPanel{{}, "0123456789abcdef"});
    QCOMPARE(ValueOf(facts, "took last"), QStringLiteral("0123456789ab"));
    QCOMPARE(ValueOf(facts, "tells itself apart"), QStringLiteral("no"));
}

KIVO_TEST(TestPanelReport)
#include "tst_panel_report.moc"
