import { PerspectiveCamera, Vector3 } from "three";
import { OrbitControls } from "three/addons/controls/OrbitControls.js";

/** From where one looks: degrees around the stack from its front, and above the horizon. */
export const views = {
    corner: { azimuth: -28, elevation: 32, label: "Corner" },
    front: { azimuth: 0, elevation: 2, label: "Front" },
    side: { azimuth: 90, elevation: 2, label: "Side" },
    top: { azimuth: 0, elevation: 90, label: "Top" },
} as const;

export type ViewName = keyof typeof views;

/** A box around what is to be seen, in the camera's coordinates. */
export interface Box {
    low: Vector3;
    high: Vector3;
}

/** The camera and what moves it. */
export class Camera {
    readonly camera = new PerspectiveCamera(28, 1, 0.1, 1000);
    private readonly controls: OrbitControls;

    constructor(canvas: HTMLCanvasElement, onMove: () => void) {
        this.camera.up.set(0, 0, 1);
        this.camera.position.set(0, -10, 10);
        this.controls = new OrbitControls(this.camera, canvas);
        this.controls.enableDamping = false;
        this.controls.zoomToCursor = true;
        this.controls.addEventListener("change", onMove);
    }

    /** Looks from a side and shows all of the box. */
    look(name: ViewName, box: Box): void {
        const azimuth = (views[name].azimuth * Math.PI) / 180;
        const elevation = (views[name].elevation * Math.PI) / 180;
        // Straight from above, up would have no direction.
        const flat = Math.max(Math.cos(elevation), 1e-4);
        this.fit(
            box,
            new Vector3(Math.sin(azimuth) * flat, -Math.cos(azimuth) * flat, Math.sin(elevation)),
        );
    }

    /** Shows all of the box from where one looks now. */
    fitFromHere(box: Box): void {
        this.fit(box, this.camera.position.clone().sub(this.controls.target));
    }

    /** Turns by degrees: to the right around the stack, and upwards. */
    turn(right: number, up: number): void {
        this.controls.rotateLeft((-right * Math.PI) / 180);
        this.controls.rotateUp((up * Math.PI) / 180);
        this.controls.update();
    }

    /** Moves the picture by pixels to the right and down. */
    shift(right: number, down: number): void {
        this.controls.pan(right, down);
        this.controls.update();
    }

    /** Comes nearer by a factor above 1, goes away by one below. */
    zoom(factor: number): void {
        this.controls.dollyIn(1 / factor);
        this.controls.update();
    }

    /** Keeps what is looked at in its place when heights are stretched anew. */
    stretchTarget(factor: number): void {
        const { target } = this.controls;
        const raised = target.z * factor - target.z;
        target.z += raised;
        this.camera.position.z += raised;
        this.controls.update();
    }

    /** Whether one looks from above. */
    get isAbove(): boolean {
        return this.camera.position.z >= this.controls.target.z;
    }

    /** Stops or starts to follow the pointer. */
    set follows(enabled: boolean) {
        this.controls.enabled = enabled;
    }

    /** Where the eye is and what it looks at, for tests and for those who ask whether it moved. */
    get pose(): number[] {
        return [...this.camera.position.toArray(), ...this.controls.target.toArray()];
    }

    resize(width: number, height: number): void {
        this.camera.aspect = width / height;
        this.camera.updateProjectionMatrix();
    }

    /** Puts the near and the far plane around the box. */
    enclose(box: Box): void {
        const centre = box.low.clone().add(box.high).multiplyScalar(0.5);
        const radius = 0.5 * box.high.distanceTo(box.low);
        const distance = this.camera.position.distanceTo(centre);
        this.camera.far = distance + radius * 1.1;
        this.camera.near = Math.max(distance - radius * 1.1, this.camera.far / 1000);
        this.camera.updateProjectionMatrix();
    }

    private fit(box: Box, towards: Vector3): void {
        const back = towards.normalize();
        const right = new Vector3(0, 0, 1).cross(back).normalize();
        const up = back.clone().cross(right);
        const centre = box.low.clone().add(box.high).multiplyScalar(0.5);
        const vertical = Math.tan((0.5 * this.camera.fov * Math.PI) / 180);
        const horizontal = vertical * this.camera.aspect;
        let distance = 0;
        for (let corner = 0; corner < 8; corner++) {
            const offset = new Vector3(
                corner & 1 ? box.high.x : box.low.x,
                corner & 2 ? box.high.y : box.low.y,
                corner & 4 ? box.high.z : box.low.z,
            ).sub(centre);
            const needed = Math.max(
                Math.abs(offset.dot(right)) / horizontal,
                Math.abs(offset.dot(up)) / vertical,
            );
            distance = Math.max(distance, offset.dot(back) + needed);
        }
        this.controls.target.copy(centre);
        this.camera.position.copy(centre).addScaledVector(back, 1.05 * distance);
        const size = box.high.distanceTo(box.low);
        this.controls.minDistance = 0.01 * size;
        this.controls.maxDistance = 10 * size;
        this.controls.update();
    }
}
