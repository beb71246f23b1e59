#include "device/report_log.h"

#include <QFileInfo>
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
    const QFileInfo info(m_file.fileName());
    // A pipe would hold the program up until somebody reads it.
    if (info.exists() && !info.isFile()) {
        return GiveUp(QStringLiteral("it is not a regular file"));
    }
    const bool fresh = info.size() == 0;
    if (!fresh) {
        ReportLogReader former(m_file.fileName());
        while (former.Skip()) {
        }
        // A program that died in the middle of a record leaves half of it; what follows could not be read.
        if (former.Error() == CutShort()) {
            m_file.resize(former.WholeBytes());
        } else if (!former.Error().isEmpty()) {
            return GiveUp(former.Error());
        }
    }
    // Unbuffered: a record is one write, and what was logged is in the file when the program dies.
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        return GiveUp(m_file.errorString());
    }
    if (fresh && m_file.write(kMagic, kMagicBytes) != kMagicBytes) {
        return GiveUp(m_file.errorString());
    }
    Append(LoggedKind::StartMark, 0, MonotonicNanoseconds(), nullptr, 0);
}

bool ReportLogHidApi::IsLogging() const {
    const std::lock_guard lock(m_logMutex);
    return m_file.isOpen();
}

void ReportLogHidApi::Append(LoggedKind kind, qint32 result, quint64 nanoseconds, const quint8* data,
                             std::size_t length) {
    const std::lock_guard lock(m_logMutex);
    if (!m_file.isOpen()) {
        return;
    }
    const auto bytes = static_cast<quint32>(std::min<std::size_t>(length, kLongestReport));
    QByteArray record(kHeaderBytes + static_cast<int>(bytes), Qt::Uninitialized);
    qToLittleEndian(bytes, record.data() + kLengthAt);
    qToLittleEndian(static_cast<quint32>(kind), record.data() + kKindAt);
    qToLittleEndian(result, record.data() + kResultAt);
    qToLittleEndian(nanoseconds, record.data() + kTimeAt);
    std::copy_n(data, bytes, record.begin() + kHeaderBytes);
    if (m_file.write(record) != record.size()) {
        GiveUp(m_file.errorString());
    }
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

bool ReportLogHidApi::IsDenied(const QByteArray& path) {
    return m_inner.IsDenied(path);
}

std::vector<HidDeviceInfo> ReportLogHidApi::Identify(HidHandle* handle) {
    return m_inner.Identify(handle);
}

QByteArray ReportLogHidApi::NodeStamp(const QByteArray& path) {
    return m_inner.NodeStamp(path);
}

QByteArray ReportLogHidApi::PanelKey(const QByteArray& path) {
    return m_inner.PanelKey(path);
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
    if (m_file.read(kMagicBytes) != QByteArray(kMagic, kMagicBytes)) {
        m_error = NotALog();
    } else {
        m_wholeBytes = kMagicBytes;
    }
}

std::optional<ReportLogReader::Header> ReportLogReader::NextHeader() {
    if (!m_error.isEmpty()) {
        return std::nullopt;
    }
    const QByteArray bytes = m_file.read(kHeaderBytes);
    if (bytes.isEmpty()) {
        return std::nullopt;
    }
    if (bytes.size() < kHeaderBytes) {
        m_error = CutShort();
        return std::nullopt;
    }
    const auto length = qFromLittleEndian<quint32>(bytes.constData() + kLengthAt);
    const auto kind = qFromLittleEndian<quint32>(bytes.constData() + kKindAt);
    if (length > kLongestReport || kind > static_cast<quint32>(LoggedKind::FeatureReport)) {
        m_error = QStringLiteral("the record at byte %1 is damaged").arg(m_wholeBytes);
        return std::nullopt;
    }
    if (m_file.size() - m_file.pos() < static_cast<qint64>(length)) {
        m_error = CutShort();
        return std::nullopt;
    }
    m_wholeBytes += kHeaderBytes + static_cast<qint64>(length);
    return Header{length, static_cast<LoggedKind>(kind),
                  qFromLittleEndian<qint32>(bytes.constData() + kResultAt),
                  qFromLittleEndian<quint64>(bytes.constData() + kTimeAt)};
}

std::optional<LoggedReport> ReportLogReader::Next() {
    const std::optional<Header> header = NextHeader();
    if (!header) {
        return std::nullopt;
    }
    return LoggedReport{header->kind, header->result, header->nanoseconds, m_file.read(header->length)};
}

bool ReportLogReader::Skip() {
    return NextHeader() && m_file.seek(m_wholeBytes);
}

}  // namespace kivo
