#include "telemetry/measured_text.h"

#include <QByteArray>

#include <algorithm>
#include <array>

namespace kivo {
namespace {

// Longer ones are no numbers of sensors.
constexpr int kLongestNumber = 40;
constexpr int kGroupLength = 3;

constexpr char kCelsius[] = "C";
constexpr char kFahrenheit[] = "F";
constexpr char kWatts[] = "W";
constexpr char kMilliwatts[] = "MW";
constexpr char kRevolutions[] = "RPM";

struct Unit {
    const char* name;
    Quantity quantity;
    double offset;  // taken off first
    double factor;
};
constexpr std::array<Unit, 5> kUnits{{
    {kCelsius, Quantity::Temperature, 0, 1},
    {kFahrenheit, Quantity::Temperature, 32, 5.0 / 9.0},
    {kWatts, Quantity::Power, 0, 1},
    {kMilliwatts, Quantity::Power, 0, 0.001},
    {kRevolutions, Quantity::FanSpeed, 0, 1},
}};

bool IsDigit(QChar character) {
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

// What may part thousands beside point and comma: blanks, also narrow ones and those that hold words
// together, and apostrophes.
bool IsGroupMark(QChar character) {
    constexpr std::array<char16_t, 6> kMarks{u' ', u'\u00A0', u'\u202F', u'\u2009', u'\'', u'\u2019'};
    return std::any_of(kMarks.begin(), kMarks.end(),
                       [character](char16_t mark) { return character == mark; });
}

bool IsMark(QChar character) {
    return character == QLatin1Char('.') || character == QLatin1Char(',') || IsGroupMark(character);
}

// The marks of a number, by their places.
struct Marks {
    std::array<int, kLongestNumber> places{};
    int count = 0;

    int At(int index) const { return places[static_cast<std::size_t>(index)]; }
    int Last() const { return At(count - 1); }
};

// Digits with single marks between them; nothing where there is anything else.
std::optional<Marks> FindMarks(QStringView text) {
    const int length = static_cast<int>(text.size());
    if (length == 0 || length > kLongestNumber || !IsDigit(text.front()) || !IsDigit(text.back())) {
        return std::nullopt;
    }
    Marks marks;
    for (int i = 0; i < length; ++i) {
        if (IsDigit(text[i])) {
            continue;
        }
        if (!IsMark(text[i]) || !IsDigit(text[i + 1])) {
            return std::nullopt;
        }
        marks.places[static_cast<std::size_t>(marks.count++)] = i;
    }
    return marks;
}

// Whether the first `count` marks part thousands: all of one kind, groups of three behind the first, the last
// group ending at `end`.
bool AreGroups(QStringView text, const Marks& marks, int count, int end) {
    for (int i = 0; i < count; ++i) {
        const int next = i + 1 < count ? marks.At(i + 1) : end;
        if (text[marks.At(i)] != text[marks.At(0)] || next - marks.At(i) != kGroupLength + 1) {
            return false;
        }
    }
    return count == 0 || marks.At(0) <= kGroupLength;
}

// Where the decimal mark stands, `text.size()` where there is none; nothing where the marks make no sense.
std::optional<int> FindDecimalMark(QStringView text, const Marks& marks) {
    const int end = static_cast<int>(text.size());
    if (marks.count == 0) {
        return end;
    }
    const bool isLastAlone =
        !IsGroupMark(text[marks.Last()]) && (marks.count == 1 || text[marks.Last()] != text[marks.At(0)]);
    if (isLastAlone) {
        return AreGroups(text, marks, marks.count - 1, marks.Last()) ? std::optional<int>(marks.Last())
                                                                     : std::nullopt;
    }
    return AreGroups(text, marks, marks.count, end) ? std::optional<int>(end) : std::nullopt;
}

double ToDouble(QStringView text, int decimalMark) {
    QByteArray plain;
    for (int i = 0; i < text.size(); ++i) {
        if (IsDigit(text[i])) {
            plain.append(static_cast<char>(text[i].unicode()));
        } else if (i == decimalMark) {
            plain.append('.');
        }
    }
    return plain.toDouble();  // in the C locale
}

int UnitBegin(QStringView text) {
    int begin = static_cast<int>(text.size());
    while (begin > 0 && !IsDigit(text[begin - 1])) {
        --begin;
    }
    return begin;
}

// By its letters: the degree sign comes damaged where a program and its reader disagree about the coding.
const Unit* FindUnit(QStringView text) {
    QByteArray letters;
    for (const QChar character : text.mid(UnitBegin(text))) {
        if (character == QChar(0x2103)) {
            letters.append(kCelsius);
        } else if (character == QChar(0x2109)) {
            letters.append(kFahrenheit);
        } else if (character.unicode() < 0x80 && character.isLetter()) {
            letters.append(static_cast<char>(character.toUpper().unicode()));
        }
    }
    const auto unit = std::find_if(kUnits.begin(), kUnits.end(),
                                   [&letters](const Unit& known) { return letters == known.name; });
    return unit == kUnits.end() ? nullptr : &*unit;
}

}  // namespace

std::optional<double> NumberFromText(Quantity quantity, QStringView text) {
    text = text.trimmed();
    double sign = 1;
    if (!text.isEmpty() && (text.front() == QLatin1Char('-') || text.front() == QLatin1Char('+'))) {
        sign = text.front() == QLatin1Char('-') ? -1 : 1;
        text = text.mid(1);
    }
    const std::optional<Marks> marks = FindMarks(text);
    if (!marks) {
        return std::nullopt;
    }
    if (quantity == Quantity::FanSpeed && marks->count == 1 && text[0] != QLatin1Char('0')) {
        const int end = static_cast<int>(text.size());
        const double whole = ToDouble(text, end);
        // A mark that gives more than a fan can do was a decimal one.
        if (AreGroups(text, *marks, 1, end) && IsBelievable(quantity, whole)) {
            return sign * whole;
        }
    }
    const std::optional<int> decimalMark = FindDecimalMark(text, *marks);
    return decimalMark ? std::optional<double>(sign * ToDouble(text, *decimalMark)) : std::nullopt;
}

std::optional<double> ValueFromTexts(Quantity quantity, QStringView numberText, QStringView unitText) {
    const Unit* const unit = FindUnit(unitText);
    if (unit == nullptr || unit->quantity != quantity) {
        return std::nullopt;
    }
    const std::optional<double> number = NumberFromText(quantity, numberText.left(UnitBegin(numberText)));
    return number ? std::optional<double>((*number - unit->offset) * unit->factor) : std::nullopt;
}

std::optional<Quantity> QuantityFromText(QStringView text) {
    const Unit* const unit = FindUnit(text);
    return unit == nullptr ? std::nullopt : std::optional<Quantity>(unit->quantity);
}

}  // namespace kivo
