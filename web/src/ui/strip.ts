import { stepName, type Step } from "../data/run.ts";
import { element, foreign } from "./dom.ts";
import { goToStep, type Session } from "./session.ts";

/** The strip of small pictures, one for each step. */
export function makeStrip(session: Session): HTMLElement {
    const { run, store } = session;
    const buttons = run.steps.map((step, index) => {
        const made = element(
            "button",
            {
                type: "button",
                class: "frame",
                "aria-label": `Step ${step.number}: ${stepName(step)}`,
            },
            thumbnail(session, step),
            element("span", { class: "frame-number" }, String(step.number)),
            element("span", { class: "frame-name" }, foreign(stepName(step))),
        );
        if (step.notes.length > 0) {
            made.append(element("span", { class: "has-notes", title: "This step has notes" }));
        }
        made.addEventListener("click", () => {
            goToStep(session, index);
        });
        return made;
    });
    const list = element("ol", {}, ...buttons.map((made) => element("li", {}, made)));
    const root = element("nav", { class: "strip", "aria-label": "Steps" }, list);
    store.on(["step"], () => {
        buttons.forEach((made, index) => {
            const isPresent = index === store.state.step;
            // One stop of the Tab key for the whole strip: arrow keys go from step to step.
            made.tabIndex = isPresent ? 0 : -1;
            if (isPresent) {
                made.setAttribute("aria-current", "step");
            } else {
                made.removeAttribute("aria-current");
            }
        });
        if (root.contains(document.activeElement)) {
            buttons[store.state.step].focus({ preventScroll: true });
        }
        centre(root, buttons[store.state.step]);
    });
    new ResizeObserver(() => {
        centre(root, buttons[store.state.step]);
    }).observe(root);
    return root;
}

function centre(root: HTMLElement, present: HTMLElement): void {
    const from = present.getBoundingClientRect().left - root.getBoundingClientRect().left;
    root.scrollLeft += from - 0.5 * (root.clientWidth - present.clientWidth);
}

/** The small picture of a step; its picture, or nothing, where there is none. */
function thumbnail({ bytes }: Session, step: Step): HTMLElement {
    const picture = step.thumbnail ?? step.picture;
    const frame = element("span", { class: "frame-picture" });
    const src = picture && bytes.imageUrl(picture);
    if (src) {
        frame.append(
            element("img", {
                src,
                alt: "",
                width: picture.width,
                height: picture.height,
                decoding: "async",
            }),
        );
    }
    return frame;
}
