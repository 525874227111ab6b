"""Toolkit classes that Python derives from: creation, forwarding of calls, errors, threads and lifetimes."""

import gc
import sys
import weakref

import pytest

import _zorOSG
import _zorSDK
import osg
import zor
import zorCollide
import zorOSG
import zorPython
import zorSDK

import callbacks
from callbacks import ELSEWHERE, HERE, UNLOCKED
from memory import memory_in_use

ANYWHERE = pytest.mark.parametrize("where", [HERE, UNLOCKED, ELSEWHERE], ids=["here", "unlocked", "elsewhere"])

SIGNATURES = {
    "keyboard": "keyboard(int, unsigned int, float, float, bool)",
    "mouse": "mouse(zorSDK::GuiEventListener::MouseButtonMask, zorSDK::GuiEventListener::MouseState, float, float)",
    "mouseMoved": "mouseMoved(float, float)",
    "mouseDragged": "mouseDragged(zorSDK::GuiEventListener::MouseButtonMask, float, float)",
}

# What each event is called with, from C++ and as Python sees it.
EVENTS = {
    "keyboard": (-65, 4294967295, 0.5, -2.0, True),
    "mouse": (4, 1, 0.5, -2.0),
    "mouseMoved": (0.5, -2.0),
    "mouseDragged": (5, 0.5, -2.0),
    "update": (0.5, -2.0),
    "addNotification": (),
    "removeNotification": (),
}
LABELS = {name: f"zorOSG::GuiEventListener::{name}" for name in EVENTS} | {
    "addNotification": "zorSDK::EventListener::addNotification",
    "removeNotification": "zorSDK::EventListener::removeNotification"}


def standard_methods():
    """The methods whose errors go to the caller, each with arguments."""
    thing = zor.RigidBody("thing")
    return {"printSubtree": (), "setContext": (thing,), "rebind": (), "addObject": (thing, True),
            "removeObject": (thing,), "setMask": (9,), "setInverseTransform": (zor.AffineMatrix4x4(),)}


class Listener(zorOSG.GuiEventListener):
    """Notes every call; ends it as it was told: with a result, or by raising an exception."""

    def __init__(self, *mask, outcome=True):
        super().__init__(*mask)
        self.calls = []
        self.outcome = outcome

    def note(self, name, *arguments):
        self.calls.append((name, arguments))
        if isinstance(self.outcome, BaseException):
            raise self.outcome
        return self.outcome


def noting(name):
    return lambda self, *arguments: self.note(name, *arguments)


for method in [*EVENTS, *standard_methods()]:
    setattr(Listener, method, noting(method))


class FrameListener(zorOSG.ExampleApplicationListener):
    def __init__(self, action=lambda name, app: None):
        super().__init__()
        self.action = action

    def preFrame(self, app):
        self.action("preFrame", app)

    def postFrame(self, app):
        self.action("postFrame", app)


class Color(zorOSG.LidarOutputRendererColorFunctionCallback):
    def __init__(self, outcome):
        super().__init__()
        self.outcome = outcome

    def getLidarPointColor(self, intensity):
        self.intensity = intensity
        if isinstance(self.outcome, BaseException):
            raise self.outcome
        return self.outcome


@pytest.fixture(autouse=True)
def no_errors():
    zorPython.clearErrors()
    yield
    zorPython.clearErrors()


def errors():
    return [(error.label, error.type, error.message) for error in zorPython.getErrors()]


