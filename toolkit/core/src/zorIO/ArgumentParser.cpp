#include <zorIO/ArgumentParser.h>

#include "NearestWord.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace zorIO {

namespace {
struct Declaration {
  CLI::Option* option = nullptr; // owned by the parser
  zor::String defaultValue;
  bool positional = false;
};

[[noreturn]] void throwBadValue(zor::String const& name, zor::String const& value, char const* expected) {
  throw std::invalid_argument("argument \"" + name + "\" must be " + expected + ", not \"" + value + "\"");
}

template <class Number>
Number toNumber(zor::String const& name, zor::String const& value, char const* expected) {
  Number number{};
  char const* first = value.data();
  char const* const last = first + value.size();
  if (first != last && *first == '+') {
    ++first;
  }
  auto const [end, error] = std::from_chars(first, last, number);
  if (error != std::errc() || end != last) {
    throwBadValue(name, value, expected);
  }
  return number;
}
} // namespace

struct ArgumentParser::Impl {
  CLI::App app;
  std::vector<std::string> arguments;
  std::vector<Declaration> declarations;
  bool parsed = false;

  Impl() {
    app.set_help_flag(); // who declares options declares the help flag, too
    app.allow_windows_style_options(false);
  }

  // The parser accepts any name of an option, with or without its dashes.
  Declaration const* lookUp(zor::String const& name) const {
    for (Declaration const& declaration : declarations) {
      if (declaration.option->check_name(name) || declaration.option->check_lname(name) ||
          declaration.option->check_sname(name)) {
        return &declaration;
      }
    }
    return nullptr;
  }

  Declaration const& get(zor::String const& name) const {
    if (Declaration const* found = lookUp(name)) {
      return *found;
    }
    throw std::invalid_argument("no argument \"" + name + "\" has been declared");
  }

  // What is to be read: from behind the program's name up to "--".
  std::vector<std::string> ownArguments() const {
    auto const first = arguments.begin() + (arguments.empty() ? 0 : 1);
    return {first, std::find(first, arguments.end(), "--")};
  }

  // "; did you mean --width?" for the first argument that looks like an option, or nothing.
  zor::String suggestion() const {
    std::vector<std::string> names;
    for (Declaration const& declaration : declarations) {
      for (std::string const& name : declaration.option->get_lnames()) {
        names.push_back("--" + name);
      }
    }
    for (std::string const& argument : app.remaining()) {
      zor::String const name = argument.substr(0, argument.find('='));
      zor::String const meant = name.starts_with("-") ? nearestWord(name, names) : zor::String();
      if (!meant.empty()) {
        return "; did you mean " + meant + "?";
      }
    }
    return {};
  }

  template <class Add>
  CLI::Option* declare(zor::String const& names, bool positional, zor::String const& defaultValue, Add add) {
    parsed = false;
    try {
      CLI::Option* option = add();
      declarations.push_back({option, defaultValue, positional});
      return option;
    } catch (CLI::Error const& e) {
      throw std::invalid_argument("can't declare the argument \"" + names + "\": " + e.what());
    }
  }
};

ArgumentParser::ArgumentParser() : m_impl(std::make_unique<Impl>()) {}

ArgumentParser::ArgumentParser(int argc, char const* const* argv) : ArgumentParser() {
  for (int i = 0; i < argc && argv && argv[i]; ++i) {
    m_impl->arguments.emplace_back(argv[i]);
  }
}

ArgumentParser::ArgumentParser(std::vector<std::string> const& arguments) : ArgumentParser() {
  m_impl->arguments = arguments;
}

ArgumentParser::~ArgumentParser() = default;

void ArgumentParser::setArguments(std::vector<std::string> const& arguments) {
  m_impl->parsed = false;
  m_impl->arguments = arguments;
}

std::vector<std::string> const& ArgumentParser::getArguments() const {
  return m_impl->arguments;
}

zor::String ArgumentParser::getProgramName() const {
  return m_impl->arguments.empty() ? zor::String() : m_impl->arguments.front();
}

