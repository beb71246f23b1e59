#include "session/outside_control.h"
#include "support/person.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// What a second start asks for, as the window does it: without a dialog, beside what is being edited.
class TestWindowOutside : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void init();
    void cleanup() { m_desk.reset(); }
    void CommandIsOnThePanel_data();
    void CommandIsOnThePanel();
    void PictureIsListedAndShown();
    void PictureThatCannotBeShownChangesNothing();
    void PictureNobodyWaitsForChangesNothing();
    void WhatIsThereAlreadySendsNothing();
    void TextOfAThemeIsRefused();
    void EditThatIsOpenStays();
    void UnappliedChoiceStays();
    void ApplyingAfterwardsWins();
    void SettingsThatCannotBeSavedAreToldAndNothingIsSent();
    void BlankPanelIsBlackUntilItIsNot();
    void ShowBringsTheWindow();
    void CommandsOfTheStartAreItsFirstFrame();

private:
    // The answer, once it is there.
    OutsideAnswer Ask(const OutsideCommands& commands) const;
    bool IsOnThePanel(const ScreenState& state) const;

    std::unique_ptr<Desk> m_desk;
};

namespace {

OutsideCommands Asked(std::initializer_list<std::pair<OutsideKind, QString>> list) {
    OutsideCommands commands;
    for (const auto& [kind, value] : list) {
        commands[size_t(kind)] = value;
    }
    return commands;
}
OutsideCommands Asked(OutsideKind kind, const char* value) {
    return Asked({{kind, QString::fromUtf8(value)}});
}

bool IsBlack(const QImage& image) {
    QImage black(image.size(), QImage::Format_RGB16);
    black.fill(Qt::black);
    return image.convertToFormat(QImage::Format_RGB16) == black;
}

// A picture of one's own, in the test's home.
QString MakePicture(const char* name) {
    const QString path = QDir::home().filePath(QString::fromLatin1(name));
    QImage image(640, 340, QImage::Format_RGB32);
    image.fill(QColor(20, 90, 160));
    return image.save(path, "PNG") ? path : QString();
}

}  // namespace

void TestWindowOutside::init() {
    SetUpProfile();
    m_desk = std::make_unique<Desk>();
    QTRY_VERIFY_WITH_TIMEOUT(m_desk->panel.State().counts.areas > 5, 30000);
}

OutsideAnswer TestWindowOutside::Ask(const OutsideCommands& commands) const {
    const auto answer = std::make_shared<std::optional<OutsideAnswer>>();
    m_desk->window->TakeFromOutside(
        commands, {[] { return true; }, [answer](const OutsideAnswer& given) { *answer = given; }});
    if (!QTest::qWaitFor([&answer] { return answer->has_value(); }, 30000)) {
        return {false, QStringLiteral("no answer")};
    }
    return **answer;
}

bool TestWindowOutside::IsOnThePanel(const ScreenState& state) const {
    return QTest::qWaitFor(
        [this, &state] {
            const bool isWhole =
                !m_desk->window->Session().Status().isFrameOwed && !m_desk->window->Session().IsUploading();
            return isWhole && m_desk->window->Session().Applied() == state;
        },
        30000);
}

void TestWindowOutside::CommandIsOnThePanel_data() {
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("value");
    const auto row = [](const char* name, OutsideKind kind, const char* value) {
        QTest::newRow(name) << int(kind) << QString::fromUtf8(value);
    };
    row("a theme", OutsideKind::Theme, "3");
    row("five items", OutsideKind::Layout, "five");
    row("one item", OutsideKind::Layout, "one");
    row("upright", OutsideKind::Orientation, "portrait");
}

