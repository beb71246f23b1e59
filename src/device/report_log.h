#pragma once

// A log of every report handed to the device, for people who look for a fault in the wire traffic.
//
// The file starts with the eight characters "KIVOREP1". Records follow, numbers low byte first:
//
//   byte 0-3    u32  length of the report, report id included (0 for a start mark)
//   byte 4-7    u32  kind: 0 start mark (a program began to log), 1 output report, 2 feature report
//   byte 8-11   i32  what the write returned: bytes taken, negative for a failure (0 for a start mark)
//   byte 12-19  u64  monotonic time at which the write began, in nanoseconds
//   byte 20..        the report
//
// A log is appended to, run after run.

#include <QByteArray>
#include <QFile>
#include <QString>
#include <mutex>
#include <optional>

#include "device/hid_api.h"

namespace kivo {

enum class LoggedKind : quint32 { StartMark = 0, OutputReport = 1, FeatureReport = 2 };

struct LoggedReport {
    LoggedKind kind = LoggedKind::StartMark;
    qint32 result = 0;
    quint64 nanoseconds = 0;
    QByteArray bytes;
};

// Wraps another interface; everything passes through unchanged. A log that cannot be written (any more) gives
// one line and the reports go on without it. A file that is not empty and no report log is left alone.
class ReportLogHidApi final : public HidApi {
public:
    // The interface must outlive this one.
    ReportLogHidApi(HidApi& inner, const QString& fileName);

    bool IsLogging() const;

    int Init() override;
    std::vector<HidDeviceInfo> Enumerate(quint16 vendorId, quint16 productId) override;
    HidHandle* OpenPath(const QByteArray& path) override;
    bool IsDenied(const QByteArray& path) override;
    std::vector<HidDeviceInfo> Identify(HidHandle* handle) override;
    QByteArray NodeStamp(const QByteArray& path) override;
    QByteArray PanelKey(const QByteArray& path) override;
    int Write(HidHandle* handle, const quint8* data, std::size_t length) override;
    int SendFeatureReport(HidHandle* handle, const quint8* data, std::size_t length) override;
    void Close(HidHandle* handle) override;
    int Exit() override;

private:
    void OpenLog();
    void Append(LoggedKind kind, qint32 result, quint64 nanoseconds, const quint8* data, std::size_t length);
    void GiveUp(const QString& reason);

    HidApi& m_inner;
    mutable std::mutex m_logMutex;
    QFile m_file;
};

class ReportLogReader {
public:
    explicit ReportLogReader(const QString& fileName);

    // The next record; none at the end of the log or after an error.
    std::optional<LoggedReport> Next();

    // Passes over the next record without reading its report. False as Next is empty.
    bool Skip();

    // Empty while all is well, else one sentence: the file cannot be read, is no report log, ends inside a
    // record.
    const QString& Error() const { return m_error; }

    // Bytes up to the end of the last whole record.
    qint64 WholeBytes() const { return m_wholeBytes; }

private:
    struct Header {
        quint32 length;
        LoggedKind kind;
        qint32 result;
        quint64 nanoseconds;
    };
    std::optional<Header> NextHeader();

    QFile m_file;
    QString m_error;
    qint64 m_wholeBytes = 0;
};

}  // namespace kivo
