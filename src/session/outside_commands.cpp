#include "session/outside_commands.h"

#include <QDir>
#include <algorithm>

#include "model/theme_table.h"
#include "pictures/picture_path.h"

namespace kivo {

namespace {

constexpr char kHead[] = {'K', 'I', 'V', 'O', 1};
constexpr int kMarkBytes = int(sizeof kHead);
constexpr char kTaken = 1;
constexpr char kNotTaken = 0;

static_assert(kThemeCount == 4, "the values of --theme, the man page and README.md name them");
constexpr std::array<OutsideOption, kOutsideKindCount> kOptions{{
    {OutsideKind::Theme, "theme", "0..3", "0|1|2|3", "Show a theme."},
    {OutsideKind::Layout, "layout", "five|one", "five|one", "Show the layout of five items or of one."},
    {OutsideKind::Orientation, "orientation", "landscape|portrait", "landscape|portrait",
     "Turn what the screen shows."},
    {OutsideKind::Picture, "picture", "file", nullptr, "Put a picture behind the theme or layout."},
    {OutsideKind::Text, "text", "text", nullptr, "Set the layout's free text; an empty one takes it away."},
    {OutsideKind::Apply, "apply", "file", nullptr, "Show the layout that somebody has exported as a file."},
    {OutsideKind::Blank, "blank", "on|off", "on|off",
     "Show nothing on the screen, or again what it is to show."},
    {OutsideKind::Show, "show", nullptr, nullptr, "Bring the window to the front."},
}};

constexpr bool IsInOrder() {
    for (size_t at = 0; at < kOptions.size(); ++at) {
        if (size_t(kOptions[at].kind) != at) {
            return false;
        }
    }
    return true;
}
static_assert(IsInOrder(), "A command is found by its kind.");

QStringList WordsOf(const OutsideOption& option) {
    return QString::fromLatin1(option.words).split(QLatin1Char('|'));
}

QByteArray Message(const QByteArray& body) {
    QByteArray message(kHead, kMarkBytes);
    for (int shift = 0; shift < 24; shift += 8) {
        message.append(char(body.size() >> shift & 0xFF));
    }
    return message + body;
}

QString TroubleOf(const OutsideOption& option, const QString& value) {
    const QString name = QLatin1String(option.name);
    if (option.words != nullptr && !WordsOf(option).contains(value)) {
        return QStringLiteral("Option '--%1' needs %2, not '%3'.")
            .arg(name, QString::fromLatin1(option.words).replace(QLatin1Char('|'), QStringLiteral(", ")),
                 value);
    }
    if (option.valueName == nullptr && !value.isEmpty()) {
        return QStringLiteral("Option '--%1' has no value.").arg(name);
    }
    if (value.contains(QChar(0)) || QString::fromUtf8(value.toUtf8()) != value) {
        return QStringLiteral("Option '--%1' holds what is no text.").arg(name);
    }
    if (NamesFile(option.kind) && (!QDir::isAbsolutePath(value) || IsResource(value))) {
        return QStringLiteral("Option '--%1' needs a file name.").arg(name);
    }
    if (option.kind == OutsideKind::Text && value.size() > kLongestOutsideText) {
        return QStringLiteral("Option '--%1' needs a text of %2 characters at most.")
            .arg(name)
            .arg(kLongestOutsideText);
    }
    return QString();
}

}  // namespace

const std::array<OutsideOption, kOutsideKindCount>& OutsideOptions() {
    return kOptions;
}

const OutsideOption& OutsideOptionOf(OutsideKind kind) {
    return kOptions[size_t(kind)];
}

bool IsAnyAsked(const OutsideCommands& commands) {
    return std::any_of(commands.begin(), commands.end(), [](const auto& value) { return value.has_value(); });
}

bool IsAskedAlone(const OutsideCommands& commands, OutsideKind kind) {
    const auto asked =
        std::count_if(commands.begin(), commands.end(), [](const auto& value) { return value.has_value(); });
    return asked == 1 && ValueOf(commands, kind).has_value();
}

std::optional<int> WordOf(const OutsideCommands& commands, OutsideKind kind) {
    const std::optional<QString>& value = ValueOf(commands, kind);
    if (!value) {
        return std::nullopt;
    }
    return WordsOf(OutsideOptionOf(kind)).indexOf(*value);
}

QString TroubleOf(const OutsideCommands& commands) {
    if (ValueOf(commands, OutsideKind::Theme) && ValueOf(commands, OutsideKind::Layout)) {
        return QStringLiteral("Options '--theme' and '--layout' do not go together.");
    }
    if (ValueOf(commands, OutsideKind::Theme) && ValueOf(commands, OutsideKind::Text)) {
        return QStringLiteral("Options '--theme' and '--text' do not go together: a theme has no free text.");
    }
    if (ValueOf(commands, OutsideKind::Apply)) {
        // A file says all of that itself.
        for (const OutsideKind other : {OutsideKind::Theme, OutsideKind::Layout, OutsideKind::Orientation,
                                        OutsideKind::Picture, OutsideKind::Text}) {
            if (ValueOf(commands, other)) {
                return QStringLiteral("Options '--apply' and '--%1' do not go together.")
                    .arg(QLatin1String(OutsideOptionOf(other).name));
            }
        }
    }
    for (const OutsideOption& option : kOptions) {
        const std::optional<QString>& value = ValueOf(commands, option.kind);
        QString trouble = value ? TroubleOf(option, *value) : QString();
        if (!trouble.isEmpty()) {
            return trouble;
        }
    }
    if (OutsideRequest(commands).size() > kOutsideHeadBytes + kLongestOutsideBody) {
        return QStringLiteral("The values are too long.");
    }
    return QString();
}

QByteArray OutsideRequest(const OutsideCommands& commands) {
    QByteArray body;
    for (const OutsideOption& option : kOptions) {
        if (const std::optional<QString>& value = ValueOf(commands, option.kind)) {
            body += option.name;
            body += '\0';
            body += value->toUtf8();
            body += '\0';
        }
    }
    return Message(body);
}

std::optional<OutsideCommands> ReadOutsideRequest(const QByteArray& body) {
    QList<QByteArray> parts = body.split('\0');
    // A zero byte closes each part, so behind the last one there is nothing.
    if (!parts.takeLast().isEmpty() || parts.isEmpty() || parts.size() % 2 != 0) {
        return std::nullopt;
    }
    OutsideCommands commands;
    for (int at = 0; at < parts.size(); at += 2) {
        const auto* const option =
            std::find_if(kOptions.begin(), kOptions.end(),
                         [&](const OutsideOption& known) { return parts[at] == known.name; });
        if (option == kOptions.end() || ValueOf(commands, option->kind)) {
            return std::nullopt;
        }
        commands[size_t(option->kind)] = QString::fromUtf8(parts[at + 1]);
    }
    return TroubleOf(commands).isEmpty() ? std::optional(commands) : std::nullopt;
}

QByteArray OutsideAnswerMessage(const OutsideAnswer& answer) {
    return Message(QByteArray(1, answer.isTaken ? kTaken : kNotTaken) + answer.line.toUtf8());
}

std::optional<OutsideAnswer> ReadOutsideAnswer(const QByteArray& body) {
    if (body.isEmpty() || (body[0] != kTaken && body[0] != kNotTaken)) {
        return std::nullopt;
    }
    return OutsideAnswer{body[0] == kTaken, QString::fromUtf8(body.mid(1)).simplified()};
}

OutsideMessage LookAtOutsideMessage(const QByteArray& bytes) {
    const int known = qMin(bytes.size(), kMarkBytes);
    if (!std::equal(bytes.begin(), bytes.begin() + known, kHead)) {
        return {OutsideMessage::State::Garbage, {}};
    }
    if (bytes.size() < kOutsideHeadBytes) {
        return {};
    }
    int length = 0;
    for (int byte = 0; byte < kOutsideHeadBytes - kMarkBytes; ++byte) {
        length |= int(quint8(bytes[kMarkBytes + byte])) << 8 * byte;
    }
    if (length > kLongestOutsideBody || bytes.size() > kOutsideHeadBytes + length) {
        return {OutsideMessage::State::Garbage, {}};
    }
    if (bytes.size() < kOutsideHeadBytes + length) {
        return {};
    }
    return {OutsideMessage::State::Whole, bytes.mid(kOutsideHeadBytes)};
}

}  // namespace kivo
