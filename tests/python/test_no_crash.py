"""Nothing that Python can pass to the modules ends the process or hangs it."""

import os
import sys

import pytest

import _zor
import _zorOSG
import zor
import zorOSG
from fuzz import rules, runner


class TestPointerObjects:
    """The run-time's own objects, which carry the pointers."""

    def test_none_can_be_made_by_hand(self):
        with pytest.raises(TypeError, match="SwigPyObject"):
            type(zor.Vec3().this)()

    def test_chains(self):
        vector, other = zor.Vec3(1, 2, 3), zor.RangeReal()
        vector.this.append(other.this)
        assert _zor.RangeReal_length(vector) == other.length()  # an object of two kinds
        for link in (vector.this, other.this):
            with pytest.raises(ValueError, match="append"):
                vector.this.append(link)
        with pytest.raises(TypeError, match="non SwigPyObject"):
            vector.this.append(5)
        with pytest.raises(TypeError, match="argument 1 of type"):
            _zor.Plane_getPoint(vector)

    def test_a_long_chain_is_let_go(self):
        head = zor.Vec3()
        for _ in range(100):
            head.this.append(zor.Vec3().this)
        links = sys.getrefcount(head.this.next())
        assert links <= 3
        del head

    def test_comparison_with_anything(self):
        this = zor.Vec3().this
        assert this == this and this != zor.Vec3().this
        assert this != 5 and this != "text" and not this == object()
        assert this.__lt__(this) is NotImplemented

    def test_an_attribute_this_that_leads_nowhere(self):
        class Slotted:
            __slots__ = ()

            @property
            def this(self):
                return zor.Vec3().this

        circular = zor.Vec3()
        circular.__dict__["this"] = circular
        for strange in (circular, Slotted()):
            with pytest.raises(TypeError, match="argument 1 of type"):
                _zor.Vec3_length(strange)

    def test_initialised_twice(self):
        with pytest.raises(TypeError, match="non SwigPyObject"):
            _zor.Vec3_swiginit(zor.Vec3(), 5)

    def test_a_failing_truth_test(self):
        class Undecided:
            def __bool__(self):
                raise KeyError("undecided")

        with pytest.raises(KeyError):
            zor.Vec3().this.own(Undecided())

    def test_a_global_variable_stays(self):
        with pytest.raises(AttributeError, match="can't be deleted"):
            del _zorOSG.cvar.VideoFFMPEGPipeCapture_OutputCodecStrings
        assert zorOSG.cvar.VideoFFMPEGPipeCapture_OutputCodecStrings

    def test_an_operator_with_too_many_arguments(self):
        assert _zor.Vec3___mul__(zor.Vec3(), 1, 2, 3) is NotImplemented


# The time is a guard for slow machines. A long run: ZOR_FUZZ_CALLS=1000000 ZOR_FUZZ_SECONDS=3600 (and ZOR_FUZZ_SEED for other calls).
CALLS = int(os.environ.get("ZOR_FUZZ_CALLS", "40000"))
SECONDS = float(os.environ.get("ZOR_FUZZ_SECONDS", "240"))
SEED = int(os.environ.get("ZOR_FUZZ_SEED", "1"))


@pytest.fixture(scope="module")
def result(request):
    result = runner.run(SEED, CALLS, SECONDS, len(os.sched_getaffinity(0)))
    with request.config.pluginmanager.getplugin("capturemanager").global_and_fixture_disabled():
        print(f"\n{result}")
    return result


class TestEveryFunction:
    """Each entry of the method tables, with arguments of all kinds, in processes of their own."""

    def test_none_ends_the_process(self, result):
        assert not result.crashes, "\n\n".join(result.crashes)

    def test_only_documented_exceptions(self, result):
        assert not result.wrong, "\n".join(f"{error}\n    in {call}" for error, call in result.wrong.items())

    def test_every_entry_is_called(self, result):
        if result.crashes:
            pytest.skip("a process ended early")
        assert not result.missed
        # Most have to get past the conversion of their arguments, or nothing is tested but that.
        assert len(result.shallow) < len(result.called) / 3, sorted(result.shallow)

    def test_a_crash_is_seen_and_named(self):
        assert runner.crash_text(7, 0, "call 3: f()", "") is None
        assert runner.crash_text(7, -6, "call 3: f()", "text").startswith("seed 7: signal SIGABRT in call 3: f()")
        assert "no end" in runner.crash_text(7, -14, "", "")
        assert "memory leak of type 'X'" in runner.crash_text(7, 0, "", "swig/python detected a memory leak of type 'X', no destructor")
        report, crash = runner.work(SEED, 0, 0)
        assert crash is None and report["calls"] == 0 and report["missed"]

    def test_the_list_of_exceptions_is_short(self):
        assert len(rules.UNDEFINED) <= 6
        assert all(rules.UNDEFINED.values())
        assert rules.undefined("delete_Vec3") and not rules.undefined("Vec3_length")
