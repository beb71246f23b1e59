#include <QtTest>

#include "../config/log_catcher.h"
#include "support/built_paths.h"
#include "support/test_program.h"
#include "telemetry/thermal_zone.h"
#include "telemetry/thermal_zone_thread.h"
#include "told.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const CommandLimits kLongEnough{std::chrono::seconds(60), std::chrono::seconds(60)};

QByteArray Utf16(const char* text, bool withMark) {
    QByteArray bytes = withMark ? QByteArray("\xFF\xFE") : QByteArray();
    for (const char* c = text; *c != '\0'; ++c) {
        bytes.append(*c).append('\0');
    }
    return bytes;
}

QString Degrees(const char* number) {
    return QString::fromLatin1(number) + QChar(0x00B0) + QLatin1Char('C');
}

// The stand-in for the WMI client; made is a file that it makes.
Command StandIn(const QString& behaviour, const QString& made = {}) {
    Command command{TestHelper("thermal_stand_in"), {behaviour}};
    if (!made.isEmpty()) {
        command.arguments.append(made);
    }
    return command;
}

// Asked whether to give up, waits until there is such a file, and then never gives up.
StopAsked GoOnOnceThereIs(const QString& file) {
    return [file] {
        while (!QFile::exists(file)) {
            QThread::msleep(5);
        }
        return false;
    };
}

struct Texts : Told<QString> {
    explicit Texts(ThermalZoneThread& thread)
        : Told(thread, &ThermalZoneThread::temperatureRead, [](const QString& text) { return text; }) {}
};

}  // namespace

