#include "energy_library.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

constexpr int kFirstNode = 0;
constexpr int kPackageMeter = 1;
constexpr int kSamplesForPower = 2;

// Numbers that show on the panel that a call came out of turn, or asked for something else.
constexpr int kNotStarted = 901;
constexpr int kNoSample = 902;
constexpr int kWrongArgument = 903;

bool isStarted = false;
int samples = 0;

int WhatIsWrong(bool isRightArgument, int samplesNeeded) {
    if (!isStarted) {
        return kNotStarted;
    }
    if (!isRightArgument) {
        return kWrongArgument;
    }
    return samples < samplesNeeded ? kNoSample : 0;
}

bool Answers() {
    return samples <= kBehaviour.answers && kBehaviour.answers > 0;
}

void Note(const char* line) {
    const char* path = std::getenv("KIVO_TEST_LIBRARY_LOG");
    if (path == nullptr) {
        return;
    }
    if (FILE* file = std::fopen(path, "a")) {
        std::fprintf(file, "%s\n", line);
        std::fclose(file);
    }
}

const struct Life {
    Life() { Note("loaded"); }
    ~Life() { Note("unloaded"); }
} life;

}  // namespace

ENERGY_LIBRARY_CALL bool IntelEnergyLibInitialize() {
    Note("started");
    isStarted = kBehaviour.starts;
    samples = 0;
    return isStarted;
}

ENERGY_LIBRARY_CALL bool ReadSample() {
    if (!kBehaviour.samplesEnd) {
        Note("hangs");
    }
    while (!kBehaviour.samplesEnd) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ++samples;
    return Answers();
}

ENERGY_LIBRARY_CALL bool GetTemperature(int node, int* degreesCelsius) {
    if (!Answers()) {
        return false;
    }
    const int wrong = WhatIsWrong(node == kFirstNode, 1);
    *degreesCelsius = wrong != 0 ? wrong : kBehaviour.degreesCelsius;
    return wrong == 0;
}

ENERGY_LIBRARY_CALL bool GetPowerData(int node, int meter, double* result, int* count) {
    if (!Answers()) {
        return false;
    }
    const int wrong = WhatIsWrong(node == kFirstNode && meter == kPackageMeter, kSamplesForPower);
    result[0] = wrong != 0 ? wrong : kBehaviour.watts;
    result[1] = result[0] * 1000;
    result[2] = result[1] * 1000;
    *count = 3;
    return wrong == 0;
}

// Nobody calls the others, so that their arguments do not matter.
ENERGY_LIBRARY_CALL bool GetNumNodes() {
    return false;
}
ENERGY_LIBRARY_CALL bool GetNumMsrs() {
    return false;
}
ENERGY_LIBRARY_CALL bool GetMsrName() {
    return false;
}
ENERGY_LIBRARY_CALL bool GetMsrFunc() {
    return false;
}
ENERGY_LIBRARY_CALL bool IsGTAvailable() {
    return false;
}
ENERGY_LIBRARY_CALL bool GetGTFrequency() {
    return false;
}
ENERGY_LIBRARY_CALL bool GetSysTime() {
    return false;
}
ENERGY_LIBRARY_CALL bool GetTimeInterval() {
    return false;
}
ENERGY_LIBRARY_CALL bool GetIAFrequency() {
    return false;
}
ENERGY_LIBRARY_CALL bool GetTDP() {
    return false;
}
ENERGY_LIBRARY_CALL bool GetMaxTemperature() {
    return false;
}
ENERGY_LIBRARY_CALL bool GetBaseFrequency() {
    return false;
}
ENERGY_LIBRARY_CALL bool StartLog() {
    return false;
}
