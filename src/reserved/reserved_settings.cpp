#include "reserved/reserved_settings.h"

#include <QSettings>
#include <QUuid>

#include "config/settings_file.h"

namespace kivo {

int LoadLangId() {
    return SettingsReader().Int(keys::kLangId);
}

void SaveLangId(int language) {
    SettingsWriter().SetInt(keys::kLangId.name, language);
}

void CreateUuid() {
    SettingsWriter().SetText(keys::kUuid.name, QUuid::createUuid().toString());
}

bool HasUuid() {
    return !LoadUuid().isEmpty();
}

QString LoadUuid() {
    return SettingsReader().Text(keys::kUuid.name);
}

QString LoadProductName(const QString& applicationDir) {
    const QSettings profile(applicationDir + QStringLiteral("/DefaultProfile.bin"), QSettings::IniFormat);
    return profile.value(QStringLiteral("PROFILE/ProductName")).toString();
}

}  // namespace kivo
