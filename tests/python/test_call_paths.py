"""Shortened calls behave as the long way does: same results, same errors, whatever a script does to proxies."""

import copy
import gc
import inspect
import pathlib
import subprocess
import sys

import pytest

import _zor
import _zorOSG
import zor
import zorOSG


@pytest.fixture
def body():
    return zor.RigidBody("body")


class TestShadowFunctions:
    def test_stay_python_functions(self):
        method = zorOSG.SceneDecorator.setEnableLogo
        assert inspect.isfunction(method)
        assert list(inspect.signature(method).parameters) == ["self", "enable"]
        assert method.__doc__ and method.__qualname__ == "SceneDecorator.setEnableLogo"

    def test_keywords_defaults_and_counts_are_pythons(self, body):
        decorator = zorOSG.SceneDecorator(320, 240)
        decorator.setEnableLogo(enable=True)
        assert decorator.getEnableLogo() is True
        with pytest.raises(TypeError, match="unexpected keyword argument 'other'"):
            decorator.setEnableLogo(other=True)
        with pytest.raises(TypeError, match=r"takes 2 positional arguments but 3 were given"):
            decorator.setEnableLogo(True, 1)
        with pytest.raises(TypeError, match="missing 1 required positional argument"):
            decorator.setEnableLogo()

    def test_overridden_and_replaced_methods_are_called(self, body):
        class Named(zor.RigidBody):
            def getName(self):
                return "python " + super().getName()

        named = Named("body")
        assert named.getName() == "python body"
        body.getName = lambda: "instance"
        assert body.getName() == "instance"

    def test_flat_functions_take_no_keywords(self, body):
        for function in (_zor.Object_getName, _zor.Object_setName):
            with pytest.raises(TypeError, match=rf"^.*{function.__name__}\(\) takes no keyword arguments$"):
                function(body, name="x")

    def test_any_number_of_arguments_reaches_the_count_message(self, body):
        for count in (3, 17, 1000):
            with pytest.raises(TypeError, match=f"^Object_setName expected 2 arguments, got {count}$"):
                _zor.Object_setName(*[body] * count)
        with pytest.raises(TypeError, match="^Object_setName expected 2 arguments, got 0$"):
            _zor.Object_setName()


class TestProxiesOfEveryMake:
    def check(self, body):
        body.setName("new")
        assert body.getName() == "new" and _zor.Object_getName(body) == "new"
        assert _zor.Object_getName(body.this) == "new"

    def test_replaced_dictionary(self, body):
        body.__dict__["extra"] = 1
        self.check(body)
        body.__dict__ = dict(body.__dict__)
        self.check(body)

    def test_attributes_before_the_base_is_made(self):
        class Late(zor.RigidBody):
            def __init__(self):
                self.first, self.second = 1, 2
                super().__init__("late")

        for _ in range(3):
            self.check(Late())

    def test_layouts_of_their_own(self):
        class Slotted(zor.RigidBody):
            __slots__ = ("place",)

        class Mixed(dict, zor.RigidBody):
            def __init__(self):
                zor.RigidBody.__init__(self, "mixed")

        class Hooked(zor.RigidBody):
            def __getattribute__(self, name):
                return super().__getattribute__(name)

        for kind in (Slotted, Mixed, Hooked):
            self.check(kind())

    def test_many_attributes(self, body):
        for i in range(100):
            setattr(body, f"attribute{i}", i)
        self.check(body)

    def test_a_proxy_without_its_object_is_no_argument(self, body):
        vector = zor.Vec3(1, 2, 3)
        del vector.this
        with pytest.raises(TypeError, match="argument 2 of type 'zor::Vec3 const &'"):
            body.setPosition(vector)
        vector.this = 5
        with pytest.raises(TypeError):
            body.setPosition(vector)
        vector.this = zor.Vec3(4, 5, 6).this
        body.setPosition(vector)
        assert body.getPosition() == zor.Vec3(4, 5, 6)

    def test_a_copy_shares_the_object(self, body):
        twin = copy.copy(body)
        assert twin.this is body.this and twin.getName() == "body"

    def test_results_are_ordinary_instances(self, body):
        position = body.getPosition()
        assert list(vars(position)) == ["this"]
        position.note = "kept"
        assert vars(position)["note"] == "kept" and position.thisown is True
        assert sys.getrefcount(position.this) == sys.getrefcount(zor.Vec3().this)

    def test_memory_of_wrapped_objects_is_used_again_safely(self):
        kept = [zor.Vec3(i, 0, 0) for i in range(1000)]
        wrapped = [vector.this for vector in kept[::2]]
        del kept[::2]
        gc.collect()
        fresh = [zor.Vec3(-i, 0, 0) for i in range(1000)]
        assert [vector[0] for vector in kept] == list(range(1, 1000, 2))
        assert [vector[0] for vector in fresh] == [-i for i in range(1000)]
        assert len({int(this) for this in wrapped}) == 500


class TestRememberedOverloads:
    """A dispatcher that remembers its choice chooses as one that does not."""

    def test_kinds_that_tests_tell_apart(self):
        decorator = zorOSG.SceneDecorator(320, 240)
        for _ in range(3):
            for right in (0.5, 1, True, float("inf")):
                with pytest.raises(RuntimeError, match="missing.png"):
                    _zorOSG.SceneDecorator_setLogoFile(decorator, "missing.png", right)
            for wrong in (1e39, "1", None):
                with pytest.raises(TypeError, match="Wrong number or type"):
                    _zorOSG.SceneDecorator_setLogoFile(decorator, "missing.png", wrong)

    def test_integers_by_range(self):
        for _ in range(3):
            assert zor.Vec3(1, 2, 3)[1] == 2
            with pytest.raises(TypeError, match="Wrong number or type"):
                zor.Vec3(1, "2", 3)
            with pytest.raises(TypeError, match="Wrong number or type"):
                zor.Vec3(1, 2, 10**400)

    def test_null_and_none(self):
        for _ in range(3):
            with pytest.raises(TypeError, match="Wrong number or type"):
                zor.Vec3(None)
            assert zor.Vec3(zor.Vec3(1, 2, 3))[2] == 3


class TestSteps:
    @pytest.mark.parametrize("step", ["shorten_calls", "forward_shadow"])
    def test_refuse_what_they_do_not_know(self, tmp_path, step):
        source = tmp_path / "unknown"
        source.write_text("if True:\n    import _unknown\n\ndef f(x):\n    return _unknown.f(x + 1)\n")
        script = pathlib.Path(__file__).parents[2] / "toolchain" / f"{step}.py"
        result = subprocess.run([sys.executable, script, source, tmp_path / "out"], capture_output=True, text=True)
        assert result.returncode == 1 and "another SWIG version" in result.stderr
        assert not (tmp_path / "out").exists()
