#pragma once

namespace zor {

/** Sets a flag for the time of a scope, also when an exception ends it. The flag must outlive the scope. */
class FlagScope {
public:
  /** \param flag - becomes true now, and false when the scope ends */
  explicit FlagScope(bool& flag) : m_flag(flag) { m_flag = true; }
  ~FlagScope() { m_flag = false; }
  FlagScope(FlagScope const&) = delete;
  FlagScope& operator=(FlagScope const&) = delete;

private:
  bool& m_flag;
};

} // namespace zor
