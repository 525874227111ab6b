#include "FrameHooks.h"

#include "FollowingCamera.h"
#include "context/Extensions.h"

#include <zor/Notify.h>

#include <osg/GraphicsThread>
#include <osg/RenderInfo>
#include <osg/State>

#include <algorithm>
#include <atomic>
#include <exception>
#include <utility>

namespace zorOSG {

namespace {

/** Said once: what is asked for by default is more than some drivers have. */
void tellOfFewerSamples(unsigned int wanted) {
  static std::atomic<bool> told = false;
  GLint most = 0;
  glGetIntegerv(GL_MAX_SAMPLES_EXT, &most);
  if (static_cast<int>(wanted) > most && !told.exchange(true))
    zor::notify(zor::Notify::NOTIFY_INFO)
        << "render targets have " << most << " samples per pixel instead of " << wanted
        << ": the graphics driver has no more" << zor::endMessage;
}

} // namespace

/** Runs when the frame is complete: the pixels of a target stay in its buffer until the next one. */
class RenderTarget::FrameHooks::End : public osg::GraphicsOperation {
public:
  explicit End(FrameHooks* hooks)
      : osg::Referenced(true), osg::GraphicsOperation("render target", false), m_hooks(hooks) {}

  void operator()(osg::GraphicsContext* context) override { m_hooks->complete(*context->getState()); }

private:
  osg::ref_ptr<FrameHooks> m_hooks;
};

/** Runs before the buffers are set up. */
class RenderTarget::FrameHooks::Begin : public osg::Camera::DrawCallback {
public:
  explicit Begin(FrameHooks* hooks) : m_hooks(hooks), m_end(new End(hooks)) {}

  void operator()(osg::RenderInfo& renderInfo) const override {
    supportedExtensions(renderInfo);
    if (!m_hooks->target)
      return;
    if (!std::exchange(m_hasBegun, true))
      tellOfFewerSamples(m_hooks->target->m_multiSamples);
    if (auto* const context = renderInfo.getState()->getGraphicsContext())
      context->add(m_end);
  }

private:
  osg::ref_ptr<FrameHooks> m_hooks;
  osg::ref_ptr<End> m_end;
  mutable bool m_hasBegun = false;
};

class RenderTarget::FrameHooks::PreRender : public osg::Camera::DrawCallback {
public:
  void add(osg::Camera::DrawCallback* callback) {
    if (std::find(m_callbacks.begin(), m_callbacks.end(), callback) == m_callbacks.end())
      m_callbacks.emplace_back(callback);
  }

  void operator()(osg::RenderInfo& renderInfo) const override {
    auto const callbacks = m_callbacks; // one of them may add another
    for (auto const& callback : callbacks)
      callback->run(renderInfo);
  }

private:
  std::vector<osg::ref_ptr<osg::Camera::DrawCallback>> m_callbacks;
};

class RenderTarget::FrameHooks::Drawn : public osg::Camera::DrawCallback {
public:
  explicit Drawn(FrameHooks* hooks) : m_hooks(hooks) {}
  void operator()(osg::RenderInfo& renderInfo) const override { m_hooks->drawn(renderInfo); }

private:
  osg::ref_ptr<FrameHooks> m_hooks;
};

void RenderTarget::FrameHooks::install(osg::Camera& camera) {
  camera.setInitialDrawCallback(new Begin(this));
  camera.setFinalDrawCallback(new Drawn(this));
}

void RenderTarget::FrameHooks::addPreRender(osg::Camera& camera, osg::Camera::DrawCallback* callback) {
  osg::ref_ptr<PreRender> list;
  if (!m_preRender.lock(list) || camera.getPreDrawCallback() != list) {
    list = new PreRender;
    if (camera.getPreDrawCallback())
      list->add(camera.getPreDrawCallback());
    camera.setPreDrawCallback(list);
    m_preRender = list;
  }
  list->add(callback);
}

void RenderTarget::FrameHooks::drawn(osg::RenderInfo& renderInfo) const {
  osg::State* const state = renderInfo.getState();
  if (!target || !state || renderInfo.getCurrentCamera() != target->m_camera)
    return;
  call(&RenderTarget::targetDrawn, *state);
  m_isDrawn = true;
  if (!state->getGraphicsContext()) // nobody else tells when the frame is complete
    complete(*state);
}

void RenderTarget::FrameHooks::complete(osg::State& state) const {
  if (!std::exchange(m_isDrawn, false)) // somebody has put another callback in the place of ours
    call(&RenderTarget::targetDrawn, state);
  call(&RenderTarget::frameDrawn, state);
}

/** Drawing has nobody to throw to. */
void RenderTarget::FrameHooks::call(void (RenderTarget::*stage)(osg::State&), osg::State& state) const {
  if (!target)
    return;
  try {
    target->m_camera->keepProjection();
    (target->*stage)(state);
  } catch (std::exception const& error) {
    zor::notify(zor::Notify::NOTIFY_ERROR) << "render target: " << error.what() << zor::endMessage;
  }
}

} // namespace zorOSG
