// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import QtTest 1.15

/** A test case that creates the program's components and fails on any warning of the engine. */
TestCase {
    id: root

    /** An object of one of the program's files that lives until the end of the test. */
    function make(file, properties, parent) {
        const component = Qt.createComponent("qrc:/qml/" + file);
        compare(component.errorString(), "");
        const object = createTemporaryObject(component, parent || root, properties || {});
        verify(object, file);
        return object;
    }

    /** All items at or below @p item that satisfy @p matches, in the order of their creation. */
    function all(item, matches) {
        const below = Array.from(item.children, child => all(child, matches));
        return [].concat(matches(item) ? item : [], ...below);
    }

    function find(item, matches) {
        return all(item, matches)[0] || null;
    }

    function withText(item, text) {
        return find(item, each => each.text === text);
    }

    function isText(item) {
        return item.lineCount !== undefined && item.text !== "";
    }

    /** The texts that are visible at or below @p item, from top to bottom. */
    function readable(item) {
        const top = each => each.mapToItem(item, 0, 0).y;
        return all(item, each => isText(each) && each.visible && each.height > 0).sort((a, b) => top(a) - top(b)).map(each => each.text);
    }

    /** A schedule of room 1 with an event per hour; the second is on now. @p more is XML for each event. */
    function schedule(titles, room, more) {
        const time = i => new Date(Date.now() + (i - 1.5) * 3600000).toISOString();
        const text = string => string.replace(/</g, "&lt;");
        const events = titles.map((title, i) => `<event id="${i + 1}"><title>${text(title)}</title><start>${time(i)}</start><end>${time(i + 1)}</end><locationId>1</locationId>${more || ""}</event>`);
        return `<schedule><locations><location id="1" displayOrder="1"><name>${text(room || "Hörsaal")}</name><shortName>H</shortName></location></locations><audiences><audience id="1" displayOrder="1"><name>${text(room || "Alle")}</name></audience></audiences><events>${events.join("")}</events></schedule>`;
    }

    function cleanup() {
        compare(bench.takeWarnings(), []);
    }

    width: 1280
    height: 800
    visible: true
    when: windowShown
}
