import { type ExportSettings, exportFormats } from "../export-desk.js";
import type { Review } from "../review.js";

/** What docs/container.md lists as the settings of an export. */
export function ExportForm({ review }: { review: Review }) {
    const desk = review.exports;
    const settings = desk.settings.value;
    const isOpen = review.sequence.value !== null;
    const change = (changed: Partial<ExportSettings>) => desk.change(changed);
    const text = (key: "fileName" | "timecodeStart", label: string, placeholder: string) => (
        <label>
            {label}
            <input id={`export-${key}`} type="text" value={settings[key]} placeholder={placeholder}
                onInput={({ currentTarget }) => change({ [key]: currentTarget.value })} />
        </label>
    );
    return (
        <form
            id="export-form"
            class="export"
            autocomplete="off"
            onSubmit={(event) => {
                event.preventDefault();
                void desk.start();
            }}
        >
            <label>
                Format
                <select id="export-format" value={settings.format}
                    onChange={({ currentTarget }) => change({ format: currentTarget.value as ExportSettings["format"] })}>
                    {Object.entries(exportFormats).map(([format, name]) => (
                        <option key={format} value={format}>{name}</option>
                    ))}
                </select>
            </label>
            <label>
                Comments
                <select id="export-include" value={settings.include}
                    onChange={({ currentTarget }) => change({ include: currentTarget.value as ExportSettings["include"] })}>
                    <option value="all">All</option>
                    <option value="open">Open ones</option>
                </select>
            </label>
            {text("fileName", "File name", "the sequence’s name")}
            {text("timecodeStart", "First frame", "the editor’s")}
            <label>
                If the file exists
                <select id="export-onExists" value={settings.onExists}
                    onChange={({ currentTarget }) => change({ onExists: currentTarget.value as ExportSettings["onExists"] })}>
                    <option value="rename">Number the new one</option>
                    <option value="replace">Replace it</option>
                </select>
            </label>
            <label class="check">
                <input id="export-replies" type="checkbox" checked={settings.replies}
                    onChange={({ currentTarget }) => change({ replies: currentTarget.checked })} />
                With replies
            </label>
            <div class="folder">
                <span id="export-folder" class="path" title={settings.folder}>
                    {settings.folder || "Folder chosen last, else Documents"}
                </span>
                <button id="folder" type="button" onClick={() => void desk.chooseFolder()}>Choose folder…</button>
            </div>
            <div class="row">
                <span class="space" />
                <button id="cancel-export" type="button" disabled={desk.state.value === "idle"}
                    onClick={() => void desk.cancel()}>
                    Cancel export
                </button>
                <button id="export" type="submit" class="primary" disabled={!isOpen || desk.state.value === "asking"}>
                    Start export
                </button>
            </div>
        </form>
    );
}
