#pragma once

// Takes out of a text what tells who its writer is: a report is sent to strangers, and posted where everybody
// reads it. Pure.

#include <QString>
#include <QStringList>

namespace kivo {

struct PersonalNames {
    QStringList homes;     // folders, in the system's or in Qt's way of writing them
    QStringList users;     // as the system knows the user, and as people do
    QStringList hosts;     // names of the computer
    QStringList pictures;  // paths of the user's pictures; a picture's number is its place here, from 1 on
};

// Those of this process.
PersonalNames NamesOfThisUser();

// The text with each home as "~", each user and host, where they stand as words of their own, as "<user>" and
// "<host>", and each of the pictures, also by its bare file name, as its number. What looks like somebody's
// home ("/home/...", "C:\Users\...") or like the path of a picture is taken for one, known or not. Upper and
// lower case, both slashes, percent signs and both forms of accents are all the same.
QString WithoutPersonalNames(const QString& text, const PersonalNames& names);

}  // namespace kivo
