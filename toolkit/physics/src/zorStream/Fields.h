#pragma once

#include <cstring>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <LinearMath/btTransform.h>

#include <zor/AffineMatrix4x4.h>
#include <zor/Matrix3x3.h>
#include <zor/RangeReal.h>
#include <zor/Vec2.h>
#include <zor/Vec3.h>
#include <zor/Vec4.h>
#include <zor/Vector.h>
#include <zor/ref_ptr.h>
#include <zorRender/Color.h>

#include "zorStream/ObjectTables.h"

namespace zorStream {

// Fields of the toolkit's types, made of those that an archive knows.

inline void field(Archive& archive, char const* name, bool& value) {
  archive.value(name, value);
}
inline void field(Archive& archive, char const* name, double& value) {
  archive.value(name, value);
}
inline void field(Archive& archive, char const* name, std::string& value) {
  archive.value(name, value);
}
inline void field(Archive& archive, char const* name, std::int64_t& value) {
  archive.value(name, value);
}
inline void field(Archive& archive, char const* name, std::uint64_t& value) {
  archive.value(name, value);
}
void field(Archive& archive, char const* name, float& value);
void field(Archive& archive, char const* name, int& value);
void field(Archive& archive, char const* name, std::uint8_t& value);
void field(Archive& archive, char const* name, std::uint32_t& value);
void field(Archive& archive, char const* name, zor::Vec2& value);
void field(Archive& archive, char const* name, zor::Vec3& value);
void field(Archive& archive, char const* name, zor::Vec4f& value);
void field(Archive& archive, char const* name, zor::Matrix3x3& value);
/** Twelve numbers: rotation or scale row by row, then the translation. All finite. */
void field(Archive& archive, char const* name, zor::AffineMatrix4x4& value);
void field(Archive& archive, char const* name, zor::RangeReal& value);
void field(Archive& archive, char const* name, zorRender::Color& value);
void field(Archive& archive, char const* name, btVector3& value);
/** Numbers as those of an AffineMatrix4x4. */
void field(Archive& archive, char const* name, btTransform& value);

/** Any number of elements. */
template <class Vector>
void listField(Archive& archive, char const* name, Vector& values) {
  std::size_t count = values.size();
  archive.beginList(name, count);
  if (archive.reading())
    values.resize(count);
  for (std::size_t i = 0; i < count; ++i)
    field(archive, nullptr, values[i]);
  archive.endList();
}

/** Any number of plain numbers, packed in binary files. */
template <class Number>
void numbersField(Archive& archive, char const* name, std::vector<Number>& values) {
  std::size_t count = values.size();
  bool const packed = archive.beginNumbers(name, count, sizeof(Number));
  values.resize(count);
  if (packed)
    archive.block(values.data(), count, sizeof(Number));
  else
    for (Number& value : values)
      field(archive, nullptr, value);
  archive.endList();
}

/**
 * One quantity of many rows, packed in binary files. Where it is the same in all rows, it is written once.
 * \param rows - as many as the reader expects
 */
template <class Number, class Row>
void column(Archive& archive, char const* name, Row* rows, std::size_t count) {
  static_assert(std::is_trivially_copyable_v<Row> && sizeof(Row) % sizeof(Number) == 0);
  constexpr std::size_t WIDTH = sizeof(Row) / sizeof(Number);
  std::vector<Number> numbers;
  if (!archive.reading() && count > 0) {
    // Each row equal to the one before it.
    bool const same = std::memcmp(rows, rows + 1, (count - 1) * sizeof(Row)) == 0;
    numbers.resize((same ? 1 : count) * WIDTH);
    std::memcpy(numbers.data(), rows, numbers.size() * sizeof(Number));
  }
  numbersField(archive, name, numbers);
  if (!archive.reading() || (count == 0 && numbers.empty()))
    return;
  bool const once = count > 0 && numbers.size() == WIDTH;
  if (!once && numbers.size() != count * WIDTH)
    archive.fail(name, "has " + std::to_string(numbers.size()) + " numbers, but must have " +
                           std::to_string(count * WIDTH) + ", or " + std::to_string(WIDTH) +
                           " that hold for all");
  for (std::size_t i = 0; i < count; ++i)
    std::memcpy(static_cast<void*>(rows + i), numbers.data() + (once ? 0 : i * WIDTH), sizeof(Row));
}

/** Any number of objects. \param each - called with the archive and an element, inside its object */
template <class Vector, class Each>
void listOfObjects(Archive& archive, char const* name, Vector& values, Each each) {
  std::size_t count = values.size();
  archive.beginList(name, count);
  if (archive.reading())
    values.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    archive.beginObject(nullptr);
    each(values[i]);
    archive.endObject();
  }
  archive.endList();
}

