#pragma once

#include <QGuiApplication>
#include <QtGlobal>

namespace kivo {

// Before the application object: windows and pictures are scaled as the display is. Qt 6 knows nothing else.
inline void ScaleAsTheDisplay() {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

// A session that ends closes no window of its own accord. Qt 6 never does so.
inline void LeaveWindowsAtSessionEnd() {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QGuiApplication::setFallbackSessionManagementEnabled(false);
#endif
}

}  // namespace kivo
