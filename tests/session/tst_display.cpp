#include <QtTest>

#include "session/display.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr char kIntegration[] = "QT_XCB_GL_INTEGRATION";

}  // namespace

// What Qt is told about displays before there is an application object.
class TestDisplay : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void NoOpenGlIsLoaded();
    void TheIntegrationThatAPersonAsksForStands();
};

void TestDisplay::cleanup() {
    qunsetenv(kIntegration);
}

void TestDisplay::NoOpenGlIsLoaded() {
    qunsetenv(kIntegration);
    LeaveOutOpenGl();
    QCOMPARE(qgetenv(kIntegration), QByteArray("none"));
}

void TestDisplay::TheIntegrationThatAPersonAsksForStands() {
    qputenv(kIntegration, "xcb_egl");
    LeaveOutOpenGl();
    QCOMPARE(qgetenv(kIntegration), QByteArray("xcb_egl"));
}

KIVO_TEST(TestDisplay)
#include "tst_display.moc"
