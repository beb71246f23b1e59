#include <QFileDialog>
#include <QTemporaryDir>

#include "compose/shared_layout.h"
#include "support/person.h"
#include "support/test_program.h"
#include "window/sharing_buttons.h"

using namespace kivo;
using namespace kivo::test;

Q_DECLARE_METATYPE(kivo::OutsideCommands)

// A layout as a file, out of one home and into another.
class TestWindowSharing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void init();
    void cleanup() { m_desk.reset(); }
    void LayoutLooksTheSameInAnotherHome_data();
    void LayoutLooksTheSameInAnotherHome();
    void ImportIsOnThePanelAndCanBeUndone();
    void OtherEditsWait();
    void EditsOfThatLayoutAreAStepAway();
    void OutsideImportLeavesAnEditAlone();
    void BadFileIsToldAndChangesNothing();
    void EveryTroubleIsTold_data();
    void EveryTroubleIsTold();
    void ThePictureThatIsGoneIsTold();
    void TheDialogsAskForLayouts();
    void SettingsThatCannotBeSavedChangeNothing();
    void CancelledDialogDoesNothing();
    void ButtonsAreReachedByKeys();

private:
    void Start();
    QString File(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }
    OutsideAnswer Ask(OutsideCommands commands) const;
    bool IsSettled() const;
    // Presses the button and comes back when what follows is over.
    void Export(const QString& file);
    bool Import(const QString& file);
    QStringList Kept() const;

    const QTemporaryDir m_folder;
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

bool Write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray Content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QImage Painted() {
    QImage image(1500, 900, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, qRgb(x / 6, y / 4, 255 - x / 8));
        }
    }
    return image;
}

// A layout that stands in a file by hand.
const QByteArray kUprightTime =
    "{\"Kivo Screen layout\": 1, \"shows\": \"theme\", \"theme\": 3, \"orientation\": \"portrait\","
    " \"dim\": 40, \"picture\": {\"builtIn\": 7}}";
const QByteArray kOneItem =
    "{\"Kivo Screen layout\": 1, \"shows\": \"one\", \"slots\": [-1, -1, 1, -1, -1], \"text\": \"Hello\"}";

}  // namespace

void TestWindowSharing::init() {
    SetUpProfile();
    Start();
}

void TestWindowSharing::Start() {
    m_desk = std::make_unique<Desk>();
    QTRY_VERIFY_WITH_TIMEOUT(m_desk->panel.State().counts.areas > 5, 30000);
}

OutsideAnswer TestWindowSharing::Ask(OutsideCommands commands) const {
    const auto answer = std::make_shared<std::optional<OutsideAnswer>>();
    m_desk->window->TakeFromOutside(
        commands, {[] { return true; }, [answer](const OutsideAnswer& given) { *answer = given; }});
    if (!QTest::qWaitFor([&answer] { return answer->has_value(); }, 30000)) {
        return {false, QStringLiteral("no answer")};
    }
    return **answer;
}

bool TestWindowSharing::IsSettled() const {
    return QTest::qWaitFor(
        [this] {
            const LiveSession& session = m_desk->window->Session();
            return !session.Status().isFrameOwed && !session.IsUploading() &&
                   QApplication::activeModalWidget() == nullptr && session.Applied() == SavedLook();
        },
        30000);
}

void TestWindowSharing::Export(const QString& file) {
    QFile::remove(file);
    m_desk->layoutFile = file;
    ClickOn(*m_desk, "btnExport");
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(file).size() > 0, 30000);
}

// False where no upload came.
bool TestWindowSharing::Import(const QString& file) {
    const auto isSent = std::make_shared<bool>(false);
    OnNextDialog<NimbProcessDialog>(m_desk->window.get(), [isSent](NimbProcessDialog*) { *isSent = true; });
    m_desk->layoutFile = file;
    ClickOn(*m_desk, "btnImport");
    return QTest::qWaitFor([&isSent] { return *isSent; }, 30000) && IsSettled();
}

QStringList TestWindowSharing::Kept() const {
    return QDir(SettingsFolder() + QStringLiteral("/Pictures")).entryList(QDir::Files | QDir::Hidden);
}

