#pragma once

namespace zorStream {

/** Mix-in base of the classes whose objects can be stored in a file and restored. */
class Serializable {
public:
  virtual ~Serializable() = default;

protected:
  Serializable() = default;
  Serializable(Serializable const&) = default;
  Serializable& operator=(Serializable const&) = default;
};

} // namespace zorStream
