// Reading reference levels: which levels there are follows from the unit that is in use, so the
// second query takes the unit's token as a branch of the command tree.
#include <string>

#include "core/member_call.h"
#include "generated/hooks/IKestrionMeasurementImmediate.h"
#include "generated/hooks/IKestrionReferenceLevel.h"
#include "scope/formatted_query.h"

namespace kestrion::hooks {
namespace {

constexpr const char* kFourLevels = "%lg;%lg;%lg;%lg";

HRESULT ReadUnit(MemberCall& call, KestrionMeasurementMethodEnum* method,
                 KestrionMeasurementUnitEnum* unit, std::string& branch) {
    const HRESULT status = call.QueryFormatted(kKeepTimeout, method, unit);
    return Failed(status) ? status
                          : call.Driver().EnumToToken("KestrionMeasurementUnitEnum", *unit, branch);
}

}  // namespace

HRESULT IKestrionMeasurementImmediate::ReadReferenceLevel(MemberCall& call,
                                                          KestrionMeasurementMethodEnum* Method,
                                                          KestrionMeasurementUnitEnum* Unit,
                                                          double* High, double* Low, double* Mid,
                                                          double* Mid2) {
    std::string branch;
    const HRESULT status = ReadUnit(call, Method, Unit, branch);
    return Failed(status) ? status
                          : QueryByFormat(call, "MEASUREMENT:REFLEVEL:%$Cs:HIGH?;LOW?;MID?;MID2?",
                                          kFourLevels, &branch, High, Low, Mid, Mid2);
}

HRESULT IKestrionReferenceLevel::Read(MemberCall& call, KestrionMeasurementMethodEnum* Method,
                                      KestrionMeasurementUnitEnum* Unit, double* High, double* Low,
                                      double* Mid, double* Mid2) {
    std::string branch;
    const HRESULT status = ReadUnit(call, Method, Unit, branch);
    return Failed(status)
               ? status
               : QueryByFormat(call, "MEASUREMENT:MEAS%d:REFLEVEL:%$Cs:HIGH?;LOW?;MID?;MID2?",
                               kFourLevels, call.Node().Number(), &branch, High, Low, Mid, Mid2);
}

}  // namespace kestrion::hooks
