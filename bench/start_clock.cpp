// A plugin that any Qt program takes in with QT_QPA_GENERIC_PLUGINS=startclock: once the first large window
// is painted and the program listens to its events, the monotonic time in nanoseconds is written to the file
// that KIVO_START_CLOCK names. So the real program is measured, not one that measures itself.

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QGenericPlugin>
#include <QTimer>
#include <QWindow>
#include <chrono>

namespace {

constexpr int kLargeWidth = 640;  // tray icons and sentinels are windows, too

class StartClock : public QObject {
public:
    StartClock() { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Expose) {
            const auto* window = qobject_cast<QWindow*>(watched);
            if (window != nullptr && window->isExposed() && window->width() >= kLargeWidth) {
                qApp->removeEventFilter(this);
                // The window paints while it takes this event.
                QTimer::singleShot(0, this, &StartClock::WriteTime);
            }
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void WriteTime() {
        const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
        const QString name = qEnvironmentVariable("KIVO_START_CLOCK");
        QFile file(name + QStringLiteral(".part"));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(QByteArray::number(qint64(now.count())));
            file.close();
            file.rename(name);
        }
    }
};

}  // namespace

class StartClockPlugin : public QGenericPlugin {
    Q_OBJECT
    // Qt has a macro for this name, in a header that moc is spared.
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QGenericPluginFactoryInterface" FILE "start_clock.json")

public:
    QObject* create(const QString&, const QString&) override { return new StartClock; }
};

#include "start_clock.moc"
