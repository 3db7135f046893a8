import { goToStep, type Session } from "./session.ts";

/** Arrow keys, Home and End change the step wherever they have no other meaning. */
export function listenToStepKeys(session: Session): void {
    document.addEventListener("keydown", (event) => {
        if (
            event.defaultPrevented ||
            event.ctrlKey ||
            event.altKey ||
            event.metaKey ||
            event.shiftKey
        ) {
            return;
        }
        if (event.target instanceof HTMLInputElement || event.target instanceof HTMLSelectElement) {
            return;
        }
        const { step } = session.store.state;
        const wanted = new Map([
            ["ArrowLeft", step - 1],
            ["ArrowRight", step + 1],
            ["Home", 0],
            ["End", session.run.steps.length - 1],
        ]).get(event.key);
        if (wanted !== undefined) {
            event.preventDefault();
            goToStep(session, wanted);
        }
    });
}

/** What the keys do, for the help. */
export const keyHelp: [string, string][] = [
    ["← →", "step before, step after"],
    ["Home End", "first step, last step"],
    ["Tab", "to the next control"],
    ["Esc", "take the pin and the distance away"],
];

/** The same while the view in 3D has the focus. */
export const viewKeyHelp: [string, string][] = [
    ["↑ ↓, Shift + arrows", "turn"],
    ["W A S D", "move"],
    ["+ −", "nearer, further away"],
    ["1 2 3 4", "from the corner, front, side, top"],
    ["0", "show all of the stack"],
    ["X Y", "cut across x, across y; once more: no cut"],
    [", .", "move the cut"],
    ["M", "measure a distance from the pin"],
];
