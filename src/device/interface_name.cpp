#include "device/interface_name.h"

#include <QRegularExpression>

namespace kivo {

namespace {

constexpr int kHexadecimal = 16;

quint32 IdIn(const QRegularExpressionMatch& match, const char* group) {
    return match.captured(QLatin1String(group)).toUInt(nullptr, kHexadecimal);
}

}  // namespace

InterfaceName ParseInterfaceName(const QString& name) {
    static const QRegularExpression dataInterface(
        QStringLiteral(R"(HID#VID_(?<vid>\w{4})&PID_(?<pid>\w{4})&mi_01)"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression anyInterface(QStringLiteral(R"(HID#VID_(?<vid>\w{4})&PID_(?<pid>\w{4}))"),
                                                 QRegularExpression::CaseInsensitiveOption);
    QRegularExpressionMatch match = dataInterface.match(name);
    const bool matched = match.hasMatch();
    if (!matched) {
        match = anyInterface.match(name);
    }
    return {matched, IdIn(match, "vid"), IdIn(match, "pid")};
}

QString MakeInterfaceName(quint32 vendorId, quint32 productId, int interfaceNumber, const QString& instance) {
    QString name = QStringLiteral("HID#VID_%1&PID_%2")
                       .arg(vendorId, 4, kHexadecimal, QLatin1Char('0'))
                       .arg(productId, 4, kHexadecimal, QLatin1Char('0'))
                       .toUpper();
    if (interfaceNumber >= 0) {
        name += QStringLiteral("&MI_%1").arg(interfaceNumber, 2, kHexadecimal, QLatin1Char('0')).toUpper();
    }
    return name + QLatin1Char('#') + instance;
}

QByteArray InterfacePath(const QString& name) {
    const QString prefix = QStringLiteral(R"(\\?\)");
    return (name.startsWith(prefix) ? name : prefix + name).toLatin1();
}

}  // namespace kivo