class TestCreation:
    def test_the_class_itself_calls_nobody_and_a_subclass_is_called(self):
        plain = zorOSG.GuiEventListener()
        assert plain.thisown and plain.getReferenceCount() == 1 and plain.getMask() == 25
        assert callbacks.keyboard(plain, 65, 0, 0, 0, True, HERE) is False
        derived = Listener()
        assert derived.thisown and derived.getReferenceCount() == 1 and derived.getMask() == 25
        assert callbacks.keyboard(derived, 65, 0, 0, 0, True, HERE) is True
        assert Listener(zorSDK.GuiEventListener.MOUSE).getMask() == 8

    def test_flat_constructors_take_none_or_the_object(self):
        assert _zorSDK.EventListener_getMask(_zorOSG.new_GuiEventListener(None)) == 25
        assert _zorSDK.EventListener_getMask(_zorOSG.new_GuiEventListener(None, 8)) == 8

        class Any:
            def mouseMoved(self, x, y):
                return x > y

        anything = Any()
        wrapped = _zorOSG.new_GuiEventListener(anything)
        assert callbacks.mouseMoved(wrapped, 2, 1, HERE) is True
        # What can't be watched, as a number, is kept alive: a missing method is an error like any other.
        assert callbacks.mouseMoved(_zorOSG.new_GuiEventListener(10 ** 30), 2, 1, HERE) is False
        assert errors() == [("zorOSG::GuiEventListener::mouseMoved", "AttributeError",
                             "'int' object has no attribute 'mouseMoved'")]

    def test_a_listener_constructor_lists_both_forms(self):
        prototypes = (
            "Wrong number or type of arguments for overloaded function 'new_GuiEventListener'.\n"
            "  Possible C/C++ prototypes are:\n"
            "    zorOSG::GuiEventListener::GuiEventListener(zorSDK::GuiEventListener::ActivationMask)\n"
            "    zorOSG::GuiEventListener::GuiEventListener(PyObject *)\n")
        for arguments, text in [((None, "x"), prototypes), ((), prototypes),
                                ((None, 1, 2), "new_GuiEventListener expected at most 2 arguments, got 3")]:
            with pytest.raises(TypeError) as error:
                _zorOSG.new_GuiEventListener(*arguments)
            assert str(error.value).startswith(text) and str(error.value).endswith(prototypes)

    def test_an_object_without_init_is_refused(self):
        class Forgot(zorOSG.GuiEventListener):
            def __init__(self):
                pass

        with pytest.raises(TypeError, match="overloaded function 'Simulation_add'"):
            zorSDK.Simulation().add(Forgot())
        with pytest.raises(TypeError, match="in method 'GuiEventListener_keyboard', argument 1 of type"):
            Forgot().keyboard(1, 0, 0, 0, True)


