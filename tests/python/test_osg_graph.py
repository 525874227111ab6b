"""The graph in Python: trees, visitors, callbacks, copies, and what must not bring it down."""

import copy
import functools
import gc

import pytest

import osg
import osgViewer
import zor
import zorCollide
import zorOSG
import zorPython
import zorSDK


def tree():
    """root > moved (1, 2, 3) > leaf; shared below both."""
    root, moved, leaf, shared = osg.Group(), osg.MatrixTransform(osg.Matrixd.translate(1, 2, 3)), osg.Geode(), osg.Switch()
    for node, name in ((root, "root"), (moved, "moved"), (leaf, "leaf"), (shared, "shared")):
        node.setName(name)
    root.addChildren([moved, shared])
    moved.addChildren([leaf, shared])
    leaf.addDrawable(osg.ShapeDrawable(osg.Sphere(osg.Vec3(), 1)))
    return root


def find(root, name):
    return next(node for node in walk(root) if node.getName() == name)


def walk(node):
    yield node
    for child in node if isinstance(node, osg.Group) else ():
        yield from walk(child)


def test_groups_are_sequences_of_nodes_of_their_own_types():
    root = tree()
    moved, shared = root
    assert (type(moved), type(shared), type(moved[0]), type(moved[0][0])) == (osg.MatrixTransform, osg.Switch, osg.Geode, osg.ShapeDrawable)
    assert len(root) == 2 and root[-1] == shared and moved in root and root not in moved and None not in root and osg.Group()
    assert moved == root.getChild(0) and hash(moved) == hash(root.getChild(0)) and moved != shared and moved != 5
    assert repr(moved).startswith("<osg.MatrixTransform 'moved' at 0x")
    assert {node.getName() for node in shared.getParents()} == {"root", "moved"}
    with pytest.raises(IndexError):
        root[2]
    fresh = osg.Node()
    assert root.replaceChild(shared, fresh) and root.setChild(0, shared) and [*root] == [shared, fresh]
    root.insertChild(0, moved)
    assert root.insertChild(1 << 31, osg.Node()) and root.getChildIndex(fresh) == 2 and root.getChildIndex(root) == len(root) == 4


def test_paths_and_world_matrices():
    root = tree()
    shared = find(root, "shared")
    assert [[node.getName() for node in path] for path in shared.getParentalNodePaths()] == [["root", "shared"], ["root", "moved", "shared"]]
    assert [matrix.getTrans() for matrix in shared.getWorldMatrices()] == [osg.Vec3d(), osg.Vec3d(1, 2, 3)]
    assert len(shared.getWorldMatrices(find(root, "moved"))) == 2
    node = osg.Group()
    for _ in range(40):  # 2 ^ 40 ways to the root
        above = osg.Group(), osg.Group()
        for parent in above:
            parent.addChild(node)
        node = osg.Group()
        for parent in above:
            node.addChild(parent)
    deepest = node
    while len(deepest):
        deepest = deepest[0]
    for ask in (deepest.getParentalNodePaths, deepest.getWorldMatrices):
        with pytest.raises(RuntimeError, match="100,000 paths"):
            ask()


def test_no_node_is_its_own_descendant():
    root = tree()
    moved = root[0]
    for put in (lambda: moved.addChild(root), lambda: moved.insertChild(0, root), lambda: moved.setChild(0, moved),
                lambda: moved.replaceChild(moved[0], root), lambda: osg.Switch.addChild(find(root, "shared"), root, True)):
        with pytest.raises((RuntimeError, ValueError), match="its own descendant"):
            put()
    for put in (root.addChild, lambda node: root.setChild(0, node), osg.Geode().addDrawable, osg.Billboard().addDrawable, osg.LOD().addChild):
        with pytest.raises((RuntimeError, ValueError), match="not None"):
            put(None)


class Names(osg.NodeVisitor):
    """Notes what it meets; methods by class."""

    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.met = []

    @functools.singledispatchmethod
    def apply(self, node):
        self.met.append(node.getName() or type(node).__name__)
        assert here(self) == node
        self.traverse(node)

    @apply.register
    def _(self, node: osg.Switch):
        self.met.append(f"switch with {len(node)}")


