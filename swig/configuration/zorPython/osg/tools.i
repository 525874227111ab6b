// What is done with whole parts of the graph.

%{
#include <osgUtil/IntersectionVisitor>
#include <osgUtil/LineSegmentIntersector>
#include <osgUtil/Optimizer>
#include <osgUtil/SmoothingVisitor>
#include <osgUtil/Tessellator>

// Tools trust indices.
class ZorFaultFinder : public osg::NodeVisitor {
public:
  ZorFaultFinder() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
  void apply(osg::Geometry& geometry) override {
    std::string const fault = zorBinding::geometryFault(geometry);
    if (!fault.empty()) throw std::invalid_argument("the geometry '" + geometry.getName() + "' can't be used: " + fault);
  }
};

// Addresses of what holds the numbers of the geometries below a node.
class ZorStorageFinder : public osg::NodeVisitor {
public:
  ZorStorageFinder() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
  void apply(osg::Geometry& geometry) override {
    osg::Geometry::ArrayList arrays;
    geometry.getArrayList(arrays);
    for (auto const& array : arrays) found.push_back(dynamic_cast<void const*>(array.get()));
    for (auto const& primitives : geometry.getPrimitiveSetList()) found.push_back(dynamic_cast<void const*>(primitives.get()));
  }

  std::vector<void const*> found;
};

static void zorPrepareForTools(osg::Node& node) {
  zorBinding::checkNobodyVisits();
  ZorFaultFinder finder;
  node.accept(finder);
}

static PyObject* zorVec3d(osg::Vec3d const& vector) {
  return SWIG_NewPointerObj(new osg::Vec3d(vector), SWIGTYPE_p_osg__Vec3d, SWIG_POINTER_OWN);
}

static PyObject* zorHits(osg::Node& node, osgUtil::LineSegmentIntersector& intersector, unsigned int mask) {
  osg::ref_ptr<osg::Node> const kept(&node);
  osgUtil::IntersectionVisitor visitor(&intersector);
  visitor.setTraversalMask(mask);
  node.accept(visitor);
  PyObject* list = PyList_New(0);
  for (osgUtil::LineSegmentIntersector::Intersection const& hit : intersector.getIntersections()) {
    PyObject* entry = Py_BuildValue("(NNNNdI)", zorNodeList(hit.nodePath), zorWrapNode(hit.drawable.get(), SWIGTYPE_p_osg__Drawable),
                                    zorVec3d(hit.getWorldIntersectPoint()), zorVec3d(hit.getWorldIntersectNormal()), hit.ratio, hit.primitiveIndex);
    if (list && entry) PyList_Append(list, entry);
    Py_XDECREF(entry);
  }
  return list;
}
%}

%nodefaultctor osgUtil::Optimizer;
%nodefaultdtor osgUtil::Optimizer;
namespace osgUtil {

/** Options of optimize(). */
class Optimizer {
public:
  enum OptimizationOptions {
    FLATTEN_STATIC_TRANSFORMS = 1,
    REMOVE_REDUNDANT_NODES = 2,
    SHARE_DUPLICATE_STATE = 16,
    MERGE_GEOMETRY = 32,
    MERGE_GEODES = 8192
  };
};

} // namespace osgUtil

