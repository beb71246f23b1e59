#include "window/nimb_process_dialog.h"

#include <QApplication>
#include <QBitmap>
#include <QCloseEvent>
#include <QFile>
#include <QLabel>
#include <QMovie>
#include <QThread>
#include <QTimer>

#include "widgets/sharp_picture.h"

namespace kivo {

namespace {

constexpr int kSide = 128;

// The animation, in twice the pixels where the screen has them.
QString MovieFile(qreal pixelRatio) {
    const QString plain = QStringLiteral("://skins/loading.gif");
    const QString sharp = DoublePicturePath(plain);
    return pixelRatio > 1 && QFile::exists(sharp) ? sharp : plain;
}

}  // namespace

NimbProcessDialog::NimbProcessDialog(const QWidget* mainWindow, QWidget* parent)
    : QDialog(parent), m_movie(new QMovie(this)), m_label(new QLabel(this)) {
    setWindowTitle(tr("正在更新屏幕"));
    setFixedSize(kSide, kSide);
    const QPixmap mask(QCoreApplication::applicationDirPath() + QStringLiteral("/skin/process.png"));
    if (!mask.isNull()) {
        setMask(mask.mask());
    }
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowFlag(Qt::FramelessWindowHint);
    if (mainWindow != nullptr) {
        const QRect over = mainWindow->geometry();
        move(over.left() + over.width() / 2 - width() / 2, over.top() + over.height() / 2 - height() / 2);
    }
    m_label->setGeometry(0, 0, kSide, kSide);
    const qreal pixelRatio = mainWindow != nullptr ? mainWindow->devicePixelRatioF() : devicePixelRatioF();
    m_movie->setFileName(MovieFile(pixelRatio));
    connect(m_movie, &QMovie::frameChanged, this, &NimbProcessDialog::ShowFrame);
    m_movie->start();
}

// By hand: a label that shows a movie takes each of its pixels for a point, whatever the screen.
void NimbProcessDialog::ShowFrame() {
    QPixmap frame = m_movie->currentPixmap();
    if (frame.isNull()) {
        return;
    }
    const qreal pixelRatio = devicePixelRatioF();
    const int side = qRound(kSide * pixelRatio);
    if (frame.width() != side) {
        frame = frame.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    frame.setDevicePixelRatio(pixelRatio);
    m_label->setPixmap(frame);
}

void NimbProcessDialog::slotProcessDlg() {
    QTimer::singleShot(0, this, &NimbProcessDialog::updateProgress);
}

void NimbProcessDialog::updateProgress() {
    accept();
}

void NimbProcessDialog::timerDone() {
    static int counter = 0;
    counter = counter % 100 + 1;
    qDebug("%d", counter);
    QThread::msleep(20);
}

void NimbProcessDialog::closeEvent(QCloseEvent* event) {
    // The end of the user's session is never held up.
    if (qGuiApp->isSavingSession()) {
        event->accept();
        return;
    }
    event->ignore();
}

}  // namespace kivo
