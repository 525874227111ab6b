#pragma once

#include <array>
#include <mutex>

namespace zorOSG {

class ClipPlane;

/**
 * The numbers of the planes that graphics drivers offer. Those of one picture share them even where they are
 * not nested, so a number belongs to one plane. Scripts may change the one that a plane tells, so it is not
 * asked.
 */
class ClipNumbers {
public:
  static constexpr unsigned int COUNT = 8;

  static ClipNumbers& instance();

  /** \param plane - has none yet. Throws std::runtime_error if all are taken. */
  unsigned int take(ClipPlane const& plane);

  /** \param plane - has taken one \return its number, which is free now */
  unsigned int giveBack(ClipPlane const& plane);

  /** \return true if there is a plane that cuts */
  bool areAnyTaken() const;

private:
  mutable std::mutex m_mutex;
  std::array<ClipPlane const*, COUNT> m_owners{}; // null where a number is free
};

} // namespace zorOSG
