"""Constant memory: every kind of construction, call, failure and callback, many times over.

Each pattern runs a while to warm up, then in two halves: what it leaves behind in the second half must not grow with
the number of rounds. ZOR_LEAK_ROUNDS sets the number of rounds of a pattern (1,000,000 for a long run).
"""

import gc
import os
import sys
import time
import types

import numpy
import pytest

import _zor
import _zorOSG
import osg
import zor
import zorCollide
import zorIO
import zorOSG
import zorPython
import zorRender
import zorSDK
from memory import memory_in_use

ROUNDS = int(os.environ.get("ZOR_LEAK_ROUNDS", "0"))
SECONDS = 1.0  # of a pattern, where no number of rounds is given
BYTES = 2.0  # growth a round that counts as noise


def repeat(pattern, rounds):
    for _ in range(rounds):
        pattern()


def rounds_for(pattern):
    """As many rounds as fit the time; at least enough to see a leak of a few bytes among the noise of the allocator."""
    start = time.perf_counter()
    repeat(pattern, 50)
    return ROUNDS or max(300, min(100_000, int(50 * SECONDS / 2 / (time.perf_counter() - start))))


def check_constant(pattern, noise=400_000):
    """Python's own blocks exactly, but for a few that caches keep; memory in use but for noise."""
    repeat(pattern, 200)
    rounds = rounds_for(pattern)
    repeat(pattern, rounds // 4)
    gc.collect()
    blocks, memory = sys.getallocatedblocks(), memory_in_use()
    repeat(pattern, rounds)
    gc.collect()
    new_blocks, new_memory = sys.getallocatedblocks() - blocks, memory_in_use() - memory
    assert new_blocks < max(120, rounds // 20), f"{new_blocks} blocks more after {rounds} rounds"
    assert new_memory < noise + BYTES * rounds, f"{new_memory} bytes more after {rounds} rounds"


def raises(function, *arguments):
    """The call fails: that is the pattern."""
    try:
        function(*arguments)
    except (TypeError, ValueError, OverflowError, IndexError, RuntimeError, BufferError, StopIteration, SystemError):
        return
    pytest.fail(f"{function} accepted {arguments}")


class Listener(zorOSG.ExampleApplicationListener):
    def preFrame(self, app):
        pass

    def postFrame(self, app):
        raise KeyError("on purpose")


class Steps(zorSDK.StepEventListener):
    def pre(self, time):
        pass


def constructors():
    """Every class that can be made without arguments."""
    for module in (zor, zorCollide, zorSDK, zorRender, zorIO, osg, zorOSG):
        for name, kind in vars(module).items():
            if isinstance(kind, type) and kind.__module__ == module.__name__ and hasattr(kind, "thisown"):
                try:
                    kind()
                except (TypeError, AttributeError, RuntimeError):
                    continue
                yield pytest.param(kind, id=f"{module.__name__}.{name}")


CONSTRUCTORS = [*constructors()]


@pytest.fixture(scope="module", autouse=True)
def warm():
    """What the first use of things and the collector's first full run take is not a leak."""
    for parameter in CONSTRUCTORS:
        repeat(parameter.values[0], 20)
    gc.collect()


@pytest.mark.parametrize("kind", CONSTRUCTORS)
def test_constructor(kind):
    if "OutputValue" in kind.__name__ and "2" not in kind.__name__:
        return  # of one pattern each: two channels stand for all
    rounds = ROUNDS or 300
    repeat(kind, rounds)
    gc.collect()
    blocks, memory = sys.getallocatedblocks(), memory_in_use()
    repeat(kind, rounds)
    gc.collect()
    assert sys.getallocatedblocks() - blocks < rounds // 3
    assert memory_in_use() - memory < 2_000_000 + BYTES * rounds


@pytest.fixture(scope="module")
def scene():
    """Objects that the patterns below use."""
    app = zorOSG.ExampleApplication()
    app.kept = zorIO.ArgumentParser(["test", "--window", "32x32"])
    assert app.init(app.kept)
    app.initSimulation()
    app.initScene()
    app.setRealTimeSync(False)
    body = zor.RigidBody("body")
    geometry = zorCollide.Geometry(zorCollide.Sphere(0.5))
    body.add(geometry)
    app.getSimulation().add(body)
    nodes = zorOSG.GeometryNodePtrVector()
    nodes.append(zorOSG.createVisual(geometry, app.getSceneRoot()))
    return types.SimpleNamespace(app=app, body=body, geometry=geometry, nodes=nodes, sim=zorSDK.Simulation(), group=osg.Group(),
                                 capture=zorOSG.VideoFFMPEGPipeCapture(16, 16, 30.0), vector=zor.RealVector([1.0] * 64),
                                 points=zor.Vec3Vector([[1.0, 2.0, 3.0]] * 8), decorator=app.getSceneDecorator())


def graph():
    group = osg.Group()
    group.addChild(osg.ShapeDrawable(osg.Box(osg.Vec3(), 1, 1, 1)))
    return group


class Visitor(osg.NodeVisitor):
    def __init__(self, fails=False):
        super().__init__()
        self.fails = fails

    def apply(self, node):
        if self.fails and node.asDrawable():
            raise ValueError
        self.traverse(node)


PATTERNS = {
    # failing constructors
    "a constructor that throws": lambda s: raises(zorCollide.Box, zor.Vec3(-1, 1, 1)),
    "a constructor that no overload fits": lambda s: raises(zorOSG.SceneDescription, object()),
    "a vector from a bad iterable": lambda s: raises(zor.RealVector, [1.0, 2.0, "x"]),
    "rows of the wrong length": lambda s: raises(zor.Vec3Vector, [[1.0, 2.0]]),
    # wrong arguments, one to each kind of conversion
    "no bool": lambda s: raises(_zorOSG.SceneDecorator_setEnableLogo, s.decorator, 1),
    "an int out of range": lambda s: raises(_zorOSG.SceneDecorator_updateWindowSize, s.decorator, 2**31, 1),
    "a huge int": lambda s: raises(_zorOSG.SceneDecorator_updateWindowSize, s.decorator, 2**100, 1),
    "no float": lambda s: raises(_zorOSG.SceneDecorator_setFontSize, s.decorator, "x"),
    "a float out of range": lambda s: raises(_zorOSG.SceneDecorator_setFontSize, s.decorator, 1e39),
    "no text": lambda s: raises(_zorOSG.SceneDecorator_setFontName, s.decorator, b"x"),
    "no short text": lambda s: raises(s.capture.setFilename, 5),
    "text with lone surrogates": lambda s: raises(_zorOSG.SceneDecorator_setFontName, s.decorator, "\ud800" * 100),
    "a wrong object": lambda s: raises(_zor.RigidBody_setPosition, s.body, s.geometry),
    "a null reference": lambda s: raises(_zor.RigidBody_setPosition, s.body, None),
    "too many arguments": lambda s: raises(_zor.RigidBody_setPosition, s.body, 1, 2, 3),
    "an overload mismatch": lambda s: raises(zorOSG.createGrid, 1, 2, 3),
    "text, then a mismatch": lambda s: raises(s.app.addScene, "f" * 1000, "g" * 1000, object()),
    "an index out of range": lambda s: raises(lambda: s.vector[100]),
    "an operator with something else": lambda s: raises(lambda: zor.Vec3() + "x"),
    # results and arguments
    "values": lambda s: s.body.getPosition() + s.body.getVelocity() * 2.0,
    "value arguments": lambda s: s.body.setPosition(zor.Vec3(1, 2, 3)),
    "text out and in": lambda s: s.body.setName(s.body.getName()),
    "long text": lambda s: (s.body.setName("v" * 10_000), s.body.getName()),
    "objects": lambda s: (s.app.getSimulation(), s.app.getSceneRoot(), s.body.getFrame(), s.geometry.getShape(0)),
    "lists of objects": lambda s: s.app.getSimulation().getRigidBodies(),
    "lists of text": lambda s: s.app.kept.getArguments(),
    "inner results": lambda s: s.body.getMassProperties().getMass(),
    "found by name": lambda s: (s.sim.getRigidBody("none"), s.app.getSimulation().getRigidBody("body")),
    "found nodes": lambda s: zorOSG.findGeometryNodes(s.geometry, s.app.getSceneRoot()),
    "a list for a vector": lambda s: zor.Vec3Vector([[1.0, 2.0, 3.0]] * 50),
    "a buffer for a vector": lambda s: zor.RealVector(numpy.ones(100)),
    "global variable": lambda s: setattr(zorOSG.cvar, "VideoFFMPEGPipeCapture_OutputCodecStrings",
                                         zorOSG.cvar.VideoFFMPEGPipeCapture_OutputCodecStrings),
    # containers
    "vector methods": lambda s: (s.vector.append(1.0), s.vector.__delitem__(0), s.vector[3], s.vector[1:5], list(s.vector)),
    "buffers kept alive": lambda s: numpy.asarray(zor.RealVector([1.0] * 100)).sum(),
    "resizing under a buffer": lambda s: (lambda view: raises(s.vector.append, 1.0))(memoryview(s.vector)),
    "node vectors": lambda s: (zorOSG.GeometryNodePtrVector(s.nodes).append(s.nodes[0]), s.nodes.IndexOf(s.nodes[0]),
                               raises(iter, s.nodes)),
    # toolkit errors
    "an exception of the toolkit": lambda s: raises(s.body.setPosition, zor.Vec3(float("nan"), 0, 0)),
    "an exception with much text": lambda s: raises(zorIO.Environment.instance().getFilePath().require, "missing" * 20),
    # sharing
    "bodies in and out": lambda s: (lambda body: (s.sim.add(body), s.sim.remove(body)))(zor.RigidBody("b")),
    "a body with a geometry": lambda s: zor.RigidBody("b").add(zorCollide.Geometry(zorCollide.Box(zor.Vec3(1, 1, 1)))),
    "listeners in and out": lambda s: (lambda listener: (s.sim.add(listener), s.sim.remove(listener)))(Steps()),
    "nodes in and out": lambda s: (lambda node: (s.group.addChild(node), s.group.removeChild(node)))(osg.Node()),
    "visuals": lambda s: zorOSG.createVisual(s.geometry, osg.Group()),
    # directors
    "directors dropped": lambda s: Listener(),
    "a director that the toolkit outlives": lambda s: (s.sim.add(Steps()), s.sim.remove(s.sim.getListeners()[0])),
    "callbacks": lambda s: (lambda listener: (s.sim.add(listener), s.sim.stepForward(), s.sim.remove(listener)))(Steps()),
    "events": lambda s: (lambda event: (event.add(lambda: None), event.raise_()))(zor.Event()),
    "a callback that fails": lambda s: (lambda event: (event.add(lambda: 1 / 0), event.raise_()))(zor.Event()),
    # the scene graph
    "visitors": lambda s: graph().accept(Visitor()),
    "a visitor that fails": lambda s: raises(graph().accept, Visitor(fails=True)),
    "functions that nodes call": lambda s: (lambda node: (node.setUpdateCallback(lambda *_: None), node.accept(osg.UpdateVisitor())))(osg.Group()),
    "a callback that a node outlives": lambda s: (lambda node: (node.setUpdateCallback(osg.NodeCallback()), node.accept(osg.UpdateVisitor())))(graph()),
    "arrays and views": lambda s: numpy.asarray(osg.Vec3Array(numpy.ones((9, 3)))).sum(),
    "images and views": lambda s: numpy.asarray(osg.Image.fromArray(numpy.ones((9, 9, 3), "B"))).sum(),
    "wrong elements": lambda s: raises(osg.Vec3Array, [(1, 2, 3), (1, "x", 3)]),
    "user values and copies": lambda s: (lambda node: (node.setUserValue("v", osg.Vec3()), node.clone().getUserValues()))(graph()),
    "lines that meet drawables": lambda s: osg.intersect(graph(), osg.Vec3d(0, 0, 5), osg.Vec3d(0, 0, -5)),
}


@pytest.mark.parametrize("name", PATTERNS)
def test_pattern(scene, name):
    pattern = PATTERNS[name]
    try:
        check_constant(lambda: pattern(scene))
    finally:
        zorPython.clearErrors()


def references(thing):
    return thing.getReferenceCount() if hasattr(thing, "getReferenceCount") else thing.referenceCount()


COUNTED = [parameter for parameter in CONSTRUCTORS
           if hasattr(parameter.values[0], "getReferenceCount") or hasattr(parameter.values[0], "referenceCount")]


@pytest.mark.parametrize("kind", COUNTED)
def test_a_new_object_has_the_one_reference_of_its_proxy(kind):
    made = kind()
    flat = (_zor.Referenced_getReferenceCount if hasattr(kind, "getReferenceCount") else None)
    for refused in (lambda: _zor.RigidBody_setPosition(made, made), lambda: zorOSG.createGrid(made, made),
                    lambda: zorOSG.createVisual(made, made, made, made, made, made, made)):
        raises(refused)
    assert references(made) == 1
    assert flat is None or flat(made) == 1


# What is made, and what is done with it that takes references and gives them back.
SHARED = {
    "a body": (zor.RigidBody, lambda s, body: (s.sim.add(body), s.sim.getRigidBodies(), s.sim.stepForward(), s.sim.remove(body))),
    "a body with visuals": (zor.RigidBody, lambda s, body: (s.sim.add(body), zorOSG.createVisual(body, osg.Group()), s.sim.remove(body))),
    "a geometry": (lambda: zorCollide.Geometry(zorCollide.Sphere(1)),
                   lambda s, geometry: (lambda body: (body.add(geometry), body.getGeometries(), body.remove(geometry)))(zor.RigidBody())),
    "a listener": (Steps, lambda s, listener: (s.sim.add(listener), s.sim.stepForward(), s.sim.getListeners(), s.sim.remove(listener))),
    "an assembly": (zorSDK.Assembly, lambda s, assembly: (s.sim.add(assembly), s.sim.getAssemblies(), s.sim.remove(assembly))),
    "a frame": (zor.Frame, lambda s, frame: (lambda child: (child.setParent(frame), child.getParent(), child.setParent(None)))(zor.Frame())),
    "a node": (osg.Group, lambda s, node: (s.group.addChild(node), s.group.getChild(0), s.group.removeChild(node))),
    "a transform": (zorOSG.Transform, lambda s, node: (zorOSG.Transform_reference(node), zorOSG.Transform_unreference(node))),
    "a state set": (osg.StateSet, lambda s, state: (lambda node: (node.setStateSet(state), node.getStateSet(), node.setStateSet(None)))(osg.Node())),
    "an array": (osg.Vec3Array, lambda s, array: (lambda g: (g.setVertexArray(array), g.getVertexArray(), memoryview(array)))(osg.Geometry())),
    "a callback": (osg.NodeCallback, lambda s, callback: (lambda node: (node.addCullCallback(callback), node.getCullCallback()))(osg.Node())),
    "a texture": (osg.Texture2D, lambda s, texture: (lambda state: (state.setTextureAttributeAndModes(0, texture), state.getTexture(0)))(osg.StateSet())),
    "a render target": (lambda: zorOSG.RenderToImage(16, 16), lambda s, target: (s.app.addRenderTarget(target), s.app.removeRenderTarget(target))),
}


@pytest.mark.parametrize("name", SHARED)
def test_references_go_back_to_where_they_were(scene, name):
    make, use = SHARED[name]
    made = make()
    before = references(made)
    for _ in range(5):
        use(scene, made)
        gc.collect()
        assert references(made) == before
