#pragma once

// The tests of a folder are one program. Each source registers its class with one of the macros below, at its
// end; main (test_program.cpp) runs the class that its first argument names, in the kind of application that
// the macro says.

#include <QtTest>

namespace kivo::test {

// Makes application and test object, runs the tests and gives the exit status.
using RunFunction = int (*)(int argc, char** argv);

// Tests of class Test. Its static initMain(), where it has one, is called before there is an application.
template <typename Test, typename Application>
int RunInApplication(int argc, char** argv) {
    QTest::Internal::callInitMain<Test>();
    const Application application(argc, argv);
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

template <typename Test>
int RunWithoutApplication(int argc, char** argv) {
    QTest::Internal::callInitMain<Test>();
    Test test;
    return QTest::qExec(&test, argc, argv);
}

// Puts a function into the program's table while static objects are made. A source
// tests/compose/tst_frost.cpp is known as "frost".
class RegisteredTest {
public:
    RegisteredTest(const char* source, RunFunction run);
};

// What the program does when a test starts it once more, with role as the first argument. Not listed and
// never run unless asked for.
class RegisteredRole {
public:
    RegisteredRole(const char* role, RunFunction run);
};

}  // namespace kivo::test

#define KIVO_REGISTER_TEST(...)                                                           \
    namespace {                                                                           \
    const kivo::test::RegisteredTest kRegisteredTest(__FILE__, &kivo::test::__VA_ARGS__); \
    }

#if defined(QT_WIDGETS_LIB)
#define KIVO_TEST(Test) KIVO_REGISTER_TEST(RunInApplication<Test, QApplication>)
#elif defined(QT_GUI_LIB)
#define KIVO_TEST(Test) KIVO_REGISTER_TEST(RunInApplication<Test, QGuiApplication>)
#endif
#define KIVO_GUILESS_TEST(Test) KIVO_REGISTER_TEST(RunInApplication<Test, QCoreApplication>)
#define KIVO_APPLESS_TEST(Test) KIVO_REGISTER_TEST(RunWithoutApplication<Test>)
