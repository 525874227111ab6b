// Images in a row, such as the six sides of a cube: the toolkit's vector, which holds a reference to each.

%include "shared/vectors.i"

namespace zor {
typedef Vector<osg::ref_ptr<osg::Image> > ImageVector;
}
ZOR_REFERENCE_VECTOR(ImageVector, osg::ref_ptr, osg::Image)
