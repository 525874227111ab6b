#pragma once

#include <zor/Referenced.h>
#include <zor/Types.h>

#include <memory>
#include <string>
#include <vector>

namespace zorIO {

/**
 * Command line: options with values, flags and positional arguments, declared by those who use them.
 *
 * Names are written as on the command line, alternatives separated by commas: "-w,--width". Declare
 * everything, call parse(), then ask by any of the names. Arguments that nobody declared are an error, which
 * names what may have been meant, or are kept for getUnknown() after setAllowUnknown(true). What stands
 * behind an argument "--" is left alone and kept for getScriptArguments().
 */
class ArgumentParser : public zor::Referenced {
public:
  /** A command line without arguments. */
  ArgumentParser();

  /** \param argc - number of arguments \param argv - the arguments, first the program's name; copied */
  ArgumentParser(int argc, char const* const* argv);

  /** \param arguments - first the program's name; may be empty */
  explicit ArgumentParser(std::vector<std::string> const& arguments);

  ArgumentParser(ArgumentParser const&) = delete;
  ArgumentParser& operator=(ArgumentParser const&) = delete;

  /** Replaces the command line; declarations stay. \param arguments - first the program's name */
  void setArguments(std::vector<std::string> const& arguments);

  /** \return the command line, first the program's name */
  std::vector<std::string> const& getArguments() const;

  /** \return the program's name as it was called */
  zor::String getProgramName() const;

  /** \param text - what the program does, for the usage text */
  void setDescription(zor::String const& text);

  /**
   * Declares an option without a value.
   * \param names - "-a,--name"
   * \param description - for the usage text
   * \throws std::invalid_argument if a name is malformed or taken
   */
  void addFlag(zor::String const& names, zor::String const& description);

  /**
   * Declares an option with a value, "--name value" or "--name=value"; it may be given several times.
   * \param names - "-a,--name"
   * \param description - for the usage text
   * \param defaultValue - the value when it is not given; has() then still tells false
   * \param valueName - what the usage text calls the value
   * \throws std::invalid_argument if a name is malformed or taken
   */
  void addOption(zor::String const& names, zor::String const& description,
                 zor::String const& defaultValue = zor::String(), zor::String const& valueName = "TEXT");

  /**
   * Declares the next positional argument.
   * \param name - name without dashes
   * \param description - for the usage text
   * \param required - true: parse() fails without it
   * \param several - true: takes all that remain
   * \throws std::invalid_argument if the name is malformed or taken
   */
  void addPositional(zor::String const& name, zor::String const& description, bool required = false,
                     bool several = false);

  /** \return true if an option, flag or positional argument of that name has been declared */
  bool isDeclared(zor::String const& name) const;

  /** \param allow - true: arguments that nobody declared are kept instead of being an error */
  void setAllowUnknown(bool allow);

  /**
   * Reads the command line; may be called again after more has been declared.
   * \throws std::invalid_argument that says which argument is wrong and why; the values are then all unset
   */
  void parse();

  /** \return true if parse() has succeeded since the last change of arguments or declarations */
  bool isParsed() const;

  /** \return true if it was given on the command line \throws std::invalid_argument if it is not declared */
  bool has(zor::String const& name) const;

  /** \return how often it was given \throws std::invalid_argument if it is not declared */
  zor::UInt count(zor::String const& name) const;

  /** \return the last value given, or the default value \throws std::invalid_argument if it is not declared
   */
  zor::String getValue(zor::String const& name) const;

  /** \return all values given, or the default value alone \throws std::invalid_argument if it is not declared
   */
  std::vector<std::string> getValues(zor::String const& name) const;

  /** As getValue(). \throws std::invalid_argument if the value is not a number as a whole */
  zor::Real getReal(zor::String const& name) const;

  /** As getValue(). \throws std::invalid_argument if the value is not an integer as a whole, or too large */
  zor::Int getInt(zor::String const& name) const;

  /** \return all positional arguments in the order given */
  std::vector<std::string> getPositionals() const;

  /** \return the arguments that nobody declared */
  std::vector<std::string> getUnknown() const;

  /** \return what stands behind the first argument "--": it is for a script, and not read here */
  std::vector<std::string> getScriptArguments() const;

  /** \return the usage text: call, arguments and options with their descriptions */
  zor::String getUsage() const;

protected:
  ~ArgumentParser() override;

private:
  struct Impl;
  std::unique_ptr<Impl> m_impl;
};

} // namespace zorIO
