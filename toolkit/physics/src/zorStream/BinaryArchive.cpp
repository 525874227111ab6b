#include "zorStream/BinaryArchive.h"

#include <array>
#include <istream>
#include <sstream>
#include <streambuf>

#include <cereal/archives/portable_binary.hpp>

#include "zorStream/Checksum.h"

namespace zorStream {

namespace {

// Not text, and changed by whoever changes line ends.
constexpr std::string_view MAGIC("\x89ZOR\r\n\x1a\n", 8);
constexpr std::size_t VERSION_AT = 8;
constexpr std::size_t LENGTH_AT = 12;
constexpr std::size_t CHECKSUM_AT = 20;
constexpr std::size_t HEADER = 24;

std::string littleEndian(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i)
    text += static_cast<char>((value >> (8 * i)) & 0xFFu);
  return text;
}

std::uint64_t fromLittleEndian(std::string_view bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = bytes.size(); i-- > 0;)
    value = (value << 8) | static_cast<unsigned char>(bytes[i]);
  return value;
}

// Of everything but itself.
std::uint32_t fileChecksum(std::string_view head, std::string_view payload) {
  return checksum(payload, checksum(head));
}

// Calls with the size of a number as a constant, by which the archive puts bytes into order.
template <class Call>
void withSize(std::size_t size, Call call) {
  switch (size) {
  case 1:
    return call(std::integral_constant<std::size_t, 1>());
  case 4:
    return call(std::integral_constant<std::size_t, 4>());
  case 8:
    return call(std::integral_constant<std::size_t, 8>());
  default:
    throw std::logic_error("BinaryArchive: numbers of " + std::to_string(size) + " bytes");
  }
}

std::streamsize signedSize(std::size_t size) {
  return static_cast<std::streamsize>(size);
}

// Reads from memory without a copy.
class MemoryBuffer final : public std::streambuf {
public:
  explicit MemoryBuffer(std::string_view bytes) {
    char* const start = const_cast<char*>(bytes.data()); // the interface of streams; nothing is written
    setg(start, start, start + bytes.size());
  }
  std::size_t position() const { return static_cast<std::size_t>(gptr() - eback()); }
  std::size_t left() const { return static_cast<std::size_t>(egptr() - gptr()); }
};

std::string_view payloadOf(std::string_view file, std::uint32_t newest) {
  if (!BinaryReader::recognises(file))
    throw ArchiveError("is no simulation file: the first bytes are others (byte 0)");
  if (file.size() < HEADER)
    throw ArchiveError("ends inside the header (byte " + std::to_string(file.size()) + ")");
  std::uint64_t const version = fromLittleEndian(file.substr(VERSION_AT, 4));
  if (version > newest || version == 0)
    throw ArchiveError("has format version " + std::to_string(version) + ", but only versions 1 to " +
                       std::to_string(newest) + " are understood (byte 8)");
  std::uint64_t const length = fromLittleEndian(file.substr(LENGTH_AT, 8));
  if (length != file.size() - HEADER)
    throw ArchiveError("should be " + std::to_string(HEADER) + " + " + std::to_string(length) +
                       " bytes long, but has " + std::to_string(file.size()) +
                       ": it is truncated or damaged (byte " + std::to_string(file.size()) + ")");
  std::string_view const payload = file.substr(HEADER);
  if (fromLittleEndian(file.substr(CHECKSUM_AT, 4)) != fileChecksum(file.substr(0, CHECKSUM_AT), payload))
    throw ArchiveError("is damaged: its checksum differs (bytes 0 to " + std::to_string(file.size()) + ")");
  return payload;
}

} // namespace

// --- writing

struct BinaryWriter::Stream {
  std::ostringstream bytes{std::ios::binary};
  cereal::PortableBinaryOutputArchive archive{bytes,
                                              cereal::PortableBinaryOutputArchive::Options::LittleEndian()};
};

BinaryWriter::BinaryWriter(std::uint32_t version)
    : Archive(false, version), m_stream(std::make_unique<Stream>()) {}

BinaryWriter::~BinaryWriter() = default;

std::string BinaryWriter::finish() {
  std::string const payload = m_stream->bytes.str();
  std::string const head = std::string(MAGIC) + littleEndian(version(), 4) + littleEndian(payload.size(), 8);
  return head + littleEndian(fileChecksum(head, payload), 4) + payload;
}

