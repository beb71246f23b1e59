#include "device/report_descriptor.h"

#include <array>

namespace kivo {

namespace {

// A short item: tag and type in the upper six bits, the length of its data in the lower two.
constexpr int kTagMask = 0xFC;
constexpr int kLengthMask = 0x03;
constexpr std::array<int, 4> kDataLengths{0, 1, 2, 4};
constexpr int kLongItem = 0xFE;  // length and tag follow, a byte each

constexpr int kUsagePage = 0x04;
constexpr int kUsage = 0x08;
constexpr int kCollection = 0xA0;
constexpr int kPush = 0xA4;
constexpr int kPop = 0xB4;
constexpr int kEndCollection = 0xC0;
constexpr int kTypeMask = 0x0C;
constexpr int kMainType = 0x00;

int ByteAt(const QByteArray& bytes, int at) {
    return static_cast<quint8>(bytes.at(at));
}

}  // namespace

std::vector<HidUsage> TopLevelUsages(const QByteArray& reportDescriptor) {
    std::vector<HidUsage> usages;
    std::vector<quint16> pushedPages;
    HidUsage current;
    int depth = 0;
    int at = 0;
    while (at < reportDescriptor.size()) {
        const int item = ByteAt(reportDescriptor, at);
        if (item == kLongItem) {
            at += at + 1 < reportDescriptor.size() ? 3 + ByteAt(reportDescriptor, at + 1) : 1;
            continue;
        }
        const int length = kDataLengths.at(static_cast<std::size_t>(item & kLengthMask));
        if (at + length >= reportDescriptor.size()) {
            break;
        }
        quint32 data = 0;
        for (int i = length; i > 0; --i) {
            data = data << 8U | static_cast<quint32>(ByteAt(reportDescriptor, at + i));
        }
        at += 1 + length;

        const int tag = item & kTagMask;
        if (tag == kUsagePage) {
            current.page = static_cast<quint16>(data);
        } else if (tag == kUsage) {
            current.usage = static_cast<quint16>(data);
            // Of four bytes, the upper two are the page.
            if (length == 4) {
                current.page = static_cast<quint16>(data >> 16U);
            }
        } else if (tag == kPush) {
            pushedPages.push_back(current.page);
        } else if (tag == kPop && !pushedPages.empty()) {
            current.page = pushedPages.back();
            pushedPages.pop_back();
        } else if (tag == kCollection && depth++ == 0) {
            usages.push_back(current);
        } else if (tag == kEndCollection) {
            --depth;
        }
        if ((item & kTypeMask) == kMainType) {
            current.usage = 0;
        }
    }
    return usages;
}

}  // namespace kivo
