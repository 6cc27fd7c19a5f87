// Frames and timecode of a sequence. The panel rounds the rate to two decimals; the rates that are meant are
// known, and a position computed from the rounded one would drift by a frame within minutes.

const exactRates = new Map([
    [23.98, 24_000 / 1001],
    [29.97, 30_000 / 1001],
    [47.95, 48_000 / 1001],
    [59.94, 60_000 / 1001],
    [119.88, 120_000 / 1001],
]);

// Labels left out at the start of each minute but every tenth, so that the label keeps to the clock.
const droppedLabels = new Map([
    [29.97, 2],
    [59.94, 4],
]);

// A position on a frame's edge must not fall before it by the last bit of the number.
const edge = 1e-3;

export const noTimecode = "--:--:--:--";

export function exactRate(reported: number): number {
    return exactRates.get(reported) ?? reported;
}

/** The frame that contains the position; 0 when there is no rate to tell by. */
export function frameAt(seconds: number, reportedRate: number): number {
    if (!Number.isFinite(seconds) || !(reportedRate > 0))
        return 0;
    return Math.max(0, Math.floor(seconds * exactRate(reportedRate) + edge));
}

/** HH:MM:SS:FF, with a `;` where labels are left out; a clock with milliseconds when there is no rate. */
export function formatTimecode(seconds: number, reportedRate: number): string {
    if (!Number.isFinite(seconds))
        return noTimecode;
    if (!(reportedRate > 0))
        return formatClock(Math.max(0, seconds));
    const framesInSecond = Math.round(exactRate(reportedRate));
    const dropped = droppedLabels.get(reportedRate) ?? 0;
    const frame = frameAt(seconds, reportedRate);
    const label = frame + labelsLeftOut(frame, framesInSecond, dropped);
    const separator = dropped > 0 ? ";" : ":";
    return hoursMinutesSeconds(Math.floor(label / framesInSecond)) + separator + twoDigits(label % framesInSecond);
}

function labelsLeftOut(frame: number, framesInSecond: number, dropped: number): number {
    const fullMinute = framesInSecond * 60;
    const tenMinutes = fullMinute * 10 - dropped * 9;
    const rest = frame % tenMinutes;
    const minutesBegun = rest < fullMinute ? 0 : 1 + Math.floor((rest - fullMinute) / (fullMinute - dropped));
    return dropped * (9 * Math.floor(frame / tenMinutes) + minutesBegun);
}

function formatClock(seconds: number): string {
    const milliseconds = Math.floor(seconds * 1000 + edge);
    const rest = String(milliseconds % 1000).padStart(3, "0");
    return `${hoursMinutesSeconds(Math.floor(milliseconds / 1000))}.${rest}`;
}

function hoursMinutesSeconds(whole: number): string {
    return [Math.floor(whole / 3600), Math.floor(whole / 60) % 60, whole % 60].map(twoDigits).join(":");
}

function twoDigits(number: number): string {
    return String(number).padStart(2, "0");
}