void BinaryWriter::openList(char const*, std::size_t& count, bool fixed) {
  if (!fixed)
    m_stream->archive(static_cast<std::uint64_t>(count));
}

bool BinaryWriter::openNumbers(char const* name, std::size_t& count, std::size_t) {
  openList(name, count, false);
  return true;
}

void BinaryWriter::takeBlock(void* numbers, std::size_t count, std::size_t size) {
  withSize(size, [&](auto bytes) { m_stream->archive.saveBinary<bytes>(numbers, signedSize(count * size)); });
}

bool BinaryWriter::testPresence(char const*, bool present) {
  m_stream->archive(static_cast<std::uint8_t>(present));
  return present;
}

void BinaryWriter::take(char const*, bool& value) {
  m_stream->archive(static_cast<std::uint8_t>(value));
}

void BinaryWriter::take(char const*, std::int64_t& value) {
  m_stream->archive(value);
}

void BinaryWriter::take(char const*, std::uint64_t& value) {
  m_stream->archive(value);
}

void BinaryWriter::take(char const*, double& value) {
  m_stream->archive(value);
}

void BinaryWriter::take(char const*, std::string& value) {
  m_stream->archive(static_cast<std::uint64_t>(value.size()));
  m_stream->archive(cereal::binary_data(value.data(), value.size()));
}

// --- reading

struct BinaryReader::Stream {
  explicit Stream(std::string_view bytes) : buffer(bytes), stream(&buffer), archive(stream) {}
  MemoryBuffer buffer;
  std::istream stream;
  cereal::PortableBinaryInputArchive archive;
};

BinaryReader::BinaryReader(std::string_view file, std::uint32_t newest) : Archive(true, 0) {
  std::string_view const payload = payloadOf(file, newest);
  setVersion(static_cast<std::uint32_t>(fromLittleEndian(file.substr(VERSION_AT, 4))));
  try {
    m_stream = std::make_unique<Stream>(payload);
  } catch (cereal::Exception const&) {
    throw ArchiveError("ends after the header (byte " + std::to_string(file.size()) + ")");
  }
}

BinaryReader::~BinaryReader() = default;

bool BinaryReader::recognises(std::string_view file) {
  return file.substr(0, MAGIC.size()) == MAGIC;
}

void BinaryReader::finish() {
  if (m_stream->buffer.left() > 0)
    fail(nullptr, std::to_string(m_stream->buffer.left()) + " bytes are left after the last field");
}

std::string BinaryReader::position() const {
  return "byte " + std::to_string(HEADER + (m_stream ? m_stream->buffer.position() : 0));
}

template <class T>
void BinaryReader::load(char const* name, T& value) {
  try {
    m_stream->archive(value);
  } catch (cereal::Exception const&) {
    fail(name, "the file ends here");
  }
}

// No count is believed that the rest of the file cannot hold.
std::size_t BinaryReader::loadCount(char const* name, std::size_t size) {
  std::uint64_t count = 0;
  load(name, count);
  if (count > m_stream->buffer.left() / size)
    fail(name, "has " + std::to_string(count) + " elements, more than the file has bytes");
  return static_cast<std::size_t>(count);
}

void BinaryReader::openList(char const* name, std::size_t& count, bool fixed) {
  if (!fixed)
    count = loadCount(name);
}

bool BinaryReader::openNumbers(char const* name, std::size_t& count, std::size_t size) {
  count = loadCount(name, size);
  return true;
}

void BinaryReader::takeBlock(void* numbers, std::size_t count, std::size_t size) {
  withSize(size, [&](auto bytes) { m_stream->archive.loadBinary<bytes>(numbers, signedSize(count * size)); });
}

bool BinaryReader::testPresence(char const* name, bool) {
  bool present = false;
  take(name, present);
  return present;
}

void BinaryReader::take(char const* name, bool& value) {
  std::uint8_t byte = 0;
  load(name, byte);
  if (byte > 1)
    fail(name, "is " + std::to_string(byte) + ", but must be 0 or 1");
  value = byte != 0;
}

void BinaryReader::take(char const* name, std::int64_t& value) {
  load(name, value);
}

void BinaryReader::take(char const* name, std::uint64_t& value) {
  load(name, value);
}

void BinaryReader::take(char const* name, double& value) {
  load(name, value);
}

void BinaryReader::take(char const* name, std::string& value) {
  value.resize(loadCount(name));
  auto data = cereal::binary_data(value.data(), value.size());
  load(name, data);
}

} // namespace zorStream
