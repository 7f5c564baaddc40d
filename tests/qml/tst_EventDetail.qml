// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

LumenboardCase {
    id: root

    readonly property string time: "9:00 - 10:00 Uhr"
    readonly property var bare: ({ title: "Titel", speakers: "", startDateStr: "Montag, 1. Januar", startEndTimeStr: time, mAudiencesStr: "", oAudiencesStr: "", description: "" })
    readonly property string longTitle: "Wie lassen sich Brücken so bauen, dass man sie reparieren kann? ".repeat(4).slice(0, 200)

    function test_lines_data() {
        return [
            { tag: "bare", event: {}, showDate: true, lines: ["Titel", "Montag, 1. Januar, " + time] },
            { tag: "without date", event: {}, lines: ["Titel", time] },
            { tag: "everything", event: { speakers: "Ada", description: "Worum es geht", mAudiencesStr: "Erste, Zweite", oAudiencesStr: "Gäste" }, lines: ["Titel", "Ada", time, "Pflicht für Erste, Zweite", "Offen für Gäste", "Worum es geht"] },
        ];
    }

    function test_lines(data) {
        const event = Object.assign({}, bare, data.event);
        const large = make("components/EventDetail.qml", { event: event, showDate: data.showDate === true, width: 800, height: 600 });
        const small = make("components/EventSummary.qml", { event: event });
        waitForRendering(root);
        compare(readable(large), data.lines);
        compare(readable(small), data.lines.filter(line => line !== event.description).map(line => line.split(", ").includes(time) ? time : line));
    }

    function test_keepsTheTimeInSight_data() {
        return [{ tag: "wide", width: 840, height: 360 }, { tag: "small", width: 640, height: 300 }, { tag: "narrow", width: 420, height: 300 }];
    }

    function test_keepsTheTimeInSight(data) {
        const event = Object.assign({}, bare, { title: longTitle, speakers: "Ada Beispiel, Bert Muster, Cäcilie Probe", description: longTitle });
        const item = make("components/EventDetail.qml", { event: event, width: data.width, height: data.height });
        waitForRendering(root);
        compare(withText(item, event.startDateStr + ", " + time).truncated, false);
        for (const line of all(item, each => isText(each) && each.text !== event.description)) {
            const bottom = line.mapToItem(item, 0, line.height).y;
            verify(line.visible && bottom <= item.height, line.text + " ends at " + bottom);
        }
    }

    function test_everyWordCanBeRead_data() {
        const audiences = Array.from({ length: 40 }, (_, i) => "Bauingenieurwesen, Semester " + i).join(", ");
        return [
            { tag: "description", event: { description: longTitle.repeat(20) } },
            { tag: "audiences", event: { mAudiencesStr: audiences, description: "Worum es geht" } },
            { tag: "all", event: { title: longTitle.repeat(20), speakers: longTitle, mAudiencesStr: audiences, oAudiencesStr: audiences, description: longTitle.repeat(20) } },
        ];
    }

    function test_everyWordCanBeRead(data) {
        const item = make("components/EventDetail.qml", { event: Object.assign({}, bare, data.event), scrolls: true, width: 840, height: 500 });
        let taps = 0;
        item.tapped.connect(() => taps += 1);
        waitForRendering(root);
        const lines = all(item, each => isText(each) && each.visible);
        const isCut = each => each.truncated || each.mapToItem(item, 0, each.height).y > item.height;
        const before = lines.filter(isCut);
        compare([before.some(each => each.truncated), before.length > 0], [false, true]);
        for (let i = 0; i < 100 && !item.scrolled.atYEnd; ++i)
            mouseDrag(item, 400, 400, 0, -300);
        tryVerify(() => !item.scrolled.moving && item.scrolled.atYEnd);
        compare([lines.filter(isCut), taps], [[], 0]);
        mouseClick(item, 400, 400);
        compare(taps, 1);
    }

    name: "EventDetail"
}
