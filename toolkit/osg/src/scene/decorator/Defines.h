#pragma once

#include <osg/StateSet>

#include <string>

namespace zorOSG {

/**
 * Sets or removes a define of a state set, and leaves the state set alone if it has it already: a change
 * makes the scene graph look for another variant of the shader.
 * \param value - the value; null to remove the define
 */
void keepDefine(osg::StateSet& state, std::string const& name, std::string const* value,
                unsigned int flags = osg::StateAttribute::ON);

/** As above for a define without a value. \param flags - ON or OFF, OVERRIDE, PROTECTED; INHERIT removes it
 */
void keepDefine(osg::StateSet& state, std::string const& name, unsigned int flags);

} // namespace zorOSG
