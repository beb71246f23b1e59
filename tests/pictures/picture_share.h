#pragma once

#include <QColor>
#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <QThread>

#include <atomic>
#include <map>
#include <mutex>

#include "picture_files.h"
#include "pictures/picture_source.h"
#include "pictures/picture_work.h"

namespace kivo::test {

// Files that are what the test says, and that hang while it says so.
class Share {
public:
    void Put(const QString& path, const QColor& color) {
        const std::lock_guard lock(m_mutex);
        m_files[path] = {Filled(QSize(32, 17), color), PictureFailure::None, QString(), {++m_time, 1}};
    }
    void Remove(const QString& path) {
        const std::lock_guard lock(m_mutex);
        m_files.erase(path);
    }
    void Hang(const QString& part) {
        const std::lock_guard lock(m_mutex);
        m_hanging = part;
    }
    void LetGo() { Hang(QStringLiteral("nothing")); }
    // Of one file, while the others hang on.
    void LetGoOf(const QString& path) {
        const std::lock_guard lock(m_mutex);
        m_letGo = path;
    }
    int Looks() const { return Asked().size(); }
    QStringList Asked() const {
        const std::lock_guard lock(m_mutex);
        return m_asked;
    }
    bool WasAskedByTheWindow() const { return m_isAskedByTheWindow; }

    PictureSource::Readers Readers() {
        return {[this](const QString& path, const Picture* former, const PictureWork& work) {
                    return Read(path, former, work);
                },
                [this](const QString& path, QSize, const PictureWork& work) {
                    return Read(path, nullptr, work);
                }};
    }

private:
    Picture Read(const QString& path, const Picture* former, const PictureWork& work) {
        m_isAskedByTheWindow =
            m_isAskedByTheWindow || QThread::currentThread() == QCoreApplication::instance()->thread();
        {
            const std::lock_guard lock(m_mutex);
            m_asked.append(path);
        }
        {
            const PictureWork::FileAccess access(work);
            while (IsHanging(path) && !work.IsStopped()) {
                QThread::msleep(1);
            }
        }
        const std::lock_guard lock(m_mutex);
        const auto file = m_files.find(path);
        if (file == m_files.end()) {
            return NoPicture(PictureFailure::Missing, QStringLiteral("is not a file"));
        }
        const bool isSame = former != nullptr && IsSameVersion(former->version, file->second.version);
        return isSame ? *former : file->second;
    }
    bool IsHanging(const QString& path) const {
        const std::lock_guard lock(m_mutex);
        return path.contains(m_hanging) && path != m_letGo;
    }

    mutable std::mutex m_mutex;
    std::map<QString, Picture> m_files;
    QString m_hanging = QStringLiteral("nothing");
    QString m_letGo;
    qint64 m_time = 0;
    QStringList m_asked;
    std::atomic<bool> m_isAskedByTheWindow{false};
};

}  // namespace kivo::test
