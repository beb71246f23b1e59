// clang-format off
#include <windows.h>
// clang-format on

#include <QtTest>

#include <thread>

#include "../telemetry/sensor_bytes.h"
#include "../telemetry/sensor_words.h"
#include "support/test_program.h"
#include "telemetry/core_temp_source.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// Core Temp's shared memory, of that size.
class Mapping {
public:
    explicit Mapping(const QByteArray& bytes, DWORD size = 4740)
        : m_mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, size,
                                       L"CoreTempMappingObjectEx")) {
        void* const memory = MapViewOfFile(m_mapping, FILE_MAP_WRITE, 0, 0, 0);
        std::memcpy(memory, bytes.constData(), std::min<std::size_t>(size, std::size_t(bytes.size())));
        UnmapViewOfFile(memory);
    }
    ~Mapping() { CloseHandle(m_mapping); }
    Q_DISABLE_COPY(Mapping)

private:
    const HANDLE m_mapping;
};

// Its mutex, and a writer that holds it until it is told to end.
class Writer {
public:
    enum class End { Releases, Abandons };
    explicit Writer(End end) : m_mutex(CreateMutexW(nullptr, FALSE, L"CoreTempMutexObject")) {
        m_thread = std::thread([this, end] {
            WaitForSingleObject(m_mutex, INFINITE);
            m_isWriting.release();
            m_isToEnd.acquire();
            if (end == End::Releases) {
                ReleaseMutex(m_mutex);
            }
        });
        m_isWriting.acquire();
    }
    ~Writer() {
        EndWriting();
        CloseHandle(m_mutex);
    }
    Q_DISABLE_COPY(Writer)

    void EndWriting() {
        if (m_thread.joinable()) {
            m_isToEnd.release();
            m_thread.join();
        }
    }

private:
    const HANDLE m_mutex;
    QSemaphore m_isWriting;
    QSemaphore m_isToEnd;
    std::thread m_thread;
};

}  // namespace

// Shared memory and mutex of Core Temp's names, made here.
class TestCoreTempMapping : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void MemoryIsReadWhileItIsThere() {
        CoreTempSource source(CopyCoreTempMemory);
        QCOMPARE(Temperature(source, At(0)), QStringLiteral("no source"));
        {
            const Mapping mapping(CoreTempBytes().bytes);
            QCOMPARE(Temperature(source, At(1)), QStringLiteral("57.5"));
        }
        // Nothing of ours keeps it alive.
        QCOMPARE(Temperature(source, At(2)), QStringLiteral("not running"));
        const Mapping mapping(CoreTempBytes().bytes);
        QCOMPARE(Temperature(source, At(3)), QStringLiteral("57.5"));
    }

    // A page is mapped, and the version says that there is more.
    void MemoryThatIsShorterThanItSays() {
        const Mapping mapping(CoreTempBytes().bytes, 4096);
        CoreTempSource source(CopyCoreTempMemory);
        QCOMPARE(CopyCoreTempMemory()->bytes.size(), 4096);
        QCOMPARE(Temperature(source, At(0)), QStringLiteral("no source"));
    }

    void LargerMemoryIsNotCopiedWhole() {
        const Mapping mapping(CoreTempBytes().bytes, 10 * 1024 * 1024);
        CoreTempSource source(CopyCoreTempMemory);
        QCOMPARE(CopyCoreTempMemory()->bytes.size(), 4740);
        QCOMPARE(Temperature(source, At(0)), QStringLiteral("57.5"));
    }

    void NoiseIsNoTemperature() {
        const Mapping mapping(QByteArray(4740, '\xA5'));
        CoreTempSource source(CopyCoreTempMemory);
        QCOMPARE(Temperature(source, At(0)), QStringLiteral("no source"));
    }

    void WriterIsNotReadInto() {
        const Mapping mapping(CoreTempBytes().bytes);
        Writer writer(Writer::End::Releases);
        CoreTempSource source(CopyCoreTempMemory);
        QVERIFY(CopyCoreTempMemory()->isBusy);
        QCOMPARE(Temperature(source, At(0)), QStringLiteral("not read"));
        writer.EndWriting();
        QCOMPARE(Temperature(source, At(1)), QStringLiteral("57.5"));
        // It was given back.
        std::thread([] {
            const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, L"CoreTempMutexObject");
            QCOMPARE(WaitForSingleObject(mutex, 0), DWORD(WAIT_OBJECT_0));
            ReleaseMutex(mutex);
            CloseHandle(mutex);
        }).join();
    }

    void WriterThatDiedIsNotWaitedFor() {
        const Mapping mapping(CoreTempBytes().bytes);
        Writer writer(Writer::End::Abandons);
        writer.EndWriting();
        CoreTempSource source(CopyCoreTempMemory);
        QCOMPARE(Temperature(source, At(0)), QStringLiteral("57.5"));
        QCOMPARE(Temperature(source, At(1)), QStringLiteral("57.5"));
    }

    // Something else has that name.
    void NameThatIsNoMapping() {
        const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, L"CoreTempMappingObjectEx");
        QVERIFY(!CopyCoreTempMemory());
        CloseHandle(event);
    }
};

KIVO_GUILESS_TEST(TestCoreTempMapping)
#include "tst_core_temp_mapping.moc"
