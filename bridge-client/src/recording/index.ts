export type { PageLine, PanelLine, RecordedLine } from "./line.js";
export { readRecording } from "./line.js";
export { recordedPage } from "./record.js";
export { type Difference, type Outcome, replay, type ReplayOptions } from "./replay.js";
