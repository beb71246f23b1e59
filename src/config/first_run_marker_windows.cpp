#include <windows.h>

#include "config/first_run_marker.h"
#include "config/first_run_marker_platform.h"

namespace kivo {
namespace {

constexpr char kKeyPath[] = "Software\\Kivo Tool\\Kivo Config";
constexpr char kValueName[] = "isInitialized";

}  // namespace

static_assert(kMarkerTextType == REG_SZ);

bool IsUserMarked() {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, kKeyPath, 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return false;
    }
    // Longer data does not fit and makes the query fail, which is wanted: it is not the mark.
    QByteArray bytes(MarkerBytes().size(), '\0');
    DWORD type = REG_NONE;
    DWORD size = static_cast<DWORD>(bytes.size());
    const LSTATUS status =
        RegQueryValueExA(key, kValueName, nullptr, &type, reinterpret_cast<BYTE*>(bytes.data()), &size);
    RegCloseKey(key);
    return status == ERROR_SUCCESS && MeansInitialized(type, bytes.left(static_cast<int>(size)));
}

qint32 MarkUser() {
    HKEY key = nullptr;
    const LSTATUS opened = RegCreateKeyExA(HKEY_CURRENT_USER, kKeyPath, 0, nullptr, REG_OPTION_NON_VOLATILE,
                                           KEY_WRITE, nullptr, &key, nullptr);
    if (opened != ERROR_SUCCESS) {
        return static_cast<qint32>(opened);
    }
    const QByteArray& bytes = MarkerBytes();
    RegSetValueExA(key, kValueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(bytes.constData()),
                   static_cast<DWORD>(bytes.size()));
    // Deliberate: the result is the close's. Whether the value arrived is what IsFirstRun answers.
    return static_cast<qint32>(RegCloseKey(key));
}

}  // namespace kivo
