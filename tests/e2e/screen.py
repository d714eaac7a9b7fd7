"""The X server as a user sees it: windows, a keyboard, a mouse, and the pixels on the screen."""

import contextlib
import subprocess

import Xlib.display
import Xlib.error
import Xlib.X
import Xlib.XK
import Xlib.ext.xtest
import Xlib.protocol.event

KEYS = {
    "alt": "Alt_L", "ctrl": "Control_L", "shift": "Shift_L", "escape": "Escape", "enter": "Return", "space": "space",
    "tab": "Tab", "up": "Up", "down": "Down", "left": "Left", "right": "Right", "home": "Home", "end": "End",
    "pageup": "Prior", "pagedown": "Next", "backspace": "BackSpace", "delete": "Delete", "f1": "F1", "f5": "F5",
    "f9": "F9", "?": "question",
}


class XWindow:
    """A window managed by the window manager."""

    def __init__(self, screen, window):
        self.screen = screen
        self.window = window

    def __eq__(self, other):
        return isinstance(other, XWindow) and self.window.id == other.window.id

    def __hash__(self):
        return hash(self.window.id)

    @property
    def process_id(self):
        value = self.screen.property_of(self.window, "_NET_WM_PID")
        return value[0] if value else None

    @property
    def title(self):
        value = self.screen.property_of(self.window, "_NET_WM_NAME")
        return value.decode() if value else ""

    @property
    def states(self):
        return {self.screen.display.get_atom_name(atom)
                for atom in self.screen.property_of(self.window, "_NET_WM_STATE") or []}

    @property
    def extents(self):
        """The rectangle of the window's content on the screen: x, y, width and height."""
        geometry = self.window.get_geometry()
        origin = self.window.translate_coords(self.screen.root, 0, 0)
        return -origin.x, -origin.y, geometry.width, geometry.height

    @property
    def frame(self):
        """The width of the window manager's frame: left, right, top and bottom."""
        return tuple(self.screen.property_of(self.window, "_NET_FRAME_EXTENTS") or (0, 0, 0, 0))

    def close(self):
        """Asks the window manager to close the window, as its close button would."""
        self.screen.send_to_manager(self.window, "_NET_CLOSE_WINDOW", [Xlib.X.CurrentTime, 2])

    def move(self, x, y):
        """Asks the window manager to move the window, frame and all, as a user who drags it would."""
        north_west, has_x, has_y = 1, 1 << 8, 1 << 9
        self.screen.send_to_manager(self.window, "_NET_MOVERESIZE_WINDOW", [north_west | has_x | has_y, x, y])

    def resize(self, width, height):
        """Asks the window manager to resize the window's content, as a user who drags its edge would."""
        north_west, has_width, has_height = 1, 1 << 10, 1 << 11
        self.screen.send_to_manager(self.window, "_NET_MOVERESIZE_WINDOW",
                                    [north_west | has_width | has_height, 0, 0, width, height])

    def maximize(self):
        """Asks the window manager to maximize the window, as a click of its button would."""
        add = 1
        self.screen.send_to_manager(self.window, "_NET_WM_STATE",
                                    [add, *(self.screen.atom(f"_NET_WM_STATE_MAXIMIZED_{direction}")
                                            for direction in ("HORZ", "VERT"))])

    def activate(self):
        """Asks the window manager to activate the window."""
        self.screen.send_to_manager(self.window, "_NET_ACTIVE_WINDOW", [2, Xlib.X.CurrentTime, 0])


