import { useLayoutEffect, useRef } from "preact/hooks";

interface Properties {
    id?: string;
    label: string;
    text: string;
    placeholder?: string;
    disabled?: boolean;
    takesFocus?: boolean;
    onType: (text: string) => void;
    onDone: () => void;
    onCancel?: () => void;
}

/** Text of several lines, as high as the text: Return is done, Shift and Return begins a line. */
export function TextField({ id, label, text, placeholder, disabled, takesFocus, onType, onDone, onCancel }: Properties) {
    const field = useRef<HTMLTextAreaElement>(null);
    useLayoutEffect(() => {
        const { style } = field.current!;
        style.height = "auto";
        style.height = `${field.current!.scrollHeight + 2}px`;
    }, [text]);
    useLayoutEffect(() => {
        if (takesFocus)
            field.current!.focus({ preventScroll: true });
    }, []);

    function press(event: KeyboardEvent): void {
        if (event.key === "Enter" && !event.shiftKey && !event.isComposing) {
            event.preventDefault();
            onDone();
        } else if (event.key === "Escape" && onCancel) {
            event.preventDefault();
            onCancel();
        }
    }

    return (
        <textarea
            ref={field}
            id={id}
            rows={1}
            aria-label={label}
            value={text}
            placeholder={placeholder}
            disabled={disabled}
            maxLength={10_000}
            onInput={({ currentTarget }) => onType(currentTarget.value)}
            onKeyDown={press}
        />
    );
}
