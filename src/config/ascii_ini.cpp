#include "config/ascii_ini.h"

#include <QBuffer>
#include <QFile>

#include <algorithm>

#include "config/replace_file.h"

namespace kivo {
namespace {

// What a line holds as it is: the rest of ASCII is escaped by every Qt.
bool IsPlain(ushort unit) {
    return unit < 0x7F;
}

bool IsHexDigit(ushort unit) {
    return (unit >= '0' && unit <= '9') || (unit >= 'a' && unit <= 'f') || (unit >= 'A' && unit <= 'F');
}

bool IsAscii(const QByteArray& content) {
    return std::all_of(content.begin(), content.end(),
                       [](char byte) { return IsPlain(static_cast<unsigned char>(byte)); });
}

}  // namespace

QByteArray AsciiIni(const QByteArray& content) {
    QByteArray ascii;
    ascii.reserve(content.size());
    // A digit that follows an escape would be read as part of it.
    bool isAfterEscape = false;
    const QString text = QString::fromUtf8(content);
    for (const QChar character : text) {
        const ushort unit = character.unicode();
        isAfterEscape = !IsPlain(unit) || (isAfterEscape && IsHexDigit(unit));
        if (isAfterEscape) {
            ascii += "\\x" + QByteArray::number(unit, 16);
        } else {
            ascii += static_cast<char>(unit);
        }
    }
    return ascii;
}

QString MakeIniAscii(const QString& filePath) {
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly)) {
        return file.errorString();
    }
    const QByteArray content = file.readAll();
    file.close();
    if (IsAscii(content)) {
        return {};
    }
    QBuffer ascii;
    ascii.setData(AsciiIni(content));
    ascii.open(QIODevice::ReadOnly);
    return ReplaceFile(filePath, &ascii);
}

}  // namespace kivo
