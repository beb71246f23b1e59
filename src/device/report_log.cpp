#include "device/report_log.h"

#include <QLoggingCategory>
#include <QtEndian>
#include <algorithm>
#include <chrono>

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(reportLog, "kivo.reportlog")

constexpr char kMagic[] = "KIVOREP1";
constexpr int kMagicBytes = 8;

constexpr int kHeaderBytes = 20;
constexpr int kLengthAt = 0;
constexpr int kKindAt = 4;
constexpr int kResultAt = 8;
constexpr int kTimeAt = 12;

// Far above any HID report: a length beyond it means that the file is damaged.
constexpr quint32 kLongestReport = 1U << 20U;

quint64 MonotonicNanoseconds() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<quint64>(std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart).count());
}

QString NotALog() {
    return QStringLiteral("it is not a report log");
}
QString CutShort() {
    return QStringLiteral("it ends inside a record");
}

}  // namespace

ReportLogHidApi::ReportLogHidApi(HidApi& inner, const QString& fileName) : m_inner(inner), m_file(fileName) {
    OpenLog();
}

void ReportLogHidApi::OpenLog() {
    // Unbuffered: a record is one write, and what was logged is in the file when the program dies.
    constexpr QIODevice::OpenMode kMode = QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered;
    const bool fresh = m_file.size() == 0;
    if (!fresh) {
        ReportLogReader former(m_file.fileName());
        while (former.Next()) {
        }
        // A program that died in the middle of a record leaves half of it; what follows could not be read.
        if (former.Error() == CutShort())
            m_file.resize(former.WholeBytes());
        else if (!former.Error().isEmpty())
            return GiveUp(former.Error());
    }
    if (!m_file.open(fresh ? QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered : kMode))
        return GiveUp(m_file.errorString());
    if (fresh && m_file.write(kMagic, kMagicBytes) != kMagicBytes)
        return GiveUp(m_file.errorString());
    Append(LoggedKind::StartMark, 0, MonotonicNanoseconds(), nullptr, 0);
}

bool ReportLogHidApi::IsLogging() const {
    const std::lock_guard lock(m_logMutex);
    return m_file.isOpen();
}

void ReportLogHidApi::Append(LoggedKind kind, qint32 result, quint64 nanoseconds, const quint8* data,
                             std::size_t length) {
    const std::lock_guard lock(m_logMutex);
    if (!m_file.isOpen())
        return;
    const auto bytes = static_cast<quint32>(std::min<std::size_t>(length, kLongestReport));
    QByteArray record(kHeaderBytes + static_cast<int>(bytes), Qt::Uninitialized);
    qToLittleEndian(bytes, record.data() + kLengthAt);
    qToLittleEndian(static_cast<quint32>(kind), record.data() + kKindAt);
    qToLittleEndian(result, record.data() + kResultAt);
    qToLittleEndian(nanoseconds, record.data() + kTimeAt);
    std::copy_n(data, bytes, record.begin() + kHeaderBytes);
    if (m_file.write(record) != record.size())
        GiveUp(m_file.errorString());
}

void ReportLogHidApi::GiveUp(const QString& reason) {
    m_file.close();
    qCWarning(reportLog, "Reports are not logged to %s: %s", qUtf8Printable(m_file.fileName()),
              qUtf8Printable(reason));
}

int ReportLogHidApi::Init() {
    return m_inner.Init();
}

std::vector<HidDeviceInfo> ReportLogHidApi::Enumerate(quint16 vendorId, quint16 productId) {
    return m_inner.Enumerate(vendorId, productId);
}

HidHandle* ReportLogHidApi::OpenPath(const QByteArray& path) {
    return m_inner.OpenPath(path);
}

int ReportLogHidApi::Write(HidHandle* handle, const quint8* data, std::size_t length) {
    const quint64 began = MonotonicNanoseconds();
    const int written = m_inner.Write(handle, data, length);
    Append(LoggedKind::OutputReport, written, began, data, length);
    return written;
}

int ReportLogHidApi::SendFeatureReport(HidHandle* handle, const quint8* data, std::size_t length) {
    const quint64 began = MonotonicNanoseconds();
    const int sent = m_inner.SendFeatureReport(handle, data, length);
    Append(LoggedKind::FeatureReport, sent, began, data, length);
    return sent;
}

void ReportLogHidApi::Close(HidHandle* handle) {
    m_inner.Close(handle);
}

int ReportLogHidApi::Exit() {
    return m_inner.Exit();
}

ReportLogReader::ReportLogReader(const QString& fileName) : m_file(fileName) {
    if (!m_file.open(QIODevice::ReadOnly)) {
        m_error = m_file.errorString();
        return;
    }
    if (m_file.read(kMagicBytes) != QByteArray(kMagic, kMagicBytes))
        m_error = NotALog();
    else
        m_wholeBytes = kMagicBytes;
}

std::optional<LoggedReport> ReportLogReader::Next() {
    if (!m_error.isEmpty())
        return std::nullopt;
    const QByteArray header = m_file.read(kHeaderBytes);
    if (header.isEmpty())
        return std::nullopt;
    if (header.size() < kHeaderBytes) {
        m_error = CutShort();
        return std::nullopt;
    }
    const auto length = qFromLittleEndian<quint32>(header.constData() + kLengthAt);
    const auto kind = qFromLittleEndian<quint32>(header.constData() + kKindAt);
    if (length > kLongestReport || kind > static_cast<quint32>(LoggedKind::FeatureReport)) {
        m_error = QStringLiteral("the record at byte %1 is damaged").arg(m_wholeBytes);
        return std::nullopt;
    }
    LoggedReport report;
    report.kind = static_cast<LoggedKind>(kind);
    report.result = qFromLittleEndian<qint32>(header.constData() + kResultAt);
    report.nanoseconds = qFromLittleEndian<quint64>(header.constData() + kTimeAt);
    report.bytes = m_file.read(length);
    if (report.bytes.size() < static_cast<int>(length)) {
        m_error = CutShort();
        return std::nullopt;
    }
    m_wholeBytes += kHeaderBytes + report.bytes.size();
    return report;
}

}  // namespace kivo
