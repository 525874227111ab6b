#pragma once

#include <zor/DeleteHandler.h>
#include <zor/Referenced.h>
#include <zor/Types.h>
#include <zor/Vec2.h>
#include <zor/Vec3.h>
#include <zor/Vector.h>

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <stdexcept>
#include <string>
#include <vector>

/** Every kind of parameter and result that the modules know, for the tests of the binding's conventions. */
namespace probe {

// Scalars.

enum Mode { OFF = 0, ON = 5 };

inline bool passBool(bool value) {
  return value;
}
inline int passInt(int value) {
  return value;
}
inline unsigned int passUnsigned(unsigned int value) {
  return value;
}
inline std::ptrdiff_t passDifference(std::ptrdiff_t value) {
  return value;
}
inline std::size_t passSize(std::size_t value) {
  return value;
}
inline zor::UInt passUInt(zor::UInt value) {
  return value;
}
inline Mode passMode(Mode value) {
  return value;
}
inline float passFloat(float value) {
  return value;
}
inline double passDouble(double value) {
  return value;
}
inline zor::Real passReal(zor::Real value) {
  return value;
}

/** \return first + second; several arguments show which one is named first */
inline double add(int first, double second) {
  return first + second;
}

// Text.

inline std::string passText(std::string value) {
  return value;
}
inline std::string const& passTextReference(std::string const& value) {
  static std::string kept;
  kept = value;
  return kept;
}
inline char const* passCharacters(char const* value) {
  static std::string kept;
  kept = value ? value : "";
  return value ? kept.c_str() : nullptr;
}
inline zor::String passPath(zor::String const& path) {
  return path;
}

/** \return text that is not UTF-8 */
inline std::string undecodable() {
  return "caf\xe9 \xff";
}

/** \return null */
inline char const* noCharacters() {
  return nullptr;
}

// Classes, one of which has its second base at another address.

class First {
public:
  First() = default;
  virtual ~First() = default;

  int first = 1;
};

class Second {
public:
  Second() = default;
  virtual ~Second() = default;

  int second = 2;
};

class Both : public First, public Second {};

inline int firstOf(First const* object) {
  return object ? object->first : -1;
}
inline int secondOf(Second const* object) {
  return object ? object->second : -1;
}
inline int secondOfReference(Second& object) {
  return object.second;
}
inline Second* asSecond(Both* object) {
  return object;
}

/** A value that counts its living copies. */
class Value {
public:
  Value(int number = 0) : number(number) { ++alive; }
  Value(Value const& other) : number(other.number) { ++alive; }
  Value& operator=(Value const&) = default;
  ~Value() { --alive; }

  static int getAlive() { return alive; }

  int number;

private:
  static inline int alive = 0;
};

/** \return a copy with another number, which leaves the caller's alone */
inline Value increment(Value value) {
  ++value.number;
  return value;
}

inline double length(zor::Vec3 const& vector) {
  return vector.length();
}

/** Lends its value. */
class Holder {
public:
  Value* getPointer() { return &m_value; }
  Value& getReference() { return m_value; }
  Value const& getConstReference() const { return m_value; }
  Value getCopy() const { return m_value; }
  Value* getNothing() { return nullptr; }

private:
  Value m_value{7};
};

// Lists.

inline zor::Vec2i passSizeList(zor::Vec2i const& size) {
  return size;
}
inline double sumOfList(zor::RealVector const& numbers) {
  return std::accumulate(numbers.begin(), numbers.end(), 0.0);
}

// Errors.

inline void throwError(std::string const& text) {
  throw std::runtime_error(text);
}
inline void throwNumber() {
  throw 5;
}

// Ownership.

/** Shared; its proxies release through the delete_ of the common base. */
class Counted : public zor::Referenced {
public:
  Counted() { ++alive; }

  static int getAlive() { return alive; }

protected:
  ~Counted() override { --alive; }

private:
  static inline int alive = 0;
};

/** Shared; its proxies release through a delete_ of their own. */
class Released : public Counted {};

/** Keeps what is to be deleted until it is uninstalled. */
class LateDelete : public zor::DeleteHandler {
public:
  LateDelete() { zor::Referenced::setDeleteHandler(this); }
  ~LateDelete() override {
    zor::Referenced::setDeleteHandler(nullptr);
    for (zor::Referenced const* object : m_objects) {
      destroy(object);
    }
  }

  int getCount() const { return static_cast<int>(m_objects.size()); }

  void requestDelete(zor::Referenced const* object) override { m_objects.push_back(object); }

private:
  std::vector<zor::Referenced const*> m_objects;
};

/** Nobody can destroy it. */
class Undestroyable {
public:
  Undestroyable() = default;

private:
  ~Undestroyable() = default;
};

/** Its delete_ raises an error. */
class Reluctant {};

// Overloads, least preferred first.

inline std::string pick(std::string const&) {
  return "string";
}
inline std::string pick(double) {
  return "double";
}
inline std::string pick(float) {
  return "float";
}
inline std::string pick(std::int64_t) {
  return "int64";
}
inline std::string pick(std::uint64_t) {
  return "uint64";
}
inline std::string pick(int) {
  return "int";
}
inline std::string pick(unsigned int) {
  return "unsigned";
}
inline std::string pick(bool) {
  return "bool";
}
inline std::string pick(First const*) {
  return "First";
}
inline std::string pick(Both const*) {
  return "Both";
}

inline std::string pickReference(zor::Vec3 const&, bool) {
  return "Vec3 bool";
}
inline std::string pickReference(First const&, double) {
  return "First double";
}
inline std::string pickReference(zor::Vec3 const&, int, double factor = 2.0) {
  return "Vec3 int " + std::to_string(factor);
}

inline std::string pickScene(std::string const&, int, bool) {
  return "int bool";
}
inline std::string pickScene(std::string const&, bool, float) {
  return "bool float";
}

inline std::string pickMode(Mode mode) {
  return "Mode " + std::to_string(mode);
}
inline std::string pickMode(Second const&) {
  return "Second";
}

inline std::string pickList(double) {
  return "double";
}
inline std::string pickList(zor::Vec2i const& size) {
  return "Vec2i " + std::to_string(size.x());
}
inline std::string pickList(zor::RealVector const& numbers, bool) {
  return "RealVector " + std::to_string(numbers.size());
}

} // namespace probe
