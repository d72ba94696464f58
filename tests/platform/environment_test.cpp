#include "platform/environment.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <map>

namespace kestrion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

ConfigurationFolders FoldersIn(const std::map<std::string, std::string>& variables) {
    return FindConfigurationFolders([&](const char* name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    });
}

TEST(EnvironmentTest, AnEmptyVariableCountsAsUnset) {
    ASSERT_EQ(setenv("KESTRION_ENVIRONMENT_TEST", "some value", 1), 0);
    EXPECT_EQ(ReadEnvironment("KESTRION_ENVIRONMENT_TEST"), "some value");
    ASSERT_EQ(setenv("KESTRION_ENVIRONMENT_TEST", "", 1), 0);
    EXPECT_EQ(ReadEnvironment("KESTRION_ENVIRONMENT_TEST"), std::nullopt);
    ASSERT_EQ(unsetenv("KESTRION_ENVIRONMENT_TEST"), 0);
    EXPECT_EQ(ReadEnvironment("KESTRION_ENVIRONMENT_TEST"), std::nullopt);
}

TEST(ConfigurationFoldersTest, TheUsersIsInTheHomeFolder) {
    EXPECT_EQ(FoldersIn({{"HOME", "/home/ada"}}).user, "/home/ada/.config");
    EXPECT_EQ(FoldersIn({}).user, "");
}

TEST(ConfigurationFoldersTest, TheUsersCanBeNamed) {
    EXPECT_EQ(FoldersIn({{"HOME", "/home/ada"}, {"XDG_CONFIG_HOME", "/data/conf"}}).user,
              "/data/conf");
}

TEST(ConfigurationFoldersTest, ARelativePathCountsAsNotGiven) {
    EXPECT_EQ(FoldersIn({{"HOME", "/home/ada"}, {"XDG_CONFIG_HOME", "conf"}}).user,
              "/home/ada/.config");
    EXPECT_EQ(FoldersIn({{"HOME", "ada"}}).user, "");
    EXPECT_THAT(FoldersIn({{"XDG_CONFIG_DIRS", "conf:/etc/lab:./x"}}).system,
                ElementsAre("/etc/lab"));
}

TEST(ConfigurationFoldersTest, TheSystemsAreAList) {
    EXPECT_THAT(FoldersIn({}).system, ElementsAre("/etc/xdg"));
    EXPECT_THAT(FoldersIn({{"XDG_CONFIG_DIRS", "/etc/lab:/usr/share/conf"}}).system,
                ElementsAre("/etc/lab", "/usr/share/conf"));
    EXPECT_THAT(FoldersIn({{"XDG_CONFIG_DIRS", "::/etc/lab:"}}).system, ElementsAre("/etc/lab"));
    EXPECT_THAT(FoldersIn({{"XDG_CONFIG_DIRS", "conf"}}).system, IsEmpty());
}

}  // namespace
}  // namespace kestrion
