import { Color, Scene as ThreeScene, Vector3, WebGLRenderer } from "three";
import { pick, type Hit, type Place, type Target } from "../stack/probe.ts";
import type { Cut } from "../stack/mesh.ts";
import { extent, heightRange, type Grid } from "../stack/stack.ts";
import { Camera, type Box, type ViewName } from "./camera.ts";
import { FrameQuality } from "./frame_quality.ts";
import { makeSharedUniforms } from "./layer_material.ts";
import { LayerObjects, type Scene } from "./layer_objects.ts";

/** A place on the screen in CSS pixels from the view's upper left corner. */
export interface ScreenPoint {
    x: number;
    y: number;
}

/** The stack in 3D. It is drawn when something has changed, not otherwise. */
export class StackView {
    readonly camera: Camera;
    /** Is called after each frame: what lies over the picture follows it. */
    onFrame: () => void = () => undefined;
    private readonly canvas: HTMLCanvasElement;
    private readonly grid: Grid;
    private readonly renderer: WebGLRenderer;
    private readonly scene = new ThreeScene();
    private readonly shared = makeSharedUniforms();
    private readonly layers = new LayerObjects(this.shared);
    private readonly quality: FrameQuality;
    private shown: Scene | null = null;
    private bounds = { lowest: 0, highest: 0 };
    private apart = 0;
    private frame = 0;

    /** Throws an Error where the browser has no WebGL. */
    constructor(canvas: HTMLCanvasElement, grid: Grid) {
        this.canvas = canvas;
        this.grid = grid;
        this.renderer = makeRenderer(canvas);
        this.camera = new Camera(canvas, () => {
            this.requestFrame(true);
        });
        this.quality = new FrameQuality(() => {
            this.requestFrame(false);
        });
        this.layers.root.position.set(-extent(grid.x).middle, -extent(grid.y).middle, 0);
        this.scene.add(this.layers.root);
        canvas.addEventListener("webglcontextrestored", () => {
            this.requestFrame(false);
        });
    }

    show(scene: Scene): void {
        const stackChanged = this.shown?.stack !== scene.stack;
        this.shown = scene;
        if (stackChanged) {
            this.bounds = heightRange(scene.stack);
        }
        this.shareCut(scene.cut);
        this.layers.show(scene);
        this.liftLayers();
        this.requestFrame(true);
    }

    /** Pulls layers apart: 0 is as they are, 1 as far as it goes. */
    setApart(apart: number): void {
        this.apart = apart;
        this.liftLayers();
        this.requestFrame(true);
    }

    setStretch(stretch: number): void {
        const before = this.shared.stretch.value;
        this.shared.stretch.value = stretch;
        this.layers.root.scale.z = stretch;
        this.camera.stretchTarget(stretch / before);
        this.liftLayers();
        this.requestFrame(true);
    }

    setBackground(color: string): void {
        this.renderer.setClearColor(new Color().setStyle(color));
        this.requestFrame(false);
    }

    look(name: ViewName): void {
        this.camera.look(name, this.box());
    }

    fit(): void {
        this.camera.fitFromHere(this.box());
    }

    resize(): void {
        const { clientWidth, clientHeight } = this.canvas;
        if (clientWidth > 0 && clientHeight > 0) {
            this.camera.resize(clientWidth, clientHeight);
            this.requestFrame(false);
        }
    }

    /** What lies under a place of the screen. */
    hit(point: ScreenPoint): Hit | null {
        if (!this.shown) {
            return null;
        }
        const { camera } = this.camera;
        const through = new Vector3(
            (2 * point.x) / this.canvas.clientWidth - 1,
            1 - (2 * point.y) / this.canvas.clientHeight,
            0.5,
        ).unproject(camera);
        const origin = this.layers.root.worldToLocal(camera.position.clone());
        const direction = this.layers.root.worldToLocal(through).sub(origin).normalize();
        return pick(this.grid, this.targets(), this.shown.cut, {
            origin: [origin.x, origin.y, origin.z],
            direction: [direction.x, direction.y, direction.z],
        });
    }

