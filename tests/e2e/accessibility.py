"""A program as assistive technology sees it, over the accessibility bus.

Nothing is cached: every property is what the program would report to a screen reader at this moment.
"""

from gi.repository import Gio, GLib

REGISTRY = "org.a11y.atspi.Registry"
ROOT = "/org/a11y/atspi/accessible/root"
NULL = "/org/a11y/atspi/null"
TIMEOUT_MS = 10_000

# The bits of AT-SPI's state set that matter for our windows.
STATES = {
    1: "active", 4: "checked", 6: "defunct", 7: "editable", 8: "enabled", 11: "focusable", 12: "focused", 16: "modal",
    22: "selectable", 23: "selected", 24: "sensitive", 25: "showing", 30: "visible", 32: "indeterminate",
    41: "checkable", 42: "has-popup", 43: "read-only",
}

# A printed tree omits a table's rows beyond these.
ROWS_PRINTED = 40


class Gone(Exception):
    """The object or its program no longer exists or does not reply."""


def connect(address):
    """Opens a private connection to a message bus."""
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
    connection.set_exit_on_close(False)
    return connection


def call(bus, name, path, interface, method, arguments=None):
    """Calls a method and returns the reply as Python values."""
    try:
        reply = bus.call_sync(name, path, interface, method, arguments, None, Gio.DBusCallFlags.NONE, TIMEOUT_MS, None)
    except GLib.Error as error:
        raise Gone(f"{method} of {path}: {error.message}") from error
    return reply.unpack()


class Accessible:
    """A window, control, cell or other node of the accessible tree."""

    def __init__(self, bus, name, path):
        self.bus = bus
        self.name_on_bus = name
        self.path = path

    def __eq__(self, other):
        return isinstance(other, Accessible) and self.identity == other.identity

    def __hash__(self):
        return hash(self.identity)

    def __repr__(self):
        return self.line()

    @property
    def identity(self):
        return self.name_on_bus, self.path

    def ask(self, interface, method, arguments=None):
        return call(self.bus, self.name_on_bus, self.path, f"org.a11y.atspi.{interface}", method, arguments)

    def attribute(self, interface, name):
        arguments = GLib.Variant("(ss)", (f"org.a11y.atspi.{interface}", name))
        return call(self.bus, self.name_on_bus, self.path, "org.freedesktop.DBus.Properties", "Get", arguments)[0]

    @property
    def name(self):
        return self.attribute("Accessible", "Name")

    @property
    def description(self):
        return self.attribute("Accessible", "Description")

    @property
    def role(self):
        return self.ask("Accessible", "GetRoleName")[0]

    @property
    def interfaces(self):
        return {name.rpartition(".")[2] for name in self.ask("Accessible", "GetInterfaces")[0]}

    @property
    def states(self):
        low, high = self.ask("Accessible", "GetState")[0]
        bits = low | high << 32
        return {name for bit, name in STATES.items() if bits >> bit & 1}

    @property
    def children(self):
        return [self.relative(*child) for child in self.ask("Accessible", "GetChildren")[0] if child[1] != NULL]

    @property
    def extents(self):
        """The rectangle on the screen: x, y, width and height."""
        return self.ask("Component", "GetExtents", GLib.Variant("(u)", (0,)))[0]

    @property
    def text(self):
        return self.ask("Text", "GetText", GLib.Variant("(ii)", (0, -1)))[0]

    @property
    def value(self):
        return self.attribute("Value", "CurrentValue")

    @property
    def maximum(self):
        return self.attribute("Value", "MaximumValue")

    @property
    def key_bindings(self):
        """The keys that trigger it, such as "Alt+O"."""
        if "Action" not in self.interfaces:
            return set()
        actions = range(self.attribute("Action", "NActions"))
        return {self.ask("Action", "GetKeyBinding", GLib.Variant("(i)", (number,)))[0] for number in actions} - {""}

    def has(self, *states):
        return set(states) <= self.states

    # A table

    @property
    def row_count(self):
        return self.attribute("Table", "NRows")

    @property
    def column_count(self):
        return self.attribute("Table", "NColumns")

    def cell(self, row, column):
        child = self.ask("Table", "GetAccessibleAt", GLib.Variant("(ii)", (row, column)))[0]
        if child[1] == NULL:
            raise Gone(f"cell {row}, {column}")
        return self.relative(*child)

    # The tree below

    def relative(self, name, path):
        return Accessible(self.bus, name or self.name_on_bus, path)

    def walk(self):
        """Yields this node and everything below it that is on the screen, except the cells of a table."""
        yield self
        if "Table" in self.interfaces:
            return
        for child in self.children:
            try:
                if child.has("showing"):
                    yield from child.walk()
            except Gone:
                pass

    def find_all(self, role=None, name=None, states=()):
        """Returns everything on the screen, from this node down, that fits; nothing if this node is gone."""
        found = []
        try:
            for node in self.walk():
                if node.fits(role, name, states):
                    found.append(node)
        except Gone:
            pass
        return found

    def fits(self, role, name, states):
        try:
            return (role is None or self.role == role) and (name is None or self.name == name) and self.has(*states)
        except Gone:
            return False

    def find(self, role=None, name=None, states=()):
        """Returns the only node that fits, or None if none or several do."""
        found = self.find_all(role, name, states)
        return found[0] if len(found) == 1 else None

    def line(self):
        try:
            return f"{self.role} {self.name!r} {self.extents} {' '.join(sorted(self.states))}"
        except Gone as error:
            return f"({error})"

    def tree(self, depth=0):
        """Returns everything from this node down, on the screen or not, as lines of text."""
        text = "  " * depth + self.line() + "\n"
        try:
            if "Table" in self.interfaces:
                rows, columns = self.row_count, self.column_count
                text += "  " * (depth + 1) + f"{rows} rows, {columns} columns\n"
                children = [self.cell(row, column) for row in range(min(rows, ROWS_PRINTED))
                            for column in range(columns)]
            else:
                children = self.children
        except Gone:
            children = []
        return text + "".join(child.tree(depth + 1) for child in children)


