#pragma once

#include <osgViewer/GraphicsWindow>

#include <string>

namespace zorOSG {

/// An OpenGL context that somebody else has made, and makes current.
class HostContext : public osgViewer::GraphicsWindowEmbedded {
public:
  /** Stands for the context that is current now. */
  HostContext(int x, int y, int width, int height);

  /** \return what keeps the context that is current from being drawn to; empty if nothing does */
  static std::string findProblem();

  /** Notes the area that is drawn to. */
  void setArea(int x, int y, int width, int height);

  /** \return true if the context is the one that is current */
  bool isHostCurrent() const;

  bool makeCurrentImplementation() override { return isHostCurrent(); }

protected:
  ~HostContext() override = default;

private:
  void const* const m_handle;
};

/// Gives the OpenGL state of a host back when it goes, and tells the scene graph to expect nothing of it.
class HostStateScope {
public:
  explicit HostStateScope(HostContext& context);
  ~HostStateScope();
  HostStateScope(HostStateScope const&) = delete;
  HostStateScope& operator=(HostStateScope const&) = delete;

private:
  void setBindings(int program, int vertexArray, int unit);

  HostContext& m_context;
  int m_program = 0;
  int m_vertexArray = 0;
  int m_unit = 0;
  int m_matrixMode = 0;
  int m_drawFramebuffer = 0;
  int m_readFramebuffer = 0;
};

} // namespace zorOSG
