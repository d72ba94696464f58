// A desktop session of a test's own: its environment, and programs that take the clipboard's text.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <string>

#include "platform/system_time.h"

namespace kestrion {

// Without anything in it until a test puts it there: no session, and no program on the search path.
// The process's environment is put back at the end. One at a time, while no other thread runs.
class FakeDesktop {
  public:
    FakeDesktop()
        : folder_(std::filesystem::temp_directory_path() /
                  ("kestrion_fake_desktop_" + std::to_string(CurrentProcessNumber()))) {
        std::filesystem::create_directory(folder_);
        Set("PATH", folder_.string());
        Set("DISPLAY", std::nullopt);
        Set("WAYLAND_DISPLAY", std::nullopt);
    }
    FakeDesktop(const FakeDesktop&) = delete;
    FakeDesktop& operator=(const FakeDesktop&) = delete;
    ~FakeDesktop() {
        for (const auto& [name, value] : earlier_) {
            Put(name, value);
        }
        std::filesystem::remove_all(folder_);
    }

    void Set(const std::string& name, const std::optional<std::string>& value) {
        const char* before = std::getenv(name.c_str());
        earlier_.try_emplace(name,
                             before == nullptr ? std::nullopt : std::optional<std::string>(before));
        Put(name, value);
    }
    // A program that keeps its name, its arguments and its input.
    void AddProgram(const std::string& name) {
        AddScript(name, "echo \"" + name + " $*\" > " + File("call") + "\nexec /bin/cat > " +
                            File("text") + "\n");
    }
    // A program of the shell.
    void AddScript(const std::string& name, const std::string& script) {
        std::ofstream(folder_ / name) << "#!/bin/sh\n" << script;
        std::filesystem::permissions(folder_ / name, std::filesystem::perms::owner_all);
    }
    [[nodiscard]] std::string File(const std::string& name) const {
        return (folder_ / name).string();
    }
    // What a program was called with, and what it was given; empty before.
    [[nodiscard]] std::string Call() const { return ContentOf("call"); }
    [[nodiscard]] std::string Text() const { return ContentOf("text"); }

  private:
    static void Put(const std::string& name, const std::optional<std::string>& value) {
        if (value) {
            ::setenv(name.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name.c_str());
        }
    }
    [[nodiscard]] std::string ContentOf(const std::string& name) const {
        std::ostringstream text;
        text << std::ifstream(folder_ / name, std::ios::binary).rdbuf();
        return text.str();
    }

    std::filesystem::path folder_;
    std::map<std::string, std::optional<std::string>> earlier_;
};

}  // namespace kestrion
