#pragma once

// Settings that no feature asks for; they keep the vocabulary of the files complete. Main thread.

#include <QString>

namespace kivo {

int LoadLangId();
void SaveLangId(int language);

// Makes a new random identifier in Qt's braced form and stores it.
void CreateUuid();
bool HasUuid();
QString LoadUuid();

// "PROFILE/ProductName" of the application folder's "DefaultProfile.bin" (an INI file); empty when absent.
QString LoadProductName(const QString& applicationDir);

}  // namespace kivo
