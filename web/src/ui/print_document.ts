import { element, foreign } from "./dom.ts";
import { pictureOf } from "./picture_panel.ts";
import type { Run } from "../data/run.ts";
import type { Session } from "./session.ts";
import { noteList, stepDetails, stepTitle } from "./step_panel.ts";

/** What goes on paper: all steps with their pictures, and the process file. Screens do not show it. */
export function makePrintDocument(session: Session): HTMLElement {
    const { run } = session;
    const steps = run.steps.map((step, index) =>
        element(
            "section",
            { class: "print-step" },
            element("h2", {}, `Step ${step.number}: `, stepTitle(step)),
            pictureOf(session, step),
            element("div", {}, ...stepDetails(session, index)),
        ),
    );
    const lines = run.processFile.map((line) =>
        element("li", {}, element("code", {}, foreign(line))),
    );
    return element(
        "article",
        { class: "print-document" },
        element("h1", {}, foreign(run.title)),
        factTable(session),
        run.notes.length > 0 ? noteList(run.notes) : null,
        ...steps,
        element(
            "section",
            {},
            element("h2", {}, "Process file"),
            element("ol", { class: "file" }, ...lines),
        ),
    );
}

/** How many steps there are, and how many of them the page holds. */
export function stepCount({ steps, stepCount: all }: Run): string {
    return steps.length === all ? `${all}` : `${steps.length} of ${all}`;
}

/** What the run was made of. */
export function factTable({ run }: Session): HTMLElement {
    const { x, y, dx, dy } = run.window;
    const facts: [string, string][] = [
        ["Layout", run.layout],
        ["Cell", run.cell],
        ["Window", `${dx} × ${dy} µm from (${x}, ${y}) µm`],
        ["Steps", stepCount(run)],
        ["Made by", run.program],
    ];
    const rows = facts.map(([name, value]) =>
        element("tr", {}, element("th", { scope: "row" }, name), element("td", {}, foreign(value))),
    );
    return element("table", { class: "facts" }, element("tbody", {}, ...rows));
}
