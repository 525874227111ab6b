#include "CubeMaps.h"

#include <array>

#include <osg/StateSet>

#include <zor/Notify.h>
#include <zorOSG/RenderState.h>

#include "Checks.h"
#include "CubeFilter.h"
#include "ImageFile.h"
#include "TextureRoles.h"
#include "VisualState.h"

namespace zorOSG {

namespace {

constexpr std::array<char const*, 6> FACES = {"posx", "negx", "posy", "negy", "posz", "negz"};
constexpr std::array<char const*, 6> DIRECTIONS = {"+x", "-x", "+y", "-y", "+z", "-z"};

/** Pictures go on over the edges of the cube: without it, blurred ones show them. */
constexpr GLenum SEAMLESS = 0x884F; // GL_TEXTURE_CUBE_MAP_SEAMLESS

std::string sizeOf(osg::Image const& image) {
  return std::to_string(image.s()) + " x " + std::to_string(image.t()) + " pixels";
}

/** What keeps an image from being the next side of a cube; empty if nothing does. */
std::string whyUnfit(osg::Image const* image, osg::Image const* first) {
  if (!image || !image->data() || image->s() <= 0 || image->t() <= 0)
    return "has no pixels";
  if (image->s() != image->t())
    return "is not square: " + sizeOf(*image);
  if (image->s() != first->s())
    return "has " + sizeOf(*image) + " where the first has " + sizeOf(*first);
  return {};
}

void logUnfit(std::string const& what) {
  zor::notify(zor::Notify::NOTIFY_ERROR) << "Cube map: " << what << zor::endMessage;
}

/** \param names - what the log calls the images */
bool fitTogether(CubeImages const& images, std::array<std::string, 6> const& names) {
  if (images.size() != names.size()) {
    logUnfit("six images make a cube, not " + std::to_string(images.size()));
    return false;
  }
  for (size_t i = 0; i < images.size(); ++i) {
    std::string const why = whyUnfit(images[i], images[0]);
    if (!why.empty()) {
      logUnfit(names[i] + " " + why);
      return false;
    }
  }
  return true;
}

/** \return the six images of files with one beginning, none if they do not fit or one cannot be read */
CubeImages readFaces(std::string const& beginning, std::string const& filetype) {
  std::string const ending = filetype.empty() || filetype.front() == '.' ? filetype : "." + filetype;
  CubeImages images;
  std::array<std::string, 6> names;
  for (size_t i = 0; i < FACES.size(); ++i) {
    names[i] = beginning + FACES[i] + ending;
    images.push_back(readImage("Cube map image", names[i]));
    if (!images.back())
      return {};
  }
  return fitTogether(images, names) ? images : CubeImages();
}

/** Cube maps begin with the upper row, images of the scene graph with the lower one unless they say so. */
osg::ref_ptr<osg::Image> upperRowFirst(osg::Image& image) {
  if (image.getOrigin() == osg::Image::TOP_LEFT)
    return &image;
  osg::ref_ptr<osg::Image> turned = new osg::Image(image, osg::CopyOp::DEEP_COPY_ALL);
  turned->flipVertical();
  turned->setOrigin(osg::Image::TOP_LEFT);
  return turned;
}

CubeSides sidesOf(CubeImages const& images) {
  CubeSides sides;
  for (size_t i = 0; i < sides.size(); ++i)
    sides[i] = upperRowFirst(*images[i]);
  return sides;
}

osg::ref_ptr<osg::TextureCubeMap> cubeMapOf(CubeSides const& sides) {
  osg::ref_ptr<osg::TextureCubeMap> cube = new osg::TextureCubeMap;
  for (unsigned int i = 0; i < sides.size(); ++i)
    cube->setImage(i, sides[i]);
  for (auto const direction : {osg::Texture::WRAP_S, osg::Texture::WRAP_T, osg::Texture::WRAP_R})
    cube->setWrap(direction, osg::Texture::CLAMP_TO_EDGE);
  cube->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
  cube->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  cube->setResizeNonPowerOfTwoHint(false);
  return cube;
}

std::array<std::string, 6> sideNames() {
  std::array<std::string, 6> names;
  for (size_t i = 0; i < names.size(); ++i)
    names[i] = std::string("the image for ") + DIRECTIONS[i];
  return names;
}

} // namespace

osg::ref_ptr<osg::TextureCubeMap> makeCubeMap(CubeImages const& images) {
  return fitTogether(images, sideNames()) ? cubeMapOf(sidesOf(images)) : nullptr;
}

osg::TextureCubeMap* createTextureCubeMap(zor::Vector<osg::ref_ptr<osg::Image>>& images) {
  return fitTogether(images, sideNames()) ? cubeMapOf(filterCube(sidesOf(images))).release() : nullptr;
}

osg::TextureCubeMap* createTextureCubeMap(std::string const& imagename, std::string const& filetype) {
  CubeImages const images = readFaces(imagename + "_", filetype);
  return images.empty() ? nullptr : cubeMapOf(filterCube(sidesOf(images))).release();
}

bool loadCubeMapImages(std::string const& prefix, std::string const& filetype,
                       zor::Vector<osg::ref_ptr<osg::Image>>& images) {
  images = readFaces(prefix + "_", filetype);
  return !images.empty();
}

bool setCubeMapTexture(osg::Node* node, std::string const& imagePath, std::string const& imageType) {
  requireGiven("setCubeMapTexture", "node", node);
  CubeImages const images = readFaces(imagePath + "/", imageType);
  if (images.empty())
    return false;
  bindTexture(*node, *cubeMapOf(filterCube(sidesOf(images))), CUBEMAP_TEXTURE, osg::StateAttribute::ON);
  ownState(*node).setMode(SEAMLESS, osg::StateAttribute::ON);
  return true;
}

} // namespace zorOSG
