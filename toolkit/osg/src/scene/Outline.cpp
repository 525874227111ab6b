#include <zorOSG/RenderState.h>

#include <stdexcept>
#include <string>

#include "Checks.h"
#include "Convert.h"
#include "OutlineCallback.h"

namespace zorOSG {

namespace {

constexpr float WIDEST = 100.0f;

OutlineCallback* outlineOf(osg::Node const& node) {
  osg::Callback* callback = const_cast<osg::Callback*>(node.getCullCallback());
  for (; callback; callback = callback->getNestedCallback())
    if (auto* const outline = dynamic_cast<OutlineCallback*>(callback))
      return outline;
  return nullptr;
}

} // namespace

bool setEnableOutline(osg::Node* node, bool enabled, zorRender::Color const& color, float width) {
  if (!(width >= 0.0f && width <= WIDEST))
    throw std::invalid_argument("setEnableOutline: width must be 0 to 100 pixels, not " +
                                std::to_string(width));
  for (unsigned int i = 0; i < 4; ++i)
    requireFinite("setEnableOutline", "color", color.get(i));
  if (!node)
    return false;
  // A new one in any case: copies of the node may share the old one.
  if (osg::ref_ptr<OutlineCallback> const old = outlineOf(*node))
    node->removeCullCallback(old);
  if (enabled)
    node->addCullCallback(new OutlineCallback(toOsg(color.asVec4f()), width));
  return enabled;
}

bool getEnableOutline(osg::Node* node) {
  return node && outlineOf(*node);
}

} // namespace zorOSG
