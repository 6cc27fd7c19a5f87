"""The programs of the tour as somebody before the screen meets them."""

import csv
import pathlib
import signal
import subprocess
import time

from touring.accessibility import ACTIVE, FOCUSED, Gone

PAGE_CONTROL = ["com.zelvix.fcp.ReviewPage", "/com/zelvix/fcp/ReviewPage", "com.zelvix.fcp.ReviewPage1", "Served"]
SETTLED = ("Synced", "Not synced", "Deleting", "Not deleted", "Syncing")
REVIEWERS = ["Ada", "Ben", "Chloé"]
REMARKS = [
    "The cut comes before the look: hold this shot until her eyes have left the door, then go to the street",
    "The car is heard before it is seen; that is fine, but fade it in over ten frames or so, it startles here",
    "Her coat is buttoned in this shot and open in the next one: is there another take from the same side?",
    "The caption stands too short to be read twice. A second more, or fewer words, and away from the lower edge",
    "I like this much better than the last version. Nothing to change from here to the end of the scene, thank you",
    "Noise in the shadows behind him; compare with the shot before, which has the same light and is quite clean",
    "Two people told me that they did not understand who is calling. Could we see the name on the telephone?",
    "The music should end with the door, not before it. Let the last note ring over the cut if it fits in there",
]
LIMIT = 40.0  # seconds that anything may take
ENVIRONMENT_OF_THE_LOG = {"G_MESSAGES_DEBUG": "ai.zelvix.fcp.extension"}


class Unexpected(Exception):
    """Something else was seen than what the step is about; the text says what."""


