"""Hands and eyes: the mouse, the keyboard and pictures of the screen."""

import time


class Screen:
    def __init__(self, session):
        self.session = session

    def windows_of(self, pid):
        """The visible windows of a process, the largest first: pairs of place and number."""
        found = (self.try_xdotool("search", "--all", "--onlyvisible", "--pid", str(pid), "--name", "") or "").split()
        return sorted(((self.place_of(window), int(window)) for window in found), key=lambda one: -one[0][2])

    def window_of(self, pid):
        """The number of a process's largest visible window; None while it has none."""
        windows = self.windows_of(pid)
        return windows[0][1] if windows else None

    def place_of(self, window):
        """x, y, width and height of a window on the screen."""
        lines = self.xdotool("getwindowgeometry", "--shell", str(window)).splitlines()
        values = dict(line.split("=", 1) for line in lines if "=" in line)
        return tuple(int(values[key]) for key in ["X", "Y", "WIDTH", "HEIGHT"])

    def move_window(self, window, x, y):
        self.xdotool("windowmove", "--sync", str(window), str(x), str(y))

    def focus(self, window):
        """No window manager is here to do it."""
        self.xdotool("windowraise", str(window), "windowfocus", "--sync", str(window))

    def click(self, x, y, button=1):
        # The pointer comes in two steps: widgets want to be entered before they are pressed.
        self.xdotool("mousemove", str(round(x)), str(round(y) - 1))
        self.xdotool("mousemove", "--sync", str(round(x)), str(round(y)))
        time.sleep(0.05)
        self.xdotool("click", str(button))

    def click_in_turn(self, *places):
        """One right after the other, as a hand does that knows its way."""
        steps = []
        for x, y in places:
            steps += ["mousemove", str(round(x)), str(round(y) - 1), "mousemove", str(round(x)), str(round(y)),
                      "click", "--delay", "0", "1"]
        self.xdotool(*steps)

    def press(self, *keys):
        self.xdotool("key", "--clearmodifiers", *keys)

    def type(self, text):
        self.xdotool("type", "--clearmodifiers", "--delay", "15", text)

    def picture(self, path, *options, window="root"):
        self.session.run("import", "-silent", "-window", str(window), *options, str(path))

    def xdotool(self, *arguments):
        return self.session.run("xdotool", *arguments).decode()

    def try_xdotool(self, *arguments):
        try:
            return self.xdotool(*arguments)
        except Exception:  # a search that finds nothing fails
            return None
