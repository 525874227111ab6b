#pragma once

#include <osg/Image>
#include <osg/TextureCubeMap>
#include <osg/ref_ptr>

#include <zor/Vector.h>

namespace zorOSG {

using CubeImages = zor::Vector<osg::ref_ptr<osg::Image>>;

/** A cube map of six images that fit together. \return null if they do not; the log says why */
osg::ref_ptr<osg::TextureCubeMap> makeCubeMap(CubeImages const& images);

} // namespace zorOSG
