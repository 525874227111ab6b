#include <zor/ref_ptr.h>
#include <zorIO/ArgumentParser.h>
#include <zorIO/Environment.h>
#include <zorUtil/StringUtil.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using zorIO::ArgumentParser;

typedef zor::ref_ptr<ArgumentParser> Parser;
typedef std::vector<std::string> Arguments;

void declare(Parser const& parser) {
  parser->addFlag("-h,--help", "shows this text");
  parser->addFlag("-v,--verbose", "tells more");
  parser->addOption("-w,--width", "width of the window in pixels", "640", "PIXELS");
  parser->addOption("--offset", "moves the scene");
  parser->addPositional("script", "scene script");
}

std::string failureOf(std::vector<std::string> arguments) {
  Parser const parser(new ArgumentParser(arguments));
  declare(parser);
  try {
    parser->parse();
  } catch (std::invalid_argument const& e) {
    EXPECT_FALSE(parser->has("--verbose"));
    EXPECT_FALSE(parser->isParsed());
    return e.what();
  }
  return "no failure";
}

TEST(ArgumentParser, ReadsOptionsFlagsAndPositionals) {
  char const* const argv[] = {"prog", "-vv", "--width=800", "a.zorPy", "--offset", "-1.5", "--width", "900"};
  Parser const parser(new ArgumentParser(8, argv));
  declare(parser);
  parser->parse();
  EXPECT_EQ(parser->getProgramName(), "prog");
  EXPECT_EQ(parser->count("-v"), 2u);
  EXPECT_FALSE(parser->has("help"));
  EXPECT_EQ(parser->getInt("--width"), 900);
  EXPECT_THAT(parser->getValues("w"), ElementsAre("800", "900"));
  EXPECT_EQ(parser->getReal("--offset"), -1.5);
  EXPECT_EQ(parser->getValue("script"), "a.zorPy");
  EXPECT_THAT(parser->getPositionals(), ElementsAre("a.zorPy"));
}

TEST(ArgumentParser, DefaultsAndNumbers) {
  Parser const parser(new ArgumentParser(Arguments{"prog", "--offset", "1e3x"}));
  declare(parser);
  parser->parse();
  EXPECT_FALSE(parser->has("--width"));
  EXPECT_EQ(parser->getInt("--width"), 640);
  EXPECT_EQ(parser->getValue("script"), "");
  EXPECT_THROW(parser->getReal("--offset"), std::invalid_argument);
  EXPECT_THROW(parser->getInt("--offset"), std::invalid_argument);
  EXPECT_THROW(parser->getValue("--nothing"), std::invalid_argument);
  parser->setArguments({"prog", "--width", "99999999999999999999"});
  parser->parse();
  EXPECT_THROW(parser->getInt("--width"), std::invalid_argument);
  EXPECT_FALSE(parser->has("--offset")) << "values of an earlier command line are forgotten";
}

TEST(ArgumentParser, SaysWhatIsWrong) {
  EXPECT_THAT(failureOf({"prog", "-v", "--colour", "red"}), HasSubstr("--colour"));
  EXPECT_THAT(failureOf({"prog", "-v", "--width"}), HasSubstr("--width"));
  EXPECT_THAT(failureOf({"prog", "a.zorPy", "b.zorPy"}), HasSubstr("b.zorPy"));
  Parser const parser(new ArgumentParser(Arguments{"prog"}));
  parser->addPositional("input", "the input", true);
  EXPECT_THROW(parser->parse(), std::invalid_argument);
}

TEST(ArgumentParser, SaysWhatMayHaveBeenMeant) {
  for (std::string const typo : {"--widht", "--Width", "--wdth=7", "--widt"})
    EXPECT_THAT(failureOf({"prog", typo}), HasSubstr("did you mean --width?")) << typo;
  EXPECT_THAT(failureOf({"prog", "--verb"}), HasSubstr("did you mean --verbose?"));
  for (std::string const other : {"--colour", "-q", "--w", "one.zorPy"})
    EXPECT_THAT(failureOf({"prog", "a.zorPy", other}), Not(HasSubstr("did you mean"))) << other;
}

TEST(ArgumentParser, LeavesWhatStandsBehindTwoDashesToTheScript) {
  Parser const parser(new ArgumentParser(Arguments{"prog", "-w", "5", "--", "--colour", "--", "-w", "6"}));
  declare(parser);
  parser->parse();
  EXPECT_EQ(parser->getInt("--width"), 5);
  EXPECT_EQ(parser->getValue("script"), "");
  EXPECT_THAT(parser->getScriptArguments(), ElementsAre("--colour", "--", "-w", "6"));
  parser->setArguments({"prog", "-w", "5"});
  EXPECT_TRUE(parser->getScriptArguments().empty());
}

