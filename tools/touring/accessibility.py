"""What the windows show, read over the accessibility bus: the programs' own widgets and the page in the panel.

The page lives in a process of its own, which this toolkit version does not join to the window's tree. It is on the
same bus under a name of its own and tells its root object when it is asked for its cache.
"""

from gi.repository import Gio, GLib

ACCESSIBLE = "org.a11y.atspi.Accessible"
COMPONENT = "org.a11y.atspi.Component"
TEXT = "org.a11y.atspi.Text"
CACHE = "org.a11y.atspi.Cache"
NOWHERE = "/org/a11y/atspi/null"
ROOT = "/org/a11y/atspi/accessible/root"

ACTIVE, FOCUSED = 1, 12  # numbers of states
WINDOW = 1  # coordinates relative to the window
CALL_LIMIT = 3000  # milliseconds


class Gone(Exception):
    """The object that was asked is not there any more, or its program does not answer."""


class Node:
    """One object: a window, a widget or an element of the page."""

    def __init__(self, bus, owner, path, parent=None):
        self.bus, self.owner, self.path, self.parent = bus, owner, path, parent

    def call(self, interface, method, arguments=None):
        return self.bus.call(self.owner, self.path, interface, method, arguments)

    def ask(self, interface, key):
        arguments = GLib.Variant("(ss)", (interface, key))
        return self.call("org.freedesktop.DBus.Properties", "Get", arguments)[0]

    @property
    def name(self):
        return self.ask(ACCESSIBLE, "Name")

    @property
    def text(self):
        if TEXT not in self.interfaces:
            return self.name
        whole = GLib.Variant("(ii)", (0, self.ask(TEXT, "CharacterCount")))
        return self.call(TEXT, "GetText", whole)[0] or self.name

    @property
    def interfaces(self):
        return self.call(ACCESSIBLE, "GetInterfaces")[0]

    @property
    def extents(self):
        """x, y, width, height in the window, or in the page for one of its elements."""
        return self.call(COMPONENT, "GetExtents", GLib.Variant("(u)", (WINDOW,)))[0]

    def has(self, state):
        low, high = self.call(ACCESSIBLE, "GetState")[0]
        return bool((low | high << 32) >> state & 1)

    @property
    def children(self):
        return [Node(self.bus, owner, path, self) for owner, path in self.call(ACCESSIBLE, "GetChildren")[0]]

    def walk(self):
        """This object and all below it, from the top; what vanishes meanwhile is left out."""
        yield self
        try:
            below = self.children
        except Gone:
            return
        for child in below:
            yield from child.walk()

    def find(self, condition):
        for node in self.walk():
            try:
                if condition(node):
                    return node
            except Gone:
                continue
        return None


class Widget(Node):
    """A widget of a program, with the name that it had when the program was looked at."""

    def __init__(self, node, item):
        super().__init__(node.bus, node.owner, node.path, node.parent)
        self.seen_name = item[6]


class Bus:
    """A connection of our own to the accessibility bus of a session."""

    def __init__(self, session_address):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        self.connection = Gio.DBusConnection.new_for_address_sync(session_address, flags, None, None)
        address = self.call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")[0]
        self.connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)

    def call(self, owner, path, interface, method, arguments=None):
        flags = Gio.DBusCallFlags.NO_AUTO_START
        try:
            answer = self.connection.call_sync(
                owner, path, interface, method, arguments, None, flags, CALL_LIMIT, None)
        except GLib.Error as error:
            raise Gone(error.message) from None
        return answer.unpack()

    def daemon(self, method, arguments=None):
        path, interface = "/org/freedesktop/DBus", "org.freedesktop.DBus"
        return self.call("org.freedesktop.DBus", path, interface, method, arguments)[0]

    def widgets(self, pid):
        """What is on the screen of a process's windows. Hidden widgets are not among their parents' children, but
        their own parts do not know that they are hidden; so only what is reached from the top counts."""
        owner = next((name for name in self.daemon("ListNames")
                      if name.startswith(":") and self.process(name) == pid), None)
        if owner is None:
            return []
        reached = list(Node(self, owner, ROOT).walk())[1:]
        # Names and states of all of them with one question.
        items = self.call(owner, "/org/a11y/atspi/cache", CACHE, "GetItems")[0]
        known = {item[0][1]: item for item in items}
        return [Widget(node, known[node.path]) for node in reached if node.path in known]

    def process(self, owner):
        try:
            return self.daemon("GetConnectionUnixProcessID", GLib.Variant("(s)", (owner,)))
        except Gone:
            return None

    def page(self):
        """The root of the page that a web process shows; None while there is none."""
        for owner in self.daemon("ListNames"):
            if owner.startswith("org.webkit."):
                root = self.page_of(owner)
                if root is not None:
                    return root
        return None

    def page_of(self, owner):
        try:
            items = self.call(owner, "/org/a11y/atspi/cache", CACHE, "GetItems")[0]
            for item in items:
                root = Node(self, *item[0])
                if item[2][1] == NOWHERE and len(root.children) > 0:
                    return root
        except Gone:
            pass
        return None
