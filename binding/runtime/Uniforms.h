#pragma once

#include <string>

#include <osg/Node>

namespace zorOSG {

/**
 * Gives the shaders that draw a node, and what is below it, a number. One of the same name in the node's own
 * state is replaced.
 * \param node - the node
 * \param name - name of the uniform in the shaders
 * \param value - the number
 * \throws std::invalid_argument if the node is null or the name empty
 */
void setUniformFloat(osg::Node* node, std::string const& name, float value);

/**
 * Gives the shaders that draw a node, and what is below it, an integer. One of the same name in the node's
 * own state is replaced.
 * \param node - the node
 * \param name - name of the uniform in the shaders
 * \param value - the integer
 * \throws std::invalid_argument if the node is null or the name empty
 */
void setUniformInt(osg::Node* node, std::string const& name, int value);

} // namespace zorOSG
