"""Drops files on a window, as a file manager does (XDND protocol, version 5)."""

import Xlib.X
import Xlib.Xatom
import Xlib.protocol.event

from waiting import wait_for

VERSION = 5


class FileDrag:
    """The drag of some files from a window of this process to another program's."""

    def __init__(self, screen, *paths):
        self.screen = screen
        self.content = "".join(f"file://{path}\r\n" for path in paths).encode()
        self.window = screen.root.create_window(0, 0, 1, 1, 0, Xlib.X.CopyFromParent)
        self.window.set_selection_owner(self.atom("XdndSelection"), Xlib.X.CurrentTime)

    def atom(self, name):
        return self.screen.atom(name)

    def drop(self, target):
        """Drops the files in the middle of an XWindow; returns whether the window accepted it."""
        x, y, width, height = target.extents
        x, y = x + width // 2, y + height // 2
        self.screen.move(x, y)
        self.send(target, "XdndEnter", [VERSION << 24, self.atom("text/uri-list")])
        self.send(target, "XdndPosition", [0, x << 16 | y, Xlib.X.CurrentTime, self.atom("XdndActionCopy")])
        accepts = self.receive("XdndStatus")[1] & 1
        if not accepts:
            self.send(target, "XdndLeave", [0])
            return False
        self.send(target, "XdndDrop", [0, Xlib.X.CurrentTime])
        return bool(self.receive("XdndFinished")[1] & 1)

    def send(self, target, message, data):
        event = Xlib.protocol.event.ClientMessage(window=target.window, client_type=self.atom(message),
                                                  data=(32, ([self.window.id] + data + [0] * 4)[:5]))
        target.window.send_event(event)
        self.screen.display.sync()

    def receive(self, message):
        """Waits for this message from the target; until then sends it the files' names when it requests them."""
        def received():
            while self.screen.display.pending_events():
                event = self.screen.display.next_event()
                if event.type == Xlib.X.SelectionRequest:
                    self.send_names(event)
                elif event.type == Xlib.X.ClientMessage and event.client_type == self.atom(message):
                    return event.data[1]
            return None

        return wait_for(received, message)

    def send_names(self, request):
        request.requestor.change_property(request.property, request.target, 8, self.content)
        request.requestor.send_event(Xlib.protocol.event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection, target=request.target,
            property=request.property))
        self.screen.display.sync()
