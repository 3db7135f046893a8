import { surfacesAt } from "../stack/probe.ts";
import { nearest } from "../stack/stack.ts";
import type { ScreenPoint, StackView } from "../view/stack_view.ts";
import type { Session } from "./session.ts";
import type { Place } from "./state.ts";

/** A pointer that moves by no more than this, in pixels, between down and up has clicked. */
const clickReach = 4;
/** A click so near to a surface at a point of the grid, in pixels, means that surface. */
const snapReach = 8;
/** By so many pixels the surfaces of the layer that was hit count as nearer. */
const snapFavour = 3;

/** Has the pointer tell what lies under it, and set the pin and the ends of distances. */
export function followPointer(canvas: HTMLCanvasElement, view: StackView, session: Session): void {
    const { store } = session;
    let asked: ScreenPoint | null = null;
    let down: ScreenPoint | null = null;
    let isFramed = false;
    const tell = () => {
        isFramed = false;
        if (asked) {
            store.set({ hover: placeUnder(view, session, asked) });
        }
    };
    canvas.addEventListener("pointermove", (event) => {
        // While the view turns, nobody asks for heights.
        asked = event.buttons === 0 ? pointOf(canvas, event) : null;
        if (asked && !isFramed) {
            isFramed = true;
            requestAnimationFrame(tell);
        }
    });
    canvas.addEventListener("pointerleave", () => {
        asked = null;
        store.set({ hover: null });
    });
    canvas.addEventListener("pointerdown", (event) => {
        down = event.isPrimary && event.button === 0 ? pointOf(canvas, event) : null;
    });
    canvas.addEventListener("pointerup", (event) => {
        const up = pointOf(canvas, event);
        if (down && Math.hypot(up.x - down.x, up.y - down.y) <= clickReach) {
            click(session, placeUnder(view, session, up));
        }
        down = null;
    });
}

function click({ store }: Session, place: Place | null): void {
    if (store.state.measuring) {
        if (place) {
            store.set({ measureFrom: place, measuring: false, pin: null });
        }
    } else {
        store.set({ pin: place });
    }
}

function pointOf(canvas: HTMLCanvasElement, event: PointerEvent): ScreenPoint {
    const box = canvas.getBoundingClientRect();
    return { x: event.clientX - box.left, y: event.clientY - box.top };
}

/** What lies under a place of the screen; a surface at the next point of the grid, if it is near. */
function placeUnder(view: StackView, { grid }: Session, point: ScreenPoint): Place | null {
    const hit = view.hit(point);
    if (!hit) {
        return null;
    }
    const column = nearest(grid.x, hit.x);
    const row = nearest(grid.y, hit.y);
    let found: Place = { x: hit.x, y: hit.y, z: hit.z, key: hit.target.layer.key };
    let reach = snapReach;
    for (const { z, target } of surfacesAt(grid, view.targets(), column, row)) {
        const place = { x: grid.x[column], y: grid.y[row], z, key: target.layer.key };
        const screen = view.toScreen(place);
        const favour = target.layer === hit.target.layer ? snapFavour : 0;
        const away = screen
            ? Math.hypot(screen.x - point.x, screen.y - point.y) - favour
            : Infinity;
        if (away < reach) {
            reach = away;
            found = place;
        }
    }
    return found;
}
