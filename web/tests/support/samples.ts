import { anyOf, MadeProcess, rectangle } from "./process.ts";
import type { PageFacts } from "./page_file.ts";

export const facts: PageFacts = {
    title: "sample.txt",
    layout: "sample.gds",
    cell: "SAMPLE",
    window: { x: -1, y: 2, dx: 12, dy: 8 },
    zero: 2,
    pictures: true,
};

/** Transistors, a translucent dielectric, contacts, and as many levels of metal as wanted. */
export function makeTransistors(columns: number, rows: number, metals: number): MadeProcess {
    const made = new MadeProcess(columns, rows);
    const active = anyOf(rectangle(0.08, 0.2, 0.42, 0.85), rectangle(0.58, 0.2, 0.92, 0.85));
    const gates = anyOf(rectangle(0.22, 0.05, 0.28, 0.95), rectangle(0.72, 0.05, 0.78, 0.95));
    made.film("Silicon", "silicon", [214, 186, 150, 255], 2000);
    made.record({ name: "Silicon", kind: "substrate" });
    made.etch("Silicon", 1650, (u, v) => !active(u, v));
    made.record({ name: "Trench", kind: "etch", console: ["etch Trench: 350 nm"] });
    made.fill("STI", "fieldoxide", [186, 214, 238, 255], 2030);
    made.etch("STI", 0, active);
    made.record({ name: "STI", kind: "coating" });
    made.film("GateOxide", "gateoxide", [60, 120, 210, 255], 8);
    made.record({ name: "GateOxide", kind: "deposition" });
    made.film("Poly", "poly", [214, 66, 70, 255], 280);
    made.record({
        name: "Poly",
        kind: "deposition",
        text: "deposition -name Poly -type poly -thickness 280 -sc 1.0",
        arguments: [
            { name: "-name", value: "Poly", meaning: "name of the step and of its layer" },
            { name: "-type", value: "poly", meaning: "material of the film" },
            { name: "-thickness", value: "280", meaning: "thickness of the film, nm" },
            { name: "-sc", value: "1.0", meaning: "step coverage, 0 to 1" },
        ],
        console: ["deposition Poly", "thickness 280 nm"],
    });
    made.etch("Poly", 0, (u, v) => !gates(u, v));
    made.record({
        name: "Gate",
        kind: "etch",
        notes: [
            {
                kind: "etch-stops",
                text: "The etch stops 12 nm above the field; etch deeper.",
                line: 6,
            },
        ],
    });
    for (let level = 1; level <= metals; level++) {
        addMetal(made, level);
    }
    return made;
}

function addMetal(made: MadeProcess, level: number): void {
    const base = 1800 + 1000 * level;
    made.fill(`ILD${level}`, "oxide", [225, 232, 240, 110], base);
    made.record({ name: `ILD${level}`, kind: "coating" });
    const contacts = anyOf(
        rectangle(0.12, 0.4, 0.16, 0.46),
        rectangle(0.34, 0.4, 0.38, 0.46),
        rectangle(0.62, 0.6, 0.66, 0.66),
        rectangle(0.84, 0.6, 0.88, 0.66),
    );
    made.etch(`ILD${level}`, 0, contacts);
    made.record({ name: `Contact${level}`, kind: "etch" });
    made.fill(`Plug${level}`, "tungsten", [95, 98, 110, 255], base);
    made.record({ name: `Plug${level}`, kind: "coating" });
    made.film(`Metal${level}`, "aluminium", [92, 156, 216, 255], 450);
    made.record({ name: `Metal${level}`, kind: "deposition" });
    const lines =
        level % 2 === 1
            ? anyOf(rectangle(0.1, 0.34, 0.4, 0.52), rectangle(0.6, 0.54, 0.9, 0.72))
            : anyOf(rectangle(0.1, 0.1, 0.18, 0.9), rectangle(0.82, 0.1, 0.9, 0.9));
    made.etch(`Metal${level}`, 0, (u, v) => !lines(u, v));
    made.record({ name: `Line${level}`, kind: "etch" });
}

/** A beam that hangs in the air, above a layer that was taken out. */
export function makeBeam(columns: number, rows: number): MadeProcess {
    const made = new MadeProcess(columns, rows);
    made.film("Wafer", "silicon", [214, 186, 150, 255], 1000);
    made.record({ name: "Wafer", kind: "substrate" });
    made.film("Sacrifice", "psg", [170, 220, 180, 255], 500);
    made.etch("Sacrifice", 0, rectangle(0, 0, 0.25, 1));
    made.record({ name: "Sacrifice", kind: "deposition" });
    made.film("Beam", "poly", [214, 66, 70, 255], 400);
    made.etch("Beam", 0, (_, v) => v < 0.3 || v > 0.7);
    made.record({ name: "Beam", kind: "deposition" });
    made.release("Sacrifice");
    made.record({ name: "Release", kind: "release" });
    return made;
}
