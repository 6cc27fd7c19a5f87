"""What the tour does, step by step. A step returns when it has seen what it is about, and raises Unexpected when it
has seen something else."""

import json
import os
import signal
import time

from touring import exports
from touring.pictures import best_match, fitted, grain_of, read_bars
from touring.stage import Unexpected

LOADING = "Opening your review workspace…"
REOPENING = "Reopening your review workspace…"
HEADING = "Connection paused"
OFFLINE = "Failed to connect to Zelvix. Check your internet connection."
RETRY = "Retry connection"
HELP = "https://example.org/help"
MARKERS = ["/tmp/zelvix-fcp-dev", "/tmp/zelvix-fcp-diag"]
SAME = 5e-4  # likenesses that differ by less cannot be told apart
ALIKE = 0.9
TIMELINE_MARGIN = 12  # pixels that the timeline leaves free at both ends
MANY = 100_000  # comments: as many as the store is made for


class Tour:
    def __init__(self, stage, film, other, is_own_clip, links, pictures):
        self.stage, self.film, self.other, self.is_own_clip = stage, film, other, is_own_clip
        self.links, self.pictures = links, pictures
        self.texts = ["Tighten this cut", "Check the sound here"]
        self.draft = "Not said yet"
        self.markers_before = [path for path in MARKERS if os.path.exists(path)]
        self.steps = [
            ("the loading overlay is shown, then the page is revealed", self.overlay),
            ("the page hears of its connection and of the clip's name, duration and rate", self.connected),
            ("playing moves the page's timecode", self.playing),
            ("the keys play on and back, at several speeds", self.speeds),
            ("two comments come through to the database", self.comments),
            ("the page seeks, and the picture shows that frame", self.seeking),
            ("a click on the timeline near a comment marks that comment in the page", self.marker),
            ("both comments are pins on the timeline, and a click on one goes there", self.pins),
            ("another sequence has comments of its own", self.sequences),
            ("the CSV export holds both comments, and there is nothing left of it to cancel", self.export),
            ("an export is cancelled while it is being written and leaves no file, and a later one is whole",
             self.cancelled_export),
            ("a link to a foreign host goes to the desktop, and the page stays", self.foreign_link),
            ("without its server the page gives way to the error overlay", self.server_gone),
            ("the server comes back, and a retry recovers, with what was being typed", self.server_back),
            ("the container is killed in mid-command, and a new one gets that comment and a later one",
             self.container_killed),
            ("what is being written outlives the container and the page", self.drafts),
            ("the workbench ends and leaves nothing behind", self.ending),
        ]

    def overlay(self):
        """The page is here within half a second, and the overlay goes after four at the latest: a network that stands
        still lets it be looked at, and on a machine that is too busy even for that, so does another start."""
        stage = self.stage
        for tries_left in [2, 1, 0]:
            stage.start(self.film, self.other)
            try:
                self.see_overlay()
                break
            except Unexpected:
                if tries_left == 0:
                    raise
                stage.end()
            finally:
                if tries_left == 0 or stage.workbench.poll() is None:
                    stage.arrange()

    def see_overlay(self):
        stage = self.stage
        network = stage.wait("network process", stage.network_processes)[0]
        os.kill(network, signal.SIGSTOP)
        try:
            stage.wait(f"label \"{LOADING}\"", lambda: stage.widget(LOADING), 15, saw=self.widgets)
            stage.screen.picture(self.pictures / "overlay.png", "-trim", "+repage")
        finally:
            os.kill(network, signal.SIGCONT)
        stage.wait("end of the loading overlay", lambda: not stage.widget(LOADING), saw=self.widgets)
        stage.wait("review page", stage.page, saw=self.widgets)

    def connected(self):
        stage = self.stage
        self.open_log()
        lines = stage.wait("event \"fcp:sequence-changed\"", lambda: self.logged("fcp:sequence-changed"),
                           saw=stage.page_summary)
        if not self.logged("fcp:connected") or self.place_in_log("fcp:connected") > self.place_in_log("fcp:sequence-changed"):
            raise Unexpected(f"\"fcp:connected\" did not come first: {stage.log_lines()}")
        info = payload(lines[0])
        expected = {"name": self.film.name, "frameRate": round(self.film.rate, 2)}
        seen = {key: info.get(key) for key in expected}
        # Two readers may round the rate of a foreign file differently; the number of frames they agree on.
        tolerance = 1e-6 if self.is_own_clip else 0.5 / self.film.rate
        if seen != expected or abs(info.get("duration", -1) - self.film.seconds) > tolerance:
            raise Unexpected(f"{info} instead of {expected} and a duration of {self.film.seconds}")

    def playing(self):
        stage = self.stage
        seen = []

        def moved():
            text = stage.page_text("Playhead")
            if text and text not in seen:
                seen.append(text)
            return len(seen) >= 2

        stage.click_widget("First frame")
        first = self.timecode(0)
        stage.wait("timecode of the first frame", lambda: stage.page_text("Playhead") == first,
                   saw=lambda: stage.page_text("Playhead"))
        stage.click_widget("Play")
        stage.wait("moving timecode", lambda: stage.page_text("Playhead") != first)
        stage.wait("two timecodes while playing", moved, saw=lambda: seen)
        if seen != sorted(seen):
            raise Unexpected(f"timecodes out of order: {seen}")
        stage.click_widget("Play")
        self.settled()

    def speeds(self):
        stage = self.stage
        enough = max(2, min(12, self.film.frames // 20))
        self.click_timeline(0.3)
        for key, direction in [("l", 1), ("j", -1)]:
            start = stage.host_frame()
            stage.screen.press(key, key)
            stage.wait("speed of 2", lambda: "2" in (stage.widget("Speed").text or ""), saw=lambda: stage.widget("Speed").text)
            stage.wait(f"{enough} frames after \"{key}\"",
                       lambda start=start, direction=direction: (stage.host_frame() - start) * direction >= enough,
                       saw=stage.host_frame)
            stage.screen.press("k")
            self.settled()

    def comments(self):
        for part, text in zip([0.25, 0.75], self.texts):
            self.click_timeline(part)
            self.stage.add_comment(text)
            self.stage.wait_synced(text)
        stored = self.stage.stored_comments(self.film.name)
        if [body for body, _, _ in stored] != self.texts:
            raise Unexpected(f"the database holds {stored}")

    def seeking(self):
        stage = self.stage
        for number in [0, 1]:
            body, seconds, _ = self.stored(number)
            frame = self.film.frame_at(seconds)
            stage.screen.click(*stage.page_place(stage.comment(body)[0], across=0.3))
            stage.wait(f"frame {frame} in the editor", lambda frame=frame: stage.host_frame() == frame,
                       saw=stage.host_frame)
            self.check_picture(frame)

    def marker(self):
        stage = self.stage
        body, seconds, key = self.stored(0)
        self.click_timeline(1.0)
        offset = min(0.2, self.film.seconds / 20)
        self.click_timeline((seconds + offset) / self.film.seconds)
        events = stage.wait("event \"fcp:marker-clicked\"", lambda: self.logged("fcp:marker-clicked"),
                            saw=stage.log_lines)
        event = payload(events[-1])
        if event.get("id") != key or event.get("text") != body:
            raise Unexpected(f"\"fcp:marker-clicked\" with {event} instead of {key}, {body}")
        stage.wait(f"mark on \"{body}\"", lambda: stage.comment(body)[2],
                   saw=lambda: [(element.name, marked) for element, _, marked in stage.comments()])

    def pins(self):
        stage = self.stage
        for number in [0, 1]:
            body, seconds, _ = self.stored(number)
            self.click_timeline(1.0 if number == 0 else 0.05)
            pin = stage.wait(f"pin of \"{body}\"", lambda body=body: stage.pin(body), saw=self.widgets)
            x, y, width, height = stage.area_of(pin)
            stage.screen.click(x + width / 2, y + height / 2)
            frame = self.film.frame_at(seconds)
            stage.wait(f"frame {frame} after a click on its pin", lambda frame=frame: stage.host_frame() == frame,
                       saw=stage.host_frame)
            stage.wait(f"mark on \"{body}\"", lambda body=body: stage.comment(body)[2], saw=stage.page_summary)

    def sequences(self):
        stage = self.stage
        self.choose_sequence("Down", self.other)
        stage.wait("page without the first sequence's comments",
                   lambda: not any(stage.comment(text) for text in self.texts), saw=stage.page_summary)
        stage.wait("timeline without pins", lambda: not any(stage.pin(text) for text in self.texts), saw=self.widgets)
        self.choose_sequence("Up", self.film)
        stage.wait("page with both comments", lambda: all(stage.comment(text) for text in self.texts),
                   saw=stage.page_summary)
        stage.wait("both pins", lambda: all(stage.pin(text) for text in self.texts), saw=self.widgets)

    def choose_sequence(self, key, film):
        stage = self.stage
        name = film.name
        stage.click_widget("Sequence")
        stage.wait("open list of sequences", stage.has_second_window, saw=self.widgets)
        stage.screen.press(key, "Return")
        stage.wait(f"sequence {name} in the page", lambda: stage.page_says(name), saw=stage.page_summary)

    def export(self):
        stage = self.stage
        stage.click_page("Export", across=0.2)
        made = exports.to_its_end(stage)
        rows = exports.rows_of(made)
        frames = {row.get("text"): row.get("frame") for row in rows}
        stored = stage.stored_comments(self.film.name)
        expected = {body: str(self.film.frame_at(seconds)) for body, seconds, _ in stored}
        if frames != expected or not set(self.texts) <= set(frames):
            raise Unexpected(f"{made.name} holds {rows} instead of {expected}")
        stage.click_page("Cancel export")
        stage.wait(f"notice \"{exports.TOO_LATE}\"", lambda: stage.page_says(exports.TOO_LATE), saw=stage.page_summary)

    def cancelled_export(self):
        stage = self.stage
        self.choose_sequence("Down", self.other)
        stage.wait(f"{self.other.name} in the container's window", lambda: self.other.name in stage.container_texts(),
                   saw=stage.container_texts)
        stage.import_comments(MANY)
        exports.cancel_in_time(stage)
        before = set(stage.documents().iterdir())
        made = exports.to_its_end(stage)
        count = len(exports.rows_of(made))
        if count != MANY or set(stage.documents().iterdir()) - before != {made}:
            raise Unexpected(f"{count} comments in {made}, in a folder with {sorted(stage.documents().iterdir())}")
        shown = ["~/Documents/" + made.name, "Cancelled"]
        # With so many rows the window is renewed less often.
        stage.wait("both exports in the container's window, the newest first",
                   lambda: stage.shown_exports()[:2] == shown, 90, saw=stage.shown_exports)
        stage.picture_container(self.pictures / "container.png")
        self.choose_sequence("Up", self.film)

    def foreign_link(self):
        stage = self.stage
        stage.click_page("Help")

        def opened():
            return self.links.read_text().split() if self.links.exists() else []

        stage.wait("address handed to the desktop", opened)
        if opened() != [HELP]:
            raise Unexpected(f"the desktop was handed {opened()}")
        stage.wait("page with both comments", lambda: all(stage.comment(text) for text in self.texts),
                   saw=stage.page_summary)

    def server_gone(self):
        stage = self.stage
        stage.type_comment(self.draft)
        stage.serve_page(False)
        self.reload_page(f"error overlay \"{HEADING}\"", lambda: stage.widget(HEADING))
        for text in [OFFLINE, "ZELVIX / OFFLINE", RETRY]:
            stage.wait(f"\"{text}\" on the error overlay", lambda text=text: stage.widget(text), saw=self.widgets)

    def server_back(self):
        stage = self.stage
        stage.serve_page(True)
        stage.click_widget(RETRY)
        stage.wait("end of the error overlay", lambda: not stage.widget(HEADING), saw=self.widgets)
        stage.wait("end of the loading overlay", lambda: not stage.widget(REOPENING), saw=self.widgets)
        stage.wait("connected page with both comments",
                   lambda: stage.page_says("Connected") and all(stage.comment(text) for text in self.texts),
                   saw=stage.page_summary)
        stage.wait(f"draft \"{self.draft}\"", lambda: stage.page_text(stage.FIELD) == self.draft,
                   saw=lambda: stage.page_text(stage.FIELD))
        stage.type_comment("")

    def container_killed(self):
        stage = self.stage
        first = stage.wait("container application", stage.containers)[0]
        os.kill(first, signal.SIGSTOP)
        try:
            stage.add_comment("Lost on the way")
            time.sleep(0.3)  # the command leaves the page; nobody can show that it has not been answered
            state = stage.comment("Lost on the way")[1]
        finally:
            os.kill(first, signal.SIGKILL)
        if state != "Syncing":
            raise Unexpected(f"the comment was \"{state}\" although the container stood still")
        stage.wait("new container application", lambda: set(stage.containers()) - {first}, 30, saw=stage.containers)
        stage.arrange()
        stage.add_comment("Heard by the new one")
        stage.wait_synced("Heard by the new one")
        stage.wait_synced("Lost on the way")
        bodies = [body for body, _, _ in stage.stored_comments(self.film.name)]
        if sorted(bodies) != sorted([*self.texts, "Lost on the way", "Heard by the new one"]):
            raise Unexpected(f"the database holds {bodies}")

    def drafts(self):
        stage = self.stage
        words = "Half a thought"
        self.open_log()
        stage.type_comment(words)
        first = stage.wait("container application", stage.containers)[0]
        os.kill(first, signal.SIGKILL)
        stage.wait("new container application", lambda: set(stage.containers()) - {first}, 30, saw=stage.containers)
        stage.arrange()
        self.reload_page("page whose event log is closed again",
                         lambda: stage.page_element(stage.FIELD) and not stage.log_lines())
        stage.wait(f"\"{words}\" in the comment's field",
                   lambda: (stage.page_text(stage.FIELD) or "").strip() == words, saw=lambda: stage.page_text(stage.FIELD))
        stage.wait("connected page", lambda: stage.page_says("Connected"), saw=stage.page_summary)
        stage.click_page(stage.FIELD)
        stage.screen.press("End", "Return")
        stage.wait_synced(words)

    def ending(self):
        stage = self.stage
        status = stage.end()
        left = [path for path in MARKERS if os.path.exists(path) and path not in self.markers_before]
        if status != 0 or left or stage.containers():
            raise Unexpected(f"status {status}, marker files {left}, container applications {stage.containers()}")

    # Helpers

    def widgets(self):
        """The texts on the screen outside the page."""
        shown = [widget.seen_name for widget in self.stage.widgets() if widget.seen_name]
        return "; ".join(shown[:40]) or "no window"

    def open_log(self):
        """Until it is open: the first click on a window that has just come may be lost."""
        stage = self.stage
        for _ in range(3):
            stage.click_page("Event log", across=0.2)
            try:
                stage.wait("open event log", stage.log_lines, 5)
                return
            except Unexpected:
                continue
        raise Unexpected("the event log does not open")

    def logged(self, event):
        return [line for line in self.stage.log_lines() if f"• {event} " in line]

    def place_in_log(self, event):
        return next(index for index, line in enumerate(self.stage.log_lines()) if f"• {event} " in line)

    def click_timeline(self, part):
        """A click on the timeline at that part of it; returns when playhead and page stand still."""
        stage = self.stage
        x, y, width, height = stage.area_of(stage.wait("timeline", lambda: stage.widget("Timeline")))
        inner = width - 2 * TIMELINE_MARGIN
        stage.screen.click(x + TIMELINE_MARGIN + min(part * inner, inner - 1), y + height * 0.75)
        frame = min(int(part * self.film.frames), self.film.frames - 1)
        near = max(1, self.film.frames / inner)
        stage.wait(f"frame {frame} after a click on the timeline", lambda: abs(stage.host_frame() - frame) <= near,
                   saw=stage.host_frame)
        self.settled()

    def settled(self):
        """Waits until the page shows the editor's frame, twice in a row."""
        stage, last = self.stage, [None]

        def same():
            host, page = stage.host_frame(), stage.page_text("Playhead")
            stands = last[0] == (host, page) and page == self.timecode(host)
            last[0] = (host, page)
            return stands

        stage.wait("page at the editor's frame", same, saw=lambda: last[0])

    def timecode(self, frame):
        """Two labels, or four, are left out each minute but the tenth where that keeps the label to the clock."""
        count = round(self.film.rate)
        dropped = {29.97: 2, 59.94: 4}.get(round(self.film.rate, 2), 0)
        minute, ten_minutes = count * 60 - dropped, count * 600 - dropped * 9
        tens, rest = divmod(frame, ten_minutes)
        label = frame + dropped * (9 * tens + max(0, rest - dropped) // minute)
        whole = label // count
        separator = ";" if dropped else ":"
        return f"{whole // 3600:02}:{whole // 60 % 60:02}:{whole % 60:02}{separator}{label % count:02}"

    def stored(self, number):
        stored = self.stage.stored_comments(self.film.name)
        if len(stored) <= number:
            raise Unexpected(f"the database holds {len(stored)} comments")
        return stored[number]

    def check_picture(self, frame):
        """The picture on the screen is this frame and no neighbour of it."""
        stage = self.stage
        shot = self.pictures / f"frame-{frame}.png"
        frames = self.film.grains(frame - 2, frame + 2)

        def shows():
            stage.screen.picture(shot)
            area = fitted(self.film.aspect, stage.area_of(stage.widget("Picture")))
            grain = grain_of(shot, area)
            matches = dict((number, like) for like, number in best_match(grain, frames))
            is_best = matches[frame] >= max(matches.values()) - SAME and matches[frame] > ALIKE
            seen.update(matches=matches, bars=read_bars(grain) if self.is_own_clip else frame)
            return is_best and seen["bars"] == frame

        seen = {}
        stage.wait(f"picture of frame {frame}", shows, saw=lambda: seen)

    def reload_page(self, what, condition):
        """By the page's own menu, as a user would, until that is seen: a click on a menu that is still being opened closes
        it, and does nothing else."""
        stage = self.stage
        for tries_left in [2, 1, 0]:
            stage.screen.click(*stage.page_place(stage.page_element("Comments"), down=0.97), button=3)
            stage.click_menu("Reload")
            try:
                stage.wait(what, condition, 15, saw=self.widgets)
                return
            except Unexpected:
                if tries_left == 0:
                    raise


def payload(line):
    return json.loads(line[line.index("{"):])
