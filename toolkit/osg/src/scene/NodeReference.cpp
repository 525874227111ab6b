#include <zorOSG/GeometryNode.h>
#include <zorOSG/NodeReference.h>
#include <zorOSG/Text.h>
#include <zorOSG/Transform.h>

namespace {

void reference(osg::Referenced* object) {
  if (object)
    object->ref();
}

void unreference(osg::Referenced* object) {
  if (object)
    object->unref();
}

} // namespace

namespace osg {

void Group_reference(osg::Group* group) {
  reference(group);
}
void Group_unreference(osg::Group* group) {
  unreference(group);
}
void Geometry_reference(osg::Geometry* geometry) {
  reference(geometry);
}
void Geometry_unreference(osg::Geometry* geometry) {
  unreference(geometry);
}

} // namespace osg

namespace zorOSG {

void GeometryNode_reference(zorOSG::GeometryNode* node) {
  reference(node);
}
void GeometryNode_unreference(zorOSG::GeometryNode* node) {
  unreference(node);
}
void Transform_reference(zorOSG::Transform* node) {
  reference(node);
}
void Transform_unreference(zorOSG::Transform* node) {
  unreference(node);
}
void Text_reference(zorOSG::Text* node) {
  reference(node);
}
void Text_unreference(zorOSG::Text* node) {
  unreference(node);
}

} // namespace zorOSG
