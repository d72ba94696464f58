// DISplay, ZOOM and CURSor: how waveforms are drawn, and what is marked on the screen.
#include "virtual/command_table.h"
#include "virtual/record.h"

namespace virtual_scope {
namespace {

constexpr Real kZoomPosition = {0, 100, 50};  // percent of the record
constexpr Real kZoomScale = {1, 100'000, 1};  // times
constexpr Real kCursorSeconds = {-1e6, 1e6, 0};

}  // namespace

std::vector<CommandRow> DisplayCommands() {
    using enum SettingId;
    return {
        CommandRow("DISplay:FILTer", Keyword{"LINEAr|SINX", 1}),
        CommandRow("ZOOm:MODe", Flag{}),
        CommandRow("ZOOm:CH<x>:HORizontal:POSition", kZoomPosition).As(kZoomChannelPosition),
        CommandRow("ZOOm:CH<x>:HORizontal:SCAle", kZoomScale).As(kZoomChannelScale),
        CommandRow("ZOOm:MATH<x>:HORizontal:POSition", kZoomPosition).As(kZoomMathPosition),
        CommandRow("ZOOm:MATH<x>:HORizontal:SCAle", kZoomScale).As(kZoomMathScale),
        CommandRow("ZOOm:REF<x>:HORizontal:POSition", kZoomPosition).As(kZoomReferencePosition),
        CommandRow("ZOOm:REF<x>:HORizontal:SCAle", kZoomScale).As(kZoomReferenceScale),
        CommandRow("CURSor:SOUrce", Keyword{kSourceWords}),
        CommandRow("CURSor:VBArs:POSition<x>", kCursorSeconds).As(kCursorTime),
    };
}

}  // namespace virtual_scope
