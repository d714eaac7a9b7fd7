"""Parts of the desktop portal: whether the user prefers dark windows, and the desktop's file dialog."""

import collections
import threading

from gi.repository import Gio, GLib

from accessibility import connect

NAME = "org.freedesktop.portal.Desktop"
PATH = "/org/freedesktop/portal/desktop"
SETTINGS = "org.freedesktop.portal.Settings"
APPEARANCE = "org.freedesktop.appearance"
COLOUR_SCHEME = "color-scheme"
NO_PREFERENCE, DARK, LIGHT = range(3)

SETTINGS_INTERFACE = """<node>
  <interface name="org.freedesktop.portal.Settings">
    <method name="Read">
      <arg name="namespace" direction="in" type="s"/>
      <arg name="key" direction="in" type="s"/>
      <arg name="value" direction="out" type="v"/>
    </method>
    <method name="ReadOne">
      <arg name="namespace" direction="in" type="s"/>
      <arg name="key" direction="in" type="s"/>
      <arg name="value" direction="out" type="v"/>
    </method>
    <method name="ReadAll">
      <arg name="namespaces" direction="in" type="as"/>
      <arg name="value" direction="out" type="a{sa{sv}}"/>
    </method>
    <signal name="SettingChanged">
      <arg name="namespace" type="s"/>
      <arg name="key" type="s"/>
      <arg name="value" type="v"/>
    </signal>
    <property name="version" type="u" access="read"/>
  </interface>
</node>
"""


FILE_CHOOSER_INTERFACE = """<node>
  <interface name="org.freedesktop.portal.FileChooser">
    <method name="OpenFile">
      <arg name="parent_window" direction="in" type="s"/>
      <arg name="title" direction="in" type="s"/>
      <arg name="options" direction="in" type="a{sv}"/>
      <arg name="handle" direction="out" type="o"/>
    </method>
    <method name="SaveFile">
      <arg name="parent_window" direction="in" type="s"/>
      <arg name="title" direction="in" type="s"/>
      <arg name="options" direction="in" type="a{sv}"/>
      <arg name="handle" direction="out" type="o"/>
    </method>
  </interface>
</node>
"""

REQUEST = "org.freedesktop.portal.Request"
REQUEST_INTERFACE = """<node>
  <interface name="org.freedesktop.portal.Request">
    <method name="Close"/>
  </interface>
</node>
"""


class Portal:
    """A context manager that serves one interface of the portal on a session bus."""

    interface = ""

    def __init__(self, address):
        self.context = GLib.MainContext.new()
        self.loop = GLib.MainLoop.new(self.context, False)
        self.ready = threading.Event()
        self.thread = threading.Thread(target=self.serve, args=(address,))

    def __enter__(self):
        self.thread.start()
        self.ready.wait()
        return self

    def __exit__(self, *_):
        self.leave()

    def leave(self):
        """Leaves the bus, like a portal that has crashed."""
        if self.thread.is_alive():
            self.invoke(self.loop.quit)
            self.thread.join()
            self.bus.close_sync(None)

    def invoke(self, work):
        """Runs the work on the portal's thread."""
        self.context.invoke_full(GLib.PRIORITY_DEFAULT, lambda _: work(), None)

    def serve(self, address):
        self.context.push_thread_default()
        self.bus = connect(address)
        interface = Gio.DBusNodeInfo.new_for_xml(self.interface).interfaces[0]
        self.bus.register_object(PATH, interface, self.called, lambda *_: GLib.Variant("u", 1), None)
        self.bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName",
                           GLib.Variant("(su)", (NAME, 4)), None, Gio.DBusCallFlags.NONE, -1, None)
        self.ready.set()
        self.loop.run()


class SettingsPortal(Portal):
    """The colour scheme."""

    interface = SETTINGS_INTERFACE

    def __init__(self, address, colour_scheme=NO_PREFERENCE, replies=True):
        super().__init__(address)
        self.colour_scheme = colour_scheme
        self.replies = replies
        self.pending = []

    def set_colour_scheme(self, colour_scheme):
        """Changes the setting and emits the signal for it."""
        self.colour_scheme = colour_scheme
        value = GLib.Variant("(ssv)", (APPEARANCE, COLOUR_SCHEME, GLib.Variant("u", colour_scheme)))
        self.bus.emit_signal(None, PATH, SETTINGS, "SettingChanged", value)
        self.bus.flush_sync(None)

    def start_replying(self):
        """Replies to the pending calls and to all later ones."""
        self.invoke(self.reply_to_pending)

    def reply_to_pending(self):
        self.replies = True
        for call in self.pending:
            self.reply(*call)
        self.pending = []

    def called(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        if self.replies:
            self.reply(method, arguments, invocation)
        else:
            self.pending.append((method, arguments, invocation))

    def reply(self, method, arguments, invocation):
        value = GLib.Variant("u", self.colour_scheme)
        if method == "ReadAll":
            invocation.return_value(GLib.Variant("(a{sa{sv}})", ({APPEARANCE: {COLOUR_SCHEME: value}},)))
        elif arguments.unpack() != (APPEARANCE, COLOUR_SCHEME):
            invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "Requested setting not found")
        else:
            # Read, the older method, wraps its value in another variant.
            inner = value if method == "ReadOne" else GLib.Variant("v", value)
            invocation.return_value(GLib.Variant("(v)", (inner,)))


# A call of the file dialog; `handle` is the path of its request.
FileCall = collections.namedtuple("FileCall", ["method", "parent", "title", "options", "handle"])

# What the user did with the dialog. A portal sends OTHER when it fails, and some when the user closes the window.
CHOSEN, CANCELLED, OTHER = range(3)


class FilePortal(Portal):
    """The file dialog; the test is its user. It replies to a call, refuses it or leaves it without a reply."""

    interface = FILE_CHOOSER_INTERFACE
    REPLIES, REFUSES, HANGS = range(3)

    def __init__(self, address, behaviour=REPLIES):
        super().__init__(address)
        self.behaviour = behaviour
        self.calls = []
        # The requests that the program has closed.
        self.closed = []

    def called(self, _bus, sender, _path, _interface, method, arguments, invocation):
        parent, title, options = arguments.unpack()
        handle = f"{PATH}/request/{sender[1:].replace('.', '_')}/{options['handle_token']}"
        if self.behaviour == self.REFUSES:
            invocation.return_dbus_error("org.freedesktop.DBus.Error.Failed", "No dialog today")
        else:
            request = Gio.DBusNodeInfo.new_for_xml(REQUEST_INTERFACE).interfaces[0]
            self.bus.register_object(handle, request, self.request_called, None, None)
            if self.behaviour == self.REPLIES:
                invocation.return_value(GLib.Variant("(o)", (handle,)))
        self.calls.append(FileCall(method, parent, title, options, handle))

    def request_called(self, _bus, _sender, path, _interface, _method, _arguments, invocation):
        invocation.return_value(None)
        self.closed.append(path)

    def respond(self, code, *uris):
        """Ends the dialog of the last call."""
        results = {"uris": GLib.Variant("as", uris)} if uris else {}
        self.send(GLib.Variant("(ua{sv})", (code, results)))

    def send(self, response):
        self.bus.emit_signal(None, self.calls[-1].handle, REQUEST, "Response", response)
        self.bus.flush_sync(None)
