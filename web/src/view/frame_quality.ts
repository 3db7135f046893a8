/** After so long without a change, in milliseconds, a view is drawn as well as it can be. */
const restTime = 160;
/** A frame that takes longer, in milliseconds, is drawn with fewer pixels as long as things move. */
const slowFrame = 45;
const quickFrame = 20;
/** So many slow frames in a row take pixels away; so many quick ones give some back. */
const slowFrames = 2;
const quickFrames = 12;
/** The most pixels of a frame. */
const mostPixels = 6e6;
/** Pixels of a frame for each CSS pixel along a side. */
const ratios = [0.5, 0.75, 1, 1.5, 2, 3];

/**
 * How many pixels a frame has for each CSS pixel along a side: many when the view rests, for smooth
 * edges, and as many as the machine draws fluently while it moves.
 */
export class FrameQuality {
    private level = ratios.indexOf(1);
    private slow = 0;
    private quick = 0;
    private rest: number | undefined;
    private isMoving = false;
    private lastFrame = 0;
    private readonly redraw: () => void;

    constructor(redraw: () => void) {
        this.redraw = redraw;
    }

    /** Something has changed: the next frames are drawn quickly, the one after them well. */
    moved(): void {
        this.isMoving = true;
        window.clearTimeout(this.rest);
        this.rest = window.setTimeout(() => {
            this.isMoving = false;
            this.lastFrame = 0;
            this.redraw();
        }, restTime);
    }

    /** The ratio for the frame that is drawn now. */
    next(): number {
        if (!this.isMoving) {
            return resting();
        }
        const now = performance.now();
        const took = now - this.lastFrame;
        this.lastFrame = now;
        if (took < restTime) {
            this.adapt(took);
        }
        return this.moving();
    }

    /** The ratio of frames while things move. */
    moving(): number {
        return Math.min(ratios[this.level], resting());
    }

    private adapt(took: number): void {
        this.slow = took > slowFrame ? this.slow + 1 : 0;
        this.quick = took < quickFrame ? this.quick + 1 : 0;
        if (this.slow === slowFrames && this.level > 0) {
            this.level--;
            this.slow = 0;
        } else if (this.quick === quickFrames && this.moving() < resting()) {
            this.level++;
            this.quick = 0;
        }
    }
}

function resting(): number {
    const pixels = window.innerWidth * window.innerHeight;
    return Math.min(Math.max(2, window.devicePixelRatio), Math.sqrt(mostPixels / pixels));
}
