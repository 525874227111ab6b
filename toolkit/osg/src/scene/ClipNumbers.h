#pragma once

#include <bitset>
#include <mutex>

namespace zorOSG {

/**
 * The numbers of the planes that graphics drivers offer. Those of one picture share them even where they are
 * not nested, so a number belongs to one plane.
 */
class ClipNumbers {
public:
  static constexpr unsigned int COUNT = 8;

  static ClipNumbers& instance();

  /** Throws std::runtime_error if all are taken. */
  unsigned int take();
  void giveBack(unsigned int number);

  /** \return true if there is a plane that cuts */
  bool areAnyTaken() const;

private:
  mutable std::mutex m_mutex;
  std::bitset<COUNT> m_taken;
};

} // namespace zorOSG