void TestWindowSharing::LayoutLooksTheSameInAnotherHome_data() {
    QTest::addColumn<OutsideCommands>("commands");
    const QString picture = File("my lake.png");
    QVERIFY(Painted().save(picture));
    QTest::newRow("five items") << Asked({{OutsideKind::Layout, QStringLiteral("five")},
                                          {OutsideKind::Picture, picture},
                                          {OutsideKind::Text, QStringLiteral("Good night, 晚安")}});
    QTest::newRow("one item, upright") << Asked({{OutsideKind::Layout, QStringLiteral("one")},
                                                 {OutsideKind::Orientation, QStringLiteral("portrait")},
                                                 {OutsideKind::Picture, picture}});
    QTest::newRow("a theme") << Asked(
        {{OutsideKind::Theme, QStringLiteral("2")}, {OutsideKind::Picture, picture}});
    QTest::newRow("a theme of the picture and the hour, upright") << Asked(
        {{OutsideKind::Theme, QStringLiteral("1")}, {OutsideKind::Orientation, QStringLiteral("portrait")}});
}

// The whole frame, with the same values in it.
void TestWindowSharing::LayoutLooksTheSameInAnotherHome() {
    QFETCH(OutsideCommands, commands);
    QVERIFY(Ask(commands).isTaken);
    QVERIFY(IsSettled());
    m_desk->Show();
    m_desk->Editor()->SetDim(35);
    m_desk->Editor()->SetBlur(10);
    QVERIFY(ApplyAndWait(*m_desk));
    QVERIFY(IsSettled());
    const QString file = File("shared.kivolayout");
    Export(file);
    QVERIFY(!Content(file).contains(QFile::encodeName(m_folder.path())));
    const ItemTexts texts = m_desk->window->Session().ShownTexts();
    const QImage there = ExpectedPanel(SavedLook(), texts);
    TRY_PANEL_SHOWS(*m_desk, SavedLook());
    m_desk.reset();

    SetUpProfile();
    Start();
    m_desk->Show();
    QVERIFY(ExpectedPanel(SavedLook(), texts) != there);
    QVERIFY(Import(file));
    QVERIFY(ExpectedPanel(SavedLook(), texts) == there);
    TRY_PANEL_SHOWS(*m_desk, SavedLook());
    QVERIFY(m_desk->Editor()->Edited() == m_desk->Editor()->Saved());
    // It is there after a restart, and again no file of the other home has a part in it.
    m_desk->Restart();
    QVERIFY(ExpectedPanel(m_desk->Editor()->Shown(), texts) == there);
}

void TestWindowSharing::ImportIsOnThePanelAndCanBeUndone() {
    QVERIFY(Write(File("a.kivolayout"), kOneItem));
    m_desk->Show();
    const EditState before = m_desk->Editor()->Edited();
    QVERIFY(Import(File("a.kivolayout")));
    const ScreenState look = SavedLook();
    QVERIFY(look.custom);
    QCOMPARE(look.variant, 1);
    QCOMPARE(look.slotItems[kCentreSlot], int(CpuUsage));
    QCOMPARE(look.layout.freeText, QStringLiteral("Hello"));
    QVERIFY(m_desk->Editor()->Shown() == look);
    TRY_PANEL_SHOWS(*m_desk, look);
    QVERIFY(m_desk->Editor()->CanUndo());
    m_desk->Editor()->Undo();
    QVERIFY(m_desk->Editor()->Edited().themes.layouts == before.themes.layouts);
    QVERIFY(m_desk->Editor()->Edited().slotTable == before.slotTable);
}

void TestWindowSharing::OtherEditsWait() {
    QVERIFY(Write(File("a.kivolayout"), kUprightTime));
    m_desk->Show();
    m_desk->Editor()->SetDim(77);  // of the theme that is shown
    const size_t edited = size_t(LayoutIndexInForce(m_desk->Editor()->Edited().themes));
    QVERIFY(Import(File("a.kivolayout")));
    QCOMPARE(m_desk->Editor()->Edited().themes.layouts[edited].dim, 77);
    QCOMPARE(m_desk->Editor()->Saved().themes.layouts[edited].dim, 0);
    QCOMPARE(SavedLook().layout.dim, 40);
    QCOMPARE(SavedLook().layout.picture, BuiltInBackgrounds().at(6));
    TRY_PANEL_SHOWS(*m_desk, SavedLook());
}

void TestWindowSharing::EditsOfThatLayoutAreAStepAway() {
    QVERIFY(Write(File("a.kivolayout"), kOneItem));
    QVERIFY(Ask(Asked({{OutsideKind::Layout, QStringLiteral("one")}})).isTaken);
    QVERIFY(IsSettled());
    m_desk->Show();
    m_desk->Editor()->SetDim(77);
    QVERIFY(Import(File("a.kivolayout")));
    QCOMPARE(m_desk->Editor()->Shown().layout.dim, 0);
    m_desk->Editor()->Undo();
    QCOMPARE(m_desk->Editor()->Shown().layout.dim, 77);
}

