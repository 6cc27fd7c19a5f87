import type { Commands, ExportConfig } from "bridge-client";
import { signal } from "@preact/signals";
import type { JsonStorage } from "./storage.js";

export const exportFormats = {
    csv: "CSV table",
    edl: "EDL, CMX3600",
    fcpxml: "FCPXML 1.10",
    ffmetadata: "FFmpeg chapters",
    kdenlive: "Kdenlive guides",
    shotcut: "Shotcut project",
    webvtt: "WebVTT chapters",
} as const;

export interface ExportSettings {
    format: keyof typeof exportFormats;
    /** Empty: where the container application puts it. */
    folder: string;
    fileName: string;
    timecodeStart: string;
    include: "all" | "open";
    replies: boolean;
    onExists: "rename" | "replace";
}

/** The page hears nothing of an export's end: "started" lasts until the next request. */
export type ExportState = "idle" | "asking" | "started";

const ordinary: ExportSettings = {
    format: "csv",
    folder: "",
    fileName: "",
    timecodeStart: "",
    include: "all",
    replies: true,
    onExists: "rename",
};

type Desk = "startExport" | "cancelExport" | "selectOutputFolder";
type Ask = <C extends Desk>(command: C, args: Commands[C]["arguments"]) => Promise<unknown>;

/** The settings of an export, kept over a reload, and what became of the last one. */
export class ExportDesk {
    readonly settings = signal(ordinary);
    readonly state = signal<ExportState>("idle");
    /** Frames in a second, for a sequence that no editor has described to the container application; 0 for unknown. */
    frameRate = 0;

    #storage: JsonStorage;
    #ask: Ask;
    #say: (text: string) => void;

    constructor(storage: JsonStorage, ask: Ask, say: (text: string) => void) {
        this.#storage = storage;
        this.#ask = ask;
        this.#say = say;
        this.settings.value = understood(storage.read("export"));
    }

    change(settings: Partial<ExportSettings>): void {
        this.settings.value = { ...this.settings.value, ...settings };
        this.#storage.write("export", this.settings.value);
    }

    async start(): Promise<void> {
        this.state.value = "asking";
        this.#say("Export requested…");
        const started = await this.#ask("startExport", { config: this.#config() });
        this.state.value = started === true ? "started" : "idle";
        this.#say(started === true ? "Export started." : "The export was refused.");
    }

    async cancel(): Promise<void> {
        const cancelled = await this.#ask("cancelExport", {});
        this.state.value = "idle";
        this.#say(cancelled === true ? "The export was cancelled." : "No export was running.");
    }

    async chooseFolder(): Promise<void> {
        this.#say("Choose a folder in the dialog…");
        const folder = await this.#ask("selectOutputFolder", {});
        if (typeof folder === "string")
            this.change({ folder });
        this.#say(typeof folder === "string" ? `Exports go to ${folder}` : "No folder was chosen.");
    }

    // A setting that is left out is the container's to choose.
    #config(): ExportConfig {
        const { format, include, replies, onExists, ...texts } = this.settings.value;
        const given = Object.entries(texts).filter(([, text]) => text.trim() !== "");
        const rate = this.frameRate > 0 ? { frameRate: this.frameRate } : {};
        return { format, include, replies, onExists, ...Object.fromEntries(given), ...rate };
    }
}

function understood(stored: unknown): ExportSettings {
    const members = Object(stored) as Record<string, unknown>;
    const known = Object.entries(ordinary).filter(([key, value]) => typeof members[key] === typeof value);
    const settings = { ...ordinary, ...Object.fromEntries(known.map(([key]) => [key, members[key]])) };
    return settings.format in exportFormats ? settings : { ...settings, format: ordinary.format };
}
