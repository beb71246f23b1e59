#pragma once

// A picture that was chosen and is still being looked at: it is taken once it is known that it can be shown.
// Knows no widget. The window's thread.

#include <QObject>
#include <QString>

namespace kivo {

class PictureSource;

class PictureChoice : public QObject {
    Q_OBJECT

public:
    // The source outlives this object.
    explicit PictureChoice(PictureSource& source, QObject* parent = nullptr);

    // Looks whether the picture can be shown, then emits taken or refused. A part of the program always can.
    // A choice that is still open is forgotten. inPlaceOf: a picture that is no more, whose place this one is
    // to take; empty where a person chose it.
    void Choose(const QString& path, const QString& inPlaceOf = QString());

    // The picture of the open choice; empty where there is none.
    const QString& Open() const { return m_path; }

    // Takes the open choice as it is, known or not.
    void Settle();
    // Forgets it.
    void Drop();

Q_SIGNALS:
    void taken(const QString& path, const QString& inPlaceOf);
    void refused(const QString& path, const QString& inPlaceOf);

private:
    void NoteAnswer(const QString& path);

    PictureSource& m_source;
    QString m_path;
    QString m_inPlaceOf;
};

}  // namespace kivo
