// What page and panel say to each other, as types. docs/bridge.md has the same in words.

/** The open sequence. A rate or duration that the host cannot tell is 0. */
export interface Sequence {
    name: string;
    /** Seconds. */
    duration: number;
    /** Frames per second, rounded to two decimals: 23.98 stands for 24000/1001. Do not compute with it. */
    frameRate: number;
    width: number;
    height: number;
    startTimecode: string;
}

// The panel's envelope overwrites members of these names.
interface TakenByTheMessage {
    command?: never;
    resolveId?: never;
}

interface TakenByTheCommand {
    command?: never;
    requestId?: never;
}

/** A comment as the workbench's container reads it. It keeps members that it does not know. */
export interface Comment {
    id: string;
    /** Seconds from the sequence's start. */
    seconds: number;
    text?: string;
    author?: string | { name: string };
    /** Seconds. */
    duration?: number;
    color?: string;
    resolved?: boolean;
    parentId?: string;
    replies?: readonly Comment[];
    sequenceId?: string;
    createdAt?: string | number;
    updatedAt?: string | number;
    [key: string]: unknown;
}

/** What the container knows of a marker. The panel reads none of it, so nothing is certain to be there. */
export interface Marker {
    id?: string;
    text?: string;
    author?: string;
    /** Seconds. */
    start?: number;
    /** Seconds. */
    duration?: number;
    colour?: string;
    resolved?: boolean;
    replies?: Marker[];
    [key: string]: unknown;
}

/** Settings of an export as the workbench's container reads them. */
export interface ExportConfig {
    format?: string;
    folder?: string;
    fileName?: string;
    include?: "all" | "open";
    replies?: boolean;
    onExists?: "rename" | "replace";
    timecodeStart?: string;
    frameRate?: number;
    sequenceId?: string;
    [key: string]: unknown;
}

/** The command takes none. */
export type NoArguments = Record<string, never>;

/**
 * Every command, with its arguments and its answer.
 *
 * `null` stands for "nothing"; `false` also for "the panel has no container yet" and, where the answer is yes or no,
 * for "the container said nothing within 60 s".
 */
export interface Commands {
    getTimeline: { arguments: NoArguments; result: Sequence | null };
    /** 0 without a host; null for a position that is no number. */
    getPlayhead: { arguments: NoArguments; result: number | null };
    seekTo: { arguments: { seconds: number }; result: true };
    /** Tells nothing about whether the link was opened. */
    openURL: { arguments: { url: string }; result: true };
    isFCPRunning: { arguments: NoArguments; result: true };
    /** The comment itself is the message. */
    syncComment: { arguments: Comment & TakenByTheMessage; result: boolean };
    deleteComment: { arguments: { commentId: string }; result: boolean };
    syncAllComments: { arguments: { comments: readonly Comment[] }; result: boolean };
    clearAllMarkers: { arguments: NoArguments; result: boolean };
    startExport: { arguments: { config: ExportConfig & TakenByTheCommand }; result: boolean };
    cancelExport: { arguments: NoArguments; result: boolean };
    selectOutputFolder: { arguments: NoArguments; result: string | null | false };
    /** `threshold` is in seconds, 0.5 without it. */
    getMarkerAtTime: { arguments: { seconds: number; threshold?: number }; result: Marker | null | false };
}

export type Command = keyof Commands;
export type Arguments<C extends Command> = Commands[C]["arguments"];
export type Result<C extends Command> = Commands[C]["result"];

/** Every event, with its detail. */
export interface Events {
    /** May come twice for one load and comes again after a reload: it means "connected", not "newly connected". */
    "fcp:connected": Record<string, never>;
    "fcp:sequence-changed": Sequence;
    "fcp:playhead-changed": { seconds: number };
    /** `seconds` is the playhead's position, not the marker's. */
    "fcp:marker-clicked": Marker & { seconds: number };
    /** The answer to one message, of whatever sender: for an event log. `value` is JSON text. */
    "fcp:resolve": { resolveId: string; value: string };
}

export type EventName = keyof Events;
