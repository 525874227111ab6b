#pragma once

#include <string>

#include <osg/Geode>
#include <osg/Group>
#include <osgText/Text>

#include <zor/Types.h>
#include <zor/Vec3.h>
#include <zor/Vec4.h>
#include <zorCollide/Geometry.h>
#include <zorOSG/Text.h>

namespace zorOSG {

/**
 * Adds a text that follows a geometry.
 * \param geometry - the geometry, which must have a visual below root
 * \param root - the group to search below
 * \param text - the text (UTF-8)
 * \param relPosition - position relative to the geometry (m)
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param size - height of the letters (m); must be positive, else std::invalid_argument
 * \param alignment - a Text::AxisAlignment value; another throws std::invalid_argument
 * \return false if the geometry has no visual below root
 */
bool addText(zorCollide::Geometry const* geometry, osg::Group* root, std::string const& text,
             zor::Vec3 const& relPosition = zor::Vec3(0.0, 0.0, 0.0),
             zor::Vec4f const& color = zor::Vec4f(1.0f, 1.0f, 0.0f, 1.0f), zor::Real size = 0.2,
             int alignment = zorOSG::Text::SCREEN);

/**
 * Creates a text node that faces the screen. It belongs to no group yet: add it to one.
 * \param text - the text (UTF-8)
 * \param relPosition - position (m)
 * \param color - red, green, blue and alpha, each 0 to 1
 * \param size - height of the letters (m); must be positive, else std::invalid_argument
 * \return a new node
 */
osg::Geode* createText(std::string const& text, zor::Vec3 const& relPosition = zor::Vec3(0.0, 0.0, 0.0),
                       zor::Vec4f const& color = zor::Vec4f(1.0f, 1.0f, 0.0f, 1.0f), zor::Real size = 0.2);

/**
 * Finds a text that was added to a geometry.
 * \param geometry - the geometry
 * \param root - the group to search below
 * \param index - which of the geometry's texts, in order of adding
 * \return the text, or null when absent
 */
osgText::Text* findText(zorCollide::Geometry const* geometry, osg::Group* root, size_t index = 0);

/**
 * Removes a text that was added to a geometry.
 * \param geometry - the geometry
 * \param root - the group to search below
 * \param index - which of the geometry's texts, in order of adding
 * \return false when absent
 */
bool removeText(zorCollide::Geometry const* geometry, osg::Group* root, size_t index = 0);

} // namespace zorOSG
