#include <zorOSG/RenderState.h>

#include <stdexcept>
#include <string>

#include "Checks.h"
#include "VisualState.h"
#include "shaders/ScenePrograms.h"

namespace zorOSG {

void setEnableLight(bool enable, int lightNum, osg::Node* node) {
  requireGiven("setEnableLight", "node", node);
  if (lightNum < 0 || lightNum >= static_cast<int>(ALL_LIGHTS))
    throw std::invalid_argument("setEnableLight: there is no light " + std::to_string(lightNum) +
                                ", only 0 to " + std::to_string(ALL_LIGHTS - 1));
  auto const number = static_cast<unsigned int>(lightNum);
  auto const value = enable ? osg::StateAttribute::ON : osg::StateAttribute::OFF;
  osg::StateSet& state = ownState(*node);
  state.setMode(GL_LIGHT0 + number, value);
  // The decorator's survey looks after its own lights.
  static std::string const anyKind = std::to_string(static_cast<int>(define::LightKind::ANY));
  if (number >= LIGHT_COUNT)
    state.setDefine(define::light(number), anyKind, value);
}

} // namespace zorOSG
