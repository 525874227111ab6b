#include "zorStream/JsonArchive.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace zorStream {

namespace {

constexpr char const* KIND = "zor simulation";
constexpr char const* INFINITE = "Infinity";
constexpr char const* MINUS_INFINITE = "-Infinity";
constexpr char const* UNDEFINED = "NaN";

using Value = rapidjson::Value;

char const* kindOf(Value const& value) {
  switch (value.GetType()) {
  case rapidjson::kNullType:
    return "null";
  case rapidjson::kFalseType:
  case rapidjson::kTrueType:
    return "a truth value";
  case rapidjson::kObjectType:
    return "an object";
  case rapidjson::kArrayType:
    return "a list";
  case rapidjson::kStringType:
    return "a text";
  default:
    return "a number";
  }
}

std::string textOf(Value const& value) {
  return std::string(value.GetString(), value.GetStringLength());
}

} // namespace

// --- writing

struct JsonWriter::Stream {
  rapidjson::StringBuffer text;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> writer{text};
};

JsonWriter::JsonWriter(std::uint32_t version)
    : Archive(false, version), m_stream(std::make_unique<Stream>()) {
  m_stream->writer.SetIndent(' ', 2);
  m_stream->writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
  m_stream->writer.StartObject();
  m_stream->writer.Key("format");
  m_stream->writer.String(KIND);
  m_stream->writer.Key("version");
  m_stream->writer.Uint(version);
}

JsonWriter::~JsonWriter() = default;

std::string JsonWriter::finish() {
  m_stream->writer.EndObject();
  return std::string(m_stream->text.GetString(), m_stream->text.GetSize()) + "\n";
}

void JsonWriter::writeName(char const* name) {
  if (name)
    m_stream->writer.Key(name);
}

void JsonWriter::openObject(char const* name) {
  writeName(name);
  m_stream->writer.StartObject();
}

void JsonWriter::closeObject() {
  m_stream->writer.EndObject();
}

void JsonWriter::openList(char const* name, std::size_t&, bool) {
  writeName(name);
  m_stream->writer.StartArray();
}

void JsonWriter::closeList() {
  m_stream->writer.EndArray();
}

void JsonWriter::take(char const* name, bool& value) {
  writeName(name);
  m_stream->writer.Bool(value);
}

void JsonWriter::take(char const* name, std::int64_t& value) {
  writeName(name);
  m_stream->writer.Int64(value);
}

void JsonWriter::take(char const* name, std::uint64_t& value) {
  writeName(name);
  m_stream->writer.Uint64(value);
}

void JsonWriter::take(char const* name, double& value) {
  writeName(name);
  if (std::isfinite(value))
    m_stream->writer.Double(value);
  else
    m_stream->writer.String(std::isnan(value) ? UNDEFINED : value > 0 ? INFINITE : MINUS_INFINITE);
}

void JsonWriter::take(char const* name, std::string& value) {
  writeName(name);
  m_stream->writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
}

// --- reading

struct JsonReader::Document {
  struct Level {
    Value const* value;
    std::size_t next;               // element of a list
    std::vector<char const*> taken; // members of an object
  };
  rapidjson::Document root;
  std::vector<Level> levels;

  Value const* find(char const* name) {
    Level& level = levels.back();
    if (!name)
      return &(*level.value)[static_cast<rapidjson::SizeType>(level.next)];
    auto const at = level.value->FindMember(name);
    return at == level.value->MemberEnd() ? nullptr : &at->value;
  }

  // The value of a field, which from now on counts as read.
  Value const* next(char const* name) {
    Value const* const found = find(name);
    if (!name)
      ++levels.back().next;
    else if (found)
      levels.back().taken.push_back(name);
    return found;
  }
};

JsonReader::JsonReader(std::string_view file, std::uint32_t newest)
    : Archive(true, 0), m_document(std::make_unique<Document>()) {
  // Iterative: deep nesting must not use up the stack.
  constexpr unsigned flags = rapidjson::kParseFullPrecisionFlag | rapidjson::kParseIterativeFlag;
  rapidjson::Document& root = m_document->root;
  root.Parse<flags>(file.data(), file.size());
  if (root.HasParseError()) {
    std::string_view const before = file.substr(0, root.GetErrorOffset());
    std::size_t const line = 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    throw ArchiveError("is no valid JSON: " + std::string(rapidjson::GetParseError_En(root.GetParseError())) +
                       " (line " + std::to_string(line) + ", byte " + std::to_string(before.size()) + ")");
  }
  if (!root.IsObject())
    throw ArchiveError("is no simulation file: it holds " + std::string(kindOf(root)) + " (byte 0)");
  m_document->levels.push_back({&root, 0, {}});
  readVersion(newest);
}

