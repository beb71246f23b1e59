#include <windows.h>

#include <algorithm>

#include "telemetry/core_temp_memory.h"
#include "telemetry/core_temp_source.h"

namespace kivo {
namespace {

constexpr wchar_t kMapping[] = L"CoreTempMappingObjectEx";
constexpr wchar_t kMutex[] = L"CoreTempMutexObject";
constexpr DWORD kShortTryMs = 5;

// What another program leaves mapped is asked of the system: what that program says of it may be wrong.
QByteArray CopyMapped(const void* memory) {
    MEMORY_BASIC_INFORMATION region{};
    if (VirtualQuery(memory, &region, sizeof(region)) == 0) {
        return {};
    }
    const auto size = std::min<SIZE_T>(region.RegionSize, kCoreTempMemorySize);
    return QByteArray(static_cast<const char*>(memory), static_cast<int>(size));
}

// Holds the mutex of the writer, where this user may wait for it.
class WriterPause {
public:
    WriterPause() : m_mutex(OpenMutexW(SYNCHRONIZE, FALSE, kMutex)) {
        // One whose writer has ended inside it is held as well.
        m_isHeld = m_mutex != nullptr && WaitForSingleObject(m_mutex, kShortTryMs) != WAIT_TIMEOUT;
    }
    ~WriterPause() {
        if (m_isHeld) {
            ReleaseMutex(m_mutex);
        }
        if (m_mutex != nullptr) {
            CloseHandle(m_mutex);
        }
    }
    WriterPause(const WriterPause&) = delete;
    WriterPause& operator=(const WriterPause&) = delete;

    bool IsWriting() const { return m_mutex != nullptr && !m_isHeld; }

private:
    const HANDLE m_mutex;
    bool m_isHeld = false;
};

}  // namespace

std::optional<CoreTempCopy> CopyCoreTempMemory() {
    const HANDLE mapping = OpenFileMappingW(FILE_MAP_READ, FALSE, kMapping);
    if (mapping == nullptr) {
        return std::nullopt;
    }
    std::optional<CoreTempCopy> copy;
    if (const void* memory = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0)) {
        const WriterPause pause;
        copy.emplace();
        copy->isBusy = pause.IsWriting();
        if (!copy->isBusy) {
            copy->bytes = CopyMapped(memory);
        }
        UnmapViewOfFile(memory);
    }
    CloseHandle(mapping);
    return copy;
}

}  // namespace kivo
