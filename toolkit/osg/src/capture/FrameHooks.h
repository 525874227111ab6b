#pragma once

#include <zorOSG/RenderTarget.h>

#include <vector>

namespace zorOSG {

/** What runs at the stages of a target's frame. Camera and context may outlive the target, which then cuts
 * the tie. */
class RenderTarget::FrameHooks : public osg::Referenced {
public:
  explicit FrameHooks(RenderTarget* owner) : target(owner) {}

  void install(osg::Camera& camera);

  /** Not the camera's own chain: a callback in two of them, or twice in one, would tie them into a ring. */
  void addPreRender(osg::Camera& camera, osg::Camera::DrawCallback* callback);

  void drawn(osg::RenderInfo& renderInfo) const;
  void complete(osg::State& state) const;

  RenderTarget* target;

protected:
  ~FrameHooks() override = default;

private:
  class Begin;
  class PreRender;
  class Drawn;
  class End;

  void call(void (RenderTarget::*stage)(osg::State&), osg::State& state) const;

  osg::observer_ptr<PreRender> m_preRender;
  mutable bool m_isDrawn = false; // callbacks are called as const
};

} // namespace zorOSG
