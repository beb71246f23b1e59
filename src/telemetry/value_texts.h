#pragma once

#include <QDate>
#include <QString>
#include <QTime>

#include "model/interface_language.h"

namespace kivo {

// The texts the panel shows. Pure. Digits are always 0 to 9, whatever the system's locale writes.

QString FormatTemperature(int degreesCelsius);               // "45℃" (one character, U+2103); not clamped.
QString FormatCpuUsage(int percent);                         // "37%"; below 1 shows as 1.
QString FormatMemoryUsage(int percent);                      // "63%"; not clamped.
QString FormatTime(QTime time);                              // "09:05", 24 hours.
QString FormatPower(int watts, InterfaceLanguage language);  // "15w", Russian "15Вт"; below 1 shows as 1.
QString FormatDate(QDate date, InterfaceLanguage language);  // "2019.12.21", Russian "21.12.2019".
QString FormatFanSpeed(int degreesCelsius);                  // FanFigure, right-aligned to four characters.
QString FormatMeasuredFan(int revolutions);                  // A minute, right-aligned likewise.

// Where there is no value: "--℃", "--%", "--w" or "--Вт", "----".
QString NoTemperatureText();
QString NoPercentText();
QString NoPowerText(InterfaceLanguage language);
QString NoFanText();

// What a fan that is not measured is shown as: 1000 up to 50 °C, 100 more per degree up to 74 °C, 3500 from
// 75 °C on.
int FanFigure(int degreesCelsius);

}  // namespace kivo
