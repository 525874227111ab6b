#include "EglContext.h"

#include "ContextId.h"
#include "CurrentContextKeeper.h"
#include "SoftwareRenderer.h"

#include <osg/GL>
#include <osg/Notify>
#include <osg/State>

#include <array>
#include <stdexcept>
#include <vector>

namespace zorOSG {

namespace {

constexpr int MAX_SIZE = 16384;

void checkSize(int width, int height) {
  if (width < 1 || height < 1 || width > MAX_SIZE || height > MAX_SIZE)
    throw std::invalid_argument("Off-screen context of " + std::to_string(width) + " x " +
                                std::to_string(height) + " pixels: each side must be 1 to " +
                                std::to_string(MAX_SIZE));
}

EGLint attribute(EGLDisplay display, EGLConfig config, EGLint name) {
  EGLint value = 0;
  eglGetConfigAttrib(display, config, name, &value);
  return value;
}

} // namespace

EglContext::EglContext(osg::GraphicsContext::Traits* traits) {
  if (!traits)
    throw std::invalid_argument("Off-screen context: no traits given");
  checkSize(traits->width, traits->height);
  _traits = traits;
  EglContext* const shared = sharedContext();
  m_display = EglDisplay::open();
  try {
    openWithMostSamples();
  } catch (...) {
    destroy();
    throw;
  }
  setState(new osg::State);
  getState()->setGraphicsContext(this);
  if (shared) {
    getState()->setContextID(shared->getState()->getContextID());
    incrementContextIDUsageCount(getState()->getContextID());
  } else {
    getState()->setContextID(freshContextId());
  }
}

EglContext::~EglContext() {
  close(true);
  destroy();
}

bool EglContext::isSameKindAs(osg::Object const* object) const {
  return dynamic_cast<EglContext const*>(object) != nullptr;
}

EglContext* EglContext::sharedContext() const {
  osg::GraphicsContext* const shared = _traits->sharedContext.get();
  auto* const own = dynamic_cast<EglContext*>(shared);
  if (shared && (!own || !own->valid()))
    throw std::invalid_argument(
        "Off-screen context: the context to share with is closed or no off-screen one");
  return own;
}

/** EGL sorts deeper colours first; those would make reading back slow, so an exact match is looked for. */
EGLConfig EglContext::chooseConfig(EGLint samples) const {
  std::array<EGLint, 19> const wanted = {EGL_SURFACE_TYPE,
                                         EGL_PBUFFER_BIT,
                                         EGL_RENDERABLE_TYPE,
                                         EGL_OPENGL_BIT,
                                         EGL_RED_SIZE,
                                         static_cast<EGLint>(_traits->red),
                                         EGL_GREEN_SIZE,
                                         static_cast<EGLint>(_traits->green),
                                         EGL_BLUE_SIZE,
                                         static_cast<EGLint>(_traits->blue),
                                         EGL_ALPHA_SIZE,
                                         static_cast<EGLint>(_traits->alpha),
                                         EGL_DEPTH_SIZE,
                                         static_cast<EGLint>(_traits->depth),
                                         EGL_STENCIL_SIZE,
                                         static_cast<EGLint>(_traits->stencil),
                                         EGL_SAMPLES,
                                         samples,
                                         EGL_NONE};
  EGLint count = 0;
  if (!eglChooseConfig(m_display->get(), wanted.data(), nullptr, 0, &count))
    throw std::runtime_error(getPath() + ": " + eglFailure("eglChooseConfig"));
  if (count == 0)
    return nullptr;
  std::vector<EGLConfig> configs(static_cast<size_t>(count));
  eglChooseConfig(m_display->get(), wanted.data(), configs.data(), count, &count);
  for (EGLConfig const config : configs)
    if (attribute(m_display->get(), config, EGL_RED_SIZE) == static_cast<EGLint>(_traits->red) &&
        attribute(m_display->get(), config, EGL_SAMPLES) == samples)
      return config;
  return configs.front();
}

bool EglContext::open(EGLint samples) {
  m_config = chooseConfig(samples);
  if (!m_config)
    return false;
  m_context = createContext();
  m_surface = createSurface(_traits->width, _traits->height);
  if (samples == 0 || canBeRead())
    return true;
  destroy();
  return false;
}

void EglContext::openWithMostSamples() {
  auto const asked = static_cast<EGLint>(_traits->samples);
  EGLint samples = asked;
  while (!open(samples)) {
    if (samples == 0)
      throw std::runtime_error(getPath() +
                               ": EGL has no pixel buffer with the colour, depth and stencil bits "
                               "asked for");
    samples /= 2;
  }
  if (samples != asked)
    OSG_INFO << getPath() << ": " << samples << " samples per pixel instead of " << asked << std::endl;
  _traits->samples = static_cast<unsigned int>(samples);
  _traits->sampleBuffers = samples > 0 ? 1 : 0;
}

/** Some drivers offer multisampled pixel buffers, but neither resolve them nor let them be read. */
bool EglContext::canBeRead() const {
  CurrentContextKeeper const keeper;
  eglBindAPI(EGL_OPENGL_API);
  if (!eglMakeCurrent(m_display->get(), m_surface, m_surface, m_context))
    return false;
  std::array<GLubyte, 4> pixel{};
  glReadPixels(0, 0, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
  bool const readable = glGetError() == GL_NO_ERROR;
  eglMakeCurrent(m_display->get(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  return readable;
}

EGLContext EglContext::createContext() const {
  EglContext* const shared = sharedContext();
  eglBindAPI(EGL_OPENGL_API);
  EGLContext const context =
      eglCreateContext(m_display->get(), m_config, shared ? shared->m_context : EGL_NO_CONTEXT, nullptr);
  if (context == EGL_NO_CONTEXT)
    throw std::runtime_error(getPath() + ": " + eglFailure("eglCreateContext"));
  return context;
}

EGLSurface EglContext::createSurface(int width, int height) const {
  std::array<EGLint, 5> const size = {EGL_WIDTH, width, EGL_HEIGHT, height, EGL_NONE};
  EGLSurface const surface = eglCreatePbufferSurface(m_display->get(), m_config, size.data());
  if (surface == EGL_NO_SURFACE)
    throw std::runtime_error(getPath() + ": " +
                             eglFailure("eglCreatePbufferSurface of " + std::to_string(width) + " x " +
                                        std::to_string(height) + " pixels"));
  return surface;
}

/** Surface before context before display: the drivers free what a current context still uses only then. */
void EglContext::destroy() {
  if (!m_display)
    return;
  if (m_context != EGL_NO_CONTEXT && eglGetCurrentContext() == m_context)
    eglMakeCurrent(m_display->get(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  if (m_surface != EGL_NO_SURFACE)
    eglDestroySurface(m_display->get(), m_surface);
  if (m_context != EGL_NO_CONTEXT)
    eglDestroyContext(m_display->get(), m_context);
  m_surface = EGL_NO_SURFACE;
  m_context = EGL_NO_CONTEXT;
  m_realized = false;
}

bool EglContext::realizeImplementation() {
  m_realized = valid();
  return m_realized;
}

void EglContext::closeImplementation() {
  destroy();
}

bool EglContext::makeCurrentImplementation() {
  return makeContextCurrentImplementation(this);
}

bool EglContext::makeContextCurrentImplementation(osg::GraphicsContext* readContext) {
  auto const* const read = dynamic_cast<EglContext const*>(readContext);
  if (!m_realized || !read || !read->valid()) {
    OSG_WARN << "Off-screen context: closed or not realized, it cannot be made current" << std::endl;
    return false;
  }
  eglBindAPI(EGL_OPENGL_API);
  if (eglMakeCurrent(m_display->get(), m_surface, read->m_surface, m_context)) {
    if (!m_known)
      keepHeapForSoftwareRenderer();
    m_known = true;
    return true;
  }
  OSG_WARN << getPath() << ": " << eglFailure("eglMakeCurrent") << std::endl;
  return false;
}

bool EglContext::releaseContextImplementation() {
  eglBindAPI(EGL_OPENGL_API);
  return eglMakeCurrent(m_display->get(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT) == EGL_TRUE;
}

void EglContext::bindPBufferToTextureImplementation(GLenum) {
  OSG_WARN << "Off-screen context: pixel buffers cannot be bound as textures, use a frame buffer object"
           << std::endl;
}

/** A pixel buffer has one buffer: nothing to swap, but what was queued must get under way. */
void EglContext::swapBuffersImplementation() {
  if (valid())
    eglSwapBuffers(m_display->get(), m_surface);
}

/** Pixel buffers have a fixed size, so another one takes the place of the present one. */
void EglContext::resizedImplementation(int x, int y, int width, int height) {
  checkSize(width, height);
  bool const same = width == _traits->width && height == _traits->height;
  if (valid() && !same) {
    EGLSurface const surface = createSurface(width, height);
    bool const current = eglGetCurrentContext() == m_context;
    if (current)
      eglMakeCurrent(m_display->get(), surface, surface, m_context);
    eglDestroySurface(m_display->get(), m_surface);
    m_surface = surface;
  }
  osg::GraphicsContext::resizedImplementation(x, y, width, height);
}

} // namespace zorOSG
