// One running member, as its body and its hooks see it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "core/driver.h"
#include "core/function_ref.h"
#include "core/method_descriptor.h"
#include "core/node.h"
#include "io/args.h"

namespace kestrion {

// Lives for one call, under the object's lock. Texts to the instrument are bytes.
class MemberCall {
  public:
    MemberCall(CNode& node, const MethodDescriptor& method) : node_(node), method_(method) {}
    MemberCall(const MemberCall&) = delete;
    MemberCall& operator=(const MemberCall&) = delete;

    [[nodiscard]] CNode& Node() { return node_; }
    [[nodiscard]] CDriver& Driver() { return node_.Root(); }
    [[nodiscard]] CVisaCSession& Session() { return Driver().Session(); }
    [[nodiscard]] const MethodDescriptor& Method() const { return method_; }
    [[nodiscard]] bool IsSimulating() { return Driver().IsSimulating(); }

    // Another interface of the same object. Its members run a frame of their own.
    template <typename Interface>
    [[nodiscard]] Interface& As() {
        return *node_.Face<Interface>();
    }

    // Formats the member's template with `arguments`, keeps it as the running command and runs
    // `handler`; the command is dropped again whatever happens. A template that can't be formatted
    // gives that status and the handler isn't run. A member without a template runs the handler.
    HRESULT RunCommand(std::span<const ArgSlot> arguments, FunctionRef<HRESULT()> handler);

    // Sends the running command, with END, and polls.
    HRESULT SendCommand();
    // Sends the running command and reads the reply by the member's reply format, then polls.
    // `timeout` in milliseconds, or kKeepTimeout.
    HRESULT QueryFormatted(std::int32_t timeout, std::span<const ArgSlot> targets);
    template <typename... T>
    HRESULT QueryFormatted(std::int32_t timeout, T*... targets) {
        const auto slots = PackArgs(targets...);
        return QueryFormatted(timeout, std::span<const ArgSlot>(slots));
    }

    // Formats a line of its own, sends it with END and polls.
    template <typename... T>
    HRESULT Write(std::string_view format, T... arguments) {
        return Session().VPrintf(format, PackArgs(arguments...));
    }
    // Throws away what is left of an earlier reply, sends a line of its own and reads the whole
    // reply as text. `timeout` as above.
    HRESULT QueryText(std::string_view command, std::string& reply,
                      std::int32_t timeout = kKeepTimeout);
    // The same with one number as the reply.
    HRESULT QueryLong(std::string_view command, LONG& value, std::int32_t timeout = kKeepTimeout);
    HRESULT QueryDouble(std::string_view command, double& value,
                        std::int32_t timeout = kKeepTimeout);

    // Where failures are reported: an operation's status is the member's.
    [[nodiscard]] CErrorReporter& Errors() { return Driver().Reporter(); }

    // Which instrument is connected. A model that the driver doesn't know is in no family.
    [[nodiscard]] bool InstrumentInFamily(std::string_view family) {
        return Driver().InstrumentInFamily(family);
    }
    [[nodiscard]] bool InstrumentInAnyFamily(std::span<const std::string_view> families) {
        return std::ranges::any_of(
            families, [this](std::string_view family) { return InstrumentInFamily(family); });
    }
    // True for a model whose name says that it has two channels.
    [[nodiscard]] bool InstrumentHasTwoChannels();

  private:
    template <typename T>
    HRESULT QueryNumber(std::string_view command, T& value, std::int32_t timeout);

    CNode& node_;
    const MethodDescriptor& method_;
};

}  // namespace kestrion
