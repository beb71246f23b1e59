#include <sys/stat.h>
#include <QFile>
#include <QFileInfo>

#include "device/node_identity.h"
#include "device/panel_key.h"

namespace kivo {

// Numbers of nodes are given out again, inodes are not; the change time is newer after a change of rights
// too, which costs a question more and does no harm.
QByteArray StampOfNode(const QByteArray& path) {
    struct stat node = {};
    if (::stat(path.constData(), &node) != 0) {
        return {};
    }
    return QByteArray::number(qulonglong{node.st_ino}) + ' ' +
           QByteArray::number(qlonglong{node.st_ctim.tv_sec}) + '.' +
           QByteArray::number(qlonglong{node.st_ctim.tv_nsec});
}

QByteArray PanelKeyOfNode(const QByteArray& path) {
    const QString name = QFileInfo(QFile::decodeName(path)).fileName();
    QFile uevent(QStringLiteral("/sys/class/hidraw/%1/device/uevent").arg(name));
    return uevent.open(QIODevice::ReadOnly) ? PanelKeyOfUevent(uevent.readAll()) : QByteArray();
}

}  // namespace kivo
