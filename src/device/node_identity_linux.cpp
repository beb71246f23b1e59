#include <sys/stat.h>
#include <QFile>
#include <QFileInfo>

#include "device/hidraw_sysfs.h"
#include "device/node_identity.h"

namespace kivo {

namespace {

QString NodeOf(const QByteArray& path) {
    return QFileInfo(QFile::decodeName(path)).fileName();
}

}  // namespace

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
    return PanelKeyOfHidraw(QLatin1String(kHidrawFolder), NodeOf(path));
}

std::optional<std::vector<HidDeviceInfo>> CollectionsOfNode(const QByteArray& path) {
    return DescribeHidraw(QLatin1String(kHidrawFolder), NodeOf(path));
}

}  // namespace kivo
