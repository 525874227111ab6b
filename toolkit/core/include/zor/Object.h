#pragma once

#include <zor/Referenced.h>
#include <zor/Types.h>

namespace zor {

/** Shared object with a name. */
class Object : public Referenced {
public:
  Object() = default;
  /** \param name - name, need not be unique */
  explicit Object(String const& name) : m_name(name) {}

  /** \return the name; need not be unique */
  String const& getName() const { return m_name; }

  /** \param name - the new name; need not be unique */
  void setName(String const& name) { m_name = name; }

protected:
  ~Object() override = default;

private:
  String m_name;
};

} // namespace zor
