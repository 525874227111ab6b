#include <Python.h>

#include "runtime/VectorWatch.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <unordered_map>
#include <utility>

namespace zorBinding {

namespace {

std::size_t const ROOM = 16; // elements of a vector to note before looking for dead ones

struct Record {
  std::vector<ElementHandle> elements; // each holds a reference
  std::size_t limit = ROOM;
  int exports = 0;
};

// All access is under the interpreter lock. Never destroyed: it holds Python objects.
std::unordered_map<void const*, Record>& records() {
  static auto& all = *new std::unordered_map<void const*, Record>();
  return all;
}

Record* findRecord(void const* vector) {
  auto& all = records();
  if (all.empty()) {
    return nullptr;
  }
  auto const found = all.find(vector);
  return found == all.end() ? nullptr : &found->second;
}

// Drops the objects that nobody else holds. Their death runs no Python code: they own nothing.
void dropDead(Record& record) {
  std::erase_if(record.elements, [](ElementHandle const& element) {
    if (Py_REFCNT(element.object) > 1) {
      return false;
    }
    Py_DECREF(element.object);
    return true;
  });
  record.limit = std::max(ROOM, 2 * record.elements.size());
}

void refuseIfShown(Record const& record) {
  if (record.exports > 0) {
    PyErr_SetString(PyExc_BufferError, "a buffer of this vector is in use: it can't be resized");
    throw std::runtime_error("the Python error says what is wrong");
  }
}

struct RawMemory {
  void operator()(void* memory) const { ::operator delete(memory); }
};

} // namespace

struct StorageChange::Position {
  ElementHandle element; // with the record's reference
  std::size_t index = 0;
  std::unique_ptr<void, RawMemory> copy; // made beforehand, so that following the storage can't fail
};

void watchElement(void const* vector, ElementHandle const& element) {
  Record& record = records()[vector];
  if (record.elements.size() >= record.limit) {
    dropDead(record);
  }
  record.elements.push_back(element);
  Py_INCREF(element.object);
}

void const* vectorOfElement(PyObject const* object) {
  for (auto const& [vector, record] : records()) {
    if (std::ranges::find(record.elements, object, &ElementHandle::object) != record.elements.end()) {
      return vector;
    }
  }
  return nullptr;
}

void beginExport(void const* vector) {
  if (vector) {
    ++records()[vector].exports;
  }
}

void endExport(void const* vector) {
  Record* record = findRecord(vector);
  if (record && --record->exports == 0 && record->elements.empty()) {
    records().erase(vector);
  }
}

void refuseIfShown(void const* vector) {
  if (Record const* record = findRecord(vector)) {
    refuseIfShown(*record);
  }
}

void releaseElements(void const* vector, VectorStorage const& storage) {
  if (findRecord(vector)) {
    StorageChange(vector, storage).finish({});
    records().erase(vector);
  }
}

StorageChange::StorageChange(void const* vector, VectorStorage const& before) : m_vector(vector) {
  Record* record = findRecord(vector);
  if (!record) {
    return;
  }
  refuseIfShown(*record);
  dropDead(*record);
  m_positions.reserve(record->elements.size());
  for (ElementHandle const& element : record->elements) {
    auto const* place = static_cast<char const*>(*element.pointer);
    std::unique_ptr<void, RawMemory> copy(::operator new(before.itemSize));
    std::memcpy(copy.get(), place, before.itemSize);
    m_positions.push_back(
        {element, static_cast<std::size_t>(place - before.data) / before.itemSize, std::move(copy)});
  }
  record->elements.clear(); // keeps the room that finish() needs
}

StorageChange::~StorageChange() = default;

void StorageChange::finish(VectorStorage const& after) noexcept {
  for (Position& position : m_positions) {
    ElementHandle const& element = position.element;
    if (position.index < after.size) {
      *element.pointer = after.data + position.index * after.itemSize;
      findRecord(m_vector)->elements.push_back(element);
    } else {
      *element.pointer = position.copy.release();
      *element.own |= 1;
      Py_DECREF(element.object);
    }
  }
}

} // namespace zorBinding
