// A copy of the program as far as other copies can tell, driven line by line through its input:
//   start  ->  "first" or "second" (which ends it)
//   poll   ->  "asked" or "quiet"
//   hold   ->  "holding"; takes the semaphore and keeps it
//   nobody ->  "nobody"; goes on without the superuser's rights, if it has them
// The end of its input ends it.

#include <QCoreApplication>
#include <QSystemSemaphore>
#include <iostream>
#include <memory>
#include <string>

#include "../config/private_home.h"
#include "app/single_instance.h"

namespace {

void Say(const char* line) {
    std::cout << line << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    std::unique_ptr<kivo::SingleInstance> instance;
    std::unique_ptr<QSystemSemaphore> held;
    std::string line;
    while (std::getline(std::cin, line)) {
        if (line == "nobody") {
            if (::geteuid() == 0 &&
                ::setresuid(kivo::test::kNobody, kivo::test::kNobody, kivo::test::kNobody) != 0) {
                return 1;
            }
            Say("nobody");
        } else if (line == "hold") {
            held = std::make_unique<QSystemSemaphore>(kivo::SingleInstance::SemaphoreName(), 1);
            Say(held->acquire() ? "holding" : "refused");
        } else if (line == "poll") {
            Say(instance->TakeWakeUpRequest() ? "asked" : "quiet");
        } else if (line == "start") {
            instance = std::make_unique<kivo::SingleInstance>();
            const bool isFirst = instance->Start();
            Say(isFirst ? "first" : "second");
            if (!isFirst) {
                return 0;
            }
        }
    }
    return 0;
}
