#include "session/autostart.h"

#include <QByteArrayList>
#include <QList>
#include <algorithm>

namespace kivo {

namespace {

// How a text stands in any value of a desktop entry, and back.
QString EscapedValue(QString text) {
    return text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"))
        .replace(QLatin1Char('\r'), QLatin1String("\\r"))
        .replace(QLatin1Char('\t'), QLatin1String("\\t"));
}

QString UnescapedValue(const QString& value) {
    QString text;
    for (int at = 0; at < value.size(); ++at) {
        if (value[at] != QLatin1Char('\\') || at + 1 == value.size()) {
            text.append(value[at]);
            continue;
        }
        ++at;
        switch (value[at].unicode()) {
            case 'n':
                text.append(QLatin1Char('\n'));
                break;
            case 'r':
                text.append(QLatin1Char('\r'));
                break;
            case 't':
                text.append(QLatin1Char('\t'));
                break;
            case 's':
                text.append(QLatin1Char(' '));
                break;
            default:
                text.append(value[at]);
        }
    }
    return text;
}

// How a program's path stands in a command line: quoted, and no field code of its own.
QString QuotedForExec(const QString& program) {
    QString quoted(QLatin1Char('"'));
    for (const QChar letter : program) {
        if (letter == QLatin1Char('%')) {
            quoted.append(letter);
        } else if (QLatin1String("\"`$\\").contains(letter)) {
            quoted.append(QLatin1Char('\\'));
        }
        quoted.append(letter);
    }
    return quoted + QLatin1Char('"');
}

constexpr char kGroup[] = "[Desktop Entry]";

// The key of a line of the entry's own group; empty for what is none.
QByteArray KeyOf(const QByteArray& line) {
    const int equals = line.indexOf('=');
    return equals < 0 || line.trimmed().startsWith('#') ? QByteArray() : line.left(equals).trimmed();
}

}  // namespace

QByteArray AutostartEntry(const QString& program) {
    const QString entry = QStringLiteral(
                              "[Desktop Entry]\n"
                              "Type=Application\n"
                              "Name=Kivo Screen\n"
                              "Icon=kivo-screen\n"
                              "Exec=%1\n"
                              "TryExec=%2\n"  // gone with the program, without a complaint
                              "Terminal=false\n"
                              "X-GNOME-Autostart-enabled=true\n")
                              .arg(EscapedValue(QuotedForExec(program)), EscapedValue(program));
    return entry.toUtf8();
}

QByteArray SwitchedOnEntry(const QByteArray& former, const QString& program) {
    const QByteArrayList lines = former.split('\n');
    const auto isGroup = [](const QByteArray& line) { return line.trimmed().startsWith('['); };
    const auto group = std::find_if(lines.begin(), lines.end(),
                                    [](const QByteArray& line) { return line.trimmed() == kGroup; });
    if (group == lines.end()) {
        return AutostartEntry(program);
    }
    const QByteArray name = EscapedValue(program).toUtf8();
    const QByteArrayList wanted{"Type=Application", "Name=Kivo Screen",
                                "Exec=" + EscapedValue(QuotedForExec(program)).toUtf8(), "TryExec=" + name,
                                "X-GNOME-Autostart-enabled=true"};
    const int first = int(group - lines.begin()) + 1;
    const int end = int(std::find_if(lines.begin() + first, lines.end(), isGroup) - lines.begin());
    QByteArrayList entry = lines.mid(0, first);
    QByteArrayList missing = wanted;
    for (int at = first; at < end; ++at) {
        const QByteArray key = KeyOf(lines[at]);
        const auto hasKey = [&key](const QByteArray& line) { return KeyOf(line) == key; };
        const auto own = std::find_if(wanted.begin(), wanted.end(), hasKey);
        if (own == wanted.end()) {
            if (key != "Hidden") {
                entry.append(lines[at]);
            }
        } else if (missing.removeOne(*own)) {  // of a key that stands twice the first one counts
            // A command may have options of a person's own.
            const bool stays = key == "Name" || (key == "Exec" && lines[at].contains(name));
            entry.append(stays ? lines[at] : *own);
        }
    }
    // Behind the last key, before what parts the groups.
    int place = entry.size();
    while (place > first && entry[place - 1].trimmed().isEmpty()) {
        --place;
    }
    const bool endsInLine = place < entry.size() || end < lines.size();
    entry = entry.mid(0, place) + missing + entry.mid(place) + lines.mid(end);
    return entry.join('\n') + (endsInLine ? "" : "\n");
}

QString ProgramOfEntry(const QByteArray& entry) {
    QString program;
    bool inGroup = false;
    const QList<QByteArray> lines = entry.split('\n');
    for (const QByteArray& raw : lines) {
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inGroup = line == QLatin1String(kGroup);
        }
        const int equals = line.indexOf(QLatin1Char('='));
        if (!inGroup || equals < 0) {
            continue;
        }
        const QString key = line.left(equals).trimmed();
        const QString value = line.mid(equals + 1).trimmed();
        if ((key == QLatin1String("Hidden") && value == QLatin1String("true")) ||
            (key == QLatin1String("X-GNOME-Autostart-enabled") && value == QLatin1String("false"))) {
            return {};
        }
        if (key == QLatin1String("TryExec")) {
            program = UnescapedValue(value);
        }
    }
    return program;
}

QString RunCommand(const QString& program) {
    // A path on Windows holds no quotes.
    return QLatin1Char('"') + QString(program).replace(QLatin1Char('/'), QLatin1Char('\\')) +
           QLatin1Char('"');
}

QString ProgramOfCommand(const QString& command) {
    const int closing = command.indexOf(QLatin1Char('"'), 1);
    return command.startsWith(QLatin1Char('"')) && closing > 0 ? command.mid(1, closing - 1) : QString();
}

}  // namespace kivo
