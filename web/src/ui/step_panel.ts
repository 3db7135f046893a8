import { stepName, type Argument, type Note, type Step } from "../data/run.ts";
import { element, foreign } from "./dom.ts";
import type { Session } from "./session.ts";

/** What is known of a step: its line with the meaning of each argument, its notes, the console. */
export function makeStepPanel(session: Session): HTMLElement {
    const root = element("div", { class: "step-panel" });
    session.store.on(["step"], () => {
        root.replaceChildren(...stepDetails(session, session.store.state.step));
    });
    return root;
}

/** The details of a step, for the screen and for paper. */
export function stepDetails({ run }: Session, index: number): HTMLElement[] {
    const step = run.steps[index];
    const parts = [lineOf(step, run.processFile)];
    if (step.arguments.length > 0) {
        parts.push(argumentTable(step.arguments));
    }
    if (step.notes.length > 0) {
        parts.push(noteList(step.notes));
    }
    if (step.console.length > 0) {
        parts.push(
            element("h3", {}, "Console"),
            element("pre", { class: "console", tabindex: 0 }, foreign(step.console.join("\n"))),
        );
    }
    return parts;
}

/** Name and kind of a step. Many names tell the kind already. */
export function stepTitle(step: Step): HTMLElement {
    const title = element("span", { class: "step-title" }, foreign(stepName(step)));
    if (!stepName(step).toLowerCase().includes(step.kind.toLowerCase())) {
        title.append(" ", element("span", { class: "kind" }, foreign(step.kind)));
    }
    return title;
}

function lineOf(step: Step, processFile: string[]): HTMLElement {
    if (step.line < 1) {
        return element(
            "p",
            { class: "quiet" },
            "What the process begins with; no line of the file.",
        );
    }
    return element(
        "p",
        { class: "line" },
        element("span", { class: "line-number" }, `Line ${step.line}`),
        element("code", {}, foreign(processFile[step.line - 1] ?? "")),
    );
}

function argumentTable(all: Argument[]): HTMLElement {
    const rows = all.map(({ name, value, meaning }) =>
        element(
            "tr",
            {},
            element("th", { scope: "row" }, foreign(name)),
            element("td", {}, foreign(value)),
            element("td", {}, foreign(meaning)),
        ),
    );
    return element(
        "table",
        { class: "arguments" },
        element("caption", { class: "hidden" }, "Arguments of the step"),
        element(
            "thead",
            {},
            element(
                "tr",
                {},
                ...["Argument", "Value", "Meaning"].map((name) =>
                    element("th", { scope: "col" }, name),
                ),
            ),
        ),
        element("tbody", {}, ...rows),
    );
}

/** What was noted, each with its line and kind. */
export function noteList(notes: Note[]): HTMLElement {
    const items = notes.map(({ kind, text, line }) =>
        element(
            "li",
            {},
            foreign(text),
            element(
                "span",
                { class: "quiet" },
                " ",
                line > 0 ? `line ${line}, ` : null,
                foreign(kind),
            ),
        ),
    );
    return element(
        "section",
        { class: "notes" },
        element("h3", {}, "Notes"),
        element("ul", {}, ...items),
    );
}
