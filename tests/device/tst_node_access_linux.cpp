#include <unistd.h>
#include <QTemporaryDir>
#include <QtTest>

#include "device/node_access.h"
#include "support/test_program.h"

using namespace kivo;

class TestNodeAccess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void NodeOfOnesOwnIsNotDenied() {
        const QTemporaryDir folder;
        QVERIFY(folder.isValid());
        const QString path = folder.filePath(QStringLiteral("node"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(!IsNodeDenied(path.toLocal8Bit()));
    }

    void MissingNodeIsNotDenied() {
        QVERIFY(!IsNodeDenied("/dev/no-such-hidraw"));
        QVERIFY(!IsNodeDenied(""));
    }

    void NodeWithoutRightsIsDenied() {
        const QTemporaryDir folder;
        QVERIFY(folder.isValid());
        const QString path = folder.filePath(QStringLiteral("node"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.setPermissions({}));
        // Nothing is denied to root, so it asks as somebody else for a moment.
        constexpr uid_t kNobody = 65534;
        constexpr uid_t kAsItIs = uid_t(-1);
        const uid_t user = ::getuid();
        QVERIFY(user != 0 || ::setresuid(kNobody, kAsItIs, kAsItIs) == 0);
        const bool denied = IsNodeDenied(path.toLocal8Bit());
        QVERIFY(user != 0 || ::setresuid(user, kAsItIs, kAsItIs) == 0);
        QVERIFY(denied);
    }
};

KIVO_GUILESS_TEST(TestNodeAccess)
#include "tst_node_access_linux.moc"
