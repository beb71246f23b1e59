#pragma once

// Made-up libraries with the interface of the vendor's, each wrong in one way. A library is
// energy_library.cpp, a file that says how it behaves, and but for one of them stop_log.cpp.
// KIVO_TEST_LIBRARY_LOG names a file that gets a line each time it is loaded, started and unloaded, and when
// a call of it begins to hang.

#if defined(_WIN32)
#define ENERGY_LIBRARY_CALL extern "C" __declspec(dllexport)
#else
#define ENERGY_LIBRARY_CALL extern "C" __attribute__((visibility("default")))
#endif

struct Behaviour {
    bool starts;  // else its start fails
    int answers;  // so many samples have power and temperature; then both fail and leave what they were given
    bool samplesEnd;  // else taking a sample hangs
    double watts;
    int degreesCelsius;
};

constexpr int kAlways = 1 << 30;

extern const Behaviour kBehaviour;
