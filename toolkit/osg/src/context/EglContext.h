#pragma once

#include "EglDisplay.h"

#include <osg/GraphicsContext>

#include <memory>
#include <string>

namespace zorOSG {

/** A graphics context that draws into a pixel buffer of EGL and needs no display server. */
class EglContext : public osg::GraphicsContext {
public:
  /**
   * \param traits - size, bits, samples and the context to share objects with; kept
   * \throws std::invalid_argument for a size that cannot be or a context of another kind to share with
   * \throws std::runtime_error if EGL refuses; says what it answered
   */
  explicit EglContext(osg::GraphicsContext::Traits* traits);

  /** \return how the context was reached, for people */
  std::string const& getPath() const { return m_display->getPath(); }

  bool isSameKindAs(osg::Object const* object) const override;
  char const* libraryName() const override { return "zorOSG"; }
  char const* className() const override { return "EglContext"; }

  bool valid() const override { return m_context != EGL_NO_CONTEXT; }
  bool realizeImplementation() override;
  bool isRealizedImplementation() const override { return m_realized; }
  void closeImplementation() override;
  bool makeCurrentImplementation() override;
  bool makeContextCurrentImplementation(osg::GraphicsContext* readContext) override;
  bool releaseContextImplementation() override;
  void bindPBufferToTextureImplementation(GLenum buffer) override;
  void swapBuffersImplementation() override;
  void resizedImplementation(int x, int y, int width, int height) override;

protected:
  ~EglContext() override;

private:
  EglContext* sharedContext() const;
  EGLConfig chooseConfig(EGLint samples) const;
  EGLSurface createSurface(int width, int height) const;
  EGLContext createContext() const;
  bool open(EGLint samples);
  void openWithMostSamples();
  bool canBeRead() const;
  void destroy();

  std::shared_ptr<EglDisplay> m_display;
  EGLConfig m_config = nullptr;
  EGLContext m_context = EGL_NO_CONTEXT;
  EGLSurface m_surface = EGL_NO_SURFACE;
  bool m_realized = false;
  bool m_known = false; // whether its renderer was looked at
};

} // namespace zorOSG
