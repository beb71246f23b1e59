// A copy of the program as far as other copies can tell, driven line by line through its input:
//   start  ->  "first" or "second"
//   start for the screen  ->  the same; asks a copy on a software panel to give way
//   answer ->  "comes", "stays", "silence" or "took place"; what comes of a start that was the second
//   answer now  ->  the same, looked for once
//   ready  ->  "ready"
//   poll   ->  "asked" or "quiet"; as a copy that uses the screen
//   poll on a panel  ->  the same or "gives way"
//   poll on a panel, busy  ->  as poll
//   let go ->  "ending"
//   hold   ->  "holding"; takes the semaphore, and what stands around it, and keeps both
//   guard  ->  "guarding"; takes only what stands around it
//   nobody ->  "nobody"; goes on without the superuser's rights, if it has them
// The end of its input ends it.

#include <QCoreApplication>
#include <QSystemSemaphore>
#include <iostream>
#include <memory>
#include <string>

#include "become_nobody.h"
#include "session/single_instance.h"
#include "session/single_instance_platform.h"

namespace {

constexpr std::chrono::milliseconds kLongestAnswer{30000};  // the other copy is asked to answer by a test

void Say(const char* line) {
    std::cout << line << std::endl;
}

bool TakesGuard() {
    return kivo::TakeInstanceGuard(std::chrono::milliseconds(1000)) != kivo::InstanceGuard::Refused;
}

const char* Start(kivo::SingleInstance& instance, kivo::InstanceRequest request) {
    return instance.Start([request] { return request; }) ? "first" : "second";
}

const char* Answer(kivo::SingleInstance& instance, std::chrono::milliseconds longest) {
    switch (instance.AwaitAnswer(QDeadlineTimer(longest))) {
        case kivo::InstanceAnswer::ComesToFront:
            return "comes";
        case kivo::InstanceAnswer::Stays:
            return "stays";
        case kivo::InstanceAnswer::None:
            return "silence";
        case kivo::InstanceAnswer::TookPlace:
            return "took place";
    }
    return "";
}

const char* Poll(kivo::SingleInstance& instance, kivo::GivesWay givesWay) {
    switch (instance.TakeWakeUpRequest(givesWay)) {
        case kivo::InstanceRequest::None:
            return "quiet";
        case kivo::InstanceRequest::GiveWay:
            return "gives way";
        default:
            return "asked";
    }
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    kivo::SingleInstance instance;
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
            Say(Poll(instance, kivo::GivesWay::Never));
        } else if (line == "poll on a panel") {
            Say(Poll(instance, kivo::GivesWay::Yes));
        } else if (line == "poll on a panel, busy") {
            Say(Poll(instance, kivo::GivesWay::NotNow));
        } else if (line == "start") {
            Say(Start(instance, kivo::InstanceRequest::ComeToFront));
        } else if (line == "start for the screen") {
            Say(Start(instance, kivo::InstanceRequest::GiveWay));
        } else if (line == "answer") {
            Say(Answer(instance, kLongestAnswer));
        } else if (line == "answer now") {
            Say(Answer(instance, std::chrono::milliseconds(0)));
        } else if (line == "let go") {
            instance.LetGo();
            Say("ending");
        }
    }
    return 0;
}
