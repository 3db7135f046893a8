import { stepName } from "../data/run.ts";
import type { StackView } from "../view/stack_view.ts";
import { button, choice, element, foreign, icon } from "./dom.ts";
import { makeFilePanel } from "./file_panel.ts";
import { keyHelp, listenToStepKeys, viewKeyHelp } from "./keys.ts";
import { makeLayersPanel } from "./layers_panel.ts";
import { makePicturePanel } from "./picture_panel.ts";
import { factTable, makePrintDocument, stepCount } from "./print_document.ts";
import { goToStep, type Session } from "./session.ts";
import { makeStackPanel, type StackPanel } from "./stack_panel.ts";
import { makeStepPanel, noteList, stepTitle } from "./step_panel.ts";
import { makeStrip } from "./strip.ts";

const back = "M15 5l-7 7 7 7";
const forth = "M9 5l7 7-7 7";
const sun =
    "M12 8a4 4 0 1 1 0 8 4 4 0 0 1 0-8zM12 2v3M12 19v3M2 12h3M19 12h3M5 5l2 2M17 17l2 2M5 19l2-2M17 7l2-2";
const question = "M9 9a3 3 0 1 1 4.5 2.6c-1 .6-1.5 1.2-1.5 2.4M12 17.5v.5";

type Theme = "light" | "dark";

/** Builds the whole page. */
export function showPage(session: Session): void {
    const made = tryStack(session);
    const stack = typeof made === "string" ? null : made;
    if (!stack) {
        session.store.set({ view: "picture" });
    }
    const help = makeHelp(session);
    const app = element(
        "div",
        { class: "app" },
        makeHeader(session, help, stack?.view ?? null),
        makeMain(session, made),
        makeSide(session),
        makeStrip(session),
        help,
        makeAnnouncer(session),
    );
    document.body.append(app);
    document.title = `${session.run.title} – ${session.run.cell || session.run.layout}`;
    listenToStepKeys(session);
    listenToEscape(session, help);
    stack?.view.resize();
    stack?.view.look("corner");
    rememberStep(session);
    // Paper can wait until the screen is there.
    const prepare = () => {
        if (!document.querySelector(".print-document")) {
            document.body.append(makePrintDocument(session));
        }
    };
    window.addEventListener("beforeprint", prepare);
    window.setTimeout(prepare, 1500);
}

/** The view in 3D, or why there is none. */
function tryStack(session: Session): StackPanel | string {
    try {
        return makeStackPanel(session);
    } catch (error) {
        return error instanceof Error ? error.message : String(error);
    }
}

function makeHeader(session: Session, help: HTMLElement, view: StackView | null): HTMLElement {
    const { run } = session;
    const { dx, dy } = run.window;
    const facts = element("p", { class: "facts-line" }, foreign(run.layout), " · ");
    if (run.cell !== "") {
        facts.append(foreign(run.cell), " · ");
    }
    facts.append(`${dx} × ${dy} µm · ${stepCount(run)} steps`);
    const helpButton = button("Help", { class: "tool", "aria-expanded": "false" }, icon(question));
    helpButton.addEventListener("click", () => {
        help.hidden = !help.hidden;
        helpButton.setAttribute("aria-expanded", String(!help.hidden));
        if (!help.hidden) {
            help.focus();
        }
    });
    return element(
        "header",
        {},
        element("div", { class: "heading" }, element("h1", {}, foreign(run.title)), facts),
        makeThemeButton(view),
        helpButton,
    );
}

/** Light or dark: as the system has it, until a person changes it. */
function makeThemeButton(view: StackView | null): HTMLElement {
    const system = window.matchMedia("(prefers-color-scheme: dark)");
    let chosen: Theme | null = null;
    const apply = () => {
        document.documentElement.dataset.theme = chosen ?? (system.matches ? "dark" : "light");
        view?.setBackground(
            getComputedStyle(document.documentElement).getPropertyValue("--stage").trim(),
        );
    };
    const made = button("Light or dark", { class: "tool" }, icon(sun));
    made.addEventListener("click", () => {
        chosen = document.documentElement.dataset.theme === "dark" ? "light" : "dark";
        apply();
    });
    system.addEventListener("change", apply);
    apply();
    return made;
}

