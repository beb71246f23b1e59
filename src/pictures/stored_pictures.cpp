#include "pictures/stored_pictures.h"

#include "config/setting_keys.h"
#include "config/settings_file.h"

namespace kivo {

namespace {

// What the list may take of a settings file; the rest of it needs some twenty kilobytes.
constexpr qint64 kMostStoredBytes = kLargestSettingsFile / 4 * 3;

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

// A line of the file; what is not plain is written as "\x4e2d".
qint64 StoredBytes(const QString& path) {
    constexpr qint64 kKeyAndQuotes = 12;
    constexpr qint64 kEscaped = 6;
    qint64 bytes = kKeyAndQuotes;
    for (const QChar character : path) {
        const bool isPlain = character.unicode() >= 0x20 && character.unicode() < 0x7F &&
                             character != QLatin1Char('\\') && character != QLatin1Char('"');
        bytes += isPlain ? 1 : kEscaped;
    }
    return bytes;
}

}  // namespace

QStringList ReadStoredPictures(const QString& settingsFile) {
    const SettingsReader reader(settingsFile);
    const int count = CountToRead(reader);
    QStringList paths;
    for (int n = 0; n < count; ++n) {
        const QString path = reader.Text(ImageKey(n));
        if (!path.isEmpty()) {
            paths.append(path);
        }
    }
    return paths;
}

bool WriteStoredPictures(const QStringList& paths, const QString& settingsFile) {
    SettingsWriter writer(settingsFile);
    // The whole group at first: the numbers beyond the new count would come back with a damaged count.
    writer.Remove(QString(keys::kImagePath.name).chopped(1));
    writer.SetInt(QString(keys::kImageCount.name), paths.size());
    for (int n = 0; n < paths.size(); ++n) {
        writer.SetText(ImageKey(n), paths.at(n));
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

}  // namespace kivo
