#include "main/toolkit_options.h"

#include <algorithm>
#include <array>

namespace kivo {

namespace {

struct ToolkitOption {
    const char* name;
    const char* value;  // null: it has none
    const char* help;
    bool joinsValue;  // "-name=value" is understood too
};

constexpr std::array kToolkitOptions{
    ToolkitOption{"display", "display", "The X11 display to use.", false},
    ToolkitOption{"geometry", "geometry", "Size and place of the first window.", false},
    ToolkitOption{"icon", "file", "The icon of the windows.", false},
    ToolkitOption{"name", "name", "The name by which a window manager knows the program.", false},
    ToolkitOption{"platform", "platform", "Qt's platform.", false},
    ToolkitOption{"platformpluginpath", "path", "The folder of Qt's platforms.", false},
    ToolkitOption{"platformtheme", "theme", "Qt's platform theme.", false},
    ToolkitOption{"plugin", "plugin", "A further plugin of Qt's.", false},
    ToolkitOption{"qwindowgeometry", "geometry", "Size and place of the first window.", false},
    ToolkitOption{"qwindowicon", "file", "The icon of the windows.", false},
    ToolkitOption{"qwindowtitle", "title", "The title of the first window.", false},
    ToolkitOption{"reverse", nullptr, "Lays windows out from right to left.", false},
    ToolkitOption{"session", "session", "The session that is restored.", false},
    ToolkitOption{"style", "style", "Qt's style.", true},
    ToolkitOption{"stylesheet", "file", "Qt's style sheet.", true},
    ToolkitOption{"title", "title", "The title of the first window.", false},
    ToolkitOption{"widgetcount", nullptr, "Counts the widgets that are left at the end.", false},
};

// As Qt reads them: with one dash or two.
QString NameOf(const QString& argument) {
    if (argument.startsWith(QLatin1String("--"))) {
        return argument.mid(2);
    }
    return argument.startsWith(QLatin1Char('-')) ? argument.mid(1) : QString();
}

const ToolkitOption* OptionOf(const QString& name) {
    const auto* const found =
        std::find_if(kToolkitOptions.begin(), kToolkitOptions.end(),
                     [&name](const ToolkitOption& option) { return name == QLatin1String(option.name); });
    return found != kToolkitOptions.end() ? found : nullptr;
}

bool IsJoined(const QString& name) {
    const int equals = name.indexOf(QLatin1Char('='));
    const ToolkitOption* const option = equals > 0 ? OptionOf(name.left(equals)) : nullptr;
    return option != nullptr && option->joinsValue;
}

}  // namespace

ToolkitOptions TakeToolkitOptions(const QStringList& arguments, const QStringList& withValue) {
    ToolkitOptions taken;
    taken.others = arguments.mid(0, 1);
    for (int at = 1; at < arguments.size(); ++at) {
        const QString& argument = arguments[at];
        if (argument == QLatin1String("--")) {
            taken.others += arguments.mid(at);
            break;
        }
        const QString name = NameOf(argument);
        if (argument.startsWith(QLatin1String("--")) && withValue.contains(name)) {
            taken.others += arguments.mid(at, 2);
            ++at;
            continue;
        }
        const ToolkitOption* const option = OptionOf(name);
        if (option == nullptr) {
            (IsJoined(name) ? taken.taken : taken.others).append(argument);
            continue;
        }
        taken.taken.append(argument);
        if (option->value == nullptr) {
            continue;
        }
        ++at;
        if (at == arguments.size()) {
            taken.trouble = QStringLiteral("Option '%1' needs a value.").arg(argument);
            break;
        }
        taken.taken.append(arguments[at]);
        if (name == QLatin1String("platform")) {
            taken.platform = arguments[at];
        }
    }
    return taken;
}

QString ToolkitOptionsHelp() {
    constexpr int kHelpColumn = 34;
    QString help;
    for (const ToolkitOption& option : kToolkitOptions) {
        QString usage = QStringLiteral("  -%1").arg(QLatin1String(option.name));
        if (option.value != nullptr) {
            usage += QStringLiteral(" <%1>").arg(QLatin1String(option.value));
        }
        help += usage.leftJustified(kHelpColumn) + QLatin1String(option.help) + QLatin1Char('\n');
    }
    return help;
}

}  // namespace kivo
