"""Who owns what crosses the boundary, and what happens when it dies."""

import gc
import sys

import pytest

import _probe
import _zor
import _zorOSG
import osg
import probe
import zor
import zorCollide
import zorOSG
import zorSDK
from conventions import error_text


class TestWrappedObjects:
    def test_the_flag(self):
        value = probe.Value(1)
        wrapped = value.this
        assert value.thisown is True and wrapped.own() is True
        assert wrapped.own(0) is True and wrapped.own() is False
        assert wrapped.own("yes") is False and value.thisown is True
        wrapped.disown()
        assert value.thisown is False
        wrapped.acquire()
        assert value.thisown is True
        value.thisown = False
        assert wrapped.own() is False
        value.thisown = True

    def test_repr_number_and_comparison(self):
        holder = probe.Holder()
        one, same, other = holder.getPointer().this, holder.getReference().this, holder.getCopy().this
        assert repr(one).startswith("<Swig Object of type 'probe::Value *' at 0x") and repr(one).endswith(">")
        assert int(one) == int(same) != int(other)
        assert one == same and not one != same and one != other
        assert one.__lt__(same) is NotImplemented and one != 5
        with pytest.raises(TypeError):
            assert one < other

    def test_chains(self):
        value = probe.Value(1)
        second = probe.Second()
        value.this.append(second.this)
        assert value.this.next() is second.this and second.this.next() is None
        assert repr(value.this) == repr(value.this).split(">")[0] + ">" + repr(second.this)
        assert probe.secondOf(value) == 2  # the first of the chain that fits
        assert error_text(TypeError, second.this.append, second) == "Attempt to append a non SwigPyObject"
        third = probe.Both()
        _probe.Value_swiginit(value, third.this)
        assert probe.firstOf(value) == 1

    def test_a_chain_has_no_end_in_itself(self):
        value, other = probe.Value(1), probe.Value(2)
        value.this.append(other.this)
        for holder, item in ((value, value), (value, other), (other, other)):
            assert error_text(ValueError, holder.this.append, item.this) == "Attempt to append a SwigPyObject to itself"
            with pytest.raises(ValueError):
                _probe.Value_swiginit(holder, item.this)
        for wrong in (5, None, value):
            assert error_text(TypeError, _probe.Value_swiginit, value, wrong) == "Attempt to append a non SwigPyObject"
        assert error_text(TypeError, _probe.Value_swiginit, probe.Value, value.this) == "swiginit expects an instance"
        assert error_text(TypeError, probe.secondOf, value).startswith("in method 'secondOf'")


class TestResults:
    def test_pointers_and_references_are_borrowed(self):
        holder = probe.Holder()
        lent = [holder.getPointer(), holder.getReference(), holder.getConstReference()]
        assert [value.thisown for value in lent] == [False] * 3
        lent[0].number = 9
        assert [value.number for value in lent] == [9] * 3 and holder.getCopy().number == 9
        assert holder.getNothing() is None

    def test_values_are_copies(self):
        alive = probe.Value.getAlive()
        copy = probe.Holder().getCopy()
        assert copy.thisown and copy.number == 7 and probe.Value.getAlive() == alive + 1
        del copy
        assert probe.Value.getAlive() == alive
        application = zorOSG.ExampleApplication()
        application.setGridSize(zor.Vec2(3, 4))
        size = application.getGridSize()
        size[0] = 100
        assert size.thisown and application.getGridSize() == zor.Vec2(3, 4)

    def test_results_of_the_visualisation_layer_are_borrowed(self):
        application = zorOSG.ExampleApplication()
        application.initSimulation()
        before = application.getSimulation().getReferenceCount()
        simulation = application.getSimulation()
        assert not simulation.thisown
        assert simulation.getReferenceCount() == before

    def test_what_an_application_lends_keeps_it(self):
        def lend():
            application = zorOSG.ExampleApplication()
            application.initSimulation()
            return application.getSimulation()

        simulation = lend()
        gc.collect()
        simulation.stepForward()
        assert simulation.getTimeStamp() > 0

    def test_results_of_the_simulation_outlive_it(self):
        simulation = zorSDK.Simulation()
        simulation.add(zor.RigidBody("survivor"))
        body = simulation.getRigidBody("survivor")
        bodies = simulation.getRigidBodies()
        del simulation
        gc.collect()
        assert body.getName() == bodies[0].getName() == "survivor"

    def test_concrete_classes_come_back_from_simulation_and_scene_graph(self):
        geometry = zorCollide.Geometry(zorCollide.Sphere(0.5))
        assert type(geometry.getShape(0)) is zorCollide.Sphere
        group = osg.Group()
        group.addChild(osg.MatrixTransform())
        assert type(group.getChild(0)) is osg.MatrixTransform


