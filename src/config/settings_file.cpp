#include "config/settings_file.h"

#include <QDir>
#include <QtDebug>

#include "config/ascii_ini.h"
#include "config/log_once.h"
#include "config/settings_guard.h"

namespace kivo {
namespace {

bool IsNear(int edge) {
    return edge >= -kFarthestRectEdge && edge <= kFarthestRectEdge;
}

}  // namespace

// Edges first: the width of a rectangle with far edges does not fit an int.
bool IsBelievable(const QRect& rect) {
    const bool edgesAreNear =
        IsNear(rect.left()) && IsNear(rect.top()) && IsNear(rect.right()) && IsNear(rect.bottom());
    return edgesAreNear && rect.width() >= 0 && rect.height() >= 0;
}

SettingsReader::SettingsReader(const QString& filePath) : m_filePath(filePath) {
    const SettingsFileState state = InspectSettingsFile(filePath);
    if (state != SettingsFileState::Usable) {
        WarnOnce(QDir::toNativeSeparators(filePath) + QLatin1Char(' ') + Describe(state));
    }
    if (state == SettingsFileState::Usable || state == SettingsFileState::Damaged) {
        m_settings = std::make_unique<QSettings>(filePath, QSettings::IniFormat);
    }
}

SettingsReader::~SettingsReader() {
    if (m_unusable > 0) {
        WarnOnce(
            QStringLiteral("%1: %2 value(s) of the wrong kind or out of range were not taken, %3 first.")
                .arg(QDir::toNativeSeparators(m_filePath), QString::number(m_unusable), m_firstUnusable));
    }
}

QVariant SettingsReader::Value(const QString& key) const {
    return m_settings ? m_settings->value(key) : QVariant();
}

void SettingsReader::CountUnusable(const QString& key) const {
    if (m_unusable++ == 0) {
        m_firstUnusable = key;
    }
}

bool SettingsReader::Contains(const QString& key) const {
    return m_settings && m_settings->contains(key);
}

bool SettingsReader::HasGroup(const QString& group) const {
    if (m_settings && !m_groups) {
        m_groups = m_settings->childGroups();
    }
    return m_groups && m_groups->contains(group);
}

QStringList SettingsReader::Keys() const {
    return m_settings ? m_settings->allKeys() : QStringList();
}

int SettingsReader::Int(const SettingKey& setting) const {
    return Int(QString(setting.name), setting);
}

int SettingsReader::Int(const QString& key, const SettingKey& setting) const {
    // An invalid value ("@Invalid()") is how an absent one is written down.
    const QVariant value = Value(key);
    if (!value.isValid()) {
        return setting.defaultInt;
    }
    // As the widest integer: toInt lets a number that does not fit wrap around into one that does.
    bool isNumber = false;
    const qlonglong number = value.toLongLong(&isNumber);
    if (!isNumber) {
        CountUnusable(key);
        return setting.notANumber;
    }
    if (number < setting.minimum || number > setting.maximum) {
        CountUnusable(key);
        return setting.defaultInt;
    }
    return static_cast<int>(number);
}

int SettingsReader::Int(const QString& key, int defaultValue) const {
    SettingKey setting{QLatin1String()};
    setting.defaultInt = defaultValue;
    return Int(key, setting);
}

QString SettingsReader::Text(const QString& key, const QString& defaultValue) const {
    const QVariant value = Value(key);
    if (!value.isValid()) {
        return defaultValue;
    }
    // A number that was stored in this run is still one; in the file it is a text. What else there may be has
    // no one right text: a bare comma in a line written by hand makes a list of it.
    const bool isText = value.userType() == QMetaType::QString || value.userType() == QMetaType::Int;
    QString text = value.toString();
    if (!isText || text.size() > kLongestSettingText) {
        CountUnusable(key);
        return defaultValue;
    }
    return text;
}

QRect SettingsReader::Rect(const QString& key, const QRect& defaultValue) const {
    const QVariant value = Value(key);
    if (!value.isValid()) {
        return defaultValue;
    }
    const QRect rect = value.toRect();
    if (value.userType() != QMetaType::QRect || !IsBelievable(rect)) {
        CountUnusable(key);
        return defaultValue;
    }
    return rect;
}

SettingsWriter::SettingsWriter(const QString& filePath) : m_filePath(filePath) {}

SettingsWriter::~SettingsWriter() {
    Commit();
}

void SettingsWriter::SetInt(const QString& key, int value) {
    m_changes.append({key, value});
}

void SettingsWriter::SetOptionalInt(const QString& key, const SettingKey& setting, int value) {
    if (value == setting.defaultInt) {
        Remove(key);
    } else {
        SetInt(key, value);
    }
}

void SettingsWriter::SetText(const QString& key, const QString& value) {
    m_changes.append({key, value});
}

void SettingsWriter::SetRect(const QString& key, const QRect& value) {
    m_changes.append({key, value});
}

void SettingsWriter::Remove(const QString& keyOrGroup) {
    m_changes.append({keyOrGroup, QVariant()});
}

bool SettingsWriter::Commit() {
    if (!m_changes.isEmpty()) {
        m_isOnDisk = Write();
        m_changes.clear();
    }
    return m_isOnDisk;
}

bool SettingsWriter::Write() const {
    // The most that a line takes: each character escaped, and a rectangle's name and numbers.
    constexpr qint64 kEscaped = 6;
    constexpr qint64 kRest = 64;
    qint64 growth = 0;
    for (const Change& change : m_changes) {
        growth += kRest + kEscaped * (change.key.size() + change.value.toString().size());
    }
    if (!PrepareForWriting(m_filePath)) {
        return false;
    }
    bool isWritten = HasRoom(m_filePath, growth);
    if (isWritten) {
        QSettings settings(m_filePath, QSettings::IniFormat);
        for (const Change& change : m_changes) {
            if (change.value.isValid()) {
                settings.setValue(change.key, change.value);
            } else {
                settings.remove(change.key);
            }
        }
        // Written to a file beside it and renamed over it (QSettings::isAtomicSyncRequired).
        settings.sync();
        isWritten = settings.status() != QSettings::AccessError;
    }
    if (!isWritten) {
        WarnOnce(QStringLiteral("%1 cannot be written; settings are not kept.")
                     .arg(QDir::toNativeSeparators(m_filePath)));
    }
    const QString trouble = isWritten ? MakeIniAscii(m_filePath) : QString();
    if (!trouble.isEmpty()) {
        WarnOnce(QStringLiteral("%1 keeps its texts as UTF-8, which only Qt 6 reads: %2")
                     .arg(QDir::toNativeSeparators(m_filePath), trouble));
    }
    return isWritten;
}

int LoadCurRectId() {
    return SettingsReader().Int(keys::kCurRectId);
}

bool SaveCurRectId(int row) {
    SettingsWriter settings;
    settings.SetInt(keys::kCurRectId.name, row);
    return settings.Commit();
}

}  // namespace kivo
