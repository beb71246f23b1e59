// The least that a program with a tray icon needs: what this program's memory and start are compared with.
//   bare_widgets [SECONDS] [shown]   its window is hidden at once, or stays

#include <QApplication>
#include <QSystemTrayIcon>
#include <QTimer>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QPixmap picture(16, 16);
    picture.fill(Qt::white);
    QSystemTrayIcon tray{QIcon(picture)};
    tray.show();
    QWidget window;
    window.resize(960, 588);
    window.show();
    if (argc < 3) {
        window.hide();
    }
    const int seconds = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 10;
    QTimer::singleShot(seconds * 1000, &application, &QCoreApplication::quit);
    return QApplication::exec();
}
