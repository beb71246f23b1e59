#pragma once

// The line in which a picture's name is typed, over the place where the list paints it. GUI thread.

#include <QLineEdit>

namespace kivo {

class PictureNameEdit : public QLineEdit {
    Q_OBJECT

public:
    // Begins with the name or, where there is none, with the file's; that one is also what an empty line
    // says.
    PictureNameEdit(const QString& name, const QString& fileTitle, QWidget* parent);

    // Whether another text was typed. A file's name may be longer than a name, so what the line began with is
    // not for storing.
    bool IsChanged() const { return text() != m_first; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    const QString m_first;
};

}  // namespace kivo
