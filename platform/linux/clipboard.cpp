// The clipboard belongs to whoever offers its text for as long as it is wanted, so a program of the
// desktop does that: it takes the text on its standard input and stays in the background.
#include "platform/clipboard.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <optional>
#include <vector>

#include "platform/clock.h"
#include "platform/environment.h"

namespace kestrion {
namespace {

constexpr std::chrono::milliseconds kPatience(5000);
constexpr std::chrono::milliseconds kStep(5);

// A program with its arguments, and the variable that says that its kind of desktop is there.
struct Tool {
    const char* session;
    const char* program;
    std::vector<const char*> arguments;
};

const std::array<Tool, 3>& Tools() {
    static const std::array<Tool, 3> tools = {{
        {"WAYLAND_DISPLAY", "wl-copy", {"--type", "text/plain"}},
        {"DISPLAY", "xclip", {"-selection", "clipboard"}},
        {"DISPLAY", "xsel", {"--clipboard", "--input"}},
    }};
    return tools;
}

std::optional<std::string> FindProgram(std::string_view name) {
    const std::string path = ReadEnvironment("PATH").value_or("");
    for (std::string_view rest = path; !rest.empty();) {
        const std::size_t colon = rest.find(':');
        const std::string_view folder = rest.substr(0, colon);
        rest.remove_prefix(colon == std::string_view::npos ? rest.size() : colon + 1);
        const std::string candidate = std::string(folder) + "/" + std::string(name);
        // A program of the current folder is nobody's clipboard.
        if (folder.starts_with('/') && ::access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    return std::nullopt;
}

// A nameless file in memory that holds the text: unlike a pipe it can't block, and a program that
// ends without reading it raises no signal here.
class TextFile {
  public:
    explicit TextFile(std::string_view text) : descriptor_(::memfd_create("clip", MFD_CLOEXEC)) {
        while (descriptor_ >= 0 && !text.empty()) {
            const ssize_t written = ::write(descriptor_, text.data(), text.size());
            if (written < 0 && errno == EINTR) {
                continue;
            }
            if (written < 0) {
                return;
            }
            text.remove_prefix(static_cast<std::size_t>(written));
        }
        complete_ = descriptor_ >= 0 && ::lseek(descriptor_, 0, SEEK_SET) == 0;
    }
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;
    ~TextFile() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    [[nodiscard]] bool IsComplete() const { return complete_; }
    [[nodiscard]] int Get() const { return descriptor_; }

  private:
    int descriptor_;
    bool complete_ = false;
};

// Starts a program that reads from `input` and writes to nowhere; 0 if it can't be started.
pid_t Start(const std::string& path, const Tool& tool, int input) {
    std::vector<char*> arguments = {const_cast<char*>(tool.program)};
    for (const char* argument : tool.arguments) {
        arguments.push_back(const_cast<char*>(argument));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    if (::posix_spawn_file_actions_init(&actions) != 0) {
        return 0;
    }
    pid_t child = 0;
    if (::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO) != 0 ||
        ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0) !=
            0 ||
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0) !=
            0 ||
        ::posix_spawn(&child, path.c_str(), &actions, nullptr, arguments.data(), environ) != 0) {
        child = 0;
    }
    ::posix_spawn_file_actions_destroy(&actions);
    return child;
}

// Waits until the program ends, which the part of it that stays does not hold up.
HRESULT AwaitEnd(pid_t child, const char* program, std::string& reason) {
    const auto end = SystemClock().Now() + kPatience;
    int status = 0;
    pid_t ended = 0;
    while ((ended = ::waitpid(child, &status, WNOHANG)) == 0 && SystemClock().Now() < end) {
        SystemClock().Sleep(kStep);
    }
    if (ended == 0) {
        ::kill(child, SIGKILL);
        (void)::waitpid(child, &status, 0);
        reason = std::string(program) + " did not end in time";
        return E_FAIL;
    }
    // A process that ignores its children doesn't learn how they end.
    if (ended < 0 || (WIFEXITED(status) && WEXITSTATUS(status) == 0)) {
        return S_OK;
    }
    reason = std::string(program) +
             (WIFEXITED(status) ? " ended with " + std::to_string(WEXITSTATUS(status))
                                : " was ended by signal " + std::to_string(WTERMSIG(status)));
    return E_FAIL;
}

class DesktopClipboard final : public Clipboard {
  public:
    HRESULT SetText(std::string_view text, std::string& reason) override {
        reason = "no desktop session is here";
        for (const Tool& tool : Tools()) {
            if (!ReadEnvironment(tool.session)) {
                continue;
            }
            if (const auto path = FindProgram(tool.program)) {
                return HandOver(*path, tool, text, reason);
            }
            reason = "neither wl-copy nor xclip nor xsel is installed for this desktop session";
        }
        return kNoClipboard;
    }

  private:
    static HRESULT HandOver(const std::string& path, const Tool& tool, std::string_view text,
                            std::string& reason) {
        const TextFile file(text);
        if (!file.IsComplete()) {
            reason = "there is no room for the text";
            return E_FAIL;
        }
        const pid_t child = Start(path, tool, file.Get());
        if (child == 0) {
            reason = std::string(tool.program) + " can't be started";
            return E_FAIL;
        }
        return AwaitEnd(child, tool.program, reason);
    }
};

}  // namespace

Clipboard& SystemClipboard() {
    static DesktopClipboard clipboard;
    return clipboard;
}

}  // namespace kestrion
