#include "support/test_program.h"

#include <QProcess>

#include <cstdio>
#include <map>
#include <string>

namespace kivo::test {
namespace {

// By name. Functions, because other sources' static objects fill them.
std::map<std::string, RunFunction>& Tests() {
    static std::map<std::string, RunFunction> tests;
    return tests;
}

std::map<std::string, RunFunction>& Roles() {
    static std::map<std::string, RunFunction> roles;
    return roles;
}

// ".../tst_frost.cpp" -> "frost"
std::string UnitOf(const std::string& source) {
    const size_t begin = source.find_last_of("/\\") + 1 + std::string("tst_").size();
    return source.substr(begin, source.rfind('.') - begin);
}

// Each class in a process of its own: some set up what holds for a whole process.
int RunAll(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList options = QCoreApplication::arguments().mid(1);
    int failed = 0;
    for (const auto& test : Tests()) {
        const QStringList arguments = QStringList{QString::fromStdString(test.first)} + options;
        failed += QProcess::execute(QCoreApplication::applicationFilePath(), arguments) == 0 ? 0 : 1;
    }
    if (failed > 0) {
        std::fprintf(stderr, "%d of %zu classes failed.\n", failed, Tests().size());
    }
    return failed > 0 ? 1 : 0;
}

// argv[0] NAME REST... -> argv[0] REST...
int RunNamed(RunFunction run, int argc, char** argv) {
    for (int k = 1; k < argc; ++k) {
        argv[k] = argv[k + 1];  // the nullptr at the end too
    }
    return run(argc - 1, argv);
}

}  // namespace

RegisteredTest::RegisteredTest(const char* source, RunFunction run) {
    Tests()[UnitOf(source)] = run;
}

RegisteredRole::RegisteredRole(const char* role, RunFunction run) {
    Roles()[role] = run;
}

}  // namespace kivo::test

// PROGRAM [NAME [FUNCTION[:ROW]...]] [QtTest's options], or PROGRAM -list, which prints the names. Without a
// name all classes are run.
int main(int argc, char** argv) {
    using namespace kivo::test;
    const std::string first = argc > 1 ? argv[1] : "-";
    for (const auto& functions : {Tests(), Roles()}) {
        const auto found = functions.find(first);
        if (found != functions.end()) {
            return RunNamed(found->second, argc, argv);
        }
    }
    if (first == "-list") {
        for (const auto& test : Tests()) {
            std::puts(test.first.c_str());
        }
        return 0;
    }
    if (first[0] == '-') {
        return RunAll(argc, argv);
    }
    std::fprintf(stderr, "%s: there is no test class \"%s\"; -list prints their names.\n", argv[0], argv[1]);
    return 2;
}
