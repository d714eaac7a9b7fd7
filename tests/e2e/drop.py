"""Drops a file on a window, as a file manager does (X drag-and-drop protocol, version 5)."""

import Xlib.X
import Xlib.Xatom
import Xlib.protocol.event

from waiting import wait_for

VERSION = 5


class FileDrag:
    """One file on its way from a window of ours to another program's."""

    def __init__(self, screen, path):
        self.screen = screen
        self.content = f"file://{path}\r\n".encode()
        self.window = screen.root.create_window(0, 0, 1, 1, 0, Xlib.X.CopyFromParent)
        self.window.set_selection_owner(self.atom("XdndSelection"), Xlib.X.CurrentTime)

    def atom(self, name):
        return self.screen.atom(name)

    def drop(self, target):
        """Drags it over the middle of an XWindow and lets it go there; returns whether the window took it."""
        x, y, width, height = target.extents
        x, y = x + width // 2, y + height // 2
        self.screen.move(x, y)
        self.tell(target, "XdndEnter", [VERSION << 24, self.atom("text/uri-list")])
        self.tell(target, "XdndPosition", [0, x << 16 | y, Xlib.X.CurrentTime, self.atom("XdndActionCopy")])
        accepts = self.answer("XdndStatus")[1] & 1
        if not accepts:
            self.tell(target, "XdndLeave", [0])
            return False
        self.tell(target, "XdndDrop", [0, Xlib.X.CurrentTime])
        return bool(self.answer("XdndFinished")[1] & 1)

    def tell(self, target, message, data):
        event = Xlib.protocol.event.ClientMessage(window=target.window, client_type=self.atom(message),
                                                  data=(32, ([self.window.id] + data + [0] * 4)[:5]))
        target.window.send_event(event)
        self.screen.display.sync()

    def answer(self, message):
        """Waits for the target's message and hands it the file's name when it asks for that."""
        def received():
            while self.screen.display.pending_events():
                event = self.screen.display.next_event()
                if event.type == Xlib.X.SelectionRequest:
                    self.hand_over(event)
                elif event.type == Xlib.X.ClientMessage and event.client_type == self.atom(message):
                    return event.data[1]
            return None

        return wait_for(received, message)

    def hand_over(self, request):
        request.requestor.change_property(request.property, request.target, 8, self.content)
        request.requestor.send_event(Xlib.protocol.event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection, target=request.target,
            property=request.property))
        self.screen.display.sync()
