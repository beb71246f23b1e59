#include <QTemporaryDir>
#include <QtTest>

#include "device/node_identity.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

QByteArray MakeNode(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) ? QFile::encodeName(path) : QByteArray();
}

}  // namespace

// Files stand in for nodes: the stamp is of the file system alone.
class TestNodeIdentity : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void StampStaysWhileTheNodeDoes() {
        const QTemporaryDir folder;
        const QByteArray node = MakeNode(folder.filePath(QStringLiteral("node")));
        const QByteArray stamp = StampOfNode(node);
        QVERIFY(!stamp.isEmpty());
        QFile file(QFile::decodeName(node));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(StampOfNode(node), stamp);
    }

    // The former node is still held open, as a handle of a screen that was pulled out is.
    void AnotherNodeHasAnotherStamp() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("node"));
        const QByteArray node = MakeNode(path);
        QFile held(path);
        QVERIFY(held.open(QIODevice::ReadOnly));
        const QByteArray stamp = StampOfNode(node);
        QVERIFY(QFile::remove(path));
        MakeNode(path);
        QVERIFY(StampOfNode(node) != stamp);
    }

    void ChangeOfRightsChangesTheStamp() {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("node"));
        const QByteArray stamp = StampOfNode(MakeNode(path));
        QTRY_VERIFY(QFile::setPermissions(path, QFile::ReadOwner) &&
                    StampOfNode(QFile::encodeName(path)) != stamp);
    }

    void MissingNodeHasNoStampAndNoKey() {
        QCOMPARE(StampOfNode("/dev/no-such-hidraw"), QByteArray());
        QCOMPARE(StampOfNode(""), QByteArray());
        QCOMPARE(PanelKeyOfNode("/dev/no-such-hidraw"), QByteArray());
        QCOMPARE(PanelKeyOfNode(""), QByteArray());
    }
};

KIVO_GUILESS_TEST(TestNodeIdentity)
#include "tst_node_identity_linux.moc"
