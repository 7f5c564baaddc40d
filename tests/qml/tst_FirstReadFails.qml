// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

LumenboardCase {
    function test_errorBoxUntilTheScheduleIsThere() {
        verify(bench.show("<html>Anmeldung</html>"));
        const view = make("views/LectureRoom.qml", { width: width, height: height });
        const box = find(view, item => String(item.color) === "#ff0000");
        compare(readable(box), ["Das sieht nicht nach Veranstaltungsdaten aus."]);
        compare([box.width, box.height], [box.children[0].width + 20, box.children[0].height + 20]);
        verify(readable(view).includes("Im Augenblick keine Veranstaltung."));
        verify(bench.show("<schedule/>"));
        compare(box.visible, false);
    }

    name: "FirstReadFails"
}
