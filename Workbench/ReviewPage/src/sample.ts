// An ordinary browser has no panel. So that the page can be looked at there, it gets one without an editor and without
// a container application: a sample sequence, whose playhead follows a slider.

import { MemoryPanel, type PanelPage } from "bridge-client/testing";

const sampleSequence = { name: "Sample sequence", duration: 600.6, frameRate: 30_000 / 1001 };

export interface Sample {
    /** Seconds. */
    duration: number;
    movePlayhead(seconds: number): void;
}

export function attachSample(page: PanelPage): Sample {
    const { host } = new MemoryPanel({ page });
    host.openSequence(sampleSequence);
    return { duration: sampleSequence.duration, movePlayhead: (seconds) => host.movePlayhead(seconds) };
}
