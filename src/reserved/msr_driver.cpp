#include "reserved/msr_driver.h"

#include <QtEndian>

#include "reserved/msr_driver_platform.h"

namespace kivo {

MsrDriverState msrDriver;

QString DriverPath(const QString& programPath, bool isWow64) {
    const int backslash = programPath.lastIndexOf(QLatin1Char('\\'));
    if (backslash < 0) {
        return {};
    }
    QString path = programPath.left(backslash + 1) + (isWow64 ? kDriverFile64 : kDriverFile32);
    return path.size() < kLongestPath ? path : QString();
}

MsrRequest MakeMsrRequest(quint32 index) {
    MsrRequest request;
    qToLittleEndian(index, request.data());
    return request;
}

quint32 LowHalf(const MsrAnswer& answer) {
    return qFromLittleEndian<quint32>(answer.data());
}

quint32 HighHalf(const MsrAnswer& answer) {
    return qFromLittleEndian<quint32>(answer.data() + sizeof(quint32));
}

bool InitDriver() {
    msrDriver.driverPath = DriverPath(OwnProgramPath(), msrDriver.isWow64);
    if (!FileExists(msrDriver.driverPath)) {
        return false;
    }
    if (OpenDriver()) {
        return true;
    }
    InstallDriverService();
    return OpenDriver();
}

bool ReadMsr(quint32 index, quint32* low, quint32* high) {
    return ReadMsr(index, low, high, &AskDriver);
}

bool ReadMsr(quint32 index, quint32* low, quint32* high, const MsrDriverCall& ask) {
    if (msrDriver.driverHandle == kNoDriver || low == nullptr || high == nullptr || !msrDriver.driverReady) {
        return false;
    }
    MsrAnswer answer{};
    if (!ask(msrDriver.driverHandle, MakeMsrRequest(index), &answer)) {
        return false;
    }
    *low = LowHalf(answer);
    *high = HighHalf(answer);
    return true;
}

}  // namespace kivo
