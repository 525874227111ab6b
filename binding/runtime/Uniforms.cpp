#include "Uniforms.h"

#include <stdexcept>

#include <osg/StateSet>
#include <osg/Uniform>

#include <zorOSG/SharedState.h>

namespace zorOSG {

namespace {

template <class Number>
void setUniform(char const* function, osg::Node* node, std::string const& name, Number value) {
  if (!node)
    throw std::invalid_argument(std::string(function) + ": node is null");
  if (name.empty())
    throw std::invalid_argument(std::string(function) + ": the name of the uniform is empty");
  unsharedOrNewStateSet(*node).addUniform(new osg::Uniform(name.c_str(), value), osg::StateAttribute::ON);
}

} // namespace

void setUniformFloat(osg::Node* node, std::string const& name, float value) {
  setUniform("setUniformFloat", node, name, value);
}

void setUniformInt(osg::Node* node, std::string const& name, int value) {
  setUniform("setUniformInt", node, name, value);
}

} // namespace zorOSG
