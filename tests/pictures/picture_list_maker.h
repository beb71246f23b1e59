#pragma once

// A picture list with a view of its own and thumbnails that need no files, for tests that ask for no more.

#include <QFile>
#include <QStandardPaths>
#include <QStringList>
#include <QWidget>

#include "config/folders.h"
#include "picture_files.h"
#include "pictures/picture_list.h"
#include "pictures/picture_source.h"
#include "pictures/picture_work.h"
#include "pictures/stored_pictures.h"
#include "widgets/exit_item_delegate.h"
#include "widgets/my_list_widget.h"

namespace kivo::test {

inline QString FirstBuiltIn() {
    return QStringLiteral("://background/1.jpg");
}
inline QString SecondBuiltIn() {
    return QStringLiteral("://background/2.jpg");
}

inline QStringList UserPaths(int count) {
    QStringList paths;
    for (int n = 0; n < count; ++n) {
        paths.append(QStringLiteral("/pictures/user %1.jpg").arg(n));
    }
    return paths;
}

// Settings of the test's own, empty at first.
inline void StartWithoutSettings() {
    QStandardPaths::setTestModeEnabled(true);
    QFile::remove(ConfigFilePath());
}

// The list as it stands in the window.
class ListInWindow {
public:
    explicit ListInWindow(int userPictures, PictureSource::Readers readers = RedReaders())
        : m_source(std::move(readers)), m_list(&m_view, m_source) {
        WriteStoredPictures(UserPaths(userPictures), {});
        m_window.resize(960, 588);
        m_view.setParent(&m_window);
        m_view.setGeometry(524, 286, 390, 240);
        m_list.LoadPictureList();
    }

    static PictureSource::Readers RedReaders() {
        return {[](const QString&, const Picture*, const PictureWork&) {
                    return Picture{Filled(QSize(320, 170), Qt::red)};
                },
                [](const QString&, QSize pixels, const PictureWork&) {
                    return Picture{Filled(pixels, Qt::red)};
                }};
    }

    QWidget& Window() { return m_window; }
    MyListWidget& View() { return m_view; }
    PictureList& List() { return m_list; }
    PictureSource& Source() { return m_source; }

    QPoint CentreOf(int row) { return m_view.visualItemRect(m_view.item(row)).center(); }
    QPoint CrossOf(int row) {
        return ExitItemDelegate::CrossRect(m_view.visualItemRect(m_view.item(row))).center();
    }

private:
    QWidget m_window;
    // Goes before the window that is its parent.
    MyListWidget m_view;
    PictureSource m_source;
    PictureList m_list;
};

}  // namespace kivo::test
