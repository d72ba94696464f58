// Runs built programs as processes.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/temporary_folder.h"

namespace kestrion::cli {

struct ProcessResult {
    // -1 if the process ended by a signal.
    int exitCode = -1;
    std::string out;
    std::string err;
};

// A word for the shell that stands for `text` itself.
inline std::string ShellWord(const std::string& text) {
    std::string word = "'";
    for (char c : text) {
        word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return word + "'";
}

// Runs `program` to its end; standard output goes to the file `target` if one is given.
inline ProcessResult RunProcess(const std::string& program,
                                const std::vector<std::string>& arguments,
                                const std::string& target = {}) {
    const TemporaryFolder folder;
    const std::string out = target.empty() ? folder.File("out").string() : target;
    std::string command = ShellWord(program);
    for (const std::string& argument : arguments) {
        command += " " + ShellWord(argument);
    }
    command +=
        " >" + ShellWord(out) + " 2>" + ShellWord(folder.File("err").string()) + " </dev/null";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            target.empty() ? ReadFile(folder.File("out")) : "", ReadFile(folder.File("err"))};
}

// A server process that prints a line when it is ready, and is stopped at the end.
class ServerProcess {
  public:
    explicit ServerProcess(std::vector<std::string> command) {
        int ends[2] = {-1, -1};
        if (pipe(ends) != 0) {
            throw std::runtime_error("no pipe");
        }
        std::vector<char*> words;
        for (std::string& word : command) {
            words.push_back(word.data());
        }
        words.push_back(nullptr);
        process_ = fork();
        if (process_ == 0) {
            dup2(ends[1], STDOUT_FILENO);
            close(ends[0]);
            close(ends[1]);
            execv(words.front(), words.data());
            _exit(127);
        }
        close(ends[1]);
        output_ = ends[0];
    }
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;
    ~ServerProcess() {
        close(output_);
        if (process_ > 0) {
            (void)kill(process_, SIGTERM);
            (void)waitpid(process_, nullptr, 0);
        }
    }

    // The first line that the server prints; what it has printed when it ends before.
    [[nodiscard]] std::string FirstLine() const {
        std::string line;
        char c = 0;
        while (read(output_, &c, 1) == 1 && c != '\n') {
            line += c;
        }
        return line;
    }

  private:
    pid_t process_ = -1;
    int output_ = -1;
};

}  // namespace kestrion::cli