    /** The layers that one can point at. */
    targets(): Target[] {
        return this.layers.objects.map(({ layer, group }) => ({ layer, lift: group.position.z }));
    }

    /** Where a place is on the screen, or null where it lies behind the eye. */
    toScreen({ x, y, z: height, key }: Place): ScreenPoint | null {
        const z = height + this.liftOf(key);
        const camera = this.camera.camera;
        camera.updateMatrixWorld();
        this.layers.root.updateMatrixWorld();
        const point = this.layers.root.localToWorld(new Vector3(x, y, z)).project(camera);
        return point.z > 1
            ? null
            : {
                  x: 0.5 * (point.x + 1) * this.canvas.clientWidth,
                  y: 0.5 * (1 - point.y) * this.canvas.clientHeight,
              };
    }

    /** How far a layer is lifted, in micrometres of its heights. */
    private liftOf(key: number | null): number {
        return this.layers.objects.find(({ layer }) => layer.key === key)?.group.position.z ?? 0;
    }

    /** The heights between which the stack lies, in micrometres. */
    get heights(): { lowest: number; highest: number } {
        return this.bounds;
    }

    /** Whether the layers that are drawn lie apart. */
    get showsApart(): boolean {
        return this.shown?.apart ?? false;
    }

    /** Only the cut takes something away: walls lie exactly on the window's edges. */
    private shareCut(cut: Cut | null): void {
        const far = 1e9;
        const { keptFrom, keptTo } = this.shared;
        keptFrom.value.set(-far, -far);
        keptTo.value.set(far, far);
        if (cut) {
            const plane = (cut.axis === "x" ? this.grid.x : this.grid.y)[cut.index];
            (cut.keepsLower ? keptTo : keptFrom).value[cut.axis] = plane;
        }
    }

    private liftLayers(): void {
        const { objects } = this.layers;
        const width = Math.max(extent(this.grid.x).length, extent(this.grid.y).length);
        const span = (1.1 * this.apart * width) / this.shared.stretch.value;
        objects.forEach(({ group }, i) => {
            group.position.z = objects.length > 1 ? (span * i) / (objects.length - 1) : 0;
        });
    }

    private box(): Box {
        const right = 0.5 * extent(this.grid.x).length;
        const back = 0.5 * extent(this.grid.y).length;
        const stretch = this.shared.stretch.value;
        const lift = Math.max(0, ...this.layers.objects.map(({ group }) => group.position.z));
        return {
            low: new Vector3(-right, -back, this.bounds.lowest * stretch),
            high: new Vector3(right, back, (this.bounds.highest + lift) * stretch),
        };
    }

    private requestFrame(isMoving: boolean): void {
        if (isMoving) {
            this.quality.moved();
        }
        this.frame ||= requestAnimationFrame(() => {
            this.frame = 0;
            this.draw(this.quality.next());
            this.onFrame();
        });
    }

    /** A picture of another size is a new one, so that is asked for only where the size changes. */
    private setSize(width: number, height: number): void {
        if (this.canvas.width !== Math.floor(width) || this.canvas.height !== Math.floor(height)) {
            this.renderer.setSize(Math.floor(width), Math.floor(height), false);
        }
    }

    private draw(pixelRatio: number): void {
        const { clientWidth, clientHeight } = this.canvas;
        if (clientWidth === 0 || clientHeight === 0) {
            return;
        }
        this.setSize(clientWidth * pixelRatio, clientHeight * pixelRatio);
        this.camera.enclose(this.box());
        // What is translucent is drawn from the far layers to the near ones.
        const { objects } = this.layers;
        objects.forEach(({ group }, i) => {
            const order = this.camera.isAbove ? i : objects.length - i;
            for (const child of group.children) {
                child.renderOrder = order;
            }
        });
        this.renderer.render(this.scene, this.camera.camera);
    }
}

function makeRenderer(canvas: HTMLCanvasElement): WebGLRenderer {
    try {
        return new WebGLRenderer({ canvas, antialias: false, stencil: false });
    } catch {
        throw new Error("This browser shows no 3D (WebGL 2 is missing or switched off).");
    }
}
