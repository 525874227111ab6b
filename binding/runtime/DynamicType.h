#pragma once

#include <string>
#include <typeinfo>

namespace zorBinding {

/**
 * \param type - a class
 * \return readable name of a pointer to it, as the type registry spells it; kept for the life of the process.
 * Call with the interpreter locked.
 */
std::string const& pointerTypeName(std::type_info const& type);

} // namespace zorBinding
