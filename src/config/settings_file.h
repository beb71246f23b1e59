#pragma once

#include <QRect>
#include <QSettings>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>
#include <optional>

#include "config/folders.h"
#include "config/setting_keys.h"

namespace kivo {

// Config.ini is opened afresh for every access, so that what one part of the program writes is what the next
// one reads. Main thread only, one reader or writer at a time; keep them short-lived.
//
// Files that are not what they should be: lines that cannot be read are skipped; a file that is no text at
// all, is larger than kLargestSettingsFile, is a folder or may not be read gives the defaults. One log line
// tells, once.

inline constexpr qint64 kLargestSettingsFile = qint64{1024} * 1024;
inline constexpr int kLongestSettingText = 32767;  // Characters; the longest path Windows knows.
inline constexpr int kFarthestRectEdge = 65535;    // Any edge further from 0 is noise.

// Whether a rectangle has near edges and no negative size.
bool IsBelievable(const QRect& rect);

// A short run of reads. Values that cannot be used are read as their row in setting_keys.h says, and one log
// line counts them.
class SettingsReader {
public:
    explicit SettingsReader(const QString& filePath = ConfigFilePath());
    ~SettingsReader();
    Q_DISABLE_COPY(SettingsReader)

    bool Contains(const QString& key) const;
    // True when at least one key stands under this group ("H1").
    bool HasGroup(const QString& group) const;
    // Every key of the file, and a key's value as the file has it (invalid where it has none): for a report.
    QStringList Keys() const;
    QVariant Raw(const QString& key) const { return Value(key); }

    // By the table: absent or out of range gives setting.defaultInt, no whole number setting.notANumber.
    int Int(const SettingKey& setting) const;  // For full keys ("Config/Mode").
    int Int(const QString& key,
            const SettingKey& setting) const;  // For keys of a family, see setting_keys.h.
    // Any integer; no whole number gives 0, as Qt converts it, one that does not fit gives the default.
    int Int(const QString& key, int defaultValue = 0) const;
    // A text beyond kLongestSettingText gives the default.
    QString Text(const QString& key, const QString& defaultValue = QString()) const;
    // What is no rectangle, has a negative size or an edge beyond kFarthestRectEdge gives the default.
    QRect Rect(const QString& key, const QRect& defaultValue = QRect()) const;

private:
    QVariant Value(const QString& key) const;
    void CountUnusable(const QString& key) const;

    QString m_filePath;
    std::unique_ptr<QSettings> m_settings;        // Null where the file cannot be used at all.
    mutable std::optional<QStringList> m_groups;  // From the first question on: Qt goes through all keys.
    mutable int m_unusable = 0;
    mutable QString m_firstUnusable;
};

// A short run of writes, put on disk as a whole by Commit or the destructor: a crash or a full disk leaves
// the old file or the new one, never a half. A file that is broken is kept beside it ("Config.ini.broken")
// before the first write over it; one that may not be read is left alone.
class SettingsWriter {
public:
    explicit SettingsWriter(const QString& filePath = ConfigFilePath());
    ~SettingsWriter();
    Q_DISABLE_COPY(SettingsWriter)

    void SetInt(const QString& key, int value);
    // Of an optional key, which is taken out where the value is its default.
    void SetOptionalInt(const QString& key, const SettingKey& setting, int value);
    void SetText(const QString& key, const QString& value);
    void SetRect(const QString& key, const QRect& value);
    void Remove(const QString& keyOrGroup);

    // True when everything set so far is on disk. A failure is logged once. Values that could not be stored
    // may hold for this run all the same: where the disk had room for them, QSettings remembers them and
    // stores them with a later access that can.
    bool Commit();

private:
    struct Change {
        QString key;
        QVariant value;  // Invalid: the key goes, or the group.
    };
    bool Write() const;

    QString m_filePath;
    QVector<Change> m_changes;  // Since the last Commit.
    bool m_isOnDisk = true;     // What that one wrote.
};

// The row (0 to 2) of the free text. Saving tells whether it reached the file.
int LoadCurRectId();
bool SaveCurRectId(int row);

}  // namespace kivo