class TestForwarding:
    @pytest.mark.parametrize("name", EVENTS)
    @ANYWHERE
    def test_arguments_and_results_of_events(self, name, where):
        listener = Listener(outcome=True)
        result = getattr(callbacks, name)(listener, *EVENTS[name], where)
        assert listener.calls == [(name, EVENTS[name])]
        assert [type(a) for a in listener.calls[0][1]] == [type(a) for a in EVENTS[name]]
        assert result is (True if name in SIGNATURES else None)
        listener.outcome = False
        assert getattr(callbacks, name)(listener, *EVENTS[name], where) is (False if name in SIGNATURES else None)

    @pytest.mark.parametrize("name", standard_methods())
    @ANYWHERE
    def test_arguments_of_standard_methods(self, name, where):
        listener = Listener()
        arguments = standard_methods()[name]
        getattr(callbacks, name)(listener, *arguments, where)
        (called, received), = listener.calls
        assert called == name and len(received) == len(arguments)
        for got, given in zip(received, arguments):
            if name == "setInverseTransform":
                assert type(got) is zor.AffineMatrix4x4 and repr(got) == repr(given)
            elif hasattr(given, "this"):  # another proxy of the same object
                assert int(got.this) == int(given.this) and type(got) is zor.Object and got.thisown is False
            else:
                assert got == given and type(got) is type(given)

    @ANYWHERE
    def test_frames_and_colours(self, where):
        app = zorOSG.ExampleApplication()
        frames = []
        listener = FrameListener(lambda name, given: frames.append((name, given and int(given.this), given and given.thisown)))
        callbacks.preFrame(listener, app, where)
        callbacks.postFrame(listener, None, where)
        assert frames == [("preFrame", int(app.this), False), ("postFrame", None, None)]

        color = Color(osg.Vec4(0.25, 0.5, 0.75, 1))
        for given in (color, color.getColorFunction()):
            assert callbacks.Painter(given).color(0.5, where) == osg.Vec4(0.25, 0.5, 0.75, 1)
        assert color.intensity == 0.5

    def test_the_base_method_runs_once_where_nothing_overrides(self):
        class Empty(zorOSG.GuiEventListener):
            pass

        empty = Empty()
        for name, arguments in EVENTS.items():
            assert getattr(callbacks, name)(empty, *arguments, HERE) in (False, None)
        callbacks.setMask(empty, 9, HERE)
        assert empty.getMask() == 9
        matrix = zor.AffineMatrix4x4.translate(zor.Vec3(1, 2, 3))
        callbacks.setInverseTransform(empty, matrix, HERE)
        assert empty.getInverseTransform() == matrix
        body = zor.RigidBody()
        for name, count in [("addObject", 2), ("removeObject", 1)]:
            getattr(callbacks, name)(empty, body, *[False] * (count == 2), HERE)
            assert body.getReferenceCount() == count
        simulation = zorSDK.Simulation()
        assert simulation.add(empty) is True and empty.getSimulation() is not None
        assert simulation.remove(empty) is True

        white = osg.Vec4(1, 1, 1, 1)
        for callback in (zorOSG.LidarOutputRendererColorFunctionCallback(),
                         type("E", (zorOSG.LidarOutputRendererColorFunctionCallback,), {})()):
            assert callback.getLidarPointColor(0.5) == callbacks.Painter(callback).color(0.5, HERE) == white
        assert errors() == []

    def test_an_override_may_call_its_base(self):
        class Calling(zorOSG.GuiEventListener):
            masks = []

            def setMask(self, mask):
                self.masks.append(mask)
                super().setMask(mask + 1)

            def keyboard(self, *arguments):
                return not super().keyboard(*arguments)

        listener = Calling()
        callbacks.setMask(listener, 3, HERE)
        assert listener.masks == [3] and listener.getMask() == 4
        # Through another object than the one that overrides, the call is virtual.
        _zorSDK.EventListener_setMask(listener.this, 7)
        assert listener.masks == [3, 7] and listener.getMask() == 8
        assert callbacks.keyboard(listener, 1, 0, 0, 0, True, HERE) is True

        color = Color(osg.Vec4(0, 0, 0, 0))
        flat = _zorOSG.LidarOutputRendererColorFunctionCallback_getLidarPointColor
        assert flat(color, 1.0) == osg.Vec4(1, 1, 1, 1) and flat(color.this, 1.0) == osg.Vec4(0, 0, 0, 0)

    def test_methods_are_looked_up_at_each_call(self):
        listener = Listener()
        assert callbacks.mouseMoved(listener, 1, 2, HERE) is True
        listener.mouseMoved = lambda x, y: False
        assert callbacks.mouseMoved(listener, 1, 2, HERE) is False
        del listener.mouseMoved
        Listener.mouseMoved, kept = lambda self, x, y: x > y, Listener.mouseMoved
        assert callbacks.mouseMoved(listener, 2, 1, HERE) is True
        Listener.mouseMoved = kept
        assert len(listener.calls) == 1


    def test_what_a_callback_keeps_of_its_arguments(self):
        listener = Listener()
        matrix = zor.AffineMatrix4x4.translate(zor.Vec3(1, 2, 3))
        callbacks.setInverseTransform(listener, matrix, HERE)
        kept = listener.calls[0][1][0]
        assert kept.thisown and int(kept.this) != int(matrix.this)
        text = repr(matrix)
        del matrix
        assert repr(kept) == text

        frames = []
        app = zorOSG.ExampleApplication()
        callbacks.preFrame(FrameListener(lambda name, given: frames.append(given)), app, HERE)
        del app
        assert frames[0].getReferenceCount() == 1 and frames[0].getExitCode() == 0

    def test_contacts_may_be_kept(self):
        class Contacts(zorSDK.ContactEventListener):
            kept = []

            def impact(self, time, contact):
                self.kept.append(contact)
                return zorSDK.ContactEventListener.KEEP_CONTACT

        simulation = zorSDK.Simulation()
        listener = Contacts()
        simulation.add(listener)
        for height in (0, 0.9):
            body = zor.RigidBody(zorCollide.Geometry(zorCollide.Sphere(0.5)))
            body.setPosition(zor.Vec3(0, 0, height))
            simulation.add(body)
        simulation.stepForward()
        contact, = Contacts.kept
        del simulation
        assert contact.thisown and contact.getGeometry1().getShape(0).getRadius() == 0.5

    def test_step_listeners(self):
        class Counting(zorSDK.StepEventListener):
            times = []

            def post(self, time):
                super().post(time)
                self.times.append(time)

        listener = Counting(zorSDK.StepEventListener.POST_STEP)
        listener.setName("counting")
        simulation = zorSDK.Simulation()
        simulation.add(listener)
        for _ in range(3):
            simulation.stepForward()
        assert listener.times == pytest.approx([simulation.getTimeStep() * n for n in (1, 2, 3)])
        assert simulation.getListeners()[0] is simulation.getEventListener("counting") is listener


