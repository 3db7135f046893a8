import {
    BufferAttribute,
    BufferGeometry,
    Group,
    LineBasicMaterial,
    LineSegments,
    Mesh as Object3DMesh,
} from "three";
import { findFaces, type Faces, type Solid } from "../stack/faces.ts";
import {
    findWallCorners,
    meshCut,
    meshLayer,
    type Cut,
    type Mesh,
    type WallCorners,
} from "../stack/mesh.ts";
import type { Stack, StackLayer } from "../stack/stack.ts";
import { makeLayerMaterial, type SharedUniforms } from "./layer_material.ts";

/** How a layer is drawn; layers that nobody names are shown. */
export type LayerMode = "shown" | "glass" | "hidden";

/** What a layer of glass lets through at least. */
const glassOpacity = 0.2;

/** A layer that is drawn. */
export interface LayerObject {
    layer: StackLayer;
    opaque: boolean;
    /** Holds all of it: sheets and walls, the cut face and its outline. */
    group: Group;
}

/** What a layer's mesh was made of, so that it is made once. */
interface KeptMesh {
    solid: Solid;
    faces: Faces;
    corners: WallCorners;
    geometry: BufferGeometry;
}

/** What there is to draw of a stack. */
export interface Scene {
    stack: Stack;
    modes: ReadonlyMap<number, LayerMode>;
    cut: Cut | null;
    apart: boolean;
}

const outline = new LineBasicMaterial({ color: 0x1b1f27, transparent: true, opacity: 0.55 });

/** The objects of a stack's layers. Meshes that a change does not touch are kept. */
export class LayerObjects {
    readonly root = new Group();
    objects: LayerObject[] = [];
    private kept = new Map<number, KeptMesh>();
    private readonly shared: SharedUniforms;

    constructor(shared: SharedUniforms) {
        this.shared = shared;
    }

    /** Makes the objects anew. */
    show(scene: Scene): void {
        this.clear();
        const { grid } = scene.stack;
        const layers = scene.stack.layers.filter(({ key }) => scene.modes.get(key) !== "hidden");
        const alphas = layers.map((layer) => opacity(layer, scene.modes.get(layer.key)));
        const solids = layers.map(({ top, bottom }, i) => ({
            top,
            bottom,
            opaque: alphas[i] >= 1,
        }));
        const faces = findFaces(grid, solids, scene.apart);
        const corners = findWallCorners(grid, solids);
        const kept = new Map<number, KeptMesh>();
        layers.forEach((layer, i) => {
            const mesh = this.reuse(layer.key, solids[i], faces[i], corners) ?? {
                solid: solids[i],
                faces: faces[i],
                corners,
                geometry: toGeometry(meshLayer(grid, solids[i], faces[i], corners)),
            };
            kept.set(layer.key, mesh);
            const group = this.makeGroup(layer, alphas[i], mesh.geometry, scene);
            this.objects.push({ layer, opaque: solids[i].opaque, group });
            this.root.add(group);
        });
        for (const mesh of this.kept.values()) {
            mesh.geometry.dispose();
        }
        this.kept = kept;
    }

    /** Takes a mesh from those of before, if it is still right. */
    private reuse(key: number, solid: Solid, faces: Faces, corners: WallCorners): KeptMesh | null {
        const found = this.kept.get(key);
        if (
            found?.solid.top === solid.top &&
            found.solid.bottom === solid.bottom &&
            sameBytes(found.faces.top, faces.top) &&
            sameBytes(found.faces.bottom, faces.bottom) &&
            sameBytes(found.corners.front, corners.front) &&
            sameBytes(found.corners.back, corners.back)
        ) {
            this.kept.delete(key);
            return found;
        }
        return null;
    }

    private makeGroup(
        layer: StackLayer,
        alpha: number,
        geometry: BufferGeometry,
        { stack, cut }: Scene,
    ): Group {
        const [red, green, blue] = layer.color.map((value) => value / 255);
        const material = (isCut: boolean) =>
            makeLayerMaterial([red, green, blue], alpha, this.shared, isCut);
        const group = new Group();
        group.add(new Object3DMesh(geometry, material(cut !== null)));
        if (cut) {
            const face = meshCut(stack.grid, { ...layer, opaque: alpha >= 1 }, cut);
            group.add(new Object3DMesh(toGeometry(face.mesh), material(false)));
            const lines = new BufferGeometry();
            lines.setAttribute("position", new BufferAttribute(face.outlines, 3));
            group.add(new LineSegments(lines, outline));
        }
        return group;
    }

    /** Takes all objects away. Their layers' meshes stay for the next ones. */
    private clear(): void {
        for (const { group } of this.objects) {
            this.root.remove(group);
            const [body, ...others] = group.children as Object3DMesh[];
            (body.material as { dispose(): void }).dispose();
            for (const other of others) {
                other.geometry.dispose();
                if (other.material !== outline) {
                    (other.material as { dispose(): void }).dispose();
                }
            }
        }
        this.objects = [];
    }
}

/** How opaque a layer is drawn, from 0 to 1. */
function opacity(layer: StackLayer, mode: LayerMode | undefined): number {
    const own = layer.color[3] / 255;
    return mode === "glass" ? Math.min(own, glassOpacity) : own;
}

function toGeometry(mesh: Mesh): BufferGeometry {
    const geometry = new BufferGeometry();
    geometry.setAttribute("position", new BufferAttribute(mesh.positions, 3));
    geometry.setIndex(new BufferAttribute(mesh.indices, 1));
    return geometry;
}

function sameBytes(a: Uint8Array, b: Uint8Array): boolean {
    if (a.length !== b.length) {
        return false;
    }
    for (let i = 0; i < a.length; i++) {
        if (a[i] !== b[i]) {
            return false;
        }
    }
    return true;
}
