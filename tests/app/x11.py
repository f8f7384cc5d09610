"""The part of the X11 protocol for which there is no tool."""

import ctypes

CLIENT_MESSAGE = 33


class ClientMessage(ctypes.Structure):
    _fields_ = [
        ("type", ctypes.c_int),
        ("serial", ctypes.c_ulong),
        ("send_event", ctypes.c_int),
        ("display", ctypes.c_void_p),
        ("window", ctypes.c_ulong),
        ("message_type", ctypes.c_ulong),
        ("format", ctypes.c_int),
        ("data", ctypes.c_long * 5),
        ("room", ctypes.c_long * 24),  # an event is as large as the largest kind of event
    ]


def ask_to_close(display_name, window):
    """Sends the message by which a window manager asks for a window to be closed (ICCCM, WM_DELETE_WINDOW)."""
    library = ctypes.CDLL("libX11.so.6")
    library.XOpenDisplay.restype = ctypes.c_void_p
    library.XInternAtom.restype = ctypes.c_ulong
    library.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    library.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long, ctypes.c_void_p]
    library.XCloseDisplay.argtypes = [ctypes.c_void_p]
    display = library.XOpenDisplay(display_name.encode())
    assert display, f"no display {display_name}"
    message = ClientMessage(type=CLIENT_MESSAGE, window=window, format=32)
    message.message_type = library.XInternAtom(display, b"WM_PROTOCOLS", 0)
    message.data[0] = library.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
    assert library.XSendEvent(display, window, 0, 0, ctypes.byref(message))
    library.XCloseDisplay(display)