void TestWindowOutside::CommandIsOnThePanel() {
    QFETCH(int, kind);
    QFETCH(QString, value);
    const ScreenState before = SavedLook();
    const OutsideAnswer answer = Ask(Asked({{OutsideKind(kind), value}}));
    QVERIFY2(answer.isTaken, qPrintable(answer.line));
    QVERIFY(SavedLook() != before);
    QVERIFY(IsOnThePanel(SavedLook()));
    QVERIFY(m_desk->Editor()->Shown() == SavedLook());
    QVERIFY(!m_desk->window->isVisible());
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    QCOMPARE(m_desk->panel.State().counts.errors, quint64(0));
}

void TestWindowOutside::PictureIsListedAndShown() {
    const QString path = MakePicture("evening.png");
    const int rows = m_desk->Find<QListWidget>("pictureList")->count();
    const OutsideCommands commands = Asked({{OutsideKind::Layout, QStringLiteral("five")},
                                            {OutsideKind::Picture, path},
                                            {OutsideKind::Text, QStringLiteral("Good night")}});
    QVERIFY(Ask(commands).isTaken);
    QCOMPARE(m_desk->Find<QListWidget>("pictureList")->count(), rows + 1);
    QCOMPARE(SavedLook().layout.picture, path);
    QCOMPARE(SavedLook().layout.freeText, QStringLiteral("Good night"));
    QVERIFY(IsOnThePanel(SavedLook()));
    // Once more it is there already.
    QVERIFY(Ask(commands).isTaken);
    QCOMPARE(m_desk->Find<QListWidget>("pictureList")->count(), rows + 1);
    // It is kept in the list of the next start.
    m_desk->Restart();
    QCOMPARE(m_desk->Find<QListWidget>("pictureList")->count(), rows + 1);
}

