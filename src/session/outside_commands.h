#pragma once

// What the running copy can be told by a second start: one table of options, from which the command line's
// parser and help, the message between the two copies and the doing are derived. Pure; any thread.

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>
#include <array>
#include <optional>

namespace kivo {

// In the order in which they are carried out: what is to be changed comes into force first.
enum class OutsideKind { Theme, Layout, Orientation, Picture, Text, Apply, Blank, Show };
constexpr int kOutsideKindCount = 8;

// Whether its value is a file's name, which has to be an absolute one between the two copies.
constexpr bool NamesFile(OutsideKind kind) {
    return kind == OutsideKind::Picture || kind == OutsideKind::Apply;
}

struct OutsideOption {
    OutsideKind kind;
    const char* name;       // without dashes
    const char* valueName;  // for the help text; null: it has no value
    // The values there are, between bars; null: see what. What a command means is the place of its word.
    const char* words;
    const char* help;
};

const std::array<OutsideOption, kOutsideKindCount>& OutsideOptions();
const OutsideOption& OutsideOptionOf(OutsideKind kind);

// One for each kind that was asked for; null: it was not. The value of a kind without one is empty.
using OutsideCommands = std::array<std::optional<QString>, kOutsideKindCount>;

inline const std::optional<QString>& ValueOf(const OutsideCommands& commands, OutsideKind kind) {
    return commands[size_t(kind)];
}
bool IsAnyAsked(const OutsideCommands& commands);
// Whether that was asked for, and nothing else.
bool IsAskedAlone(const OutsideCommands& commands, OutsideKind kind);
// Place of the value among its option's words; none where the kind was not asked for.
std::optional<int> WordOf(const OutsideCommands& commands, OutsideKind kind);

// The longest free text that can be typed in the window.
constexpr int kLongestOutsideText = 40;

// What is wrong with them, as one sentence; empty where nothing is. Files are named by an absolute path;
// whether they are there is not looked at.
QString TroubleOf(const OutsideCommands& commands);

// --- The message. "KIVO", its version (1), its length in three bytes, low byte first, and that many bytes of
// UTF-8: for each command name and value, each closed by a zero byte. The answer has the same head, and a
// status byte with a line for people. ---

constexpr int kOutsideHeadBytes = 8;
constexpr int kLongestOutsideBody = 16 * 1024;

QByteArray OutsideRequest(const OutsideCommands& commands);
// Nothing for a body that no copy of this version sends.
std::optional<OutsideCommands> ReadOutsideRequest(const QByteArray& body);

struct OutsideAnswer {
    bool isTaken = false;
    QString line;  // why not, as one sentence
};
QByteArray OutsideAnswerMessage(const OutsideAnswer& answer);
std::optional<OutsideAnswer> ReadOutsideAnswer(const QByteArray& body);

// What has arrived of a message so far.
struct OutsideMessage {
    enum class State { Partial, Whole, Garbage } state = State::Partial;
    QByteArray body;  // Whole: without head
};
// Garbage as soon as it can be seen, also where more follows than the head says.
OutsideMessage LookAtOutsideMessage(const QByteArray& bytes);

}  // namespace kivo