JsonReader::~JsonReader() = default;

void JsonReader::readVersion(std::uint32_t newest) {
  std::string kind;
  take("format", kind);
  if (kind != KIND)
    fail("format", "is '" + kind + "', but must be '" + KIND + "': this is no simulation file");
  std::uint64_t version = 0;
  take("version", version);
  if (version > newest || version == 0)
    fail("version", "is " + std::to_string(version) + ", but only versions 1 to " + std::to_string(newest) +
                        " are understood");
  setVersion(static_cast<std::uint32_t>(version));
}

bool JsonReader::recognises(std::string_view file) {
  std::size_t const start = file.find_first_not_of(" \t\r\n");
  return start != std::string_view::npos && file[start] == '{';
}

void JsonReader::finish() {
  closeObject();
}

void JsonReader::openObject(char const* name) {
  Value const* const found = m_document->next(name);
  if (!found)
    fail(name, "is missing");
  if (!found->IsObject())
    fail(name, std::string("is ") + kindOf(*found) + ", but must be an object");
  m_document->levels.push_back({found, 0, {}});
}

// Members that nobody asked for are mistakes of whoever edited the file: a misspelt name, one that stands
// twice.
void JsonReader::closeObject() {
  Document::Level const& level = m_document->levels.back();
  std::vector<char const*> taken = level.taken;
  for (auto member = level.value->MemberBegin(); member != level.value->MemberEnd(); ++member) {
    std::string const name = textOf(member->name);
    auto const at = std::find_if(taken.begin(), taken.end(), [&](char const* each) { return name == each; });
    if (at == taken.end())
      fail(nullptr, "member '" + name + "' is unknown here, or stands twice");
    taken.erase(at);
  }
  m_document->levels.pop_back();
}

void JsonReader::openList(char const* name, std::size_t& count, bool) {
  Value const* const found = m_document->next(name);
  if (!found)
    fail(name, "is missing");
  if (!found->IsArray())
    fail(name, std::string("is ") + kindOf(*found) + ", but must be a list");
  count = found->Size();
  m_document->levels.push_back({found, 0, {}});
}

void JsonReader::closeList() {
  m_document->levels.pop_back();
}

bool JsonReader::testPresence(char const* name, bool) {
  return m_document->find(name) != nullptr;
}

void JsonReader::take(char const* name, bool& value) {
  Value const* const found = m_document->next(name);
  if (!found)
    fail(name, "is missing");
  if (!found->IsBool())
    fail(name, std::string("is ") + kindOf(*found) + ", but must be true or false");
  value = found->GetBool();
}

void JsonReader::take(char const* name, std::int64_t& value) {
  Value const* const found = m_document->next(name);
  if (!found)
    fail(name, "is missing");
  if (!found->IsInt64())
    fail(name, std::string("is ") + kindOf(*found) + ", but must be an integer of 64 bits");
  value = found->GetInt64();
}

void JsonReader::take(char const* name, std::uint64_t& value) {
  Value const* const found = m_document->next(name);
  if (!found)
    fail(name, "is missing");
  if (!found->IsUint64())
    fail(name, std::string("is ") + kindOf(*found) + ", but must be an integer, not negative, of 64 bits");
  value = found->GetUint64();
}

void JsonReader::take(char const* name, double& value) {
  Value const* const found = m_document->next(name);
  if (!found)
    fail(name, "is missing");
  std::string const text = found->IsString() ? textOf(*found) : "";
  if (found->IsNumber())
    value = found->GetDouble();
  else if (text == INFINITE || text == MINUS_INFINITE)
    value =
        text == INFINITE ? std::numeric_limits<double>::infinity() : -std::numeric_limits<double>::infinity();
  else if (text == UNDEFINED)
    value = std::numeric_limits<double>::quiet_NaN();
  else
    fail(name, std::string("is ") + kindOf(*found) + ", but must be a number");
}

void JsonReader::take(char const* name, std::string& value) {
  Value const* const found = m_document->next(name);
  if (!found)
    fail(name, "is missing");
  if (!found->IsString())
    fail(name, std::string("is ") + kindOf(*found) + ", but must be a text");
  value = textOf(*found);
}

} // namespace zorStream
