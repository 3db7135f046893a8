type Child = Node | string | null;
type Attributes = Record<string, string | number | boolean | null>;

/** An element with attributes and children. Attributes that are null or false are left out. */
export function element<K extends keyof HTMLElementTagNameMap>(
    tag: K,
    attributes: Attributes = {},
    ...children: Child[]
): HTMLElementTagNameMap[K] {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (value !== null && value !== false) {
            made.setAttribute(name, value === true ? "" : String(value));
        }
    }
    made.append(...children.filter((child) => child !== null));
    return made;
}

/**
 * A text of the layout, the process file or the run. Marks for another direction of writing in it end
 * with it.
 */
export function foreign(text: string): HTMLElement {
    return element("bdi", {}, text);
}

export function button(
    label: string,
    attributes: Attributes,
    ...children: Child[]
): HTMLButtonElement {
    return element(
        "button",
        { type: "button", "aria-label": label, title: label, ...attributes },
        ...children,
    );
}

/** A drawing of 24 by 24 units out of lines. */
export function icon(path: string): SVGSVGElement {
    const svg = svgElement("svg", { viewBox: "0 0 24 24", class: "icon", "aria-hidden": "true" });
    svg.append(svgElement("path", { d: path }));
    return svg;
}

export function svgElement<K extends keyof SVGElementTagNameMap>(
    tag: K,
    attributes: Record<string, string | number>,
): SVGElementTagNameMap[K] {
    const made = document.createElementNS("http://www.w3.org/2000/svg", tag);
    for (const [name, value] of Object.entries(attributes)) {
        made.setAttribute(name, String(value));
    }
    return made;
}

/** A row of buttons of which one is pressed. */
export function choice<T extends string>(
    label: string,
    options: { value: T; label: string; hint?: string }[],
    onChoose: (value: T) => void,
): { root: HTMLElement; show: (value: T) => void } {
    const buttons = options.map((option) => {
        const made = element(
            "button",
            { type: "button", title: option.hint ?? null },
            option.label,
        );
        made.dataset.value = option.value;
        made.addEventListener("click", () => {
            onChoose(option.value);
        });
        return made;
    });
    return {
        root: element("div", { class: "choice", role: "group", "aria-label": label }, ...buttons),
        show: (value) => {
            for (const made of buttons) {
                made.setAttribute("aria-pressed", String(made.dataset.value === value));
            }
        },
    };
}

/** Gives the keyboard back to the page after a slider was dragged, so that arrow keys change steps. */
export function releaseAfterDrag(slider: HTMLInputElement): void {
    slider.addEventListener("pointerup", () => {
        slider.blur();
    });
}
