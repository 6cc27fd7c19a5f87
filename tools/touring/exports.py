"""Exports from the page's form, which is open."""

import csv
import pathlib

from touring.stage import Unexpected

STARTED = "Export started."
CANCELLED = "The export was cancelled."
TOO_LATE = "No export was running."


def to_its_end(stage):
    """The file that it made."""
    count = len(stage.exports())
    stage.wait("open export form", stage.stands("Start export"), saw=stage.page_summary)
    stage.click_page("Start export")
    stage.wait(f"notice \"{STARTED}\"", lambda: stage.page_says(STARTED), saw=stage.page_summary)
    state, path = end_of(stage, count)
    if state != "done":
        raise Unexpected(f"the export is {state}")
    return pathlib.Path(path)


def cancel_in_time(stage):
    """As somebody who sees at once that it was the wrong button: many comments take a while to be read and written.
    The page's other button can be pressed that soon when there has been an export before."""
    for _ in range(3):
        to_its_end(stage).unlink()
        before, count = set(stage.documents().iterdir()), len(stage.exports())
        stage.screen.click_in_turn(*[stage.page_place(stage.page_element(name))
                                     for name in ["Start export", "Cancel export"]])
        state, path = end_of(stage, count)
        if state == "cancelled":
            check_cancelled(stage, before)
            return
        pathlib.Path(path).unlink()
    raise Unexpected(f"each export came to its end before it was cancelled: {stage.exports()}")


def check_cancelled(stage, files_before):
    stage.wait(f"notice \"{CANCELLED}\"", lambda: stage.page_says(CANCELLED), saw=stage.page_summary)
    left = set(stage.documents().iterdir()) - files_before
    if left:
        raise Unexpected(f"the cancelled export left {sorted(left)}")


def end_of(stage, count):
    """State and path of the export that came after so many."""
    def ended():
        return next((export for export in stage.exports()[count:] if export[0] != "running"), None)

    return stage.wait("end of the export", ended, saw=stage.exports)


def rows_of(table):
    with open(table, encoding="utf-8-sig", newline="") as file:
        return list(csv.DictReader(file))