%inline %{
static PyObject* _storages(osg::Node& node) {
  ZorStorageFinder finder;
  node.accept(finder);
  PyObject* list = PyList_New(0);
  for (void const* storage : finder.found) {
    PyObject* address = list ? PyLong_FromVoidPtr(const_cast<void*>(storage)) : nullptr;
    if (address) PyList_Append(list, address);
    Py_XDECREF(address);
  }
  return list;
}

static void _smooth(osg::Node& node, double creaseAngle) {
  zorPrepareForTools(node);
  osgUtil::SmoothingVisitor visitor;
  visitor.setCreaseAngle(creaseAngle);
  node.accept(visitor);
}

static void _tessellate(osg::Geometry& geometry) {
  zorPrepareForTools(geometry);
  auto const* vertices = dynamic_cast<osg::Vec3Array const*>(geometry.getVertexArray());
  if (!vertices) throw std::invalid_argument("the vertices are not in a Vec3Array");
  for (osg::Vec3 const& vertex : *vertices) {
    if (!vertex.valid()) throw std::invalid_argument("a vertex is no number");
  }
  osgUtil::Tessellator tessellator;
  tessellator.setTessellationType(osgUtil::Tessellator::TESS_TYPE_GEOMETRY);
  tessellator.setWindingType(osgUtil::Tessellator::TESS_WINDING_ODD);
  tessellator.retessellatePolygons(geometry);
}

static void _optimize(osg::Node& node, unsigned int options) {
  unsigned int const known = osgUtil::Optimizer::FLATTEN_STATIC_TRANSFORMS | osgUtil::Optimizer::REMOVE_REDUNDANT_NODES |
                             osgUtil::Optimizer::SHARE_DUPLICATE_STATE | osgUtil::Optimizer::MERGE_GEOMETRY | osgUtil::Optimizer::MERGE_GEODES;
  if (options & ~known) throw std::invalid_argument("no options of the optimizer: " + std::to_string(options & ~known));
  zorPrepareForTools(node);
  osgUtil::Optimizer optimizer;
  optimizer.optimize(&node, options);
}

static PyObject* _intersect(osg::Node& node, osg::Vec3d const& start, osg::Vec3d const& end, unsigned int mask) {
  osg::ref_ptr<osgUtil::LineSegmentIntersector> const intersector = new osgUtil::LineSegmentIntersector(start, end);
  return zorHits(node, *intersector, mask);
}

static PyObject* _intersectPixel(osg::Camera& camera, double x, double y, unsigned int mask) {
  if (!camera.getViewport()) throw std::invalid_argument("the camera has no viewport");
  osg::ref_ptr<osgUtil::LineSegmentIntersector> const intersector = new osgUtil::LineSegmentIntersector(osgUtil::Intersector::WINDOW, x, y);
  return zorHits(camera, *intersector, mask);
}
%}

%pythoncode %{
class Intersection:
    """A point where a line meets a drawable."""

    path: list[Node]
    """The way from where the search began down to the drawable."""
    drawable: Drawable
    """What the line meets."""
    point: Vec3d
    """Where they meet, in the coordinates in which the line was given."""
    normal: Vec3d
    """The surface's normal there, of length 1."""
    ratio: float
    """How far along the line the point lies, 0 to 1."""
    primitive: int
    """Number of the triangle, line or point of the drawable."""

    def __init__(self, path: list[Node], drawable: Drawable, point: Vec3d, normal: Vec3d, ratio: float, primitive: int) -> None:
        """A point where a line met a drawable; made by intersect() and intersectPixel()."""
        self.path, self.drawable, self.point, self.normal, self.ratio, self.primitive = path, drawable, point, normal, ratio, primitive

    def __repr__(self) -> str:
        return f"<osg.Intersection of {self.drawable!r} at {self.point!r}>"


def intersect(node: Node, start: Vec3d, end: Vec3d, mask: int = 0xffffffff) -> list[Intersection]:
    """
    Returns where a line meets the drawables below a node, in order from its start.

    :param start: begin of the line, in the coordinates of the node's parent
    :param end: its end
    :param mask: only nodes that have a bit of it in their node mask are considered
    """
    return [Intersection(*hit) for hit in _intersect(node, start, end, mask)]


def intersectPixel(camera: Camera, x: float, y: float, mask: int = 0xffffffff) -> list[Intersection]:
    """Returns what lies under a pixel of a camera's window, nearest first; the lowest row of pixels is 0."""
    return [Intersection(*hit) for hit in _intersectPixel(camera, x, y, mask)]


def _check_unused_below(node: Node) -> None:
    if _buffers and not _buffers.keys().isdisjoint(_storages(node)):
        raise BufferError("a buffer of an array below the node is in use: its memory can't be moved")


def smooth(node: Node, creaseAngle: float = 3.141592653589793) -> None:
    """
    Gives the geometries below a node normals that follow from their triangles.

    :param creaseAngle: edges whose faces meet at a larger angle stay sharp (radians)
    """
    _check_unused_below(node)
    _smooth(node, creaseAngle)


def tessellate(geometry: Geometry) -> None:
    """Makes triangles of the polygons of a geometry, which may be concave or have holes."""
    _check_unused_below(geometry)
    _tessellate(geometry)


def optimize(node: Node, options: int = Optimizer.REMOVE_REDUNDANT_NODES | Optimizer.SHARE_DUPLICATE_STATE | Optimizer.MERGE_GEOMETRY) -> None:
    """
    Changes what is below a node so that it is drawn faster. What changes between frames has to be DYNAMIC, see
    Object.setDataVariance().

    :param options: of Optimizer, added up
    """
    _check_unused_below(node)
    _optimize(node, options)
%}
