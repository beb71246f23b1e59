#include <QSet>
#include <QTest>

#include "model/theme_table.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

// The items that a layout places, in the order of their places.
QVector<int> PlacedIn(const ThemeLayout& layout) {
    QVector<int> items;
    for (const ThemePlace& place : layout.places) {
        if (!place.text.isNull()) {
            items.append(place.item);
        }
    }
    return items;
}

}  // namespace

class TestThemeTable : public QObject {
    Q_OBJECT

private slots:
    void NumbersAreTheStoredOnes() {
        QCOMPARE(int(Theme::Default), 0);
        QCOMPARE(int(Theme::Scene), 1);
        QCOMPARE(int(Theme::Tdp), 2);
        QCOMPARE(int(Theme::Time), 3);
        QCOMPARE(kThemeCount, 4);
    }

    void EachThemeIsToldFromTheOthers() {
        QSet<QByteArray> names;
        for (const ThemeFacts& facts : kThemeTable) {
            names.insert(facts.name);
            QVERIFY(*facts.files != 0);
        }
        QCOMPARE(names.size(), kThemeCount);
    }

    void BothOrientationsPlaceTheSameItemsOnce() {
        for (const ThemeFacts& facts : kThemeTable) {
            const QVector<int> items = PlacedIn(facts.landscape);
            QCOMPARE(PlacedIn(facts.portrait), items);
            QVERIFY2(items.contains(facts.landscape.highlight), facts.files);
            QCOMPARE(facts.portrait.highlight, facts.landscape.highlight);
            for (const int item : items) {
                QVERIFY2(HasLiveValue(item), facts.files);
                QCOMPARE(items.count(item), 1);
            }
        }
    }

    void AnIconOfItsOwnStandsInBothOrientations() {
        for (const ThemeFacts& facts : kThemeTable) {
            QCOMPARE(facts.portrait.icon.isNull(), facts.landscape.icon.isNull());
        }
    }

    void OnlyTheSceneIsTheHourAloneAndHasNoAccent() {
        for (const ThemeFacts& facts : kThemeTable) {
            QCOMPARE(Has(facts.theme, kHourAlone), facts.theme == Theme::Scene);
            QCOMPARE(HasAccent(facts.theme), facts.theme != Theme::Scene);
        }
    }

    void WhatAnHourAloneShowsIsTimeAndDate() {
        for (const ThemeFacts& facts : kThemeTable) {
            if (Has(facts.theme, kHourAlone)) {
                QCOMPARE(PlacedIn(facts.landscape), (QVector<int>{Time, Date}));
            }
        }
    }
};

KIVO_APPLESS_TEST(TestThemeTable)
#include "tst_theme_table.moc"