class TestStandardErrors:
    @pytest.mark.parametrize("name", standard_methods())
    def test_the_first_python_error_reaches_the_python_caller(self, name):
        error = KeyError(name)
        listener = Listener(outcome=error)
        with pytest.raises(KeyError) as raised:
            getattr(callbacks, name)(listener, *standard_methods()[name], HERE)
        assert raised.value is error
        text = f"SWIG director method error. Error detected when calling 'GuiEventListener.{name}'"
        assert callbacks.getLastText() == text
        with pytest.raises(RuntimeError) as raised:  # a thread that nobody in Python has called keeps only the text
            getattr(callbacks, name)(listener, *standard_methods()[name], ELSEWHERE)
        assert str(raised.value) == text
        assert errors() == []

    def test_python_code_runs_while_an_error_is_on_its_way(self):
        class Cleaned(Listener):
            def setMask(self, mask):
                raise KeyError("first")

            def addNotification(self):
                self.note("addNotification")
                raise ValueError("registered")

            def rebind(self):
                self.note("rebind")

        listener = Cleaned()
        with pytest.raises(KeyError, match="first"):
            callbacks.failTwice(listener)
        assert [name for name, _ in listener.calls] == ["addNotification", "rebind"]
        assert errors() == [("zorSDK::EventListener::addNotification", "ValueError", "registered")]

    def test_a_listener_that_fails_to_enter_a_simulation_is_not_in(self):
        class Refusing(zorOSG.GuiEventListener):
            def setContext(self, context):
                raise ValueError("not in there")

        simulation = zorSDK.Simulation()
        listener = Refusing()
        with pytest.raises(ValueError, match="not in there"):
            simulation.add(listener)
        assert list(simulation.getListeners()) == [] and listener.getSimulation() is None
        assert listener.getReferenceCount() == 1

    def test_colours(self):
        color = Color(ZeroDivisionError())
        painter = callbacks.Painter(color)
        with pytest.raises(ZeroDivisionError):
            painter.color(1, HERE)
        assert callbacks.getLastText() == ("SWIG director method error. Error detected when calling "
                                           "'LidarOutputRendererColorFunctionCallback.getLidarPointColor'")
        for color.outcome in (None, (1, 1, 1, 1), osg.Vec3(), zor.Vec4f(), 5):
            for where, kind in ((HERE, TypeError), (ELSEWHERE, RuntimeError)):
                with pytest.raises(kind) as error:
                    painter.color(1, where)
                assert str(error.value) == "SWIG director type mismatch in output value of type 'osg::Vec4'"


