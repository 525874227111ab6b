"""Methods whose errors go to the toolkit's log instead of becoming Python errors."""

import pytest

import _zorOSG
import zorOSG

import callbacks

GUARDED = {  # by class and method: interface file and line
    ("PressureFieldRenderer", "addTriangle"): ("zorModel", 111),
    ("PressureFieldRenderer", "clear"): ("zorModel", 112),
    ("PressureFieldRenderer", "done"): ("zorModel", 113),
    ("PressureFieldRenderer", "updateTransform"): ("zorModel", 114),
    ("RigidBodyColorRenderer", "addNotification"): ("zorSDK", 74),
    ("RigidBodyColorRenderer", "removeNotification"): ("zorSDK", 75),
    ("SplineRenderer", "removeNotification"): ("zorSDK", 75),
    ("SplineRendererOld", "removeNotification"): ("zorSDK", 75),
    ("PickHandler", "update", 1.0, 2.0): ("zorSDK", 78),
    ("DeformableMeshUpdater", "update", 1.0, 2.0): ("zorSDK", 78),
    ("DeformableMeshUpdater", "update"): ("zorSDK", 78),
    ("PickHandler", "keyboard", 1): ("zorSDK", 79),
    ("PickHandler", "mouse", 1): ("zorSDK", 80),
    ("PickHandler", "mouseDragged", 1): ("zorSDK", 82),
    ("RigidBodyColorRenderer", "post", 0.5): ("zorSDK", 87),
    ("DeformableHeightFieldRenderer", "last", 0.5): ("zorSDK", 88),
    ("CableDamageRenderer", "last", 0.5): ("zorSDK", 88),
    ("ExampleApplicationListener", "preFrame", None): ("zorOSG", 720),
    ("ExampleApplicationListener", "postFrame", None): ("zorOSG", 721),
}

# Calls every guarded method with each kind of failure; tells what came out. Runs apart: the module has classes of the
# same names as the visualisation layer.
CALL_ALL = """
import guarded
cases = %r
for kind in (1, 2, 3, 0):
    guarded.setFailure(kind)
    for class_name, method, *arguments in cases:
        call = getattr(guarded._guarded, f"{class_name}_{method}")
        target = getattr(guarded, class_name)()
        try:
            print(repr(call(target, *arguments)))
        except BaseException as error:
            print(type(error).__name__, error)
guarded.setFailure(1)
guarded.PressureFieldRenderer().other()
"""


def test_the_table(run_python):
    result = run_python(CALL_ALL % (list(GUARDED),), check=False)
    outcomes = result.stdout.splitlines()
    count = len(GUARDED)
    assert len(outcomes) == 4 * count and "RuntimeError: broken" in result.stderr  # the last one is not guarded
    for (class_name, method, *_), outcome in zip(GUARDED, outcomes):
        name = f"{class_name}_{method}"
        assert outcome.startswith("SystemError ") and "without" in outcome, name
    assert outcomes[count:2 * count] == ["KeyError 'from the override'"] * count
    assert outcomes[2 * count:3 * count] == ["RuntimeError Unknown exception"] * count
    assert set(outcomes[3 * count:]) == {"None", "True"}

    logged = [line for line in result.stderr.splitlines() if line.startswith("Error at ")]
    for offset, text in ((0, "broken"), (count, "SWIG director method error. Error detected when calling 'Some.method'")):
        for ((class_name, method, *arguments), (file, line)), told in zip(GUARDED.items(), logged[offset:offset + count]):
            wrapper = f"_wrap_{class_name}_{method}"
            if class_name == "DeformableMeshUpdater":
                wrapper += "__SWIG_0" if arguments else "__SWIG_1"
            assert told == f"Error at swig/configuration/zorPython/{file}.i:{line} in {wrapper}: {text}"
    assert len(logged) == 2 * count


@pytest.mark.parametrize("line, method", [(720, "preFrame"), (721, "postFrame")])
def test_frames_of_a_listener_of_the_toolkit(line, method, capfd):
    call = getattr(_zorOSG, "ExampleApplicationListener_" + method)
    if method == "preFrame":
        with pytest.raises(SystemError):
            call(callbacks.FailingListener(), None)
        assert capfd.readouterr().err == (
            f"Error at swig/configuration/zorPython/zorOSG.i:{line} in _wrap_ExampleApplicationListener_{method}: "
            "no frame, sorry\n")
    else:  # no standard exception
        with pytest.raises(RuntimeError, match="Unknown exception"):
            call(callbacks.FailingListener(), None)
    assert call(zorOSG.ExampleApplicationListener(), None) is None
    with pytest.raises(TypeError) as error:
        call(zorOSG.ExampleApplicationListener(), 5)
    assert str(error.value) == (f"in method 'ExampleApplicationListener_{method}', argument 2 of type "
                                "'zorOSG::ExampleApplication *'")
