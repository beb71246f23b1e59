#include "telemetry/energy_library_thread.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace kivo {
namespace {

// Longer than any call that ends, shorter than the pause between two samples.
constexpr std::chrono::milliseconds kPatience{500};

constexpr int kFirstPackage = 0;
constexpr int kPackageMeter = 1;

// The numbers between the last two samples; the power starts from what the calls before left.
PackageNumbers ReadNumbers(EnergyLibrary& library, std::array<double, 3>& power) {
    PackageNumbers numbers;
    library.GetTemperature(kFirstPackage, &numbers.degreesCelsius);
    int count = 0;
    library.GetPowerData(kFirstPackage, kPackageMeter, power.data(), &count);
    numbers.watts = power[0];
    return numbers;
}

}  // namespace

struct EnergyLibraryThread::Shared {
    std::mutex mutex;  // over all below
    std::condition_variable changed;
    bool isAsked = false;  // and not yet answered
    bool isStop = false;
    bool hasEnded = false;
    Answer answer;
};

EnergyLibraryThread::EnergyLibraryThread(EnergyLibrary::Parts parts)
    : m_finder(parts), m_parts(std::move(parts)) {}

EnergyLibraryThread::~EnergyLibraryThread() {
    if (!m_thread.joinable()) {
        return;
    }
    std::unique_lock<std::mutex> lock(m_shared->mutex);
    m_shared->isStop = true;
    m_shared->changed.notify_all();
    const bool hasEnded = m_shared->changed.wait_for(lock, kPatience, [this] { return m_shared->hasEnded; });
    lock.unlock();
    if (hasEnded) {
        m_thread.join();
    } else {
        m_thread.detach();
    }
}

bool EnergyLibraryThread::Load() {
    if (m_answer.isLoaded) {
        return true;
    }
    if (!m_finder.IsInstalled()) {
        m_answer.errorString = m_finder.errorString;
        return false;
    }
    Ask();
    return m_answer.isLoaded;
}

bool EnergyLibraryThread::ReadSample() {
    return m_answer.isLoaded && Ask();
}

bool EnergyLibraryThread::Ask() {
    if (!m_thread.joinable()) {
        m_shared = std::make_shared<Shared>();
        m_thread = std::thread([shared = m_shared, parts = m_parts] { Run(shared, parts); });
    }
    std::unique_lock<std::mutex> lock(m_shared->mutex);
    if (m_shared->isAsked) {
        return false;
    }
    m_shared->isAsked = true;
    m_shared->changed.notify_all();
    if (!m_shared->changed.wait_for(lock, kPatience, [this] { return !m_shared->isAsked; })) {
        return false;
    }
    m_answer = m_shared->answer;
    return true;
}

void EnergyLibraryThread::Run(const std::shared_ptr<Shared>& shared, EnergyLibrary::Parts parts) {
    {
        EnergyLibrary library(std::move(parts));
        std::array<double, 3> power{};
        bool hasSample = false;
        Answer answer;
        std::unique_lock<std::mutex> lock(shared->mutex);
        while (true) {
            shared->changed.wait(lock, [&shared] { return shared->isStop || shared->isAsked; });
            if (shared->isStop) {
                break;
            }
            lock.unlock();
            if (!answer.isLoaded) {
                answer.isLoaded = library.Load();
                answer.errorString = library.errorString;
            } else {
                library.ReadSample();
                if (std::exchange(hasSample, true)) {
                    answer.numbers = ReadNumbers(library, power);
                }
            }
            lock.lock();
            shared->answer = answer;
            shared->isAsked = false;
            shared->changed.notify_all();
        }
    }
    const std::lock_guard<std::mutex> lock(shared->mutex);
    shared->hasEnded = true;
    shared->changed.notify_all();
}

}  // namespace kivo
