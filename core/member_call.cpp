#include "core/member_call.h"

#include "io/format_text_writer.h"
#include "tables/model_families.h"

namespace kestrion {
namespace {

// The running command is text already, so it goes out as an argument and isn't read as a format.
constexpr std::string_view kCommandFormat = "%$Cs";

// Keeps a command on the node for the life time of the guard.
class CommandGuard {
  public:
    CommandGuard(CNode& node, FormattedCommand& command) : node_(node) {
        node_.PushCommand(command);
    }
    CommandGuard(const CommandGuard&) = delete;
    CommandGuard& operator=(const CommandGuard&) = delete;
    ~CommandGuard() { node_.PopCommand(); }

  private:
    CNode& node_;
};

}  // namespace

HRESULT MemberCall::RunCommand(std::span<const ArgSlot> arguments, FunctionRef<HRESULT()> handler) {
    if (method_.command.empty()) {
        return handler();
    }
    FormattedCommand formatted;
    ArgCursor cursor(arguments);
    const HRESULT status = FormatToText(formatted.command, &Driver(), method_.command, cursor);
    formatted.response = method_.response;
    const CommandGuard guard(node_, formatted);
    return Failed(status) ? status : handler();
}

HRESULT MemberCall::SendCommand() {
    const FormattedCommand* running = node_.TopCommand();
    return running == nullptr ? E_UNEXPECTED : Session().Printf(kCommandFormat, &running->command);
}

HRESULT MemberCall::QueryFormatted(std::int32_t timeout, std::span<const ArgSlot> targets) {
    const FormattedCommand* running = node_.TopCommand();
    if (running == nullptr) {
        return E_UNEXPECTED;
    }
    std::vector<ArgSlot> slots;
    slots.reserve(targets.size() + 1);
    slots.emplace_back(&running->command);
    slots.insert(slots.end(), targets.begin(), targets.end());
    const HRESULT status = Session().VQueryf(kCommandFormat, running->response, timeout, slots);
    // More of the response may be left; the next query throws it away.
    return status == IoStatusMoreData ? S_OK : status;
}

HRESULT MemberCall::QueryText(std::string_view command, std::string& reply) {
    const HRESULT status = Session().QueryString(command, &reply);
    return status == IoStatusMoreData ? S_OK : status;
}

HRESULT MemberCall::QueryLong(std::string_view command, LONG& value) {
    const HRESULT status = Session().QueryNumber(command, &value, true);
    return status == IoStatusMoreData ? S_OK : status;
}

HRESULT MemberCall::QueryDouble(std::string_view command, double& value) {
    const HRESULT status = Session().QueryNumber(command, &value, true);
    return status == IoStatusMoreData ? S_OK : status;
}

bool MemberCall::InstrumentHasTwoChannels() {
    return IsTwoChannelModel(Driver().GetInstrumentModel());
}

}  // namespace kestrion
