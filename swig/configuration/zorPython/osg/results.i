// Which pointers of the scene graph come back as shared proxies.

OSG_SHARED(Object)
OSG_SHARED(Node)
OSG_SHARED(Group)
OSG_SHARED(Geode)
OSG_SHARED(Transform)
OSG_SHARED(MatrixTransform)
OSG_SHARED(Switch)
OSG_SHARED(Camera)
OSG_SHARED(Drawable)
OSG_SHARED(Geometry)
OSG_SHARED(Shape)
OSG_SHARED(TessellationHints)
OSG_SHARED(StateSet)
OSG_SHARED(StateAttribute)
OSG_SHARED(Material)
OSG_SHARED(Texture)
OSG_SHARED(Texture2D)
OSG_SHARED(TextureCubeMap)
OSG_SHARED(Light)
OSG_SHARED(LightSource)
OSG_SHARED(ClipPlane)
OSG_SHARED(Uniform)
OSG_SHARED(Program)
OSG_SHARED(Shader)
OSG_SHARED(Image)
OSG_SHARED(Array)
OSG_SHARED(PrimitiveSet)

// What a function returns that makes a group with several children: the group, and a number for each child.
namespace std {
template <class First, class Second>
class tuple {
public:
  ~tuple();
};
}
%extend std::tuple<osg::Group*, std::vector<size_t> > {
  osg::Group* _group() const { return std::get<0>(*$self); }
  PyObject* _indices() const {
    std::vector<size_t> const& indices = std::get<1>(*$self);
    PyObject* list = PyList_New(static_cast<Py_ssize_t>(indices.size()));
    for (std::size_t i = 0; list && i < indices.size(); ++i) {
      PyList_SET_ITEM(list, static_cast<Py_ssize_t>(i), PyLong_FromSize_t(indices[i]));
    }
    return list;
  }
  %pythoncode %{
    def __len__(self):
        return 2

    def __getitem__(self, index):
        return (self._group(), self._indices())[index]
  %}
}
%template(GroupAndIndices) std::tuple<osg::Group*, std::vector<size_t> >;
