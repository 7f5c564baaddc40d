// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15
import "qrc:/qml/common/Style.js" as S

LumenboardCase {
    id: root

    function test_circlePainting_data() {
        // The four quarters, clockwise from the upper right: (r)eached, to (c)ome or (n)othing.
        return [
            { tag: "half", change: {}, seen: "rrcc" },
            { tag: "below", change: { minValue: 60 }, seen: "cccc" },
            { tag: "above", change: { maxValue: 40 }, seen: "rrrr" },
            { tag: "from the right", change: { startAngle: 0 }, seen: "crrc" },
            { tag: "half of half a turn", change: { angleDelta: Math.PI }, seen: "rcnn" },
            { tag: "a quarter, anticlockwise", change: { anticlockwise: true, currentValue: 25 }, seen: "cccr" },
        ];
    }

    function test_circlePainting(data) {
        const circle = make("elements/ProgressCircle.qml", { currentValue: 50, lineWidth: 10, progressColor: "#ff0000", remainingColor: "#0000ff" });
        waitForRendering(circle);
        Object.assign(circle, data.change); // after the first frame, so that the change itself must repaint
        const letters = { "255,0,0,255": "r", "0,0,255,255": "c", "0,0,0,0": "n" };
        const seenAt = at => {
            // At this size the line is 40 px from the centre.
            const place = at.map(sign => 50 + sign * 40 * Math.SQRT1_2);
            const pixel = circle.getContext("2d").getImageData(place[0], place[1], 1, 1).data;
            return letters[[0, 1, 2, 3].map(i => pixel[i]).join()];
        };
        tryVerify(() => [[1, -1], [1, 1], [-1, 1], [-1, -1]].map(seenAt).join("") === data.seen);
    }

    function test_styles_data() {
        const plainSize = make("elements/StyledText.qml").font.pixelSize;
        const font = (size, type, weight, props) => new S.TextStyle(undefined, new S.FontStyle(size, type, weight, props));
        return [
            { tag: "no size", style: font(30, S.NoSize, Font.Bold), font: { pixelSize: plainSize, weight: Font.Bold } },
            { tag: "pixels", style: font(30, S.PxSize), font: { pixelSize: 30, weight: Font.Normal } },
            { tag: "points", style: font(31, S.PtSize), font: { pixelSize: 31 } },
            { tag: "relative", style: font(2.5, S.RelSize), font: { pointSize: 25 } },
            { tag: "further members", style: font(0, S.NoSize, undefined, { underline: true, family: "Abc" }), font: { underline: true, family: "Abc" } },
            { tag: "colour alone", style: new S.TextStyle("#ff0000"), color: "#ff0000", font: { pixelSize: plainSize } },
        ];
    }

    function test_styles(data) {
        bench.set("fontBaseSize", 10);
        const item = make("elements/StyledText.qml", { color: "#010203", xstyle: data.style });
        for (const key in data.font)
            compare(item.font[key], data.font[key], key);
        compare(String(item.color), data.color || "#010203");
    }

    function test_emptyTextTakesNoRoom() {
        const item = make("elements/CenteredText.qml", { text: "etwas" });
        verify(item.height > 10 && item.visible);
        item.text = "";
        compare([item.width, item.height, item.visible], [root.width, 0, false]);
    }

    name: "Elements"
}
