// One line of the command table: a command in the notation of command references, the value that
// it sets and answers, and what it does beside that.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "virtual/byte_source.h"
#include "virtual/models.h"
#include "virtual/scpi_error.h"
#include "virtual/setting_id.h"
#include "virtual/value.h"

namespace virtual_scope {

class Oscilloscope;

// A part of a response message: bytes that are there, or that are made while they are read.
struct Reply {
    std::string text;
    std::unique_ptr<ByteSource> source;  // comes after the text
};

// Where a command was called from.
struct Call {
    int instance = 0;  // counted from 0: the channel of CH<x>
    bool query = false;
    bool messageAvailable = false;            // the link's output queue holds something
    std::span<const std::string> parameters;  // of a command that takes any, as written
};

// How a program message unit ended.
struct Outcome {
    ScpiError error = ScpiError::kNone;
    bool waiting = false;  // it has to be run again when the pending operation is complete
    std::optional<Reply> reply;

    Outcome() = default;
    Outcome(ScpiError reason) : error(reason) {}
    static Outcome Wait() {
        Outcome outcome;
        outcome.waiting = true;
        return outcome;
    }
    static Outcome Answer(std::string text) {
        Outcome outcome;
        outcome.reply.emplace(Reply{std::move(text), nullptr});
        return outcome;
    }
};

// May refuse a legal value, for instance because it does not fit another setting.
using CheckHook = ScpiError (*)(Oscilloscope&, int instance, const Value&);
// Runs after a value was stored.
using ThenHook = void (*)(Oscilloscope&, int instance, const Value&);
// Gives the value of a setting that follows from others.
using GetHook = Value (*)(Oscilloscope&, int instance);
// Refuses a command, to set and to ask, that this model does not have for the instance.
using RefuseHook = ScpiError (*)(const Oscilloscope&, int instance);
// The whole of an action, or of a query with an answer of its own form.
using RunHook = Outcome (*)(Oscilloscope&, const Call&);

// The notation: capitals are the short form of a mnemonic, `<x>` is a number, what stands in
// [brackets] may be left out, {A|B} are two names of one thing, and a closing '?' marks a command
// that is a query only. `RangeOf` (command_tree.h) says from where to where a number counts.
struct CommandRow {
    CommandRow(std::string_view name, Spec value) : notation(name), spec(value) {}

    std::string notation;
    Spec spec;
    SettingId id = SettingId::kNone;
    bool setOnly = false;
    bool takesAny = false;  // any number of parameters, which `run` reads
    FamilySet lackedBy = 0;
    std::vector<Value> initials;  // of each instance, where they differ
    CheckHook check = nullptr;
    ThenHook then = nullptr;
    GetHook get = nullptr;
    RefuseHook refuse = nullptr;
    RunHook run = nullptr;

    // Lets other commands ask for the setting by a name.
    CommandRow&& As(SettingId name) && { return id = name, std::move(*this); }
    CommandRow&& SetOnly() && { return setOnly = true, std::move(*this); }
    CommandRow&& TakesAny() && { return takesAny = true, std::move(*this); }
    CommandRow&& LackedBy(FamilySet families) && { return lackedBy = families, std::move(*this); }
    CommandRow&& Initially(std::vector<Value> values) && {
        return initials = std::move(values), std::move(*this);
    }
    CommandRow&& Check(CheckHook hook) && { return check = hook, std::move(*this); }
    CommandRow&& Then(ThenHook hook) && { return then = hook, std::move(*this); }
    CommandRow&& Get(GetHook hook) && { return get = hook, std::move(*this); }
    CommandRow&& Refuse(RefuseHook hook) && { return refuse = hook, std::move(*this); }
    CommandRow&& Run(RunHook hook) && { return run = hook, std::move(*this); }

    [[nodiscard]] bool IsQueryOnly() const { return notation.ends_with('?'); }
};

}  // namespace virtual_scope
