#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "zorStream/Archive.h"

namespace zorStream {

/** Writes fields as members of JSON objects. Numbers keep every bit; what is not finite is written as text.
 */
class JsonWriter final : public Archive {
public:
  explicit JsonWriter(std::uint32_t version);
  ~JsonWriter() override;

  /** \return the whole file */
  std::string finish();

protected:
  void openObject(char const* name) override;
  void closeObject() override;
  void openList(char const* name, std::size_t& count, bool fixed) override;
  void closeList() override;
  bool testPresence(char const*, bool present) override { return present; }
  void take(char const* name, bool& value) override;
  void take(char const* name, std::int64_t& value) override;
  void take(char const* name, std::uint64_t& value) override;
  void take(char const* name, double& value) override;
  void take(char const* name, std::string& value) override;

private:
  struct Stream;
  void writeName(char const* name);
  std::unique_ptr<Stream> m_stream;
};

/** Reads what JsonWriter has written, and strictly: members may come in any order, but must be the right
 * ones. */
class JsonReader final : public Archive {
public:
  /** \param file - the whole file \param newest - the newest version that is understood */
  JsonReader(std::string_view file, std::uint32_t newest);
  ~JsonReader() override;

  /** \return true if a file starts like one of this kind */
  static bool recognises(std::string_view file);

  /** Call after the last field: refuses members that nobody asked for. */
  void finish();

protected:
  void openObject(char const* name) override;
  void closeObject() override;
  void openList(char const* name, std::size_t& count, bool fixed) override;
  void closeList() override;
  bool testPresence(char const* name, bool present) override;
  void take(char const* name, bool& value) override;
  void take(char const* name, std::int64_t& value) override;
  void take(char const* name, std::uint64_t& value) override;
  void take(char const* name, double& value) override;
  void take(char const* name, std::string& value) override;

private:
  struct Document;
  void readVersion(std::uint32_t newest);
  std::unique_ptr<Document> m_document;
};

} // namespace zorStream
