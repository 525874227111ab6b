#include <zorOSG/Texture2D.h>

namespace zorOSG {

Texture2D::Texture2D(osg::Texture2D* texture) : m_texture(texture) {}

Texture2D::~Texture2D() = default;

osg::Texture2D* Texture2D::getTexture() { return m_texture.get(); }

} // namespace zorOSG
