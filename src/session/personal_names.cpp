#include "session/personal_names.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSysInfo>
#include <QUrl>
#include <algorithm>

#include "config/settings_report.h"

namespace kivo {

namespace {

// Stand for a name until all are found, or a user called "user" would be found in "<user>".
const QChar kUser(0xE000);
const QChar kHost(0xE001);

constexpr auto kAnyCase =
    QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption;
// Names that say nothing of anybody.
const QStringList& NobodysNames() {
    static const QStringList names{QStringLiteral("root"),      QStringLiteral("nobody"),
                                   QStringLiteral("localhost"), QStringLiteral("debian"),
                                   QStringLiteral("ubuntu"),    QStringLiteral("fedora")};
    return names;
}

// A pattern for the text, as it is or as part of an address.
QString PatternOf(const QString& text) {
    const QString composed = text.normalized(QString::NormalizationForm_C);
    QStringList forms{composed};
    for (const QString& form : {text, composed, text.normalized(QString::NormalizationForm_D)}) {
        forms.append(QString::fromLatin1(QUrl::toPercentEncoding(form, "/\\:")));
    }
    forms.removeDuplicates();
    for (QString& form : forms) {
        form = QRegularExpression::escape(form);
    }
    return QStringLiteral("(?:%1)").arg(forms.join(QLatin1Char('|')));
}

// The same for a path, with either slash, once or several times, between its parts.
QString PathPattern(const QString& path) {
    static const QString slash = QStringLiteral("[\\\\/]+");
    QString clean = QDir::fromNativeSeparators(path);
    clean.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const QStringList parts = clean.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QStringList patterns;
    for (const QString& part : parts) {
        patterns.append(PatternOf(part));
    }
    return (clean.startsWith(QLatin1Char('/')) ? slash : QString()) + patterns.join(slash);
}

QStringList LongestFirst(QStringList texts) {
    texts.removeAll(QString());
    texts.removeDuplicates();
    std::stable_sort(texts.begin(), texts.end(),
                     [](const QString& a, const QString& b) { return a.size() > b.size(); });
    return texts;
}

void Replace(QString& text, const QString& pattern, const QString& by) {
    text.replace(QRegularExpression(pattern, kAnyCase), by);
}

// Where no letter or digit goes on before or after it.
QString AsWord(const QString& pattern) {
    return QStringLiteral("(?<![\\p{L}\\p{N}])%1(?![\\p{L}\\p{N}\\p{M}])").arg(pattern);
}

// One that anybody's file may have is left alone: it would turn up in every line.
bool IsTelling(const QString& fileName) {
    return QFileInfo(fileName).completeBaseName().size() > 1;
}

void ReplacePictures(QString& text, const QStringList& pictures) {
    const QStringList paths = LongestFirst(pictures);
    for (const QString& path : paths) {
        Replace(text, PathPattern(path), NumberedPicture(pictures.indexOf(path) + 1, path));
    }
    for (const QString& path : paths) {
        const QString name = QFileInfo(QDir::fromNativeSeparators(path)).fileName();
        if (IsTelling(name)) {
            Replace(text, AsWord(PatternOf(name)), NumberedPicture(pictures.indexOf(path) + 1, path));
        }
    }
    // Others, that were chosen and taken out again. The program's own stay, and those that are part of it.
    static const QRegularExpression path(
        QStringLiteral("(?:(?<=file:)|(?<![:<\\w\\\\/]))(?:~|[a-z]:)?[\\\\/"
                       "][^\\n\"<>|]*?(\\.(?:png|jpe?g|jfif|bmp|gif|webp|ico|tiff?|heic|heif|avif|jxl|svgz?|"
                       "tga|xpm|p[bgp]m|kivolayout))\\b"),
        kAnyCase);
    int from = 0;
    while (true) {
        const QRegularExpressionMatch match = path.match(text, from);
        if (!match.hasMatch()) {
            return;
        }
        const QString found = match.captured();
        if (found.contains(QLatin1String("Kivo Tool"))) {
            from = match.capturedEnd();
            continue;
        }
        const QString replaced = NumberedPicture(0, match.captured(1));
        text.replace(match.capturedStart(), found.size(), replaced);
        from = match.capturedStart() + replaced.size();
    }
}

}  // namespace

PersonalNames NamesOfThisUser() {
    PersonalNames names;
    const QString home = QDir::homePath();
    names.homes = QStringList{home, QFileInfo(home).canonicalFilePath(), qEnvironmentVariable("HOME"),
                              qEnvironmentVariable("USERPROFILE")};
    for (const char* variable : {"USER", "LOGNAME", "USERNAME", "SUDO_USER"}) {
        names.users.append(qEnvironmentVariable(variable));
    }
    names.users.append(QFileInfo(home).owner());
    static const QRegularExpression homes(QStringLiteral("[\\\\/](?:home|users)[\\\\/]([^\\\\/]+)$"),
                                          kAnyCase);
    names.users.append(homes.match(home).captured(1));
    names.hosts = QStringList{QSysInfo::machineHostName(), qEnvironmentVariable("HOSTNAME"),
                              qEnvironmentVariable("COMPUTERNAME")};
    return names;
}

QString WithoutPersonalNames(const QString& text, const PersonalNames& names) {
    // Accents may be letters of their own, as some file systems have them, or parts of others.
    QString result = text.normalized(QString::NormalizationForm_C);
    ReplacePictures(result, names.pictures);
    const QStringList homes = LongestFirst(names.homes);
    for (const QString& home : homes) {
        // "/" is the home of users without one.
        if (QDir::fromNativeSeparators(home).count(QLatin1Char('/')) < home.size()) {
            Replace(result, PathPattern(home) + QStringLiteral("(?![\\p{L}\\p{N}\\p{M}_])"),
                    QStringLiteral("~"));
        }
    }
    Replace(result,
            QStringLiteral("((?:[\\\\/]home|[\\\\/]media|[a-z]:[\\\\/]+users)[\\\\/]+)[^\\\\/\\n\"'<>|:]+"),
            QStringLiteral("\\1") + kUser);
    const auto replaceWords = [&result](const QStringList& words, QChar by) {
        const QStringList ordered = LongestFirst(words);
        for (const QString& word : ordered) {
            if (!NobodysNames().contains(word, Qt::CaseInsensitive)) {
                Replace(result, AsWord(PatternOf(word)), by);
            }
        }
    };
    replaceWords(names.users, kUser);
    replaceWords(names.hosts, kHost);
    return result.replace(kUser, QLatin1String("<user>")).replace(kHost, QLatin1String("<host>"));
}

}  // namespace kivo
