#pragma once

#include <string>

#include <osg/Geode>
#include <osg/Image>
#include <osg/ref_ptr>

#include <zor/Vector.h>

namespace zorOSG {

/**
 * Creates a sky: the inside of a sphere around the camera, which goes along with it. It lies behind
 * everything, has no bound, and neither light nor shadows reach it. Transforms above it turn it, but don't
 * move it.
 * \param name - name of the node
 * \param images - six images in the order +x, -x, +y, -y, +z, -z, as createTextureCubeMap takes them
 * \param radius - radius of the sphere (m), more than 0; it matters to the offset, and to views without
 * perspective, where nothing lies beyond it
 * \param offset - how far the sphere lies above the camera, or below it if negative (m): a sphere moved down
 * shows its horizon lower
 * \return a new node; null if the images will not do, and the log says why
 * \throws std::invalid_argument if the radius is not positive, or the radius or offset not finite
 */
osg::Geode* createSkySphere(std::string const& name, zor::Vector<osg::ref_ptr<osg::Image>>& images,
                            float radius, float offset = 0.0f);

} // namespace zorOSG