function makeMain(session: Session, stack: StackPanel | string): HTMLElement {
    const { store } = session;
    const picture = makePicturePanel(session);
    const main = element("main", {});
    if (typeof stack !== "string") {
        const views = choice(
            "View",
            [
                { value: "stack", label: "3D" },
                { value: "picture", label: "Picture" },
            ],
            (view: "stack" | "picture") => {
                store.set({ view });
            },
        );
        views.root.classList.add("view-choice");
        store.on(["view"], () => {
            const { view } = store.state;
            views.show(view);
            stack.root.hidden = view !== "stack";
            picture.hidden = view !== "picture";
        });
        main.append(views.root, stack.root, picture);
    } else {
        const words = `${stack} The pictures and all else are here.`;
        main.append(element("p", { class: "notice", role: "status" }, words), picture);
    }
    return main;
}

function makeSide(session: Session): HTMLElement {
    const { run, store } = session;
    const title = element("h2", {});
    const count = element("p", { class: "count" });
    const before = button("Step before", { class: "tool" }, icon(back));
    const after = button("Step after", { class: "tool" }, icon(forth));
    before.addEventListener("click", () => {
        goToStep(session, store.state.step - 1);
    });
    after.addEventListener("click", () => {
        goToStep(session, store.state.step + 1);
    });
    store.on(["step"], () => {
        const step = run.steps[store.state.step];
        title.replaceChildren(stepTitle(step));
        count.textContent = `Step ${step.number} of ${run.stepCount}`;
        before.setAttribute("aria-disabled", String(store.state.step === 0));
        after.setAttribute("aria-disabled", String(store.state.step === run.steps.length - 1));
    });
    return element(
        "aside",
        { "aria-label": "About the step" },
        element(
            "div",
            { class: "step-head" },
            before,
            element("div", { class: "step-name" }, count, title),
            after,
        ),
        ...makePanels(session),
    );
}

/** The step's details, and below them the layers or the process file. */
function makePanels(session: Session): HTMLElement[] {
    const region = (name: string, label: string, content: HTMLElement) =>
        element(
            "section",
            { class: `panel panel-${name}`, tabindex: 0, "aria-label": label },
            content,
        );
    const layers = region("layers", "Layers", makeLayersPanel(session));
    const file = region("file", "Process file", makeFilePanel(session));
    const tabs = choice(
        "Below",
        [
            { value: "layers", label: "Layers" },
            { value: "file", label: "Process file" },
        ],
        (value: "layers" | "file") => {
            open(value);
        },
    );
    const open = (value: "layers" | "file") => {
        tabs.show(value);
        layers.hidden = value !== "layers";
        file.hidden = value !== "file";
    };
    open("layers");
    return [region("step", "Step", makeStepPanel(session)), tabs.root, layers, file];
}

function makeHelp(session: Session): HTMLElement {
    const list = (keys: [string, string][]) =>
        element(
            "dl",
            {},
            ...keys.flatMap(([key, meaning]) => [
                element("dt", {}, key),
                element("dd", {}, meaning),
            ]),
        );
    const help = element(
        "section",
        { class: "help", "aria-label": "Help", tabindex: -1 },
        element("h2", {}, "Keys"),
        list(keyHelp),
        element("div", { id: "view-help" }, element("h3", {}, "In the 3D view"), list(viewKeyHelp)),
        element("h2", {}, "This page"),
        factTable(session),
        session.run.notes.length > 0 ? noteList(session.run.notes) : null,
    );
    help.hidden = true;
    return help;
}

/** Tells a screen reader where one has come to. */
function makeAnnouncer({ run, store }: Session): HTMLElement {
    const root = element("p", { class: "hidden", role: "status", "aria-live": "polite" });
    store.on(["step"], () => {
        const step = run.steps[store.state.step];
        root.textContent = `Step ${step.number} of ${run.stepCount}: ${step.kind} ${stepName(step)}`;
    });
    return root;
}

/** Escape takes away what was opened or set last. */
function listenToEscape({ store }: Session, help: HTMLElement): void {
    document.addEventListener("keydown", (event) => {
        if (event.key !== "Escape") {
            return;
        }
        if (!help.hidden) {
            document.querySelector<HTMLElement>("header [aria-expanded]")?.click();
        } else {
            store.set({ measureFrom: null, measuring: false, pin: null });
        }
    });
}

/** The page's address names the step, so that one can send it to somebody. */
function rememberStep({ run, store }: Session): void {
    let isFirst = true;
    store.on(["step"], () => {
        if (!isFirst) {
            const address = `#step=${run.steps[store.state.step].number}`;
            try {
                window.history.replaceState(null, "", address);
            } catch {
                // Some browsers do not let a page from the disk do that; nothing else needs it.
            }
        }
        isFirst = false;
    });
}
