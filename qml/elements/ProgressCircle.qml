// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick 2.15

/** An arc that shows how far currentValue has come between minValue and maxValue. */
Canvas {
    id: root

    property real minValue: 0
    property real maxValue: 100
    property real currentValue: 0
    /// radians, 0 at three o'clock
    property real startAngle: -Math.PI / 2
    /// radians, the sweep of the whole span
    property real angleDelta: 2 * Math.PI
    property bool anticlockwise: false
    property real lineWidth: 2
    property color progressColor: "white"
    property color remainingColor: "gray"
    readonly property real margin: Math.max(0.05 * Math.min(width, height), 3)
    readonly property real radius: (Math.min(width, height) - lineWidth) / 2 - margin
    /// the length of the reached part in whole pixels: a smaller change is not worth a repaint
    readonly property int reachedLength: Math.round(fraction() * Math.abs(angleDelta) * radius)

    /** The reached part of the span, 0..1. */
    function fraction(): real {
        if (currentValue <= minValue)
            return 0;
        if (currentValue >= maxValue)
            return 1;
        return (currentValue - minValue) / (Math.abs(maxValue - minValue) || 1);
    }

    onReachedLengthChanged: frame.schedule()
    onStartAngleChanged: requestPaint()
    onAngleDeltaChanged: requestPaint()
    onAnticlockwiseChanged: requestPaint()
    onLineWidthChanged: requestPaint()
    onProgressColorChanged: requestPaint()
    onRemainingColorChanged: requestPaint()
    onPaint: {
        const context = getContext("2d");
        context.reset();
        if (radius <= 0)
            return;
        const sweep = Math.abs(angleDelta) * (anticlockwise ? -1 : 1);
        const reached = fraction();
        const stroke = (part, color) => {
            context.beginPath();
            context.arc(width / 2, height / 2, radius, startAngle, startAngle + part * sweep, anticlockwise);
            context.lineWidth = lineWidth;
            context.strokeStyle = color;
            context.stroke();
        };
        if (reached < 1)
            stroke(1, remainingColor);
        if (reached > 0)
            stroke(reached, progressColor);
    }

    width: 100
    height: 100
    antialiasing: true

    FrameTimer {
        id: frame

        onTriggered: root.requestPaint()
    }
}