/** Runs what may refuse a value that was read, and adds the place to the message. */
template <class Call>
void checked(Archive& archive, char const* name, Call call) {
  try {
    call();
  } catch (ArchiveError const&) {
    throw;
  } catch (std::logic_error const& error) {
    archive.fail(name, error.what());
  }
}

/** A value that an object has a getter and a setter for. */
template <class Object, class Owner, class Value, class Argument, class Result>
void property(Archive& archive, char const* name, Object& object, Value (Owner::*get)() const,
              Result (Owner::*set)(Argument)) {
  std::remove_cvref_t<Value> value = (object.*get)();
  field(archive, name, value);
  if (archive.reading())
    checked(archive, name, [&] { (object.*set)(value); });
}

/** One of several words. */
template <class Value>
void choice(Archive& archive, char const* name, Value& value,
            std::initializer_list<std::pair<char const*, Value>> const& words) {
  std::string text;
  std::string known;
  for (auto const& [word, meaning] : words) {
    if (value == meaning)
      text = word;
    known += (known.empty() ? "" : ", ") + std::string(word);
  }
  archive.value(name, text);
  for (auto const& [word, meaning] : words)
    if (text == word) {
      value = meaning;
      return;
    }
  archive.fail(name, "is '" + text + "', but must be one of " + known);
}

/** The number of an object; -1 for none. */
template <class T>
void reference(Archive& archive, char const* name, ObjectTable<T> const& table, T*& object,
               bool nullable = false) {
  std::int64_t id = !archive.reading() && object ? static_cast<std::int64_t>(table.idOf(*object)) : -1;
  archive.value(name, id);
  if (!archive.reading())
    return;
  object = id < 0 ? nullptr : table.find(static_cast<std::uint64_t>(id));
  if (!object && !(nullable && id == -1))
    archive.fail(name,
                 "there is no " + std::string(table.noun()) + " " + std::to_string(id) + " before this");
}

/** The numbers of objects. */
template <class T>
void references(Archive& archive, char const* name, ObjectTable<T> const& table, std::vector<T*>& objects) {
  std::size_t count = objects.size();
  archive.beginList(name, count);
  objects.resize(count);
  for (T*& object : objects)
    reference(archive, nullptr, table, object);
  archive.endList();
}

template <class T>
std::vector<T*> pointers(zor::Vector<zor::ref_ptr<T>> const& objects) {
  std::vector<T*> result;
  for (auto const& object : objects)
    result.push_back(object.get());
  return result;
}

/** A table: each object with its number. \param each - describes one object, which it makes when reading */
template <class T, class Each>
void tableField(Archive& archive, char const* name, ObjectTable<T>& table, Each each) {
  std::size_t count = table.objects().size();
  archive.beginList(name, count);
  for (std::size_t i = 0; i < count; ++i) {
    archive.beginObject(nullptr);
    zor::ref_ptr<T> object = archive.reading() ? zor::ref_ptr<T>() : table.objects()[i];
    std::uint64_t id = object ? table.idOf(*object) : 0;
    archive.value("id", id);
    if (archive.reading() && (id > INT64_MAX || table.find(id)))
      archive.fail("id", std::to_string(id) + " is taken by another " + table.noun() + " or out of range");
    each(object);
    if (archive.reading() && !table.insert(id, *object))
      archive.fail("id", "the " + std::string(table.noun()) + " is in the table already");
    archive.endObject();
  }
  archive.endList();
}

} // namespace zorStream
