#include "ShadowTechnique.h"

#include "Defines.h"
#include "shaders/ScenePrograms.h"

#include <array>

namespace zorOSG {

void setShadowDefines(osg::StateSet& state, osg::Light const& light, std::string const& kind) {
  static std::array<std::string, LIGHT_COUNT> const numbers = {"0", "1", "2"};
  keepDefine(state, define::SHADOW, &numbers[static_cast<size_t>(light.getLightNum())]);
  keepDefine(state, define::SHADOW_KIND, &kind);
}

} // namespace zorOSG
