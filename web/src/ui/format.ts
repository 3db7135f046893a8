/** Micrometres as a text in nanometres, with a digit behind the point where it says something. */
export function nanometres(micrometres: number): string {
    const rounded = Math.round(micrometres * 1e4) / 10;
    return Number.isInteger(rounded) ? String(rounded) : rounded.toFixed(1);
}

/** Micrometres as a text with three digits behind the point. */
export function micrometres(value: number): string {
    const text = value.toFixed(3);
    return text === "-0.000" ? "0.000" : text;
}
