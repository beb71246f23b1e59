// Stands in for the WMI client: thermal_stand_in print|hang|read [FILE]. "print" writes a reading and ends,
// "hang" writes one and goes on for ever, "read" writes one once its input has ended. FILE is made once the
// reading is written.

#include <chrono>
#include <cstdio>
#include <cstring>
#include <thread>

int main(int argc, char** argv) {
    if (argc < 2) {
        return 2;
    }
    if (std::strcmp(argv[1], "read") == 0) {
        while (std::getchar() != EOF) {
        }
    }
    std::fputs("\r\n\r\nCurrentTemperature=3012\r\n\r\n", stdout);
    std::fflush(stdout);
    if (argc > 2) {
        if (FILE* file = std::fopen(argv[2], "w")) {
            std::fclose(file);
        }
    }
    while (std::strcmp(argv[1], "hang") == 0) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
    return 0;
}