void TestWindowSharing::OutsideImportLeavesAnEditAlone() {
    QVERIFY(Write(File("a.kivolayout"), kUprightTime));
    m_desk->Show();
    m_desk->Editor()->SetDim(77);
    const EditState edited = m_desk->Editor()->Edited();
    QVERIFY(Ask(Asked({{OutsideKind::Apply, File("a.kivolayout")}})).isTaken);
    QVERIFY(m_desk->Editor()->Edited() == edited);
    QVERIFY(IsSettled());
    QCOMPARE(int(SavedLook().theme), 3);
    QCOMPARE(SavedLook().layout.dim, 40);
    // Nobody waits: nothing is done.
    QVERIFY(Write(File("b.kivolayout"), kOneItem));
    m_desk->window->TakeFromOutside(Asked({{OutsideKind::Apply, File("b.kivolayout")}}),
                                    {[] { return false; }, [](const OutsideAnswer&) {}});
    QTest::qWait(500);
    QCOMPARE(int(SavedLook().theme), 3);
}

void TestWindowSharing::BadFileIsToldAndChangesNothing() {
    QVERIFY(Write(File("bad.kivolayout"), "{\"Kivo Screen layout\": 1, \"blur\": 1e99}"));
    m_desk->Show();
    const EditState before = m_desk->Editor()->Edited();
    const int rows = m_desk->Find<QListWidget>("pictureList")->count();
    const auto box = AnswerNextBox(*m_desk, true);
    m_desk->layoutFile = File("bad.kivolayout");
    ClickOn(*m_desk, "btnImport");
    QTRY_COMPARE_WITH_TIMEOUT(box->count, 1, 30000);
    QVERIFY2(box->text.contains(QStringLiteral("no layout")), qPrintable(box->text));
    QVERIFY(m_desk->Editor()->Edited() == before);
    QCOMPARE(m_desk->Find<QListWidget>("pictureList")->count(), rows);
    const OutsideAnswer answer = Ask(Asked({{OutsideKind::Apply, File("bad.kivolayout")}}));
    QVERIFY(!answer.isTaken);
    QVERIFY2(answer.line.contains(QStringLiteral("'blur'")), qPrintable(answer.line));
    QVERIFY(!answer.line.contains(QLatin1Char('\n')));
    QVERIFY(m_desk->Editor()->Saved() == before);
}

void TestWindowSharing::EveryTroubleIsTold_data() {
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");  // null: there is no such file
    QTest::addColumn<QString>("told");
    QTest::newRow("of a newer program")
        << QStringLiteral("btnImport") << QStringLiteral("new.kivolayout")
        << QByteArray("{\"Kivo Screen layout\": 2}") << QStringLiteral("newer version");
    QTest::newRow("moved away") << QStringLiteral("btnImport") << QStringLiteral("gone.kivolayout")
                                << QByteArray() << QStringLiteral("cannot be read");
    QTest::newRow("into a folder that is gone")
        << QStringLiteral("btnExport") << QStringLiteral("gone/a.kivolayout") << QByteArray()
        << QStringLiteral("cannot be saved");
}

void TestWindowSharing::EveryTroubleIsTold() {
    QFETCH(QString, button);
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(QString, told);
    m_desk->layoutFile = m_folder.filePath(file);
    QVERIFY(content.isNull() || Write(m_desk->layoutFile, content));
    m_desk->Show();
    const EditState before = m_desk->Editor()->Edited();
    const auto box = AnswerNextBox(*m_desk, true);
    ClickOn(*m_desk, qPrintable(button));
    QTRY_COMPARE_WITH_TIMEOUT(box->count, 1, 30000);
    QVERIFY2(box->text.contains(told), qPrintable(box->text));
    QVERIFY(m_desk->Editor()->Edited() == before);
}

void TestWindowSharing::ThePictureThatIsGoneIsTold() {
    QVERIFY(Painted().save(File("lake.png")));
    m_desk->Show();
    m_desk->pictureToChoose = File("lake.png");
    ClickListRow(*m_desk, "pictureList", 0);
    m_desk->WaitForPictures();
    QVERIFY(QFile::remove(File("lake.png")));
    const auto box = AnswerNextBox(*m_desk, true);
    m_desk->layoutFile = File("without.kivolayout");
    ClickOn(*m_desk, "btnExport");
    QTRY_COMPARE_WITH_TIMEOUT(box->count, 1, 30000);
    QVERIFY2(box->text.contains(QStringLiteral("not exported")), qPrintable(box->text));
    QVERIFY(!QFile::exists(File("without.kivolayout")));
}

