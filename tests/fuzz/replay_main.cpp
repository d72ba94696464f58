// Runs a fuzz target over its corpus, for builds without libFuzzer: replay [--show] FILE-OR-FOLDER
//
// Each file is run as it stands, and then with changes that are the same each time. A target ends
// the program where a property doesn't hold; the last line then names the file, and --show prints
// each changed input before it is run.
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tests/fuzz/property.h"

namespace {

// Changed inputs in all, over all files.
constexpr std::size_t kMutations = 3000;
// A changed input doesn't grow beyond this.
constexpr std::size_t kLongest = 4096;

struct Input {
    std::string name;
    std::string bytes;
};

std::string ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<Input> ReadInputs(const std::filesystem::path& path) {
    std::vector<Input> inputs;
    std::error_code error;
    if (std::filesystem::is_regular_file(path, error)) {
        inputs.push_back({path.filename().string(), ReadFile(path)});
    }
    for (const auto& entry : std::filesystem::directory_iterator(path, error)) {
        if (entry.is_regular_file()) {
            inputs.push_back({entry.path().filename().string(), ReadFile(entry.path())});
        }
    }
    std::ranges::sort(inputs, {}, &Input::name);
    return inputs;
}

void Run(std::string_view bytes) {
    // Exactly as much memory as there is input, so that a sanitizer sees a read behind it.
    const std::vector<std::uint8_t> memory(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(memory.data(), memory.size());
}

// Changes inputs here and there.
class Mutator {
  public:
    Mutator(std::string_view bytes, std::span<const Input> others)
        : random_(static_cast<std::mt19937::result_type>(std::hash<std::string_view>{}(bytes))),
          bytes_(bytes),
          others_(others) {}

    std::string Next() {
        std::string changed(bytes_);
        for (std::size_t edits = 1 + Below(4); edits > 0; --edits) {
            Edit(changed);
        }
        changed.resize(std::min(changed.size(), kLongest));
        return changed;
    }

  private:
    std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : random_() % limit; }

    // A byte of any input, or any byte.
    char AnyByte() {
        const std::string& other = others_[Below(others_.size())].bytes;
        return other.empty() || Below(4) == 0 ? static_cast<char>(Below(256))
                                              : other[Below(other.size())];
    }
    std::string AnyPiece() {
        const std::string& other = others_[Below(others_.size())].bytes;
        return other.substr(Below(other.size()), Below(24));
    }

    void Edit(std::string& text) {
        const std::size_t at = Below(text.size() + 1);
        switch (Below(6)) {
            case 0:
                text.insert(at, 1, AnyByte());
                break;
            case 1:
                text.insert(at, AnyPiece());
                break;
            case 2:
                text.erase(at, 1 + Below(8));
                break;
            case 3:
                text.insert(at, text.substr(Below(text.size()), Below(64)));
                break;
            default:
                if (at < text.size()) {
                    text[at] = AnyByte();
                }
        }
    }

    std::mt19937 random_;
    std::string_view bytes_;
    std::span<const Input> others_;
};

void Show(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::cout << "  ";
    for (const char c : bytes) {
        if (std::isprint(static_cast<unsigned char>(c)) != 0 && c != '\\') {
            std::cout << c;
        } else {
            std::cout << "\\x" << kDigits[static_cast<unsigned char>(c) / 16U]
                      << kDigits[static_cast<unsigned char>(c) % 16U];
        }
    }
    std::cout << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    const bool show = !arguments.empty() && arguments.front() == "--show";
    if (arguments.size() != (show ? 2U : 1U)) {
        std::cerr << "usage: " << argv[0] << " [--show] FILE-OR-FOLDER\n";
        return 2;
    }
    const std::vector<Input> inputs = ReadInputs(arguments.back());
    if (inputs.empty()) {
        std::cerr << "There is no input in " << arguments.back() << ".\n";
        return 1;
    }
    const std::size_t mutations = (kMutations + inputs.size() - 1) / inputs.size();
    for (const Input& input : inputs) {
        std::cout << input.name << std::endl;
        Run(input.bytes);
        Mutator mutator(input.bytes, inputs);
        for (std::size_t i = 0; i < mutations; ++i) {
            const std::string changed = mutator.Next();
            if (show) {
                Show(changed);
            }
            Run(changed);
        }
    }
    std::cout << inputs.size() << " inputs, each with " << mutations << " changes\n";
    return 0;
}