TEST(ArgumentParser, KeepsWhatNobodyDeclaredIfAllowed) {
  Parser const parser(new ArgumentParser(Arguments{"prog", "--mine", "3", "-v", "a.zorPy", "b", "--", "-w"}));
  declare(parser);
  parser->setAllowUnknown(true);
  parser->parse();
  EXPECT_TRUE(parser->has("--verbose"));
  EXPECT_THAT(parser->getUnknown(), testing::Contains("--mine"));
  parser->addOption("--mine", "declared late");
  EXPECT_FALSE(parser->isParsed());
  parser->parse();
  EXPECT_EQ(parser->getInt("--mine"), 3);
  EXPECT_EQ(parser->getValue("script"), "a.zorPy");
}

TEST(ArgumentParser, TakesAllPositionals) {
  Parser const parser(new ArgumentParser(Arguments{"prog", "a", "b", "c"}));
  parser->addPositional("files", "the files", true, true);
  parser->parse();
  EXPECT_THAT(parser->getPositionals(), ElementsAre("a", "b", "c"));
  parser->setArguments({});
  EXPECT_THROW(parser->parse(), std::invalid_argument);
}

TEST(ArgumentParser, RefusesBadDeclarations) {
  Parser const parser(new ArgumentParser);
  declare(parser);
  EXPECT_THROW(parser->addFlag("--width", "again"), std::invalid_argument);
  EXPECT_THROW(parser->addOption("--", "nothing"), std::invalid_argument);
  EXPECT_THROW(parser->addPositional("--file", "dashes"), std::invalid_argument);
  EXPECT_TRUE(parser->isDeclared("-w"));
  EXPECT_FALSE(parser->isDeclared("-x"));
  parser->parse(); // no arguments at all
}

TEST(ArgumentParser, UsageNamesEverything) {
  Parser const parser(new ArgumentParser(Arguments{"prog"}));
  parser->setDescription("Shows a scene.");
  declare(parser);
  zor::String const usage = parser->getUsage();
  for (char const* part : {"Shows a scene.", "prog", "--help", "-w", "--width", "PIXELS", "640",
                           "width of the window in pixels", "script", "scene script"}) {
    EXPECT_THAT(usage, HasSubstr(part));
  }
  parser->parse();
  EXPECT_EQ(parser->getUsage(), usage) << "the program is named once";
}

class ResourcePathTest : public testing::Test {
protected:
  ResourcePathTest() {
    fs::create_directories(root / "a/sub");
    fs::create_directories(root / "b/sub");
    std::ofstream(root / "a/both.txt") << "a";
    std::ofstream(root / "b/both.txt") << "b";
    std::ofstream(root / "b/sub/only_b.txt") << "b";
  }
  ~ResourcePathTest() override { fs::remove_all(root); }

  fs::path const root = fs::path(testing::TempDir()) / ("zor_resource_path_test_" + std::to_string(getpid()));
  zorIO::ResourcePath path;
};

TEST_F(ResourcePathTest, SearchesInOrder) {
  path.addList((root / "a").string() + "::" + (root / "b").string());
  EXPECT_EQ(path.getFolders().size(), 2u) << "empty entries are no folders";
  EXPECT_EQ(path.find("both.txt"), root / "a/both.txt");
  EXPECT_EQ(path.find("sub/only_b.txt"), root / "b/sub/only_b.txt");
  path.addFirst((root / "b").string());
  EXPECT_EQ(path.find("both.txt"), root / "b/both.txt");
  path.addFirst(path.getFolders().back());
  EXPECT_EQ(path.getFolders().size(), 2u);
  EXPECT_TRUE(path.remove((root / "a").string()));
  EXPECT_EQ(path.find((root / "a/both.txt").string()), root / "a/both.txt") << "absolute names need no list";
}

TEST_F(ResourcePathTest, SaysWhatWasSearched) {
  path.add((root / "a").string());
  EXPECT_EQ(path.find("only_b.txt"), "");
  EXPECT_EQ(path.find(""), "");
  EXPECT_EQ(path.find("/nowhere/both.txt"), "");
  try {
    path.require("only_b.txt");
    FAIL();
  } catch (std::runtime_error const& e) {
    EXPECT_THAT(e.what(), HasSubstr("only_b.txt"));
    EXPECT_THAT(e.what(), HasSubstr((root / "a").string()));
  }
}

TEST(StringUtil, SplitsTrimsAndLowers) {
  EXPECT_THAT(zorUtil::split("a::b", ':'), ElementsAre("a", "", "b"));
  EXPECT_THAT(zorUtil::split("", ':'), ElementsAre(""));
  EXPECT_EQ(zorUtil::trim(" \t a b\n"), "a b");
  EXPECT_EQ(zorUtil::trim(" \n"), "");
  EXPECT_EQ(zorUtil::toLower("PNG.\xc3\x84"), "png.\xc3\x84");
}

} // namespace
