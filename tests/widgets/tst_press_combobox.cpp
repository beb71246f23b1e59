#include <QAbstractItemView>
#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "support/test_program.h"
#include "widgets/press_combobox.h"

using namespace kivo;

class TestPressCombobox : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_box = std::make_unique<PressCombobox>();
        m_box->addItems({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
        m_box->resize(74, 26);
        m_box->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_box.get()));
    }

    void tellsOfALeftPressBeforeTheListOpens() {
        bool wasOpen = true;
        int count = 0;
        connect(m_box.get(), &PressCombobox::clicked, this, [&] {
            wasOpen = m_box->view()->isVisible();
            ++count;
        });
        QTest::mousePress(m_box.get(), Qt::LeftButton);
        QCOMPARE(count, 1);
        QVERIFY(!wasOpen);
        QVERIFY(m_box->view()->isVisible());
    }

    void aRightPressEmitsNothing() {
        QSignalSpy clicked(m_box.get(), &PressCombobox::clicked);
        QTest::mousePress(m_box.get(), Qt::RightButton);
        QCOMPARE(clicked.count(), 0);
    }

    void keysThatOpenTheListTellToo_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifier");
        QTest::addColumn<int>("count");
        QTest::newRow("space") << int(Qt::Key_Space) << int(Qt::NoModifier) << 1;
        QTest::newRow("F4") << int(Qt::Key_F4) << int(Qt::NoModifier) << 1;
        QTest::newRow("alt and down") << int(Qt::Key_Down) << int(Qt::AltModifier) << 1;
        QTest::newRow("F4 with shift") << int(Qt::Key_F4) << int(Qt::ShiftModifier) << 0;
        QTest::newRow("alt and F4") << int(Qt::Key_F4) << int(Qt::AltModifier) << 0;
        QTest::newRow("alt and up") << int(Qt::Key_Up) << int(Qt::AltModifier) << 0;
        QTest::newRow("down") << int(Qt::Key_Down) << int(Qt::NoModifier) << 0;
    }
    void keysThatOpenTheListTellToo() {
        QFETCH(int, key);
        QFETCH(int, modifier);
        QFETCH(int, count);
        QSignalSpy clicked(m_box.get(), &PressCombobox::clicked);
        QTest::keyClick(m_box.get(), Qt::Key(key), Qt::KeyboardModifiers(modifier));
        QCOMPARE(clicked.count(), count);
        QCOMPARE(m_box->view()->isVisible(), count == 1);
    }

    void aKeyTellsBeforeTheListOpens() {
        bool wasOpen = true;
        connect(m_box.get(), &PressCombobox::clicked, this, [&] { wasOpen = m_box->view()->isVisible(); });
        QTest::keyClick(m_box.get(), Qt::Key_Space);
        QVERIFY(!wasOpen);
    }

    void anEmptyListDoesNotOpenByKey() {
        m_box->clear();
        QSignalSpy clicked(m_box.get(), &PressCombobox::clicked);
        QTest::keyClick(m_box.get(), Qt::Key_Space);
        QCOMPARE(clicked.count(), 0);
    }

    void openingFromTheProgramTellsNothing() {
        QSignalSpy clicked(m_box.get(), &PressCombobox::clicked);
        m_box->showPopup();
        QCOMPARE(clicked.count(), 0);
    }

    void theListHasRowsOfThirty() {
        m_box->showPopup();
        for (int row = 0; row < 3; ++row) {
            QCOMPARE(m_box->view()->visualRect(m_box->model()->index(row, 0)).height(), 30);
        }
        QTest::mouseClick(m_box->view()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          m_box->view()->visualRect(m_box->model()->index(2, 0)).center());
        QTRY_COMPARE(m_box->currentIndex(), 2);
    }

    void looksOffWhenItIs() {
        const QImage on = m_box->grab().toImage();
        m_box->setEnabled(false);
        QVERIFY(m_box->grab().toImage() != on);
    }

private:
    std::unique_ptr<PressCombobox> m_box;
};

KIVO_TEST(TestPressCombobox)
#include "tst_press_combobox.moc"