def here(visitor):
    """The node that a visitor is at: its path begins at the highest one."""
    return visitor.getNodePath()[0 if visitor.getTraversalMode() == osg.NodeVisitor.TRAVERSE_PARENTS else -1]


def test_visitors_meet_every_node_as_what_it_is():
    root = tree()
    visitor = Names()
    root.accept(visitor)
    assert visitor.met == ["root", "moved", "leaf", "ShapeDrawable", "switch with 0", "switch with 0"]
    root[0].setNodeMask(0)
    visitor = Names()
    root.accept(visitor)
    assert visitor.met == ["root", "switch with 0"]
    root[0].setNodeMask(1)
    upwards = Names(osg.NodeVisitor.TRAVERSE_PARENTS)
    root[0][0].accept(upwards)
    assert upwards.met == ["leaf", "moved", "root"] and upwards.getNodePath() == []


class Failing(osg.NodeVisitor):
    def apply(self, node):
        if node.getName() == "leaf":
            raise KeyError("leaf")
        try:
            self.traverse(node)
        finally:
            assert here(self) == node


@pytest.mark.parametrize("mode", [osg.NodeVisitor.TRAVERSE_ALL_CHILDREN, osg.NodeVisitor.TRAVERSE_PARENTS])
def test_errors_of_visitors_reach_the_caller(mode):
    root = tree()
    start = root
    if mode == osg.NodeVisitor.TRAVERSE_PARENTS:
        root.setName("leaf")
        start = root[0][0]
        start.setName("")
    visitor = Failing(mode)
    for _ in range(2):
        with pytest.raises(KeyError):
            start.accept(visitor)
        assert visitor.getNodePath() == []


class Removing(osg.NodeVisitor):
    def __init__(self, change):
        super().__init__()
        self.change = change

    def apply(self, node):
        if node.getName() == "leaf":
            self.change(node)
        self.traverse(node)


@pytest.mark.parametrize("change", [
    lambda leaf: leaf.getParent(0).removeChild(leaf), lambda leaf: leaf.getParent(0).removeChildren(),
    lambda leaf: leaf.getParent(0).addChild(osg.Node()), lambda leaf: leaf.getParent(0).setChild(0, osg.Node()),
    lambda leaf: leaf.getParent(0).getParent(0).removeChildren(), lambda leaf: osg.optimize(leaf)])
def test_groups_do_not_change_under_a_visitor(change):
    root = tree()
    with pytest.raises(RuntimeError, match="afterwards"):
        root.accept(Removing(change))
    assert len(root) == 2 and len(root[0]) == 2
    change(root[0][0])


def scene_of_bodies():
    """A simulation, and a group with the visuals of its bodies: nothing else holds them."""
    simulation, root = zorSDK.Simulation(), osg.Group()
    root.setName("root")
    for _ in range(3):
        simulation.add(zor.RigidBody(zorCollide.Geometry(zorCollide.Box(1, 1, 1))))
        zorOSG.createVisual(simulation.getRigidBodies()[-1].getGeometries()[0], root)
    return simulation, root


def remove_bodies(simulation, root):
    for body in list(simulation.getRigidBodies()):
        simulation.remove(body)


def draw_more(simulation, root):
    for _ in range(50):
        simulation.add(zorCollide.Geometry(zorCollide.Sphere(1)))
        zorOSG.createVisual(simulation.getGeometries()[-1], root)


