// The colours of the picture, read from style.css, which has them for light and for dark.

import { Color } from "three";

export class Colours {
    constructor(element) {
        this.element = element;
        this.followers = [];
    }

    of(name) {
        return new Color(getComputedStyle(this.element).getPropertyValue(`--${name}`).trim());
    }

    /** Keeps a material in the colour of that name, and returns it. */
    paint(material, name) {
        this.followers.push({ material, name });
        material.color = this.of(name);
        return material;
    }

    /** After the browser changed between light and dark. */
    refresh() {
        for (const { material, name } of this.followers) material.color = this.of(name);
    }
}