// The program's own, which the other tests answer in its place.
void TestWindowSharing::TheDialogsAskForLayouts() {
    m_desk->hasFileDialog = true;
    m_desk->Restart();
    m_desk->Show();
    const auto asked = [this](const char* button, const QString& file) {
        const auto seen = std::make_shared<QStringList>();
        OnNextDialog<QFileDialog>(m_desk->window.get(), [seen, file](QFileDialog* dialog) {
            *seen << dialog->selectedFiles() << dialog->nameFilters() << dialog->defaultSuffix();
            if (!file.isEmpty()) {
                dialog->selectFile(file);
            }
            QMetaObject::invokeMethod(dialog, file.isEmpty() ? "reject" : "accept");
        });
        ClickOn(*m_desk, button);
        return *seen;
    };
    const QStringList exported = asked("btnExport", File("by dialog.kivolayout"));
    QCOMPARE(exported.size(), 3);
    QVERIFY2(exported[0].endsWith(QStringLiteral(".kivolayout")), qPrintable(exported[0]));
    QVERIFY(exported[1].contains(QStringLiteral("(*.kivolayout)")));
    QCOMPARE(exported[2], QStringLiteral("kivolayout"));
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo(File("by dialog.kivolayout")).size() > 0, 30000);
    const EditState before = m_desk->Editor()->Edited();
    const QStringList imported = asked("btnImport", QString());
    QVERIFY(imported.size() >= 2);
    QVERIFY(imported[imported.size() - 2].contains(QStringLiteral("(*.kivolayout)")));
    QVERIFY(m_desk->Editor()->Edited() == before);
}

void TestWindowSharing::SettingsThatCannotBeSavedChangeNothing() {
    QVERIFY(Painted().save(File("my lake.png")));
    m_desk->Show();
    m_desk->pictureToChoose = File("my lake.png");
    ClickListRow(*m_desk, "pictureList", 0);
    Export(File("a.kivolayout"));
    m_desk.reset();
    SetUpProfile();
    Start();
    m_desk->Show();
    const EditState before = m_desk->Editor()->Edited();
    const int rows = m_desk->Find<QListWidget>("pictureList")->count();
    const QString folder = SettingsFolder();
    QVERIFY(QDir(folder).removeRecursively());
    QFile file(folder);  // even the superuser cannot write settings below a file
    QVERIFY(file.open(QIODevice::WriteOnly));
    const auto box = AnswerNextBox(*m_desk, true);
    m_desk->layoutFile = File("a.kivolayout");
    ClickOn(*m_desk, "btnImport");
    QTRY_COMPARE_WITH_TIMEOUT(box->count, 1, 30000);
    const OutsideAnswer answer = Ask(Asked({{OutsideKind::Apply, File("a.kivolayout")}}));
    QVERIFY(file.remove());
    QVERIFY(!answer.isTaken);
    QVERIFY(m_desk->Editor()->Edited() == before);
    QVERIFY(m_desk->Editor()->Saved() == before);
    QCOMPARE(m_desk->Find<QListWidget>("pictureList")->count(), rows);
    QVERIFY(Kept().isEmpty());
    // Tried again, it goes.
    QVERIFY(Import(File("a.kivolayout")));
    QCOMPARE(m_desk->Find<QListWidget>("pictureList")->count(), rows + 1);
    QCOMPARE(Kept(), QStringList{QStringLiteral("my lake.png")});
}

void TestWindowSharing::CancelledDialogDoesNothing() {
    m_desk->Show();
    const EditState before = m_desk->Editor()->Edited();
    for (const char* button : {"btnExport", "btnImport"}) {
        m_desk->layoutFile.clear();
        ClickOn(*m_desk, button);
        QVERIFY(m_desk->Editor()->Edited() == before);
    }
    ClickOn(*m_desk, "btnExport");
    QVERIFY(m_desk->proposedLayoutFile.endsWith(QStringLiteral(".kivolayout")));
}

void TestWindowSharing::ButtonsAreReachedByKeys() {
    m_desk->Show();
    for (const char* name : {"btnExport", "btnImport"}) {
        QVERIFY2(TabTo(*m_desk, name), name);
        QVERIFY(!m_desk->Find(name)->accessibleName().isEmpty());
    }
    m_desk->layoutFile.clear();
    m_desk->proposedLayoutFile = QStringLiteral("untouched");
    PressKey(*m_desk, Qt::Key_Space);
    QCOMPARE(m_desk->proposedLayoutFile, QString());
    // In line with the preview's right edge, as the switch is with its left one.
    const QRect buttons = m_desk->Find("sharingButtons")->geometry();
    const QRect orientation = m_desk->Find("orientationWell")->geometry();
    QCOMPARE(buttons.size(), orientation.size());
    QCOMPARE(buttons.top(), orientation.top());
    QCOMPARE(buttons.right() + 1, 483);
}

KIVO_TEST(TestWindowSharing)
#include "tst_window_sharing.moc"
