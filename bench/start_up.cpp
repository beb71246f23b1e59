// From the start of the process to the first report on the wire and to the shown window, offscreen, beside a
// bare Qt Widgets program that does nothing but show a window of that size. Both are started in turn, with
// files in the cache, and looked at from outside.
//   build/bench/bin/start_up [RUNS] [--display]   (default 25; --display: on the display there is, not
//   offscreen)

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <QVector>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <optional>

#include "device/report_log.h"

namespace {

using Milliseconds = std::optional<double>;

constexpr double kLongestStart = 10000;

qint64 Now() {
    const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
    return now.count();
}

QString Beside(const char* name) {
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + QLatin1String(name);
}

void Put(const char* name, const QString& value) {
    qputenv(name, QFile::encodeName(value));
}

// A program with a home of its own, so that it neither sees nor is seen by one that runs.
class Started {
public:
    Started(const QString& program, const QStringList& arguments, const QString& home, const QString& clock)
        : m_clock(clock) {
        QFile::remove(clock);
        QVector<QByteArray> texts{QFile::encodeName(program)};
        for (const QString& argument : arguments) {
            texts.append(QFile::encodeName(argument));
        }
        QVector<char*> pointers;
        for (QByteArray& text : texts) {
            pointers.append(text.data());
        }
        pointers.append(nullptr);
        m_start = Now();
        m_process = ::fork();
        if (m_process == 0) {
            for (const char* name : {"HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
                Put(name, home);
            }
            Put("XDG_DATA_HOME", home + QStringLiteral("/data"));
            Put("XDG_CONFIG_HOME", home + QStringLiteral("/config"));
            Put("XDG_CACHE_HOME", home + QStringLiteral("/cache"));
            Put("KIVO_START_CLOCK", clock);
            [[maybe_unused]] const std::FILE* const quiet = std::freopen("/dev/null", "w", stderr);
            ::execv(pointers.first(), pointers.data());
            ::_exit(127);
        }
    }
    ~Started() {
        ::kill(m_process, SIGTERM);
        ::waitpid(m_process, nullptr, 0);
    }
    Q_DISABLE_COPY(Started)

    double Since(qint64 nanoseconds) const { return double(nanoseconds - m_start) / 1e6; }

    Milliseconds WaitFor(const std::function<Milliseconds()>& look) const {
        while (Since(Now()) < kLongestStart) {
            if (const Milliseconds found = look()) {
                return found;
            }
            QThread::msleep(5);
        }
        return std::nullopt;
    }

    Milliseconds Shown() const {
        return WaitFor([this]() -> Milliseconds {
            QFile file(m_clock);
            return file.open(QIODevice::ReadOnly) ? Milliseconds(Since(file.readAll().toLongLong()))
                                                  : std::nullopt;
        });
    }
    Milliseconds FirstReport(const QString& log) const {
        return WaitFor([&]() -> Milliseconds {
            if (!QFile::exists(log)) {
                return std::nullopt;
            }
            kivo::ReportLogReader reader(log);
            while (const std::optional<kivo::LoggedReport> report = reader.Next()) {
                if (report->kind == kivo::LoggedKind::OutputReport) {
                    return Since(qint64(report->nanoseconds));
                }
            }
            return std::nullopt;
        });
    }

private:
    const QString m_clock;
    qint64 m_start = 0;
    pid_t m_process = 0;
};

struct Row {
    const char* what;
    QVector<double> times;
    bool failed = false;

    void Add(const Milliseconds& time) {
        failed = failed || !time;
        times.append(time.value_or(0));
    }
    double Median() const {
        QVector<double> sorted = times;
        std::sort(sorted.begin(), sorted.end());
        return sorted[sorted.size() / 2];
    }
    void Print() const {
        const auto [least, most] = std::minmax_element(times.begin(), times.end());
        std::printf("%-44s median %6.1f ms   (%.1f to %.1f)%s\n", what, Median(), *least, *most,
                    failed ? "   FAILED" : "");
    }
};

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int runs = argc > 1 ? std::max(1, QString::fromLocal8Bit(argv[1]).toInt()) : 25;
    qunsetenv("WAYLAND_DISPLAY");
    if (!application.arguments().contains(QStringLiteral("--display"))) {
        qunsetenv("DISPLAY");
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_FONT_DPI", "96");  // else that screen's scale is 1.04
    }
    qputenv("QT_QPA_GENERIC_PLUGINS", "startclock");
    Put("QT_PLUGIN_PATH", Beside("../bench-plugins"));

    Row bare{"bare program, window shown", {}};
    Row firstReport{"kivo-screen, first run, first report", {}};
    Row laterReport{"kivo-screen, later run, first report", {}};
    Row wanted{"kivo-screen --show, later run, window shown", {}};
    // The first round warms the caches.
    for (int run = 0; run <= runs; ++run) {
        const QTemporaryDir folder;
        const QString home = folder.filePath(QStringLiteral("home"));
        const QString clock = folder.filePath(QStringLiteral("shown"));
        QDir().mkdir(home);
        Milliseconds times[4];
        {
            const Started program(Beside("bare_widgets"), {QStringLiteral("60"), QStringLiteral("shown")},
                                  home, clock);
            times[0] = program.Shown();
        }
        const auto start = [&](const QString& log, const QStringList& further = {}) {
            const QStringList arguments{QStringLiteral("--virtual-screen"), QStringLiteral("--report-log"),
                                        log};
            return std::make_unique<Started>(Beside("kivo-screen"), arguments + further, home, clock);
        };
        const QString firstLog = folder.filePath(QStringLiteral("first.log"));
        {
            const auto program = start(firstLog);
            times[1] = program->FirstReport(firstLog);
        }
        const QString laterLog = folder.filePath(QStringLiteral("later.log"));
        times[2] = start(laterLog)->FirstReport(laterLog);
        times[3] = start(laterLog, {QStringLiteral("--show")})->Shown();
        if (run > 0) {
            bare.Add(times[0]);
            firstReport.Add(times[1]);
            laterReport.Add(times[2]);
            wanted.Add(times[3]);
        }
    }
    for (const Row* row : {&bare, &firstReport, &laterReport, &wanted}) {
        row->Print();
    }
    std::printf("%-44s %.2f\n", "--show, ratio to the bare program", wanted.Median() / bare.Median());
    std::printf("%-44s %.2f\n", "first report (later run), the same", laterReport.Median() / bare.Median());
    return bare.failed || firstReport.failed || laterReport.failed || wanted.failed ? 1 : 0;
}