class Stage:
    FIELD = "New comment at the playhead"

    def __init__(self, session, screen, bus, build):
        self.session, self.screen, self.bus, self.build = session, screen, bus, build
        self.workbench = None

    # Programs

    def start(self, *films):
        self.session.environment.update(ENVIRONMENT_OF_THE_LOG)
        files = [str(film.path) for film in films]
        self.workbench = self.session.start("workbench", [str(self.build / "bin/zelvix-workbench"), *files])

    def check_alive(self):
        if self.workbench.poll() is not None:
            words = (self.session.log_folder / "workbench.log").read_text(errors="replace").strip().splitlines()
            raise Unexpected(f"the workbench has ended with status {self.workbench.returncode}; "
                             f"its last words: {' / '.join(words[-3:]) or 'none'}")

    def wait(self, what, condition, limit=LIMIT, saw=lambda: ""):
        """What the condition comes to, as soon as it is true. `saw` tells what there was instead."""
        deadline = time.monotonic() + limit
        while True:
            self.check_alive()
            try:
                result = condition()
            except Gone:
                result = None
            if result:
                return result
            if time.monotonic() > deadline:
                raise Unexpected(f"no {what} within {limit:g} s{describe(saw)}")
            time.sleep(0.05)

    def descendants(self):
        children = {}
        for entry in pathlib.Path("/proc").glob("[0-9]*/stat"):
            try:
                parent = int(entry.read_text().rsplit(")", 1)[1].split()[1])
            except (OSError, IndexError, ValueError):
                continue
            children.setdefault(parent, []).append(int(entry.parent.name))
        found, ahead = [], [self.workbench.pid]
        while ahead:
            below = children.get(ahead.pop(), [])
            found += below
            ahead += below
        return found

    def containers(self):
        """The container applications that the workbench started."""
        return [pid for pid in self.descendants() if program_of(pid).endswith("/zelvix-container")]

    def network_processes(self):
        """The engine's network processes that descend from the workbench."""
        return [pid for pid in self.descendants() if program_of(pid).endswith("WebKitNetworkProcess")]

    def serve_page(self, served):
        self.session.run("busctl", "--user", f"--address={self.session.environment['DBUS_SESSION_BUS_ADDRESS']}",
                         "set-property", *PAGE_CONTROL, "b", "true" if served else "false")

    def end(self):
        self.workbench.send_signal(signal.SIGTERM)
        try:
            return self.workbench.wait(20)
        except subprocess.TimeoutExpired:
            raise Unexpected("the workbench did not end within 20 s of SIGTERM") from None

    # Windows and widgets

    def arrange(self):
        """Puts the container's window beside the workbench's, and the keyboard into the latter."""
        window = self.wait("workbench window", lambda: self.screen.window_of(self.workbench.pid))
        pid = self.wait("container application", self.containers)[0]
        other = self.wait("container window", lambda: self.screen.window_of(pid))
        self.screen.move_window(other, self.screen.place_of(window)[2] + 20, 0)
        self.screen.move_window(window, 0, 0)
        self.screen.focus(window)

    def widgets(self):
        """The workbench's widgets on the screen."""
        return self.bus.widgets(self.workbench.pid)

    def widget(self, name):
        return next((widget for widget in self.widgets() if widget.seen_name == name), None)

    def area_of(self, widget):
        """Where it is on the screen. The toolkit counts from inside the border that it draws around its window."""
        left, top, width, height = self.screen.place_of(self.screen.window_of(self.workbench.pid))
        owner = widget
        while owner.parent.parent is not None:
            owner = owner.parent
        inner = owner.extents
        x, y, own_width, own_height = widget.extents
        return left + (width - inner[2]) // 2 + x, top + (height - inner[3]) // 2 + y, own_width, own_height

    def click_menu(self, entry):
        """A menu has a window of its own; the toolkit tells places in it as if it hung in the corner of its owner."""
        item = self.wait(f"menu entry \"{entry}\"", lambda: self.widget(entry))
        menu = item
        while menu.name != "GtkPopoverMenu":
            menu = menu.parent
        left, top, width, height = menu.extents
        places = [place for place, _ in self.screen.windows_of(self.workbench.pid)]
        place = next((place for place in places if place[2:] == (width, height)), None)
        if place is None:
            raise Unexpected(f"no window of a menu of {width} by {height} among {places}")
        x, y, own_width, own_height = item.extents
        self.screen.click(place[0] + x - left + own_width / 2, place[1] + y - top + own_height / 2)

    def click_widget(self, name, across=0.5):
        x, y, width, height = self.area_of(self.wait(f"widget \"{name}\"", lambda: self.widget(name)))
        self.screen.click(x + width * across, y + height / 2)

    def has_second_window(self):
        """A list or a menu that is open has one of its own."""
        return len(self.screen.windows_of(self.workbench.pid)) > 1

    def pin(self, text):
        """The pin on the timeline of the comment with this text."""
        return next((widget for widget in self.widgets()
                     if widget.seen_name.startswith("Comment, ") and widget.seen_name.endswith(text)), None)

    def host_frame(self):
        """The number of the frame at the editor's playhead."""
        label = self.widget("Frame")
        words = label.text.split() if label else []
        return int(words[-1]) if words else None

    # The page

    def page(self):
        return self.bus.page()

    def in_page(self, condition):
        root = self.page()
        return root and root.find(condition)

    def page_element(self, name):
        return self.in_page(lambda node: node.name == name)

    def page_text(self, name):
        element = self.page_element(name)
        return element.text if element else None

    def page_says(self, text):
        return self.in_page(lambda node: node.text == text) is not None

    def stands(self, name):
        """A condition: the element of the page is at the same place twice in a row."""
        last = [None]

        def same():
            element = self.page_element(name)
            before, last[0] = last[0], element and element.extents
            return last[0] is not None and last[0][3] > 0 and last[0] == before

        return same

    def page_place(self, element, across=0.5, down=0.5):
        view = self.wait("web view", lambda: self.widget("WebKitWebView"))
        left, top, _, _ = self.area_of(view)
        x, y, width, height = element.extents
        return left + x + width * across, top + y + height * down

    def click_page(self, name, across=0.5):
        element = self.wait(f"\"{name}\" in the page", lambda: self.page_element(name), saw=self.page_summary)
        self.screen.click(*self.page_place(element, across))

    def page_summary(self):
        """The texts of the page, for a failure's line."""
        root = self.page()
        if not root:
            return "no page"
        texts = [node.name for node in root.walk() if node.name]
        return "the page with " + "; ".join(text[:60] for text in texts[:12])

    def log_lines(self):
        lists = self.in_page(lambda node: node.name == "Event log" and len(node.children) > 1)
        return [child.name for child in lists.children] if lists else []

    def comments(self):
        """The comments on the page: element, state and whether it is the marked one."""
        found = []
        lists = self.in_page(lambda node: node.name == "Comments" and is_list(node))
        for item in lists.children if lists else []:
            state = next((word for word in item.text.split("\n") if word in SETTLED), None)
            found.append((item.children[0], state, item.has(ACTIVE)))
        return found

    def comment(self, text):
        return next((entry for entry in self.comments() if entry[0].name.endswith(text)), None)

    def type_comment(self, text):
        """In place of what is in the field; the comment is not sent."""
        self.click_page(self.FIELD)
        self.wait("keyboard in the comment's field",
                  lambda: self.in_page(lambda node: node.name == self.FIELD and node.has(FOCUSED)))
        self.screen.press("ctrl+a")
        self.screen.press("BackSpace")
        if text:
            self.screen.type(text)
            self.wait(f"\"{text}\" in the comment's field", lambda: self.page_text(self.FIELD) == text,
                      saw=lambda: self.page_text(self.FIELD))

    def add_comment(self, text):
        self.type_comment(text)
        self.screen.press("Return")
        return self.wait(f"comment \"{text}\" on the page", lambda: self.comment(text), saw=self.page_summary)

    def wait_synced(self, text, limit=LIMIT):
        def state():
            entry = self.comment(text)
            return entry[1] if entry else "no such comment"
        self.wait(f"synced comment \"{text}\"", lambda: state() == "Synced", limit, saw=state)

    # The container

    def container_texts(self):
        """The texts in the container's window."""
        return [widget.seen_name for widget in self.bus.widgets(self.containers()[0]) if widget.seen_name]

    def shown_exports(self):
        """What the container's window tells of each, without the time of day."""
        texts = [text.partition("   ")[2] for text in self.container_texts()]
        return [text for text in texts if text]

    def picture_container(self, path):
        self.screen.picture(path, window=self.screen.window_of(self.containers()[0]))

    def documents(self):
        """Where exports go."""
        return pathlib.Path(self.session.environment["XDG_DOCUMENTS_DIR"])

    def stored_comments(self, sequence):
        """The comments of a sequence in the store: text, seconds and identifier."""
        return [(body, float(start), key) for body, start, key in self.ask_store(
            "SELECT body, start_s, comments.id FROM comments JOIN sequences ON sequences.id = sequence_id"
            f" WHERE name = '{quoted(sequence)}' ORDER BY start_s")]

    def exports(self):
        """All that were started: pairs of state and path, which only a finished one has."""
        return [tuple(row) for row in self.ask_store("SELECT state, coalesce(path, '') FROM exports ORDER BY id")]

    def ask_store(self, question):
        """The store's answer to another program than ours."""
        store = pathlib.Path(self.session.environment["XDG_DATA_HOME"]) / "zelvix/container.sqlite"
        if not store.exists():
            return []
        rows = self.session.run("sqlite3", "-readonly", "-csv", str(store), question)
        return list(csv.reader(rows.decode().splitlines()))

    def import_comments(self, count):
        """A table of so many comments into the open sequence, by the container application's own means."""
        table = self.session.folder / "comments.csv"
        with open(table, "w", encoding="utf-8", newline="") as file:
            rows = csv.writer(file)
            rows.writerow(["id", "seconds", "author", "text", "resolved"])
            rows.writerows([f"note-{number}", 0.75 * number, REVIEWERS[number % len(REVIEWERS)],
                            REMARKS[number % len(REMARKS)], str(number % 5 == 1).lower()] for number in range(count))
        self.session.run(str(self.build / "bin/zelvix-container"), "--import", str(table), limit=120)


def quoted(text):
    return text.replace("'", "''")


def program_of(pid):
    try:
        return pathlib.Path(f"/proc/{pid}/cmdline").read_bytes().split(b"\0")[0].decode(errors="replace")
    except OSError:
        return ""


def is_list(node):
    """Whether its children are the comments; the section around the list has the same name."""
    return any(below.name.startswith("Delete: ") for child in node.children for below in child.children)


def describe(saw):
    try:
        seen = saw()
    except (Gone, Unexpected, subprocess.SubprocessError) as problem:
        seen = f"nothing readable ({problem})"
    return f"; saw {seen}" if seen not in ("", None) else ""
