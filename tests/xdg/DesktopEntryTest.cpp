#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <map>

#include "platform/xdg/DesktopEntry.h"
#include "platform/xdg/DesktopEntryDirectories.h"
#include "platform/xdg/DesktopEntryExec.h"
#include "platform/xdg/DesktopEntryKeyFile.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg {
namespace {

using ::testing::ElementsAre;
using Environment = std::map<std::string, std::string>;

// Looks names up in the map as getenv would.
auto lookupIn(const Environment& environment) {
    return [&environment](const char* name) -> const char* {
        const auto it = environment.find(name);
        return it == environment.end() ? nullptr : it->second.c_str();
    };
}

TEST(DesktopEntryTest, ReadsTheDesktopEntryGroupOnly) {
    const auto entry = DesktopEntry::parse(R"([Desktop Entry]
# A comment
Type=Application
Icon=system-file-manager
Name=File Manager
Name[de]=Dateimanager
Exec=pcmanfm %U
TryExec=/usr/bin/pcmanfm
StartupWMClass=Pcmanfm
NoDisplay=false
MimeType=inode/directory;x-scheme-handler/trash;

[Desktop Action NewWindow]
Name=New Window
Exec=pcmanfm --new-win
)");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->type, DesktopEntry::Type::application);
    EXPECT_EQ(entry->name, "File Manager");
    EXPECT_EQ(entry->exec, "pcmanfm %U");
    EXPECT_EQ(entry->tryExec, "/usr/bin/pcmanfm");
    EXPECT_EQ(entry->icon, "system-file-manager");
    EXPECT_EQ(entry->startupWMClass, "Pcmanfm");
    EXPECT_THAT(entry->mimeTypes, ElementsAre("inode/directory", "x-scheme-handler/trash"));
    EXPECT_TRUE(entry->isVisibleApplication());
}

TEST(DesktopEntryTest, ReadsTypesBooleansAndLooseLayout) {
    const auto link =
        DesktopEntry::parse("[Desktop Entry]\nType=Link\nName=Site\nNoDisplay=true\nHidden=yes\n");
    ASSERT_TRUE(link);
    EXPECT_EQ(link->type, DesktopEntry::Type::link);
    EXPECT_TRUE(link->noDisplay);
    EXPECT_FALSE(link->hidden) << "only true, false, 1 and 0 are Booleans";
    EXPECT_EQ(DesktopEntry::parse("[Desktop Entry]\nType=Service\nName=S\n")->type,
              DesktopEntry::Type::other);
    const auto spaced = DesktopEntry::parse(
        "\n  # note\r\n[Desktop Entry]\r\nType = Application\r\nName=  Spaced  \r\n");
    ASSERT_TRUE(spaced);
    EXPECT_EQ(spaced->name, "Spaced");
}

TEST(DesktopEntryTest, PicksTheBestLocalisedValue) {
    const std::string text =
        "[Desktop Entry]\nType=Application\nName=Plain\nName[sr]=sr\nName[sr@latin]=sr@latin\n"
        "Name[sr_RS]=sr_RS\nName[sr_RS@latin]=sr_RS@latin\nName[de_DE]=de_DE\n";
    const std::map<std::string, std::string> expected{
        {"sr_RS.UTF-8@latin", "sr_RS@latin"},
        {"sr_ME@latin", "sr@latin"},
        {"sr_RS.UTF-8", "sr_RS"},
        {"sr_BA", "sr"},
        {"de_DE.UTF-8", "de_DE"},
        {"de_AT", "Plain"},
        {"C.UTF-8", "Plain"},
        {"POSIX", "Plain"},
    };
    for (const auto& [locale, name] : expected) {
        EXPECT_EQ(DesktopEntry::parse(text, DesktopEntryLocale(locale))->name, name) << locale;
    }
}

TEST(DesktopEntryTest, TakesTheLocaleFromTheEnvironmentInOrder) {
    Environment environment{{"LANG", "fr_FR.UTF-8"}};
    EXPECT_THAT(DesktopEntryLocale::fromEnvironment(lookupIn(environment)).candidates(),
                ElementsAre("fr_FR", "fr"));
    environment["LC_MESSAGES"] = "de_CH";
    environment["LC_ALL"] = "";
    EXPECT_THAT(DesktopEntryLocale::fromEnvironment(lookupIn(environment)).candidates(),
                ElementsAre("de_CH", "de"));
    environment["LC_ALL"] = "C";
    EXPECT_TRUE(DesktopEntryLocale::fromEnvironment(lookupIn(environment)).candidates().empty());
}

TEST(DesktopEntryTest, UndoesEscapesInStringsAndLists) {
    const auto entry = DesktopEntry::parse(
        "[Desktop Entry]\nType=Application\nName=a\\sb\\nc\\td\\re\\\\f\\xg\\\n"
        "MimeType=one\\;half;two\\stwo;;three\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->name, "a b\nc\td\re\\f\\xg\\");
    EXPECT_THAT(entry->mimeTypes, ElementsAre("one;half", "two two", "three"));
}

TEST(DesktopEntryTest, DamagedTextGivesNothing) {
    const std::vector<std::string> damaged{
        "",
        "just some words",
        "Name=no group\n[Desktop Entry]\nType=Application\n",
        "[Other Group]\nName=x\n[Desktop Entry]\nType=Application\nName=x\n",
        "[Desktop Entry]\nType=Application\n",
        "[Desktop Entry]\nName=no type\n",
        "[Desktop Entry\nType=Application\nName=x\n",
        "[Desktop Entry]\nType=Application\nName=x\nthis line is nothing\n",
        "[Desktop Entry]\nType=Application\nName=x\n[Desktop Entry]\nName=y\n",
        "[Desktop Entry]\nType=Application\nName[de=x\nName=x\n",
        "[Desktop Entry]\nType=Application\nNa me=x\nName=x\n",
        std::string("[Desktop Entry]\nType=Application\nName=x\0y\n", 42),
    };
    for (const auto& text : damaged)
        EXPECT_FALSE(DesktopEntry::parse(text)) << text;
}

TEST(DesktopEntryTest, LoadsAFileWithItsIdAndQuietlyFailsOnOthers) {
    fixtures::DesktopEntryTestTree tree;
    const auto file = tree.writeApplication("apps/x.desktop", "X", "x");
    const auto entry = DesktopEntry::load(file, "x.desktop");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->id, "x.desktop");
    EXPECT_EQ(entry->idWithoutSuffix(), "x");
    EXPECT_EQ(entry->path, file);
    EXPECT_FALSE(DesktopEntry::load(tree.root() / "apps/missing.desktop", "missing.desktop"));
    EXPECT_FALSE(DesktopEntry::load(tree.root() / "apps", "apps"));
}

TEST(DesktopEntryTest, DesktopFileIdsJoinSubfoldersWithDashes) {
    const std::filesystem::path applications("/usr/share/applications");
    EXPECT_EQ(desktopFileId(applications, "/usr/share/applications/pcmanfm.desktop"),
              "pcmanfm.desktop");
    EXPECT_EQ(desktopFileId(applications, "/usr/share/applications/kde4/okular.desktop"),
              "kde4-okular.desktop");
    EXPECT_EQ(desktopFileId("/usr/share/applications/", "/usr/share/applications/a.desktop"),
              "a.desktop");
    EXPECT_FALSE(desktopFileId(applications, "/usr/share/other/a.desktop"));
    EXPECT_FALSE(desktopFileId(applications, "/usr/share/applications/mimeapps.list"));
    EXPECT_FALSE(desktopFileId(applications, "/usr/share/applications/.desktop"));
}

TEST(DesktopEntryExecTest, SplitsArgumentsDropsFieldCodesAndFindsTheProgram) {
    EXPECT_THAT(desktopEntryCommandLine("pcmanfm %U"), ElementsAre("pcmanfm"));
    EXPECT_THAT(desktopEntryCommandLine(R"(  "/opt/My App/run"   --name="a \"b\" \$c \\" %f  )"),
                ElementsAre("/opt/My App/run", R"(--name=a "b" $c \)"));
    EXPECT_THAT(desktopEntryCommandLine("app --level=100%% --file=%f %i %c"),
                ElementsAre("app", "--level=100%", "--file="));
    EXPECT_TRUE(desktopEntryCommandLine(R"(app "unclosed)").empty());
    EXPECT_TRUE(desktopEntryCommandLine("").empty());

    EXPECT_EQ(desktopEntryProgramName("/usr/bin/pcmanfm %U"), "pcmanfm");
    EXPECT_EQ(desktopEntryProgramName("env GDK_BACKEND=x11 LANG=C gimp-2.10 %U"), "gimp-2.10");
    EXPECT_FALSE(desktopEntryProgramName("env A=1"));
    EXPECT_FALSE(desktopEntryProgramName("%U"));
}

TEST(DesktopEntryDirectoriesTest, UsesTheStandardDefaultsAndIgnoresRelativePaths) {
    Environment environment{
        {"HOME", "/home/ann"},
        {"XDG_DATA_DIRS", "relative/share:/opt/share::/usr/share/"},
        {"XDG_CONFIG_HOME", "relative"},
        {"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"},
    };
    const auto directories = DesktopEntryDirectories::fromEnvironment(lookupIn(environment));
    EXPECT_EQ(directories.dataHome, "/home/ann/.local/share");
    EXPECT_THAT(directories.dataDirs, ElementsAre("/opt/share", "/usr/share/"));
    EXPECT_EQ(directories.configHome, "/home/ann/.config");
    EXPECT_THAT(directories.configDirs, ElementsAre("/etc/xdg"));
    EXPECT_THAT(directories.currentDesktops, ElementsAre("ubuntu", "GNOME"));
    EXPECT_THAT(directories.applicationsDirectories(),
                ElementsAre("/home/ann/.local/share/applications", "/opt/share/applications",
                            "/usr/share/applications"));

    environment = {{"HOME", "/home/bo"}};
    EXPECT_THAT(DesktopEntryDirectories::fromEnvironment(lookupIn(environment)).dataDirs,
                ElementsAre("/usr/local/share", "/usr/share"));
}

// Without a usable HOME, the user's folders would otherwise be read relative
// to the working directory, where anyone may have left a crafted entry.
TEST(DesktopEntryDirectoriesTest, AMissingOrRelativeHomeGivesTheAccountsHome) {
    const passwd* user = ::getpwuid(::getuid());
    ASSERT_TRUE(user && user->pw_dir);
    const std::filesystem::path accountHome = user->pw_dir;
    for (Environment environment : {Environment{}, Environment{{"HOME", ""}},
                                    Environment{{"HOME", "."}, {"XDG_DATA_HOME", ".local"}}}) {
        const auto directories = DesktopEntryDirectories::fromEnvironment(lookupIn(environment));
        EXPECT_EQ(directories.dataHome, accountHome / ".local/share");
        EXPECT_EQ(directories.configHome, accountHome / ".config");
    }
}

}  // namespace
}  // namespace platform::xdg
