#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace zorStream {

/** What is wrong with a file, and where in it. */
class ArchiveError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/**
 * A visitor of the fields of stored objects, which writes them or reads them.
 *
 * One function describes the fields of a class for both directions and both kinds of files: it calls the
 * methods here in a fixed order. Names are those of JSON members and of messages; in a list they are null.
 * What a newer version of the format adds stands behind `if (archive.version() >= n)`.
 *
 * Every method throws ArchiveError, with the place, when a reader does not find what it should.
 */
class Archive {
public:
  virtual ~Archive() = default;
  Archive(Archive const&) = delete;
  Archive& operator=(Archive const&) = delete;

  bool reading() const { return m_reading; }
  /** Version of the format that the file has. */
  std::uint32_t version() const { return m_version; }

  void beginObject(char const* name);
  void endObject();
  /** A list of any length. \param count - number of elements to write, or gets the number to read */
  void beginList(char const* name, std::size_t& count);
  /** A list whose length the reader knows. */
  void beginTuple(char const* name, std::size_t count);
  /**
   * A list of any length of plain numbers, which binary files hold as one block.
   * \param size - bytes of a number
   * \return true if the numbers go through `block`, false if they go one by one
   */
  bool beginNumbers(char const* name, std::size_t& count, std::size_t size);
  void block(void* numbers, std::size_t count, std::size_t size) { takeBlock(numbers, count, size); }
  void endList();
  /** \param present - whether the object that may follow is written \return whether it is there */
  bool optional(char const* name, bool present);

  void value(char const* name, bool& value);
  void value(char const* name, std::int64_t& value);
  void value(char const* name, std::uint64_t& value);
  void value(char const* name, double& value);
  void value(char const* name, std::string& value);

  /** Refuses what was read. \param name - the field, or null for the innermost object */
  [[noreturn]] void fail(char const* name, std::string const& what) const;

  /** Where a field is, for messages to come: "bodies[3].mass". */
  std::string placeOf(char const* name) const;

protected:
  Archive(bool reading, std::uint32_t version) : m_reading(reading), m_version(version) {}

  virtual void openObject(char const* name) = 0;
  virtual void closeObject() = 0;
  virtual void openList(char const* name, std::size_t& count, bool fixed) = 0;
  virtual bool openNumbers(char const* name, std::size_t& count, std::size_t) {
    openList(name, count, false);
    return false;
  }
  virtual void takeBlock(void*, std::size_t, std::size_t) {}
  virtual void closeList() = 0;
  virtual bool testPresence(char const* name, bool present) = 0;
  virtual void take(char const* name, bool& value) = 0;
  virtual void take(char const* name, std::int64_t& value) = 0;
  virtual void take(char const* name, std::uint64_t& value) = 0;
  virtual void take(char const* name, double& value) = 0;
  virtual void take(char const* name, std::string& value) = 0;
  /** Where in the file the reader is, for messages, where a path does not say it; may be empty. */
  virtual std::string position() const { return {}; }

  void setVersion(std::uint32_t version) { m_version = version; }

private:
  struct Step {
    char const* name; // null for an element
    bool list;
    std::size_t next; // index of the next element
  };
  void enter(char const* name, bool list);
  void count();
  template <class T>
  void takeNext(char const* name, T& value) {
    take(name, value);
    count();
  }

  bool m_reading;
  std::uint32_t m_version;
  std::vector<Step> m_path;
};

} // namespace zorStream
