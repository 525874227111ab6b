#pragma once

#include <string>

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Group>
#include <osg/MatrixTransform>
#include <osgText/Text>

#include <zor/AffineMatrix4x4.h>
#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vec4.h>
#include <zorCollide/Geometry.h>
#include <zorOSG/TextFunctions.h>
#include <zorRender/Color.h>

namespace zorOSG {

/**
 * Creates a grid of lines.
 * \param resU - cells along the first axis, 1 to 10000, else std::invalid_argument
 * \param resV - cells along the second axis, 1 to 10000, else std::invalid_argument
 * \param origin - a corner of the grid (m)
 * \param axisU - from the corner to the end of the first side (m)
 * \param axisV - from the corner to the end of the second side (m)
 * \param filled - true for filled cells in place of lines
 * \return a new drawable
 */
osg::Geometry* createGrid(unsigned int resU, unsigned int resV, osg::Vec3 const& origin,
                          osg::Vec3 const& axisU, osg::Vec3 const& axisV, bool filled = false);

/**
 * Creates a grid of lines under a group.
 * \param resU - cells along the first axis, 1 to 10000, else std::invalid_argument
 * \param resV - cells along the second axis, 1 to 10000, else std::invalid_argument
 * \param origin - a corner of the grid (m)
 * \param axisU - from the corner to the end of the first side (m)
 * \param axisV - from the corner to the end of the second side (m)
 * \param root - the group that gets and owns the node; null throws std::invalid_argument
 * \return the new node, owned by root
 */
osg::Geode* createGrid(unsigned int resU, unsigned int resV, zor::Vec3 const& origin, zor::Vec3 const& axisU,
                       zor::Vec3 const& axisV, osg::Group* root);

/**
 * Creates a grid of lines that fills a box, or what the three axes make of one.
 * \param resU - cells along the first axis, 1 to 200, else std::invalid_argument
 * \param resV - cells along the second axis, 1 to 200, else std::invalid_argument
 * \param resW - cells along the third axis, 1 to 200, else std::invalid_argument
 * \param origin - a corner of the grid (m)
 * \param axisU - from the corner to the end of the first side (m)
 * \param axisV - from the corner to the end of the second side (m)
 * \param axisW - from the corner to the end of the third side (m)
 * \param lineWidth - width of the lines (pixels); must be positive, else std::invalid_argument
 * \return a new drawable
 */
osg::Geometry* create3DGrid(unsigned int resU, unsigned int resV, unsigned int resW, osg::Vec3 const& origin,
                            osg::Vec3 const& axisU, osg::Vec3 const& axisV, osg::Vec3 const& axisW,
                            float lineWidth);

/**
 * Creates a grid of lines that fills a box, or what the three axes make of one, under a group.
 * \param resU - cells along the first axis, 1 to 200, else std::invalid_argument
 * \param resV - cells along the second axis, 1 to 200, else std::invalid_argument
 * \param resW - cells along the third axis, 1 to 200, else std::invalid_argument
 * \param origin - a corner of the grid (m)
 * \param axisU - from the corner to the end of the first side (m)
 * \param axisV - from the corner to the end of the second side (m)
 * \param axisW - from the corner to the end of the third side (m)
 * \param lineWidth - width of the lines (pixels); must be positive, else std::invalid_argument
 * \param root - the group that gets and owns the node; null throws std::invalid_argument
 * \return the new node, owned by root
 */
osg::Geode* create3DGrid(unsigned int resU, unsigned int resV, unsigned int resW, zor::Vec3 const& origin,
                         zor::Vec3 const& axisU, zor::Vec3 const& axisV, zor::Vec3 const& axisW,
                         float lineWidth, osg::Group* root);

/**
 * Creates the edges of a cuboid as line segments.
 * \param position - centre (m)
 * \param boxHalfVec3 - half of each side (m)
 * \param color - colour of the lines
 * \param lineWidth - width (pixels); must be positive, else std::invalid_argument
 * \return a new node
 */
osg::Geode* createCubeLines(zor::Vec3 const& position, zor::Vec3 const& boxHalfVec3,
                            zorRender::Color const& color = zorRender::Color(138.0f / 255.0f, 43.0f / 255.0f,
                                                                             226.0f / 255.0f, 1.0f),
                            zor::Real lineWidth = 2.0);

/**
 * Creates a line between two points. It is drawn as a dot at least, however far away.
 * \param p1 - first point (m)
 * \param p2 - second point (m)
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param width - width (pixels); must be positive, else std::invalid_argument
 * \return a new node
 */
osg::Geode* createLine(zor::Vec3 const& p1, zor::Vec3 const& p2, zor::Vec4 const& color, float width);

/**
 * Creates a line through several points. It is drawn as a dot at least, however far away.
 * \param points - at least two points (m), else std::invalid_argument
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param width - width (pixels); must be positive, else std::invalid_argument
 * \return a new node
 */
osg::Geode* createPolyline(zor::Vec3Vector const& points, zor::Vec4 const& color, float width);

/**
 * Creates a sphere.
 * \param center - its centre (m)
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param radius - its radius (m); must be positive, else std::invalid_argument
 * \return a new node
 */
osg::Geode* createSphere(zor::Vec3 const& center, zor::Vec4 const& color, float radius);

/**
 * Creates a cylinder along the y axis.
 * \param transform - its placement
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param radius - its radius (m); must be positive, else std::invalid_argument
 * \param height - its height (m); must be positive, else std::invalid_argument
 * \return a new node
 */
osg::MatrixTransform* createCylinder(zor::AffineMatrix4x4 const& transform, zor::Vec4 const& color,
                                     float radius, float height);

} // namespace zorOSG
