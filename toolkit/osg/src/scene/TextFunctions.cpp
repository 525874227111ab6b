#include <zorOSG/Primitives.h>

#include <zorOSG/Lookup.h>

#include "Checks.h"
#include "Convert.h"

namespace zorOSG {

namespace {

osg::ref_ptr<Text> makeText(char const* function, std::string const& text, zor::Vec3 const& position,
                            zor::Vec4f const& color, zor::Real size) {
  requirePositive(function, "size", size);
  osg::ref_ptr<Text> label = new Text(text);
  label->setPosition(position);
  label->setColor(color);
  label->setCharacterSize(static_cast<float>(size));
  return label;
}

/** The index-th text below the nodes of a geometry. */
Text* findLabel(zorCollide::Geometry const* geometry, osg::Group* root, size_t index) {
  for (GeometryNode* node : findGeometryNodes(geometry, root))
    for (unsigned int i = 0; i < node->getNumChildren(); ++i)
      if (auto* label = dynamic_cast<Text*>(node->getChild(i)); label && index-- == 0)
        return label;
  return nullptr;
}

} // namespace

bool addText(zorCollide::Geometry const* geometry, osg::Group* root, std::string const& text,
             zor::Vec3 const& relPosition, zor::Vec4f const& color, zor::Real size, int alignment) {
  osg::ref_ptr<Text> const label = makeText("addText", text, relPosition, color, size);
  label->setAxisAlignment(static_cast<Text::AxisAlignment>(alignment));
  GeometryNode* node = findGeometryNode(geometry, root);
  return node && node->addChild(label);
}

osg::Geode* createText(std::string const& text, zor::Vec3 const& relPosition, zor::Vec4f const& color,
                       zor::Real size) {
  return makeText("createText", text, relPosition, color, size).release();
}

osgText::Text* findText(zorCollide::Geometry const* geometry, osg::Group* root, size_t index) {
  Text* label = findLabel(geometry, root, index);
  return label ? label->getDrawableText() : nullptr;
}

bool removeText(zorCollide::Geometry const* geometry, osg::Group* root, size_t index) {
  Text* label = findLabel(geometry, root, index);
  return label && label->getParent(0)->removeChild(label);
}

} // namespace zorOSG
