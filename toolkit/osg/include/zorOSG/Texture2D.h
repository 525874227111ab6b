#pragma once

#include <zor/Referenced.h>

#include <osg/Texture2D>
#include <osg/ref_ptr>

namespace zorOSG {

/** Holds a scene-graph texture in an object counted by the toolkit, so that both families can share it. */
class Texture2D : public zor::Referenced {
public:
  /**
   * \param texture - the texture to hold; one reference is taken. Null makes an empty holder.
   */
  Texture2D(osg::Texture2D* texture);

  /** \return the held texture, borrowed; null if the holder is empty. */
  osg::Texture2D* getTexture();

protected:
  ~Texture2D() override;

private:
  osg::ref_ptr<osg::Texture2D> m_texture;
};

} // namespace zorOSG
