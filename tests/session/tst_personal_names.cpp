#include <QRandomGenerator>
#include <QtTest>

#include "session/personal_names.h"
#include "support/test_program.h"

using namespace kivo;

class TestPersonalNames : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void NamesAreTakenOut_data();
    void NamesAreTakenOut();
    void PicturesBecomeNumbers_data();
    void PicturesBecomeNumbers();
    void WhatIsNobodysStays_data();
    void WhatIsNobodysStays();
    void NothingPersonalIsEverLeft();
    void ThisProcessKnowsItsHome();
};

namespace {

PersonalNames Anna() {
    PersonalNames names;
    names.homes = QStringList{QStringLiteral("/home/anna"), QStringLiteral("C:\\Users\\Anna Müller")};
    names.users = QStringList{QStringLiteral("anna"), QString(), QStringLiteral("root")};
    names.hosts = QStringList{QStringLiteral("desk-7"), QStringLiteral("localhost")};
    names.pictures = QStringList{QStringLiteral("/home/anna/Bilder/Urlaub am Meer.JPG"),
                                 QStringLiteral("D:/Fotos/Kind.png")};
    return names;
}

void Row(const char* name, const char* text, const char* expected) {
    QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(expected);
}

// A name of letters that are awkward somewhere.
QString RandomName(QRandomGenerator& random) {
    static const QStringList pieces{QStringLiteral("a"),       QStringLiteral("Ö"), QStringLiteral("ß"),
                                    QStringLiteral("o\u0308"), QStringLiteral("ж"), QStringLiteral("李"),
                                    QStringLiteral(" "),       QStringLiteral("."), QStringLiteral("-"),
                                    QStringLiteral("+"),       QStringLiteral("("), QStringLiteral("$1"),
                                    QStringLiteral("["),       QStringLiteral("Q"), QStringLiteral("%"),
                                    QStringLiteral("^"),       QStringLiteral("_"), QStringLiteral("7")};
    QString name = QStringLiteral("xq");  // so that no name is an ordinary word
    const int length = random.bounded(1, 8);
    for (int piece = 0; piece < length; ++piece) {
        name += pieces.at(random.bounded(pieces.size()));
    }
    return name + QStringLiteral("zv");
}

}  // namespace

void TestPersonalNames::NamesAreTakenOut_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    Row("home", "in /home/anna/.local/share/Kivo Tool/Config.ini.",
        "in ~/.local/share/Kivo Tool/Config.ini.");
    Row("home alone", "/home/anna is full", "~ is full");
    Row("home as an address", "file:///home/anna/x", "file:~/x");
    Row("Windows' home", "C:\\Users\\Anna Müller\\AppData", "~\\AppData");
    Row("its other way", "c:/users/anna müller/AppData", "~/AppData");
    Row("with accents apart", "C:\\Users\\Anna Mu\xCC\x88ller\\AppData", "~\\AppData");
    Row("with percent signs", "C:/Users/Anna%20M%C3%BCller/x", "~/x");
    Row("twice escaped", "C:\\\\Users\\\\Anna Müller\\\\x", "~\\\\x");
    Row("another's home", "/home/bert/x and /home/annabel", "/home/<user>/x and /home/<user>");
    Row("another's on Windows", "C:\\Users\\Bert B\\x", "C:\\Users\\<user>\\x");
    Row("user", "crw-rw---- root:anna, by Anna", "crw-rw---- root:<user>, by <user>");
    Row("a stick", "/run/media/anna/stick", "/run/media/<user>/stick");
    Row("host", "desk-7.example and DESK-7", "<host>.example and <host>");
}

void TestPersonalNames::NamesAreTakenOut() {
    QFETCH(QString, text);
    QTEST(WithoutPersonalNames(text, Anna()), "expected");
}

void TestPersonalNames::PicturesBecomeNumbers_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    Row("known by its path", "The picture /home/anna/Bilder/Urlaub am Meer.JPG is gone.",
        "The picture <picture 1>.jpg is gone.");
    Row("the other slash", "D:\\Fotos\\Kind.png", "<picture 2>.png");
    Row("by its name", "\"kind.PNG\" is too large", "\"<picture 2>.png\" is too large");
    Row("taken out before", "The picture /mnt/Anderes Bild.webp is gone.",
        "The picture <picture>.webp is gone.");
    Row("an address", "file:///mnt/a b.png", "file:<picture>.png");
    Row("on a share", "\"\\\\server\\us\\a b.png\"", "\"<picture>.png\"");
    Row("below home", "The picture ~/Anderes Bild.gif is gone.", "The picture <picture>.gif is gone.");
}

void TestPersonalNames::PicturesBecomeNumbers() {
    QFETCH(QString, text);
    QTEST(WithoutPersonalNames(text, Anna()), "expected");
}

void TestPersonalNames::WhatIsNobodysStays_data() {
    QTest::addColumn<QString>("text");
    for (const char* text :
         {"annabel, Johanna and anna1", "desk-70", "StringPixmapS = ://background/2.jpg", "/dev/hidraw4",
          "root:root on localhost", "/home", "~/Kivo Tool/whole.png cannot be written",
          "hid#vid_04d9&pid_fd01&mi_01#7&2f3d7a2c"}) {
        QTest::newRow(text) << QString::fromUtf8(text);
    }
}

void TestPersonalNames::WhatIsNobodysStays() {
    QFETCH(QString, text);
    QCOMPARE(WithoutPersonalNames(text, Anna()), text);
}

// Awkward names, both slashes, any case, between words of a log.
void TestPersonalNames::NothingPersonalIsEverLeft() {
    QRandomGenerator random(18);
    for (int round = 0; round < 2000; ++round) {
        const QString user = RandomName(random);
        const QString host = RandomName(random);
        const QString picture = RandomName(random) + QStringLiteral(".png");
        const bool isWindows = random.bounded(2) == 1;
        const QString home =
            (isWindows ? QStringLiteral("C:/Users/") : QStringLiteral("/srv/people/")) + user;
        PersonalNames names;
        names.homes = QStringList{home};
        names.users = QStringList{user};
        names.hosts = QStringList{host};
        names.pictures = QStringList{home + QLatin1Char('/') + picture};
        QString text = QStringLiteral("%1/a.txt: \"%2\" of %3 on %4; %5, %1.")
                           .arg(home, names.pictures.constFirst(), user, host, picture);
        if (isWindows) {
            text.replace(QLatin1Char('/'), QLatin1Char('\\'));
        }
        switch (random.bounded(4)) {
            case 0:
                text = text.toLower();
                break;
            case 1:
                text = text.normalized(QString::NormalizationForm_D);
                break;
            case 2:
                text = text.normalized(QString::NormalizationForm_C);
                break;
            default:
                break;
        }
        const QString result = WithoutPersonalNames(text, names);
        const QString plain = result.normalized(QString::NormalizationForm_D).toUpper();
        for (const QString& secret : {user, host, picture, QStringLiteral("xq"), QStringLiteral("zv")}) {
            const QString sought = secret.normalized(QString::NormalizationForm_D).toUpper();
            QVERIFY2(!plain.contains(sought), qPrintable(text + QStringLiteral(" gave ") + result));
        }
    }
}

void TestPersonalNames::ThisProcessKnowsItsHome() {
    QCOMPARE(WithoutPersonalNames(QDir::homePath() + QStringLiteral("/x"), NamesOfThisUser()),
             QStringLiteral("~/x"));
}

KIVO_GUILESS_TEST(TestPersonalNames)
#include "tst_personal_names.moc"
