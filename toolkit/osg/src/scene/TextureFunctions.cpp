#include <zorOSG/RenderState.h>

#include <cstring>
#include <filesystem>
#include <map>
#include <mutex>
#include <stdexcept>
#include <tuple>

#include <osg/observer_ptr>

#include <zorOSG/Lookup.h>

#include "Checks.h"
#include "ImageFile.h"
#include "ResourceFile.h"
#include "TextureRoles.h"

namespace zorOSG {

namespace {

constexpr osg::StateAttribute::OverrideValue protectedOverride =
    osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;

void requireMode(TextureMode mode) {
  if (mode < DIFFUSE_TEXTURE || mode > METALLIC_TEXTURE)
    throw std::invalid_argument("setTexture: no such texture mode: " + std::to_string(mode));
}

void setWrap(osg::Texture2D& texture, bool repeat) {
  osg::Texture::WrapMode const wrap = repeat ? osg::Texture::REPEAT : osg::Texture::CLAMP_TO_EDGE;
  texture.setWrap(osg::Texture::WRAP_S, wrap);
  texture.setWrap(osg::Texture::WRAP_T, wrap);
}

osg::ref_ptr<osg::Texture2D> textureOf(osg::Image* image) {
  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
  texture->setResizeNonPowerOfTwoHint(false);
  texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
  texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  texture->setMaxAnisotropy(8.0f);
  return texture;
}

osg::ref_ptr<osg::Texture2D> readTexture(std::string const& filename) {
  osg::ref_ptr<osg::Image> const image = readImage("Image file", filename);
  return image ? textureOf(image) : nullptr;
}

/** Textures of image files that are in use, so that many visuals share one. */
class FileTextures {
public:
  static FileTextures& instance() {
    static FileTextures textures;
    return textures;
  }

  osg::ref_ptr<osg::Texture2D> get(std::string const& filename, bool repeat) {
    std::error_code missing;
    std::string const path = findResourceFile(filename);
    Key const key(path, std::filesystem::last_write_time(path, missing), repeat);
    std::lock_guard const lock(m_mutex);
    osg::ref_ptr<osg::Texture2D> texture;
    auto const place = m_textures.find(key);
    if (place != m_textures.end() && place->second.lock(texture))
      return texture;
    texture = readTexture(filename);
    std::erase_if(m_textures, [](auto const& entry) { return !entry.second.valid(); });
    if (texture)
      m_textures[key] = texture;
    return texture;
  }

private:
  using Key =
      std::tuple<std::string, std::filesystem::file_time_type, bool>; // a new version is a new texture

  std::mutex m_mutex;
  std::map<Key, osg::observer_ptr<osg::Texture2D>> m_textures;
};

bool setOnNodes(GeometryNodePtrVector const& nodes, osg::Texture2D& texture, TextureMode mode) {
  for (GeometryNode* node : nodes) {
    bindTexture(*node, texture, mode, protectedOverride);
    scaleTexture(*node, mode, 1.0f, 1.0f, protectedOverride);
  }
  return !nodes.empty();
}

osg::ref_ptr<osg::Image> imageOf(zorCollide::TextureData const& data) {
  static constexpr GLenum formats[] = {GL_LUMINANCE, GL_LUMINANCE_ALPHA, GL_RGB, GL_RGBA};
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->allocateImage(static_cast<int>(data.getWidth()), static_cast<int>(data.getHeight()), 1,
                       formats[data.getFormat() - 1], GL_UNSIGNED_BYTE);
  std::memcpy(image->data(), data.getPixels().data(), data.getPixels().size());
  return image;
}

osg::ref_ptr<osg::Texture2D> textureOf(zorCollide::TextureData const& data) {
  return data.getFilename().empty() ? textureOf(imageOf(data)) : readTexture(data.getFilename());
}

} // namespace

bool setTexture(zorCollide::Geometry const* geometry, osg::Group* rootNode, std::string const& imagePath,
                bool repeat, zorOSG::TextureMode mode) {
  requireGiven("setTexture", "geometry", geometry);
  requireGiven("setTexture", "rootNode", rootNode);
  requireMode(mode);
  osg::ref_ptr<osg::Texture2D> const texture = FileTextures::instance().get(imagePath, repeat);
  if (!texture)
    return false;
  setWrap(*texture, repeat);
  return setOnNodes(findGeometryNodes(geometry, rootNode), *texture, mode);
}

bool setTexture(zor::RigidBody const* rigidBody, osg::Group* rootNode, std::string const& imagePath,
                bool repeat, zorOSG::TextureMode mode) {
  requireGiven("setTexture", "rigidBody", rigidBody);
  bool any = false;
  for (auto const& geometry : rigidBody->getGeometries())
    any = setTexture(geometry.get(), rootNode, imagePath, repeat, mode) || any;
  return any;
}

bool setTexture(osg::Node* node, std::string const& imagePath, bool repeat, zorOSG::TextureMode mode,
                float scaleU, float scaleV) {
  requireGiven("setTexture", "node", node);
  return setTexture(node, FileTextures::instance().get(imagePath, repeat).get(), repeat, mode, scaleU,
                    scaleV);
}

bool setTexture(osg::Node* node, zorCollide::TextureDataRef texture, bool repeat, zorOSG::TextureMode mode,
                float scaleU, float scaleV) {
  osg::ref_ptr<osg::Texture2D> const made = texture ? textureOf(*texture) : nullptr;
  return setTexture(node, made.get(), repeat, mode, scaleU, scaleV);
}

bool setTexture(osg::Node* node, osg::Texture2D* texture, bool repeat, zorOSG::TextureMode mode, float scaleU,
                float scaleV) {
  requireGiven("setTexture", "node", node);
  requireMode(mode);
  requireFinite("setTexture", "scaleU", scaleU);
  requireFinite("setTexture", "scaleV", scaleV);
  if (!texture)
    return false;
  setWrap(*texture, repeat);
  bindTexture(*node, *texture, mode, osg::StateAttribute::ON);
  scaleTexture(*node, mode, scaleU, scaleV, osg::StateAttribute::ON);
  return true;
}

bool setTexture(osg::Node* node, zorOSG::Texture2D* texture, bool repeat, zorOSG::TextureMode mode,
                float scaleU, float scaleV) {
  return setTexture(node, texture ? texture->getTexture() : nullptr, repeat, mode, scaleU, scaleV);
}

bool setTexture(zorOSG::GeometryNode* node, zorOSG::Texture2D* texture, bool repeat, zorOSG::TextureMode mode,
                float scaleU, float scaleV) {
  return setTexture(static_cast<osg::Node*>(node), texture, repeat, mode, scaleU, scaleV);
}

osg::Texture2D* createTexture(std::string const& filename) {
  return readTexture(filename).release();
}

osg::Texture2D* createTexture(zorCollide::TextureDataRef data, bool linear) {
  osg::ref_ptr<osg::Texture2D> texture = data ? textureOf(*data) : nullptr;
  if (texture && !linear) {
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::NEAREST);
    texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::NEAREST);
  }
  return texture.release();
}

} // namespace zorOSG
