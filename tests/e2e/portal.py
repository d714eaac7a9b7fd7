"""The part of the desktop's settings portal that reports whether the user prefers dark windows."""

import threading

from gi.repository import Gio, GLib

from accessibility import connect

NAME = "org.freedesktop.portal.Desktop"
PATH = "/org/freedesktop/portal/desktop"
SETTINGS = "org.freedesktop.portal.Settings"
APPEARANCE = "org.freedesktop.appearance"
COLOUR_SCHEME = "color-scheme"
NO_PREFERENCE, DARK, LIGHT = range(3)

INTERFACE = """<node>
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


class SettingsPortal:
    """A context manager that serves the portal on a session bus."""

    def __init__(self, address, colour_scheme=NO_PREFERENCE, replies=True):
        self.colour_scheme = colour_scheme
        self.replies = replies
        self.pending = []
        self.context = GLib.MainContext.new()
        self.loop = GLib.MainLoop.new(self.context, False)
        self.ready = threading.Event()
        self.thread = threading.Thread(target=self.serve, args=(address,))

    def __enter__(self):
        self.thread.start()
        self.ready.wait()
        return self

    def __exit__(self, *_):
        self.context.invoke_full(GLib.PRIORITY_DEFAULT, lambda _: self.loop.quit(), None)
        self.thread.join()
        self.bus.close_sync(None)

    def set_colour_scheme(self, colour_scheme):
        """Changes the setting and emits the signal for it."""
        self.colour_scheme = colour_scheme
        value = GLib.Variant("(ssv)", (APPEARANCE, COLOUR_SCHEME, GLib.Variant("u", colour_scheme)))
        self.bus.emit_signal(None, PATH, SETTINGS, "SettingChanged", value)
        self.bus.flush_sync(None)

    def start_replying(self):
        """Replies to the pending calls and to all later ones."""
        self.context.invoke_full(GLib.PRIORITY_DEFAULT, lambda _: self.reply_to_pending(), None)

    def reply_to_pending(self):
        self.replies = True
        for call in self.pending:
            self.reply(*call)
        self.pending = []

    def serve(self, address):
        self.context.push_thread_default()
        self.bus = connect(address)
        interface = Gio.DBusNodeInfo.new_for_xml(INTERFACE).interfaces[0]
        self.bus.register_object(PATH, interface, self.called, lambda *_: GLib.Variant("u", 1), None)
        self.bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName",
                           GLib.Variant("(su)", (NAME, 4)), None, Gio.DBusCallFlags.NONE, -1, None)
        self.ready.set()
        self.loop.run()

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
