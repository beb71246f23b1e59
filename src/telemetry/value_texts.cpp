#include "telemetry/value_texts.h"

#include <QChar>
#include <QLocale>

#include <algorithm>

namespace kivo {
namespace {

constexpr ushort kDegreeCelsius = 0x2103;

// Number and sign are put together by hand: a printf pattern that ends in a lone '%' is refused by some
// systems.
QString Percent(int value) {
    return QString::number(value) + QLatin1Char('%');
}

QString PowerUnit(InterfaceLanguage language) {
    return language == InterfaceLanguage::Russian ? QStringLiteral(u"\u0412\u0442") : QStringLiteral("w");
}

}  // namespace

QString FormatTemperature(int degreesCelsius) {
    return QString::number(degreesCelsius) + QChar(kDegreeCelsius);
}

QString FormatCpuUsage(int percent) {
    return Percent(std::max(percent, 1));
}

QString FormatMemoryUsage(int percent) {
    return Percent(percent);
}

// QTime::toString and QDate::toString write the digits of the system's locale, which the panel's layout is
// not made for; the C locale's are wanted.
QString FormatTime(QTime time) {
    return QLocale::c().toString(time, QStringLiteral("hh:mm"));
}

QString FormatPower(int watts, InterfaceLanguage language) {
    return QString::number(std::max(watts, 1)) + PowerUnit(language);
}

QString FormatDate(QDate date, InterfaceLanguage language) {
    return QLocale::c().toString(date, language == InterfaceLanguage::Russian ? QStringLiteral("dd.MM.yyyy")
                                                                              : QStringLiteral("yyyy.MM.dd"));
}

int FanFigure(int degreesCelsius) {
    if (degreesCelsius <= 50) {
        return 1000;
    }
    if (degreesCelsius <= 74) {
        return 1000 + (degreesCelsius - 50) * 100;
    }
    return 3500;
}

QString FormatFanSpeed(int degreesCelsius) {
    return FormatMeasuredFan(FanFigure(degreesCelsius));
}

QString FormatMeasuredFan(int revolutions) {
    return QString::number(revolutions).rightJustified(4);
}

QString NoTemperatureText() {
    return QStringLiteral("--") + QChar(kDegreeCelsius);
}

QString NoPercentText() {
    return QStringLiteral("--%");
}

QString NoPowerText(InterfaceLanguage language) {
    return QStringLiteral("--") + PowerUnit(language);
}

QString NoFanText() {
    return QStringLiteral("----");
}

}  // namespace kivo
