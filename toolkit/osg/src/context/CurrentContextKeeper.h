#pragma once

#include <EGL/egl.h>

namespace zorOSG {

/** Puts back whatever context was current, so that looking at another one disturbs no frame under way. */
class CurrentContextKeeper {
public:
  CurrentContextKeeper()
      : m_display(eglGetCurrentDisplay()), m_draw(eglGetCurrentSurface(EGL_DRAW)),
        m_read(eglGetCurrentSurface(EGL_READ)), m_context(eglGetCurrentContext()) {}
  ~CurrentContextKeeper() {
    if (m_context != EGL_NO_CONTEXT)
      eglMakeCurrent(m_display, m_draw, m_read, m_context);
  }
  CurrentContextKeeper(CurrentContextKeeper const&) = delete;
  CurrentContextKeeper& operator=(CurrentContextKeeper const&) = delete;

private:
  EGLDisplay m_display;
  EGLSurface m_draw;
  EGLSurface m_read;
  EGLContext m_context;
};

} // namespace zorOSG
