#include <filesystem>

#include <gtest/gtest.h>

#include "platform/posix/AutostartLoginItem.h"
#include "support/Process.h"
#include "support/TemporaryDirectory.h"

namespace quillmark {
namespace {

struct Autostart : testing::Test {
  bool succeeds(const std::vector<std::string>& arguments) {
    Process process(arguments, {{"HOME", directory.path()}, {"PATH", "/usr/bin:/bin"}},
                    {.output = directory / "output"});
    return process.exitStatus() == 0;
  }

  const TemporaryDirectory directory;
  const std::string place = directory / "config/autostart";
};

TEST_F(Autostart, writesAnEntryThatDesktopsStart) {
  // The characters that the format gives a meaning, and a blank; with a percent sign the launcher here fails itself.
  EXPECT_EQ(desktopEntryExec("/100%/q"), "\"/100%%/q\"");
  const std::string program = directory / "a \"b\" $HOME `c` \\d/quill'mark";
  writeFile(program, "#!/bin/sh\nprintf started > \"$HOME/started\"\n");
  std::filesystem::permissions(program, std::filesystem::perms::owner_all);

  AutostartLoginItem item(place, program);
  EXPECT_FALSE(item.isEnabled());
  ASSERT_TRUE(item.registerItem());
  EXPECT_TRUE(item.isEnabled());
  EXPECT_TRUE(succeeds({"desktop-file-validate", item.file()})) << readFile(directory / "output");
  EXPECT_TRUE(succeeds({"gio", "launch", item.file()})) << readFile(directory / "output");
  EXPECT_TRUE(waitUntil([&] { return readFile(directory / "started") == "started"; })) << readFile(item.file());

  EXPECT_TRUE(item.unregisterItem());
  EXPECT_TRUE(item.unregisterItem()) << "what is gone is gone";
  EXPECT_FALSE(item.isEnabled());
  EXPECT_TRUE(std::filesystem::is_empty(place));
}

TEST_F(Autostart, seesWhatTheUserChangedElsewhere) {
  AutostartLoginItem item(place, "/opt/quillmark");
  ASSERT_TRUE(item.registerItem());
  EXPECT_FALSE(AutostartLoginItem(place, "/elsewhere/quillmark").isEnabled());
  const std::string entry = readFile(item.file());
  writeFile(item.file(), entry + "Hidden=true\n");
  EXPECT_FALSE(item.isEnabled());
  writeFile(item.file(), entry + "\n[Desktop Action x]\nHidden=true\n");
  EXPECT_TRUE(item.isEnabled());
  auto off = entry;
  off.replace(off.find("enabled=true"), 12, "enabled=false");
  writeFile(item.file(), off);
  EXPECT_FALSE(item.isEnabled());
  ASSERT_TRUE(item.registerItem());
  EXPECT_TRUE(item.isEnabled());
}

TEST_F(Autostart, saysWhyItCantBeWritten) {
  writeFile(directory / "config", "a file where the directory should be");
  const auto result = AutostartLoginItem(place, "/opt/quillmark").registerItem();
  ASSERT_FALSE(result);
  EXPECT_NE(result.error().find(place), std::string::npos) << result.error();
}

}  // namespace
}  // namespace quillmark