class Screen:
    """The only screen of a display, with its keyboard and mouse."""

    def __init__(self, name):
        self.display = Xlib.display.Display(name)
        self.display.set_error_handler(lambda *_: None)
        self.root = self.display.screen().root
        self.root.change_attributes(event_mask=Xlib.X.SubstructureNotifyMask | Xlib.X.PropertyChangeMask)
        self.new_windows = self.activations = 0

    def close(self):
        self.display.close()

    def atom(self, name):
        return self.display.intern_atom(name)

    def property_of(self, window, name):
        try:
            found = window.get_full_property(self.atom(name), Xlib.X.AnyPropertyType)
        except Xlib.error.XError:
            return None
        return found.value if found else None

    @property
    def has_manager(self):
        return bool(self.property_of(self.root, "_NET_SUPPORTING_WM_CHECK"))

    @property
    def windows(self):
        """All managed windows, the lowest first."""
        ids = self.property_of(self.root, "_NET_CLIENT_LIST_STACKING")
        return [XWindow(self, self.display.create_resource_object("window", window)) for window in ids or []]

    @property
    def active_window(self):
        """The window that is active according to the window manager, or None."""
        value = self.property_of(self.root, "_NET_ACTIVE_WINDOW")
        return XWindow(self, self.display.create_resource_object("window", value[0])) if value and value[0] else None

    @property
    def focused_window(self):
        """The window that receives keys at this moment, or None while no window does."""
        focus = self.display.get_input_focus().focus
        known = {window.window.id for window in self.windows}
        while not isinstance(focus, int) and focus.id != self.root.id:
            if focus.id in known:
                return XWindow(self, focus)
            try:
                focus = focus.query_tree().parent
            except Xlib.error.XError:
                return None
        return None

    def count_new_windows(self):
        """Returns how many windows got a frame since the last call, including any closed since."""
        self.take_events()
        count, self.new_windows = self.new_windows, 0
        return count

    def count_activations(self):
        """Returns how often the active window changed since the last call."""
        self.take_events()
        count, self.activations = self.activations, 0
        return count

    def take_events(self):
        self.display.sync()
        for _ in range(self.display.pending_events()):
            event = self.display.next_event()
            self.new_windows += event.type == Xlib.X.ReparentNotify and event.parent != self.root
            self.activations += event.type == Xlib.X.PropertyNotify and event.atom == self.atom("_NET_ACTIVE_WINDOW")

    def open_window(self, title):
        """Opens a window that belongs to none of the programs."""
        window = self.root.create_window(0, 0, 80, 60, 0, Xlib.X.CopyFromParent)
        window.set_wm_name(title)
        window.map()
        self.display.sync()
        return XWindow(self, window)

    def send_to_manager(self, window, message, data):
        event = Xlib.protocol.event.ClientMessage(window=window, client_type=self.atom(message),
                                                  data=(32, (data + [0] * 5)[:5]))
        mask = Xlib.X.SubstructureRedirectMask | Xlib.X.SubstructureNotifyMask
        self.root.send_event(event, event_mask=mask)
        self.display.sync()

    # Keyboard and mouse

    @contextlib.contextmanager
    def keyboard(self, layout):
        """Gives the keyboard another layout, such as "de"; it is American before and after."""
        self.set_keyboard(layout)
        try:
            yield
        finally:
            self.set_keyboard("us")

    def set_keyboard(self, layout):
        subprocess.run(["setxkbmap", "-display", self.display.get_display_name(), layout], check=True)
        first, last = self.display.display.info.min_keycode, self.display.display.info.max_keycode
        self.display.refresh_keyboard_mapping(Xlib.protocol.event.MappingNotify(
            request=Xlib.X.MappingKeyboard, first_keycode=first, count=last - first + 1))

    def key_and_shift(self, keysym):
        for code, index in self.display.keysym_to_keycodes(keysym):
            if index in (0, 1):
                return code, index == 1
        raise ValueError(f"the keyboard has no key for {keysym:#x}")

    def fake(self, kind, detail):
        Xlib.ext.xtest.fake_input(self.display, kind, detail)

    def press(self, keys):
        """Presses a key or a combination: "enter", "ctrl+f", "alt+shift+o"."""
        codes = []
        for key in keys.split("+"):
            keysym = Xlib.XK.string_to_keysym(KEYS.get(key, key))
            code, shift = self.key_and_shift(keysym)
            codes += [self.key_and_shift(Xlib.XK.XK_Shift_L)[0]] if shift else []
            codes.append(code)
        for code in codes:
            self.fake(Xlib.X.KeyPress, code)
        for code in reversed(codes):
            self.fake(Xlib.X.KeyRelease, code)
        self.display.sync()

    def type(self, text):
        """Types a text; every character must be on the keyboard."""
        for character in text:
            code, shift = self.key_and_shift(ord(character))
            shift_code = self.key_and_shift(Xlib.XK.XK_Shift_L)[0]
            if shift:
                self.fake(Xlib.X.KeyPress, shift_code)
            self.fake(Xlib.X.KeyPress, code)
            self.fake(Xlib.X.KeyRelease, code)
            if shift:
                self.fake(Xlib.X.KeyRelease, shift_code)
        self.display.sync()

    def move(self, x, y):
        Xlib.ext.xtest.fake_input(self.display, Xlib.X.MotionNotify, x=x, y=y)
        self.display.sync()

    def click(self, extents, times=1):
        """Clicks the middle of a rectangle."""
        x, y, width, height = extents
        self.move(x + width // 2, y + height // 2)
        for _ in range(times):
            self.fake(Xlib.X.ButtonPress, 1)
            self.fake(Xlib.X.ButtonRelease, 1)
        self.display.sync()

    def drag(self, start, end):
        """Drags the mouse from one point to another."""
        self.move(*start)
        self.fake(Xlib.X.ButtonPress, 1)
        # A drag begins with the first movement, whatever its distance.
        for part in (0.5, 1):
            self.move(*(round(one + part * (other - one)) for one, other in zip(start, end)))
        self.fake(Xlib.X.ButtonRelease, 1)
        self.display.sync()

    # Pixels

    def image(self, extents=None):
        """Returns the pixels of a rectangle: width, height, and the rows' bytes, three per pixel."""
        geometry = self.root.get_geometry()
        x, y, width, height = extents or (0, 0, geometry.width, geometry.height)
        reply = self.root.get_image(x, y, width, height, Xlib.X.ZPixmap, 0xFFFFFFFF)
        pixels = reply.data
        rgb = bytearray(width * height * 3)
        for target, source in ((0, 2), (1, 1), (2, 0)):
            rgb[target::3] = pixels[source::4]
        return width, height, bytes(rgb)
