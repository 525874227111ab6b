#include "runtime/DynamicType.h"

#include <cstdlib>
#include <cxxabi.h>
#include <memory>
#include <typeindex>
#include <unordered_map>

namespace zorBinding {

std::string pointerTypeName(std::string const& className) {
  std::string encoded = "_p_" + className;
  for (std::size_t at = 0; (at = encoded.find("::", at)) != std::string::npos;) {
    encoded.replace(at, 2, "__");
  }
  return encoded;
}

std::string const& pointerTypeName(std::type_info const& type) {
  static std::unordered_map<std::type_index, std::string> names;
  auto const [place, isNew] = names.try_emplace(type);
  if (isNew) {
    std::unique_ptr<char, decltype(&std::free)> const name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, nullptr), &std::free);
    place->second = pointerTypeName(std::string(name ? name.get() : type.name()));
  }
  return place->second;
}

} // namespace zorBinding
