#include "pictures/picture_name.h"

#include <algorithm>

namespace kivo {

namespace {

bool HasNoPlaceInAName(QChar character) {
    switch (character.category()) {
        case QChar::Other_Control:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            return true;
        default:
            return false;
    }
}

}  // namespace

QString CleanPictureName(const QString& text) {
    QString name = text;
    name.truncate(int(std::remove_if(name.begin(), name.end(), HasNoPlaceInAName) - name.begin()));
    name = name.trimmed();
    if (name.size() <= kLongestPictureName) {
        return name;
    }
    const bool isInsideAPair = name.at(kLongestPictureName - 1).isHighSurrogate();
    name.truncate(isInsideAPair ? kLongestPictureName - 1 : kLongestPictureName);
    return name.trimmed();
}

}  // namespace kivo
