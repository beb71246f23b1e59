#include <QTranslator>
#include <QtTest>

#include "../config/log_catcher.h"
#include "support/built_paths.h"
#include "support/test_program.h"
#include "window/fact_log.h"
#include "window/language.h"

using namespace kivo;
using kivo::test::LogCatcher;

class TestFactLog : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void StateIsToldWhenItChanges();
    void FrameThatWasTakenIsTold();
    void SourcesAreToldWhenTheyChange();
};

namespace {

PanelStatus In(PanelCondition condition) {
    PanelStatus status;
    status.condition = condition;
    return status;
}

SensorReadings Temperature(const Reading& reading) {
    SensorReadings readings;
    readings[Quantity::Temperature] = reading;
    return readings;
}

}  // namespace

void TestFactLog::StateIsToldWhenItChanges() {
    FactLog log;
    const LogCatcher catcher;
    log.NotePanel(In(PanelCondition::NoScreen));
    log.NotePanel(In(PanelCondition::NoScreen));
    log.NotePanel(In(PanelCondition::Denied));
    log.NotePanel(In(PanelCondition::Connected));
    QCOMPARE(catcher.lines(),
             (QStringList{QStringLiteral("Screen: no screen."),
                          QStringLiteral("Screen: there, but this user has no right to open it."),
                          QStringLiteral("Screen: connected.")}));
}

void TestFactLog::FrameThatWasTakenIsTold() {
    FactLog log;
    const LogCatcher catcher;
    log.NotePanel(In(PanelCondition::Connected));
    for (int apply = 0; apply < 2; ++apply) {
        log.NotePanel(In(PanelCondition::Sending));
        log.NotePanel(In(PanelCondition::Sent));
        log.NotePanel(In(PanelCondition::Connected));
    }
    QCOMPARE(catcher.lines(), (QStringList{QStringLiteral("Screen: connected."),
                                           QStringLiteral("Screen: connected, a frame was just taken."),
                                           QStringLiteral("Screen: connected, a frame was just taken.")}));
}

void TestFactLog::SourcesAreToldWhenTheyChange() {
    QTranslator translator;
    QVERIFY(InstallTranslation(translator, InterfaceLanguage::English, test::ProgramFolder()));
    FactLog log;
    const LogCatcher catcher;
    log.NoteReadings({});
    log.NoteReadings(Temperature(Reading::Of(40, SourceId::CoreTemp)));
    log.NoteReadings(Temperature(Reading::Of(41, SourceId::CoreTemp)));
    log.NoteReadings(Temperature(Reading::Without(ReadingGap::NoSource)));
    QCOMPARE(catcher.lines(), (QStringList{QStringLiteral("Temperature: Core Temp."),
                                           QStringLiteral("Temperature: No sensor that can be read.")}));
}

KIVO_TEST(TestFactLog)
#include "tst_fact_log.moc"
