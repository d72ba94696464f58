#include "platform/clipboard.h"

#include <gtest/gtest.h>

#include <csignal>

#include "tests/platform/fake_desktop.h"

namespace kestrion {
namespace {

class ClipboardTest : public testing::Test {
  protected:
    HRESULT Set(std::string_view text) { return SystemClipboard().SetText(text, reason_); }

    FakeDesktop desktop_;
    std::string reason_;
};

TEST_F(ClipboardTest, AWaylandSessionHasItsOwnProgram) {
    desktop_.Set("WAYLAND_DISPLAY", "wayland-0");
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddProgram("wl-copy");
    desktop_.AddProgram("xclip");
    EXPECT_EQ(Set(" 1.5\n"), S_OK);
    EXPECT_EQ(desktop_.Call(), "wl-copy --type text/plain\n");
    EXPECT_EQ(desktop_.Text(), " 1.5\n");
}

TEST_F(ClipboardTest, AWaylandSessionWithoutItsProgramTakesThatOfX) {
    desktop_.Set("WAYLAND_DISPLAY", "wayland-0");
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddProgram("xclip");
    EXPECT_EQ(Set("text"), S_OK);
    EXPECT_EQ(desktop_.Call(), "xclip -selection clipboard\n");
    EXPECT_EQ(desktop_.Text(), "text");
}

TEST_F(ClipboardTest, AnXSessionWithoutXclipTakesXsel) {
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddProgram("wl-copy");
    desktop_.AddProgram("xsel");
    EXPECT_EQ(Set("text"), S_OK);
    EXPECT_EQ(desktop_.Call(), "xsel --clipboard --input\n");
}

TEST_F(ClipboardTest, WithoutASessionThereIsNoClipboard) {
    desktop_.AddProgram("wl-copy");
    desktop_.AddProgram("xclip");
    EXPECT_EQ(Set("text"), MakeStatus(0x80070032));
    EXPECT_EQ(reason_, "no desktop session is here");
    EXPECT_EQ(desktop_.Call(), "");
}

TEST_F(ClipboardTest, WithoutAProgramThereIsNoClipboard) {
    desktop_.Set("DISPLAY", ":0");
    EXPECT_EQ(Set("text"), MakeStatus(0x80070032));
    EXPECT_EQ(reason_, "neither wl-copy nor xclip nor xsel is installed for this desktop session");
}

TEST_F(ClipboardTest, AProgramOfTheCurrentFolderIsNotTaken) {
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddProgram("xclip");
    const auto current = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::path(desktop_.File("x")).parent_path());
    desktop_.Set("PATH", ".:");
    EXPECT_EQ(Set("text"), MakeStatus(0x80070032));
    std::filesystem::current_path(current);
}

TEST_F(ClipboardTest, AProgramThatFailsIsTold) {
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddScript("xclip", "exit 3\n");
    EXPECT_EQ(Set("text"), E_FAIL);
    EXPECT_EQ(reason_, "xclip ended with 3");
}

TEST_F(ClipboardTest, AProgramThatIsKilledIsTold) {
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddScript("xclip", "kill -15 $$\n");
    EXPECT_EQ(Set("text"), E_FAIL);
    EXPECT_EQ(reason_, "xclip was ended by signal 15");
}

TEST_F(ClipboardTest, AProgramThatCannotBeStartedIsTold) {
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddScript("xclip", "");
    std::ofstream(desktop_.File("xclip")) << "#!/no/such/shell\n";
    EXPECT_EQ(Set("text"), E_FAIL);
    EXPECT_EQ(reason_, "xclip can't be started");
}

TEST_F(ClipboardTest, APartThatStaysInTheBackgroundHoldsNobodyUp) {
    desktop_.Set("DISPLAY", ":0");
    // As these programs do: the text is read, and a child offers it on.
    desktop_.AddScript("xclip",
                       "/bin/cat > " + desktop_.File("text") + "\n(exec /bin/sleep 1) &\n");
    EXPECT_EQ(Set("text"), S_OK);
    EXPECT_EQ(desktop_.Text(), "text");
}

TEST_F(ClipboardTest, AProgramThatDoesNotReadRaisesNoSignal) {
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddScript("xclip", "exit 0\n");
    EXPECT_EQ(Set(std::string(4000000, 'x')), S_OK);
}

TEST_F(ClipboardTest, ALongTextArrivesWhole) {
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddProgram("xclip");
    const std::string text(3250001, 'y');
    EXPECT_EQ(Set(text), S_OK);
    EXPECT_EQ(desktop_.Text(), text);
}

TEST_F(ClipboardTest, AnEmptyTextEmptiesTheClipboard) {
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddProgram("xclip");
    EXPECT_EQ(Set(""), S_OK);
    EXPECT_EQ(desktop_.Call(), "xclip -selection clipboard\n");
}

TEST_F(ClipboardTest, AProcessThatIgnoresItsChildrenHasAClipboardToo) {
    desktop_.Set("DISPLAY", ":0");
    desktop_.AddProgram("xclip");
    const auto earlier = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(Set("text"), S_OK);
    EXPECT_NE(std::signal(SIGCHLD, earlier), SIG_ERR);
    EXPECT_EQ(desktop_.Text(), "text");
}

}  // namespace
}  // namespace kestrion
