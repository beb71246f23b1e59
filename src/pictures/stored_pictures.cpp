#include "pictures/stored_pictures.h"

#include <cctype>

#include "config/setting_keys.h"
#include "config/settings_file.h"
#include "config/stored_path.h"
#include "pictures/picture_name.h"
#include "pictures/picture_path.h"

namespace kivo {

namespace {

// What the list and the names may take of a settings file; the rest of it needs some twenty kilobytes.
constexpr qint64 kMostStoredBytes = kLargestSettingsFile / 4 * 3;
constexpr qint64 kMostNameBytes = kLargestSettingsFile / 16 * 3;

// How many paths to look for: none where there is no count, as many as there may be where it is noise.
int CountToRead(const SettingsReader& reader) {
    const QString key(keys::kImageCount.name);
    if (!reader.Contains(key)) {
        return 0;
    }
    constexpr int kNoise = -1;
    SettingKey setting = keys::kImageCount;
    setting.defaultInt = kNoise;
    setting.notANumber = kNoise;
    const int count = reader.Int(key, setting);
    return count == kNoise ? setting.maximum : count;
}

// The group of a family's keys.
QString GroupOf(const SettingKey& family) {
    return QString(family.name).chopped(1);
}

// The most that a line of the file takes: what is not plain is written as "\x4e2d", and so is a hexadecimal
// digit behind it, which would be read as a part of it.
qint64 StoredBytes(const QString& path) {
    constexpr qint64 kKeyAndQuotes = 12;
    constexpr qint64 kEscaped = 6;
    qint64 bytes = kKeyAndQuotes;
    bool isPlain = true;
    for (const QChar character : path) {
        const ushort code = character.unicode();
        isPlain = code >= 0x20 && code < 0x7F && code != '\\' && code != '"' &&
                  (isPlain || std::isxdigit(code) == 0);
        bytes += isPlain ? 1 : kEscaped;
    }
    return bytes;
}

// The most that a line with a name takes: in a key "%U4E2D", in a text "\x4e2d".
qint64 NameBytes(const QString& path, const QString& name) {
    constexpr qint64 kSignAndQuotes = 4;
    constexpr qint64 kEscaped = 6;
    qint64 bytes = kSignAndQuotes + kEscaped * name.size();
    for (const QChar character : path) {
        const bool isPlain =
            character == QLatin1Char('/') || (character.unicode() < 0x7F && character.isLetterOrNumber());
        bytes += isPlain ? 1 : kEscaped;
    }
    return bytes;
}

// The list as the file has it.
QStringList StoredTexts(const SettingsReader& reader) {
    const int count = CountToRead(reader);
    QStringList texts;
    for (int n = 0; n < count; ++n) {
        const QString text = reader.Text(ImageKey(n));
        if (!text.isEmpty()) {
            texts.append(text);
        }
    }
    return texts;
}

QString NameKeyOf(const QString& path) {
    return ImageNameKey(CleanPicturePath(PathToStore(path)));
}

}  // namespace

QStringList ReadStoredPictures(const QString& settingsFile) {
    QStringList paths = StoredTexts(SettingsReader(settingsFile));
    for (QString& path : paths) {
        path = PathFromStore(path);
    }
    return paths;
}

PictureNames ReadPictureNames(const QStringList& paths, const QString& settingsFile) {
    const SettingsReader reader(settingsFile);
    PictureNames names;
    if (!reader.HasGroup(GroupOf(keys::kImageName))) {
        return names;
    }
    // A name stands under its path as the list has it, which may not be how it would be stored now.
    QHash<QString, QString> keysOfPaths;
    const QStringList stored = StoredTexts(reader);
    for (const QString& text : stored) {
        keysOfPaths.insert(CleanPicturePath(PathFromStore(text)), ImageNameKey(CleanPicturePath(text)));
    }
    for (const QString& path : paths) {
        const QString clean = CleanPicturePath(path);
        const QString name = CleanPictureName(reader.Text(keysOfPaths.value(clean, NameKeyOf(path))));
        if (!name.isEmpty()) {
            names.insert(clean, name);
        }
    }
    return names;
}

bool WriteStoredPictures(const QStringList& paths, const PictureNames& names, const QString& settingsFile) {
    SettingsWriter writer(settingsFile);
    // The whole groups at first: the numbers beyond the new count would come back with a damaged count, a
    // name with a picture that is added again.
    writer.Remove(GroupOf(keys::kImagePath));
    writer.Remove(GroupOf(keys::kImageName));
    writer.SetInt(QString(keys::kImageCount.name), paths.size());
    for (int n = 0; n < paths.size(); ++n) {
        writer.SetText(ImageKey(n), PathToStore(paths.at(n)));
    }
    for (const QString& path : paths) {
        const QString clean = CleanPicturePath(path);
        const auto name = names.constFind(clean);
        if (name != names.constEnd()) {
            writer.SetText(NameKeyOf(path), *name);
        }
    }
    return writer.Commit();
}

bool CanBeStored(const QStringList& paths) {
    qint64 bytes = 0;
    for (const QString& path : paths) {
        bytes += StoredBytes(path);
    }
    return paths.size() <= keys::kImageCount.maximum && bytes <= kMostStoredBytes;
}

bool CanNamesBeStored(const PictureNames& names) {
    qint64 bytes = 0;
    for (auto name = names.constBegin(); name != names.constEnd(); ++name) {
        bytes += NameBytes(name.key(), *name);
    }
    return bytes <= kMostNameBytes;
}

}  // namespace kivo
