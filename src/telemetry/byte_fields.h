#pragma once

// Numbers in bytes of another program's, little end first and anywhere: they need not be aligned. The caller
// has made sure that the bytes are there.

#include <QByteArray>
#include <QtEndian>

#include <cstring>

namespace kivo {

template <typename Number>
Number NumberAt(const QByteArray& bytes, int offset) {
    return qFromLittleEndian<Number>(bytes.constData() + offset);
}

// A single precision number.
inline float FloatAt(const QByteArray& bytes, int offset) {
    const auto bits = NumberAt<quint32>(bytes, offset);
    float number = 0;
    static_assert(sizeof(number) == sizeof(bits));
    std::memcpy(&number, &bits, sizeof(number));
    return number;
}

}  // namespace kivo
