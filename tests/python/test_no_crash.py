"""Nothing that Python can pass to the modules ends the process or hangs it."""

import sys

import pytest

import _zor
import _zorOSG
import zor
import zorOSG


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