class TestScriptManagedErrors:
    @pytest.mark.parametrize("name", EVENTS)
    @ANYWHERE
    def test_errors_of_events_are_registered(self, name, where, capfd):
        listener = Listener(outcome=LookupError("told"))
        assert getattr(callbacks, name)(listener, *EVENTS[name], where) is (False if name in SIGNATURES else None)
        assert callbacks.getLastText() == ""
        error, = zorPython.getErrors()
        assert (error.label, error.type, error.message) == (LABELS[name], "LookupError", "told")
        assert error.file == __file__ and "in note\n    raise self.outcome" in error.traceback
        assert error.traceback in capfd.readouterr().err

    @ANYWHERE
    def test_errors_of_frames_are_registered(self, where):
        def fail(name, app):
            raise OSError(name)

        listener = FrameListener(fail)
        callbacks.preFrame(listener, None, where)
        callbacks.postFrame(listener, None, where)
        assert errors() == [(f"zorOSG::ExampleApplicationListener::{name}", "OSError", name)
                            for name in ("preFrame", "postFrame")]

    @pytest.mark.parametrize("name, line", [("update", 681), ("keyboard", 682), ("mouse", 683), ("mouseMoved", 684),
                                            ("mouseDragged", 685), ("addNotification", 74), ("removeNotification", 75),
                                            ("preFrame", 720), ("postFrame", 721)])
    def test_an_error_that_cannot_be_reported_is_logged(self, name, line):
        def fail(*arguments):
            raise ValueError

        is_frame = name.endswith("Frame")
        failing = FrameListener(fail) if is_frame else Listener(outcome=ValueError())
        console = callbacks.BrokenConsole()
        getattr(callbacks, name)(failing, *([None] if is_frame else EVENTS[name]), HERE)
        told = console.getText()
        del console  # mends it now: the error's frames keep this one
        file = "zorSDK" if line < 80 else "zorOSG"
        assert told == (
            f"Error at swig/configuration/zorPython/{file}.i:{line} in {name}: the console is gone\n")

    @pytest.mark.parametrize("name", SIGNATURES)
    @pytest.mark.parametrize("wrong", [1, None, "True"])
    def test_a_result_must_be_exactly_a_bool(self, name, wrong):
        text = ("SWIG director type mismatch : Python code called by 'virtual bool SwigDirector_GuiEventListener::"
                f"{SIGNATURES[name]}' has wrong output value type. Expected bool.")
        for where, kind in ((HERE, TypeError), (ELSEWHERE, RuntimeError)):
            with pytest.raises(kind) as error:
                getattr(callbacks, name)(Listener(outcome=wrong), *EVENTS[name], where)
            assert str(error.value) == callbacks.getLastText() == text
        assert errors() == []

    def test_whatever_an_error_is_it_is_told(self, capfd):
        class Mute(Exception):
            def __str__(self):
                raise ValueError("no text")

        chained = RuntimeError("outer")
        chained.__cause__ = KeyError("inner")
        group = ExceptionGroup("several", [ValueError("one"), TypeError("two")])
        for error in (Mute(), chained, group, LookupError("\udcff 😀")):
            callbacks.update(Listener(outcome=error), 0, 0, HERE)
        told = zorPython.getErrors()
        assert [(error.type, error.message) for error in told] == [
            ("Mute", "<exception str() failed>"), ("RuntimeError", "outer"),
            ("ExceptionGroup", "several (2 sub-exceptions)"), ("LookupError", "\\udcff 😀")]
        assert "Mute: <exception str() failed>" in told[0].traceback
        assert "KeyError: 'inner'" in told[1].traceback and "direct cause" in told[1].traceback
        assert "ValueError: one" in told[2].traceback and "TypeError: two" in told[2].traceback
        capfd.readouterr()

    def test_without_a_script_manager_the_error_ends_the_step(self, run_python):
        code = """
import sys
if len(sys.argv) > 1:
    import zorPython, zorOSG
import zorSDK
class Failing(zorSDK.StepEventListener):
    def pre(self, time):
        raise ValueError("in pre")
listener = Failing()
simulation = zorSDK.Simulation()
simulation.add(listener)
try:
    simulation.stepForward()
    print("went on")
except ValueError as error:
    print("raised", error)
if len(sys.argv) > 1:
    print(zorPython.getErrors(), zorPython.getNumErrors())
"""
        assert run_python(code).stdout == "raised in pre\n"
        told = run_python(code, "with a script manager")
        assert told.stdout.startswith("went on\n[<ValueError in zorSDK::StepEventListener::pre: in pre>] 1")
        assert "Traceback" in told.stderr and "in pre" in told.stderr


