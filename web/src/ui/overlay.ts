import type { StackView, ScreenPoint } from "../view/stack_view.ts";
import { extent, nearest } from "../stack/stack.ts";
import { keptPart } from "../stack/probe.ts";
import { moveCut } from "./cut_controls.ts";
import { svgElement } from "./dom.ts";
import type { Session } from "./session.ts";
import { distanceText } from "./readout.ts";
import type { Place } from "./state.ts";

/** What lies over the view: the pin, the distance, the axes' names, the edge of the cut. */
export class Overlay {
    readonly root = svgElement("svg", { class: "overlay", "aria-hidden": "true" });
    private readonly session: Session;
    private readonly view: StackView;
    private readonly cutFrame = svgElement("path", { class: "cut-frame" });
    private readonly handle = svgElement("circle", { class: "cut-handle", r: 9 });
    private readonly line = svgElement("line", { class: "distance" });
    private readonly distance = svgElement("text", { class: "distance-text" });
    private readonly from = svgElement("circle", { class: "pin", r: 5 });
    private readonly pin = svgElement("circle", { class: "pin", r: 5 });
    private readonly axisX: SVGTextElement;
    private readonly axisY: SVGTextElement;

    constructor(session: Session, view: StackView) {
        this.session = session;
        this.view = view;
        this.axisX = axisName(`x ${session.run.window.dx} µm`);
        this.axisY = axisName(`y ${session.run.window.dy} µm`);
        this.root.append(
            this.axisX,
            this.axisY,
            this.cutFrame,
            this.handle,
            this.line,
            this.from,
            this.pin,
            this.distance,
        );
        this.followHandle();
    }

    /** Puts everything where it belongs in the frame that was just drawn. */
    update(): void {
        const { pin, measureFrom, hover } = this.session.store.state;
        this.updateAxes();
        this.updateCut();
        put(this.from, measureFrom && this.view.toScreen(measureFrom));
        put(this.pin, pin && this.view.toScreen(pin));
        this.updateDistance(measureFrom, pin ?? hover);
    }

    private updateDistance(from: Place | null, to: Place | null): void {
        const start = from && this.view.toScreen(from);
        const end = to && this.view.toScreen(to);
        const isShown = from && to && start && end;
        show(this.line, Boolean(isShown));
        put(this.distance, null);
        if (isShown) {
            const ends = { x1: start.x, y1: start.y, x2: end.x, y2: end.y };
            for (const [name, value] of Object.entries(ends)) {
                this.line.setAttribute(name, value.toFixed(1));
            }
            this.distance.textContent = distanceText(from, to).total;
            put(this.distance, { x: 0.5 * (start.x + end.x), y: 0.5 * (start.y + end.y) - 8 });
        }
    }

    private updateCut(): void {
        const corners = this.cutCorners().map((place) => this.view.toScreen(place));
        const isShown = corners.length > 0 && corners.every((corner) => corner !== null);
        show(this.cutFrame, isShown);
        put(this.handle, null);
        if (isShown) {
            const points = corners.map(({ x, y }) => `${x.toFixed(1)} ${y.toFixed(1)}`);
            this.cutFrame.setAttribute("d", `M${points.join("L")}Z`);
            const [, , high, highest] = corners;
            put(this.handle, { x: 0.5 * (high.x + highest.x), y: 0.5 * (high.y + highest.y) });
        }
    }

    /** The corners of the cut plane, a little larger than the stack. */
    private cutCorners(): Place[] {
        const { grid, store } = this.session;
        const { cut } = store.state;
        if (!cut) {
            return [];
        }
        const { lowest, highest } = this.view.heights;
        const top = highest + 0.06 * (highest - lowest);
        const plane = (cut.axis === "x" ? grid.x : grid.y)[cut.index];
        const along = cut.axis === "x" ? grid.y : grid.x;
        const [start, end] = [along[0], along[along.length - 1]];
        const corner = (place: number, z: number): Place =>
            cut.axis === "x"
                ? { x: plane, y: place, z, key: null }
                : { x: place, y: plane, z, key: null };
        return [corner(start, lowest), corner(end, lowest), corner(end, top), corner(start, top)];
    }

    /** The handle takes the cut with it, as far along its axis as the pointer goes on the screen. */
    private followHandle(): void {
        const { grid, store } = this.session;
        let last: ScreenPoint | null = null;
        let place = 0;
        this.handle.addEventListener("pointerdown", (event) => {
            const { cut } = store.state;
            if (cut) {
                this.handle.setPointerCapture(event.pointerId);
                last = { x: event.clientX, y: event.clientY };
                place = (cut.axis === "x" ? grid.x : grid.y)[cut.index];
                event.preventDefault();
            }
        });
        this.handle.addEventListener("pointermove", (event) => {
            if (last) {
                const moved = { x: event.clientX - last.x, y: event.clientY - last.y };
                last = { x: event.clientX, y: event.clientY };
                place += this.alongAxis(moved);
                const { cut } = store.state;
                moveCut(this.session, nearest(cut?.axis === "x" ? grid.x : grid.y, place));
            }
        });
        const end = () => {
            last = null;
        };
        this.handle.addEventListener("pointerup", end);
        this.handle.addEventListener("pointercancel", end);
    }

    /** How far along the cut's axis, in micrometres, a way on the screen goes. */
    private alongAxis(moved: ScreenPoint): number {
        const { cut } = this.session.store.state;
        const [corner] = this.cutCorners();
        const start = this.view.toScreen(corner);
        const unit =
            cut?.axis === "x" ? { ...corner, x: corner.x + 1 } : { ...corner, y: corner.y + 1 };
        const end = this.view.toScreen(unit);
        if (!start || !end) {
            return 0;
        }
        const axis = { x: end.x - start.x, y: end.y - start.y };
        const length = axis.x * axis.x + axis.y * axis.y;
        return length < 1 ? 0 : (moved.x * axis.x + moved.y * axis.y) / length;
    }

    /** Names of the axes at the lower edges that are nearest to the eye. */
    private updateAxes(): void {
        const { grid, store } = this.session;
        const [eyeX, eyeY] = this.view.camera.pose;
        const [x, y] = keptPart(grid, store.state.cut);
        const away = 0.04 * Math.max(extent(grid.x).length, extent(grid.y).length);
        const z = this.view.heights.lowest;
        const nearX = eyeX < 0 ? x[0] - away : x[1] + away;
        const nearY = eyeY < 0 ? y[0] - away : y[1] + away;
        put(this.axisX, this.view.toScreen({ x: 0.5 * (x[0] + x[1]), y: nearY, z, key: null }));
        put(this.axisY, this.view.toScreen({ x: nearX, y: 0.5 * (y[0] + y[1]), z, key: null }));
    }
}

function axisName(words: string): SVGTextElement {
    const text = svgElement("text", { class: "axis" });
    text.textContent = words;
    return text;
}

/** Moves what is drawn around its own origin to a place, or hides it where there is none. */
function put(made: SVGElement, point: ScreenPoint | null): void {
    show(made, point !== null);
    if (point) {
        made.setAttribute("transform", `translate(${point.x.toFixed(1)} ${point.y.toFixed(1)})`);
    }
}

function show(made: SVGElement, isShown: boolean): void {
    made.setAttribute("visibility", isShown ? "visible" : "hidden");
}
