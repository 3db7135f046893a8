import { stepName, type Step } from "../data/run.ts";
import { element } from "./dom.ts";
import type { Session } from "./session.ts";

/** The picture of the present step. */
export function makePicturePanel(session: Session): HTMLElement {
    const { run, store } = session;
    const root = element("div", { class: "picture" });
    store.on(["step", "view"], () => {
        if (store.state.view === "picture") {
            root.replaceChildren(pictureOf(session, run.steps[store.state.step]));
        }
    });
    return root;
}

/** The picture of a step as an element, or a text where it has none. */
export function pictureOf({ bytes }: Session, step: Step): HTMLElement {
    const { picture } = step;
    if (!picture) {
        return element("p", { class: "quiet" }, "This step has no picture.");
    }
    const src = bytes.imageUrl(picture);
    if (!src) {
        return element("p", { class: "quiet" }, "The page was cut short: this picture is missing.");
    }
    return element("img", {
        src,
        alt: `The stack after step ${step.number}, ${stepName(step)}`,
        width: picture.width,
        height: picture.height,
        decoding: "sync",
    });
}
