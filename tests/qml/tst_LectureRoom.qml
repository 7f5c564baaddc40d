// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import Lumenboard 1.0

LumenboardCase {
    id: root

    property Item view
    property Item list
    property Item pages
    property Item carousel

    function isShown(text) {
        return readable(view).includes(text);
    }

    /** Opens the carousel by a tap on the list. */
    function open(index) {
        mouseClick(list.itemAtIndex(index));
        tryCompare(carousel, "opacity", 1);
        tryCompare(carousel, "scale", 1);
        compare(pages.currentIndex, index);
    }

    function init() {
        verify(bench.show(schedule(Array.from("ABCDEFGHIJKL"))));
        view = make("views/LectureRoom.qml", { width: width, height: height });
        list = findChild(view, "eventList");
        pages = findChild(view, "pages");
        carousel = pages.parent;
        tryVerify(() => list.itemAtIndex(3) !== null);
        waitForRendering(view);
    }

    function test_placeholders_data() {
        const none = ["Im Augenblick keine Veranstaltung.", "In nächster Zeit keine Veranstaltungen."];
        return [
            { tag: "unknown room", schedule: "<schedule/>", shown: none, hidden: ["Hörsaal"] },
            { tag: "no events", schedule: schedule([]), shown: none.concat("Hörsaal"), hidden: [] },
            { tag: "only a current one", schedule: schedule(["A", "B"]), shown: ["Hörsaal", "B", none[1]], hidden: [none[0]] },
            { tag: "both", schedule: schedule(["A", "B", "C"]), shown: ["B", "C"], hidden: none },
        ];
    }

    function test_placeholders(data) {
        verify(bench.show(data.schedule));
        for (const text of data.shown.concat("Jetzt", "Nächste Veranstaltung"))
            verify(isShown(text), text);
        for (const text of data.hidden)
            verify(!isShown(text), text);
        compare(readable(view).some(text => /^\d\d:\d\d\W+\d\d:\d\d\sUhr$/.test(text)), data.shown.includes("B"));
        compare(find(view, item => String(item.color) === "#ff0000").visible, false);
    }

    function test_headsTheListWithItsDay() {
        verify(bench.show(schedule(["A"], 72)));
        compare(readable(list)[0], LBAPI.config.plenarLocation.events[0].startDateStr);
    }

    function test_tapClosesTheCarousel_data() {
        return [
            { tag: "on the page", x: 0.5, y: 0.8 },
            { tag: "beside the page", x: 0.01, y: 0.5 },
            { tag: "below, over the list", x: 0.9, y: 0.985 },
        ];
    }

    function test_tapClosesTheCarousel(data) {
        open(2);
        for (const heading of ["Jetzt", "Nächste Veranstaltung"])
            tryCompare(withText(view, heading), "opacity", 0);
        mouseClick(view, data.x * width, data.y * height);
        tryCompare(carousel, "visible", false);
        compare(carousel.shown, false); // a tap that reached the list would open it again
        tryCompare(withText(view, "Jetzt"), "opacity", 1);
    }

    function test_swipeTurnsThePage() {
        open(2);
        mouseDrag(pages, 300, 300, 0, 200);
        compare(carousel.shown, true);
        mousePress(pages, 1000, 300);
        for (let x = 950; x >= 200; x -= 50)
            mouseMove(pages, x, 300, 5);
        mouseRelease(pages, 200, 300);
        tryCompare(pages, "currentIndex", 3);
        compare(carousel.shown, true);
    }

    function test_staysWhereTheVisitorIsWhenTimePasses() {
        list.contentY += 90;
        const scrolled = list.contentY;
        open(3);
        LBAPI.config.plenarLocation.eventsChanged();
        compare([list.contentY, pages.currentIndex, carousel.shown], [scrolled, 3, true]);
    }

    function test_staysWhereTheVisitorReadsWhenDataCome() {
        const detail = () => pages.currentItem.detail;
        const day = schedule(["A", "B", "C", "Wort ".repeat(400)]);
        verify(bench.show(day));
        carousel.open(3);
        tryCompare(carousel, "scale", 1);
        mouseDrag(pages, 600, 500, 0, -300);
        tryVerify(() => detail().scrolled.contentY > 100 && !detail().scrolled.moving);
        const place = detail().scrolled.contentY;
        verify(bench.show(day));
        waitForRendering(view);
        compare([pages.currentIndex, detail().scrolled.contentY], [3, place]);
        mouseClick(pages, 600, 500);
        tryCompare(carousel, "visible", false);
        compare(detail().scrolled.contentY, 0);
    }

    name: "LectureRoom"
}