class TestThermalZone : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void OutputIsParsed_data() {
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const QByteArray& output, const QString& text) {
            QTest::newRow(name) << output << text;
        };
        const QString none = QStringLiteral("N/A");
        const QString warm = Degrees("28.000000");
        row("blank lines and one zone", "\r\n\r\nCurrentTemperature=3012\r\n\r\n", warm);
        row("freezing point", "CurrentTemperature=2732\r\n", Degrees("0.000000"));
        row("below", "CurrentTemperature=2700\r\n", Degrees("-3.200000"));
        row("absolute zero", "CurrentTemperature=0\r\n", Degrees("-273.200000"));
        row("a spare CR, as the client writes it", "\r\r\n\r\r\nCurrentTemperature=3012\r\r\n\r\r\n", warm);
        row("no line end", "CurrentTemperature=3012", warm);
        row("blanks around both", "  CurrentTemperature \t=  3012  \r\n", warm);
        row("a sign", "CurrentTemperature=+3012\r\n", warm);
        row("spare equal signs count for nothing", "=CurrentTemperature==3012=\r\n", warm);
        row("the last zone wins", "CurrentTemperature=2992\r\n\r\nCurrentTemperature=3012\r\n", warm);
        row("a zone that cannot be read leaves the one before",
            "CurrentTemperature=3012\r\nCurrentTemperature=\r\nCurrentTemperature=hot\r\n", warm);
        row("what stands behind a zero byte is not text",
            QByteArray("CurrentTemperature=3012\r\n\0CurrentTemperature=2992\r\n", 51), warm);
        row("UTF-16 with its mark", Utf16("\r\nCurrentTemperature=3012\r\n", true), warm);
        row("UTF-16 without", Utf16("\r\nCurrentTemperature=3012\r\n", false), warm);
        row("UTF-16, cut in a character", Utf16("CurrentTemperature=3012", true) + '\r', warm);
        row("UTF-16 with a spare CR", Utf16("\r\r\nCurrentTemperature=3012\r\r\n", true), warm);

        row("nothing", {}, none);
        row("an error", "Node - PC\r\nERROR:\r\nDescription = Access denied\r\n", none);
        row("no value", "CurrentTemperature=\r\n", none);
        row("three parts", "CurrentTemperature=30=12\r\n", none);
        row("another case", "currenttemperature=3012\r\n", none);
        row("another name", "CurrentTemperatures=3012\r\n", none);
        row("a fraction", "CurrentTemperature=3012.5\r\n", none);
        row("not decimal", "CurrentTemperature=0xBC4\r\n", none);
        row("no integer holds it", "CurrentTemperature=30120000000\r\n", none);
        row("LF alone ends no line", "\nCurrentTemperature=3012\nOther=1\n", none);
        row("a mark alone", QByteArray("\xFF\xFE"), none);
        row("zeros", QByteArray(9, '\0'), none);
        row("noise", QByteArray("\x80=\xff\r\n=\r\n==", 10), none);
    }
    void OutputIsParsed() {
        QFETCH(QByteArray, output);
        QFETCH(QString, text);
        QCOMPARE(ParseThermalZones(output), text);
    }

    void CommandLineIsWhatTheClientUnderstands() {
        QCOMPARE(ThermalCommand(),
                 QStringLiteral(R"(wmic /namespace:\\root\wmi PATH MSAcpi_ThermalZoneTemperature )"
                                R"(get CurrentTemperature /value)"));
    }

    void CommandsOutputIsRead_data() {
        QTest::addColumn<QString>("behaviour");
        QTest::newRow("it ends by itself") << "print";
        QTest::newRow("it waits for the end of its input") << "read";
    }
    void CommandsOutputIsRead() {
        QFETCH(QString, behaviour);
        const QByteArray output = ReadCommandOutput(StandIn(behaviour), kLongEnough);
        QCOMPARE(ParseThermalZones(output), Degrees("28.000000"));
    }

    void LimitsOfTheReading() {
        QVERIFY(kLongestReading == std::chrono::seconds(30));
        QVERIFY(CommandLimits().run == kLongestReading);
        QVERIFY(CommandLimits().end == std::chrono::milliseconds(500));
    }

    // The limit is long over when the reading comes; all that has come by then counts.
    void WhatCameBeforeTheLimitIsRead() {
        const QTemporaryDir folder;
        const QString sign = folder.filePath(QStringLiteral("written"));
        const QByteArray output =
            ReadCommandOutput(StandIn(QStringLiteral("hang"), sign),
                              {std::chrono::milliseconds(1), kLongEnough.end}, GoOnOnceThereIs(sign));
        QCOMPARE(ParseThermalZones(output), Degrees("28.000000"));
    }

    // Qt would warn of a process that is still running, and wait for it half a minute.
    void ProcessThatDoesNotEndIsLeft() {
        const LogCatcher log;
        const QTemporaryDir folder;
        const QString sign = folder.filePath(QStringLiteral("written"));
        const std::chrono::milliseconds none{0};
        ReadCommandOutput(StandIn(QStringLiteral("hang"), sign), {none, none}, GoOnOnceThereIs(sign));
        QCOMPARE(log.lines(), QStringList());
    }

    void MissingCommand_data() {
        QTest::addColumn<QString>("program");
        QTest::newRow("no such program") << "kivo-no-such-program";
        QTest::newRow("a folder") << QDir::tempPath();
        QTest::newRow("nothing") << QString();
    }
    void MissingCommand() {
        QFETCH(QString, program);
        QCOMPARE(ReadCommandOutput({program, {QStringLiteral("/value")}}, kLongEnough), QByteArray());
    }

    void HangingCommandIsGivenUp() {
        int looks = 0;
        // Would last a minute otherwise, and the test's time be over.
        ReadCommandOutput(StandIn(QStringLiteral("hang")), kLongEnough, [&looks] { return ++looks > 2; });
        QCOMPARE(looks, 3);
    }

    void ReadingIsADegreeOrNothing() {
        const QString text = ReadThermalZoneTemperature();
        const QRegularExpression form(QStringLiteral("^(-?[0-9]{1,3}\\.[0-9]{6})\u00B0C$"));
        const auto match = form.match(text);
        QVERIFY2(text == QLatin1String("N/A") || match.hasMatch(), qPrintable(text));
        const double degrees = match.hasMatch() ? match.captured(1).toDouble() : 20.0;
        QVERIFY2(degrees > -100.0 && degrees < 150.0, qPrintable(text));
    }

    void ThreadTellsTheReading() {
        ThermalZoneThread thread([](const StopAsked&) { return ThermalText(28); });
        const Texts told(thread);
        thread.start();
        QTRY_COMPARE(told.count(), 1);
        QCOMPARE(told.at(0), Degrees("28.000000"));
    }

    void ReadingThatIsGivenUpIsNotTold() {
        QSemaphore isReading;
        auto thread = std::make_unique<ThermalZoneThread>([&isReading](const StopAsked& isStopAsked) {
            isReading.release();
            return ParseThermalZones(
                ReadCommandOutput(StandIn(QStringLiteral("hang")), kLongEnough, isStopAsked));
        });
        const Texts told(*thread);
        thread->start();
        isReading.acquire();
        thread.reset();
        QCoreApplication::processEvents();
        QCOMPARE(told.count(), 0);
    }
};

KIVO_GUILESS_TEST(TestThermalZone)
#include "tst_thermal_zone.moc"
