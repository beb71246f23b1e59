#include "telemetry/energy_meter_names.h"

namespace kivo {
namespace {

constexpr int kSocketRank = 1000;
constexpr int kMostDigits = 2;

}  // namespace

std::optional<int> PackageMeterRank(const QString& name) {
    const QString plain = name.trimmed().toLower();
    if (plain == QLatin1String("current socket power") || plain == QLatin1String("current socket energy")) {
        return kSocketRank;
    }
    const QLatin1String begin("rapl_package");
    const QLatin1String end("_pkg");
    const int digits = plain.size() - begin.size() - end.size();
    if (!plain.startsWith(begin) || !plain.endsWith(end) || digits < 1 || digits > kMostDigits) {
        return std::nullopt;
    }
    int package = 0;
    for (const QChar digit : QStringView(plain).mid(begin.size(), digits)) {
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9')) {
            return std::nullopt;
        }
        package = package * 10 + (digit.unicode() - '0');
    }
    return package;
}

}  // namespace kivo
