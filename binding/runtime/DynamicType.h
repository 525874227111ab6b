#pragma once

#include <string>
#include <typeinfo>

namespace zorBinding {

/**
 * \param className - a class that is no template instance, with its namespace
 * \return the name under which the type registry keeps pointers to it. (Readable names will not do: the entry
 * of a type may come from a module that only knows it as somebody's base.)
 */
std::string pointerTypeName(std::string const& className);

/** As above; the result is kept for the life of the process. Call with the interpreter locked. */
std::string const& pointerTypeName(std::type_info const& type);

} // namespace zorBinding