void ArgumentParser::setDescription(zor::String const& text) {
  m_impl->app.description(text);
}

void ArgumentParser::addFlag(zor::String const& names, zor::String const& description) {
  m_impl->declare(names, false, {}, [&] { return m_impl->app.add_flag(names, description); });
}

void ArgumentParser::addOption(zor::String const& names, zor::String const& description,
                               zor::String const& defaultValue, zor::String const& valueName) {
  CLI::Option* option =
      m_impl->declare(names, false, defaultValue, [&] { return m_impl->app.add_option(names, description); });
  // One value each time it is given, so that a positional argument may follow.
  option->type_size(1)->expected(1)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  option->allow_extra_args(false)->type_name(valueName)->default_str(defaultValue);
}

void ArgumentParser::addPositional(zor::String const& name, zor::String const& description, bool required,
                                   bool several) {
  if (name.starts_with("-")) {
    throw std::invalid_argument("the name of a positional argument has no dashes, not \"" + name + "\"");
  }
  CLI::Option* option =
      m_impl->declare(name, true, {}, [&] { return m_impl->app.add_option(name, description); });
  option->required(required)->type_name("");
  if (several) {
    option->expected(required ? 1 : 0, CLI::detail::expected_max_vector_size);
  }
}

bool ArgumentParser::isDeclared(zor::String const& name) const {
  return m_impl->lookUp(name) != nullptr;
}

void ArgumentParser::setAllowUnknown(bool allow) {
  m_impl->app.allow_extras(allow);
}

void ArgumentParser::parse() {
  m_impl->parsed = false;
  std::vector<std::string> reversed = m_impl->ownArguments(); // the parser wants the last one first
  std::reverse(reversed.begin(), reversed.end());
  try {
    m_impl->app.parse(std::move(reversed));
  } catch (CLI::Error const& e) {
    bool const unknown = dynamic_cast<CLI::ExtrasError const*>(&e) != nullptr;
    zor::String const reason = e.what() + (unknown ? m_impl->suggestion() : zor::String());
    m_impl->app.clear();
    throw std::invalid_argument("command line: " + reason);
  }
  m_impl->parsed = true;
}

bool ArgumentParser::isParsed() const {
  return m_impl->parsed;
}

bool ArgumentParser::has(zor::String const& name) const {
  return count(name) > 0;
}

zor::UInt ArgumentParser::count(zor::String const& name) const {
  return m_impl->get(name).option->count();
}

zor::String ArgumentParser::getValue(zor::String const& name) const {
  return getValues(name).back();
}

std::vector<std::string> ArgumentParser::getValues(zor::String const& name) const {
  Declaration const& declaration = m_impl->get(name);
  std::vector<std::string> const& given = declaration.option->results();
  return given.empty() ? std::vector<std::string>{declaration.defaultValue} : given;
}

zor::Real ArgumentParser::getReal(zor::String const& name) const {
  return toNumber<zor::Real>(name, getValue(name), "a number");
}

zor::Int ArgumentParser::getInt(zor::String const& name) const {
  return toNumber<zor::Int>(name, getValue(name), "an integer");
}

std::vector<std::string> ArgumentParser::getPositionals() const {
  std::vector<std::string> result;
  for (Declaration const& declaration : m_impl->declarations) {
    if (declaration.positional) {
      std::vector<std::string> const& given = declaration.option->results();
      result.insert(result.end(), given.begin(), given.end());
    }
  }
  return result;
}

std::vector<std::string> ArgumentParser::getUnknown() const {
  return m_impl->app.remaining();
}

std::vector<std::string> ArgumentParser::getScriptArguments() const {
  auto const dashes = std::find(m_impl->arguments.begin(), m_impl->arguments.end(), "--");
  return dashes == m_impl->arguments.end() ? std::vector<std::string>()
                                           : std::vector<std::string>(dashes + 1, m_impl->arguments.end());
}

zor::String ArgumentParser::getUsage() const {
  m_impl->app.name(getProgramName());
  return m_impl->app.help();
}

} // namespace zorIO
