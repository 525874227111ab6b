#pragma once

#include "context/CurrentContextKeeper.h"

#include <osg/GraphicsContext>
#include <osg/ref_ptr>

namespace zorOSG {

/** Makes a graphics context current outside of its frames, and puts back what was current before. */
class ContextScope {
public:
  explicit ContextScope(osg::GraphicsContext* context);
  ~ContextScope();
  ContextScope(ContextScope const&) = delete;
  ContextScope& operator=(ContextScope const&) = delete;

  /** \return false if the context is closed or somebody else's */
  bool isCurrent() const { return m_isCurrent; }

  /** \return true if the context can be made current between frames: it has no thread or host of its own */
  static bool isPossible(osg::GraphicsContext* context);

private:
  CurrentContextKeeper const m_keeper; // first, so that it has the last word
  osg::ref_ptr<osg::GraphicsContext> m_context;
  bool m_wasCurrent;
  bool m_isCurrent;
};

} // namespace zorOSG
