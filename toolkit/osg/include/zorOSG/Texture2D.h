#pragma once

#include <osg/Texture2D>
#include <osg/ref_ptr>

#include <zor/Referenced.h>

namespace zorOSG {

/** Holds a scene-graph texture behind a toolkit reference. */
class Texture2D : public zor::Referenced {
public:
  /**
   * Wraps a texture and keeps it alive.
   * \param texture - the texture; may be null
   */
  explicit Texture2D(osg::Texture2D* texture) : m_texture(texture) {}

  /** \return the texture; it stays owned by this object */
  osg::Texture2D* getTexture() { return m_texture.get(); }

protected:
  ~Texture2D() override = default;

private:
  osg::ref_ptr<osg::Texture2D> m_texture;
};

} // namespace zorOSG
