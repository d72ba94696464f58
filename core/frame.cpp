#include "core/frame.h"

#include <cstring>

#include "core/method_trace.h"
#include "core/status_error.h"
#include "core/trace_writer.h"
#include "kestrion/platform/error_info.h"

namespace kestrion {
namespace {

// Step 6. A null out pointer is reported; the targets are zeroed, so that a body that fails leaves
// nothing undefined behind. In-out parameters are left to the body.
HRESULT PrepareOutParameters(MemberCall& call, std::span<ParameterRecord> parameters) {
    for (const ParameterRecord& parameter : parameters) {
        if (!parameter.isOut()) {
            continue;
        }
        if (parameter.target == nullptr) {
            return call.Errors().ReportNullPointer(parameter.name, {});
        }
        parameter.ZeroTarget();
    }
    return S_OK;
}

// Steps 8 to 11. A model outside of every family is in no list, so it runs everything.
HRESULT RunBody(MemberCall& call, MemberBody body, const SimulatedBody* simulated) {
    if (call.InstrumentInAnyFamily(call.Method().refusedFamilies)) {
        return call.Errors().ReportNotSupportedByModel(call.Method().memberName);
    }
    if (call.Method().simulated && simulated != nullptr && call.IsSimulating()) {
        (*simulated)(call.Node());
        return S_OK;
    }
    return body(call);
}

// Steps 3 to 13, each undone in reverse by the guards.
HRESULT RunLocked(CNode& node, const MethodDescriptor& method,
                  std::span<ParameterRecord> parameters, MemberBody body,
                  const SimulatedBody* simulated) {
    const CallStack::Entry context(node.Root().Calls(), method);
    MemberCall call(node, method);
    if (method.needsConnection && !node.IsInitialized()) {
        return call.Errors().ReportNotInitialized({});
    }
    (void)SetErrorInfo(0, nullptr);
    if (const HRESULT status = PrepareOutParameters(call, parameters); Failed(status)) {
        return status;
    }
    HRESULT status = S_OK;
    const CMethodTrace trace(node.GetTraceWriter(), method.interfaceName, method.memberName,
                             &status, parameters);
    try {
        status = RunBody(call, body, simulated);
    } catch (...) {
        status = CurrentExceptionStatus();
    }
    return status;
}

}  // namespace

HRESULT RunMember(CNode& node, const MethodDescriptor& method,
                  std::span<ParameterRecord> parameters, MemberBody body,
                  const SimulatedBody* simulated) {
    try {
        const std::lock_guard lock(node.Mutex());
        return RunLocked(node, method, parameters, body, simulated);
    } catch (...) {
        return CurrentExceptionStatus();
    }
}

namespace frame {

PropertyArguments::PropertyArguments(const CNode& node, Selector selector) {
    switch (selector) {
        case Selector::kNone:
            break;
        case Selector::kNumber:
            Add(node.Number());
            break;
        case Selector::kIndex:
            Add(node.Index());
            break;
        case Selector::kName:
            Add(node.Name());
            break;
    }
}

}  // namespace frame

}  // namespace kestrion