class TestLoop:
    def press(self, app, key="k"):
        app.getViewer().getEventQueue().keyPress(ord(key))

    def test_a_run_goes_on_whatever_its_listeners_raise(self, new_application, capfd):
        app = new_application("--offscreen", "--window=64x48")
        frames = []

        def frame(name, given):
            frames.append(name)
            if name == "preFrame" and len(frames) == 1:
                queue = app.getViewer().getEventQueue()
                queue.keyPress(ord("k"))
                queue.mouseButtonPress(10, 10, 1)
                queue.mouseMotion(12, 12)
                queue.mouseButtonRelease(12, 12, 1)
                queue.mouseMotion(14, 14)
            if name == "postFrame" and len(frames) == 8:
                app.stop()
            raise ValueError(name)

        frame_listener = FrameListener(frame)
        listener = Listener(outcome=ArithmeticError("in an event"))
        for method in ("setContext", "setMask"):
            setattr(listener, method, lambda *a: None)
        app.addListener(frame_listener)
        app.getSimulation().add(listener)
        assert app.run() == 0
        assert frames == ["preFrame", "postFrame"] * 4
        app.getSimulation().remove(listener)
        called = {name for name, _ in listener.calls}
        assert called == set(EVENTS)
        assert {error.label for error in zorPython.getErrors()} == set(LABELS.values()) | {
            "zorOSG::ExampleApplicationListener::preFrame", "zorOSG::ExampleApplicationListener::postFrame"}
        shown = capfd.readouterr().err
        assert all(label in shown for label in LABELS.values()) and "ArithmeticError: in an event" in shown

    def test_a_wrong_result_ends_the_run_with_its_error(self, new_application):
        app = new_application("--offscreen", "--window=64x48")
        listener = Listener(outcome=None)
        app.getSimulation().add(listener)
        self.press(app)
        with pytest.raises(TypeError, match="SWIG director type mismatch : Python code called by .*::keyboard"):
            app.run()
        listener.outcome = False
        self.press(app)
        stopping = FrameListener(lambda name, given: name == "postFrame" and given.stop(5))
        app.addListener(stopping)
        assert app.run() == 5  # works as before
        assert [name for name, _ in listener.calls].count("keyboard") >= 2

    @pytest.mark.parametrize("how", ["run", "step", "by hand"])
    def test_ctrl_c_in_a_callback_ends_the_program(self, run_python, how):
        result = run_python(f"""
import signal, sys
import zor, zorIO, zorOSG, zorPython, zorSDK
class Interrupted(zorSDK.StepEventListener):
    def pre(self, time):
        signal.raise_signal(signal.SIGINT)
        while True: pass
class Other(zorSDK.StepEventListener):
    def pre(self, time):
        pass
app = zorOSG.ExampleApplication()
arguments = zorIO.ArgumentParser(["x", "--zorOnly"])
app.init(arguments)
app.initSimulation()
listeners = [Interrupted(), Other()]
for listener in listeners:
    app.getSimulation().add(listener)
try:
    if {how!r} == "run":
        app.run()
    elif {how!r} == "step":
        app.getSimulation().stepForward()
    else:
        while True:
            app.executeOneStepWithoutGraphics()
    print("not reached")
except KeyboardInterrupt:
    print("interrupted", zorPython.getErrors())
""")
        assert result.stdout == "interrupted []\n"

    def test_sys_exit_in_a_callback_ends_the_program(self, run_python):
        result = run_python("""
import sys, zorOSG, zorSDK
class Leaving(zorSDK.StepEventListener):
    def pre(self, time):
        sys.exit(3)
simulation = zorSDK.Simulation()
leaving = Leaving()
simulation.add(leaving)
simulation.stepForward()
print("not reached")
""", check=False)
        assert (result.returncode, result.stdout) == (3, "")


