#include "local_server.h"

#include <QtTest>

#include "../telemetry/sensor_bytes.h"
#include "../telemetry/sensor_words.h"
#include "support/test_program.h"
#include "telemetry/hardware_monitor_json.h"
#include "telemetry/hardware_monitor_source.h"

using namespace kivo;
using namespace kivo::test;

namespace {

using End = LocalServer::Answer::End;

std::unique_ptr<LocalPage> PageOf(quint16 port) {
    return MakeLocalPage(port, QString::fromLatin1(kHardwareMonitorPath),
                         LocalPageLimits{kLongestMonitorPage});
}

// A whole page would be this long, and never is.
QByteArray EndlessHead() {
    return "HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n";
}

constexpr char kMachine[] = "65.2, 46.9, 1234";
constexpr char kNothing[] = "no source, no source, no source";

}  // namespace

// Pages of a real server on this machine.
class TestLocalPage : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void PageIsFetched() {
        LocalServer server(LocalServer::Page(MonitorPageOfAMachine()));
        const auto page = PageOf(server.Port());
        const std::optional<QByteArray> body = page->Fetch();
        QVERIFY(body);
        QCOMPARE(*body, MonitorPageOfAMachine());
        QCOMPARE(server.Requests(), QList<QByteArray>{"GET /data.json HTTP/1.1"});
        // Once more, also after an empty one.
        server.SetAnswer(LocalServer::Page({}));
        QCOMPARE(page->Fetch(), std::optional<QByteArray>(QByteArray()));
        server.SetAnswer(LocalServer::Page("x"));
        QCOMPARE(page->Fetch(), std::optional<QByteArray>(QByteArray("x")));
    }

    void PageInPieces() {
        const LocalServer server(
            {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
             "3\r\nabc\r\n4\r\ndefg\r\n0\r\n\r\n"});
        QCOMPARE(PageOf(server.Port())->Fetch(), std::optional<QByteArray>(QByteArray("abcdefg")));
    }

    void LongPageIsFetchedUpToItsLimit() {
        const QByteArray body(kLongestMonitorPage, 'x');
        LocalServer server(LocalServer::Page(body));
        const auto page = PageOf(server.Port());
        const std::optional<QByteArray> fetched = page->Fetch();
        QVERIFY(fetched && *fetched == body);
        server.SetAnswer(LocalServer::Page(body + 'x'));
        QVERIFY(!page->Fetch());
        server.SetAnswer(LocalServer::Page(QByteArray(50 * 1024 * 1024, '[')));
        QVERIFY(!page->Fetch());
        server.SetAnswer(LocalServer::Page("x"));
        QVERIFY(page->Fetch());
    }

    void AnswersThatAreNoPage_data() {
        QTest::addColumn<QByteArray>("answer");
        const QByteArray body = MonitorPageOfAMachine();
        QTest::newRow("a password is asked for")
            << LocalServer::Page(body, "401 Unauthorized", "WWW-Authenticate: Basic realm=\"x\"\r\n").bytes;
        QTest::newRow("Windows' own password")
            << LocalServer::Page(body, "401 Unauthorized", "WWW-Authenticate: NTLM\r\n").bytes;
        QTest::newRow("another place")
            << LocalServer::Page(body, "302 Found", "Location: /elsewhere\r\n").bytes;
        QTest::newRow("not found") << LocalServer::Page(body, "404 Not Found").bytes;
        QTest::newRow("nothing new") << LocalServer::Page({}, "204 No Content").bytes;
        QTest::newRow("an error") << LocalServer::Page(body, "500 Internal Server Error").bytes;
        QTest::newRow("no answer at all") << QByteArray();
        QTest::newRow("no web server") << QByteArray("\0\1\2\3 hello\r\n\r\n", 14);
    }
    void AnswersThatAreNoPage() {
        QFETCH(QByteArray, answer);
        LocalServer server({answer});
        QVERIFY(!PageOf(server.Port())->Fetch());
        for (const QByteArray& request : server.Requests()) {
            QCOMPARE(request, QByteArray("GET /data.json HTTP/1.1"));
        }
    }

    void NobodyIsThere() {
        quint16 port = 0;
        { port = LocalServer({}).Port(); }
        const auto page = PageOf(port);
        QVERIFY(!page->Fetch());
        QVERIFY(!page->Fetch());
    }

    // Would last as long as the test may otherwise: these servers never come to an end.
    void ServerThatNeverEndsIsGivenUp_data() {
        QTest::addColumn<QByteArray>("begin");
        QTest::addColumn<bool>("isDripping");
        QTest::newRow("it is silent") << QByteArray() << false;
        QTest::newRow("it is silent after its head") << EndlessHead() << false;
        QTest::newRow("a byte now and then") << EndlessHead() << true;
    }
    void ServerThatNeverEndsIsGivenUp() {
        QFETCH(QByteArray, begin);
        QFETCH(bool, isDripping);
        const LocalServer server({begin, isDripping ? End::Drip : End::Hang});
        const auto page = MakeLocalPage(server.Port(), QString::fromLatin1(kHardwareMonitorPath),
                                        {kLongestMonitorPage, std::chrono::milliseconds(300)});
        QVERIFY(!page->Fetch());
    }

    void CancelEndsAPageUnderWay_data() { ServerThatNeverEndsIsGivenUp_data(); }
    void CancelEndsAPageUnderWay() {
        QFETCH(QByteArray, begin);
        QFETCH(bool, isDripping);
        LocalServer server({begin, isDripping ? End::Drip : End::Hang});
        const auto page = PageOf(server.Port());
        std::thread other([&] {
            server.WaitForRequest();
            page->Cancel();
        });
        QVERIFY(!page->Fetch());
        other.join();
        server.SetAnswer(LocalServer::Page("x"));
        QVERIFY(!page->Fetch());
    }

    void SourceReadsTheServer() {
        LocalServer server(LocalServer::Page(MonitorPageOfAMachine()));
        HardwareMonitorSource source(PageOf(server.Port()), std::chrono::milliseconds(1));
        QCOMPARE(Said(source.Read(At(0))), QStringLiteral("not read, not read, not read"));
        QTRY_COMPARE(Values(source.Read(At(1))), QString::fromLatin1(kMachine));
        server.SetAnswer(LocalServer::Page({}, "401 Unauthorized", "WWW-Authenticate: Basic\r\n"));
        // A page under way may still be of the machine.
        QTRY_COMPARE(Said(source.Read(At(2))), QStringLiteral("not running, not running, not running"));
        server.SetAnswer(LocalServer::Page(MonitorPageOfAMachine()));
        QTRY_COMPARE(Values(source.Read(At(3))), QString::fromLatin1(kMachine));
    }

    void SourceOfAServerWithAPassword() {
        const LocalServer server(
            LocalServer::Page({}, "401 Unauthorized", "WWW-Authenticate: Basic realm=\"x\"\r\n"));
        HardwareMonitorSource source(PageOf(server.Port()), std::chrono::milliseconds(1));
        QTRY_COMPARE(Values(source.Read(At(0))), QString::fromLatin1(kNothing));
    }

    // No reading waits for the server, and neither does the end.
    void ServerThatHangsHoldsNobody() {
        LocalServer server(LocalServer::Page(MonitorPageOfAMachine()));
        auto source =
            std::make_unique<HardwareMonitorSource>(PageOf(server.Port()), std::chrono::milliseconds(1));
        QTRY_COMPARE(Values(source->Read(At(0))), QString::fromLatin1(kMachine));
        server.SetAnswer({EndlessHead(), End::Drip});
        // Those already under way may still have the former answer; the last of them hangs.
        const int before = server.Requests().size();
        QTRY_VERIFY(server.Requests().size() > before);
        QCOMPARE(Values(source->Read(At(9))), QString::fromLatin1(kMachine));
        source.reset();
    }
};

KIVO_GUILESS_TEST(TestLocalPage)
#include "tst_local_page.moc"
