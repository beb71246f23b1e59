#include "config/settings_report.h"

#include <QHash>
#include <QRegularExpression>
#include <algorithm>

#include "config/settings_file.h"

namespace kivo {

namespace {

// The table's row of a key; null for one that no version of the program has written.
class Vocabulary {
public:
    Vocabulary() {
        const QList<NamedSetting> settings = AllSettings();
        for (const NamedSetting& setting : settings) {
            m_settings.insert(setting.key, setting.setting);
        }
    }

    const SettingKey* Find(const QString& key) const {
        static const QRegularExpression picture(QStringLiteral("^ImageList/\\d{1,4}$"));
        if (picture.match(key).hasMatch()) {
            return &keys::kImagePath;
        }
        if (IsPictureName(key)) {
            return &keys::kImageName;
        }
        const auto found = m_settings.constFind(key);
        return found == m_settings.constEnd() ? nullptr : &*found;
    }

    static bool IsPictureName(const QString& key) { return key.startsWith(keys::kImageName.name); }

private:
    QHash<QString, SettingKey> m_settings;
};

bool IsPicture(const SettingKey& setting) {
    return setting.name == keys::kImagePath.name || setting.name == keys::kStringPixmap.name ||
           setting.name == keys::kStringPixmapS.name;
}

bool IsPartOfTheProgram(const QString& path) {
    return path.startsWith(QLatin1String(":/"));
}

QString LengthOf(const QString& text) {
    return text.isEmpty() ? QString() : QStringLiteral("<%1 characters>").arg(text.size());
}

class Describer {
public:
    Describer(const SettingsReader& reader, const SettingsReader& factory)
        : m_reader(reader), m_factory(factory) {}

    SettingsSummary Describe() {
        const QStringList keys = m_reader.Keys();
        NumberPictures(keys);
        int alike = 0;
        int unknown = 0;
        for (const QString& key : keys) {
            const SettingKey* const setting = m_vocabulary.Find(key);
            if (setting == nullptr) {
                ++unknown;
            } else if (m_factory.Contains(key) && m_factory.Raw(key) == m_reader.Raw(key)) {
                ++alike;
            } else {
                m_summary.lines.append(ShownKey(key) + QStringLiteral(" = ") + ShownValue(key, *setting));
            }
        }
        m_summary.lines.append(
            QStringLiteral("(%1 as in the factory's settings; %2 that this version does not know)")
                .arg(alike)
                .arg(unknown));
        return std::move(m_summary);
    }

private:
    // The list's first, in its order, so that the numbers are those of the list as far as it goes.
    void NumberPictures(const QStringList& keys) {
        const int count = m_reader.Int(keys::kImageCount);
        for (int i = 0; i < count; ++i) {
            NotePicture(m_reader.Raw(ImageKey(i)).toString());
        }
        for (const QString& key : keys) {
            const SettingKey* const setting = m_vocabulary.Find(key);
            if (setting != nullptr && IsPicture(*setting)) {
                NotePicture(m_reader.Raw(key).toString());
            } else if (Vocabulary::IsPictureName(key)) {
                NotePicture(key.mid(keys::kImageName.name.size()));
            }
        }
    }

    void NotePicture(const QString& path) {
        if (!path.isEmpty() && !IsPartOfTheProgram(path) && NumberOf(path) == 0) {
            m_summary.pictures.append(path);
        }
    }

    // 0 for one that has none yet. In a key a path has lost the slash it begins with.
    int NumberOf(const QString& path) const {
        const auto isSame = [&path](const QString& picture) {
            return picture == path || picture == QLatin1Char('/') + path;
        };
        const auto found = std::find_if(m_summary.pictures.begin(), m_summary.pictures.end(), isSame);
        return found == m_summary.pictures.end() ? 0 : int(found - m_summary.pictures.begin()) + 1;
    }

    QString ShownPicture(const QString& path) const {
        return path.isEmpty() || IsPartOfTheProgram(path) ? path : NumberedPicture(NumberOf(path), path);
    }

    QString ShownKey(const QString& key) const {
        return Vocabulary::IsPictureName(key)
                   ? keys::kImageName.name + ShownPicture(key.mid(keys::kImageName.name.size()))
                   : key;
    }

    QString ShownValue(const QString& key, const SettingKey& setting) const {
        const QVariant value = m_reader.Raw(key);
        if (setting.type == SettingType::Rect && value.userType() == QMetaType::QRect) {
            const QRect rect = value.toRect();
            return QStringLiteral("%1,%2 %3x%4")
                .arg(rect.x())
                .arg(rect.y())
                .arg(rect.width())
                .arg(rect.height());
        }
        bool isNumber = false;
        const qlonglong number = value.toLongLong(&isNumber);
        if (setting.type == SettingType::Int && isNumber) {
            return QString::number(number);
        }
        return IsPicture(setting) ? ShownPicture(value.toString()) : LengthOf(value.toString());
    }

    const SettingsReader& m_reader;
    const SettingsReader& m_factory;
    const Vocabulary m_vocabulary;
    SettingsSummary m_summary;
};

}  // namespace

SettingsSummary DescribeSettings(const QString& file, const QString& factoryFile) {
    const SettingsReader reader(file);
    const SettingsReader factory(factoryFile);
    return Describer(reader, factory).Describe();
}

QString NumberedPicture(int number, const QString& path) {
    static const QRegularExpression ending(QStringLiteral("\\.[A-Za-z0-9]{1,5}$"));
    const QString shown =
        number > 0 ? QStringLiteral("<picture %1>").arg(number) : QStringLiteral("<picture>");
    return shown + ending.match(path).captured().toLower();
}

}  // namespace kivo
