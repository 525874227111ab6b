"""What may come out of a call, and the few functions that are not called with just anything."""

import re

from fuzz.values import Mischief

ALLOWED = (TypeError, ValueError, OverflowError, IndexError, RuntimeError, MemoryError, AttributeError, BufferError,
           NotImplementedError, ZeroDivisionError, OSError, Mischief)

# Exceptions that only these functions may raise.
ONLY = {
    StopIteration: r"SwigPyIterator_.*",
    # Their errors go to the log, and Python sees a null result without an error. (__iter__ is no iterator.)
    SystemError: r"GeometryNodePtrVector___iter__|PressureFieldRenderer_(addTriangle|clear|done|updateTransform)|"
                 r"\w+_(add|remove)Notification|PickHandler_\w+|DeformableMeshUpdater_update|"
                 r"RigidBodyColorRenderer_post|\w+_last|ExampleApplicationListener_(pre|post)Frame",
}

# Left undefined for any object: called only with a new object that Python owns, which is then forgotten.
UNDEFINED = {
    r"delete_\w+": "destroys: undefined for a borrowed object, or a second time",
    r"\w+_unreference(NoDelete)?": "gives back a reference that the caller must have: it is taken before the call",
    r"\w+_frompointer": "its result is the argument's memory, which lives as long as the argument does",
    r"\w+__memory": "bare memory for __buffer__, which keeps the object: the result is dropped unread",
}


def undefined(name):
    return any(re.fullmatch(pattern, name) for pattern in UNDEFINED)


def allowed(name, error, arguments):
    """Whether a function may raise this."""
    if isinstance(error, SystemError) and any(type(value).__name__ == "GeometryNodePtrVector" for value in arguments):
        return True  # whoever takes it for an iterable
    for kind, pattern in ONLY.items():
        if isinstance(error, kind):
            return re.fullmatch(pattern, name) is not None
    return isinstance(error, ALLOWED)
