import { stepName } from "../data/run.ts";
import { element, foreign } from "./dom.ts";
import { goToStep, type Session } from "./session.ts";

/** The whole process file. The line of the present step is marked; lines of steps lead to them. */
export function makeFilePanel(session: Session): HTMLElement {
    const { run, store } = session;
    const steps = new Map(run.steps.map((step, index) => [step.line, index]));
    const lines = run.processFile.map((text, i) => {
        const index = steps.get(i + 1);
        return element("li", {}, index === undefined ? code(text) : link(session, text, index));
    });
    const list = element("ol", { class: "file", "aria-label": "Process file" }, ...lines);
    let marked: HTMLElement | undefined;
    const mark = () => {
        marked?.removeAttribute("aria-current");
        marked = lines[run.steps[store.state.step].line - 1] as HTMLElement | undefined;
        marked?.setAttribute("aria-current", "step");
        showLine(list, marked);
    };
    store.on(["step"], mark);
    // Nothing has a place yet where the panel is not shown.
    new IntersectionObserver((entries) => {
        if (entries.some(({ isIntersecting }) => isIntersecting)) {
            showLine(list, marked);
        }
    }).observe(list);
    return list;
}

function code(text: string): HTMLElement {
    return element("code", {}, text === "" ? "\u200b" : foreign(text));
}

function link(session: Session, text: string, index: number): HTMLElement {
    const step = session.run.steps[index];
    const made = element(
        "button",
        { type: "button", class: "to-step", title: `Step ${step.number}: ${stepName(step)}` },
        code(text),
    );
    made.addEventListener("click", () => {
        goToStep(session, index);
    });
    return made;
}

/** Scrolls the panel, and nothing around it, so that a line stands in its middle. */
function showLine(list: HTMLElement, line: HTMLElement | undefined): void {
    const panel = list.closest(".panel");
    if (panel && line) {
        const from = line.getBoundingClientRect().top - panel.getBoundingClientRect().top;
        panel.scrollTop += from - 0.4 * panel.clientHeight;
    }
}