class TestLifetimes:
    def test_disown_keeps_the_python_object_by_one_reference(self):
        for make, disown in ((Listener, _zorOSG.disown_GuiEventListener),
                             (FrameListener, _zorOSG.disown_ExampleApplicationListener),
                             (lambda: Color(None), _zorOSG.disown_LidarOutputRendererColorFunctionCallback)):
            listener = make()
            before = sys.getrefcount(listener)
            assert disown(listener) is None and disown(listener) is None
            assert sys.getrefcount(listener) == before + 1
            assert listener.thisown

    def test_disown_takes_its_class_only(self):
        for name in ("GuiEventListener", "ExampleApplicationListener", "LidarOutputRendererColorFunctionCallback"):
            disown = getattr(_zorOSG, "disown_" + name)
            with pytest.raises(TypeError) as error:
                disown(5)
            assert str(error.value) == f"in method 'disown_{name}', argument 1 of type 'zorOSG::{name} *'"
            assert disown(getattr(zorOSG, name)()) is None  # no director: nothing happens

    @ANYWHERE
    def test_a_disowned_object_goes_with_the_toolkit_object(self, where):
        listener = Listener()
        keeper = callbacks.Keeper(listener)
        _zorOSG.disown_GuiEventListener(listener)
        listener.this.disown()
        listener.unreference()  # the toolkit's reference is the only one
        alive = weakref.ref(listener)
        del listener
        gc.collect()
        assert alive() is not None and alive().getReferenceCount() == 1
        keeper.release(where)
        assert alive() is None

    def test_a_disowned_colour_goes_with_its_delete(self):
        color = Color(None)
        _zorOSG.disown_LidarOutputRendererColorFunctionCallback(color)
        alive = weakref.ref(color)
        _zorOSG.delete_LidarOutputRendererColorFunctionCallback(color)
        assert not color.thisown
        del color
        assert alive() is None

    @pytest.mark.parametrize("way", ["dropped", "not owned", "cycle"])
    @ANYWHERE
    def test_the_toolkit_goes_on_when_the_python_object_has_died(self, way, where):
        listener = Listener()
        keeper = callbacks.Keeper(listener)
        pointer = listener.this  # keeps the wrapped object for calls, not the Python object
        if way == "not owned":
            listener.thisown = False
        if way == "cycle":
            listener.me = listener
        calls = listener.calls
        callbacks.update(pointer, 0, 0, where)
        alive = weakref.ref(listener)
        del listener
        gc.collect()
        assert alive() is None
        for name, arguments in EVENTS.items():
            getattr(callbacks, name)(pointer, *arguments, where)
        callbacks.setMask(pointer, 3, where)
        assert _zorSDK.EventListener_getMask(pointer) == 3 and len(calls) == 1
        assert errors() == []
        keeper.release(where)

    @ANYWHERE
    def test_a_colour_that_has_died_is_white(self, where):
        painter = callbacks.Painter(Color(osg.Vec4(0, 0, 0, 0)))
        assert painter.color(1, where) == osg.Vec4(1, 1, 1, 1)

        color = Color(osg.Vec4(0, 0, 0, 0))
        painter = callbacks.Painter(color)
        color.thisown = False  # only the Python object dies
        del color
        assert painter.color(1, where) == osg.Vec4(1, 1, 1, 1)

    def test_what_a_simulation_tells_of_a_dead_listener_is_a_plain_one(self):
        simulation = zorSDK.Simulation()
        simulation.add(Listener(zorSDK.GuiEventListener.UPDATE))
        gc.collect()
        left = simulation.getListeners()[0]
        assert type(left) is zorOSG.GuiEventListener and left.getMask() == 16
        del simulation
        assert left.getReferenceCount() == 1 and left.update(0, 0) is None

        kept = Listener()
        simulation = zorSDK.Simulation()
        kept.setContext = kept.addNotification = lambda *a: None
        simulation.add(kept)
        assert simulation.getListeners()[0] is kept

    def test_an_object_may_go_while_it_is_called(self):
        class Leaving(zorOSG.GuiEventListener):
            held = []

            def mouseMoved(self, x, y):
                self.held.clear()
                return True

        Leaving.held.append(Leaving())
        pointer = Leaving.held[0].this
        assert callbacks.mouseMoved(pointer, 0, 0, HERE) is True
        assert callbacks.mouseMoved(pointer, 0, 0, HERE) is False

    def test_nothing_is_called_while_the_interpreter_ends(self, run_python):
        result = run_python("""
import zorOSG, zorSDK
import callbacks
class Loud(zorOSG.GuiEventListener):
    def removeNotification(self):
        print("called")
    def setContext(self, context):
        raise ValueError
    def __del__(self):
        print("gone")
listener = Loud()
listener.thisown = False
listener.setContext = lambda context: None
simulation = zorSDK.Simulation()
simulation.add(listener)
keeper = callbacks.Keeper(listener)
""")
        assert result.stdout in ("gone\n", "called\ngone\n") and result.stderr == ""

    def test_a_toolkit_object_may_outlive_the_interpreter(self, run_python):
        run_python("""
import zorSDK, callbacks, _zorSDK
class Kept(zorSDK.StepEventListener):
    pass
listeners = [Kept(), Kept()]
for listener in listeners:
    callbacks.keepUntilExit(listener)
_zorSDK.disown_StepEventListener(listener)
listener.thisown = False
listener.unreference()
""")

    def test_memory_stays_constant(self):
        simulation = zorSDK.Simulation()
        simulation.add(zor.RigidBody())

        def create():
            Listener()

        def add():
            listener = Plain()
            simulation.add(listener)
            simulation.remove(listener)
            assert listener.getReferenceCount() == 1

        def abandon():
            simulation.add(Plain())
            simulation.remove(simulation.getListeners()[0])

        def disown():
            kept = Plain()
            _zorOSG.disown_GuiEventListener(kept)
            simulation.add(kept)
            kept.thisown = False
            kept.unreference()
            del kept
            simulation.remove(simulation.getListeners()[0])

        def disown_color():
            color = Color(None)
            _zorOSG.disown_LidarOutputRendererColorFunctionCallback(color)
            _zorOSG.delete_LidarOutputRendererColorFunctionCallback(color)

        def call():
            callbacks.update(listener, 1, 2, HERE)
            callbacks.Painter(white).color(1, HERE)
            with pytest.raises(KeyError):
                callbacks.rebind(failing, HERE)

        class Plain(zorOSG.GuiEventListener):
            pass

        listener, failing, white = Listener(), Listener(outcome=KeyError()), Color(osg.Vec4())
        for pattern, times in ((create, 20000), (add, 20000), (abandon, 20000), (disown, 20000), (disown_color, 20000),
                               (call, 2000)):
            grown = []
            for _ in range(3):
                for _ in range(times // 2):
                    pattern()
                listener.calls.clear()
                failing.calls.clear()
                failing.outcome = KeyError()
                gc.collect()
                grown.append(memory_in_use())
            assert grown[2] - grown[1] < 300_000, (pattern.__name__, grown)  # 10,000 leaks of 32 bytes show
        assert simulation.getReferenceCount() == 1 and listener.getReferenceCount() == 1
