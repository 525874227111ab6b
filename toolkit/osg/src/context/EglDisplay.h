#pragma once

#include <EGL/egl.h>

#include <memory>
#include <string>

namespace zorOSG {

/** \return "failed: EGL_BAD_..." of the last EGL call of this thread */
std::string eglFailure(std::string const& call);

/**
 * The process's connection to EGL without a display server, made on first use and given back with the last
 * context. All contexts are made on one connection, or they could not share objects.
 */
class EglDisplay {
public:
  /**
   * \return the connection, shared with everyone who holds one
   * \throws std::runtime_error that tells what each way to a connection answered
   */
  static std::shared_ptr<EglDisplay> open();

  EglDisplay(EGLDisplay display, std::string path);
  ~EglDisplay();
  EglDisplay(EglDisplay const&) = delete;
  EglDisplay& operator=(EglDisplay const&) = delete;

  EGLDisplay get() const { return m_display; }

  /** \return how the connection was made, for people */
  std::string const& getPath() const { return m_path; }

private:
  EGLDisplay m_display;
  std::string m_path;
};

} // namespace zorOSG
