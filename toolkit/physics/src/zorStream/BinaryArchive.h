#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "zorStream/Archive.h"

namespace zorStream {

/**
 * Writes fields one after the other without names, after a header with version, length and checksum.
 * `finish` gives the whole file.
 */
class BinaryWriter final : public Archive {
public:
  explicit BinaryWriter(std::uint32_t version);
  ~BinaryWriter() override;

  std::string finish();

protected:
  void openObject(char const*) override {}
  void closeObject() override {}
  void openList(char const* name, std::size_t& count, bool fixed) override;
  bool openNumbers(char const* name, std::size_t& count, std::size_t size) override;
  void takeBlock(void* numbers, std::size_t count, std::size_t size) override;
  void closeList() override {}
  bool testPresence(char const* name, bool present) override;
  void take(char const* name, bool& value) override;
  void take(char const* name, std::int64_t& value) override;
  void take(char const* name, std::uint64_t& value) override;
  void take(char const* name, double& value) override;
  void take(char const* name, std::string& value) override;

private:
  struct Stream;
  std::unique_ptr<Stream> m_stream;
};

/** Reads what BinaryWriter has written. Checks header and checksum first, and each length against what is
 * left. */
class BinaryReader final : public Archive {
public:
  /** \param file - the whole file, must outlive the reader \param newest - the newest version that is
   * understood */
  BinaryReader(std::string_view file, std::uint32_t newest);
  ~BinaryReader() override;

  /** \return true if a file starts like one of this kind */
  static bool recognises(std::string_view file);

  /** Call after the last field: refuses a file that goes on. */
  void finish();

protected:
  void openObject(char const*) override {}
  void closeObject() override {}
  void openList(char const* name, std::size_t& count, bool fixed) override;
  bool openNumbers(char const* name, std::size_t& count, std::size_t size) override;
  void takeBlock(void* numbers, std::size_t count, std::size_t size) override;
  void closeList() override {}
  bool testPresence(char const* name, bool present) override;
  void take(char const* name, bool& value) override;
  void take(char const* name, std::int64_t& value) override;
  void take(char const* name, std::uint64_t& value) override;
  void take(char const* name, double& value) override;
  void take(char const* name, std::string& value) override;
  std::string position() const override;

private:
  struct Stream;
  template <class T>
  void load(char const* name, T& value);
  std::size_t loadCount(char const* name, std::size_t size = 1);

  std::unique_ptr<Stream> m_stream;
};

} // namespace zorStream
