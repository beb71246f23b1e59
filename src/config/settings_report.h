#pragma once

// The settings as a report for support has them: without what their user wrote or chose to be seen by
// nobody else.

#include <QString>
#include <QStringList>

namespace kivo {

struct SettingsSummary {
    // "key = value", in the file's order of keys. Pictures are numbers, of texts the length is told; what is
    // as in the factory's file is counted in the last line only.
    QStringList lines;
    // The user's pictures: the first one is number 1.
    QStringList pictures;
};

// Of a settings file, which is not changed; that of the factory may be missing. Main thread, as
// SettingsReader.
SettingsSummary DescribeSettings(const QString& file, const QString& factoryFile);

// A picture as a report has it: "<picture 3>.png". number 0: nobody knows which.
QString NumberedPicture(int number, const QString& path);

}  // namespace kivo
