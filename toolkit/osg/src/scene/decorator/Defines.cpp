#include "Defines.h"

namespace zorOSG {

void keepDefine(osg::StateSet& state, std::string const& name, std::string const* value, unsigned int flags) {
  osg::StateSet::DefinePair const* const present = state.getDefinePair(name);
  if (!value) {
    if (present)
      state.removeDefine(name);
    return;
  }
  if (!present || present->first != *value || present->second != flags)
    state.setDefine(name, *value, flags);
}

void keepDefine(osg::StateSet& state, std::string const& name, unsigned int flags) {
  static std::string const set = "1";
  keepDefine(state, name, (flags & osg::StateAttribute::INHERIT) != 0 ? nullptr : &set, flags);
}

} // namespace zorOSG
