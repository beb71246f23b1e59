#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QHash>
#include <algorithm>
#include <array>

#include "device/hid_node_list.h"
#include "device/hidraw_sysfs.h"
#include "device/screen_device_table.h"

namespace kivo {

namespace {

constexpr int kHexadecimal = 16;

QString Hex(quint16 number) {
    return QStringLiteral("%1").arg(number, 4, kHexadecimal, QLatin1Char('0'));
}

// Symbolic links as they are: those of a process's files lead to names that need not exist.
QByteArray LinkTarget(const QString& path) {
    std::array<char, 4096> target{};
    const ssize_t length = ::readlink(QFile::encodeName(path).constData(), target.data(), target.size());
    return length > 0 ? QByteArray(target.data(), int(length)) : QByteArray();
}

struct Holders {
    QHash<QByteArray, QStringList> byNode;  // a node's path: "name (process number)"
    int untold = 0;                         // processes of others
};

// Other users' processes tell nobody what they have open.
Holders FindHolders(const QString& processFolder, const QByteArray& nodePrefix) {
    Holders holders;
    const QStringList processes = QDir(processFolder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& process : processes) {
        bool isNumber = false;
        process.toInt(&isNumber);
        if (!isNumber) {
            continue;
        }
        const QString folder = processFolder + QLatin1Char('/') + process;
        const QString files = folder + QStringLiteral("/fd");
        if (::access(QFile::encodeName(files).constData(), R_OK | X_OK) != 0) {
            ++holders.untold;
            continue;
        }
        const QStringList open = QDir(files).entryList(QDir::Files | QDir::System | QDir::Hidden);
        for (const QString& file : open) {
            const QByteArray target = LinkTarget(files + QLatin1Char('/') + file);
            if (!target.startsWith(nodePrefix)) {
                continue;
            }
            QFile name(folder + QStringLiteral("/comm"));
            const QString comm =
                name.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(name.readAll()).trimmed() : QString();
            const QString holder = QStringLiteral("%1 (%2)").arg(comm, process);
            QStringList& ofNode = holders.byNode[target];
            if (!ofNode.contains(holder)) {
                ofNode.append(holder);
            }
        }
    }
    return holders;
}

// "crw-rw---- root:plugdev, read and write": as a listing shows them, then what they come to for this user,
// to whom a rule may have given more.
QString RightsOf(const QByteArray& node) {
    struct stat status {};
    if (::stat(node.constData(), &status) != 0) {
        return QStringLiteral("no such node");
    }
    static constexpr std::array<char, 9> kLetters{'r', 'w', 'x', 'r', 'w', 'x', 'r', 'w', 'x'};
    QString mode(S_ISCHR(status.st_mode) ? QLatin1Char('c') : QLatin1Char('-'));
    for (std::size_t bit = 0; bit < kLetters.size(); ++bit) {
        const bool isSet = (status.st_mode & (0400U >> bit)) != 0;
        mode += QLatin1Char(isSet ? kLetters.at(bit) : '-');
    }
    const struct passwd* const owner = ::getpwuid(status.st_uid);
    const QString user =
        owner != nullptr ? QString::fromLocal8Bit(owner->pw_name) : QString::number(status.st_uid);
    const struct group* const owners = ::getgrgid(status.st_gid);
    const QString group =
        owners != nullptr ? QString::fromLocal8Bit(owners->gr_name) : QString::number(status.st_gid);
    const bool mayRead = ::access(node.constData(), R_OK) == 0;
    const bool mayWrite = ::access(node.constData(), W_OK) == 0;
    const QString here = mayRead && mayWrite ? QStringLiteral("read and write")
                         : mayRead           ? QStringLiteral("read only")
                         : mayWrite          ? QStringLiteral("write only")
                                             : QStringLiteral("no right");
    return QStringLiteral("%1 %2:%3, %4").arg(mode, user, group, here);
}

QString PartOf(const std::vector<HidDeviceInfo>& collections) {
    const ScreenDeviceEntry screen = DefaultScreenEntry();
    for (const HidDeviceInfo& collection : collections) {
        if (IsDataCollection(screen, collection)) {
            return QStringLiteral("the screen's data");
        }
        if (IsControlCollection(screen, collection)) {
            return QStringLiteral("the screen's control");
        }
    }
    return {};
}

}  // namespace

QStringList ListHidNodes(const HidNodePlaces& places) {
    const QByteArray prefix = QFile::encodeName(places.nodeFolder) + "/hidraw";
    const Holders holders = FindHolders(places.processFolder, prefix);
    QStringList screens;
    QStringList others;
    const QStringList nodes = QDir(places.classFolder).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& name : nodes) {
        const std::vector<HidDeviceInfo> collections = DescribeHidraw(places.classFolder, name);
        QStringList facts{name};
        const QString part = PartOf(collections);
        if (!part.isEmpty()) {
            facts.append(part);
        }
        if (collections.empty()) {
            facts.append(QStringLiteral("gone meanwhile"));
        } else {
            const HidDeviceInfo& device = collections.front();
            facts.append(Hex(device.vendorId) + QLatin1Char(':') + Hex(device.productId) +
                         QStringLiteral(" release ") + Hex(device.releaseNumber));
            QStringList usages;
            for (const HidDeviceInfo& collection : collections) {
                usages.append(Hex(collection.usagePage) + QLatin1Char(':') + Hex(collection.usage));
            }
            facts.append(QStringLiteral("usages ") + usages.join(QLatin1Char(' ')));
        }
        const QByteArray node = prefix + QFile::encodeName(name).mid(int(qstrlen("hidraw")));
        facts.append(RightsOf(node));
        const QStringList held = holders.byNode.value(node);
        facts.append(held.isEmpty() ? QStringLiteral("no holder seen")
                                    : QStringLiteral("held by ") + held.join(QStringLiteral(", ")));
        (part.isEmpty() ? others : screens).append(facts.join(QStringLiteral("; ")));
    }
    QStringList lines = screens + others;
    if (holders.untold > 0 && !lines.isEmpty()) {
        lines.append(
            QStringLiteral("(%1 processes of other users do not tell what they hold)").arg(holders.untold));
    }
    return lines;
}

}  // namespace kivo
