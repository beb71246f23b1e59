// A copy of the program as far as other copies can tell, driven line by line through its input:
//   start  ->  "first" or "second" (which ends it)
//   ready  ->  "ready"
//   poll   ->  "asked" or "quiet"
//   hold   ->  "holding"; takes the semaphore, and what stands around it, and keeps both
//   guard  ->  "guarding"; takes only what stands around it
//   nobody ->  "nobody"; goes on without the superuser's rights, if it has them
// The end of its input ends it.

#include <QCoreApplication>
#include <QSystemSemaphore>
#include <iostream>
#include <memory>
#include <string>

#include "app/single_instance.h"
#include "app/single_instance_platform.h"
#include "become_nobody.h"

namespace {

void Say(const char* line) {
    std::cout << line << std::endl;
}

bool TakesGuard() {
    return kivo::TakeInstanceGuard(std::chrono::milliseconds(1000)) != kivo::InstanceGuard::Refused;
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    std::unique_ptr<kivo::SingleInstance> instance;
    std::unique_ptr<QSystemSemaphore> held;
    std::string line;
    while (std::getline(std::cin, line)) {
        if (line == "nobody") {
            if (!kivo::test::BecomeNobody()) {
                return 1;
            }
            Say("nobody");
        } else if (line == "guard") {
            Say(TakesGuard() ? "guarding" : "refused");
        } else if (line == "hold") {
            if (!TakesGuard()) {
                return 1;
            }
            held = std::make_unique<QSystemSemaphore>(kivo::SingleInstance::SemaphoreName(), 1);
            Say(held->acquire() ? "holding" : "refused");
        } else if (line == "ready") {
            Say("ready");
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
