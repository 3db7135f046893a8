import { stepName } from "../data/run.ts";
import { StackView } from "../view/stack_view.ts";
import { makeCutControls, type EyeSide } from "./cut_controls.ts";
import { element } from "./dom.ts";
import { Overlay } from "./overlay.ts";
import { followPointer } from "./pointer.ts";
import { makePinFields, makeReadout } from "./readout.ts";
import type { Session } from "./session.ts";
import { makeMeasureButton, makeShapeControls, makeViewControls } from "./view_controls.ts";
import { listenToViewKeys } from "./view_keys.ts";

/** The stack in 3D with all that belongs to it. */
export interface StackPanel {
    root: HTMLElement;
    view: StackView;
}

/** Throws an Error where there is nothing to draw, and where the browser has no WebGL. */
export function makeStackPanel(session: Session): StackPanel {
    if (session.grid.columns < 2 || session.grid.rows < 2) {
        throw new Error(
            "The window is narrower than the model's cells, there is nothing to show in 3D.",
        );
    }
    const canvas = element("canvas", {
        tabindex: 0,
        role: "img",
        "aria-roledescription": "3D view",
        "aria-describedby": "view-help",
    });
    const view = new StackView(canvas, session.grid);
    const overlay = new Overlay(session, view);
    view.onFrame = () => {
        overlay.update();
    };
    const eye: EyeSide = () => {
        const [x, y] = view.camera.pose;
        return { x: x >= 0, y: y >= 0 };
    };
    const failure = element("p", { class: "failure", role: "alert" });
    const stage = element("div", { class: "stage" }, canvas, failure, overlay.root);
    const root = element(
        "div",
        { class: "stack" },
        element("div", { class: "bar" }, makeViewControls(view), makeMeasureButton(session)),
        stage,
        makeReadout(session),
        makeLowerBar(session, eye),
    );
    showState(session, view, overlay, failure);
    session.store.on(["step"], () => {
        const step = session.run.steps[session.store.state.step];
        canvas.setAttribute(
            "aria-label",
            `The stack in 3D after step ${step.number}, ${stepName(step)}`,
        );
    });
    followPointer(canvas, view, session);
    listenToViewKeys(canvas, view, session, eye);
    new ResizeObserver(() => {
        view.resize();
    }).observe(canvas);
    return { root, view };
}

function makeLowerBar(session: Session, eye: EyeSide): HTMLElement {
    return element(
        "div",
        { class: "bar lower" },
        makeCutControls(session, eye),
        ...makeShapeControls(session),
        makePinFields(session),
    );
}

/** Has the view follow what a person chooses. */
function showState(
    session: Session,
    view: StackView,
    overlay: Overlay,
    failure: HTMLElement,
): void {
    const { store } = session;
    store.on(["step", "modes", "cut"], () => {
        showScene(session, view);
        failure.textContent = session.failure;
        failure.hidden = session.failure === "";
    });
    store.on(["apart"], () => {
        // Layers that begin or cease to touch show other surfaces.
        if (store.state.apart > 0 !== view.showsApart) {
            showScene(session, view);
        }
        view.setApart(store.state.apart);
    });
    store.on(["stretch"], () => {
        view.setStretch(store.state.stretch);
    });
    store.on(["pin", "hover", "measureFrom"], () => {
        overlay.update();
    });
}

function showScene({ stack, grid, store }: Session, view: StackView): void {
    const { modes, cut, apart } = store.state;
    view.show({ stack: stack ?? { grid, layers: [] }, modes, cut, apart: apart > 0 });
}
