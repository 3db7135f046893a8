import type { Axis } from "../stack/section.ts";
import type { StackView } from "../view/stack_view.ts";
import { views, type ViewName } from "../view/camera.ts";
import { moveCut, toggleCut, type EyeSide } from "./cut_controls.ts";
import type { Session } from "./session.ts";
import { toggleMeasuring } from "./view_controls.ts";

/** Degrees and pixels of one key. */
const turn = 7.5;
const shift = 40;

/** What each key does, by its name. */
function makeActions(view: StackView, session: Session, eye: EyeSide): Map<string, () => void> {
    const { camera } = view;
    const turnBy = (right: number, up: number) => () => {
        camera.turn(right * turn, up * turn);
    };
    const shiftBy = (right: number, down: number) => () => {
        camera.shift(right * shift, down * shift);
    };
    const zoomBy = (factor: number) => () => {
        camera.zoom(factor);
    };
    const cutBy = (columns: number) => () => {
        moveCut(session, (session.store.state.cut?.index ?? 0) + columns);
    };
    const cutAcross = (axis: Axis) => () => {
        toggleCut(session, axis, eye);
    };
    const sides = (Object.keys(views) as ViewName[]).map((name, i): [string, () => void] => [
        String(i + 1),
        () => {
            view.look(name);
        },
    ]);
    return new Map([
        ["arrowup", turnBy(0, 1)],
        ["arrowdown", turnBy(0, -1)],
        ["shift+arrowup", turnBy(0, 1)],
        ["shift+arrowdown", turnBy(0, -1)],
        ["shift+arrowleft", turnBy(-1, 0)],
        ["shift+arrowright", turnBy(1, 0)],
        ["a", shiftBy(-1, 0)],
        ["d", shiftBy(1, 0)],
        ["w", shiftBy(0, -1)],
        ["s", shiftBy(0, 1)],
        ["+", zoomBy(1.2)],
        ["=", zoomBy(1.2)],
        ["-", zoomBy(1 / 1.2)],
        ["x", cutAcross("x")],
        ["y", cutAcross("y")],
        [",", cutBy(-1)],
        [".", cutBy(1)],
        ["0", view.fit.bind(view)],
        ["m", toggleMeasuring.bind(null, session)],
        ...sides,
    ]);
}

/** The keys of the view while it has the focus. */
export function listenToViewKeys(
    canvas: HTMLCanvasElement,
    view: StackView,
    session: Session,
    eye: EyeSide,
): void {
    const actions = makeActions(view, session, eye);
    canvas.addEventListener("keydown", (event) => {
        if (event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        const isArrow = event.key.startsWith("Arrow");
        const name = (isArrow && event.shiftKey ? "shift+" : "") + event.key.toLowerCase();
        const action = actions.get(name);
        if (action) {
            event.preventDefault();
            action();
        }
    });
}
