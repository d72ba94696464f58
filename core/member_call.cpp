#include "core/member_call.h"

#include "core/parameter.h"
#include "io/format_text_writer.h"
#include "tables/model_families.h"

namespace kestrion {
namespace {

// Keeps a command on the node for the life time of the guard.
class RunningCommand {
  public:
    explicit RunningCommand(CNode& node) : node_(node), command_(node.PushCommand()) {}
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;
    ~RunningCommand() { node_.PopCommand(); }

    [[nodiscard]] FormattedCommand* operator->() { return &command_; }

  private:
    CNode& node_;
    FormattedCommand& command_;
};

}  // namespace

HRESULT MemberCall::RunCommand(std::span<const ArgSlot> arguments, FunctionRef<HRESULT()> handler) {
    if (method_.command.empty()) {
        return handler();
    }
    RunningCommand running(node_);
    running->response = method_.response;
    ArgCursor cursor(arguments);
    const HRESULT status = FormatToText(running->command, &Driver(), method_.command, cursor);
    return Failed(status) ? status : handler();
}

HRESULT MemberCall::SendCommand() {
    const FormattedCommand* running = node_.TopCommand();
    return running == nullptr ? E_UNEXPECTED
                              : Session().WriteString(std::string_view(running->command), true);
}

HRESULT MemberCall::QueryFormatted(std::int32_t timeout, std::span<const ArgSlot> targets) {
    const FormattedCommand* running = node_.TopCommand();
    if (running == nullptr) {
        return E_UNEXPECTED;
    }
    const HRESULT status =
        Session().VQueryScanf(running->command, running->response, timeout, targets);
    // More of the response may be left; the next query throws it away.
    return status == IoStatusMoreData ? S_OK : status;
}

HRESULT MemberCall::QueryText(std::string_view command, std::string& reply, std::int32_t timeout) {
    HRESULT status = Session().FlushRead();
    if (Succeeded(status)) {
        status = Session().QueryString(command, &reply, timeout);
    }
    // A reply longer than a buffer is followed by more of itself.
    while (status == IoStatusMoreData) {
        std::string more;
        status = Session().ReadString(&more, timeout);
        reply += more;
    }
    return status;
}

template <typename T>
HRESULT MemberCall::QueryNumber(std::string_view command, T& value, std::int32_t timeout) {
    // A number that ended its reply leaves a digit behind in the buffer.
    const HRESULT status = Session().FlushRead();
    return Failed(status) ? status : Session().QueryNumber(command, &value, true, timeout);
}

HRESULT MemberCall::QueryLong(std::string_view command, LONG& value, std::int32_t timeout) {
    return QueryNumber(command, value, timeout);
}

HRESULT MemberCall::QueryDouble(std::string_view command, double& value, std::int32_t timeout) {
    return QueryNumber(command, value, timeout);
}

bool MemberCall::InstrumentHasTwoChannels() {
    return IsTwoChannelModel(Driver().GetInstrumentModel());
}

}  // namespace kestrion
