import { useSignal } from "@preact/signals";
import { connectionTexts, type Review } from "../review.js";
import type { Sample } from "../sample.js";
import { formatTimecode } from "../timecode.js";

export function Header({ review }: { review: Review }) {
    const state = review.connection.value;
    return (
        <header>
            <h1>Review</h1>
            <p id="connection" class="connection" role="status" data-state={state}>
                {connectionTexts[state]}
            </p>
        </header>
    );
}

/** Stands over the page when there is no panel around it; moves the playhead of the sample. */
export function Banner({ sample }: { sample: Sample | null }) {
    const seconds = useSignal(0);
    const move = (value: number) => {
        seconds.value = value;
        sample!.movePlayhead(value);
    };
    return (
        <div id="banner" class="banner" role="alert" hidden={sample === null}>
            <p>No editor is attached. Comments are kept in this browser and reach no container application.</p>
            {sample && (
                <label>
                    Sample playhead
                    <input
                        id="sample-playhead"
                        type="range"
                        min={0}
                        max={sample.duration}
                        step="any"
                        value={seconds}
                        onInput={({ currentTarget }) => move(Number(currentTarget.value))}
                    />
                </label>
            )}
        </div>
    );
}

/** The timecode is one text node, which its signal changes without a look at the rest. */
export function SequenceCard({ review }: { review: Review }) {
    const sequence = review.sequence.value;
    const rate = sequence?.frameRate ?? 0;
    return (
        <section class="card" aria-labelledby="sequence-name">
            <h2 id="sequence-name" title={sequence?.name}>
                {sequence ? sequence.name || "Untitled sequence" : "No sequence"}
            </h2>
            <p id="timecode" class="timecode" role="timer" aria-label="Playhead">
                {review.timecode}
            </p>
            <dl>
                <div>
                    <dt>Duration</dt>
                    <dd id="duration">{sequence ? formatTimecode(sequence.duration, rate) : "–"}</dd>
                </div>
                <div>
                    <dt>Rate</dt>
                    <dd id="rate">{sequence ? (rate > 0 ? `${rate} fps` : "unknown") : "–"}</dd>
                </div>
                <div>
                    <dt>Frame</dt>
                    <dd id="frame">{review.frame}</dd>
                </div>
            </dl>
        </section>
    );
}
