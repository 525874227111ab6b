#include <zorOSG/SkyBox.h>
#include <zorOSG/SkySphere.h>

#include <zorOSG/RenderState.h>

#include "Checks.h"
#include "CubeMaps.h"
#include "SkyDrawable.h"

namespace zorOSG {

namespace {

osg::ref_ptr<osg::Geode> makeSky(osg::Geometry* surface, osg::TextureCubeMap* cube, double offset) {
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(new SkyDrawable(surface, cube, offset));
  geode->setCullingActive(false);
  return geode;
}

} // namespace

SkyBox::SkyBox(std::string const& name, std::string const& imagename, std::string const& filetype,
               double size, float offset) {
  requirePositive("SkyBox", "size", size);
  requireFinite("SkyBox", "offset", offset);
  setName(name);
  osg::ref_ptr<osg::TextureCubeMap> const cube = createTextureCubeMap(imagename, filetype);
  if (cube)
    addChild(makeSky(makeCubeSurface(static_cast<float>(size)), cube, offset));
}

osg::Geode* createSkySphere(std::string const& name, zor::Vector<osg::ref_ptr<osg::Image>>& images,
                            float radius, float offset) {
  requirePositive("createSkySphere", "radius", radius);
  requireFinite("createSkySphere", "offset", offset);
  osg::ref_ptr<osg::TextureCubeMap> const cube = makeCubeMap(images);
  if (!cube)
    return nullptr;
  osg::ref_ptr<osg::Geode> sky = makeSky(makeSphereSurface(radius), cube, offset);
  sky->setName(name);
  return sky.release();
}

} // namespace zorOSG
