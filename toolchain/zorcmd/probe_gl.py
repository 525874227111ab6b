"""Asks EGL for an OpenGL context of its own and prints, as JSON, which path gave one. Runs with the toolchain."""

import ctypes
import json

_PLATFORMS = (("surfaceless", 0x31DD), ("device", 0x313F), ("default display", None))
_NONE = 0x3038
_OPENGL_API = 0x30A2
_STRINGS = {"vendor": 0x1F00, "renderer": 0x1F01, "version": 0x1F02}


def _display(egl, platform):
    if platform is None:
        return egl.eglGetDisplay(None)
    egl.eglGetPlatformDisplay.restype = ctypes.c_void_p
    egl.eglGetPlatformDisplay.argtypes = [ctypes.c_uint, ctypes.c_void_p, ctypes.c_void_p]
    native = None
    if platform == 0x313F:
        egl.eglGetProcAddress.restype = ctypes.c_void_p
        address = egl.eglGetProcAddress(b"eglQueryDevicesEXT")
        if not address:
            return None
        query = ctypes.CFUNCTYPE(ctypes.c_uint, ctypes.c_int, ctypes.POINTER(ctypes.c_void_p), ctypes.POINTER(ctypes.c_int))(address)
        device, count = ctypes.c_void_p(), ctypes.c_int()
        if not query(1, ctypes.byref(device), ctypes.byref(count)) or not count.value:
            return None
        native = device
    return egl.eglGetPlatformDisplay(platform, native, None)


def _strings(egl, display):
    """GL strings of a context made on `display`, or None."""
    if not display or not egl.eglInitialize(ctypes.c_void_p(display), None, None):
        return None
    shown = ctypes.c_void_p(display)
    egl.eglBindAPI(_OPENGL_API)
    wanted = (ctypes.c_int * 5)(0x3033, 0x0001, 0x3040, 0x0008, _NONE)
    config, count = ctypes.c_void_p(), ctypes.c_int()
    egl.eglChooseConfig(shown, wanted, ctypes.byref(config), 1, ctypes.byref(count))
    if not count.value:
        return None
    egl.eglCreateContext.restype = ctypes.c_void_p
    context = egl.eglCreateContext(shown, config, None, None)
    egl.eglCreatePbufferSurface.restype = ctypes.c_void_p
    surface = egl.eglCreatePbufferSurface(shown, config, (ctypes.c_int * 5)(0x3057, 16, 0x3056, 16, _NONE))
    if not context or not egl.eglMakeCurrent(shown, *(ctypes.c_void_p(p) for p in (surface, surface, context))):
        return None
    gl = ctypes.CDLL("libGL.so.1")
    gl.glGetString.restype = ctypes.c_char_p
    return {name: (gl.glGetString(value) or b"").decode() for name, value in _STRINGS.items()}


def probe():
    """The first path that gives a context, as the toolkit tries them."""
    try:
        egl = ctypes.CDLL("libEGL.so.1")
    except OSError as error:
        return {"error": str(error)}
    egl.eglGetDisplay.restype = ctypes.c_void_p
    for name, platform in _PLATFORMS:
        strings = _strings(egl, _display(egl, platform))
        if strings:
            return {"path": f"EGL, {name}", **strings}
    return {"error": "EGL gives no OpenGL context"}


if __name__ == "__main__":
    print(json.dumps(probe()))
