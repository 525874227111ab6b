#include "ContextScope.h"

#include <osgViewer/GraphicsWindow>

namespace zorOSG {

bool ContextScope::isPossible(osg::GraphicsContext* context) {
  return context && context->isRealized() && !context->getGraphicsThread() &&
         !dynamic_cast<osgViewer::GraphicsWindowEmbedded*>(context);
}

ContextScope::ContextScope(osg::GraphicsContext* context)
    : m_context(context), m_wasCurrent(context && context->isCurrent()),
      m_isCurrent(isPossible(context) && context->makeCurrent()) {}

ContextScope::~ContextScope() {
  if (m_isCurrent && !m_wasCurrent)
    m_context->releaseContext();
}

} // namespace zorOSG
