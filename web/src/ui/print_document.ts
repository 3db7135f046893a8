import { element, foreign } from "./dom.ts";
import { pictureOf } from "./picture_panel.ts";
import type { Session } from "./session.ts";
import { stepDetails, stepTitle } from "./step_panel.ts";

/** What goes on paper: all steps with their pictures, and the process file. Screens do not show it. */
export function makePrintDocument(session: Session): HTMLElement {
    const { run } = session;
    const steps = run.steps.map((step, index) =>
        element(
            "section",
            { class: "print-step" },
            element("h2", {}, `Step ${step.number}: `, stepTitle(step)),
            pictureOf(session, step),
            ...stepDetails(session, index),
        ),
    );
    const lines = run.processFile.map((line) => element("li", {}, element("code", {}, foreign(line))));
    return element(
        "article",
        { class: "print-document" },
        element("h1", {}, foreign(run.title)),
        factTable(session),
        ...steps,
        element("section", {}, element("h2", {}, "Process file"), element("ol", { class: "file" }, ...lines)),
    );
}

/** What the run was made of. */
export function factTable({ run }: Session): HTMLElement {
    const { x, y, dx, dy } = run.window;
    const facts: [string, string][] = [
        ["Layout", run.layout],
        ["Cell", run.cell],
        ["Window", `${dx} × ${dy} µm from (${x}, ${y}) µm`],
        ["Steps", String(run.steps.length)],
        ["Made by", run.program],
    ];
    const rows = facts.map(([name, value]) =>
        element("tr", {}, element("th", { scope: "row" }, name), element("td", {}, foreign(value))),
    );
    return element("table", { class: "facts" }, element("tbody", {}, ...rows));
}
