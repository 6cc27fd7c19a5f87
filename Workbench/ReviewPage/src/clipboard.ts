/** Answers whether it was copied. */
export async function copyText(text: string): Promise<boolean> {
    try {
        await navigator.clipboard.writeText(text);
        return true;
    } catch {
        return copyBySelection(text);
    }
}

// The way of engines that keep the clipboard from pages.
function copyBySelection(text: string): boolean {
    const field = document.createElement("textarea");
    field.value = text;
    field.className = "visually-hidden";
    document.body.append(field);
    field.select();
    const done = document.execCommand("copy");
    field.remove();
    return done;
}
