#include "panel/panel_report.h"

#include <QFile>
#include <QStringList>

namespace kivo {

namespace {

constexpr int kShownOfId = 12;

// By item. The window's names would be in its language.
constexpr std::array<const char*, kLiveValueCount> kItemNames{
    "temperature", "load", "memory", "time", "power", "date", "fan", "text", "second text"};
static_assert(kItemNames.back() != nullptr, "An item has no name.");

QString NameOf(const SharedFrame& frame) {
    if (!frame) {
        return QStringLiteral("none known");
    }
    if (frame->light == PanelLight::Black) {
        return QStringLiteral("black");
    }
    const ScreenState& state = frame->state;
    const QString what = state.custom ? QStringLiteral("custom layout %1").arg(state.variant)
                                      : QStringLiteral("theme %1").arg(int(state.theme));
    const QString id =
        frame->id.isEmpty() ? QStringLiteral("in doubt") : QString::fromLatin1(frame->id.left(kShownOfId));
    return QStringLiteral("%1, %2, %3")
        .arg(what,
             state.orientation == Orientation::Landscape ? QStringLiteral("landscape")
                                                         : QStringLiteral("portrait"),
             id);
}

QString OwedText(const PanelRecord& record) {
    const OwedReports owed = WhatIsOwed(record);
    QStringList parts;
    if (owed.frame) {
        parts.append(QStringLiteral("frame"));
    }
    if (owed.orientation) {
        parts.append(QStringLiteral("orientation"));
    }
    if (owed.clock) {
        parts.append(QStringLiteral("time show"));
    }
    return parts.isEmpty() ? QStringLiteral("nothing") : parts.join(QStringLiteral(", "));
}

QString TakenTexts(const PanelRecord& record) {
    const ItemTexts texts = ShownTexts(record);
    QStringList parts;
    for (const ItemFacts& facts : kItemTable) {
        const QString& text = texts.at(size_t(facts.item));
        if (!text.isEmpty()) {
            const QString shown =
                facts.hasLiveValue ? text.trimmed() : QStringLiteral("<%1 characters>").arg(text.size());
            parts.append(
                QStringLiteral("%1 %2").arg(QLatin1String(kItemNames.at(size_t(facts.item))), shown));
        }
    }
    return parts.isEmpty() ? QStringLiteral("none") : parts.join(QStringLiteral("; "));
}

}  // namespace

QString ConditionName(PanelCondition condition) {
    switch (condition) {
        case PanelCondition::NoScreen:
            return QStringLiteral("no screen");
        case PanelCondition::Denied:
            return QStringLiteral("there, but this user has no right to open it");
        case PanelCondition::Refusing:
            return QStringLiteral("there, but it takes no report; another program may have it");
        case PanelCondition::Connected:
            return QStringLiteral("connected");
        case PanelCondition::Sending:
            return QStringLiteral("a frame is on its way");
        case PanelCondition::Sent:
            return QStringLiteral("connected, a frame was just taken");
        case PanelCondition::TryingAgain:
            return QStringLiteral("part was not taken, trying again");
    }
    return {};
}

PanelFacts FactsOf(const PanelRecord& record, std::chrono::milliseconds now) {
    PanelFacts facts{
        {QStringLiteral("state"), ConditionName(StatusOf(record, now).condition)},
        {QStringLiteral("data node"),
         record.path.isEmpty() ? QStringLiteral("none") : QFile::decodeName(record.path)},
        // Not the name itself: it is a serial number.
        {QStringLiteral("tells itself apart"),
         record.panelKey.isEmpty() ? QStringLiteral("no") : QStringLiteral("yes")},
        {QStringLiteral("to show"), NameOf(record.desired.frame)},
        {QStringLiteral("has taken"), NameOf(record.acknowledged.frame)},
        {QStringLiteral("owed"), OwedText(record)},
        {QStringLiteral("texts taken"), TakenTexts(record)},
        {QStringLiteral("rounds refused"), QString::number(record.refusedRounds)},
    };
    if (record.desired.light != PanelLight::Full) {
        const bool isBlack = record.desired.light == PanelLight::Black;
        facts.append(
            {QStringLiteral("darkened"), isBlack ? QStringLiteral("black") : QStringLiteral("dimmed")});
    }
    if (record.frameTakenAt.isValid()) {
        facts.append(
            {QStringLiteral("last frame taken"), record.frameTakenAt.toString(QStringLiteral("HH:mm:ss"))});
    }
    return facts;
}

PanelFacts FactsOf(const std::optional<RememberedPanel>& remembered) {
    if (!remembered) {
        return {};
    }
    return {{QStringLiteral("took last"), QString::fromLatin1(remembered->frameId.left(kShownOfId))},
            {QStringLiteral("tells itself apart"),
             remembered->panelKey.isEmpty() ? QStringLiteral("no") : QStringLiteral("yes")}};
}

}  // namespace kivo
