#include <QtTest>

#include "../session/outside_caller.h"
#include "support/test_program.h"
#include "window/outside_change.h"

using namespace kivo;
using namespace kivo::test;

Q_DECLARE_METATYPE(kivo::OutsideCommands)

// What a second start's commands make of the saved state.
class TestOutsideChange : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void CommandsChangeTheirOwn_data();
    void CommandsChangeTheirOwn();
    void PictureGoesToWhatIsShownThen();
    void AnotherPictureIsUntrimmed();
    void ThemeHasNoText();
    void EmptyTextUnticksIt();
};

namespace {

OutsideCommands Both(const OutsideCommands& a, const OutsideCommands& b) {
    OutsideCommands commands = a;
    for (size_t kind = 0; kind < b.size(); ++kind) {
        commands[kind] = b[kind] ? b[kind] : commands[kind];
    }
    return commands;
}

EditState Factory() {
    EditState state;
    state.themes = FactoryThemeState(InterfaceLanguage::English);
    return state;
}

EditState FactoryLayout() {
    EditState state = Factory();
    state.themes.mode = 1;
    return state;
}

std::optional<EditState> Changed(const EditState& saved, const OutsideCommands& commands) {
    QString trouble;
    const std::optional<EditState> next = ChangedFromOutside(saved, commands, trouble);
    return trouble.isEmpty() == next.has_value() ? next : std::nullopt;
}

}  // namespace

void TestOutsideChange::CommandsChangeTheirOwn_data() {
    QTest::addColumn<OutsideCommands>("commands");
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("theme");
    QTest::addColumn<int>("style");
    QTest::addColumn<int>("orientation");
    const OutsideCommands portrait = Asked(OutsideKind::Orientation, "portrait");
    QTest::newRow("a theme") << Asked(OutsideKind::Theme, "3") << 0 << 3 << 0 << 0;
    QTest::newRow("five items") << Asked(OutsideKind::Layout, "five") << 1 << 0 << 0 << 0;
    QTest::newRow("one item") << Asked(OutsideKind::Layout, "one") << 1 << 0 << 1 << 0;
    QTest::newRow("upright") << portrait << 0 << 0 << 0 << 1;
    QTest::newRow("an upright theme") << Both(Asked(OutsideKind::Theme, "2"), portrait) << 0 << 2 << 0 << 1;
    QTest::newRow("nothing of the kind") << Asked(OutsideKind::Show) << 0 << 0 << 0 << 0;
}

void TestOutsideChange::CommandsChangeTheirOwn() {
    QFETCH(OutsideCommands, commands);
    const EditState before = Factory();
    const std::optional<EditState> next = Changed(before, commands);
    QVERIFY(next);
    QTEST(next->themes.mode, "mode");
    QTEST(next->themes.theme, "theme");
    QTEST(next->themes.customStyle, "style");
    QTEST(int(next->themes.orientation), "orientation");
    QVERIFY(next->themes.layouts == before.themes.layouts);
    // Once more changes nothing.
    QVERIFY(Changed(*next, commands) == next);
}

void TestOutsideChange::PictureGoesToWhatIsShownThen() {
    const EditState before = Factory();
    const OutsideCommands commands =
        Both(Both(Asked(OutsideKind::Theme, "2"), Asked(OutsideKind::Orientation, "portrait")),
             Asked(OutsideKind::Picture, "/home/a.png"));
    const std::optional<EditState> next = Changed(before, commands);
    QVERIFY(next);
    for (size_t layout = 0; layout < next->themes.layouts.size(); ++layout) {
        const bool isShown = layout == size_t(ThemeLayoutIndex(Theme::Tdp, Orientation::Portrait));
        QCOMPARE(next->themes.layouts[layout].picture == QStringLiteral("/home/a.png"), isShown);
    }
}

void TestOutsideChange::AnotherPictureIsUntrimmed() {
    EditState before = FactoryLayout();
    LayoutRecord& layout = LayoutInForce(before);
    layout.picture = QStringLiteral("/home/a.png");
    layout.xZoom = 40;
    layout.yZoom = 20;
    const std::optional<EditState> same = Changed(before, Asked(OutsideKind::Picture, "/home/./a.png"));
    QVERIFY(same);
    QCOMPARE(LayoutInForce(*same).xZoom, 40);
    const std::optional<EditState> other = Changed(before, Asked(OutsideKind::Picture, "/home/b.png"));
    QVERIFY(other);
    QCOMPARE(LayoutInForce(*other).xZoom, 0);
}

void TestOutsideChange::ThemeHasNoText() {
    QVERIFY(!Changed(Factory(), Asked(OutsideKind::Text, "a")));
    const std::optional<EditState> next =
        Changed(Factory(), Both(Asked(OutsideKind::Layout, "one"), Asked(OutsideKind::Text, "a \n")));
    QVERIFY(next);
    QCOMPARE(LayoutInForce(*next).freeText, QStringLiteral("a"));
    QVERIFY(LayoutInForce(*next).selected[OtherText]);
}

void TestOutsideChange::EmptyTextUnticksIt() {
    const std::optional<EditState> with = Changed(FactoryLayout(), Asked(OutsideKind::Text, "a"));
    QVERIFY(with);
    QVERIFY(LayoutInForce(*with).shown[OtherText]);
    const std::optional<EditState> without = Changed(*with, Asked(OutsideKind::Text, ""));
    QVERIFY(without);
    QVERIFY(!LayoutInForce(*without).shown[OtherText]);
}

KIVO_GUILESS_TEST(TestOutsideChange)
#include "tst_outside_change.moc"
