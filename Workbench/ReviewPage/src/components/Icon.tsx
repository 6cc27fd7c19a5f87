const shapes = {
    resolve: "M3 8.5 6.5 12 13 4.5",
    reopen: "M12.5 8a4.5 4.5 0 1 1-1.4-3.2M11.5 2v3h-3",
    reply: "M6.5 4 3 7.5 6.5 11M3 7.5h6a4 4 0 0 1 4 4V13",
    edit: "M3 13l.7-3L10.5 3.2l2.3 2.3L6 12.3zM9 4.7 11.3 7",
    remove: "M4 4l8 8M12 4l-8 8",
};

/** A picture beside a name, which says the same. */
export function Icon({ shape }: { shape: keyof typeof shapes }) {
    return (
        <svg class="icon" viewBox="0 0 16 16" aria-hidden="true">
            <path d={shapes[shape]} />
        </svg>
    );
}
