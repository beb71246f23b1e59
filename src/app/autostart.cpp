#include "app/autostart.h"

#include <QList>

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

QString ProgramOfEntry(const QByteArray& entry) {
    QString program;
    bool inGroup = false;
    const QList<QByteArray> lines = entry.split('\n');
    for (const QByteArray& raw : lines) {
        const QString line = QString::fromUtf8(raw).trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inGroup = line == QLatin1String("[Desktop Entry]");
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
