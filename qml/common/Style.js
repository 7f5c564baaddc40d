// SPDX-FileCopyrightText: The Lumenboard developers
// SPDX-License-Identifier: GPL-3.0-or-later

.pragma library
.import Lumenboard 1.0 as Lumenboard

// Units for the size of a FontStyle.
var NoSize = 0;
var PxSize = 1;
var PtSize = 2; // also in pixels
var RelSize = 3; // times the configured base size, in points

/** Values for a font property: size, weight (or undefined) and further members. */
function FontStyle(size, sizeType, weight, props) {
    this.size = size;
    this.sizeType = sizeType;
    this.weight = weight;
    this.props = props || {};
}

FontStyle.prototype.apply = function(font) {
    switch (this.sizeType) {
    case PxSize:
    case PtSize:
        font.pixelSize = this.size;
        break;
    case RelSize:
        font.pointSize = Lumenboard.LBAPI.config.fontBaseSize * this.size;
        break;
    }
    if (this.weight !== undefined)
        font.weight = this.weight;
    for (var key in this.props)
        font[key] = this.props[key];
};

/** A colour and a FontStyle for a text item; either may be left out. */
function TextStyle(color, font) {
    this.color = color;
    this.font = font;
}

TextStyle.prototype.apply = function(item) {
    if (this.color)
        item.color = this.color;
    if (this.font)
        this.font.apply(item.font);
};