@pytest.mark.parametrize("change", [remove_bodies, draw_more])
def test_changes_by_the_toolkit_end_a_traversal(change):
    simulation, root = scene_of_bodies()
    called = []

    class Changing(osg.NodeVisitor):
        def apply(self, node):
            if isinstance(node, zorOSG.GeometryNode):
                called.append("visitor")
                change(simulation, root)
            self.traverse(node)

    visitor = Changing()
    with pytest.raises(RuntimeError, match="children of 'root' were changed.*afterwards"):
        root.accept(visitor)
    assert visitor.getNodePath() == []

    simulation, root = scene_of_bodies()
    viewer = osgViewer.Viewer()
    viewer.setUpOffScreen(16, 16)
    viewer.setSceneData(root)
    for set_callback in (osg.Node.setUpdateCallback, osg.Node.setCullCallback):
        added = root.addChild(osg.Group()) and root[-1]
        added.setCullingActive(False)
        set_callback(added, lambda node, visitor: called.append("frame") or draw_more(simulation, root))
        with pytest.raises(RuntimeError, match="afterwards"):
            viewer.frame()
        root.removeChild(added)
        viewer.frame()
    assert called == ["visitor", "frame", "frame"]


def test_visitors_may_change_what_they_come_to():
    root = tree()
    root.accept(Removing(lambda leaf: (leaf.removeDrawable(leaf.getDrawable(0)), leaf.addChild(osg.Node()))))
    assert type(root[0][0][0]) is osg.Node
    with pytest.raises(RuntimeError, match="under way"):
        root.accept(ModeChanger())


class ModeChanger(osg.NodeVisitor):
    def apply(self, node):
        self.setTraversalMode(osg.NodeVisitor.TRAVERSE_PARENTS)


class Spin(osg.NodeCallback):
    def __init__(self):
        super().__init__()
        self.calls = []

    def __call__(self, node, visitor):
        self.calls.append((type(node), visitor.getFrameStamp().getFrameNumber()))
        self.traverse(node, visitor)


def update(node, frame=3):
    visitor, stamp = osg.UpdateVisitor(), osg.FrameStamp()
    stamp.setFrameNumber(frame)
    visitor.setFrameStamp(stamp)
    node.accept(visitor)


def test_callbacks_run_for_their_nodes():
    root, spin, called = tree(), Spin(), []
    root[0].setUpdateCallback(spin)
    root[0][0].setUpdateCallback(lambda node, visitor: called.append(type(visitor)))
    root[0].addUpdateCallback(lambda node, visitor: called.append(node))
    update(root)
    assert spin.calls == [(osg.MatrixTransform, 3)] and called == [root[0], osg.UpdateVisitor]
    assert root[0].getUpdateCallback() is spin
    with pytest.raises(RuntimeError, match="added already"):
        root[0].addUpdateCallback(spin)
    root[0].removeUpdateCallback(spin)
    root[0].addUpdateCallback(lambda node, visitor: False)  # the children are left out
    called.clear()
    update(root)
    assert len(spin.calls) == 1 and called == [root[0]]
    root[0].setUpdateCallback(lambda node, visitor: node.setUpdateCallback(None))
    update(root)
    assert root[0].getUpdateCallback() is None
    for wrong in (5, "x"):
        with pytest.raises((TypeError, RuntimeError)):
            root.setUpdateCallback(wrong)


def test_a_callback_that_has_died_changes_nothing():
    root, called = tree(), []
    root.setUpdateCallback(Spin())
    root[0].setUpdateCallback(lambda node, visitor: called.append(node))
    gc.collect()
    update(root)
    assert called == [root[0]] and type(root.getUpdateCallback()) is osg.NodeCallback


def test_errors_of_callbacks_reach_whoever_sent_the_visitor():
    root = tree()

    def fail(node, visitor):
        raise KeyError(node.getName())

    class Fail(osg.NodeCallback):
        def __call__(self, node, visitor):
            fail(node, visitor)

    fails = Fail()
    for callback in (fail, fails):
        root[0].setUpdateCallback(callback)
        before = sum(error.count for error in zorPython.getErrors())
        try:
            update(root)
            raised = False
        except KeyError:
            raised = True
        # Where an application's script manager is there it has the error, and the frame went on.
        assert raised != (sum(error.count for error in zorPython.getErrors()) > before)
    zorPython.clearErrors()


def test_functions_of_callbacks_die_with_their_nodes():
    import weakref

    class Function:
        def __call__(self, node, visitor):
            pass

    function = Function()
    gone = weakref.ref(function)
    node = osg.Group()
    node.setUpdateCallback(function)
    del function
    gc.collect()
    assert gone() is not None
    del node
    gc.collect()
    assert gone() is None


