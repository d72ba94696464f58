// The format engine on the longest templates of the model, beside snprintf and strtod; and the look
// up of an enumeration's token.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/cores.h"
#include "bench/quiet_line.h"
#include "bench/rounds.h"
#include "bench/template_cases.h"
#include "io/args.h"
#include "io/format_reader.h"
#include "io/format_writer.h"
#include "io/instr_buffer.h"
#include "tables/enum_lookup.h"

namespace bench {
namespace {

using kestrion::ArgCursor;
using kestrion::ArgSlot;
using kestrion::GetEnumConverter;

constexpr std::string_view kModel = "PL7254C";
constexpr int kInteger = 2;
constexpr double kReal = 1.25e-3;
constexpr const char* kIntegerText = "2";
constexpr const char* kRealText = "1.2500E-3";
constexpr const char* kText = "LABEL";

void Require(bool condition, const std::string& what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

// The driver's look up of tokens, for the member that is measured.
class Enums final : public kestrion::IEnumFormatter {
  public:
    explicit Enums(std::string_view member) : member_(member) {}
    HRESULT EnumToToken(std::string_view name, std::int32_t value, std::string& token) override {
        const auto* converter = GetEnumConverter(name, member_);
        return converter != nullptr && converter->ToToken(kModel, value, token) ? S_OK : E_FAIL;
    }
    HRESULT TokenToEnum(std::string_view name, std::string_view token,
                        std::int32_t& value) override {
        const auto* converter = GetEnumConverter(name, member_);
        return converter != nullptr && converter->FromToken(kModel, token, value) ? S_OK : E_FAIL;
    }
    std::int32_t GetMaxTokenLength(std::string_view name) override {
        const auto* converter = GetEnumConverter(name, member_);
        return converter == nullptr ? 0 : converter->MaxTokenLength();
    }
    // The first value that the instrument has a token for.
    std::int32_t FirstValue(const char* name, std::string& token) {
        for (std::int32_t value = -1; value < 1000; ++value) {
            if (EnumToToken(name, value, token) == S_OK) {
                return value;
            }
        }
        throw std::runtime_error(std::string("no token of ") + name);
    }

  private:
    std::string_view member_;
};

// The session's buffers with no instrument behind them.
class Buffers {
  public:
    Buffers() : buffer_(kestrion::CInstrBuffer::Create(line_, reporter_, "\n", "\n")) {
        Require(buffer_ != nullptr, "there is no memory for the buffers");
    }
    [[nodiscard]] kestrion::CInstrBuffer& Get() { return *buffer_; }
    [[nodiscard]] QuietLine& Line() { return line_; }

  private:
    QuietLine line_;
    QuietReporter reporter_;
    std::unique_ptr<kestrion::CInstrBuffer> buffer_;
};

// The arguments of a command line, for both.
class CommandArguments {
  public:
    CommandArguments(const CommandCase& command, Enums& enums) : tokens_(command.values.size()) {
        for (std::size_t i = 0; i < command.values.size(); ++i) {
            Add(command.values[i], enums, tokens_[i]);
        }
    }
    std::vector<ArgSlot> driver;
    std::vector<FloorValue> floor;

  private:
    void Add(const TemplateValue& value, Enums& enums, std::string& token) {
        FloorValue same{};
        if (value.kind == ValueKind::kInteger) {
            driver.emplace_back(kInteger);
            same.integer = kInteger;
        } else if (value.kind == ValueKind::kReal) {
            driver.emplace_back(kReal);
            same.real = kReal;
        } else {
            driver.emplace_back(enums.FirstValue(value.enumName, token));
            same.text = token.c_str();
        }
        floor.push_back(same);
    }

    std::vector<std::string> tokens_;
};

void WriteByDriver(benchmark::State& state, const CommandCase& command) {
    Enums enums(command.member);
    const CommandArguments arguments(command, enums);
    Buffers buffers;
    for (auto _ : state) {
        ArgCursor cursor(arguments.driver);
        Require(FormatWrite(buffers.Get(), command.format, cursor, &enums) == S_OK &&
                    buffers.Get().FlushWrite(true) == S_OK,
                "the command was not written");
    }
}

void WriteByPrintf(benchmark::State& state, const CommandCase& command) {
    Enums enums(command.member);
    const CommandArguments arguments(command, enums);
    char text[4096];
    for (auto _ : state) {
        benchmark::DoNotOptimize(command.print(text, sizeof(text), arguments.floor.data()));
        benchmark::ClobberMemory();
    }
}

// A response to a reply format, and room for what is in it.
struct ReplyArguments {
    ReplyArguments(const ReplyCase& reply, Enums& enums)
        : integers(reply.values.size()), reals(reply.values.size()), texts(reply.values.size()) {
        for (std::size_t i = 0; i < reply.values.size(); ++i) {
            response += (i > 0 ? ";" : "") + Text(reply.values[i], enums);
            if (reply.values[i].isStored) {
                slots.push_back(Slot(reply.values[i].kind, i));
            }
        }
        response += '\n';
    }
    ReplyArguments(const ReplyArguments&) = delete;
    ReplyArguments& operator=(const ReplyArguments&) = delete;
    ~ReplyArguments() {
        for (BSTR text : texts) {
            SysFreeString(text);
        }
    }

    std::string response;
    std::vector<std::int32_t> integers;
    std::vector<double> reals;
    std::vector<BSTR> texts;
    std::vector<ArgSlot> slots;

  private:
    static std::string Text(const TemplateValue& value, Enums& enums) {
        std::string token;
        switch (value.kind) {
            case ValueKind::kInteger:
                return kIntegerText;
            case ValueKind::kReal:
                return kRealText;
            case ValueKind::kText:
                return kText;
            case ValueKind::kEnum:
                (void)enums.FirstValue(value.enumName, token);
        }
        return token;
    }
    ArgSlot Slot(ValueKind kind, std::size_t i) {
        switch (kind) {
            case ValueKind::kReal:
                return &reals[i];
            case ValueKind::kText:
                return &texts[i];
            default:
                return &integers[i];
        }
    }
};

void ReadByDriver(benchmark::State& state, const ReplyCase& reply) {
    Enums enums(reply.member);
    ReplyArguments arguments(reply, enums);
    Buffers buffers;
    buffers.Line().AnswerWith(arguments.response);
    for (auto _ : state) {
        ArgCursor cursor(arguments.slots);
        Require(FormatRead(buffers.Get(), reply.format, cursor, &enums) == S_OK &&
                    buffers.Get().FlushRead() == S_OK,
                std::string("the reply of ") + reply.member + " was not read");
    }
}

// Numbers by strtod and strtol, words copied up to their semicolon.
class FloorReader {
  public:
    explicit FloorReader(std::span<const TemplateValue> values)
        : values_(values), words_(values.size() * kLongestWord), numbers_(values.size()) {}

    void Read(const std::string& response) {
        std::memcpy(line_, response.c_str(), response.size() + 1);
        char* at = line_;
        for (std::size_t i = 0; i < values_.size(); ++i) {
            at = ReadField(at, i) + 1;
        }
        benchmark::DoNotOptimize(numbers_.data());
        benchmark::DoNotOptimize(words_.data());
        benchmark::ClobberMemory();
    }

  private:
    static constexpr std::size_t kLongestWord = 64;

    char* ReadField(char* at, std::size_t i) {
        char* end = at;
        switch (values_[i].kind) {
            case ValueKind::kReal:
                numbers_[i] = std::strtod(at, &end);
                break;
            case ValueKind::kInteger:
                numbers_[i] = static_cast<double>(std::strtol(at, &end, 10));
                break;
            default:
                end = at + std::strcspn(at, ";\n");
                std::memcpy(&words_[i * kLongestWord], at, static_cast<std::size_t>(end - at));
        }
        return end;
    }

    std::span<const TemplateValue> values_;
    char line_[4096] = {};
    std::vector<char> words_;
    std::vector<double> numbers_;
};

void ReadByStrtod(benchmark::State& state, const ReplyCase& reply) {
    Enums enums(reply.member);
    const ReplyArguments arguments(reply, enums);
    FloorReader reader(reply.values);
    for (auto _ : state) {
        reader.Read(arguments.response);
    }
}

// A token that is there or isn't, with the search for its table, as each query does it.
void LookUp(benchmark::State& state, std::string_view token) {
    Enums enums("IKestrionAcquisition.Mode");
    std::int32_t value = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(enums.TokenToEnum("KestrionAcquisitionModeEnum", token, value));
    }
}
BENCHMARK_CAPTURE(LookUp, hit, "AVERAGE")->Name("enum/hit/driver");
BENCHMARK_CAPTURE(LookUp, miss, "NO SUCH TOKEN")->Name("enum/miss/driver");

void RegisterTemplates() {
    int number = 0;
    for (const CommandCase& command : LongestCommands()) {
        const std::string name = "write/" + std::to_string(++number) + "_" + command.member;
        benchmark::RegisterBenchmark((name + "/driver").c_str(), WriteByDriver, command);
        benchmark::RegisterBenchmark((name + "/floor").c_str(), WriteByPrintf, command);
    }
    number = 0;
    for (const ReplyCase& reply : LongestReplies()) {
        const std::string name = "read/" + std::to_string(++number) + "_" + reply.member;
        benchmark::RegisterBenchmark((name + "/driver").c_str(), ReadByDriver, reply);
        benchmark::RegisterBenchmark((name + "/floor").c_str(), ReadByStrtod, reply);
    }
}

int Main(int argc, char** argv) {
    PinThisThread(kClientCore);
    RegisterTemplates();
    return RunInRounds(argc, argv);
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    return bench::RunProgram(bench::Main, argc, argv);
}