class Announcements:
    """A context manager that notes what programs report by themselves: new names, changed check marks, and
    notifications that appear.

    Create it before the program starts.
    """

    EVENTS = {"object:property-change:accessible-name": ("PropertyChange", "accessible-name"),
              "object:state-changed:checked": ("StateChanged", "checked"),
              "object:state-changed:showing": ("StateChanged", "showing")}

    def __init__(self, bus):
        self.bus = bus
        self.context = GLib.MainContext.default()

    def __enter__(self):
        self.new_names, self.toggled, self.notifications = [], [], []
        self.subscriptions = []
        for event, (member, detail) in self.EVENTS.items():
            self.subscriptions.append(self.bus.signal_subscribe(
                None, "org.a11y.atspi.Event.Object", member, None, detail, Gio.DBusSignalFlags.NONE, self.note))
            self.register("RegisterEvent", event)
        return self

    def __exit__(self, *_):
        for subscription in self.subscriptions:
            self.bus.signal_unsubscribe(subscription)
        for event in self.EVENTS:
            self.register("DeregisterEvent", event)

    def register(self, method, event):
        call(self.bus, REGISTRY, "/org/a11y/atspi/registry", REGISTRY, method, GLib.Variant("(s)", (event,)))

    def note(self, _bus, sender, path, _interface, member, arguments):
        node = Accessible(self.bus, sender, path)
        try:
            if member == "PropertyChange":
                self.new_names.append(node.name)
            elif arguments[0] == "checked":
                self.toggled.append((node.name, bool(arguments[1])))
            elif arguments[1] and node.role == "notification":
                self.notifications.append(node.name)
        except Gone:
            pass

    def collect(self):
        while self.context.iteration(False):
            pass

    def has(self, *names):
        """Whether all of these names have been reported since the last `clear`."""
        self.collect()
        return set(names) <= set(self.new_names)

    def has_toggled(self, *toggled):
        """Whether these are the check marks reported since the last `clear`: pairs of a name and its new state."""
        self.collect()
        return set(toggled) == set(self.toggled)

    def has_notified(self, *names):
        """Whether these notifications have appeared since the last `clear`."""
        self.collect()
        return list(names) == self.notifications

    def clear(self):
        self.collect()
        self.new_names, self.toggled, self.notifications = [], [], []


class AccessibilityBus:
    """The bus on which a desktop's programs describe themselves to assistive technology."""

    def __init__(self, address):
        self.bus = connect(address)

    def close(self):
        self.bus.close_sync(None)

    def start_registry(self):
        """Starts the registry of programs if it is not running."""
        arguments = GLib.Variant("(su)", (REGISTRY, 0))
        call(self.bus, "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "StartServiceByName", arguments)

    def program(self, process_id):
        """Returns the program with this process id, or None until it has registered."""
        registry = Accessible(self.bus, REGISTRY, ROOT)
        for child in registry.children:
            try:
                arguments = GLib.Variant("(s)", (child.name_on_bus,))
                found = call(self.bus, "org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                             "GetConnectionUnixProcessID", arguments)[0]
            except Gone:
                continue
            if found == process_id:
                return child
        return None
