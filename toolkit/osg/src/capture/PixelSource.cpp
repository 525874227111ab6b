#include "PixelSource.h"

#include "ContextScope.h"
#include "context/SoftwareRenderer.h"

#include <osg/GLExtensions>

#include <cstdlib>
#include <string_view>

namespace zorOSG {

bool hasAsynchronousReadBack(osg::State& state) {
  if (!state.get<osg::GLExtensions>()->isPBOSupported ||
      !ContextScope::isPossible(state.getGraphicsContext()))
    return false;
  char const* const wish = std::getenv("ZOR_READ_BACK");
  if (wish && std::string_view(wish) == "buffer")
    return true;
  // A renderer in main memory gains nothing from a buffer in between: it is one more copy.
  return !(wish && std::string_view(wish) == "direct") && !drawsOnProcessor();
}

void packRows() {
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glPixelStorei(GL_PACK_ROW_LENGTH, 0);
  glPixelStorei(GL_PACK_SKIP_ROWS, 0);
  glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
}

} // namespace zorOSG
