#include "HostContext.h"

#include "ContextId.h"

#include <osg/GLExtensions>

#include <EGL/egl.h>
#include <dlfcn.h>

#ifndef GL_CONTEXT_PROFILE_MASK
#define GL_CONTEXT_PROFILE_MASK 0x9126
#endif
#ifndef GL_VERTEX_ARRAY_BINDING
#define GL_VERTEX_ARRAY_BINDING 0x85B5
#endif

namespace zorOSG {

namespace {

constexpr GLint CORE_PROFILE_BIT = 1;

/** The handle of the current context, of whichever kind; null if that cannot be told. */
void const* currentHandle() {
  if (EGLContext const context = eglGetCurrentContext(); context != EGL_NO_CONTEXT)
    return context;
  // Not linked: a process without the X window system has no such function.
  using Function = void* (*)();
  static auto const glx = reinterpret_cast<Function>(dlsym(RTLD_DEFAULT, "glXGetCurrentContext"));
  return glx ? glx() : nullptr;
}

int integer(GLenum name) {
  GLint value = 0;
  glGetIntegerv(name, &value);
  return value;
}

/**
 * Brings every mode that the scene graph knows to its default in OpenGL. Dirtying modes only negates what is
 * believed of them, which is right for those of which it was true: the second round meets all others.
 */
void switchAllModes(osg::State& state) {
  for (int round = 0; round < 2; ++round) {
    state.dirtyAllModes();
    state.apply();
  }
}

} // namespace

HostContext::HostContext(int x, int y, int width, int height)
    : osgViewer::GraphicsWindowEmbedded(x, y, width, height), m_handle(currentHandle()) {
  decrementContextIDUsageCount(getState()->getContextID());
  getState()->setContextID(freshContextId());
}

std::string HostContext::findProblem() {
  if (!glGetString(GL_VERSION))
    return "no OpenGL context is current";
  while (glGetError() != GL_NO_ERROR) {
  } // left by the host
  int const profile = integer(GL_CONTEXT_PROFILE_MASK);
  bool const knowsProfiles = glGetError() == GL_NO_ERROR;
  if (knowsProfiles && (profile & CORE_PROFILE_BIT))
    return "the OpenGL context has the core profile; the compatibility profile is needed";
  return "";
}

void HostContext::setArea(int x, int y, int width, int height) {
  _traits->x = x;
  _traits->y = y;
  _traits->width = width;
  _traits->height = height;
}

bool HostContext::isHostCurrent() const {
  return glGetString(GL_VERSION) && currentHandle() == m_handle;
}

HostStateScope::HostStateScope(HostContext& context) : m_context(context) {
  context.makeCurrent(); // looks up what the driver offers, the first time
  m_program = integer(GL_CURRENT_PROGRAM);
  m_vertexArray = integer(GL_VERTEX_ARRAY_BINDING);
  m_unit = integer(GL_ACTIVE_TEXTURE);
  m_matrixMode = integer(GL_MATRIX_MODE);
  m_drawFramebuffer = integer(GL_DRAW_FRAMEBUFFER_BINDING_EXT);
  m_readFramebuffer = integer(GL_READ_FRAMEBUFFER_BINDING_EXT);
  glPushAttrib(GL_ALL_ATTRIB_BITS);
  glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
  for (GLenum const matrix : {GL_PROJECTION, GL_MODELVIEW}) {
    glMatrixMode(matrix);
    glPushMatrix();
  }
  setBindings(0, 0, GL_TEXTURE0);
  context.setDefaultFboId(static_cast<GLuint>(m_drawFramebuffer));
  osg::State& state = *context.getState();
  state.setActiveTextureUnit(0);
  state.setLastAppliedProgramObject(nullptr);
  state.dirtyAllAttributes();
  state.dirtyAllVertexArrays();
  switchAllModes(state);
}

HostStateScope::~HostStateScope() {
  m_context.getState()->disableAllVertexArrays();
  setBindings(0, 0, GL_TEXTURE0);
  for (GLenum const matrix : {GL_MODELVIEW, GL_PROJECTION}) {
    glMatrixMode(matrix);
    glPopMatrix();
  }
  glPopClientAttrib();
  glPopAttrib();
  glMatrixMode(static_cast<GLenum>(m_matrixMode));
  setBindings(m_program, m_vertexArray, m_unit);
  auto const* const gl = m_context.getState()->get<osg::GLExtensions>();
  if (!gl->glBindFramebuffer)
    return;
  gl->glBindFramebuffer(GL_DRAW_FRAMEBUFFER_EXT, static_cast<GLuint>(m_drawFramebuffer));
  gl->glBindFramebuffer(GL_READ_FRAMEBUFFER_EXT, static_cast<GLuint>(m_readFramebuffer));
}

void HostStateScope::setBindings(int program, int vertexArray, int unit) {
  auto const* const gl = m_context.getState()->get<osg::GLExtensions>();
  if (gl->glUseProgram)
    gl->glUseProgram(static_cast<GLuint>(program));
  if (gl->glBindVertexArray)
    gl->glBindVertexArray(static_cast<GLuint>(vertexArray));
  if (gl->glActiveTexture)
    gl->glActiveTexture(static_cast<GLenum>(unit));
}

} // namespace zorOSG
