"""What the tests of the calling conventions share."""

import pytest

MODULES = ["osg", "osgDB", "osgGA", "osgSim", "osgText", "osgViewer", "zor", "zorCable", "zorCollide", "zorIO", "zorModel", "zorNet",
           "zorOSG", "zorPython", "zorRender", "zorSDK", "zorSensor", "zorStream", "zorTerrain", "zorUtil", "zorWire"]


def error_text(kind, function, *arguments):
    """The text of the error of exactly this kind that a call raises."""
    with pytest.raises(kind) as error:
        function(*arguments)
    assert error.type is kind
    return str(error.value)


def wrong(function, position, kind):
    """The message of an argument that can't be converted."""
    return f"in method '{function}', argument {position} of type '{kind}'"


def null(function, position, kind):
    """The message of None where an object is needed."""
    return "invalid null reference " + wrong(function, position, kind)


def mismatch(function, *prototypes):
    """The message of arguments that fit no prototype."""
    lines = "".join(f"    {prototype}\n" for prototype in prototypes)
    return (f"Wrong number or type of arguments for overloaded function '{function}'.\n"
            f"  Possible C/C++ prototypes are:\n{lines}")
