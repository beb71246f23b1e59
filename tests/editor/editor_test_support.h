#pragma once

// An editor on the screen, and the words in which its tests speak.

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include "compose/compose_test_support.h"
#include "config/folders.h"
#include "editor/screen_mapping.h"
#include "editor/zoom_widget.h"
#include "pictures/picture_reader.h"
#include "pictures/picture_source.h"
#include "widgets/self_plain_text_edit.h"

namespace kivo::test {

inline void ForgetSettings() {
    QFile::remove(ConfigFilePath());
}

inline QVariant Stored(const QString& key) {
    return QSettings(ConfigFilePath(), QSettings::IniFormat).value(key);
}

// Five items (temperature, load, time, memory, power) on the custom page.
inline ThemeState CustomThemes(Orientation orientation = Orientation::Landscape, int variant = 0) {
    ThemeState themes = FactoryThemeState(InterfaceLanguage::Chinese);
    themes.mode = 1;
    themes.style = variant;
    themes.orientation = orientation;
    return themes;
}

inline QSize EditorSize(Orientation orientation) {
    return orientation == Orientation::Landscape ? QSize(435, 312) : QSize(425, 322);
}

inline bool IsTrimmed(const LayoutRecord& layout) {
    return layout.xPt != 0 || layout.yPt != 0 || layout.xZoom != 0 || layout.yZoom != 0;
}

// The middle of a slot and of a text row, in widget pixels.
inline QPoint SlotPoint(int slot, Orientation orientation = Orientation::Landscape) {
    return MappingFor(orientation, EditorSize(orientation)).Mapped(SlotRect(slot, orientation)).center();
}
inline QPoint RowPoint(int row, Orientation orientation = Orientation::Landscape) {
    return MappingFor(orientation, EditorSize(orientation)).Mapped(TextRowRect(row, orientation)).center();
}

class Editor : public ZoomWidget {
public:
    // Shows the state, with editing open.
    explicit Editor(const ThemeState& themes = CustomThemes(),
                    const SlotTable& slotTable = FactorySlotTable()) {
        SetPictures(m_pictures);
        SaveSlotTable(slotTable);
        LoadCustomShow();
        resize(EditorSize(themes.orientation));
        ShowTheme(themes, true);
        SetEditing(true);
        show();
        if (!QTest::qWaitForWindowExposed(this)) {
            qFatal("The editor does not show up.");
        }
        WaitForPicture();
    }

    // Until the preview shows the picture it is to show: it is read beside it.
    void WaitForPicture() {
        for (int time = 0; time < 2; ++time) {
            grab();  // asks for what it shows, then for what stands in for it
            if (!QTest::qWaitFor([this] { return !m_pictures.IsBusy(); }, 20000)) {
                qFatal("The editor's picture does not come.");
            }
        }
    }
    PictureSource& Pictures() { return m_pictures; }

    // True where the picture is shown.
    bool SetBackground(const QString& path) {
        ZoomWidget::SetBackground(path);
        WaitForPicture();
        const std::optional<Picture> known = m_pictures.Known(path);
        return known && known->failure == PictureFailure::None;
    }

    void Press(QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(this, button, Qt::NoModifier, at);
    }
    void Release(QPoint at) { QTest::mouseRelease(this, Qt::LeftButton, Qt::NoModifier, at); }
    void DoubleClick(QPoint at) { QTest::mouseDClick(this, Qt::LeftButton, Qt::NoModifier, at); }
    // While a button is held, as the mouse does it.
    void MoveTo(QPoint at, Qt::MouseButtons buttons = Qt::LeftButton) {
        QMouseEvent move(QEvent::MouseMove, at, mapToGlobal(at), Qt::NoButton, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(this, &move);
    }
    void Drag(QPoint from, QPoint to) {
        Press(from);
        MoveTo((from + to) / 2);
        MoveTo(to);
        Release(to);
    }
    void Wheel(int angle, QPoint at) {
        QWheelEvent wheel(at, mapToGlobal(at), QPoint(), QPoint(0, angle), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(this, &wheel);
    }

    void GiveText(const QString& text) {
        slotShowEdt();
        TextBox().setPlainText(text);
        solteditingFinished();
    }

    SelfPlainTextEdit& TextBox() { return *findChild<SelfPlainTextEdit*>(); }
    const LayoutRecord& Layout() const { return LayoutInForce(Edited()); }
    const SlotRow& Row(int variant = 0) const { return Edited().slotTable[size_t(variant)]; }

private:
    PictureSource m_pictures{{ReadPicture, {}}};
};

// The smallest rectangle that holds all pixels in which two pictures of one size differ by more than a
// shade; null for none.
inline QRect DifferentRect(const QImage& a, const QImage& b, int shade = 24) {
    QRect all;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (qAbs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > shade) {
                all |= QRect(x, y, 1, 1);
            }
        }
    }
    return all;
}

}  // namespace kivo::test
