#include "compose/shared_layout.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "compose/theme_state.h"
#include "config/setting_keys.h"
#include "config/settings_file.h"

namespace kivo {

namespace {

// Stands first in the file: the names are written in the order of their letters, capitals before the others.
constexpr QLatin1String kMagic = keys::Name("Kivo Screen layout");
constexpr int kVersion = 1;
// A file with a further item or theme is none that an earlier program can read: it has to be told so.
static_assert(kLiveValueCount == 9 && kThemeCount == 4, "kVersion grows with the items and the themes");

// Brackets and commas in a file. One of our own has some two hundred, and a free text may have commas.
constexpr int kMostParts = 50000;

constexpr int kLongestPictureNameRead = 256;  // it is cut where it is used

constexpr QLatin1String kShows = keys::Name("shows");
constexpr QLatin1String kTheme = keys::Name("theme");
constexpr QLatin1String kSmallDate = keys::Name("smallDate");
constexpr QLatin1String kOrientation = keys::Name("orientation");
constexpr QLatin1String kHighlight = keys::Name("highlight");
constexpr QLatin1String kTrim = keys::Name("trim");
constexpr QLatin1String kTrimX = keys::Name("x");
constexpr QLatin1String kTrimY = keys::Name("y");
constexpr QLatin1String kTrimNarrower = keys::Name("narrower");
constexpr QLatin1String kTrimLower = keys::Name("lower");
constexpr QLatin1String kDim = keys::Name("dim");
constexpr QLatin1String kBlur = keys::Name("blur");
constexpr QLatin1String kAccentFromPicture = keys::Name("accentFromPicture");
constexpr QLatin1String kItems = keys::Name("items");
constexpr QLatin1String kShown = keys::Name("shown");
constexpr QLatin1String kSelected = keys::Name("selected");
constexpr QLatin1String kTile = keys::Name("tile");
constexpr QLatin1String kTextRect = keys::Name("textRect");
constexpr QLatin1String kSlots = keys::Name("slots");
constexpr QLatin1String kText = keys::Name("text");
constexpr QLatin1String kTextSize = keys::Name("textSize");
constexpr QLatin1String kTextColor = keys::Name("textColor");
constexpr QLatin1String kTextRow = keys::Name("textRow");
constexpr QLatin1String kPicture = keys::Name("picture");
constexpr QLatin1String kBuiltIn = keys::Name("builtIn");
constexpr QLatin1String kName = keys::Name("name");
constexpr QLatin1String kData = keys::Name("data");

// The custom layouts by their variant, then the themes.
constexpr std::array kShowsWords{"five", "one", "theme"};
constexpr std::array kOrientationWords{"landscape", "portrait"};

// Rectangles of a custom layout are read as the settings read them.
Orientation RectOrientation(const ScreenState& state) {
    return state.custom ? Orientation::Landscape : state.orientation;
}

// An item stands where it stands first; a number that is none stands nowhere.
SlotRow SettledSlots(const SlotRow& row) {
    SlotRow settled;
    settled.fill(kEmptySlot);
    for (size_t slot = 0; slot < row.size(); ++slot) {
        const bool isAgain = std::find(settled.begin(), settled.end(), row[slot]) != settled.end();
        settled[slot] = HasLiveValue(row[slot]) && !isAgain ? row[slot] : kEmptySlot;
    }
    return settled;
}

QJsonArray RectValue(const QRect& rect) {
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

QJsonObject ItemValue(const LayoutRecord& layout, size_t item) {
    QJsonObject value{{kShown, layout.shown[item]}, {kSelected, layout.selected[item]}};
    if (layout.tile[item] != QRect()) {
        value.insert(kTile, RectValue(layout.tile[item]));
    }
    if (layout.textRect[item] != QRect()) {
        value.insert(kTextRect, RectValue(layout.textRect[item]));
    }
    return value;
}

QJsonObject PictureValue(const SharedLayout& shared) {
    const int builtIn = int(BuiltInBackgrounds().indexOf(shared.state.layout.picture));
    if (builtIn >= 0) {
        return {{kBuiltIn, builtIn + 1}};
    }
    return {{kName, shared.pictureName}, {kData, QString::fromLatin1(shared.picture.toBase64())}};
}

bool IsText(const QString& text) {
    return !text.contains(QChar(0)) && QString::fromUtf8(text.toUtf8()) == text;
}

// Reads the values of one object; of all that is wrong, what was found first is told.
class Fields {
public:
    Fields(const QJsonObject& object, QString& trouble) : m_object(object), m_trouble(trouble) {}

    bool Has(QLatin1String name) const { return m_object.contains(name); }

    int Number(QLatin1String name, int least, int most, int otherwise) const {
        return Has(name) ? NumberOf(m_object.value(name), name, least, most) : otherwise;
    }
    // In the range of that setting.
    int Number(QLatin1String name, const SettingKey& setting, int otherwise) const {
        return Number(name, setting.minimum, setting.maximum, otherwise);
    }

    bool Flag(QLatin1String name, bool otherwise) const {
        if (!Has(name)) {
            return otherwise;
        }
        if (!m_object.value(name).isBool()) {
            Complain(name, QStringLiteral("is neither true nor false"));
        }
        return m_object.value(name).toBool();
    }

    QString Text(QLatin1String name, int mostLength, const QString& otherwise = QString()) const {
        if (!Has(name)) {
            return otherwise;
        }
        QString text = m_object.value(name).toString();
        if (!m_object.value(name).isString() || text.size() > mostLength || !IsText(text)) {
            Complain(name, QStringLiteral("is no text of %1 characters at most").arg(mostLength));
        }
        return text;
    }

    // The place of the word.
    template <size_t count>
    int Word(QLatin1String name, const std::array<const char*, count>& words, int otherwise) const {
        if (!Has(name)) {
            return otherwise;
        }
        const QString word = m_object.value(name).toString();
        const auto found = std::find_if(words.begin(), words.end(),
                                        [&word](const char* known) { return word == QLatin1String(known); });
        if (found == words.end()) {
            Complain(name, QStringLiteral("is no word that is known"));
            return 0;
        }
        return int(found - words.begin());
    }

    QRect Rect(QLatin1String name) const {
        if (!Has(name)) {
            return {};
        }
        std::array<int, 4> sides{};
        const QJsonArray list = List(name, int(sides.size()));
        for (size_t side = 0; side < sides.size() && int(side) < list.size(); ++side) {
            sides[side] = NumberOf(list.at(int(side)), name, -kFarthestRectEdge, kFarthestRectEdge);
        }
        const QRect rect(sides[0], sides[1], sides[2], sides[3]);
        if (list.size() != int(sides.size()) || !IsBelievable(rect)) {
            Complain(name, QStringLiteral("is no rectangle"));
            return {};
        }
        return rect;
    }

    QJsonObject Object(QLatin1String name) const {
        if (Has(name) && !m_object.value(name).isObject()) {
            Complain(name, QStringLiteral("is no group of values"));
        }
        return m_object.value(name).toObject();
    }

    QJsonArray List(QLatin1String name, int mostLength) const {
        QJsonArray list = m_object.value(name).toArray();
        if (Has(name) && (!m_object.value(name).isArray() || list.size() > mostLength)) {
            Complain(name, QStringLiteral("is no list of %1 at most").arg(mostLength));
            list = QJsonArray();
        }
        return list;
    }

    // What is no whole number in the range gives the least.
    int NumberOf(const QJsonValue& value, QLatin1String name, int least, int most) const {
        const double number = value.toDouble(std::nan(""));
        // A number that is none is in no range.
        if (!(number >= least && number <= most) || number != std::floor(number)) {
            Complain(name, QStringLiteral("is no whole number from %1 to %2").arg(least).arg(most));
            return least;
        }
        return int(number);
    }

    void Complain(QLatin1String name, const QString& what) const {
        if (m_trouble.isEmpty()) {
            m_trouble = QStringLiteral("Its value '%1' %2.").arg(name, what);
        }
    }

private:
    const QJsonObject m_object;
    QString& m_trouble;
};

void ReadItems(const Fields& fields, ScreenState& state, QString& trouble) {
    LayoutRecord& layout = state.layout;
    const QJsonArray items = fields.List(kItems, kLiveValueCount);
    for (int number = 0; number < items.size(); ++number) {
        if (!items.at(number).isObject()) {
            fields.Complain(kItems, QStringLiteral("holds what is no item"));
        }
        const Fields item(items.at(number).toObject(), trouble);
        const auto at = size_t(number);
        layout.shown[at] = item.Flag(kShown, false);
        layout.selected[at] = item.Flag(kSelected, false);
        layout.tile[at] = item.Rect(kTile);
        layout.textRect[at] = item.Rect(kTextRect);
        if (PlaceOnCanvas(layout.textRect[at], QRect(), RectOrientation(state)) != layout.textRect[at]) {
            item.Complain(kTextRect, QStringLiteral("is off the screen"));
        }
    }
}

void ReadSlots(const Fields& fields, ScreenState& state) {
    if (!fields.Has(kSlots)) {
        state.slotItems = FactorySlotTable()[size_t(state.variant)];
        return;
    }
    const QJsonArray row = fields.List(kSlots, kSlotCount);
    for (int slot = 0; slot < row.size(); ++slot) {
        state.slotItems[size_t(slot)] =
            fields.NumberOf(row.at(slot), kSlots, kEmptySlot, kLiveValueCount - 1);
    }
    state.slotItems = SettledSlots(state.slotItems);
}

void ReadLooks(const Fields& fields, LayoutRecord& layout, QString& trouble) {
    const Fields trim(fields.Object(kTrim), trouble);
    layout.xPt = trim.Number(kTrimX, keys::kXPt, 0);
    layout.yPt = trim.Number(kTrimY, keys::kYPt, 0);
    layout.xZoom = trim.Number(kTrimNarrower, keys::kXZoom, 0);
    layout.yZoom = trim.Number(kTrimLower, keys::kYZoom, 0);
    layout.dim = fields.Number(kDim, keys::kDim, 0);
    layout.blur = fields.Number(kBlur, keys::kBlur, 0);
    layout.accentFromPicture = fields.Flag(kAccentFromPicture, false);
    layout.highlight = fields.Number(kHighlight, keys::kHighlight, layout.highlight);
    layout.freeText = fields.Text(kText, kLongestSettingText);
    layout.sizeIndex = fields.Number(kTextSize, keys::kSize, 0);
    layout.colorIndex = fields.Number(kTextColor, keys::kColor, 0);
}

void ReadPicture(const Fields& fields, SharedLayout& shared, QString& trouble) {
    const Fields picture(fields.Object(kPicture), trouble);
    if (!picture.Has(kData)) {
        const QStringList builtIn = BuiltInBackgrounds();
        const int otherwise = int(builtIn.indexOf(DefaultBackground())) + 1;
        shared.state.layout.picture =
            builtIn.at(picture.Number(kBuiltIn, 1, int(builtIn.size()), otherwise) - 1);
        return;
    }
    shared.pictureName = picture.Text(kName, kLongestPictureNameRead);
    const QByteArray text = picture.Text(kData, int(kLargestSharedLayout)).toLatin1();
    const auto decoded = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.isEmpty() || decoded.decoded.size() > kLargestSharedPicture) {
        picture.Complain(kData, QStringLiteral("is no picture"));
        return;
    }
    shared.picture = decoded.decoded;
}

// Whether an object of the text has a name twice, or one in disguise (with a backslash). Nobody could say
// which of two values is meant, and Qt never frees a list or group that gives way to a second one. Looks no
// further than the text is JSON.
bool HasNameTwice(const QByteArray& text) {
    std::vector<QSet<QByteArray>> objects;  // that are open, and lists
    for (int at = 0; at < text.size(); ++at) {
        const char sign = text[at];
        if (sign == '{' || sign == '[') {
            objects.emplace_back();
        } else if (sign == '}' || sign == ']') {
            if (objects.empty()) {
                return false;
            }
            objects.pop_back();
        } else if (sign == '"') {
            const int begin = at + 1;
            for (++at; at < text.size() && text[at] != '"'; ++at) {
                at += text[at] == '\\' ? 1 : 0;
            }
            int next = at + 1;
            while (next < text.size() && QByteArrayLiteral(" \t\r\n").contains(text[next])) {
                ++next;
            }
            if (next < text.size() && text[next] == ':' && !objects.empty()) {
                const QByteArray name = text.mid(begin, at - begin);
                if (name.contains('\\') || objects.back().contains(name)) {
                    return true;
                }
                objects.back().insert(name);
            }
        }
    }
    return false;
}

SharedLayoutReading Refused(SharedLayoutFault fault, const QString& reason) {
    return {std::nullopt, fault, reason};
}

// The factory's, as far as it is shared.
ScreenState FactoryState(const Fields& fields) {
    ScreenState state;
    const int shows = fields.Word(kShows, kShowsWords, 0);
    state.custom = shows < kVariantCount;
    state.orientation = Orientation(fields.Word(kOrientation, kOrientationWords, 0));
    if (state.custom) {
        state.variant = shows;
        state.layout = FactoryCustomLayout(state.variant, state.language);
    } else {
        state.theme = Theme(fields.Number(kTheme, keys::kThemeId, 0));
        state.style = fields.Flag(kSmallDate, false) ? 1 : 0;
        state.layout = FactoryThemeLayout(state.theme, state.orientation, state.language);
    }
    return SharedStateOf(state);
}

}  // namespace

ScreenState SharedStateOf(const ScreenState& state) {
    ScreenState shared;
    shared.custom = state.custom;
    shared.orientation = state.orientation;
    shared.layout = state.layout;
    shared.layout.sample.fill(QString());
    shared.layout.defaultPicture.clear();
    const QString picture = PicturePath(state);
    shared.layout.picture = BuiltInBackgrounds().contains(picture) ? picture : QString();
    if (state.custom) {
        shared.variant = state.variant;
        shared.slotItems = SettledSlots(state.slotItems);
        shared.textRow = state.textRow;
    } else {
        shared.theme = state.theme;
        shared.style = state.style == 1 ? 1 : 0;
    }
    return shared;
}

QByteArray WriteSharedLayout(const SharedLayout& shared) {
    const ScreenState& state = shared.state;
    const LayoutRecord& layout = state.layout;
    QJsonObject file{
        {kMagic, kVersion},
        {kShows, QLatin1String(kShowsWords.at(size_t(state.custom ? state.variant : kVariantCount)))},
        {kOrientation, QLatin1String(kOrientationWords.at(size_t(state.orientation)))},
        {kTrim, QJsonObject{{kTrimX, layout.xPt},
                            {kTrimY, layout.yPt},
                            {kTrimNarrower, layout.xZoom},
                            {kTrimLower, layout.yZoom}}},
        {kDim, layout.dim},
        {kBlur, layout.blur},
        {kAccentFromPicture, layout.accentFromPicture},
        {kHighlight, layout.highlight},
        {kText, layout.freeText},
        {kTextSize, layout.sizeIndex},
        {kTextColor, layout.colorIndex},
        {kPicture, PictureValue(shared)},
    };
    if (state.custom) {
        QJsonArray row;
        for (const int item : state.slotItems) {
            row.append(item);
        }
        file.insert(kSlots, row);
        file.insert(kTextRow, state.textRow);
    } else {
        file.insert(kTheme, int(state.theme));
        file.insert(kSmallDate, state.style == 1);
    }
    QJsonArray items;
    for (size_t item = 0; item < size_t(kLiveValueCount); ++item) {
        items.append(ItemValue(layout, item));
    }
    file.insert(kItems, items);
    return QJsonDocument(file).toJson();
}

SharedLayoutReading ReadSharedLayout(const QByteArray& bytes) {
    if (bytes.size() > kLargestSharedLayout) {
        return Refused(SharedLayoutFault::NoLayout, QStringLiteral("It is too large to be a layout."));
    }
    // Before it is parsed: each part takes many times its own bytes.
    const auto parts =
        std::count_if(bytes.begin(), bytes.end(), [](char c) { return c == ',' || c == '[' || c == '{'; });
    QJsonParseError error{};
    const bool isSane = parts <= kMostParts && !HasNameTwice(bytes);
    const QJsonDocument document = isSane ? QJsonDocument::fromJson(bytes, &error) : QJsonDocument();
    const QJsonObject object = document.object();
    if (!object.contains(kMagic)) {
        return Refused(SharedLayoutFault::NoLayout,
                       error.error == QJsonParseError::NoError
                           ? QStringLiteral("It is no layout.")
                           : QStringLiteral("It is no layout (%1).").arg(error.errorString()));
    }
    QString trouble;
    const Fields fields(object, trouble);
    const int version = fields.NumberOf(object.value(kMagic), kMagic, 1, std::numeric_limits<int>::max());
    if (!trouble.isEmpty()) {
        return Refused(SharedLayoutFault::NoLayout, trouble);
    }
    if (version > kVersion) {
        return Refused(SharedLayoutFault::Newer,
                       QStringLiteral("It was made by a newer version of the program."));
    }
    SharedLayout shared;
    shared.state = FactoryState(fields);
    ReadLooks(fields, shared.state.layout, trouble);
    ReadItems(fields, shared.state, trouble);
    if (shared.state.custom) {
        ReadSlots(fields, shared.state);
        shared.state.textRow = fields.Number(kTextRow, keys::kCurRectId, shared.state.textRow);
    }
    shared.state.layout.picture.clear();
    ReadPicture(fields, shared, trouble);
    if (!trouble.isEmpty()) {
        return Refused(SharedLayoutFault::BadValue, trouble);
    }
    return {shared, SharedLayoutFault::None, QString()};
}

}  // namespace kivo