class TestReferences:
    def test_a_constructor_holds_one_reference(self):
        for shared in (zor.RigidBody(), probe.Counted(), zorOSG.ImageCapture(), zorOSG.ExampleApplicationListener()):
            assert shared.thisown and shared.getReferenceCount() == 1
        for node in (zorOSG.GeometryNode(), zorOSG.Transform(), zorOSG.SceneDecorator(10, 10)):
            assert node.thisown and node.referenceCount() == 1

    def test_what_holds_an_object_keeps_it_and_python_its_flag(self):
        simulation = zorSDK.Simulation()
        body = zor.RigidBody("kept")
        simulation.add(body)
        assert body.thisown and body.getReferenceCount() > 1
        del body
        gc.collect()
        assert simulation.getRigidBody("kept").getName() == "kept"
        group, node = osg.Group(), zorOSG.Transform()
        group.addChild(node)
        assert node.thisown and node.referenceCount() == 2
        del node
        gc.collect()
        assert type(group.getChild(0)) is zorOSG.Transform

    @pytest.mark.parametrize("make", [probe.Counted, probe.Released])
    def test_the_reference_goes_with_the_python_object(self, make):
        shared = make()
        assert probe.Counted.getAlive() == 1
        del shared
        assert probe.Counted.getAlive() == 0

    @pytest.mark.parametrize("make, delete", [(probe.Counted, _zor.delete_Referenced),
                                              (probe.Released, _probe.delete_Released)])
    def test_delete_gives_one_reference_back_and_clears_the_flag(self, make, delete):
        assert make.__swig_destroy__ is delete
        shared = make()
        shared.reference()
        delete(shared)
        assert (shared.thisown, shared.getReferenceCount(), probe.Counted.getAlive()) == (False, 1, 1)
        delete(shared)
        assert probe.Counted.getAlive() == 0
        del shared

    @pytest.mark.parametrize("make", [probe.Counted, probe.Released])
    def test_the_last_reference_goes_through_the_delete_handler(self, make):
        handler = probe.LateDelete()
        shared = make()
        shared.reference()
        shared.unreference()
        assert handler.getCount() == 0
        del shared
        assert (handler.getCount(), probe.Counted.getAlive()) == (1, 1)
        del handler  # deletes what it was handed
        assert probe.Counted.getAlive() == 0

    def test_shared_nodes_by_hand(self):
        group = osg.Group()
        _zorOSG.Group_reference(group)
        assert group.referenceCount() == 2
        _zorOSG.Group_unreference(group)
        assert group.referenceCount() == 1


class TestEnds:
    def test_delete_of_a_value_clears_the_flag(self):
        alive = probe.Value.getAlive()
        value = probe.Value(1)
        assert _probe.delete_Value(value) is None
        assert (value.thisown, probe.Value.getAlive()) == (False, alive)
        lent = probe.Value(2)
        lent.thisown = False
        _probe.delete_Value(lent)  # whatever the flag says
        assert probe.Value.getAlive() == alive

    def test_a_pending_error_survives_the_end_of_an_argument(self):
        # The last reference to the argument goes while the error of the call is on its way.
        for make in (probe.Counted, probe.Released, probe.Value, zorOSG.Transform):
            assert error_text(TypeError, lambda: _probe.add(make(), 1)) == "in method 'add', argument 1 of type 'int'"
        assert probe.Counted.getAlive() == 0

    def test_an_error_of_the_end_is_unraisable(self, monkeypatch):
        told = []
        monkeypatch.setattr(sys, "unraisablehook", lambda info: told.append((info.exc_type, str(info.exc_value), info.object)))
        reluctant = probe.Reluctant()
        del reluctant
        assert told == [(RuntimeError, "not willing", _probe.delete_Reluctant)]
        with pytest.raises(TypeError, match="in method 'add'"):
            _probe.add(probe.Reluctant(), 1)
        assert len(told) == 2

    def test_what_nobody_can_destroy_is_reported(self, run_python):
        code = "import probe, sys\nlost = probe.Undestroyable()\nlost.thisown = len(sys.argv) > 1\ndel lost\nprint('end')"
        assert run_python(code).stdout == "end\n"
        told = run_python(code, "owned", check=False)
        assert told.returncode == 0
        assert "swig/python detected a memory leak of type 'probe::Undestroyable *', no destructor found.\n" in told.stdout