void TestWindowOutside::PictureThatCannotBeShownChangesNothing() {
    const QString path = QDir::home().filePath(QStringLiteral("broken.png"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("no picture") > 0);
    file.close();
    const ScreenState before = SavedLook();
    const int rows = m_desk->Find<QListWidget>("pictureList")->count();
    const OutsideAnswer answer =
        Ask(Asked({{OutsideKind::Theme, QStringLiteral("2")}, {OutsideKind::Picture, path}}));
    QVERIFY(!answer.isTaken);
    QVERIFY2(answer.line.contains(path), qPrintable(answer.line));
    QVERIFY(SavedLook() == before);
    QCOMPARE(m_desk->Find<QListWidget>("pictureList")->count(), rows);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void TestWindowOutside::PictureNobodyWaitsForChangesNothing() {
    const ScreenState before = SavedLook();
    bool isAnswered = false;
    m_desk->window->TakeFromOutside(
        Asked({{OutsideKind::Picture, MakePicture("late.png")}}),
        {[] { return false; }, [&isAnswered](const OutsideAnswer&) { isAnswered = true; }});
    m_desk->WaitForPictures();
    QVERIFY(!isAnswered);
    QVERIFY(SavedLook() == before);
}

void TestWindowOutside::WhatIsThereAlreadySendsNothing() {
    QVERIFY(Ask(Asked(OutsideKind::Theme, "2")).isTaken);
    QVERIFY(IsOnThePanel(SavedLook()));
    const quint64 frames = m_desk->panel.State().counts.frames;
    QVERIFY(Ask(Asked(OutsideKind::Theme, "2")).isTaken);
    QVERIFY(!m_desk->window->Session().IsUploading());
    QCOMPARE(m_desk->panel.State().counts.frames, frames);
}

void TestWindowOutside::TextOfAThemeIsRefused() {
    const OutsideAnswer answer = Ask(Asked(OutsideKind::Text, "Hello"));
    QVERIFY(!answer.isTaken);
    QVERIFY(answer.line.contains(QStringLiteral("theme")));
}

void TestWindowOutside::EditThatIsOpenStays() {
    m_desk->Show();
    QVERIFY(Ask(Asked(OutsideKind::Layout, "five")).isTaken);
    ClickOn(*m_desk, "btnEdit");
    m_desk->Editor()->slotShowEdt();
    QVERIFY(m_desk->Editor()->IsTextEntryOpen());
    const EditState edited = m_desk->Editor()->Edited();
    QVERIFY(Ask(Asked(OutsideKind::Theme, "3")).isTaken);
    QVERIFY(m_desk->Editor()->IsEditing());
    QVERIFY(m_desk->Editor()->IsTextEntryOpen());
    QVERIFY(m_desk->Editor()->Edited() == edited);
    QVERIFY(IsOnThePanel(SavedLook()));
    QVERIFY(!SavedLook().custom);
}

void TestWindowOutside::UnappliedChoiceStays() {
    m_desk->Show();
    ClickListRow(*m_desk, "themeList", 3);
    QVERIFY(Ask(Asked(OutsideKind::Theme, "2")).isTaken);
    QCOMPARE(m_desk->Editor()->Edited().themes.theme, 3);
    QCOMPARE(int(SavedLook().theme), 2);
    QVERIFY(IsOnThePanel(SavedLook()));
}

void TestWindowOutside::ApplyingAfterwardsWins() {
    m_desk->Show();
    ClickListRow(*m_desk, "themeList", 3);
    QVERIFY(Ask(Asked(OutsideKind::Theme, "2")).isTaken);
    QVERIFY(ApplyAndWait(*m_desk));
    QCOMPARE(int(SavedLook().theme), 3);
    QVERIFY(IsOnThePanel(SavedLook()));
}

void TestWindowOutside::SettingsThatCannotBeSavedAreToldAndNothingIsSent() {
    const quint64 frames = m_desk->panel.State().counts.frames;
    const EditState before = m_desk->Editor()->Saved();
    const QString folder = SettingsFolder();
    QVERIFY(QDir(folder).removeRecursively());
    QFile file(folder);  // even the superuser cannot write settings below a file
    QVERIFY(file.open(QIODevice::WriteOnly));
    const OutsideAnswer answer = Ask(Asked(OutsideKind::Theme, "2"));
    QVERIFY(file.remove());
    QVERIFY(!answer.isTaken);
    QVERIFY(m_desk->Editor()->Saved() == before);
    QVERIFY(!m_desk->window->Session().IsUploading());
    QCOMPARE(m_desk->panel.State().counts.frames, frames);
}

void TestWindowOutside::BlankPanelIsBlackUntilItIsNot() {
    QVERIFY(Ask(Asked(OutsideKind::Blank, "on")).isTaken);
    QTRY_VERIFY_WITH_TIMEOUT(IsBlack(m_desk->panel.State().image), 30000);
    // What is applied meanwhile waits.
    QVERIFY(Ask(Asked(OutsideKind::Theme, "2")).isTaken);
    QTRY_VERIFY_WITH_TIMEOUT(!m_desk->window->Session().IsUploading(), 30000);
    QVERIFY(IsBlack(m_desk->panel.State().image));
    QVERIFY(Ask(Asked(OutsideKind::Blank, "off")).isTaken);
    QVERIFY(IsOnThePanel(SavedLook()));
    QCOMPARE(int(SavedLook().theme), 2);
    QVERIFY(!IsBlack(m_desk->panel.State().image));
}

void TestWindowOutside::ShowBringsTheWindow() {
    QVERIFY(!m_desk->window->isVisible());
    QVERIFY(Ask(Asked(OutsideKind::Show, "")).isTaken);
    QVERIFY(m_desk->window->isVisible());
}

void TestWindowOutside::CommandsOfTheStartAreItsFirstFrame() {
    m_desk->Restart();
    const quint64 frames = m_desk->panel.State().counts.frames;
    QVERIFY(Ask(Asked(OutsideKind::Theme, "3")).isTaken);
    // No frame of the former settings goes before it.
    QTRY_COMPARE_WITH_TIMEOUT(m_desk->panel.State().counts.frames, frames + 1, 30000);
    QVERIFY(IsOnThePanel(SavedLook()));
    QCOMPARE(int(m_desk->window->Session().Applied().theme), 3);
}

KIVO_TEST(TestWindowOutside)
#include "tst_window_outside.moc"
