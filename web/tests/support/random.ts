/** Numbers from 0 to before 1, the same ones each time for a seed. */
export function randomNumbers(seed: number): () => number {
    let state = seed >>> 0;
    return () => {
        state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
        return state / 2 ** 32;
    };
}