def test_copies():
    root = tree()
    root.setUserValue("kept", 5)
    shallow, deep = copy.copy(root), copy.deepcopy(root)
    assert type(deep) is osg.Group and shallow[0] == root[0] and deep[0] != root[0] and deep[0].getMatrix() == root[0].getMatrix()
    assert deep.getUserValue("kept") == 5 and deep.getName() == "root"
    state = root.getOrCreateStateSet()
    assert root.clone().getStateSet() == state and root.clone(osg.CopyOp(osg.CopyOp.DEEP_COPY_STATESETS)).getStateSet() != state
    transform = root[0].clone()
    assert type(transform) is osg.MatrixTransform


def test_user_values():
    node = osg.Node()
    values = {"b": True, "i": -7, "f": 0.1, "s": "Käse\n", "v2": osg.Vec2(1, 2), "v3": osg.Vec3d(1, 2, 3), "v4": osg.Vec4(1, 2, 3, 4),
              "q": osg.Quat(0, 0, 0, 1), "m": osg.Matrixd.translate(1, 2, 3)}
    for name, value in values.items():
        node.setUserValue(name, value)
    assert node.getUserValues() == values and {name: type(value) for name, value in node.getUserValues().items()} == \
        {name: type(value) for name, value in values.items()}
    node.setUserValue("i", "now text")
    assert node.getUserValue("i") == "now text" and node.getUserValue("none") is None
    with pytest.raises(TypeError):
        node.setUserValue("x", object())


def test_switches_and_levels_check_positions():
    switch, lod = osg.Switch(), osg.LOD()
    switch.addChild(osg.Node(), False)
    switch.addChild(osg.Node())
    lod.addChild(osg.Node(), 0, 10)
    assert [switch.getValue(i) for i in (0, 1)] == [False, True] and (lod.getMinRange(0), lod.getMaxRange(-1)) == (0, 10)
    for use in (lambda: switch.setValue(2, True), lambda: switch.setSingleChildOn(1 << 40), lambda: lod.setRange(1, 0, 1), lambda: lod.getMinRange(-2)):
        with pytest.raises(IndexError):
            use()
    with pytest.raises(RuntimeError, match="no child"):
        switch.setChildValue(osg.Node(), True)


def test_billboards_keep_a_place_for_each_drawable():
    billboard, drawable = osg.Billboard(), osg.ShapeDrawable(osg.Sphere(osg.Vec3(), 1))
    billboard.addDrawable(drawable, osg.Vec3(5, 0, 0))
    assert billboard.getPosition(0) == osg.Vec3(5, 0, 0) and billboard.getBound().center().x() == 5
    for change in (lambda: billboard.addChild(drawable), billboard.removeChildren, lambda: billboard.setChild(0, drawable)):
        with pytest.raises((RuntimeError, ValueError), match="billboard"):
            change()
    assert billboard.removeDrawable(drawable) and len(billboard) == 0
    with pytest.raises(RuntimeError, match="drawables only"):  # the toolkit takes it for a group
        zorOSG.createAxes(zor.AffineMatrix4x4(), billboard)
    assert len(billboard) == 0


def test_lines_meet_drawables():
    root = tree()
    hits = osg.intersect(root, osg.Vec3d(1, 2, 10), osg.Vec3d(1, 2, -10))
    assert len(hits) >= 2 and hits[0].point.z() == pytest.approx(4, abs=0.05) and hits[0].normal.z() == pytest.approx(1, abs=0.1)
    assert [node.getName() for node in hits[0].path[:3]] == ["root", "moved", "leaf"] and hits[0].drawable == root[0][0][0]
    assert osg.intersect(root, osg.Vec3d(9, 9, 10), osg.Vec3d(9, 9, -10)) == []
    with pytest.raises(RuntimeError, match="viewport"):
        osg.intersectPixel(osg.Camera(), 1, 1)
