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

    /** A notification, or another of the program's types, that lives until the end of the test. */
    function create(properties, type) {
        const object = createTemporaryQmlObject(`import Lumenboard 1.0; ${type || "LBNotification"} {}`, root);
        return Object.assign(object, properties);
    }

    /** A schedule of room 1 with an event per hour; the second is on @p hours from now. */
    function schedule(titles, hours = 0) {
        const time = i => new Date(Date.now() + (hours + i - 1.5) * 3600000).toISOString();
        const events = titles.map((title, i) => `<event id="${i + 1}"><title>${title}</title><start>${time(i)}</start><end>${time(i + 1)}</end><locationId>1</locationId></event>`);
        return `<schedule><locations><location id="1" displayOrder="1"><name>Hörsaal</name><shortName>H</shortName></location></locations><events>${events.join("")}</events></schedule>`;
    }

    function cleanup() {
        compare(bench.takeWarnings(), []);
    }

    width: 1280
    height: 800
    visible: true
    when: windowShown
}
