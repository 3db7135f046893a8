import type { StackView } from "../view/stack_view.ts";
import { views, type ViewName } from "../view/camera.ts";
import { moveCut, toggleCut, type EyeSide } from "./cut_controls.ts";
import type { Session } from "./session.ts";
import { toggleMeasuring } from "./view_controls.ts";

/** Degrees and pixels of one key. */
const turn = 7.5;
const shift = 40;

/** The keys of the view while it has the focus. */
export function listenToViewKeys(
    canvas: HTMLCanvasElement,
    view: StackView,
    session: Session,
    eye: EyeSide,
): void {
    const { camera } = view;
    const cutBy = (columns: number) => {
        moveCut(session, (session.store.state.cut?.index ?? 0) + columns);
    };
    const sides = Object.keys(views) as ViewName[];
    const actions: Record<string, () => void> = {
        ArrowUp: () => { camera.turn(0, turn); },
        ArrowDown: () => { camera.turn(0, -turn); },
        "Shift+ArrowUp": () => { camera.turn(0, turn); },
        "Shift+ArrowDown": () => { camera.turn(0, -turn); },
        "Shift+ArrowLeft": () => { camera.turn(-turn, 0); },
        "Shift+ArrowRight": () => { camera.turn(turn, 0); },
        a: () => { camera.shift(-shift, 0); },
        d: () => { camera.shift(shift, 0); },
        w: () => { camera.shift(0, -shift); },
        s: () => { camera.shift(0, shift); },
        "+": () => { camera.zoom(1.2); },
        "=": () => { camera.zoom(1.2); },
        "-": () => { camera.zoom(1 / 1.2); },
        "0": () => { view.fit(); },
        x: () => { toggleCut(session, "x", eye); },
        y: () => { toggleCut(session, "y", eye); },
        ",": () => { cutBy(-1); },
        ".": () => { cutBy(1); },
        m: () => { toggleMeasuring(session); },
    };
    sides.forEach((name, i) => {
        actions[String(i + 1)] = () => { view.look(name); };
    });
    canvas.addEventListener("keydown", (event) => {
        if (event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        const isArrow = event.key.startsWith("Arrow");
        const name = isArrow && event.shiftKey ? `Shift+${event.key}` : isArrow ? event.key : event.key.toLowerCase();
        const action = actions[name] as (() => void) | undefined;
        if (action) {
            event.preventDefault();
            action();
        }
    });
}
